// Writing edited values.
#include <plugins/attributes/qlumattributemodel.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumcalltimeout.h>
#include <app/api/qlumguithread.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_statuscodes.h>
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
OpcUa_BuiltInType QlumAttributeModel::typeOf(const QlumTypedValue& shown, const QlumAttributeNode& node) const
{
    if (shown.value.isNull() && &node == m_valueRow)
        return uaNamespaceZeroBuiltInType(m_dataTypeId);
    return shown.value.type();
}

bool QlumAttributeModel::convertText(const QModelIndex& index, const QString& text, UaVariant& whole)
{
    const QlumTypedValue shown = rowValue(index);
    const OpcUa_BuiltInType type = typeOf(shown, *nodeAt(index));
    UaVariant part(toUaString(text));
    // A text is one value: in the place of an array it would destroy all the others.
    const bool converted = type != OpcUaType_Null && shown.value.isScalar() &&
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
        return write(value.value<UaVariant>());
    UaVariant whole;
    return convertText(index, value.toString(), whole) && write(whole);
}

bool QlumAttributeModel::write(const UaVariant& value)
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
        log().error(tr("Write failed [ret = %1].").arg(toQString(status.toString())));
        emit writeFailed(toQString(status.toString()));
        return false;
    }
    const UaStatusCode result(results[0]);
    const QString text = result.isGood() ? tr("Write to node '%1' succeeded [ret = %2].")
                                         : tr("Write to node '%1' failed [ret = %2].");
    log().info(text.arg(toQString(m_nodeId.toFullString()), toQString(result.toString())));
    if (result.isGood())
        emit written();
    else
        emit writeFailed(toQString(result.toString()));
    UaNodeId nodeId = m_nodeId; // others may change ours while they hear of it
    m_application.selectionChanged(m_serverId, &nodeId, m_nodeClass);
    return result.isGood();
}

QlumLog QlumAttributeModel::log() const
{
    return QlumLog(tr("Attribute Plugin"), m_serverId);
}
