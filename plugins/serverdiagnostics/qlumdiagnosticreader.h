#pragma once
#include <app/api/qlumjob.h>
#include <app/api/qlumsessionservices.h>
#include <opcua/opcua_types.h>
#include <plugins/serverdiagnostics/qlumdiagnosticdata.h>
#include <plugins/serverdiagnostics/qlumdiagnosticrows.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>

#include <QSet>
#include <QString>

#include <cstddef>
#include <functional>
#include <map>
#include <mutex>
#include <span>
#include <utility>
#include <vector>

/// What was found wrong with a server, told in the log once for each node however often it is read. Any
/// thread.
class QlumDiagnosticFaults
{
public:
    /// Of the server with that id.
    explicit QlumDiagnosticFaults(unsigned int serverId) : m_serverId(serverId) {}

    /// An entry of the log, unless it was made before.
    void tell(const QString& text);

private:
    const unsigned int m_serverId;
    std::mutex m_mutex;
    QSet<QString> m_told;
};

/// Reads what a server tells of itself, in as few calls as the server allows. For one job; blocks, and ends
/// early when the job is cancelled.
class QlumDiagnosticReader
{
public:
    /// All must live as long.
    QlumDiagnosticReader(QlumSessionServices& services, QlumJob& job, QlumDiagnosticFaults& faults);

    /// The rows about the server.
    [[nodiscard]] QlumServerReading readServer();
    /// Its sessions: of its arrays, and of the objects of those that are not in them.
    [[nodiscard]] QlumSessionReading readSessions();
    /// One of them, as it is now.
    [[nodiscard]] QlumDetailReading readSession(const QlumSessionRow& row);
    /// Its subscriptions: of its array, else of its nodes, else of its sessions.
    [[nodiscard]] QlumSubscriptionReading readSubscriptions();
    /// One of them, as it is now.
    [[nodiscard]] QlumDetailReading readSubscription(const QlumSubscriptionRow& row);

private:
    /// A step of a browse path.
    struct Step
    {
        const char* name;
        OpcUa_UInt16 namespaceIndex;
    };
    /// From a node to one below it.
    struct Path
    {
        UaNodeId start;
        std::vector<Step> steps;
    };
    /// What a browse has found.
    struct Found
    {
        UaStatus status;
        UaReferenceDescriptions references;
    };
    /// Children of one node that are read together.
    struct Children
    {
        UaNodeId start;
        const char* below; ///< name of the child that has them; null for the node itself
        std::span<const QlumDetailRow> rows;
        const char* wrongNamespace; ///< what is logged when their names are in namespace 1, with %1
    };
    using Ids = std::vector<UaNodeId>;

    // ---- calls
    [[nodiscard]] UaStatus readValues(const Ids& ids, std::vector<UaDataValue>& values);
    [[nodiscard]] UaStatus translate(const std::vector<Path>& paths, Ids& ids);
    [[nodiscard]] Found browse(const UaNodeId& start, OpcUa_UInt32 nodeClasses, int mostPages);
    [[nodiscard]] std::vector<UaDataValue> readFolders(const Ids& ids);

    [[nodiscard]] std::vector<std::vector<UaDataValue>> readChildren(const std::vector<Children>& groups);
    [[nodiscard]] UaStatus findChildren(const std::vector<Children>& groups, std::vector<Ids>& ids);
    void findElsewhere(const Children& group, Ids& ids);
    [[nodiscard]] Ids findBelow(const Ids& objects, const char* child, const char* wrongNamespace);

    // ---- sessions
    [[nodiscard]] Found browseSessions(int mostPages);
    void addArrays(const UaDataValue& diagnostics, const UaDataValue& security, QlumSessionReading& reading);
    static void addObjects(const UaReferenceDescriptions& objects, QlumSessionReading& reading);
    void readObjects(QlumSessionReading& reading);
    void judge(const UaDateTime& now, QlumSessionReading& reading);

    // ---- subscriptions
    [[nodiscard]] Found browseSubscriptions(const UaNodeId& array, int mostPages);
    void readNodes(const UaReferenceDescriptions& nodes, QlumSubscriptionReading& reading);
    void readSubscriptionsOfSessions(QlumSubscriptionReading& reading);

    QlumSessionServices& m_services;
    QlumJob& m_job;
    QlumDiagnosticFaults& m_faults;
};
