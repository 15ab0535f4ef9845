#include <app/api/qlumtoolservices.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/uasession.h>
#include <uawidgets/qlumnodecommands.h>

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QObject>
#include <QPoint>
#include <QSignalSpy>
#include <QString>
#include <QStringList>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <QWidget>
#include <gtest/gtest.h>

#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace {
const QString watchType = QStringLiteral("Data Access View");
const QString trendType = QStringLiteral("History Trend View");

QlumToolNode variable(OpcUa_UInt32 id)
{
    return {7, UaNodeId(id, 2), OpcUa_NodeClass_Variable, UaNodeId(85), {}};
}

QlumToolNode method(const UaNodeId& object)
{
    return {7, UaNodeId(900, 2), OpcUa_NodeClass_Method, object, {}};
}

class ToolServices : public testing::Test
{
protected:
    // Takes variables only and remembers which.
    void takeVariables(QObject* plugin, const QString& type)
    {
        services.takeNodes(
            plugin,
            {type, [](const QlumToolNode& node) { return node.nodeClass == OpcUa_NodeClass_Variable; },
             [this, type](QWidget* document, std::span<const QlumToolNode> nodes) {
                 EXPECT_EQ(document, &page);
                 added.emplace_back(type, QlumToolNodes(nodes.begin(), nodes.end()));
             }});
    }
    void openDocuments()
    {
        services.takeDocuments(
            &owner,
            [this](const QString&) {
                ++opened;
                return &page;
            });
    }

    QlumToolServices services;
    QObject owner;
    QWidget page;
    int opened = 0;
    std::vector<std::pair<QString, QlumToolNodes>> added;
};

TEST_F(ToolServices, NodesReachOnlyTheTypeThatWasAskedAndOnlyWhatItAccepts)
{
    openDocuments();
    takeVariables(&owner, watchType);
    takeVariables(&owner, trendType);
    const QlumToolNodes mixed{variable(1), method(UaNodeId(85)), variable(2)};
    EXPECT_EQ(services.documentTypes(mixed), (QStringList{watchType, trendType}));
    EXPECT_TRUE(services.openNodes(trendType, mixed));
    ASSERT_EQ(added.size(), 1u);
    EXPECT_EQ(added[0].first, trendType);
    EXPECT_EQ(added[0].second, (QlumToolNodes{variable(1), variable(2)}));

    const QlumToolNodes none{method(UaNodeId(85))};
    EXPECT_TRUE(services.documentTypes(none).isEmpty());
    EXPECT_FALSE(services.openNodes(trendType, none));
    EXPECT_FALSE(services.openNodes(QStringLiteral("Event View"), mixed));
    EXPECT_EQ(opened, 1) << "no document for nodes that nobody takes";
}

TEST_F(ToolServices, WithoutATakerNothingIsDoneAndTheLastTakerWins)
{
    EXPECT_FALSE(services.revealNode(1, UaNodeId(85)));
    EXPECT_FALSE(services.callMethod(1, UaNodeId(85), UaNodeId(86)));
    EXPECT_FALSE(services.showCertificate({}));
    EXPECT_FALSE(services.showValue(1, {}, {}));
    EXPECT_FALSE(services.reconnectWith(1, OpcUa_MessageSecurityMode_Sign, nullptr));
    EXPECT_FALSE(services.sideSession(1, {}, nullptr, &owner, [](const auto&, const UaStatus&) { FAIL(); }));
    takeVariables(&owner, watchType);
    EXPECT_FALSE(services.openNodes(watchType, QlumToolNodes{variable(1)})) << "nobody opens documents";

    QStringList asked;
    services.takeReveal(&owner, [&asked](unsigned int, const UaNodeId&) {
        asked.append(QStringLiteral("first"));
        return true;
    });
    {
        QObject plugin;
        services.takeReveal(&plugin, [&asked](unsigned int, const UaNodeId&) {
            asked.append(QStringLiteral("second"));
            return false;
        });
        EXPECT_FALSE(services.revealNode(1, UaNodeId(85)));
    }
    EXPECT_TRUE(services.revealNode(1, UaNodeId(85)));
    EXPECT_EQ(asked, (QStringList{QStringLiteral("second"), QStringLiteral("first")}));
}

TEST_F(ToolServices, ValuesOfAKindGoToTheirDocumentAndAllOthersToAWindow)
{
    QStringList shown;
    services.takeShowValue(&owner,
                           [&](unsigned int, const UaVariant&, const UaNodeId&) { shown.append("window"); });
    QlumValueTaker taker;
    taker.documentType = trendType;
    taker.accepts = [](const UaVariant& value, const UaNodeId&) { return value.type() == OpcUaType_Double; };
    taker.show = [&](QWidget*, unsigned int, const UaVariant&, const UaNodeId&, const QlumToolNode& origin) {
        shown.append(origin.nodeId.isNull() ? "part" : "document");
    };
    QObject plugin;
    services.takeValues(&plugin, taker);
    EXPECT_TRUE(services.showValue(1, UaVariant(2.5), {}));
    EXPECT_FALSE(services.canShowInDocument(UaVariant(2.5), {})) << "nobody opens documents";
    openDocuments();
    EXPECT_TRUE(services.showValue(1, UaVariant(2.5), {}, variable(1)));
    EXPECT_TRUE(services.showValue(1, UaVariant(2.5), {}));
    EXPECT_TRUE(services.showValue(1, UaVariant(true), {}));
    services.removeTakers(&plugin);
    EXPECT_TRUE(services.showValue(1, UaVariant(2.5), {}));
    EXPECT_EQ(shown.join(' '), "window document part window window");
}

