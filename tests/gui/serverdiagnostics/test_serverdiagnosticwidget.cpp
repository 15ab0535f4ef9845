// The view of server diagnostics: its panels, what it says while it reads, and what the user does there.
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumtoolservices.h>
#include <plugins/serverdiagnostics/qlumcountsubscription.h>
#include <plugins/serverdiagnostics/qlumdiagnosticmodel.h>
#include <plugins/serverdiagnostics/qlumdiagnosticpanel.h>
#include <plugins/serverdiagnostics/qlumserverdiagnosticplugin.h>
#include <plugins/serverdiagnostics/qlumserverdiagnosticwidget.h>
#include <tests/gui/serverdiagnostics/diagnosticsfixture.h>
#include <uabase/values/uaarray.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/qlummessagebar.h>

#include <QAbstractItemModelTester>
#include <QAction>
#include <QClipboard>
#include <QColor>
#include <QComboBox>
#include <QGuiApplication>
#include <QLabel>
#include <QListWidget>
#include <QObject>
#include <QPushButton>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>

#include <chrono>
#include <string>
#include <utility>

namespace {

class ServerDiagnostics : public DiagnosticsFixture
{
protected:
    void stateServer()
    {
        NodeTable& table = services->table;
        const auto variable = [&table](OpcUa_UInt32 id, const UaVariant& value) {
            table.variable(UaNodeId(id), "", value, UaNodeId());
        };
        UaArray<OpcUa_LocalizedText> texts(3u);
        OpcUa_UInt32 next = 0;
        for (const char* name : {"Running", "Failed", "Out of Order"})
            EXPECT_TRUE(OpcUa_IsGood(UaLocalizedText(UaString(), UaString(name)).copyTo(&texts[next++])));
        UaVariant names;
        EXPECT_TRUE(OpcUa_IsGood(names.setArray(OpcUaType_LocalizedText, 3, texts.rawData())));
        variable(2261, UaVariant("Boiler Server"));
        variable(2259, UaVariant(OpcUa_Int32(2)));
        variable(7612, names);
        variable(2277, UaVariant(OpcUa_UInt32(4)));
        variable(2278, UaVariant(OpcUa_UInt32(40)));
        variable(3705, UaVariant("many"));
        variable(2993, UaVariant());
        variable(3709, UaVariant(OpcUa_Int32(0)));
        variable(2294, UaVariant(true));
        variable(11705, UaVariant(OpcUa_UInt32(50)));
        variable(11707, UaVariant(OpcUa_UInt32(50)));
        table.fail(NodeTable::Read, UaNodeId(2257), OpcUa_BadUserAccessDenied);
        table.object(UaNodeId(2997), "AggregateFunctions", UaNodeId());
        table.object(UaNodeId(2342, 0), "Average", UaNodeId(2997));
        services->limits.maxNodesPerRead = 50;
        application.settings["General.MaxOperationsPerServiceCall"] = 20u;
    }
    [[nodiscard]] QStringList messages() const
    {
        QStringList texts;
        const auto* bar = view.findChild<QlumMessageBar*>();
        for (const QLabel* label : bar->findChildren<QLabel*>())
            if (!bar->isHidden() && !label->text().isEmpty())
                texts.append(label->text());
        return texts;
    }
    void pressHelp() { view.findChild<QlumMessageBar*>()->findChild<QPushButton*>()->click(); }
};

TEST_F(ServerDiagnostics, RowsShowTheirValuesOrWhyThereIsNone)
{
    for (const QlumDiagnosticPanel* panel : view.serverPage()->panels())
        new QAbstractItemModelTester(panel->model(), &view);
    stateServer();
    connectView();
    EXPECT_EQ(serverValue("ProductName"), "Boiler Server");
    EXPECT_EQ(serverValue("State"), "Out of Order") << "as the server calls it";
    EXPECT_EQ(serverValue("RedundancySupport"), "None") << "as the standard calls it";
    EXPECT_EQ(serverValue("RedundantServerArray"), "Node does not exist");
    EXPECT_EQ(serverValue("StartTime"), "Node could not be read (BadUserAccessDenied)");
    EXPECT_EQ(serverValue("RejectedSessionCount"), "Cannot be displayed");
    EXPECT_EQ(serverValue("ShutdownReason"), "N/A");
    EXPECT_EQ(serverValue("MaxNodesPerRead"), "50");
    const QlumDiagnosticModel& status = *view.serverPage()->panels()[2]->model();
    EXPECT_EQ(status.index(0, QlumDiagnosticModel::Value).data(Qt::ForegroundRole).value<QColor>(),
              QColor("darkorange"));
    EXPECT_EQ(view.serverPage()->panels()[4]->model()->find("MaxNodesPerRead")->more, "20, by the settings");
    EXPECT_EQ(view.serverPage()->panels()[4]->model()->find("AggregateFunctions")->child(0)->text, "Average");
    EXPECT_EQ(
        names(*view.serverPage()->panels()[4]->model()),
        "ServerProfileArray; LocaleIdArray; MinSupportedSampleRate; MaxBrowseContinuationPoints; "
        "MaxQueryContinuationPoints; MaxHistoryContinuationPoints; SoftwareCertificates; MaxArrayLength; "
        "MaxStringLength; AggregateFunctions; ModellingRules; OperationLimits");
}

TEST_F(ServerDiagnostics, CountersRiseByTheSecondUnlessTheyBeginAnew)
{
    QlumDiagnosticModel model({"Parameter", "Value", "Per Second"});
    QlumDiagnosticItem* item = model.addRow("ReadCount", QlumDiagnosticKind::Counter);
    const QlumDiagnosticClock::time_point start;
    QStringList rates;
    for (const auto& [second, total] : {std::pair(1, 100u), {3, 150u}, {4, 20u}, {4, 21u}, {5, 22u}}) {
        model.setNewValue(item, UaDataValue(counter(total, 0)), start + std::chrono::seconds(second));
        rates.append(item->more);
    }
    model.setNewValue(item, UaDataValue(UaVariant(), OpcUa_BadTimeout), start + std::chrono::seconds(6));
    rates.append(item->more);
    EXPECT_EQ(rates, QStringList({"", "25.0", "", "", "1.00", ""}));
}

TEST_F(ServerDiagnostics, OldValuesStayWhileNewOnesAreReadAndWhenThereAreNone)
{
    stateServer();
    connectView();
    services->clock.hold();
    services->delay(NodeTable::Read, 500);
    services->table.setValue(UaNodeId(2261), UaVariant("Newer Server"));
    view.sltRefresh();
    const QlumDiagnosticPanel* build = view.serverPage()->panels()[0];
    EXPECT_EQ(build->title(), "Build Info (reading...)");
    EXPECT_EQ(serverValue("ProductName"), "Boiler Server");
    ASSERT_TRUE(QTest::qWaitFor([&] {
        services->clock.advance(500);
        return !view.isReading();
    }));
    EXPECT_EQ(build->title(), "Build Info");
    EXPECT_EQ(serverValue("ProductName"), "Newer Server");

    services->delay(NodeTable::Read, 0);
    services->failCalls(NodeTable::Read, OpcUa_BadTimeout);
    view.sltRefresh();
    ASSERT_TRUE(waitForAll());
    EXPECT_EQ(serverValue("ProductName"), "Node could not be read (BadTimeout)");
    EXPECT_TRUE(messages().contains("The sessions of Plc5 could not be read.") ||
                messages().contains("The values of Plc5 could not be read.") ||
                messages().contains("The subscriptions of Plc5 could not be read."));
    view.sessionStatusChanged(5, QlumConnectionStatus::ConnectionError);
    EXPECT_EQ(view.findChild<QLabel*>("diagnosticsOffline")->isHidden(), false);
}

TEST_F(ServerDiagnostics, ChangedCountsReadTheListsAgain)
{
    stateServer();
    stateArrays({{"A"}});
    connectView();
    view.sltCountChanged(QlumCountSubscription::Sessions, 1); // as the list has been read with
    stateArrays({{"A"}, {"B"}});
    view.sltCountChanged(QlumCountSubscription::Sessions, 2);
    EXPECT_EQ(serverValue("CurrentSessionCount"), "2");
    EXPECT_TRUE(QTest::qWaitFor([this] { return names(*view.sessions()) == "A; B"; }));
}

TEST_F(ServerDiagnostics, WhoCameBetweenTheListsAndTheFirstCountIsListed)
{
    stateServer();
    stateArrays({{"A"}});
    connectView();
    stateArrays({{"A"}, {"B"}});
    view.sltCountChanged(QlumCountSubscription::Sessions, 2);
    EXPECT_TRUE(QTest::qWaitFor([this] { return names(*view.sessions()) == "A; B"; }));
}

TEST_F(ServerDiagnostics, FlagIsWrittenWhenTheUserMeansIt)
{
    stateServer();
    connectView();
    auto* button = view.findChild<QPushButton*>("enableDiagnostics");
    EXPECT_EQ(button->text(), "&Disable...");
    button->click();
    EXPECT_EQ(services->calls(NodeTable::Write), 0) << "others are concerned, too";
    pressHelp();
    ASSERT_TRUE(QTest::qWaitFor([&] { return button->text() == "&Enable"; }));
    EXPECT_FALSE(services->table.value(UaNodeId(2294)).toBool());
    EXPECT_EQ(view.findChild<QLabel*>("diagnosticsEnabled")->text(),
              "Diagnostics are disabled: the server counts nothing.");
    ASSERT_TRUE(waitForAll());
    services->table.fail(NodeTable::Write, UaNodeId(2294), OpcUa_BadUserAccessDenied);
    button->click();
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return messages().contains("The diagnostics of Plc5 could not be enabled."); }));
}

