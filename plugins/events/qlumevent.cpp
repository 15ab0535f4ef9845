#include <plugins/events/qlumevent.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_identifiers.h>
#include <plugins/events/qlumeventsettings.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastring.h>

#include <QLocale>

#include <algorithm>
#include <string_view>
#include <utility>

namespace {
constexpr std::array<const char*, qlumFieldCount> fieldNames{"EventId",
                                                             "EventType",
                                                             "SourceNode",
                                                             "SourceName",
                                                             "Time",
                                                             "Message",
                                                             "Severity",
                                                             "ConditionId",
                                                             "ConditionName",
                                                             "BranchId",
                                                             "Retain",
                                                             "ActiveState",
                                                             "ActiveState/Id",
                                                             "ActiveState/EffectiveDisplayName",
                                                             "AckedState/Id",
                                                             "ConfirmedState/Id",
                                                             "EnabledState/Id",
                                                             "ShelvingState/CurrentState",
                                                             "DialogState/Id",
                                                             "Prompt",
                                                             "ResponseOptionSet",
                                                             "DefaultResponse"};
constexpr int shownText = 256;

// Of a text of megabytes no more is turned round than a cell can show.
QString shortText(const UaString& text)
{
    constexpr std::size_t enough = 4 * shownText + 8;
    if (text.size() <= enough)
        return qlumSingleLine(qlumCutText(toQString(text), shownText));
    return qlumSingleLine(qlumCutText(toQString(UaString(text.view().substr(0, enough))), shownText));
}
} // namespace

QString qlumFieldName(QlumField field)
{
    return QLatin1String(fieldNames[static_cast<std::size_t>(field)]);
}

QStringList qlumNeededFields()
{
    QStringList names;
    for (const QlumField field :
         {QlumField::EventId, QlumField::EventType, QlumField::SourceName, QlumField::Time,
          QlumField::Message, QlumField::Severity, QlumField::ConditionId, QlumField::ConditionName,
          QlumField::BranchId, QlumField::Retain, QlumField::ActiveState, QlumField::ActiveId,
          QlumField::ActiveText, QlumField::AckedId, QlumField::ConfirmedId, QlumField::DialogId,
          QlumField::Prompt, QlumField::ResponseOptionSet, QlumField::DefaultResponse})
        names.append(qlumFieldName(field));
    return names;
}

QlumFieldNames::QlumFieldNames(QStringList names) : m_names(std::move(names))
{
    for (int i = 0; i < m_names.size(); ++i)
        if (!m_indexes.contains(m_names.at(i)))
            m_indexes.insert(m_names.at(i), i);
    for (int field = 0; field < qlumFieldCount; ++field)
        m_known[static_cast<std::size_t>(field)] = indexOf(qlumFieldName(static_cast<QlumField>(field)));
}

std::shared_ptr<const QlumFieldNames> QlumFieldNames::of(const QlumSelectClauses& clauses)
{
    QStringList names;
    for (const QlumSelectClause& clause : clauses)
        if (const QString name = clause.path.fieldName(); !names.contains(name))
            names.append(name);
    return std::make_shared<const QlumFieldNames>(names);
}

QlumEventFields::QlumEventFields(std::shared_ptr<const QlumFieldNames> names, OpcUa_Variant* values,
                                 OpcUa_Int32 count)
    : m_names(std::move(names))
{
    const int wanted = m_names ? m_names->names().size() : 0;
    m_values.resize(static_cast<std::size_t>(std::clamp(static_cast<int>(count), 0, wanted)));
    for (std::size_t i = 0; i < m_values.size(); ++i)
        m_values[i].attach(&values[i]);
}

const UaVariant& QlumEventFields::nothing()
{
    static const UaVariant null;
    return null;
}

const UaVariant& QlumEventFields::at(int index) const
{
    return index >= 0 && static_cast<std::size_t>(index) < m_values.size()
               ? m_values[static_cast<std::size_t>(index)]
               : nothing();
}

int QlumEvent::severity() const
{
    const UaVariant& value = fields.value(QlumField::Severity);
    const int number = value.isScalar() && !value.isNull() ? value.toUInt16() : 0;
    return number;
}

QString QlumEvent::text(QlumField field) const
{
    return qlumEventText(fields.value(field));
}

QString QlumEvent::text(const QString& fieldName) const
{
    return qlumEventText(fields.value(fieldName));
}

QDateTime QlumEvent::time() const
{
    const UaVariant& value = fields.value(QlumField::Time);
    return value.type() == OpcUaType_DateTime && value.isScalar() ? qlumDateTime(value.toDateTime())
                                                                  : QDateTime();
}

QString QlumEvent::timeInFull() const
{
    return time().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz"));
}

UaNodeId QlumEvent::nodeId(QlumField field) const
{
    const UaVariant& value = fields.value(field);
    return value.type() == OpcUaType_NodeId && value.isScalar() ? value.toNodeId() : UaNodeId();
}

bool QlumEvent::is(QlumField field, bool value) const
{
    const UaVariant& known = fields.value(field);
    return known.type() == OpcUaType_Boolean && known.isScalar() && known.toBool() == value;
}

bool QlumEvent::isRefreshEvent() const
{
    const UaNodeId type = eventType();
    return type.isNumeric(OpcUaId_RefreshStartEventType) || type.isNumeric(OpcUaId_RefreshEndEventType) ||
           type.isNumeric(OpcUaId_RefreshRequiredEventType);
}

QString qlumEventText(const UaVariant& value)
{
    if (value.isNull())
        return {};
    if (value.isScalar() && value.type() == OpcUaType_DateTime)
        return qlumEventTime(qlumDateTime(value.toDateTime()));
    if (value.isScalar() && value.type() == OpcUaType_LocalizedText)
        return shortText(value.toLocalizedText().text());
    if (value.isScalar() && value.type() == OpcUaType_ByteString)
        return QStringLiteral("0x") +
               shortText(UaByteString(value.toByteString().bytes().subspan(
                                          0, std::min<std::size_t>(value.toByteString().bytes().size(), 64)))
                             .toHex());
    return shortText(value.toString());
}

QString qlumEventTime(const QDateTime& time)
{
    return QlumEventSettings::showDate.value() ? qlumShowDateTime(time) : qlumShowTime(time);
}
