// Browsing of many nodes against a server that is short of continuation points, or hands them out for ever.
#include <opcua/opcua_statuscodes.h>
#include <tests/support/recordedtrace.h>
#include <tests/unit/sdk/sessiontest.h>
#include <uabase/system/uatrace.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/types/batchbrowse.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <deque>
#include <future>
#include <map>
#include <mutex>
#include <span>
#include <string>
#include <thread>
#include <vector>

namespace {

using UaClientSdk::BatchBrowse;

// Answers Browse and BrowseNext for nodes in pages, and remembers which continuation points it keeps.
class PagingServer
{
public:
    struct Node
    {
        std::vector<int> pages;               // how many references each has
        bool isEndless = false;               // empty pages behind them, for ever
        bool hasOnePoint = false;             // the same continuation point for all pages
        OpcUa_StatusCode status = OpcUa_Good; // of all its results
        bool keepsPoint = false;              // gives a continuation point with a bad status, too
    };

    std::map<OpcUa_UInt32, Node> nodes;
    std::size_t maximumPoints = 1000;
    bool takesBack = false;       // the oldest point goes when there is no room, instead of the request
    int browsesUntilTimeout = -1; // negative: none times out
    std::size_t mostNodes = 0;    // in one request

    void addTo(FakeStack& stack)
    {
        stack.on(OpcUa_BrowseRequest_EncodeableType, [this](const void* request, void* response) {
            if (browsesUntilTimeout == 0)
                return OpcUa_BadTimeout;
            --browsesUntilTimeout;
            browse(*static_cast<const OpcUa_BrowseRequest*>(request),
                   *static_cast<OpcUa_BrowseResponse*>(response));
            return OpcUa_Good;
        });
        stack.on(OpcUa_BrowseNextRequest_EncodeableType, [this](const void* request, void* response) {
            browseNext(*static_cast<const OpcUa_BrowseNextRequest*>(request),
                       *static_cast<OpcUa_BrowseNextResponse*>(response));
            return OpcUa_Good;
        });
    }

    [[nodiscard]] std::size_t pointsKept() const { return m_points.size(); }

private:
    struct Point
    {
        std::string text;
        OpcUa_UInt32 node;
        std::size_t page;
    };

    void browse(const OpcUa_BrowseRequest& request, OpcUa_BrowseResponse& response)
    {
        UaBrowseResults results(static_cast<OpcUa_UInt32>(request.NoOfNodesToBrowse));
        mostNodes = std::max<std::size_t>(mostNodes, results.length());
        for (OpcUa_UInt32 i = 0; i < results.length(); ++i)
            answer(request.NodesToBrowse[i].NodeId.Identifier.Numeric, 0, results[i]);
        results.detach(&response.NoOfResults, &response.Results);
    }

    void browseNext(const OpcUa_BrowseNextRequest& request, OpcUa_BrowseNextResponse& response)
    {
        UaBrowseResults results(static_cast<OpcUa_UInt32>(request.NoOfContinuationPoints));
        for (OpcUa_UInt32 i = 0; i < results.length(); ++i) {
            const std::string text(UaByteString(request.ContinuationPoints[i]).view());
            const auto found = std::find_if(m_points.begin(), m_points.end(),
                                            [&text](const Point& point) { return point.text == text; });
            if (found == m_points.end()) {
                results[i].StatusCode = OpcUa_BadContinuationPointInvalid;
                continue;
            }
            const Point point = *found;
            m_points.erase(found);
            if (!request.ReleaseContinuationPoints)
                answer(point.node, point.page + 1, results[i]);
        }
        results.detach(&response.NoOfResults, &response.Results);
    }

    void answer(OpcUa_UInt32 id, std::size_t page, OpcUa_BrowseResult& result)
    {
        const Node& node = nodes.at(id);
        result.StatusCode = node.status;
        if (OpcUa_IsBad(node.status) && !node.keepsPoint)
            return;
        if (page + 1 < node.pages.size() || node.isEndless || node.keepsPoint)
            givePoint(id, page, result);
        if (OpcUa_IsBad(result.StatusCode) || page >= node.pages.size())
            return;
        UaReferenceDescriptions references(static_cast<OpcUa_UInt32>(node.pages[page]));
        references.detach(&result.NoOfReferences, &result.References);
    }