TEST_F(ServerDiagnostics, AServerThatCountsNothingIsSaidToOnEveryPage)
{
    stateServer();
    services->table.setValue(UaNodeId(2294), UaVariant(false));
    for (const OpcUa_UInt32 list : {3707u, 3708u, subscriptionArray})
        services->table.fail(NodeTable::Read, UaNodeId(list), OpcUa_BadNodeIdUnknown);
    services->table.fail(NodeTable::Read, UaNodeId(2277), OpcUa_BadNotReadable);
    connectView();
    EXPECT_TRUE(messages().contains("The diagnostics of Plc5 are disabled."))
        << messages().join('\n').toStdString();
    EXPECT_EQ(serverValue("CurrentSessionCount"), "Node could not be read (BadNotReadable)");
    EXPECT_EQ(serverValue("State"), "Out of Order") << "the rest is shown";
    EXPECT_TRUE(note(view.subscriptionChooser()).startsWith("The subscriptions could not be read: "))
        << note(view.subscriptionChooser()).toStdString();
    services->table.setValue(UaNodeId(2294), UaVariant(true));
    view.sltRefresh();
    ASSERT_TRUE(waitForAll());
    EXPECT_FALSE(messages().contains("The diagnostics of Plc5 are disabled."));
}

TEST_F(ServerDiagnostics, EndpointsAreDescribedInFull)
{
    endpoints.url = "opc.tcp://plc:4840";
    endpoints.serversStatus = UaStatus(OpcUa_BadTimeout);
    UaEndpointDescriptions list(1);
    setText(list[0].EndpointUrl, "opc.tcp://plc:4840");
    list[0].SecurityMode = OpcUa_MessageSecurityMode_SignAndEncrypt;
    setText(list[0].SecurityPolicyUri, "http://opcfoundation.org/UA/SecurityPolicy#Basic256Sha256");
    const OpcUa_Byte certificate[] = {0x30, 0x82, 0x01};
    EXPECT_TRUE(OpcUa_IsGood(UaByteString(3, certificate).copyTo(&list[0].ServerCertificate)));
    UaUserTokenPolicys policies(1);
    setText(policies[0].PolicyId, "user");
    policies[0].TokenType = OpcUa_UserTokenType_UserName;
    policies.detach(&list[0].NoOfUserIdentityTokens, &list[0].UserIdentityTokens);
    endpoints.endpoints = list;
    QlumToolServices tools;
    QObject owner;
    UaByteString shown;
    tools.takeShowCertificate(&owner, [&](const UaByteString& der) { shown = der; });
    connectView();
    auto* entries = view.findChild<QListWidget*>("getEndpoints");
    ASSERT_EQ(entries->count(), 1);
    EXPECT_EQ(entries->item(0)->text(), "opc.tcp://plc:4840 (Basic256Sha256, SignAndEncrypt)");
    EXPECT_TRUE(view.findChild<QLabel*>("findServersNote")->text().contains("BadTimeout"));
    entries->setCurrentRow(0);
    auto* tree = view.findChild<QTreeView*>("endpointDescriptionView");
    const std::string text = modelText(*tree->model());
    EXPECT_NE(text.find("SecurityMode | SignAndEncrypt\n"), std::string::npos) << text;
    EXPECT_NE(
        text.find("  UserTokenPolicy[0] | user, UserName\n    PolicyId | user\n    TokenType | UserName\n"),
        std::string::npos)
        << text;
    for (int row = 0; row < tree->model()->rowCount(); ++row)
        if (tree->model()->index(row, 0).data() == "ServerCertificate")
            tree->setCurrentIndex(tree->model()->index(row, 0));
    tree->findChild<QAction*>("showCertificate")->trigger();
    EXPECT_EQ(shown.length(), 3);
}

