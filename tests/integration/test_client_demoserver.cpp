// The whole client on a real server: a project is opened, its server connects, nodes are found, shown and
// written, and what was saved opens again.
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumrunningwork.h>
#include <app/api/qlumservernode.h>
#include <app/mainwindow/qlummainactions.h>
#include <app/mainwindow/qlumtavelin.h>
#include <app/project/qlumprojectmodel.h>
#include <opcua/opcua.h>
#include <tests/integration/clientondemoserver.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>

#include <QAbstractItemView>
#include <QAction>
#include <QElapsedTimer>
#include <QHostAddress>
#include <QLineEdit>
#include <QModelIndex>
#include <QPushButton>
#include <QString>
#include <QStringList>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QTreeView>
#include <QVariant>
#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {
const QStringList doubleNode{QStringLiteral("Root"), QStringLiteral("Objects"), QStringLiteral("Demo"),
                             QStringLiteral("Scalar"), QStringLiteral("Double")};
const QStringList valueRow{QStringLiteral("Value"), QStringLiteral("Value")};

TEST_F(ClientOnDemoServer, WritesAValueAndShowsWhatTheServerHas)
{
    openDemoProject();
    EXPECT_EQ(window->windowTitle().contains(QLatin1String("Korvanda Tavelin")), true);
    select(doubleNode);
    ASSERT_TRUE(waitForAttribute({QStringLiteral("BrowseName")}, QStringLiteral("2, \"Double\"")))
        << logText();
    QTreeView* attributes = tree("Attributes");
    for (const char* text : {"3.25", "-0.5"}) {
        const QModelIndex value = find(*attributes, valueRow);
        ASSERT_TRUE(value.isValid());
        EXPECT_TRUE(attributes->model()->setData(value.sibling(value.row(), 1), QString::fromLatin1(text),
                                                 Qt::EditRole));
        EXPECT_TRUE(waitForAttribute(valueRow, QString::fromLatin1(text))) << logText();
    }
    // asked behind the view's back: it is the server's value
    UaReadValueIds nodes(1u);
    EXPECT_TRUE(OpcUa_IsGood(UaNodeId(UaString("Scalar.Double"), 2).copyTo(&nodes[0].NodeId)));
    nodes[0].AttributeId = OpcUa_Attributes_Value;
    UaDataValues values;
    UaDiagnosticInfos infos;
    UaClientSdk::ServiceSettings settings;
    ASSERT_TRUE(window->session(serverId)
                    ->read(settings, 0, OpcUa_TimestampsToReturn_Neither, nodes, values, infos)
                    .isGood());
    EXPECT_EQ(UaVariant(values[0].Value).toDouble(), -0.5);
}

TEST_F(ClientOnDemoServer, ShowsArraysAndStructuresAsWhatTheyAre)
{
    openDemoProject();
    const QStringList demo = doubleNode.mid(0, 3);
    select(demo + QStringList{QStringLiteral("Array"), QStringLiteral("Int32")});
    EXPECT_TRUE(waitForAttribute(valueRow, QStringLiteral("Int32 Array[3]")))
        << attribute(valueRow).toStdString();
    select(demo + QStringList{QStringLiteral("Structure"), QStringLiteral("NamedPoint")});
    ASSERT_TRUE(waitForAttribute({QStringLiteral("BrowseName")}, QStringLiteral("3, \"NamedPoint\"")))
        << attribute({QStringLiteral("BrowseName")}).toStdString();
    QStringList fields;
    const auto areDecoded = [&] { // their types may come later
        QTreeView* attributes = tree("Attributes");
        const QModelIndex value = find(*attributes, valueRow);
        fields.clear();
        for (int row = 0; row < attributes->model()->rowCount(value); ++row)
            fields += attributes->model()->index(row, 0, value).data().toString();
        return fields.contains(QLatin1String("X"), Qt::CaseInsensitive) &&
               fields.contains(QLatin1String("Name"), Qt::CaseInsensitive);
    };
    EXPECT_TRUE(QTest::qWaitFor(areDecoded, limit)) << fields.join(',').toStdString();
    select(demo + QStringList{QStringLiteral("Structure"), QStringLiteral("DeviceFlags")});
    EXPECT_TRUE(waitForAttribute(valueRow, QStringLiteral("Running | Fault (5)")))
        << attribute(valueRow).toStdString();
}

TEST_F(ClientOnDemoServer, TypesComeBesideTheConnection)
{
    openDemoProject();
    EXPECT_TRUE(QTest::qWaitFor(
        [this] { return logText().find("Data types of server 'Plant' loaded") != std::string::npos; }, limit))
        << logText();
}

