// Where a connect may be ended, and that nothing waits for it then.
#include <app/api/qlumconnectionstatus.h>
#include <servers/qlumconnectflow.h>
#include <servers/qlumconnectprogress.h>
#include <servers/qlumdiscoverysetting.h>
#include <servers/qlumendpoint.h>
#include <tests/gui/servers/servernodefixture.h>
#include <tests/support/fakestack.h>
#include <tests/support/modeltext.h>
#include <tests/support/securedserver.h>

#include <QApplication>
#include <QCoreApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QEvent>
#include <QLabel>
#include <QMetaObject>
#include <QObject>
#include <QProgressDialog>
#include <QPushButton>
#include <QString>
#include <QStringList>
#include <QTest>

#include <thread>

namespace {
using Step = QlumConnectFlow::Step;

class ConnectFlow : public ServerNode
{
protected:
    ~ConnectFlow() override { node.reset(); } // it may still call the server
    // A server that does not answer requests of the kind.
    static void hangAt(const OpcUa_EncodeableType& type)
    {
        FakeStack::instance().on(
            type, [](const void*, void*) { return FakeStack::instance().hang(); });
    }
    // Whether it has been asked.
    static bool hangs(const OpcUa_EncodeableType& type)
    {
        return QTest::qWaitFor([&] { return FakeStack::instance().calls(type) > 0; }) &&
               FakeStack::instance().waitForHang();
    }
    // A server whose CreateSession shows better security than its discovery did, which has to be asked
    // about.
    void hideSecurity()
    {
        offerOne(setting.endpoint);
        server.tamperCreate = [this](OpcUa_CreateSessionResponse& answer) {
            QlumEndpoint hidden = setting.endpoint;
            hidden.securityMode = OpcUa_MessageSecurityMode_SignAndEncrypt;
            hidden.securityPolicyUri = OpcUa_SecurityPolicy_Basic256Sha256;
            UaEndpointDescriptions all;
            all.attach(answer.NoOfServerEndpoints, answer.ServerEndpoints);
            EXPECT_TRUE(all.append(qlumEndpointDescriptions({hidden})[0]));
            all.detach(&answer.NoOfServerEndpoints, &answer.ServerEndpoints);
        };
    }
    // A server of HTTPS whose certificate the session is the first to meet.
    void distrustTls()
    {
        setting.endpoint.url = "https://plc:443";
        FakeStack::instance().distrustTls({});
        offerOne(setting.endpoint);
        const auto discover = FakeStack::instance().handler(OpcUa_GetEndpointsRequest_EncodeableType);
        FakeStack::instance().on(OpcUa_GetEndpointsRequest_EncodeableType,
                                 [=](const void* request, void* response) {
                                     FakeStack::instance().distrustTls("any");
                                     return discover(request, response);
                                 });
    }
    // Begins a connect and waits until it has come that far.
    void connectUntil(Step step, bool isAsking)
    {
        make();
        Step current = Step::Idle;
        bool asks = false;
        const auto connection =
            QObject::connect(&node->connectFlow(), &QlumConnectFlow::stepChanged,
                             [&](Step now, bool nowAsks) { current = now, asks = nowAsks; });
        ASSERT_TRUE(node->startConnect());
        EXPECT_TRUE(QTest::qWaitFor([&] { return current == step && asks == isAsking; }))
            << static_cast<int>(current) << log().join('\n');
        QObject::disconnect(connection);
    }
    void expectCancelled()
    {
        EXPECT_TRUE(QTest::qWaitFor([this] { return !node->isBusy(); }, 3000)) << log().join('\n');
        EXPECT_EQ(log().last(), "30 Aborting connection attempt");
        EXPECT_EQ(node->connectionStatus(), QlumConnectionStatus::Disconnected);
        EXPECT_FALSE(node->session()->isConnected());
        EXPECT_TRUE(log().filter("Connecting failed").isEmpty()) << "nobody has to be told what he has done";
    }

