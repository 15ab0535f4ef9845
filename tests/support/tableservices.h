// The services of a session whose server is a table of nodes.
#pragma once
#include <tests/support/nodetable.h>
#include <tests/support/testclock.h>
#include <tests/support/unscriptedservices.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>

#include <atomic>
#include <cstdint>
#include <list>
#include <map>
#include <mutex>
#include <string>

/// States, delays and answers may be set at any time and from any thread. A service that takes longer than
/// its call's time-out ends with BadTimeout; time is that of the clock.
class TableServices : public UnscriptedServices
{
public:
    using Service = NodeTable::Service;

    NodeTable table;
    TestClock clock;

    /// How long the server takes for each call of a service.
    void delay(Service service, std::int64_t milliseconds);
    /// What each call of a service ends with as a whole.
    void failCalls(Service service, OpcUa_StatusCode status);
    /// As when the session is closed: calls under way end, and so do all to come.
    void disconnect();
    [[nodiscard]] int calls(Service service) const;
    /// Of the latest call.
    [[nodiscard]] std::string lastPurpose() const;

    bool isConnected() const override;
    UaStatus read(Settings& settings, double maxAge, OpcUa_TimestampsToReturn timestampsToReturn,
                  const UaReadValueIds& nodes, UaDataValues& values) override;
    UaStatus write(Settings& settings, const UaWriteValues& nodes, UaStatusCodeArray& results) override;
    UaStatus call(Settings& settings, const UaClientSdk::CallIn& callIn,
                  UaClientSdk::CallOut& callOut) override;
    UaStatus callList(Settings& settings, const UaCallMethodRequests& requests,
                      UaCallMethodResults& results) override;
    UaStatus getMethodArguments(Settings& settings, const UaNodeId& methodId, UaArguments& inputArguments,
                                UaArguments& outputArguments) override;
    UaStatus browse(Settings& settings, const UaNodeId& node, const UaClientSdk::BrowseContext& context,
                    UaByteString& continuationPoint, UaReferenceDescriptions& references) override;
    UaStatus browseNext(Settings& settings, bool release, UaByteString& continuationPoint,
                        UaReferenceDescriptions& references) override;
    UaStatus browseList(Settings& settings, const UaNodeId& viewId, OpcUa_UInt32 maximumReferences,
                        const UaBrowseDescriptions& nodes, UaBrowseResults& results) override;
    UaStatus browseListNext(Settings& settings, bool release, const UaByteStringArray& points,
                            UaBrowseResults& results) override;
    UaStatus translateBrowsePathsToNodeIds(Settings& settings, const UaBrowsePaths& paths,
                                           UaBrowsePathResults& results) override;
    UaStatus registerNodes(Settings& settings, const UaNodeIdArray& nodes,
                           UaNodeIdArray& registeredNodes) override;
    UaStatus unregisterNodes(Settings& settings, const UaNodeIdArray& nodes) override;
    UaStatus addNodes(Settings& settings, const UaAddNodesItems& nodes, UaAddNodesResults& results) override;
    UaStatus addReferences(Settings& settings, const UaAddReferencesItems& references,
                           UaStatusCodeArray& results) override;
    UaStatus deleteNodes(Settings& settings, const UaDeleteNodesItems& nodes,
                         UaStatusCodeArray& results) override;
    UaStatus deleteReferences(Settings& settings, const UaDeleteReferencesItems& references,
                              UaStatusCodeArray& results) override;
    UaStatus historyReadRawModified(Settings& settings,
                                    const UaClientSdk::HistoryReadRawModifiedContext& context,
                                    const UaHistoryReadValueIds& nodes,
                                    UaClientSdk::HistoryReadDataResults& results) override;
    UaStatus historyReadProcessed(Settings& settings, const UaClientSdk::HistoryReadProcessedContext& context,
                                  const UaHistoryReadValueIds& nodes,
                                  UaClientSdk::HistoryReadDataResults& results) override;
    UaStatus historyReadAtTime(Settings& settings, const UaClientSdk::HistoryReadAtTimeContext& context,
                               const UaHistoryReadValueIds& nodes,
                               UaClientSdk::HistoryReadDataResults& results) override;
    UaStatus historyReadEvent(Settings& settings, const UaClientSdk::HistoryReadEventContext& context,
                              const UaHistoryReadValueIds& nodes,
                              UaClientSdk::HistoryReadEventResults& results) override;
    UaStatus historyUpdateData(Settings& settings, const UaUpdateDataDetailsArray& details,
                               UaHistoryUpdateResults& results) override;
    UaStatus historyUpdateEvents(Settings& settings, const UaUpdateEventDetailsArray& details,
                                 UaHistoryUpdateResults& results) override;
    UaStatus historyDeleteRawModified(Settings& settings, const UaDeleteRawModifiedDetailsArray& details,
                                      UaHistoryUpdateResults& results) override;
    UaStatus historyDeleteAtTime(Settings& settings, const UaDeleteAtTimeDetailsArray& details,
                                 UaHistoryUpdateResults& results) override;
    UaStatus historyDeleteEvents(Settings& settings, const UaDeleteEventDetailsArray& details,
                                 UaHistoryUpdateResults& results) override;
    UaStatus queryFirst(Settings& settings, const UaClientSdk::QueryContext& context,
                        const UaNodeTypeDescriptions& nodeTypes, UaQueryDataSets& dataSets,
                        UaByteString& continuationPoint, UaClientSdk::QueryFindings& findings) override;
    UaStatus queryNext(Settings& settings, bool release, UaByteString& continuationPoint,
                       UaQueryDataSets& dataSets) override;
    /// Ends calls that wait for the clock and have that handle.
    UaStatus cancel(Settings& settings, OpcUa_UInt32 requestHandle, OpcUa_UInt32& cancelCount) override;

protected:
    /// What comes before each answer: counts the call and takes its time.
    [[nodiscard]] UaStatus begin(Service service, const Settings& settings);

private:
    struct Rule
    {
        std::int64_t delay = 0;
        OpcUa_StatusCode status = OpcUa_Good;
        int calls = 0;
    };
    struct Waiting
    {
        OpcUa_UInt32 requestHandle;
        std::atomic<bool> isCancelled = false;
    };

    [[nodiscard]] UaStatus waitFor(std::int64_t delay, const Settings& settings);
    template <typename Items, typename Results, typename Answer>
    UaStatus answerCall(Service service, const Settings& settings, const Items& items, Results& results,
                        Answer answer);
    template <typename Details>
    UaStatus updateHistory(const Settings& settings, const Details& details, UaHistoryUpdateResults& results);

    [[nodiscard]] UaStatus history(const Settings& settings, const UaClientSdk::HistoryReadContext& context,
                                   const OpcUa_EncodeableType& type, const void* details,
                                   const UaHistoryReadValueIds& nodes, UaHistoryReadResults& results);
    [[nodiscard]] UaArguments argumentsOf(const UaNodeId& methodId, const char* name) const;

    mutable std::mutex m_mutex;
    std::map<Service, Rule> m_rules;
    std::list<Waiting> m_waiting; ///< calls under way
    std::string m_lastPurpose;
    bool m_connected = true;
};
