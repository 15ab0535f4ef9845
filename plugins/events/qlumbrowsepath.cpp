#include <plugins/events/qlumbrowsepath.h>

#include <app/api/qlumtext.h>
#include <opcua/opcua_identifiers.h>

#include <QChar>
#include <QStringList>

#include <limits>
#include <utility>

namespace {
const QChar slash = QLatin1Char('/');
const QChar colon = QLatin1Char(':');
const QChar escape = QLatin1Char('&');

QString escaped(const QString& name)
{
    QString text;
    for (const QChar c : name) {
        if (c == slash || c == colon || c == escape)
            text += escape;
        text += c;
    }
    return text;
}

// Reads up to a separator and drops it; false when none comes.
bool takeUntil(const QString& text, int& at, QChar separator, QString& part)
{
    part.clear();
    for (int i = at; i < text.size(); ++i) {
        if (text.at(i) == separator) {
            at = i + 1;
            return true;
        }
        if (text.at(i) == escape && ++i == text.size())
            return false;
        part += text.at(i);
    }
    return false;
}

// "2:" before a name; anything else leaves the place where it is.
OpcUa_UInt16 takeNamespace(const QString& text, int& at)
{
    int end = at;
    while (end < text.size() && text.at(end) >= QLatin1Char('0') && text.at(end) <= QLatin1Char('9'))
        ++end;
    if (end == at || end >= text.size() || text.at(end) != colon)
        return 0;
    const uint number = text.mid(at, end - at).toUInt();
    at = end + 1;
    return number <= std::numeric_limits<OpcUa_UInt16>::max() ? static_cast<OpcUa_UInt16>(number) : 0;
}
} // namespace

QString BrowsePathList::toString() const
{
    QString text;
    for (const UaQualifiedName& name : m_names) {
        if (name.namespaceIndex() != 0)
            text += QString::number(name.namespaceIndex()) + colon;
        text += escaped(toQString(name.name())) + slash;
    }
    return text;
}

BrowsePathList BrowsePathList::fromString(const QString& text)
{
    UaBrowseNames names;
    QString name;
    for (int at = 0; at < text.size();) {
        const OpcUa_UInt16 namespaceIndex = takeNamespace(text, at);
        if (!takeUntil(text, at, slash, name) || name.isEmpty())
            return {};
        names.emplace_back(toUaString(name), namespaceIndex);
    }
    return BrowsePathList(std::move(names));
}

QString BrowsePathList::fieldName() const
{
    if (isEmpty())
        return QStringLiteral("ConditionId");
    QString text = toString();
    text.chop(1);
    return text;
}

BrowsePathList BrowsePathList::child(const UaQualifiedName& name) const
{
    BrowsePathList path = *this;
    path.m_names.push_back(name);
    return path;
}

QString qlumStoredClause(const QlumSelectClause& clause)
{
    return QStringLiteral("%1\t%2\t%3")
        .arg(clause.isObject ? QLatin1String("object") : QLatin1String("value"), clause.path.toString(),
             toQString(clause.eventType.toXmlString()));
}

bool qlumReadClause(const QString& line, QlumSelectClause& clause)
{
    const QStringList parts = line.split(QLatin1Char('\t'));
    if (parts.size() != 3)
        return false;
    bool isId = false;
    clause.eventType = UaNodeId::fromString(parts.at(2).toStdString(), &isId);
    clause.path = BrowsePathList::fromString(parts.at(1));
    clause.isObject = parts.at(0) == QLatin1String("object");
    return isId && clause.path.isEmpty() == parts.at(1).isEmpty();
}

QlumSelectClauses qlumStandardClauses()
{
    struct Row
    {
        OpcUa_UInt32 type;
        const char* path;
    };
    static constexpr Row rows[] = {
        {OpcUaId_BaseEventType, "EventId/"},
        {OpcUaId_BaseEventType, "EventType/"},
        {OpcUaId_BaseEventType, "SourceNode/"},
        {OpcUaId_BaseEventType, "SourceName/"},
        {OpcUaId_BaseEventType, "Time/"},
        {OpcUaId_BaseEventType, "ReceiveTime/"},
        {OpcUaId_BaseEventType, "LocalTime/"},
        {OpcUaId_BaseEventType, "Message/"},
        {OpcUaId_BaseEventType, "Severity/"},
        {OpcUaId_ConditionType, ""},
        {OpcUaId_ConditionType, "ConditionName/"},
        {OpcUaId_ConditionType, "BranchId/"},
        {OpcUaId_ConditionType, "Retain/"},
        {OpcUaId_AcknowledgeableConditionType, "AckedState/Id/"},
        {OpcUaId_AcknowledgeableConditionType, "ConfirmedState/Id/"},
        {OpcUaId_AlarmConditionType, "ActiveState/"},
        {OpcUaId_AlarmConditionType, "ActiveState/Id/"},
        {OpcUaId_AlarmConditionType, "ActiveState/EffectiveDisplayName/"},
        {OpcUaId_DialogConditionType, "DialogState/Id/"},
        {OpcUaId_DialogConditionType, "Prompt/"},
        {OpcUaId_DialogConditionType, "ResponseOptionSet/"},
        {OpcUaId_DialogConditionType, "DefaultResponse/"},
    };
    QlumSelectClauses clauses;
    for (const Row& row : rows)
        clauses.push_back({UaNodeId(row.type), BrowsePathList::fromString(QLatin1String(row.path)), false});
    return clauses;
}
