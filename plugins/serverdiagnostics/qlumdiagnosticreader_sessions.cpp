// Sessions as a server tells of them.
#include <plugins/serverdiagnostics/qlumdiagnosticreader.h>

#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/serverdiagnostics/qlumdiagnosticsettings.h>
#include <plugins/serverdiagnostics/qlumdiagnosticvalue.h>
#include <plugins/serverdiagnostics/qlumserverdiagnosticwidget.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QCoreApplication>
#include <QHash>

#include <algorithm>

namespace {
class SessionTexts
{
    Q_DECLARE_TR_FUNCTIONS(QlumServerDiagnosticWidget)
};

constexpr char wrongDiagnostics[] = "The BrowsePath's NamespaceIndex of the diagnostics children of session "
                                    "node '%1' is wrong, should be 0 instead of 1";
constexpr char wrongSecurity[] = "The BrowsePath's NamespaceIndex of the security diagnostics children of "
                                 "session node '%1' is wrong, should be 0 instead of 1";
constexpr int fewPages = 7;          // beside the arrays, which tell nearly everything
constexpr int manyPages = 100000;    // a session a page
constexpr std::size_t portion = 200; // sessions between two looks at whether to go on

QString idText(const UaNodeId& id)
{
    return toQString(id.toXmlString());
}

void fill(QlumSessionRow& row, const UaExtensionObject& object)
{
    const void* structure = object.decoded(OpcUa_SessionDiagnosticsDataType_EncodeableType);
    if (!structure)
        return;
    const auto& from = *static_cast<const OpcUa_SessionDiagnosticsDataType*>(structure);
    row.diagnostics = object;
    row.sessionId = UaNodeId(from.SessionId);
    row.name = toQString(UaString(from.SessionName));
    row.applicationName = toQString(UaLocalizedText(from.ClientDescription.ApplicationName).text());
    row.applicationUri = toQString(UaString(from.ClientDescription.ApplicationUri));
    row.endpointUrl = toQString(UaString(from.EndpointUrl));
    row.connected = UaDateTime(from.ClientConnectionTime);
    row.lastContact = UaDateTime(from.ClientLastContactTime);
    row.timeout = from.ActualSessionTimeout;
    row.subscriptions = from.CurrentSubscriptionsCount;
    row.items = from.CurrentMonitoredItemsCount;
    row.publishRequests = from.CurrentPublishRequestsInQueue;
    row.requests = from.TotalRequestCount.TotalCount;
    row.errors = from.TotalRequestCount.ErrorCount;
    row.unauthorized = from.UnauthorizedRequestCount;
}

void fillSecurity(QlumSessionRow& row, const UaExtensionObject& object)
{
    const void* structure = object.decoded(OpcUa_SessionSecurityDiagnosticsDataType_EncodeableType);
    if (!structure)
        return;
    const auto& from = *static_cast<const OpcUa_SessionSecurityDiagnosticsDataType*>(structure);
    row.security = object;
    row.user = toQString(UaString(from.ClientUserIdOfSession));
    row.securityMode = qlumDiagnosticMode(from.SecurityMode);
    row.securityPolicy = qlumDiagnosticPolicy(toQString(UaString(from.SecurityPolicyUri)));
}

// The elements of that type; the number of those that are something else.
OpcUa_UInt32 takeElements(const UaDataValue& array, const OpcUa_EncodeableType& type,
                          std::vector<UaExtensionObject>& elements)
{
    OpcUa_UInt32 wrong = array.value().isScalar() && !array.value().isNull() ? 1 : 0;
    for (OpcUa_UInt32 i = 0; i < array.value().elementCount(); ++i) {
        UaExtensionObject element = array.value().at(i).toExtensionObject();
        if (element.decoded(type))
            elements.push_back(std::move(element));
        else
            ++wrong;
    }
    return wrong;
}
} // namespace

QlumDiagnosticReader::Found QlumDiagnosticReader::browseSessions(int mostPages)
{
    Found found = browse(UaNodeId(OpcUaId_Server_ServerDiagnostics_SessionsDiagnosticsSummary),
                         OpcUa_NodeClass_Object, mostPages);
    UaReferenceDescriptions sessions;
    for (OpcUa_ReferenceDescription& reference : found.references)
        if (UaNodeId(reference.TypeDefinition.NodeId).isNumeric(OpcUaId_SessionDiagnosticsObjectType) &&
            !sessions.append(reference))
            found.status = UaStatus(OpcUa_BadOutOfMemory);
    found.references = std::move(sessions);
    return found;
}

