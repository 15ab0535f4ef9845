#include <app/api/qlumconnectionstatus.h>
#include <plugins/addressspace/qlumaddressspacemodel.h>
#include <plugins/addressspace/qlumnodemimedata.h>
#include <tests/support/modeltext.h>
#include <tests/support/scriptedservices.h>
#include <tests/support/stubapplication.h>
#include <tests/support/stubservernode.h>
#include <uabase/values/uanodeid.h>

#include <QAbstractItemModel>
#include <QAbstractItemModelTester>
#include <QApplication>
#include <QColor>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFont>
#include <QIcon>
#include <QMimeData>
#include <QModelIndex>
#include <QPersistentModelIndex>
#include <QProgressDialog>
#include <QPushButton>
#include <QSignalSpy>
#include <QStringList>
#include <QTest>
#include <QWidget>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {
using Reporting = QAbstractItemModelTester::FailureReportingMode;

const UaNodeId rootId(84);
const UaNodeId propertyType(68);

UaNodeId node(OpcUa_UInt32 id, OpcUa_UInt16 namespaceIndex = 1)
{
    return UaNodeId(id, namespaceIndex);
}

class AddressSpaceModel : public testing::Test
{
protected:
    AddressSpaceModel() : services(std::make_shared<ScriptedServices>()) {}

    void make(QComboBox* combo = nullptr)
    {
        model = std::make_unique<QlumAddressSpaceModel>(&server, combo, nullptr, services);
        ASSERT_TRUE(QTest::qWaitFor([this] { return !model->isBrowsing(); }));
    }
    // A tree in which Objects stands at two places.
    void makeTree(QComboBox* combo = nullptr)
    {
        services->browses[rootId] = {{{{"Objects", node(1)}, {"Area", node(2)}}}};
        services->browses[node(2)] = {{{{"Objects", node(1)}}}};
        services->browses[node(1)] = {{{{"Old", node(10)}}}};
        make(combo);
        expand(child(0));
        expand(child(1));
        expand(model->index(0, 0, child(0)));
    }
    void expand(const QModelIndex& index)
    {
        model->fetchMore(index);
        ASSERT_TRUE(QTest::qWaitFor([this] { return !model->isBrowsing(); }));
    }
    QModelIndex root() const { return model->index(0, 0); }
    QModelIndex child(int row) const { return model->index(row, 0, root()); }
    std::string text() const { return modelText(*model); }

    StubApplication application;
    StubServerNode server;
    std::shared_ptr<ScriptedServices> services;
    std::unique_ptr<QlumAddressSpaceModel> model;
};

TEST_F(AddressSpaceModel, AsksForForwardHierarchicalReferencesAndSortsByCodeUnit)
{
    services->browses[rootId] = {{{{"b", node(1)}, {"a", node(2)}, {"Z", node(3)}, {"\xC3\xA4", node(4)}}}};
    application.settings["General.MaxReferencesToReturn"] = 33;
    make();
    EXPECT_EQ(text(), "Root\n  Z\n  a\n  b\n  \xC3\xA4\n");
    EXPECT_EQ(services->lastContext.referenceTypeId, UaNodeId(33));
    EXPECT_TRUE(services->lastContext.includeSubtypes);
    EXPECT_EQ(services->lastContext.browseDirection, OpcUa_BrowseDirection_Forward);
    EXPECT_EQ(services->lastContext.nodeClassMask, 0u);
    EXPECT_EQ(services->lastContext.resultMask, 63u);
    EXPECT_EQ(services->lastContext.maxReferencesToReturn, 33u);
    services->browses[node(3)] = {{{{"below", node(5)}}}};
    ASSERT_TRUE(model->canFetchMore(child(0)));
    expand(child(0));
    EXPECT_EQ(text(), "Root\n  Z\n    below\n  a\n  b\n  \xC3\xA4\n");
    EXPECT_FALSE(model->canFetchMore(child(0)));
    const QAbstractItemModelTester tester(model.get(), Reporting::Fatal); // expands all
    EXPECT_EQ(services->journal.size(), 6);
}

