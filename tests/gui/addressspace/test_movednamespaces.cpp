#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumservernode.h>
#include <plugins/addressspace/qlumaddressspacemodel.h>
#include <plugins/addressspace/qlumaddressspacepage.h>
#include <tests/support/modeltext.h>
#include <tests/support/scriptedservices.h>
#include <tests/support/stubapplication.h>
#include <tests/support/stubservernode.h>
#include <uabase/values/uanodeid.h>

#include <QAbstractItemModel>
#include <QAbstractItemModelTester>
#include <QAction>
#include <QComboBox>
#include <QModelIndex>
#include <QModelIndexList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTreeView>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {
// A page whose server comes back with other numbers for its namespaces.
class MovedNamespaces : public testing::Test
{
protected:
    MovedNamespaces() : services(std::make_shared<ScriptedServices>())
    {
        services->browses[UaNodeId(84)] = {
            {{{"Server", UaNodeId(2253)}, {"Plant", UaNodeId(1, 1)}, {"Other", UaNodeId(1, 2)}}}};
        services->browses[UaNodeId(1, 1)] = {
            {{{"Foreign", UaNodeId(7, 2)}, {"Motor", UaNodeId(7, 1)}, {"Pump", UaNodeId(8, 1)}}}};
        page = std::make_unique<QlumAddressSpacePage>(
            &server,
            [this](QlumServerNode* node, QComboBox* combo, QObject* parent) {
                return model = new QlumAddressSpaceModel(node, combo, parent, services);
            },
            &rebrowse);
        page->show();
        page->tree()->expand(find("Plant"));
        QObject::connect(page.get(), &QlumAddressSpacePage::nodeSelected, page.get(),
                         [this](unsigned int, UaNodeId* id) { announced.push_back(*id); });
    }
    QModelIndex find(const char* name) const
    {
        const QModelIndexList found =
            model->match(model->index(0, 0), Qt::DisplayRole, QString::fromUtf8(name), 1,
                         Qt::MatchExactly | Qt::MatchRecursive);
        return found.value(0);
    }
    void move(const NamespaceMap& namespaces)
    {
        services->journal.clear();
        announced.clear();
        server.announce(QlumConnectionStatus::Connected, namespaces);
    }

    StubApplication application;
    StubServerNode server;
    std::shared_ptr<ScriptedServices> services;
    QAction rebrowse;
    QlumAddressSpaceModel* model = nullptr;
    std::unique_ptr<QlumAddressSpacePage> page;
    std::vector<UaNodeId> announced;
};

TEST_F(MovedNamespaces, NoNodeKeepsAnIdThatMeansAnotherOneNow)
{
    page->tree()->setCurrentIndex(find("Motor"));
    move({{0, 0}, {1, 4}, {2, 1}});
    EXPECT_EQ(model->node(find("Plant"))->nodeId(), UaNodeId(1, 4));
    EXPECT_EQ(model->node(find("Foreign"))->nodeId(), UaNodeId(7, 1));
    EXPECT_EQ(model->node(find("Server"))->nodeId(), UaNodeId(2253));
    EXPECT_TRUE(page->tree()->isExpanded(find("Plant")));
    EXPECT_EQ(page->tree()->currentIndex(), find("Motor"));
    EXPECT_EQ(announced, std::vector<UaNodeId>{UaNodeId(7, 4)}) << "tools read the node by its new id";
    page->hide();
    move({{0, 0}, {1, 2}, {4, 6}});
    EXPECT_TRUE(announced.empty()) << "tools show a node of the server in front";
    page->show();
    EXPECT_EQ(announced, std::vector<UaNodeId>{UaNodeId(7, 6)});
    move({{0, 0}, {2, 1}, {6, 4}});
    EXPECT_EQ(model->reveal(UaNodeId(8, 4)), find("Pump")) << "the tree finds it by the new id";
    services->browses[UaNodeId(1, 4)] = {{{{"Motor", UaNodeId(7, 4)}, {"Fan", UaNodeId(9, 4)}}}};
    model->browseNodeIndex(find("Plant"));
    EXPECT_EQ(services->journal, QStringList{"browse ns=4;i=1"});
    EXPECT_EQ(model->rowCount(find("Plant")), 4) << "the motor is known already";
}

TEST_F(MovedNamespaces, NodesOfNamespacesThatAreGoneLeaveTheTree)
{
    services->browses[UaNodeId(1, 2)] = {{{{"Lathe", UaNodeId(7, 3)}}}};
    page->tree()->expand(find("Other"));
    page->tree()->setCurrentIndex(find("Motor"));
    const QAbstractItemModelTester tester(model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    services->browses.clear();
    move({{0, 0}, {2, 1}});
    EXPECT_EQ(modelText(*model), "Root\n  Other\n  Server\n");
    ASSERT_FALSE(announced.empty());
    for (const UaNodeId& id : announced)
        EXPECT_TRUE(id == UaNodeId(1, 1) || id == UaNodeId(2253) || id == UaNodeId(84))
            << "a node that is there, by its new id";
    model->fetchMore(find("Other"));
    EXPECT_TRUE(services->journal.contains("browse ns=1;i=1")) << "what is below now can be looked for";
}
} // namespace
