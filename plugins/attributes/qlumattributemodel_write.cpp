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

// The one that the row shows, or is below.
int QlumAttributeModel::attributeOf(const QlumAttributeNode& node)
{
    const QlumAttributeNode* whole = &node;
    while (whole && whole->attributeId() == 0)
        whole = whole->parent();
    return whole ? whole->attributeId() : OpcUa_Attributes_Value;
}

// The way from an attribute to the row; false when the row is no part of one that could be replaced.
bool QlumAttributeModel::placeOf(const QlumAttributeNode& node, Place& place) const
{
    place = {};
    const QlumAttributeNode* whole = &node;
    for (; whole && whole != m_valueRow && whole->attributeId() == 0; whole = whole->parent()) {
        if (whole->step().kind == QlumValueStep::Detail || whole->step().kind == QlumValueStep::None)
            return false;
        place.steps.push_back(whole->step());
    }
    if (!whole)
        return false;
    std::reverse(place.steps.begin(), place.steps.end());
    place.attributeId = whole == m_valueRow ? OpcUa_Attributes_Value : whole->attributeId();
    return whole == m_valueRow || m_attributes.contains(place.attributeId);
}

QlumTypedValue QlumAttributeModel::wholeOf(int attributeId) const
{
    if (attributeId == OpcUa_Attributes_Value)
        return {m_value, valueHint()};
    return {attribute(attributeId), {qlumAttributeDataType(attributeId), {}}};
}

QlumTypedValue QlumAttributeModel::valueAt(const Place& place) const
{
    return qlumPartOf(wholeOf(place.attributeId), place.steps, m_rows.dictionary());
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
    QlumTypedValue value = wholeOf(place.attributeId);
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
    if (!index.isValid())
        return {};
    if (!nodeAt(index)->isWritable())
        return maskLock(attributeOf(*nodeAt(index)));
    if (m_standing == Standing::Outdated)
        return tr("What is shown is not up to date: its server could not be asked.");
    if (m_standing == Standing::Left)
        return tr("Another node is being read.");
    if (attributeOf(*nodeAt(index)) != OpcUa_Attributes_Value)
        return {}; // only those that may be written can be edited
    return m_lock.isEmpty() || QlumAttributeSettings::editLocked.value(&m_application) ? QString() : m_lock;
}

// Of the attributes besides the Value.
QString QlumAttributeModel::maskLock(int attributeId) const
{
    const OpcUa_UInt32 bit = qlumWriteMaskBit(attributeId);
    if (!m_attributes.contains(attributeId))
        return {};
    const QString name = qlumAttributeName(attributeId);
    if (bit == 0)
        return tr("%1 is not for clients to write.").arg(name);
    if (!m_writeMask)
        return tr("The node does not say that anything but its Value may be written.");
    return maskFault(bit, name);
}

// Which of the masks lacks the bit.
QString QlumAttributeModel::maskFault(OpcUa_UInt32 bit, const QString& name) const
{
    const bool isOfNode =
        (qlumWriteMaskOf(attribute(OpcUa_Attributes_WriteMask), {}).value_or(bit) & bit) == 0;
    return isOfNode ? tr("Nobody may write it: WriteMask has no %1.").arg(name)
                    : tr("The user who is logged in may not write it: UserWriteMask has no %1.").arg(name);
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
    return node.isWritable() && attributeOf(node) == OpcUa_Attributes_Value ? m_lock : QString();
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
    return write(placed, wholeOf(placed.place.attributeId).value, false, index).isGood();
}