    void givePoint(OpcUa_UInt32 id, std::size_t page, OpcUa_BrowseResult& result)
    {
        if (m_points.size() >= maximumPoints && !takesBack) {
            result.StatusCode = OpcUa_BadNoContinuationPoints;
            return;
        }
        if (m_points.size() >= maximumPoints)
            m_points.pop_front();
        const std::string text =
            std::to_string(id) + (nodes.at(id).hasOnePoint ? "" : "#" + std::to_string(++m_given));
        m_points.push_back({text, id, page});
        const auto* bytes = reinterpret_cast<const OpcUa_Byte*>(text.data());
        EXPECT_TRUE(
            OpcUa_IsGood(UaByteString(std::span(bytes, text.size())).copyTo(&result.ContinuationPoint)));
    }

    std::deque<Point> m_points; // the oldest first
    int m_given = 0;
};

class BatchBrowseTest : public SessionTest
{
protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        ASSERT_TRUE(connect().isGood());
        server.addTo(stack);
    }

    // Browses all nodes of the server; how many references each has then.
    std::vector<unsigned> browseAll(const BatchBrowse& what = {})
    {
        std::vector<UaNodeId> ids;
        for (const auto& [id, node] : server.nodes)
            ids.emplace_back(id, 2);
        std::vector<UaReferenceDescriptions> references;
        UaClientSdk::ServiceSettings settings;
        status = browseBatch(session, settings, ids, what, references);
        std::vector<unsigned> counts;
        for (const UaReferenceDescriptions& found : references)
            counts.push_back(found.length());
        return counts;
    }
    void addNodes(OpcUa_UInt32 count, const PagingServer::Node& node)
    {
        for (OpcUa_UInt32 i = 0; i < count; ++i)
            server.nodes.emplace(static_cast<OpcUa_UInt32>(server.nodes.size() + 1), node);
    }
    int browses() { return stack.calls(OpcUa_BrowseRequest_EncodeableType); }
    int nexts() { return stack.calls(OpcUa_BrowseNextRequest_EncodeableType); }

    PagingServer server;
    UaStatus status;
};

TEST_F(BatchBrowseTest, EndlessNodesAreLeftAndTheOthersGoOn)
{
    server.nodes[1] = {{2}, true, true};
    server.nodes[2] = {{}, true};
    server.nodes[3] = {std::vector<int>(40, 1), false, true};
    std::vector<int> sparse(40, 0); // 19 empty pages in a row, twice
    sparse.front() = sparse[20] = 1;
    sparse.push_back(1);
    server.nodes[4] = {sparse};
    const RecordedTrace trace(UaTrace::Warning);
    EXPECT_EQ(browseAll(), (std::vector<unsigned>{2, 0, 40, 3}));
    EXPECT_TRUE(status.isGood());
    EXPECT_LE(nexts(), 42 + 2) << "those of the longest node and two releases";
    EXPECT_EQ(server.pointsKept(), 0u);
    EXPECT_TRUE(trace.holds("ns=2;i=1:"));
    EXPECT_TRUE(trace.holds("ns=2;i=2:"));
    EXPECT_EQ(trace.count("come to an end"), 2);
}

TEST_F(BatchBrowseTest, NodesWithoutAContinuationPointAreBrowsedAgain)
{
    addNodes(20, {{3, 2}});
    server.maximumPoints = 4;
    const RecordedTrace trace(UaTrace::Warning);
    EXPECT_EQ(browseAll(), std::vector<unsigned>(20, 5));
    EXPECT_LE(browses(), 6) << "as many at a time as the server can";
    EXPECT_FALSE(trace.holds("browseBatch"));
    server.takesBack = true;
    EXPECT_EQ(browseAll(), std::vector<unsigned>(20, 5)) << "points that were taken back";
    EXPECT_EQ(server.pointsKept(), 0u);
}

TEST_F(BatchBrowseTest, NoMoreNodesAreOpenThanTheServerHasPointsFor)
{
    addNodes(20, {{3, 2}});
    server.maximumPoints = 4;
    ASSERT_TRUE(disconnect().isGood());
    stack.setVariable(OpcUaId_Server_ServerCapabilities_MaxBrowseContinuationPoints,
                      UaVariant(OpcUa_UInt16(4)));
    ASSERT_TRUE(connect().isGood());
    EXPECT_EQ(browseAll(), std::vector<unsigned>(20, 5));
    EXPECT_EQ(browses(), 5) << "and none is browsed again";
    EXPECT_EQ(nexts(), 5);
}

TEST_F(BatchBrowseTest, AServerWithoutContinuationPointsIsNotAskedForEver)
{
    addNodes(100, {{3, 2}});
    addNodes(1, {{7}});
    server.maximumPoints = 0;
    const RecordedTrace trace(UaTrace::Warning);
    EXPECT_EQ(browseAll().back(), 7u);
    EXPECT_TRUE(status.isGood());
    EXPECT_LE(browses(), 25);
    EXPECT_EQ(trace.count("no continuation point left"), 100);
    EXPECT_TRUE(trace.holds("ns=2;i=100:"));
}

