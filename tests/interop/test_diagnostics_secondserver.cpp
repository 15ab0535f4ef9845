// The server diagnostics view on the second server, which lacks some of what the first one has.
#include <app/mainwindow/qlumdocumentarea.h>
#include <plugins/serverdiagnostics/qlumdiagnosticmodel.h>
#include <plugins/serverdiagnostics/qlumdiagnosticpanel.h>
#include <plugins/serverdiagnostics/qlumdiagnosticserverpage.h>
#include <plugins/serverdiagnostics/qlumserverdiagnosticwidget.h>
#include <plugins/serverdiagnostics/qlumsessiontable.h>
#include <plugins/serverdiagnostics/qlumsubscriptiontable.h>
#include <tests/interop/clientonsecondserver.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/sessionconnectinfo.h>
#include <uaclientsdk/sessionsecurityinfo.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>

#include <QAbstractItemModel>
#include <QLabel>
#include <QListWidget>
#include <QString>
#include <QStringList>
#include <gtest/gtest.h>

#include <string>

namespace {
class DiagnosticsOnSecondServer : public ClientOnSecondServer
{
protected:
    void SetUp() override
    {
        ClientOnSecondServer::SetUp();
        if (HasFatalFailure() || IsSkipped())
            return;
        window->documents()->bringUp(QStringLiteral("Server Diagnostics View"));
        view = window->findChild<QlumServerDiagnosticWidget*>();
        ASSERT_NE(view, nullptr);
        ASSERT_TRUE(waitFor([this] { return view->sessions()->rowCount() > 0 && !view->isReading(); }))
            << logText();
    }
    [[nodiscard]] static QStringList names(const QAbstractItemModel& model)
    {
        QStringList list;
        for (int row = 0; row < model.rowCount(); ++row)
            list.append(model.index(row, 0).data().toString());
        return list;
    }
    // Labels of rows without a value.
    [[nodiscard]] static QStringList faults(const QlumDiagnosticPanel* panel)
    {
        QStringList lines = panel->model()->toText().split('\n').filter(": Node ");
        for (QString& line : lines)
            line = line.trimmed();
        return lines;
    }
    [[nodiscard]] QlumDiagnosticPanel* panel(int place) const
    {
        return view->serverPage()->panels()[static_cast<std::size_t>(place)];
    }

    QlumServerDiagnosticWidget* view = nullptr;
};

class Quiet : public UaClientSdk::UaSessionCallback
{
public:
    void connectionStatusChanged(OpcUa_UInt32, UaClientSdk::UaClient::ServerStatus) override {}
};

TEST_F(DiagnosticsOnSecondServer, EveryPageShowsWhatThereIsAndSaysWhatIsNot)
{
    for (const int complete : {0, 1, 2}) // build, counters, status
        EXPECT_TRUE(faults(panel(complete)).isEmpty()) << view->report().toStdString();
    EXPECT_EQ(panel(2)->model()->find("State")->text, "Running");
    EXPECT_EQ(panel(3)->model()->find("RedundancySupport")->text, "None");
    EXPECT_EQ(faults(panel(3)), QStringList({"CurrentServerId: Node does not exist",
                                             "RedundantServerArray: Node does not exist",
                                             "ServerUriArray: Node does not exist"}));
    const QStringList lacking = faults(panel(4));
    EXPECT_EQ(lacking.filter(": Node does not exist").size(), lacking.size())
        << lacking.join('\n').toStdString();
    EXPECT_EQ(panel(4)->model()->find("MaxNodesPerRead")->text, "5");
    EXPECT_EQ(panel(4)->model()->find("ModellingRules")->child(0)->text, "ExposesItsArray");

    EXPECT_EQ(names(*view->sessions()).filter(" (Current session)").size(), 1);
    EXPECT_TRUE(view->sessionPanel()->model()->find("ReadCount")->text.startsWith("Total "));
    EXPECT_EQ(view->securityPanel()->model()->find("SecurityMode")->text, "None");
    for (const QlumDiagnosticPanel* of :
         {view->sessionPanel(), view->securityPanel(), view->subscriptionPanel()})
        EXPECT_TRUE(faults(of).isEmpty()) << faults(of).join('\n').toStdString();
    EXPECT_EQ(names(*view->subscriptions()).filter(" (Diagnostic subscription)").size(), 1)
        << names(*view->subscriptions()).join('\n').toStdString();
    EXPECT_GE(view->findChild<QListWidget*>("findServers")->count(), 1);
    EXPECT_GE(view->findChild<QListWidget*>("getEndpoints")->count(), 3) << "secured ones, too";
    EXPECT_TRUE(view->findChild<QLabel*>("countNote")->isHidden());
    EXPECT_EQ(logText().find("should be"), std::string::npos) << logText();
}

TEST_F(DiagnosticsOnSecondServer, ListsFollowWhoComesAndGoes)
{
    const int before = view->sessions()->rowCount();
    Quiet callback;
    UaClientSdk::UaSession other;
    UaClientSdk::SessionConnectInfo info;
    info.sessionName = UaString("Somebody else");
    ASSERT_TRUE(other.connect(UaString(url().c_str()), info, {}, &callback).isGood());
    EXPECT_TRUE(waitFor([&] { return view->sessions()->rowCount() == before + 1; }))
        << names(*view->sessions()).join('\n').toStdString();
    static_cast<void>(other.disconnect({}, true));
    EXPECT_TRUE(waitFor([&] { return view->sessions()->rowCount() == before; }));
    EXPECT_EQ(names(*view->sessions()).filter(" (Current session)").size(), 1);
}
} // namespace
