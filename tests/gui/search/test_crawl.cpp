// Crawls of scripted servers: what is found, and how servers are treated that are slow, endless or gone.
#include <opcua/opcua_statuscodes.h>
#include <plugins/addressspace/search/qlumcrawl.h>
#include <plugins/addressspace/search/qlumnodeindex.h>
#include <tests/gui/search/nowork.h>
#include <tests/support/modeltext.h>
#include <tests/support/tableservices.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>

#include <QString>
#include <QStringList>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace {
UaNodeId id(OpcUa_UInt32 number)
{
    return UaNodeId(number, 1);
}

// A plant of folders, with limits, and with whatever a test does before a browse is answered.
class Plant : public TableServices
{
public:
    Plant()
    {
        for (OpcUa_UInt32 line = 1; line <= 3; ++line) {
            table.object(id(line), ("Line " + std::to_string(line)).c_str());
            for (OpcUa_UInt32 i = 0; i < 25; ++i)
                table.variable(id(100 * line + i), ("Value " + std::to_string(i)).c_str(), UaVariant(1.0),
                               id(line));
        }
        table.object(id(9), "Shared", id(1));
        table.variable(id(91), "Inside", UaVariant(2.0), id(9));
        table.reference(id(2), UaNodeId(35), id(9));
        table.reference(id(9), UaNodeId(35), UaNodeId(85)); // back to the top
    }
    UaClientSdk::OperationLimits operationLimits() const override { return limits; }
    bool isConnected() const override { return !isLost || ++looks > 3; }
    UaStatus browseList(Settings& settings, const UaNodeId& viewId, OpcUa_UInt32 maximumReferences,
                        const UaBrowseDescriptions& nodes, UaBrowseResults& results) override
    {
        largest = std::max(largest, nodes.length());
        asked += nodes.length();
        const UaStatus status = before ? before(settings, nodes) : UaStatus();
        return status.isBad()
                   ? status
                   : TableServices::browseList(settings, viewId, maximumReferences, nodes, results);
    }
    UaStatus browseListNext(Settings& settings, bool release, const UaByteStringArray& points,
                            UaBrowseResults& results) override
    {
        largest = std::max(largest, points.length());
        if (beforeNext && !release)
            beforeNext();
        return TableServices::browseListNext(settings, release, points, results);
    }

    UaClientSdk::OperationLimits limits;
    std::function<UaStatus(const Settings&, const UaBrowseDescriptions&)> before;
    std::function<void()> beforeNext;
    std::atomic<bool> isLost = false;
    mutable std::atomic<int> looks = 0;
    OpcUa_UInt32 largest = 0;
    OpcUa_UInt32 asked = 0;
};

class Crawl : public testing::Test
{
protected:
    QlumCrawlState run()
    {
        QlumCrawlState last;
        QlumCrawl crawl(
            job, plant, index, control,
            [&](const QlumCrawlState& state) {
                phases.append(QString::number(state.phase));
                control.setPaused(false); // as a user does who had it paused
                last = state;
            },
            options);
        crawl.run();
        return last;
    }
    [[nodiscard]] QString pathOf(const UaNodeId& node) const
    {
        const QlumNodeIndex::Number number = index.find(node);
        return number == QlumNodeIndex::none ? QString() : index.path(number);
    }

    static constexpr std::size_t everything = 1 + 3 + 75 + 2;
    Plant plant;
    NoWork job;
    QlumNodeIndex index{UaNodeId(85), "Objects", OpcUa_NodeClass_Object};
    QlumCrawlControl control;
    QlumCrawl::Options options{1000000, 100, 10, std::chrono::milliseconds(0), std::chrono::milliseconds(1)};
    QStringList phases;
};

