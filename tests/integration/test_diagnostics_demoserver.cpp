// The server diagnostics view on the demo server, whose diagnostics are those of its library.
#include <app/api/qlumtext.h>
#include <app/mainwindow/qlumdocumentarea.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/serverdiagnostics/qlumdiagnosticchooser.h>
#include <plugins/serverdiagnostics/qlumdiagnosticmodel.h>
#include <plugins/serverdiagnostics/qlumdiagnosticpanel.h>
#include <plugins/serverdiagnostics/qlumdiagnosticserverpage.h>
#include <plugins/serverdiagnostics/qlumserverdiagnosticwidget.h>
#include <plugins/serverdiagnostics/qlumsessiontable.h>
#include <plugins/serverdiagnostics/qlumsubscriptiontable.h>
#include <tests/integration/clientondemoserver.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/sessionconnectinfo.h>
#include <uaclientsdk/sessionsecurityinfo.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>

#include <QAbstractItemModel>
#include <QListWidget>
#include <QString>
#include <QStringList>
#include <QTest>
#include <gtest/gtest.h>

namespace {

class DiagnosticsOnDemoServer : public ClientOnDemoServer
{
protected:
    [[nodiscard]] static QStringList names(const QAbstractItemModel& model)
    {
        QStringList list;
        for (int row = 0; row < model.rowCount(); ++row)
            list.append(model.index(row, 0).data().toString());
        return list;
    }
    [[nodiscard]] QString serverValue(const char* label) const
    {
        for (const QlumDiagnosticPanel* panel : view->serverPage()->panels())
            if (const QlumDiagnosticItem* item = panel->model()->find(QLatin1String(label)))
                return item->text;
        return QString();
    }
    [[nodiscard]] int ownSessions() const
    {
        return names(*view->sessions()).filter(" (Current session)").size();
    }

    QlumServerDiagnosticWidget* view = nullptr;
};

class Quiet : public UaClientSdk::UaSessionCallback
{
public:
    void connectionStatusChanged(OpcUa_UInt32, UaClientSdk::UaClient::ServerStatus) override {}
};

TEST_F(DiagnosticsOnDemoServer, ShowsItselfAndFollowsWhoComesAndGoes)
{
    openDemoProject();
    window->documents()->bringUp(QStringLiteral("Server Diagnostics View"));
    view = window->findChild<QlumServerDiagnosticWidget*>();
    ASSERT_NE(view, nullptr);
    ASSERT_TRUE(
        QTest::qWaitFor([this] { return view->sessions()->rowCount() > 0 && !view->isReading(); }, limit))
        << logText();
    EXPECT_EQ(serverValue("State"), "Running");
    EXPECT_FALSE(serverValue("SoftwareVersion").isEmpty());
    EXPECT_EQ(ownSessions(), 1) << names(*view->sessions()).join('\n').toStdString();
    EXPECT_TRUE(view->sessionPanel()->model()->find("ReadCount")->text.startsWith("Total "))
        << view->sessionPanel()->model()->toText().toStdString();
    // which this server tells over secured connections only
    EXPECT_EQ(view->securityPanel()->model()->find("SecurityMode")->text,
              "Node could not be read (BadSecurityModeInsufficient)")
        << view->securityPanel()->model()->toText().toStdString();
    EXPECT_EQ(names(*view->subscriptions()).filter(" (Diagnostic subscription)").size(), 1)
        << names(*view->subscriptions()).join('\n').toStdString();
    EXPECT_GE(view->findChild<QListWidget*>("getEndpoints")->count(), 1);
    EXPECT_GE(view->findChild<QListWidget*>("findServers")->count(), 1);

    Quiet callback;
    UaClientSdk::UaSession other;
    UaClientSdk::SessionConnectInfo info;
    info.sessionName = UaString("Somebody else");
    ASSERT_TRUE(other.connect(UaString(demoserver::endpointUrl().c_str()), info, {}, &callback).isGood());
    const auto isListed = [this] { return !names(*view->sessions()).filter("Somebody else").isEmpty(); };
    EXPECT_TRUE(QTest::qWaitFor(isListed, limit)) << names(*view->sessions()).join('\n').toStdString();
    static_cast<void>(other.disconnect({}, true));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !isListed(); }, limit));
    EXPECT_EQ(ownSessions(), 1);
}

} // namespace