TEST_F(AddressSpaceModel, DuplicatesAreDroppedWithinAndAcrossResults)
{
    services->browses[rootId] = {{{{"first", node(1)}, {"again", node(1)}}},
                                 {{{"later", node(1)}, {"two", node(2)}}}};
    make();
    EXPECT_EQ(text(), "Root\n  first\n  two\n");
    services->browses[rootId].push_back({{{"new", node(3)}}});
    model->browseNodeIndex(root());
    EXPECT_EQ(text(), "Root\n  first\n  new\n  two\n");
}

TEST_F(AddressSpaceModel, RootIsHiddenUntilItHasChildrenAndFailuresCanBeTriedAgain)
{
    services->browses[rootId] = {{{{"half", node(1)}}, OpcUa_UncertainReferenceOutOfServer}};
    make();
    EXPECT_EQ(model->rowCount(), 1);
    EXPECT_FALSE(root().isValid());
    ASSERT_EQ(application.texts().size(), 1);
    services->browses[rootId] = {{{{"Objects", node(1)}, {"Types", node(2)}}}};
    model->rebrowseNodeIndex(root());
    EXPECT_EQ(text(), "Root\n  Objects\n  Types\n");
    EXPECT_FALSE(model->index(1, 0).isValid()) << "there is one root, however many children it has";
    services->browses[node(1)] = {{{}, OpcUa_BadTimeout}};
    expand(child(0));
    EXPECT_TRUE(model->canFetchMore(child(0)));
    EXPECT_TRUE(model->hasChildren(child(0)));
    services->browses[node(1)].clear();
    expand(child(0));
    EXPECT_FALSE(model->hasChildren(child(0))) << "nothing below: no expander";
}

TEST_F(AddressSpaceModel, BudgetOfBrowseNextCalls)
{
    const struct
    {
        int budget;
        QStringList journal;
    } cases[] = {{-1, {"browse i=84", "next", "next", "next"}},
                 {0, {"browse i=84", "next", "release"}},
                 {1, {"browse i=84", "next", "release"}},
                 {2, {"browse i=84", "next", "next", "release"}},
                 {9, {"browse i=84", "next", "next", "next"}}};
    for (const auto& [budget, journal] : cases) {
        services->browses[rootId] = {
            {{{"a", node(1)}}}, {{{"b", node(2)}}}, {{{"c", node(3)}}}, {{{"d", node(4)}}}};
        services->journal.clear();
        application.settings["General.MaxBrowseNextCalls"] = budget;
        make();
        EXPECT_EQ(services->journal.join(','), journal.join(',')) << budget;
        EXPECT_EQ(model->rowCount(root()), journal.size() - (journal.contains("release") ? 1 : 0)) << budget;
    }
}

TEST_F(AddressSpaceModel, AServerThatKeepsRefusingIsStopped)
{
    application.settings["General.MaxBrowseNextCalls"] = -1;
    services->browses[rootId] = {{{{"a", node(1)}}}};
    make();
    services->endless = true;
    services->browses[node(1)] = {{{{"b", node(2)}}},
                                  {{}, OpcUa_BadTimeout},
                                  {{}, OpcUa_BadTimeout},
                                  {{}, OpcUa_BadTimeout},
                                  {{{"never", node(3)}}}};
    expand(child(0));
    EXPECT_EQ(text(), "Root\n  a\n    b\n") << "what came before the failures stays";
    EXPECT_EQ(services->journal.last(), "release");
}

TEST_F(AddressSpaceModel, EmptyPagesAreFollowedAsLongAsTheyMayLead)
{
    application.settings["General.MaxBrowseNextCalls"] = -1;
    services->browses[rootId] = {{{{"a", node(1)}}}};
    services->endless = true;
    make();
    EXPECT_EQ(services->journal.join(','), "browse i=84,next,next,release") << "one point for all pages";
    services->freshPoints = true;
    services->journal.clear();
    make();
    EXPECT_EQ(services->journal.filter("next").size(), 20);
    EXPECT_EQ(services->journal.last(), "release");
    EXPECT_EQ(services->lastReleased, services->lastPoint);
    EXPECT_EQ(text(), "Root\n  a\n");
    services->endless = false;
    auto& pages = services->browses[rootId];
    for (OpcUa_UInt32 found = 2; found < 4; ++found) {
        pages.resize(pages.size() + 19);
        pages.push_back({{{"later", node(found)}}});
    }
    services->journal.clear();
    make();
    EXPECT_FALSE(services->journal.contains("release"));
    EXPECT_EQ(text(), "Root\n  a\n  later\n  later\n");
}