TEST_F(ClientOnDemoServer, WhatIsShownIsDecodedWhenItsTypesComeLater)
{
    const auto mode = QStringLiteral("General.TypeDictionaryMode");
    const QVariant before = window->settingsValue(mode);
    window->setSettingsValue(mode, QStringLiteral("Manual"));
    openDemoProject();
    window->setSettingsValue(mode, before);
    select(doubleNode.mid(0, 3) + QStringList{QStringLiteral("Structure"), QStringLiteral("NamedPoint")});
    ASSERT_TRUE(waitForAttribute(valueRow, QStringLiteral("ExtensionObject")))
        << attribute(valueRow).toStdString();
    ASSERT_TRUE(window->session(serverId)->loadDataTypeDictionaries().isGood());
    auto* told = dynamic_cast<UaClientSdk::UaSessionCallback*>(window->projectModel()->findServer(serverId));
    ASSERT_NE(told, nullptr);
    told->dataTypesLoaded(serverId, UaStatus()); // as from the session
    EXPECT_TRUE(waitForAttribute(valueRow, QStringLiteral("NamedPoint")))
        << attribute(valueRow).toStdString();
}

TEST_F(ClientOnDemoServer, SavedProjectOpensAgainAndConnects)
{
    openDemoProject();
    const QString file = folder.filePath(QStringLiteral("again.uap"));
    ASSERT_TRUE(window->saveProject(file));
    window->clearProject();
    EXPECT_TRUE(window->projectServerIds().isEmpty());
    window->loadProject(file);
    ASSERT_EQ(window->projectServerIds().size(), 1);
    EXPECT_NE(window->projectServerIds().first(), serverId); // ids are new, what refers to them is mapped
    EXPECT_TRUE(QTest::qWaitFor([this] { return tree("Address Space") != nullptr; }, limit)) << logText();
    EXPECT_GT(window->namespaceTable(window->projectServerIds().first()).size(), 4);
}

TEST_F(ClientOnDemoServer, UnreachableServerEndsInTheLogAndTheProgramGoesOn)
{
    window->loadProject(writeProject(QStringLiteral("opc.tcp://127.0.0.1:1")));
    EXPECT_TRUE(QTest::qWaitFor(
        [this] { return logText().find("Could not connect to server: ") != std::string::npos; }, limit))
        << logText();
    window->clearProject();
    openDemoProject();
}

TEST_F(ClientOnDemoServer, NobodyWaitsForWorkUnderWayWhoClosesTheWindow)
{
    openDemoProject();
    window->actions()[QlumMainActions::FindNode]->trigger();
    window->findChild<QLineEdit*>(QStringLiteral("findText"))
        ->setText(QStringLiteral("nothing has this name"));
    window->findChild<QPushButton*>(QStringLiteral("find"))->click();
    ASSERT_TRUE(QTest::qWaitFor([] { return !QlumRunningWork::instance().isIdle(); }, limit)) << logText();
    QElapsedTimer timer;
    timer.start();
    window->setWindowModified(false);
    EXPECT_TRUE(window->close());
    window.reset();
    EXPECT_LT(timer.elapsed(), limit);
    EXPECT_TRUE(QlumRunningWork::instance().isIdle()) << "nobody is left who would take what it finds";
}

TEST_F(ClientOnDemoServer, NobodyWaitsForASilentServerWhoLeavesIt)
{
    QTcpServer silent;
    ASSERT_TRUE(silent.listen(QHostAddress::LocalHost));
    const QString url = QStringLiteral("opc.tcp://127.0.0.1:%1").arg(silent.serverPort());
    window->setSettingsValue(QStringLiteral("General.ConnectTimeout"), 120000u);
    const auto isCalled = [&silent] {
        const bool hasCome = silent.hasPendingConnections();
        delete silent.nextPendingConnection(); // whoever calls next is another
        return hasCome;
    };
    QElapsedTimer timer;
    timer.start();
    window->loadProject(writeProject(url));
    ASSERT_TRUE(QTest::qWaitFor([&silent] { return silent.hasPendingConnections(); }, limit)) << logText();
    QlumServerNode* server = window->projectModel()->servers().first();
    server->disconnectServer();
    EXPECT_TRUE(QTest::qWaitFor(
        [server] { return server->connectionStatus() == QlumConnectionStatus::Disconnected; }, limit));
    window->clearProject();
    ASSERT_TRUE(isCalled());
    window->loadProject(writeProject(url));
    ASSERT_TRUE(QTest::qWaitFor([&silent] { return silent.hasPendingConnections(); }, limit)) << logText();
    window->clearProject(); // removes a server that is being connected
    ASSERT_TRUE(isCalled());
    window->loadProject(writeProject(url));
    ASSERT_TRUE(QTest::qWaitFor([&silent] { return silent.hasPendingConnections(); }, limit)) << logText();
    EXPECT_TRUE(window->close());
    window.reset();
    EXPECT_LT(timer.elapsed(), 3 * limit) << "somebody has waited";
}
} // namespace