QlumSessionReading QlumDiagnosticReader::readSessions()
{
    QlumSessionReading reading;
    std::vector<UaDataValue> values;
    reading.status = readValues(
        {UaNodeId(OpcUaId_Server_ServerDiagnostics_SessionsDiagnosticsSummary_SessionDiagnosticsArray),
         UaNodeId(
             OpcUaId_Server_ServerDiagnostics_SessionsDiagnosticsSummary_SessionSecurityDiagnosticsArray),
         UaNodeId(OpcUaId_Server_ServerStatus_CurrentTime)},
        values);
    // an answer that is too large says nothing against smaller ones
    const bool isTooLarge = reading.status.statusCode() == OpcUa_BadResponseTooLarge ||
                            reading.status.statusCode() == OpcUa_BadEncodingLimitsExceeded;
    if (reading.status.isBad() && !isTooLarge)
        return reading;
    if (isTooLarge) { // the time was in it, too
        std::vector<UaDataValue> time;
        static_cast<void>(readValues({UaNodeId(OpcUaId_Server_ServerStatus_CurrentTime)}, time));
        values[2] = time[0];
    }
    addArrays(values[0], values[1], reading);
    const bool hasArray = !reading.rows.empty();
    const Found objects = browseSessions(hasArray ? fewPages : manyPages);
    addObjects(objects.references, reading);
    if (!m_job.isCancelled())
        readObjects(reading);
    reading.time = QlumDiagnosticClock::now();
    reading.status = !hasArray && objects.status.isBad() ? objects.status : UaStatus();
    if (reading.rows.empty() && values[0].statusCode().isBad())
        reading.status = UaStatus(values[0].statusCode());
    judge(values[2].value().toDateTime(), reading);
    return reading;
}

void QlumDiagnosticReader::addArrays(const UaDataValue& diagnostics, const UaDataValue& security,
                                     QlumSessionReading& reading)
{
    std::vector<UaExtensionObject> elements;
    std::vector<UaExtensionObject> secrets;
    const OpcUa_UInt32 wrong =
        takeElements(diagnostics, OpcUa_SessionDiagnosticsDataType_EncodeableType, elements);
    const OpcUa_UInt32 wrongSecrets =
        takeElements(security, OpcUa_SessionSecurityDiagnosticsDataType_EncodeableType, secrets);
    QHash<QString, int> byId;
    for (const UaExtensionObject& element : elements) {
        QlumSessionRow row;
        fill(row, element);
        row.key = idText(row.sessionId);
        byId.insert(row.key, static_cast<int>(reading.rows.size()));
        reading.rows.push_back(std::move(row));
    }
    for (const UaExtensionObject& element : secrets) {
        QlumSessionRow row;
        fillSecurity(row, element);
        const void* structure = element.decoded(OpcUa_SessionSecurityDiagnosticsDataType_EncodeableType);
        const auto& from = *static_cast<const OpcUa_SessionSecurityDiagnosticsDataType*>(structure);
        if (const auto found = byId.constFind(idText(UaNodeId(from.SessionId))); found != byId.constEnd())
            fillSecurity(reading.rows[static_cast<std::size_t>(*found)], element);
    }
    if (wrong > 0)
        reading.hint = SessionTexts::tr("%n elements of the server's list of sessions are something else.",
                                        nullptr, static_cast<int>(wrong));
    else if (diagnostics.statusCode().isBad() && diagnostics.statusCode().code() != OpcUa_BadNodeIdUnknown)
        reading.hint = SessionTexts::tr("The server's list of sessions could not be read: %1")
                           .arg(qlumResultInWords(UaStatus(diagnostics.statusCode())));
    else if (wrongSecrets > 0)
        reading.hint = SessionTexts::tr("%n elements of the server's list of secured sessions are something "
                                        "else.",
                                        nullptr, static_cast<int>(wrongSecrets));
    else if (security.statusCode().isBad() && security.statusCode().code() != OpcUa_BadNodeIdUnknown)
        reading.hint = SessionTexts::tr("How sessions are secured could not be read: %1. Servers often tell "
                                        "it over encrypted connections, and to administrators only.")
                           .arg(qlumResultInWords(UaStatus(security.statusCode())));
}