TEST_F(AddressSpaceModel, ACallThatFailsGivesItsContinuationPointBack)
{
    services->browses[rootId] = {{{{"a", node(1)}}}, {{{"never", node(2)}}}};
    services->nextFailures = {OpcUa_BadTimeout};
    make();
    EXPECT_EQ(services->journal.join(','), "browse i=84,next,release");
    EXPECT_EQ(services->lastReleased, services->lastPoint);
    EXPECT_LE(services->lastReleaseTimeout, 1000u) << "the window stands still meanwhile";
    EXPECT_EQ(text(), "Root\n  a\n");
    EXPECT_EQ(application.texts().filter("incomplete").size(), 1);
    for (const OpcUa_StatusCode gone : {OpcUa_BadContinuationPointInvalid, OpcUa_BadConnectionClosed}) {
        services->journal.clear();
        services->nextFailures = {gone};
        make();
        EXPECT_EQ(services->journal.join(','), "browse i=84,next") << gone;
    }
    services->journal.clear();
    services->browses[rootId].front().status = OpcUa_UncertainReferenceOutOfServer;
    make();
    EXPECT_EQ(services->journal.join(','), "browse i=84,release") << "a page that is not taken";
}

TEST_F(AddressSpaceModel, PropertiesAreNeverBrowsed)
{
    services->browses[rootId] = {{{{"limit", node(1), OpcUa_NodeClass_Variable, propertyType}}}};
    make();
    EXPECT_FALSE(model->hasChildren(child(0)));
    EXPECT_FALSE(model->canFetchMore(child(0)));
    model->fetchMore(child(0));
    EXPECT_EQ(services->journal, QStringList{"browse i=84"});
}

TEST_F(AddressSpaceModel, ReferenceChangesRefreshEveryOccurrence)
{
    makeTree();
    auto tester = std::make_unique<QAbstractItemModelTester>(model.get(), Reporting::Fatal);
    ASSERT_EQ(text(), "Root\n  Area\n    Objects\n      Old\n  Objects\n    Old\n");
    services->browses[node(1)] = {{{{"New", node(11)}}}};
    model->serverModelChanged(node(1), 1 | 2 | 16);
    EXPECT_EQ(text(), "Root\n  Area\n    Objects\n      Old\n  Objects\n    Old\n");
    model->serverModelChanged(node(1), 4);
    EXPECT_EQ(text(), "Root\n  Area\n    Objects\n      New\n  Objects\n    New\n");
    tester.reset(); // it would expand what is new
    model->rebrowseNodeIndex(child(0));
    EXPECT_EQ(text(), "Root\n  Area\n    Objects\n  Objects\n    New\n");
}

TEST_F(AddressSpaceModel, LongBrowsesLeaveTheEventLoopAliveAndCanBeCancelled)
{
    services->browses[rootId] = {{{{"wide", node(1)}}}};
    make();
    services->inventive = true;
    application.settings["General.MaxBrowseNextCalls"] = -1;
    model->fetchMore(child(0));
    ASSERT_TRUE(model->isBrowsing());
    QProgressDialog* progress = nullptr;
    ASSERT_TRUE(QTest::qWaitFor([&progress] {
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (widget->objectName() == "browseProgress" && widget->isVisible())
                progress = qobject_cast<QProgressDialog*>(widget);
        return progress != nullptr;
    }));
    EXPECT_FALSE(services->journal.contains("release"));
    progress->findChild<QPushButton*>()->click();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !model->isBrowsing(); }));
    EXPECT_EQ(services->journal.last(), "release");
    EXPECT_GT(model->rowCount(child(0)), 0);
    EXPECT_EQ(application.texts().filter("cancelled by user").size(), 1);
}