TEST_F(Crawl, VisitsSharedBranchesAndCirclesOnceWithinTheLimits)
{
    plant.limits.maxNodesPerBrowse = 7;
    plant.limits.maxBrowseContinuationPoints = 2;
    const QlumCrawlState state = run();
    EXPECT_EQ(state.phase, QlumCrawlState::Done);
    EXPECT_EQ(state.nodes, everything);
    EXPECT_EQ(plant.asked, everything) << "each node once";
    EXPECT_EQ(plant.largest, 2U);
    EXPECT_EQ(plant.table.openContinuationPoints(), 0);
    EXPECT_EQ(state.refused, 0U);
    EXPECT_EQ(pathOf(id(91)), "Objects/Line 1/Shared/Inside");
    const QlumNodeIndex::Copy value = index.copy(index.find(id(124)));
    EXPECT_EQ(value.name, "Value 24");
    EXPECT_EQ(value.typeDefinition, UaNodeId(63));
    EXPECT_EQ(index.browsePath(index.find(id(124))), "/1:Line 1/1:Value 24");

    // found below line 1 first, but as much a part of line 2
    const std::vector<bool> branch = index.branch(index.find(id(2)));
    EXPECT_EQ(branch[index.find(id(91))], true);
    EXPECT_EQ(branch[index.find(id(124))], true) << "by way of the circle";
    EXPECT_EQ(index.branch(index.find(id(91)))[index.find(id(2))], false);
}

TEST_F(Crawl, AsksASlowNodeAloneAndAfterAllOthers)
{
    UaNodeId lastAsked;
    plant.before = [&](const auto& settings, const UaBrowseDescriptions& nodes) {
        lastAsked = UaNodeId(nodes[0].NodeId);
        const bool isSlow = std::any_of(nodes.begin(), nodes.end(), [](const OpcUa_BrowseDescription& node) {
            return UaNodeId(node.NodeId) == id(2);
        });
        return UaStatus(isSlow && settings.callTimeout < 30000 ? OpcUa_BadTimeout : OpcUa_Good);
    };
    const QlumCrawlState state = run();
    EXPECT_EQ(state.phase, QlumCrawlState::Done);
    EXPECT_EQ(state.nodes, everything) << "what is below it, too";
    EXPECT_GE(state.late, 2U);
    EXPECT_EQ(state.refused, 0U);
    EXPECT_EQ(lastAsked, id(200)) << "below the slow one";
}

TEST_F(Crawl, NamesWhatIsRefusedAndGoesOn)
{
    plant.table.fail(NodeTable::Browse, id(2), OpcUa_BadUserAccessDenied);
    const QlumCrawlState state = run();
    EXPECT_EQ(state.phase, QlumCrawlState::Done);
    EXPECT_EQ(state.nodes, everything - 25);
    EXPECT_EQ(state.refused, 1U);
    EXPECT_TRUE(state.refusals.value(0).startsWith("ns=1;i=2: BadUserAccessDenied"))
        << state.refusals.value(0);
}

TEST_F(Crawl, ComesToAnEndWhereTheServerDoesNot)
{
    OpcUa_UInt32 invented = 1000;
    plant.before = [&](const auto&, const UaBrowseDescriptions& nodes) {
        for (const OpcUa_BrowseDescription& node : nodes)
            for (int i = 0; i < 3; ++i)
                plant.table.object(id(++invented), "More", UaNodeId(node.NodeId));
        return UaStatus();
    };
    options.maximumNodes = 500;
    const QlumCrawlState state = run();
    EXPECT_EQ(state.phase, QlumCrawlState::Ended);
    EXPECT_LT(state.nodes, 2500U);
    EXPECT_FALSE(state.remark.isEmpty());
    EXPECT_EQ(plant.table.openContinuationPoints(), 0);
}

TEST_F(Crawl, GivesContinuationPointsBackWhenItIsCancelled)
{
    plant.beforeNext = [&] { job.cancel(); };
    EXPECT_EQ(run().phase, QlumCrawlState::Ended);
    EXPECT_EQ(plant.table.openContinuationPoints(), 0);
    EXPECT_LT(index.size(), everything);
}

TEST_F(Crawl, PausesAndWaitsForALostConnection)
{
    int calls = 0;
    plant.before = [&](const auto&, const auto&) {
        if (++calls == 2)
            control.setPaused(true);
        plant.isLost = calls == 4;
        return UaStatus(calls == 4 ? OpcUa_BadConnectionClosed : OpcUa_Good);
    };
    options.nodesPerCall = 2;
    EXPECT_EQ(run().phase, QlumCrawlState::Done);
    EXPECT_EQ(index.size(), everything);
    EXPECT_TRUE(phases.contains(QString::number(QlumCrawlState::Paused)));
    EXPECT_TRUE(phases.contains(QString::number(QlumCrawlState::Waiting)));
    EXPECT_GT(plant.looks, 3);
}
} // namespace