TEST_F(ServerDiagnostics, ReportHasAllPages)
{
    stateServer();
    stateArrays({{"A"}});
    services->table.setValue(UaNodeId(subscriptionArray), arrayVariant({subscriptionOf(12, "A")}));
    connectView();
    view.findChild<QAction*>("copyReport")->trigger();
    const QString report = QGuiApplication::clipboard()->text();
    for (const char* line :
         {"Server diagnostics of Plc5\n---", "ProductName: Boiler Server\n",
          "  MaxNodesPerRead: 50 (20, by the settings)\n", "Session Diagnostics: A\n", "SessionName: A\n",
          "\nSubscriptions\n-------------\n12\n  Session: A\n", "GetEndpoints Response"})
        EXPECT_TRUE(report.contains(line)) << line << '\n' << report.toStdString();
}

TEST_F(ServerDiagnostics, ViewFollowsTheProjectUnlessItKeepsToItsServer)
{
    stateServer();
    connectView();
    view.serverSelectionChanged(6);
    EXPECT_EQ(view.serverId(), 6u);
    EXPECT_EQ(serverValue("ProductName"), "") << "nothing of the other server";
    EXPECT_FALSE(view.findChild<QLabel*>("diagnosticsOffline")->isHidden());
    auto* servers = view.findChild<QComboBox*>("currentServer");
    servers->setCurrentIndex(servers->findData(5u));
    emit servers->activated(servers->currentIndex());
    view.serverSelectionChanged(6);
    EXPECT_EQ(view.serverId(), 5u) << "chosen in the view";
    ASSERT_TRUE(waitForAll());

    const QTemporaryDir folder;
    QSettings settings(folder.filePath("a.uap"), QSettings::IniFormat);
    view.saveSettings(settings);
    QlumServerDiagnosticPlugin plugin([this](unsigned int) { return services; });
    plugin.init(&application);
    auto* other = static_cast<QlumServerDiagnosticWidget*>(plugin.createDocument("Server Diagnostics View"));
    other->loadSettings(settings, {{5, 6}});
    plugin.serverSelectionChanged(5);
    EXPECT_EQ(other->serverId(), 6u) << "by its id of now";
    plugin.sessionRemoved(6);
    EXPECT_EQ(other->serverId(), qlumNoServer);
    plugin.shutdown();

    view.sessionRemoved(5);
    EXPECT_EQ(view.serverId(), qlumNoServer);
    EXPECT_EQ(serverValue("ProductName"), "");
}

} // namespace