class BrowsedModel : public AddressSpaceModel
{
protected:
    // Two browses under way that come to no end.
    void makeBrowsing()
    {
        services->browses[rootId] = {{{{"a", node(1)}, {"b", node(2)}}}};
        make();
        services->inventive = true;
        application.settings["General.MaxBrowseNextCalls"] = -1;
        model->fetchMore(child(0));
        model->fetchMore(child(1));
        ASSERT_TRUE(model->isBrowsing());
        services->inventive = false;
        services->journal.clear();
    }
    int releases() const { return services->journal.filter("release").size(); }
};

TEST_F(BrowsedModel, NodesThatGoReleaseTheirContinuationPoints)
{
    makeBrowsing();
    model->rebrowseNodeIndex(root());
    EXPECT_EQ(releases(), 2);
    EXPECT_FALSE(model->isBrowsing());
    EXPECT_EQ(text(), "Root\n  a\n  b\n");
    makeBrowsing();
    model.reset();
    EXPECT_EQ(releases(), 2) << "the model itself goes";
}

TEST_F(BrowsedModel, BrowseThatIsUnderWayIsNotBegunAgain)
{
    makeBrowsing();
    model->browseNodeIndex(child(0));
    EXPECT_EQ(services->journal.filter("browse").size(), 0);
    model->rebrowseNodeIndex(root());
    EXPECT_EQ(releases(), 2) << "one continuation point for each";
}

TEST_F(BrowsedModel, ThatGoesWithItsServerWaitsForNobody)
{
    makeBrowsing();
    services->connected = false;
    model->rebrowseNodeIndex(root());
    EXPECT_EQ(releases(), 0);
    services->connected = true;
    makeBrowsing();
    services->releaseStatus = OpcUa_BadTimeout;
    model.reset();
    EXPECT_EQ(releases(), 1) << "a server that is silent once is not asked again";
}

TEST_F(AddressSpaceModel, PersistentIndexesFollowTheSorting)
{
    services->browses[rootId] = {{{{"m", node(1)}}}};
    make();
    const QPersistentModelIndex m(child(0));
    services->browses[rootId] = {{{{"a", node(2)}, {"z", node(3)}}}};
    model->browseNodeIndex(root());
    EXPECT_EQ(m.row(), 1);
    EXPECT_EQ(m.data().toString(), "m");
}

TEST_F(AddressSpaceModel, IconsComeFromTheServerOrTheClass)
{
    server.nodeWithIcon = node(1);
    services->browses[rootId] = {{{{"a", node(1)},
                                   {"b", node(2), OpcUa_NodeClass_Object, UaNodeId(61)},
                                   {"c", node(3), OpcUa_NodeClass_Variable, propertyType},
                                   {"d", node(4), static_cast<OpcUa_NodeClass>(3)}}}};
    make();
    const auto image = [this](int row) {
        return child(row).data(Qt::DecorationRole).value<QIcon>().pixmap(16, 16).toImage();
    };
    const auto resource = [](const char* path) { return QIcon(path).pixmap(16, 16).toImage(); };
    EXPECT_EQ(image(0).pixelColor(0, 0), QColor(Qt::magenta));
    EXPECT_EQ(image(1), resource(":/images/treefolder.png"));
    EXPECT_EQ(image(2), resource(":/images/property.png"));
    EXPECT_TRUE(image(3).isNull());
    const UaNodeId start(58);
    const QlumAddressSpaceModel types(&server, &start, nullptr, services);
    services->browses[start] = {{{{"x", node(9)}}}};
    EXPECT_FALSE(types.index(0, 0).isValid());
}

TEST_F(AddressSpaceModel, SubTreeStartsWithTheNameOfItsType)
{
    const UaNodeId start(58);
    services->browses[start] = {{{{"x", node(9)}}}};
    const QlumAddressSpaceModel types(&server, &start, nullptr, services);
    EXPECT_EQ(modelText(types), "TypeName\n  x\n");
    EXPECT_EQ(types.node(types.index(0, 0))->nodeClass(), 0u);
    EXPECT_TRUE(types.node(types.index(0, 0))->typeDefinition().isNull());
}