TEST_F(ToolServices, ATakerMayGoWhileItIsCalled)
{
    auto plugin = std::make_unique<QObject>();
    QObject context;
    bool finished = false;
    services.takeCallMethod(plugin.get(), [&, text = QString(64, QLatin1Char('x'))](
                                              unsigned int, const UaNodeId&, const UaNodeId&) {
        plugin.reset(); // as when the program ends below a dialog
        finished = text.size() == 64;
    });
    EXPECT_TRUE(services.callMethod(1, UaNodeId(85), UaNodeId(86)));
    EXPECT_TRUE(finished);
    EXPECT_FALSE(services.canCallMethod());

    const QSignalSpy changes(&services, &QlumToolServices::takersChanged);
    takeVariables(&owner, watchType);
    services.removeTakers(&owner);
    services.removeTakers(&owner);
    EXPECT_EQ(changes.count(), 2);
    EXPECT_TRUE(services.documentTypes().isEmpty());
}

TEST_F(ToolServices, ASideSessionIsNotToldToWhoHasGone)
{
    std::vector<QlumSideSessionDone> waiting;
    services.takeSideSession(&owner,
                             [&waiting](unsigned int, const QlumSideEndpoint&, const QlumIdentity&,
                                        QlumSideSessionDone done) { waiting.push_back(std::move(done)); });
    auto gone = std::make_unique<QObject>();
    int told = 0;
    const auto tell = [&told](const std::shared_ptr<UaClientSdk::UaSession>&, const UaStatus& status) {
        EXPECT_TRUE(status.isBad());
        ++told;
    };
    EXPECT_TRUE(services.sideSession(1, {}, nullptr, gone.get(), tell));
    EXPECT_TRUE(services.sideSession(1, {}, nullptr, &owner, tell));
    gone.reset();
    for (const QlumSideSessionDone& done : waiting)
        done(nullptr, UaStatus(OpcUa_BadUserAccessDenied));
    EXPECT_EQ(told, 1);
}

// ---- commands of a view

class NodeCommands : public ToolServices
{
protected:
    NodeCommands()
    {
        view.setContextMenuPolicy(Qt::ActionsContextMenu);
        commands = new QlumNodeCommands(&view, [this] { return selected; });
        view.show();
    }
    // What the menu offers that the key opens.
    QStringList menu(const QString& trigger = QString())
    {
        QStringList texts;
        QTimer::singleShot(0, &view, [&texts, &trigger] {
            auto* popup = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            ASSERT_NE(popup, nullptr);
            QAction* wanted = nullptr;
            for (QAction* action : popup->actions()) {
                if (action->isVisible())
                    texts.append(action->text());
                if (action->text() == trigger)
                    wanted = action;
            }
            popup->close();
            if (wanted)
                wanted->trigger();
        });
        QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(1, 1), view.mapToGlobal(QPoint(1, 1)));
        QApplication::sendEvent(&view, &event);
        return texts;
    }

    QlumToolNodes selected;
    QTreeWidget view;
    QlumNodeCommands* commands = nullptr;
};

TEST_F(NodeCommands, AppearWithTheirTakersAndForNodesThatTheseAccept)
{
    selected = {variable(1), variable(2)};
    const QString add = QStringLiteral("Add to Data Access View");
    commands->update();
    for (const QAction* action : view.actions())
        EXPECT_FALSE(action->isVisible()) << action->text().toStdString();
    openDocuments();
    QObject plugin;
    takeVariables(&plugin, watchType);
    EXPECT_EQ(menu(add), QStringList{add});
    ASSERT_EQ(added.size(), 1u);
    EXPECT_EQ(added[0].second, selected);

    services.takeReveal(&plugin, [](unsigned int, const UaNodeId&) { return true; });
    selected = {method(UaNodeId(85))};
    EXPECT_EQ(menu(), QStringList{QStringLiteral("Show in Address &Space")});
    services.removeTakers(&plugin);
    EXPECT_EQ(view.actions().size(), 2) << "the command of a tool that is gone must not stay";
}

TEST_F(NodeCommands, ToolsAddMenusThatGoWithThem)
{
    openDocuments();
    QObject plugin;
    QlumToolNodes taken;
    for (const char* name : {"ids", "paths"})
        services.takeNodeTool(&plugin, {QStringLiteral("&Copy As"), name, name, name,
                                        [&taken](const QlumToolNodes& nodes) { taken = nodes; }});
    EXPECT_EQ(menu(), QStringList()) << "nothing is selected";
    selected = {variable(1)};
    EXPECT_EQ(menu(), QStringList{QStringLiteral("&Copy As")});
    auto* paths = view.findChild<QAction*>(QStringLiteral("paths"));
    ASSERT_NE(paths, nullptr);
    paths->trigger();
    EXPECT_EQ(taken, selected);
    services.removeTakers(&plugin);
    EXPECT_EQ(menu(), QStringList());
}

TEST_F(NodeCommands, AMethodIsCalledOnTheObjectBelowWhichItWasFound)
{
    UaNodeId object;
    services.takeCallMethod(
        &owner, [&object](unsigned int serverId, const UaNodeId& objectId, const UaNodeId& methodId) {
            EXPECT_EQ(serverId, 7u);
            EXPECT_EQ(methodId, UaNodeId(900, 2));
            object = objectId;
        });
    selected = {method(UaNodeId())};
    auto* call = view.findChild<QAction*>(QStringLiteral("callMethod"));
    ASSERT_NE(call, nullptr);
    commands->update();
    EXPECT_FALSE(call->isVisible()) << "nobody knows its object";
    selected = {method(UaNodeId(85))};
    EXPECT_EQ(menu(QStringLiteral("&Call...")), QStringList{QStringLiteral("&Call...")});
    EXPECT_EQ(object, UaNodeId(85));
}
} // namespace