    SecuredServer server{FakeStack::instance(), OpcUa_SecurityPolicy_None, OpcUa_MessageSecurityMode_None};
};

TEST_F(ConnectFlow, EndsWhileTheServerIsAskedForItsEndpoints)
{
    hangAt(OpcUa_GetEndpointsRequest_EncodeableType);
    connectUntil(Step::Endpoints, false);
    ASSERT_TRUE(hangs(OpcUa_GetEndpointsRequest_EncodeableType));
    node->disconnectServer();
    expectCancelled();
    offer({{"opc.tcp://plc:4840", qlumPolicyNone()}});
    EXPECT_TRUE(node->connectServer()) << "the question that was cancelled holds nobody up";
}

TEST_F(ConnectFlow, RemovalDoesNotWaitForAServerThatIsAskedForItsEndpoints)
{
    hangAt(OpcUa_GetEndpointsRequest_EncodeableType); // far longer than the test may take
    connectUntil(Step::Endpoints, false);
    ASSERT_TRUE(hangs(OpcUa_GetEndpointsRequest_EncodeableType));
    QElapsedTimer timer;
    timer.start();
    node.reset();
    EXPECT_LT(timer.elapsed(), 3000);
}

TEST_F(ConnectFlow, EndsWhileTheUserIsAsked)
{
    script.isSilent = true;
    setting.userTokenType = QlumDiscoverySetting::UserName;
    connectUntil(Step::User, true);
    node->connectFlow().cancel();
    expectCancelled();
    EXPECT_EQ(script.withdrawn, QStringList{"clear password"});
}

TEST_F(ConnectFlow, EndsWhileTheSessionIsConnected)
{
    hangAt(OpcUa_CreateSessionRequest_EncodeableType);
    connectUntil(Step::Session, false);
    ASSERT_TRUE(hangs(OpcUa_CreateSessionRequest_EncodeableType));
    node->connectFlow().cancel();
    EXPECT_EQ(node->connectFlow().step(), Step::Ending) << "without waiting for it";
    expectCancelled();
}

TEST_F(ConnectFlow, EndsWhileAnErrorWaitsForItsAnswer)
{
    hideSecurity();
    script.isSilent = true;
    connectUntil(Step::Session, true);
    EXPECT_EQ(asked(), QStringList{"connect error"});
    node->disconnectServer();
    expectCancelled();
    EXPECT_TRUE(server.logins.empty());
    script.isSilent = false;
    script.isErrorIgnored = true;
    EXPECT_TRUE(node->connectServer()) << log().join('\n');
}

TEST_F(ConnectFlow, RemovalDeclinesAnErrorThatWaitsForItsAnswer)
{
    hideSecurity();
    script.isSilent = true;
    connectUntil(Step::Session, true);
    node.reset();
    EXPECT_EQ(script.withdrawn, QStringList{"connect error"});
    EXPECT_TRUE(server.logins.empty());
}

// The box vanished at the end of the time; an Ignore before that ended in a session that was forgotten.
TEST_F(ConnectFlow, AnErrorWhoseConnectionHadGoneTookAnIgnoreThatNobodyHeard)
{
    application.settings["General.SessionTimeout"] = 50.0;
    hideSecurity();
    make();
    script.silentAt = "connect error";
    EXPECT_FALSE(node->connectServer());
    EXPECT_EQ(asked(), (QStringList{"connect error", "connect anew"}));
    EXPECT_EQ(node->connectionStatus(), QlumConnectionStatus::ConnectFailed);
    EXPECT_TRUE(log().last().startsWith("100 Connecting failed with error '")) << log().last();

    application.settings["General.SessionTimeout"] = 1200000.0;
    script.isErrorIgnored = script.isConnectedAnew = true;
    server.activateResult = OpcUa_BadSessionIdInvalid; // Ignore comes after the server has forgotten
    script.beforeAnswer = [this] {
        if (script.asked.last() == "connect anew")
            server.activateResult = OpcUa_Good;
    };
    EXPECT_TRUE(node->connectServer()) << log().join('\n');
    EXPECT_EQ(asked(), (QStringList{"connect error", "connect anew", "connect error"}))
        << "the word of before holds for no other session";
}

TEST_F(ConnectFlow, NoOtherConnectIsOfferedWhereTheUserHasDeclinedOrEndsIt)
{
    hideSecurity();
    make();
    EXPECT_FALSE(node->connectServer());
    EXPECT_EQ(asked(), QStringList{"connect error"});
    EXPECT_EQ(node->connectionStatus(), QlumConnectionStatus::ConnectFailed);

    application.settings["General.SessionTimeout"] = 50.0;
    script.isSilent = true;
    ASSERT_TRUE(node->startConnect());
    EXPECT_TRUE(QTest::qWaitFor([this] { return script.asked.contains("connect anew"); }));
    node->disconnectServer();
    EXPECT_TRUE(QTest::qWaitFor([this] { return !node->isBusy(); }));
    EXPECT_EQ(node->connectionStatus(), QlumConnectionStatus::Disconnected);
    EXPECT_EQ(node->connectFlow().outcome(), OpcUa_BadRequestCancelledByClient);
    EXPECT_EQ(script.withdrawn.last(), "connect anew");
}

TEST_F(ConnectFlow, ATlsCertificateWaitsForItsAnswerUntilTheConnectIsEnded)
{
    setting.endpoint.securityPolicyUri = OpcUa_SecurityPolicy_Basic256Sha256;
    distrustTls();
    script.isSilent = true;
    connectUntil(Step::Session, true);
    EXPECT_EQ(script.asked, QStringList{"tls trust"});
    node->disconnectServer();
    expectCancelled();

    distrustTls();
    connectUntil(Step::Session, true);
    node.reset();
    EXPECT_EQ(script.withdrawn, (QStringList{"tls trust", "tls trust"}));

    distrustTls();
    application.settings["General.SessionTimeout"] = 50.0;
    make();
    EXPECT_FALSE(node->connectServer());
    EXPECT_EQ(node->connectionStatus(), QlumConnectionStatus::ConnectFailed);
    EXPECT_EQ(script.withdrawn.size(), 3);
    EXPECT_EQ(log().last(), "100 Connecting failed with error 'BadCertificateUntrusted'");
    EXPECT_EQ(application.window.findChild<QDialog*>("certificateRefused"), nullptr)
        << "it is not our certificate that was refused";
}

TEST_F(ConnectFlow, ACancelThatComesTooLateEndsTheConnection)
{
    make();
    const auto cancelLate = [this] {
        while (!node->session()->isConnected() && node->isBusy())
            std::this_thread::yield();
        node->connectFlow().cancel(); // no event has told the flow that it has succeeded
    };
    QObject::connect(&node->connectFlow(), &QlumConnectFlow::stepChanged, node.get(), [&](Step step) {
        if (step == Step::Session) // the step itself is the event before
            QMetaObject::invokeMethod(node.get(), cancelLate, Qt::QueuedConnection);
    });
    ASSERT_TRUE(node->startConnect());
    expectCancelled();
    EXPECT_EQ(FakeStack::instance().calls(OpcUa_CloseSessionRequest_EncodeableType), 1);
}

TEST_F(ConnectFlow, ChangeOfTheUserIsNoConnectToCancel)
{
    make();
    ASSERT_TRUE(node->connectServer());
    hangAt(OpcUa_ActivateSessionRequest_EncodeableType);
    script.user = QlumUserChoice();
    node->changeUser();
    ASSERT_TRUE(QTest::qWaitFor([this] { return node->connectFlow().step() == Step::UserChange; }));
    ASSERT_TRUE(QTest::qWaitFor(
        [] { return FakeStack::instance().calls(OpcUa_ActivateSessionRequest_EncodeableType) == 2; }));
    node->connectFlow().cancel();
    EXPECT_EQ(node->connectFlow().step(), Step::UserChange);
    node->disconnectServer();
    EXPECT_TRUE(QTest::qWaitFor([this] { return !node->isBusy(); }));
    EXPECT_EQ(node->connectionStatus(), QlumConnectionStatus::Disconnected);
}

TEST_F(ConnectFlow, ProgressSaysWhichStepRunsAndCancelsIt)
{
    hangAt(OpcUa_CreateSessionRequest_EncodeableType);
    make();
    const QlumConnectProgress progress(node->connectFlow());
    const auto shown = [this] {
        auto* dialog = application.window.findChild<QProgressDialog*>("connectProgress");
        return dialog && dialog->isVisible() ? dialog : nullptr;
    };
    ASSERT_TRUE(node->startConnect());
    ASSERT_TRUE(QTest::qWaitFor([&] { return shown() != nullptr; }));
    ASSERT_TRUE(QTest::qWaitFor([this] { return node->connectFlow().step() == Step::Session; }));
    EXPECT_EQ(shown()->findChild<QLabel*>("step")->text(),
              "Connecting to 'opc.tcp://plc:4840'...\nOpening the session");
    EXPECT_NE(QApplication::overrideCursor(), nullptr);
    shown()->findChild<QPushButton*>()->click();
    expectCancelled();
    EXPECT_EQ(shown(), nullptr);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(ConnectFlow, ProgressMakesWayForAQuestion)
{
    script.isSilent = true;
    setting.userTokenType = QlumDiscoverySetting::UserName;
    make();
    const QlumConnectProgress progress(node->connectFlow());
    ASSERT_TRUE(node->startConnect());
    ASSERT_TRUE(QTest::qWaitFor([this] { return !script.asked.isEmpty(); }));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(application.window.findChild<QProgressDialog*>("connectProgress"), nullptr);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}
} // namespace