TEST_F(AddressSpaceModel, HighlightingTellsTheNodesOfBothNamespaces)
{
    QComboBox combo;
    makeTree(&combo);
    ASSERT_EQ(combo.count(), 4);
    EXPECT_EQ(combo.itemText(0), "No Highlight");
    EXPECT_EQ(combo.itemData(2, Qt::ToolTipRole).toString(), "1: urn:a");
    QSignalSpy changed(model.get(), &QAbstractItemModel::dataChanged);
    combo.setCurrentIndex(1); // namespace 0: the root alone
    ASSERT_EQ(changed.size(), 1);
    EXPECT_EQ(changed.takeFirst().at(0).toModelIndex(), root());
    EXPECT_EQ(root().data(Qt::FontRole).value<QFont>().weight(), 75);
    combo.setCurrentIndex(2);
    int told = 0;
    for (const auto& signal : changed)
        told += signal.at(1).toModelIndex().row() - signal.at(0).toModelIndex().row() + 1;
    EXPECT_EQ(told, 6) << "the root and the five nodes of namespace 1";
    EXPECT_FALSE(root().data(Qt::FontRole).isValid());
    EXPECT_TRUE(child(0).data(Qt::FontRole).isValid());
    server.announce(QlumConnectionStatus::ConnectionError);
    EXPECT_EQ(combo.count(), 1);
    EXPECT_EQ(model->highlightedNamespace(), -1);
    server.announce(QlumConnectionStatus::Connected);
    EXPECT_EQ(combo.count(), 4);
}

TEST_F(AddressSpaceModel, DragHoldsEveryIndexButTheRootCannotStartIt)
{
    makeTree();
    EXPECT_FALSE(model->flags(root()) & Qt::ItemIsDragEnabled);
    EXPECT_TRUE(model->flags(child(0)) & Qt::ItemIsDragEnabled);
    const std::unique_ptr<QMimeData> data(model->mimeData({root(), QModelIndex(), child(0)}));
    EXPECT_EQ(data->formats(), QStringList{"application/UaNodeInformation"});
    QlumDraggedNodes dragged;
    ASSERT_TRUE(qlumDecodeNodes(data->data(qlumNodeMimeType()), dragged));
    EXPECT_EQ(dragged.serverId, 5u);
    ASSERT_EQ(dragged.nodes.size(), 2u);
    EXPECT_EQ(dragged.nodes[0].nodeId, rootId);
    EXPECT_EQ(dragged.nodes[1].name, "Area");
}

TEST_F(AddressSpaceModel, NamesOfServersStayText)
{
    const std::string huge(1000000, 'x');
    services->browses[rootId] = {{{{"<b>bold</b>\nnext", node(1)}, {huge.c_str(), node(2)}}}};
    make();
    EXPECT_EQ(child(0).data().toString(), "<b>bold</b> next");
    EXPECT_TRUE(child(0).data(Qt::ToolTipRole).toString().contains("&lt;b&gt;"));
    EXPECT_LE(child(1).data().toString().size(), 2000);
}

TEST_F(AddressSpaceModel, TenThousandChildrenAreFast)
{
    std::vector<ScriptedReference> many;
    std::vector<std::string> names;
    for (OpcUa_UInt32 i = 0; i < 10000; ++i)
        names.push_back("Node " + std::to_string(10000 - i));
    for (OpcUa_UInt32 i = 0; i < 10000; ++i)
        many.push_back({names[i].c_str(), node(i)});
    services->browses[rootId] = {{std::move(many)}};
    make();
    ASSERT_EQ(model->rowCount(root()), 10000);
    qint64 rows = 0;
    QElapsedTimer time;
    time.start();
    for (int row = 0; row < 10000; ++row)
        rows += child(row).parent().row() + child(row).row();
    EXPECT_EQ(rows, 10000LL * 9999 / 2);
    EXPECT_LT(time.elapsed(), 1000) << "a row must not be searched for";
}
} // namespace
