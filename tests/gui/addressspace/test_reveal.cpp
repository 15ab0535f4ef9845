#include <plugins/addressspace/qlumaddressspacemodel.h>
#include <tests/support/modeltext.h>
#include <tests/support/scriptedservices.h>
#include <tests/support/stubapplication.h>
#include <tests/support/stubservernode.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>

#include <QComboBox>
#include <QModelIndex>
#include <QStringList>
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <span>
#include <vector>

namespace {
UaNodeId id(OpcUa_UInt32 number)
{
    return UaNodeId(number, 1);
}

// Answers upward browses as well.
class TwoWayServices : public ScriptedServices
{
public:
    UaStatus browse(UaClientSdk::ServiceSettings& settings, const UaNodeId& node,
                    const UaClientSdk::BrowseContext& context, UaByteString& continuationPoint,
                    UaReferenceDescriptions& references) override
    {
        if (context.browseDirection != OpcUa_BrowseDirection_Inverse)
            return ScriptedServices::browse(settings, node, context, continuationPoint, references);
        journal.append("up " + toQString(node.toXmlString()));
        std::vector<UaNodeId> above = parents[node];
        if (invents)
            above = {id(++invented)};
        EXPECT_TRUE(references.create(static_cast<OpcUa_UInt32>(above.size())));
        for (OpcUa_UInt32 i = 0; i < references.length(); ++i)
            EXPECT_TRUE(OpcUa_IsGood(above[i].copyTo(&references[i].NodeId.NodeId)));
        const OpcUa_Byte point[] = {'m', 'o', 'r', 'e'};
        continuationPoint = hasMoreParents ? UaByteString(std::span(point)) : UaByteString();
        return {};
    }

    std::map<UaNodeId, std::vector<UaNodeId>> parents;
    bool hasMoreParents = false;
    bool invents = false; // above each node is one that nobody has seen yet
    OpcUa_UInt32 invented = 100000;
};

class Reveal : public testing::Test
{
protected:
    Reveal() : services(std::make_shared<TwoWayServices>())
    {
        services->browses[UaNodeId(84)] = {{{{"Objects", id(1)}, {"Types", id(2)}}}};
        services->browses[id(1)] = {{{{"Line 1", id(10)}}}, {{{"Line 2", id(11)}}}};
        services->browses[id(11)] = {{{{"Motor", id(20)}}}};
        services->browses[id(20)] = {{{{"Speed", id(30)}}}};
        services->parents[id(30)] = {id(20)};
        services->parents[id(20)] = {id(99), id(11)}; // the first leads nowhere
        services->parents[id(11)] = {id(1)};
        model = std::make_unique<QlumAddressSpaceModel>(&server, static_cast<QComboBox*>(nullptr), nullptr,
                                                        services);
        services->journal.clear();
    }

    StubApplication application;
    StubServerNode server;
    std::shared_ptr<TwoWayServices> services;
    std::unique_ptr<QlumAddressSpaceModel> model;
};

TEST_F(Reveal, OpensTheWayToANodeThatNobodyHasSeenYet)
{
    const QModelIndex found = model->reveal(id(30));
    ASSERT_TRUE(found.isValid());
    EXPECT_EQ(found.data().toString(), "Speed");
    EXPECT_EQ(found.parent().data().toString(), "Motor");
    EXPECT_EQ(modelText(*model),
              "Root\n  Objects\n    Line 1\n    Line 2\n      Motor\n        Speed\n  Types\n");
    EXPECT_EQ(services->journal.filter("browse i=84").size(), 0);

    services->journal.clear();
    EXPECT_EQ(model->reveal(id(30)), found);
    EXPECT_EQ(model->reveal(UaNodeId(84)), model->index(0, 0));
    EXPECT_TRUE(services->journal.isEmpty()) << "what is in the tree is not asked for";
}

TEST_F(Reveal, EndsWhenNoWayLeadsToTheTree)
{
    services->parents[id(41)] = {id(40)};
    services->parents[id(40)] = {id(41)};
    EXPECT_FALSE(model->reveal(id(41)).isValid());
    EXPECT_EQ(services->journal.size(), 2) << services->journal.join(", ").toStdString();
    services->parents[id(50)] = {id(2)}; // of which the parent itself knows nothing
    EXPECT_FALSE(model->reveal(id(50)).isValid());
    services->invents = true;
    services->journal.clear();
    EXPECT_FALSE(model->reveal(id(60)).isValid());
    EXPECT_LE(services->journal.size(), 1000);
}

TEST_F(Reveal, GivesUpTheRestOfManyParents)
{
    services->hasMoreParents = true;
    EXPECT_TRUE(model->reveal(id(20)).isValid());
    EXPECT_EQ(services->journal.filter("release").size(), services->journal.filter("up ").size());
    EXPECT_EQ(services->lastReleased.length(), 4);
}
} // namespace
