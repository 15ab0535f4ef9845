// Subscriptions as a server tells of them.
#include <plugins/serverdiagnostics/qlumdiagnosticreader.h>

#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/serverdiagnostics/qlumdiagnosticvalue.h>
#include <plugins/serverdiagnostics/qlumserverdiagnosticwidget.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uavariant.h>

#include <QCoreApplication>
#include <QHash>

#include <algorithm>
#include <iterator>

namespace {
class SubscriptionListTexts
{
    Q_DECLARE_TR_FUNCTIONS(QlumServerDiagnosticWidget)
};

constexpr char wrongArray[] = "The BrowsePath's NamespaceIndex of the SubscriptionDiagnosticsArray child of "
                              "session node '%1' is wrong, should be 0 instead of 1";
constexpr char wrongChildren[] =
    "The BrowsePath's NamespaceIndex of the diagnostics children of subscription "
    "node '%1' is wrong, should be 0 instead of 1";
constexpr char wrongType[] = "The TypeDefinition of SubscriptionDiagnostics node '%1' is wrong, should be "
                             "SubscriptionDiagnosticsType instead of SubscriptionDiagnosticsDataType";
constexpr int fewNodePages = 6;
constexpr int manyNodePages = 100000;
constexpr std::size_t nodePortion = 500;

// False for what is no such structure.
bool fillSubscription(QlumSubscriptionRow& row, const UaExtensionObject& object)
{
    const void* structure = object.decoded(OpcUa_SubscriptionDiagnosticsDataType_EncodeableType);
    if (!structure)
        return false;
    const auto& from = *static_cast<const OpcUa_SubscriptionDiagnosticsDataType*>(structure);
    row.diagnostics = object;
    row.sessionId = UaNodeId(from.SessionId);
    row.id = from.SubscriptionId;
    row.name = QString::number(from.SubscriptionId);
    row.key = row.name;
    row.priority = from.Priority;
    row.interval = from.PublishingInterval;
    row.isPublishing = from.PublishingEnabled != 0;
    row.items = from.MonitoredItemCount;
    row.disabledItems = from.DisabledMonitoredItemCount;
    row.notifications = from.NotificationsCount;
    row.unacknowledged = from.UnacknowledgedMessageCount;
    row.discarded = from.DiscardedMessageCount;
    row.late = from.LatePublishRequestCount;
    row.overflows = from.MonitoringQueueOverflowCount + from.EventQueueOverflowCount;
    return true;
}

// Whether the value is an array of subscriptions, be it an empty one. How many elements are something else.
bool takeArray(const UaDataValue& array, QlumSubscriptionReading& reading, int& wrong)
{
    if (array.statusCode().isBad() || !array.value().isArray())
        return false;
    bool isOne = array.value().elementCount() == 0;
    for (OpcUa_UInt32 i = 0; i < array.value().elementCount(); ++i) {
        QlumSubscriptionRow row;
        if (fillSubscription(row, array.value().at(i).toExtensionObject())) {
            reading.rows.push_back(std::move(row));
            isOne = true;
        } else {
            ++wrong;
        }
    }
    return isOne;
}

QString nameOf(const OpcUa_ReferenceDescription& node)
{
    return toQString(UaLocalizedText(node.DisplayName).text());
}
} // namespace

QlumDiagnosticReader::Found QlumDiagnosticReader::browseSubscriptions(const UaNodeId& array, int mostPages)
{
    Found found = browse(array, OpcUa_NodeClass_Object | OpcUa_NodeClass_Variable, mostPages);
    UaReferenceDescriptions nodes;
    for (OpcUa_ReferenceDescription& reference : found.references) {
        const UaNodeId type(reference.TypeDefinition.NodeId);
        const bool isDataType = type.isNumeric(OpcUaId_SubscriptionDiagnosticsDataType);
        if (isDataType)
            m_faults.tell(QString::fromLatin1(wrongType).arg(
                toQString(UaNodeId(reference.NodeId.NodeId).toXmlString())));
        if ((isDataType || type.isNumeric(OpcUaId_SubscriptionDiagnosticsType)) && !nodes.append(reference))
            found.status = UaStatus(OpcUa_BadOutOfMemory);
    }
    found.references = std::move(nodes);
    return found;
}