TEST_F(BatchBrowseTest, ABadResultIsNamedAndCostsItsNodeOnly)
{
    addNodes(1, {{1, 1}});
    addNodes(1, {{}, false, false, OpcUa_BadNodeIdUnknown});
    addNodes(1, {{}, false, false, OpcUa_BadUserAccessDenied, true});
    addNodes(1, {{1, 1}});
    const RecordedTrace trace(UaTrace::Warning);
    EXPECT_EQ(browseAll(), (std::vector<unsigned>{2, 0, 0, 2}));
    EXPECT_TRUE(status.isGood());
    EXPECT_TRUE(trace.holds("ns=2;i=2: BadNodeIdUnknown")) << "found under this name";
    EXPECT_TRUE(trace.holds("ns=2;i=3: BadUserAccessDenied"));
    EXPECT_EQ(server.pointsKept(), 0u);
    EXPECT_EQ(browses(), 1);
}

TEST_F(BatchBrowseTest, AWalkThatEndsEarlyReleasesItsContinuationPoints)
{
    addNodes(3, {{1, 1, 1}});
    stack.failNext(OpcUa_BrowseNextRequest_EncodeableType, {OpcUa_BadTimeout});
    browseAll();
    EXPECT_EQ(status.statusCode(), static_cast<OpcUa_StatusCode>(OpcUa_BadTimeout));
    EXPECT_EQ(nexts(), 2) << "all in one call";
    EXPECT_EQ(server.pointsKept(), 0u);
    addNodes(1, {std::vector<int>(2000, 1)});
    EXPECT_EQ(browseAll().front(), 3u);
    EXPECT_EQ(server.pointsKept(), 0u) << "more pages than anybody reads";
}

TEST_F(BatchBrowseTest, NothingIsReleasedOverALostLink)
{
    addNodes(3, {{1, 1, 1}});
    stack.failNext(OpcUa_BrowseNextRequest_EncodeableType, {OpcUa_BadConnectionClosed});
    browseAll();
    EXPECT_EQ(nexts(), 1);
}

TEST_F(BatchBrowseTest, NothingIsReleasedWhileTheSessionIsBeingDisconnected)
{
    addNodes(3, {{1, 1, 1}});
    std::promise<void> watchdogAsks;
    std::once_flag asked;
    std::promise<void> walkIsOver;
    stack.on(OpcUa_ReadRequest_EncodeableType, [&, over = walkIsOver.get_future().share()](auto, auto) {
        std::call_once(asked, [&] { watchdogAsks.set_value(); });
        over.wait(); // and the disconnect for the thread of the watchdog
        return OpcUa_BadTimeout;
    });
    passWatchdogTime();
    ASSERT_EQ(watchdogAsks.get_future().wait_for(std::chrono::seconds(10)), std::future_status::ready);
    std::future<UaStatus> ending;
    stack.on(OpcUa_BrowseNextRequest_EncodeableType, [&](auto, auto) {
        if (!ending.valid())
            ending = std::async(std::launch::async, [this] { return disconnect(); });
        const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (session.isConnected() && std::chrono::steady_clock::now() < limit)
            std::this_thread::yield();
        return OpcUa_BadTimeout;
    });
    browseAll();
    EXPECT_EQ(status.statusCode(), static_cast<OpcUa_StatusCode>(OpcUa_BadTimeout));
    EXPECT_EQ(nexts(), 1);
    walkIsOver.set_value();
    ASSERT_TRUE(ending.valid());
    EXPECT_TRUE(ending.get().isGood());
}

TEST_F(BatchBrowseTest, SlicesAreBrowsedToTheirEndOneAfterTheOther)
{
    addNodes(10, {{1, 1}});
    BatchBrowse what;
    what.nodesAtOnce = 3;
    EXPECT_EQ(browseAll(what), std::vector<unsigned>(10, 2));
    EXPECT_EQ(server.mostNodes, 3u);
    EXPECT_EQ(browses(), 4);
    session.setMaxOperationsPerServiceCall(2);
    server.browsesUntilTimeout = 3;
    EXPECT_EQ(browseAll(), (std::vector<unsigned>{2, 2, 2, 2, 2, 2, 0, 0, 0, 0}));
    EXPECT_TRUE(status.isBad());
    EXPECT_EQ(server.mostNodes, 3u);
    EXPECT_EQ(server.pointsKept(), 0u) << "a later block that fails leaves none behind";
}

} // namespace
