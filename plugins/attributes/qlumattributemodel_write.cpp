// Writing edited values.
#include <plugins/attributes/qlumattributemodel.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumguithread.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/attributes/qlumattributesettings.h>
#include <plugins/attributes/qlumattributetexts.h>
#include <uabase/structures/uanamespacezero.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uawidgets/qlumwaitcursor.h>

#include <QPointer>

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

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

bool QlumAttributeModel::placeOf(const QlumAttributeNode& node, Place& place) const
{
    place = {node.attributeId(), {}};
    if (node.attributeId() != 0)
        return m_attributes.contains(node.attributeId());
    place.attributeId = OpcUa_Attributes_Value;
    return m_valueRow && stepsTo(node, place.steps);
}

QlumTypedValue QlumAttributeModel::valueAt(const Place& place) const
{
    if (place.attributeId != OpcUa_Attributes_Value)
        return {attribute(place.attributeId), {}};
    return qlumPartOf({m_value, valueHint()}, place.steps, m_rows.dictionary());
}

QlumTypedValue QlumAttributeModel::rowValue(const QModelIndex& index) const
{
    Place place;
    return index.isValid() && placeOf(*nodeAt(index), place) ? valueAt(place) : QlumTypedValue();
}

UaStatusCode QlumAttributeModel::valueWithRow(const QModelIndex& index, const UaVariant& part,
                                              UaVariant& whole) const
{
    Place place;
    if (!index.isValid() || !placeOf(*nodeAt(index), place))
        return OpcUa_BadNotWritable;
    if (place.attributeId != OpcUa_Attributes_Value) {
        whole = part;
        return {};
    }
    QlumTypedValue value{m_value, valueHint()};
    const UaStatusCode status = qlumReplacePart(value, place.steps, part, m_rows.dictionary());
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

// A part is declared by its own type; ranges and lengths are those of the elements, too.
QlumValueContext QlumAttributeModel::editContext(const QModelIndex& index) const
{
    Place place;
    QlumValueContext context = m_context;
    if (!index.isValid() || !placeOf(*nodeAt(index), place))
        return context;
    const bool isValue = place.attributeId == OpcUa_Attributes_Value;
    if (isValue && place.steps.empty() && !context.dataType.isNull())
        return context;
    const QlumTypedValue part = valueAt(place);
    context.dataType = part.hint.dataTypeId;
    context.builtInType = rowType(index);
    context.valueRank =
        part.value.isScalar() ? -1 : static_cast<OpcUa_Int32>(part.value.dimensions().length());
    context.arrayDimensions.clear();
    const bool isElement = place.steps.size() == 1 && place.steps.front().kind == QlumValueStep::Element;
    const bool isWhole = place.steps.empty();
    if (!isValue || !(isElement || isWhole)) {
        context.euRange.reset();
        context.instrumentRange.reset();
        context.maxStringLength.reset();
        context.unit.clear();
    }
    if (!isValue)
        context.accessFault.clear();
    return context;
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
    if (nodeAt(index)->attributeId() != 0)
        return {}; // only those that may be written can be edited
    return m_lock.isEmpty() || QlumAttributeSettings::editLocked.value(&m_application) ? QString() : m_lock;
}

QString QlumAttributeModel::faultOf(const QlumAttributeNode& node) const
{
    Place place;
    const bool isFaulty = !m_fault.isEmpty() && placeOf(node, place) && place == m_faultPlace;
    return isFaulty ? m_fault : QString();
}

QString QlumAttributeModel::remarkOn(const QlumAttributeNode& node) const
{
    if (const QString fault = faultOf(node); !fault.isEmpty())
        return fault;
    return node.isWritable() && node.attributeId() == 0 ? m_lock : QString();
}

// ---- doing it

bool QlumAttributeModel::convertText(const QModelIndex& index, const QString& text, UaVariant& part)
{
    const OpcUa_BuiltInType type = rowType(index);
    part = UaVariant(toUaString(text));
    UaVariant whole;
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
        (role != Qt::EditRole && role != ValueRole && role != PartRole))
        return false;
    Placed placed;
    if (m_standing != Standing::Current || !m_services(m_serverId) || !placeOf(*nodeAt(index), placed.place))
        return false;
    if (role == Qt::EditRole) {
        if (!convertText(index, value.toString(), placed.value))
            return false;
    } else {
        placed.value = value.value<UaVariant>();
    }
    if (role == ValueRole)
        placed.place.steps.clear();
    return write(placed, m_value, false, index).isGood();
}