QlumSubscriptionReading QlumDiagnosticReader::readSubscriptions()
{
    const UaNodeId array(OpcUaId_Server_ServerDiagnostics_SubscriptionDiagnosticsArray);
    QlumSubscriptionReading reading;
    std::vector<UaDataValue> values;
    reading.status = readValues(
        {array, UaNodeId(OpcUaId_Server_ServerDiagnostics_ServerDiagnosticsSummary_CurrentSubscriptionCount)},
        values);
    const bool isTooLarge = reading.status.statusCode() == OpcUa_BadResponseTooLarge ||
                            reading.status.statusCode() == OpcUa_BadEncodingLimitsExceeded;
    if (reading.status.isBad() && !isTooLarge)
        return reading;
    int wrong = 0;
    const bool isArray = takeArray(values[0], reading, wrong);
    const Found nodes = browseSubscriptions(array, reading.rows.empty() ? manyNodePages : fewNodePages);
    readNodes(nodes.references, reading);
    const bool mustHaveSome = !isArray || values[1].value().toUInt32() > 0;
    if (reading.rows.empty() && mustHaveSome && !m_job.isCancelled())
        readSubscriptionsOfSessions(reading);
    reading.time = QlumDiagnosticClock::now();
    const UaStatus status(values[0].statusCode());
    reading.status = reading.rows.empty() && status.isBad() ? status : UaStatus();
    if (wrong > 0 || (!isArray && status.isGood() && !values[0].value().isNull()))
        reading.hint = SubscriptionListTexts::tr("The server's list of subscriptions holds something else.");
    else if (status.isBad() && status.statusCode() != OpcUa_BadNodeIdUnknown)
        reading.hint = SubscriptionListTexts::tr("The server's list of subscriptions could not be read: %1")
                           .arg(qlumResultInWords(status));
    const UaNodeId own = m_services.sessionId();
    for (QlumSubscriptionRow& row : reading.rows)
        row.isOwn = !own.isNull() && row.sessionId == own;
    return reading;
}

// Gives the subscriptions that are known their nodes, and reads the others.
void QlumDiagnosticReader::readNodes(const UaReferenceDescriptions& nodes, QlumSubscriptionReading& reading)
{
    QHash<QString, std::size_t> known;
    for (std::size_t i = 0; i < reading.rows.size(); ++i)
        known.insert(reading.rows[i].name, i);
    const bool isNew = reading.rows.empty();
    std::vector<QlumSubscriptionRow> added;
    Ids ids;
    for (const OpcUa_ReferenceDescription& node : nodes) {
        const UaNodeId id(node.NodeId.NodeId);
        if (const auto found = known.constFind(nameOf(node)); found != known.constEnd()) {
            reading.rows[*found].nodeId = id;
        } else if (isNew) {
            QlumSubscriptionRow& row = added.emplace_back();
            row.nodeId = id;
            row.name = nameOf(node);
            row.key = toQString(id.toXmlString());
            ids.push_back(id);
        }
    }
    for (std::size_t first = 0; first < ids.size() && !m_job.isCancelled(); first += nodePortion) {
        m_job.setProgress(static_cast<qint64>(first), static_cast<qint64>(ids.size()));
        const std::size_t count = std::min(nodePortion, ids.size() - first);
        std::vector<UaDataValue> values;
        const auto from = ids.begin() + static_cast<std::ptrdiff_t>(first);
        if (readValues(Ids(from, from + static_cast<std::ptrdiff_t>(count)), values).isBad())
            break;
        for (std::size_t i = 0; i < count; ++i)
            fillSubscription(added[first + i], values[i].value().toExtensionObject());
    }
    std::move(added.begin(), added.end(), std::back_inserter(reading.rows));
}

void QlumDiagnosticReader::readSubscriptionsOfSessions(QlumSubscriptionReading& reading)
{
    const Found sessions = browseSessions(manyNodePages);
    Ids objects;
    for (const OpcUa_ReferenceDescription& session : sessions.references)
        objects.emplace_back(session.NodeId.NodeId);
    const Ids arrays = findBelow(objects, "SubscriptionDiagnosticsArray", wrongArray);
    std::vector<UaDataValue> values;
    if (readValues(arrays, values).isBad())
        return;
    for (std::size_t i = 0; i < arrays.size() && !m_job.isCancelled(); ++i) {
        m_job.setProgress(static_cast<qint64>(i), static_cast<qint64>(arrays.size()));
        if (arrays[i].isNull())
            continue;
        QlumSubscriptionReading ofSession;
        int wrong = 0;
        const bool isArray = takeArray(values[i], ofSession, wrong);
        if (!isArray || !ofSession.rows.empty())
            readNodes(browseSubscriptions(arrays[i], manyNodePages).references, ofSession);
        for (QlumSubscriptionRow& row : ofSession.rows) {
            if (row.sessionId.isNull())
                row.sessionId = objects[i];
            row.sessionName = nameOf(sessions.references[static_cast<OpcUa_UInt32>(i)]);
            reading.rows.push_back(std::move(row));
        }
    }
}

QlumDetailReading QlumDiagnosticReader::readSubscription(const QlumSubscriptionRow& row)
{
    QlumDetailReading reading;
    reading.values.assign(qlumSubscriptionRows().size(), UaDataValue(UaVariant(), OpcUa_BadNodeIdUnknown));
    if (!row.nodeId.isNull())
        reading.values = readChildren({{row.nodeId, nullptr, qlumSubscriptionRows(), wrongChildren}})[0];
    qlumFillAbsent(reading.values, row.diagnostics, qlumSubscriptionRows());
    reading.time = QlumDiagnosticClock::now();
    return reading;
}
