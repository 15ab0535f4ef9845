// The window of the search when its server is slow, gone, or another one than before.
#include <app/api/qlumconnectionstatus.h>
#include <plugins/addressspace/search/qlumfindnodeview.h>
#include <tests/support/modeltext.h>
#include <tests/support/stubapplication.h>
#include <tests/support/stubservernode.h>
#include <tests/support/tableservices.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>

#include <QAbstractButton>
#include <QAbstractItemModelTester>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QString>
#include <QTest>
#include <QTreeView>
#include <gtest/gtest.h>

#include <memory>

namespace {
constexpr int searchLimit = 20000; // ms

class FindNodeView : public testing::Test
{
protected:
    FindNodeView() : services(std::make_shared<TableServices>())
    {
        services->table.object(UaNodeId(84), "Root", UaNodeId());
        services->table.object(UaNodeId(85), "Objects", UaNodeId(84));
        services->table.object(UaNodeId(1, 2), "Boiler");
        services->table.variable(UaNodeId(2, 2), "Level", UaVariant(1.0), UaNodeId(1, 2));
        view = std::make_unique<QlumFindNodeView>([this](unsigned int) { return services; });
        view->setServers({&server});
    }
    ~FindNodeView() override
    {
        services->disconnect(); // what waits for the server ends
    }
    template <typename Widget>
    Widget* part(const char* name) const
    {
        return view->findChild<Widget*>(QLatin1String(name));
    }
    [[nodiscard]] int rows() const { return part<QTreeView>("foundNodes")->model()->rowCount(); }
    [[nodiscard]] QString state() const { return part<QLabel>("findState")->text(); }
    [[nodiscard]] bool isDone() const { return !part<QPushButton>("findCancel")->isEnabled(); }
    void find(const QString& text)
    {
        part<QLineEdit>("findText")->setText(text);
        view->find();
    }
    bool findAll(const QString& text)
    {
        find(text);
        return QTest::qWaitFor([this] { return isDone(); }, searchLimit);
    }
    void announce(QlumConnectionStatus status, const NamespaceMap& namespaces = {})
    {
        server.status = status;
        view->serverNodeChanged(server.serverId(), status, namespaces);
    }
    [[nodiscard]] bool isSaid(const QString& text) const
    {
        for (const QLabel* label : view->findChildren<QLabel*>())
            if (label->isVisibleTo(view.get()) && label->text().contains(text))
                return true;
        return false;
    }

    StubApplication application;
    StubServerNode server;
    std::shared_ptr<TableServices> services;
    std::unique_ptr<QlumFindNodeView> view;
};

TEST_F(FindNodeView, SearchesAgainWithoutTheServerUntilTheSessionEnds)
{
    const QAbstractItemModelTester tester(part<QTreeView>("foundNodes")->model());
    ASSERT_TRUE(findAll("level"));
    EXPECT_EQ(rows(), 1);
    const int calls = services->calls(NodeTable::Browse);
    ASSERT_TRUE(findAll("boil*"));
    EXPECT_EQ(rows(), 1);
    EXPECT_EQ(services->calls(NodeTable::Browse), calls);
    view->serverModelChanged(server.serverId());
    EXPECT_TRUE(state().contains("has changed since")) << state();

    announce(QlumConnectionStatus::Disconnected);
    EXPECT_EQ(rows(), 1) << "what was found can still be read";
    EXPECT_TRUE(state().contains("forgotten")) << state();
    find("level");
    EXPECT_TRUE(isSaid("Connect 'stub' first."));
    announce(QlumConnectionStatus::Connected);
    ASSERT_TRUE(findAll("level"));
    EXPECT_GT(services->calls(NodeTable::Browse), calls);

    announce(QlumConnectionStatus::NewSessionCreated, {{0, 0}, {2, 1}});
    EXPECT_EQ(rows(), 0) << "the ids are those of other nodes now";
    view->setServers({});
    EXPECT_FALSE(part<QPushButton>("find")->isEnabled());
}

TEST_F(FindNodeView, CancelsAtOnceWhileTheServerDoesNotAnswer)
{
    services->clock.hold();
    services->delay(NodeTable::Browse, 30000);
    find("level");
    ASSERT_TRUE(QTest::qWaitFor([this] { return services->clock.waiting() == 1; }, searchLimit));
    EXPECT_FALSE(isDone());
    part<QPushButton>("findCancel")->click();
    EXPECT_TRUE(isDone());
    EXPECT_TRUE(state().contains("not all of them")) << state();
}

TEST_F(FindNodeView, SaysWhatIsWrongWithAnExpression)
{
    part<QAbstractButton>("findExpression")->setChecked(true);
    find("(level");
    EXPECT_TRUE(isSaid("The regular expression is none."));
    EXPECT_TRUE(isDone());
}
} // namespace