std::function<QString(const UaVariant& part)> QlumAttributeModel::partWriter(const QModelIndex& index)
{
    Place place;
    if (!index.isValid() || !placeOf(*nodeAt(index), place))
        return {};
    return [self = QPointer(this), serverId = m_serverId, nodeId = m_nodeId, place,
            shown = std::optional(m_value)](const UaVariant& part) mutable {
        return self ? self->writePart(serverId, nodeId, {place, part}, shown)
                    : tr("The window has been closed.");
    };
}

// Who was told that the Value has changed has seen the new one by the second time.
QString QlumAttributeModel::writePart(unsigned int serverId, const UaNodeId& nodeId, const Placed& placed,
                                      std::optional<UaVariant>& shown)
{
    if (serverId != m_serverId || nodeId != m_nodeId)
        return tr("Another node is shown by now, or its server was removed. Select %1 again to write it.")
            .arg(toQString(nodeId.toXmlString()));
    if (m_standing != Standing::Current || !m_services(m_serverId))
        return tr("The server cannot be asked at the moment.");
    const QlumWriteOutcome outcome = write(placed, shown.value_or(m_value), false, {});
    if (outcome.hasChanged)
        shown.reset();
    return outcome.isGood() ? QString() : m_fault;
}

bool QlumAttributeModel::undo()
{
    if (m_undo.empty() || m_standing != Standing::Current || !m_services(m_serverId))
        return false;
    const Placed before = m_undo.back();
    if (!write(before, m_value, true, {}).isGood())
        return false;
    if (!m_undo.empty()) // others hear of a write, too
        m_undo.pop_back();
    emit undoChanged();
    return true;
}

QlumWriteOutcome QlumAttributeModel::write(const Placed& placed, const UaVariant& shown, bool isUndo,
                                           const QModelIndex& index)
{
    const std::shared_ptr<QlumSessionServices> session = m_services(m_serverId);
    const QString name = qlumAttributeName(placed.place.attributeId);
    QlumAttributeWriter writer(*session, m_nodeId,
                               tr("Write %1 of %2").arg(name, toQString(m_nodeId.toXmlString())));
    const UaVariant before = valueAt(placed.place).value;
    const QlumWriteOutcome outcome = [&] {
        const QlumWaitCursor wait;
        return send(writer, placed, shown);
    }();
    if (outcome.isGood() && !isUndo && before != placed.value)
        rememberUndo(placed.place, before);
    finish(placed, outcome, index);
    return outcome;
}

void QlumAttributeModel::rememberUndo(const Place& place, const UaVariant& before)
{
    constexpr std::size_t mostUndone = 100; // values may be large
    if (m_undo.size() >= mostUndone)
        m_undo.erase(m_undo.begin());
    m_undo.push_back({place, before});
    emit undoChanged();
}

QlumWriteOutcome QlumAttributeModel::send(QlumAttributeWriter& writer, const Placed& placed,
                                          const UaVariant& shown) const
{
    const std::vector<QlumValueStep>& steps = placed.place.steps;
    if (placed.place.attributeId != OpcUa_Attributes_Value)
        return writer.write(placed.place.attributeId, placed.value, valueAt(placed.place).value);
    if (steps.empty())
        return sendTogether(writer, placed, shown);
    const bool isElement = steps.size() == 1 && steps.front().kind == QlumValueStep::Element;
    UaVariant sent;
    const UaString range =
        isElement ? qlumElementRange(m_value, steps.front().index, placed.value, sent) : UaString();
    if (!range.isEmpty())
        if (const QlumWriteOutcome outcome =
                writer.write(OpcUa_Attributes_Value, sent, valueAt(placed.place).value, range);
            !qlumRefusesRanges(outcome))
            return outcome;
    return sendWhole(writer, placed, shown, isElement);
}

// Of a structure the user has edited fields; the others must not fall back to what they were when he began.
// What cannot be read can still be written.
QlumWriteOutcome QlumAttributeModel::sendTogether(QlumAttributeWriter& writer, const Placed& placed,
                                                  const UaVariant& shown)
{
    QlumWriteOutcome outcome;
    UaVariant now;
    if (shown.isScalar() && shown.type() == OpcUaType_ExtensionObject && writer.readValue(now).isNotBad() &&
        now != shown) {
        outcome.hasChanged = true;
        return outcome;
    }
    return writer.write(OpcUa_Attributes_Value, placed.value, shown);
}

