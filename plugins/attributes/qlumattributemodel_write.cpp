// Writing edited values.
#include <plugins/attributes/qlumattributemodel.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumcalltimeout.h>
#include <app/api/qlumguithread.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/attributes/qlumattributesettings.h>
#include <plugins/attributes/qlumattributetexts.h>
#include <uabase/structures/uanamespacezero.h>
#include <uabase/values/uastatus.h>
#include <uawidgets/qlumwaitcursor.h>

#include <algorithm>

// The way from the Value to the row; false when the row is no part of it that could be replaced.
bool QlumAttributeModel::stepsTo(const QlumAttributeNode& node, std::vector<QlumValueStep>& steps) const
{
    steps.clear();
    const QlumAttributeNode* current = &node;
    for (; current && current != m_valueRow; current = current->parent()) {
        if (current->step().kind == QlumValueStep::Detail || current->step().kind == QlumValueStep::None)
            return false;
        steps.push_back(current->step());
    }
    std::reverse(steps.begin(), steps.end());
    return current != nullptr;
}

QlumTypedValue QlumAttributeModel::rowValue(const QModelIndex& index) const
{
    std::vector<QlumValueStep> steps;
    if (!index.isValid() || !m_valueRow || !stepsTo(*nodeAt(index), steps))
        return {};
    return qlumPartOf({m_value, valueHint()}, steps, m_rows.dictionary());
}

UaStatusCode QlumAttributeModel::valueWithRow(const QModelIndex& index, const UaVariant& part,
                                              UaVariant& whole) const
{
    std::vector<QlumValueStep> steps;
    if (!index.isValid() || !m_valueRow || !stepsTo(*nodeAt(index), steps))
        return OpcUa_BadNotWritable;
    QlumTypedValue value{m_value, valueHint()};
    const UaStatusCode status = qlumReplacePart(value, steps, part, m_rows.dictionary());
    if (status.isNotBad())
        whole = value.value;
    return status;
}

// An empty Value has no type; the node says which one it should have.
OpcUa_BuiltInType QlumAttributeModel::rowType(const QModelIndex& index) const
{
    const UaVariant shown = rowValue(index).value;
    if (shown.isNull() && index.isValid() && nodeAt(index) == m_valueRow)
        return uaNamespaceZeroBuiltInType(m_dataTypeId);
    return shown.type();
}

// ---- whether it can be done

QString QlumAttributeModel::lock(const QModelIndex& index) const
{
    if (!index.isValid() || !nodeAt(index)->isWritable())
        return {};
    if (m_standing == Standing::Outdated)
        return tr("What is shown is not up to date: its server could not be asked.");
    if (m_standing == Standing::Left)
        return tr("Another node is being read.");
    return m_lock.isEmpty() || QlumAttributeSettings::editLocked.value(&m_application) ? QString() : m_lock;
}

QString QlumAttributeModel::faultOf(const QlumAttributeNode& node) const
{
    std::vector<QlumValueStep> steps;
    const bool isFaulty = !m_fault.isEmpty() && m_valueRow && stepsTo(node, steps) && steps == m_faultSteps;
    return isFaulty ? m_fault : QString();
}

QString QlumAttributeModel::remarkOn(const QlumAttributeNode& node) const
{
    if (const QString fault = faultOf(node); !fault.isEmpty())
        return fault;
    return node.isWritable() ? m_lock : QString();
}

// ---- doing it

bool QlumAttributeModel::convertText(const QModelIndex& index, const QString& text, UaVariant& whole)
{
    const OpcUa_BuiltInType type = rowType(index);
    UaVariant part(toUaString(text));
    // A text is one value: in the place of an array it would destroy all the others.
    const bool converted = type != OpcUaType_Null && rowValue(index).value.isScalar() &&
                           part.changeType(type, false).isNotBad() &&
                           valueWithRow(index, part, whole).isNotBad();
    if (!converted) {
        const QString why =
            tr("Could not convert value to variant type %1").arg(m_application.builtinTypeName(type));
        log().error(why);
        emit writeFailed(why);
    }
    return converted;
}

bool QlumAttributeModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    qlumAssertGuiThread();
    if (!index.isValid() || index.column() != ValueColumn || !nodeAt(index)->isWritable() ||
        (role != Qt::EditRole && role != ValueRole))
        return false;
    if (m_standing != Standing::Current || !m_services(m_serverId))
        return false;
    if (role == ValueRole)
        return write(index, value.value<UaVariant>());
    UaVariant whole;
    return convertText(index, value.toString(), whole) && write(index, whole);
}

bool QlumAttributeModel::write(const QModelIndex& index, const UaVariant& value)
{
    const std::shared_ptr<QlumSessionServices> session = m_services(m_serverId);
    UaWriteValues nodes(1);
    nodes[0].AttributeId = OpcUa_Attributes_Value;
    if (OpcUa_IsBad(m_nodeId.copyTo(&nodes[0].NodeId)) || OpcUa_IsBad(value.copyTo(&nodes[0].Value.Value)))
        return false; // out of memory; a null value must not be written instead
    UaClientSdk::ServiceSettings settings = qlumServiceSettings(tr("Writing an attribute"));
    UaStatusCodeArray results;
    const UaStatus status = [&] {
        const QlumWaitCursor wait;
        return session->write(settings, nodes, results);
    }();
    if (!status.isGood() || results.length() != 1) {
        log().error(tr("Write failed [ret = %1].").arg(qlumResultText(status)));
        return writeRefused(index, status);
    }
    const UaStatusCode result(results[0]);
    const QString text = result.isGood() ? tr("Write to node '%1' succeeded [ret = %2].")
                                         : tr("Write to node '%1' failed [ret = %2].");
    log().info(text.arg(toQString(m_nodeId.toFullString()), toQString(result.toString())));
    if (result.isGood()) {
        m_fault.clear();
        emit written();
    } else {
        writeRefused(index, result);
    }
    UaNodeId nodeId = m_nodeId; // others may change ours while they hear of it
    m_application.selectionChanged(m_serverId, &nodeId, m_nodeClass);
    return result.isGood();
}

bool QlumAttributeModel::writeRefused(const QModelIndex& index, const UaStatus& status)
{
    m_fault = qlumNotSentText(status);
    if (m_fault.isEmpty())
        m_fault = qlumWriteFailureText(status.code());
    if (!stepsTo(*nodeAt(index), m_faultSteps))
        m_faultSteps.clear(); // the whole Value, then
    emit dataChanged(index, index);
    emit writeFailed(m_fault);
    return false;
}

QlumLog QlumAttributeModel::log() const
{
    return QlumLog(tr("Attribute Plugin"), m_serverId);
}