// An object has the id of its session on most servers, its name on others.
void QlumDiagnosticReader::addObjects(const UaReferenceDescriptions& objects, QlumSessionReading& reading)
{
    QHash<QString, int> byId;
    QHash<QString, int> byName;
    for (int i = 0; i < static_cast<int>(reading.rows.size()); ++i) {
        const QlumSessionRow& row = reading.rows[static_cast<std::size_t>(i)];
        byId.insert(row.key, i);
        byName.insert(row.name, byName.contains(row.name) ? -1 : i); // of namesakes nobody knows which
    }
    for (const OpcUa_ReferenceDescription& object : objects) {
        const UaNodeId id(object.NodeId.NodeId);
        const QString name = toQString(UaLocalizedText(object.DisplayName).text());
        const int found = byId.value(idText(id), byName.value(name, -1));
        if (found >= 0) {
            reading.rows[static_cast<std::size_t>(found)].objectId = id;
            continue;
        }
        QlumSessionRow row;
        row.key = idText(id);
        row.objectId = id;
        row.name = name;
        reading.rows.push_back(std::move(row));
    }
}

// Of sessions that are not in the array their own variables.
void QlumDiagnosticReader::readObjects(QlumSessionReading& reading)
{
    std::vector<std::size_t> rows;
    for (std::size_t i = 0; i < reading.rows.size(); ++i)
        if (reading.rows[i].diagnostics.isNull())
            rows.push_back(i);
    for (std::size_t first = 0; first < rows.size() && !m_job.isCancelled(); first += portion) {
        m_job.setProgress(static_cast<qint64>(first), static_cast<qint64>(rows.size()));
        const std::size_t count = std::min(portion, rows.size() - first);
        Ids objects;
        for (std::size_t i = first; i < first + count; ++i)
            objects.push_back(reading.rows[rows[i]].objectId);
        Ids variables = findBelow(objects, "SessionDiagnostics", wrongDiagnostics);
        const Ids security = findBelow(objects, "SessionSecurityDiagnostics", wrongSecurity);
        variables.insert(variables.end(), security.begin(), security.end());
        std::vector<UaDataValue> values;
        if (readValues(variables, values).isBad())
            return;
        for (std::size_t i = 0; i < count; ++i) {
            QlumSessionRow& row = reading.rows[rows[first + i]];
            const QString name = row.name;
            fill(row, values[i].value().toExtensionObject());
            fillSecurity(row, values[count + i].value().toExtensionObject());
            if (row.name.isEmpty())
                row.name = name;
        }
    }
}

// Which one is ours, and which ones look as if they had been.
void QlumDiagnosticReader::judge(const UaDateTime& now, QlumSessionReading& reading)
{
    const UaNodeId own = m_services.sessionId();
    QString application;
    for (QlumSessionRow& row : reading.rows) {
        row.isOwn = !own.isNull() && (row.sessionId == own || row.objectId == own);
        if (row.isOwn)
            application = row.applicationUri;
        if (row.name.isEmpty())
            row.name = row.key;
    }
    if (application.isEmpty() || now.isNull())
        return;
    constexpr double milliseconds = 1000;
    const double longest = QlumDiagnosticSettings::forgottenAfter.value();
    for (QlumSessionRow& row : reading.rows) {
        const double silence =
            row.lastContact.isNull() ? -1 : static_cast<double>(row.lastContact.msecsTo(now)) / milliseconds;
        if (!row.isOwn && row.applicationUri == application && silence >= longest)
            row.silence = silence;
    }
}

QlumDetailReading QlumDiagnosticReader::readSession(const QlumSessionRow& row)
{
    const UaDataValue absent(UaVariant(), OpcUa_BadNodeIdUnknown);
    QlumDetailReading reading;
    reading.values.assign(qlumSessionRows().size(), absent);
    reading.security.assign(qlumSessionSecurityRows().size(), absent);
    if (!row.objectId.isNull()) {
        const auto groups = readChildren(
            {{row.objectId, "SessionDiagnostics", qlumSessionRows(), wrongDiagnostics},
             {row.objectId, "SessionSecurityDiagnostics", qlumSessionSecurityRows(), wrongSecurity}});
        reading.values = groups[0];
        reading.security = groups[1];
    }
    // what has no node as the list has it
    qlumFillAbsent(reading.values, row.diagnostics, qlumSessionRows());
    qlumFillAbsent(reading.security, row.security, qlumSessionSecurityRows());
    reading.time = QlumDiagnosticClock::now();
    return reading;
}