// The other parts are what the server has now. An element of an array says nothing about its neighbours; the
// fields of a structure may belong together.
QlumWriteOutcome QlumAttributeModel::sendWhole(QlumAttributeWriter& writer, const Placed& placed,
                                               const UaVariant& shown, bool isElement) const
{
    QlumWriteOutcome outcome;
    QlumTypedValue whole{{}, valueHint()};
    outcome.result = writer.readValue(whole.value);
    if (outcome.result.isBad())
        return outcome;
    outcome.hasChanged = !isElement && whole.value != shown;
    if (outcome.hasChanged)
        return outcome;
    outcome.result = qlumReplacePart(whole, placed.place.steps, placed.value, m_rows.dictionary());
    if (outcome.result.isBad())
        return outcome;
    outcome = writer.write(OpcUa_Attributes_Value, whole.value, shown);
    outcome.isWhole = isElement;
    return outcome;
}

// Where the server does not like the value itself: what it was, and what is declared.
QString QlumAttributeModel::sentText(const Placed& placed, OpcUa_StatusCode code) const
{
    constexpr int longest = 60;
    if (code != OpcUa_BadTypeMismatch && code != OpcUa_BadOutOfRange)
        return {};
    const QlumTypedValue shown = valueAt(placed.place);
    const QString sent = tr(". Sent was %1 (%2).")
                             .arg(qlumCutText(toQString(placed.value.toString()), longest),
                                  qlumTypeText(placed.value, shown.hint, m_rows.dictionary()));
    const bool isWhole = placed.place.attributeId == OpcUa_Attributes_Value && placed.place.steps.empty();
    const QString declared = isWhole ? qlumDeclaredTypeName(m_context) : QString();
    return declared.isEmpty() ? sent : sent + tr(" The node declares %1.").arg(declared);
}

void QlumAttributeModel::finish(const Placed& placed, const QlumWriteOutcome& outcome,
                                const QModelIndex& index)
{
    const OpcUa_StatusCode code = outcome.service.isGood() ? outcome.result.code() : outcome.service.code();
    if (!outcome.service.isGood()) {
        log().error(tr("Write failed [ret = %1].").arg(qlumResultText(outcome.service)));
        const QString notSent = qlumNotSentText(outcome.service);
        return writeRefused(placed.place, notSent.isEmpty() ? qlumWriteFailureText(code) : notSent, index);
    }
    const QString text = outcome.isGood() ? tr("Write to node '%1' succeeded [ret = %2].")
                                          : tr("Write to node '%1' failed [ret = %2].");
    log().info(text.arg(toQString(m_nodeId.toFullString()), toQString(outcome.result.toString())));
    if (outcome.hasChanged) {
        writeRefused(
            placed.place,
            tr("it has changed on the server since it was shown, and is read again; look at it, then "
               "write again"),
            index);
    } else if (!outcome.isGood()) {
        writeRefused(placed.place, qlumWriteFailureText(code) + sentText(placed, code), index);
    } else {
        m_fault.clear();
        m_expected = placed;
        emit written();
        if (outcome.isWhole)
            emit remarked(
                tr("The server does not take single elements. The whole array was written, with its "
                   "other elements as they were on the server."));
    }
    UaNodeId nodeId = m_nodeId; // others may change ours while they hear of it
    m_application.selectionChanged(m_serverId, &nodeId, m_nodeClass);
}

void QlumAttributeModel::writeRefused(const Place& place, const QString& why, const QModelIndex& index)
{
    m_fault = why;
    m_faultPlace = place;
    if (index.isValid())
        emit dataChanged(index, index);
    emit writeFailed(m_fault);
}

// ---- afterwards

// The server may have rounded it or cut it, or something else has written meanwhile.
void QlumAttributeModel::compareWithWritten()
{
    const std::optional<Placed> expected = std::exchange(m_expected, std::nullopt);
    if (!expected || expected->value.isNull())
        return;
    const UaVariant shown = valueAt(expected->place).value;
    if (shown.isNull() || shown == expected->value)
        return; // what may be written need not be readable
    constexpr int longest = 60;
    emit remarked(tr("%1 was written, and the server has taken it, but %2 was read back.")
                      .arg(qlumCutText(toQString(expected->value.toString()), longest),
                           qlumCutText(toQString(shown.toString()), longest)));
}

void QlumAttributeModel::forgetWrites()
{
    m_fault.clear();
    m_expected.reset();
    if (!m_undo.empty()) {
        m_undo.clear();
        emit undoChanged();
    }
}

QlumLog QlumAttributeModel::log() const
{
    return QlumLog(tr("Attribute Plugin"), m_serverId);
}