std::function<QString(const UaVariant& part)> QlumAttributeModel::partWriter(const QModelIndex& index)
{
    Place place;
    if (!index.isValid() || !placeOf(*nodeAt(index), place))
        return {};
    return [self = QPointer(this), serverId = m_serverId, nodeId = m_nodeId, place,
            shown = std::optional(wholeOf(place.attributeId).value)](const UaVariant& part) mutable {
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
    const UaVariant whole = shown.value_or(wholeOf(placed.place.attributeId).value);
    const QlumWriteOutcome outcome = write(placed, whole, false, {});
    if (outcome.hasChanged)
        shown.reset();
    return outcome.isGood() ? QString() : m_fault;
}

bool QlumAttributeModel::undo()
{
    if (m_undo.empty() || m_standing != Standing::Current || !m_services(m_serverId))
        return false;
    const Placed before = m_undo.back();
    if (!write(before, wholeOf(before.place.attributeId).value, true, {}).isGood())
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
    if (steps.empty())
        return sendTogether(writer, placed, shown);
    const bool isElement = placed.place.attributeId == OpcUa_Attributes_Value && steps.size() == 1 &&
                           steps.front().kind == QlumValueStep::Element;
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
    if (shown.isScalar() && shown.type() == OpcUaType_ExtensionObject &&
        writer.read(placed.place.attributeId, now).isNotBad() && now != shown) {
        outcome.hasChanged = true;
        return outcome;
    }
    return writer.write(placed.place.attributeId, placed.value, shown);
}

// The other parts are what the server has now. An element of an array says nothing about its neighbours; the
// fields of a structure may belong together.
QlumWriteOutcome QlumAttributeModel::sendWhole(QlumAttributeWriter& writer, const Placed& placed,
                                               const UaVariant& shown, bool isElement) const
{
    QlumWriteOutcome outcome;
    QlumTypedValue whole = wholeOf(placed.place.attributeId);
    outcome.result = writer.read(placed.place.attributeId, whole.value);
    if (outcome.result.isBad())
        return outcome;
    outcome.hasChanged = !isElement && whole.value != shown;
    if (outcome.hasChanged)
        return outcome;
    outcome.result = qlumReplacePart(whole, placed.place.steps, placed.value, m_rows.dictionary());
    if (outcome.result.isBad())
        return outcome;
    outcome = writer.write(placed.place.attributeId, whole.value, shown);
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
    if (!placed.place.steps.empty())
        return sent;
    if (placed.place.attributeId != OpcUa_Attributes_Value)
        return sent +
               tr(" The attribute holds %1.").arg(qlumTypeText(shown.value, shown.hint, m_rows.dictionary()));
    const QString declared = qlumDeclaredTypeName(m_context);
    return declared.isEmpty() ? sent : sent + tr(" The node declares %1.").arg(declared);
}

void QlumAttributeModel::finish(const Placed& placed, const QlumWriteOutcome& outcome,
                                const QModelIndex& index)
{
    const OpcUa_StatusCode code = outcome.service.isGood() ? outcome.result.code() : outcome.service.code();
    if (!outcome.service.isGood()) {
        log().error(tr("Write failed [ret = %1].").arg(qlumResultText(outcome.service)));
        const QString notSent = qlumNotSentText(outcome.service);
        writeRefused(placed.place, notSent.isEmpty() ? qlumWriteFailureText(code) : notSent, index);
        if (code == OpcUa_BadTimeout || code == OpcUa_BadRequestTimeout) // it may have arrived
            emit shownIsOld(false);
        return;
    }
    const QString node = toQString(m_nodeId.toFullString());
    const QString result = toQString(outcome.result.toString());
    if (outcome.hasChanged) {
        log().write(QlumLogLevel::Warning,
                    tr("Write to node '%1' was held back: it has changed on the server since it was shown.")
                        .arg(node));
        writeRefused(
            placed.place,
            tr("it has changed on the server since it was shown, and is read again; look at it, then "
               "write again"),
            index);
    } else if (!outcome.isGood()) {
        log().info(tr("Write to node '%1' failed [ret = %2].").arg(node, result));
        writeRefused(placed.place, qlumWriteFailureText(code) + sentText(placed, code), index);
    } else {
        log().info(tr("Write to node '%1' succeeded [ret = %2].").arg(node, result));
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
    if (outcome.isGood() || outcome.hasChanged)
        emit shownIsOld(true);
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

// The server may have rounded it or cut it, or something else has written meanwhile. What has not come with
// these attributes may come with the next ones.
void QlumAttributeModel::compareWithWritten(const QList<int>& attributeIds)
{
    if (!m_expected || !attributeIds.contains(m_expected->place.attributeId))
        return;
    const std::optional<Placed> expected = std::exchange(m_expected, std::nullopt);
    if (expected->value.isNull())
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
