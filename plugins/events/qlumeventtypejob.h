#pragma once
#include <app/api/qlumjob.h>
#include <app/api/qlumlog.h>
#include <app/api/qlumsessionservices.h>
#include <plugins/events/qlumeventtypetree.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/servicesettings.h>

#include <QString>

#include <memory>
#include <set>
#include <vector>

/// Reads the event types of a server with their fields, level by level and many nodes in a call. Lives on a
/// job's thread; what fails is logged, and the tree then has what was read.
class QlumEventTypeReader
{
public:
    /// The job is asked whether it shall go on, and told how far it is.
    QlumEventTypeReader(unsigned int serverId, QlumSessionServices& session, QlumJob& job);

    /// The three roots with all that is below them; null when nothing could be read or the job was cancelled.
    [[nodiscard]] std::unique_ptr<QlumEventNodeTypeTree> read();
    /// Why there is no tree, or only a part of one: the first failure. Good where nothing failed.
    [[nodiscard]] const UaStatus& status() const { return m_status; }
    /// Whether there is more than the settings, or this class, let it read.
    [[nodiscard]] bool isCut() const { return m_isCut; }

private:
    using Node = QlumEventNodeTypeTree;
    using Nodes = std::vector<Node*>;

    void recursiveBrowseTypeTree(Nodes level);
    void failed(const UaStatus& status, const Node* node = nullptr);
    [[nodiscard]] bool browse(const Nodes& nodes, std::size_t first, std::size_t count, Nodes& found);
    void follow(const Nodes& nodes, std::size_t first, UaBrowseResults& results,
                std::vector<UaReferenceDescriptions>& references);
    void take(Node& parent, const UaReferenceDescriptions& references, Nodes& found);

    const QlumLog m_log;
    QlumSessionServices& m_session;
    QlumJob& m_job;
    UaClientSdk::ServiceSettings m_settings;
    UaStatus m_status;
    std::set<UaNodeId> m_types; ///< that are in the tree
    qint64 m_browsed = 0;
    bool m_isCut = false;
};
