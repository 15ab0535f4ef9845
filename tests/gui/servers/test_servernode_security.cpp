// What a server node asks and says about certificates, weak policies and passwords before and after a
// connect.
#include <app/api/qlumconnectionstatus.h>
#include <certificates/qlumcertificatestore.h>
#include <certificates/qlumtlsoverrules.h>
#include <servers/qlumconnectinfo.h>
#include <servers/qlumdiscoverysetting.h>
#include <servers/qlumendpoint.h>
#include <servers/qlumprojectnodeserver.h>
#include <tests/gui/servers/servernodefixture.h>
#include <tests/support/modeltext.h>
#include <tests/support/securedserver.h>
#include <tests/support/testcertificates.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/uaclient.h>

#include <QAbstractButton>
#include <QByteArray>
#include <QCheckBox>
#include <QCoreApplication>
#include <QDialog>
#include <QDir>
#include <QEvent>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QList>
#include <QMessageBox>
#include <QObject>
#include <QPushButton>
#include <QString>
#include <QStringList>
#include <QTest>
#include <QVector>

#include <initializer_list>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {
using UaClientSdk::UaClient;

const char policyFolder[] = "http://opcfoundation.org/UA/SecurityPolicy#";

class SecuredServerNode : public ServerNode
{
protected:
    SecuredServerNode()
    {
        for (const QString& folder : QlumCertificateStore::folders())
            QDir().mkpath(folder);
        for (const QString& folder :
             {QlumCertificateStore::trustedCertificates(), QlumCertificateStore::tlsIssuerCertificates()})
            for (const QString& name : QDir(folder).entryList(QDir::Files))
                QFile::remove(folder + '/' + name);
        testcertificates::Recipe recipe;
        recipe.name = "Plc";
        recipe.pair = testcertificates::key(2048);
        recipe.names = "URI:urn:localhost:test,DNS:plc";
        der = testcertificates::make(recipe);
        setting.endpoint.securityMode = OpcUa_MessageSecurityMode_SignAndEncrypt;
        setting.endpoint.applicationUri = "urn:localhost:test";
        setting.endpoint.serverCertificate =
            QByteArray(reinterpret_cast<const char*>(der.data()), static_cast<int>(der.size()));
        use("Basic256Sha256");
    }
    void use(const char* policy)
    {
        setting.endpoint.securityPolicyUri = QLatin1String(policyFolder) + QLatin1String(policy);
        offerOne(setting.endpoint);
    }
    void useUnsecured(const QVector<QlumUserTokenPolicy>& tokens)
    {
        setting.endpoint.securityMode = OpcUa_MessageSecurityMode_None;
        setting.endpoint.userTokens = tokens;
        use("None");
    }
    static QByteArray anotherCertificate()
    {
        testcertificates::Recipe recipe;
        recipe.name = "Another";
        recipe.pair = testcertificates::key(2048);
        recipe.names = "URI:urn:localhost:test,DNS:plc";
        const testcertificates::Der made = testcertificates::make(recipe);
        return QByteArray(reinterpret_cast<const char*>(made.data()), static_cast<int>(made.size()));
    }
    static void trustNow(const QByteArray& certificate)
    {
        QFile file(QlumCertificateStore::trustedCertificates() + "/plc.der");
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(certificate);
    }
    template <typename Widget>
    Widget* shown(const char* name) const
    {
        auto* widget = application.window.findChild<Widget*>(QLatin1String(name));
        return widget && widget->isVisible() ? widget : nullptr;
    }
    static std::vector<std::string> channelCertificates()
    {
        return FakeStack::instance().serverCertificates();
    }
    testcertificates::Der der;
};

TEST_F(SecuredServerNode, NobodyConnectsWithoutTheUsersWord)
{
    make();
    EXPECT_FALSE(node->connectServer());
    EXPECT_EQ(asked(), QStringList{"certificate"});
    EXPECT_EQ(log().last(), "100 Connecting cancelled by user.");
    EXPECT_EQ(states, (QList<int>{1, 0}));
    EXPECT_TRUE(channelCertificates().empty());
}

TEST_F(SecuredServerNode, TheBytesThatWereJudgedAreTheChannels)
{
    make();
    script.verdict = {true, true, {"a finding"}};
    static_cast<void>(node->connectServer());
    const UaByteString judged(static_cast<OpcUa_Int32>(der.size()), der.data());
    EXPECT_EQ(script.certificate.security.serverCertificate, judged);
    EXPECT_EQ(script.certificate.url, "opc.tcp://plc:4840");
    EXPECT_EQ(script.certificate.applicationUri, "urn:localhost:test");
    EXPECT_EQ(channelCertificates(), (std::vector<std::string>{std::string(der.begin(), der.end())}));
    EXPECT_TRUE(log().contains("50 Certificate of the server: a finding"));
    EXPECT_TRUE(log().contains("50 The user has accepted the server's certificate for this session."));
    node->disconnectServer();
    script.verdict = {};
    EXPECT_FALSE(node->connectServer());
    EXPECT_EQ(asked().count("certificate"), 2) << "accepted for one session only";
}

TEST_F(SecuredServerNode, ATrustedCertificateIsNotAskedAbout)
{
    setting.endpoint.applicationUri = "urn:other";
    offerOne(setting.endpoint);
    make();
    script.beforeAnswer = [this] { trustNow(setting.endpoint.serverCertificate); };
    EXPECT_FALSE(node->connectServer()) << "trusted, then cancelled";
    EXPECT_EQ(asked(), QStringList{"certificate"});
    static_cast<void>(node->connectServer());
    EXPECT_FALSE(asked().contains("certificate"));
    EXPECT_EQ(channelCertificates().size(), 1u);
    EXPECT_EQ(log().filter("50 Certificate of the server: Plc: The URI returned in the certificate").size(),
              1)
        << log().join('\n');
}

TEST_F(SecuredServerNode, NobodyIsAskedTwiceAboutAWrongHost)
{
    SecuredServer server(FakeStack::instance(), OpcUa_SecurityPolicy_Basic256Sha256,
                         OpcUa_MessageSecurityMode_SignAndEncrypt);
    server.tokens = {{OpcUa_UserTokenType_Anonymous, nullptr}};
    setting.endpoint.serverCertificate =
        QByteArray(reinterpret_cast<const char*>(server.certificate.data()), server.certificate.length());
    offerOne(setting.endpoint);
    make();
    script.verdict = {true, true, {}};
    EXPECT_TRUE(node->connectServer()) << log().join('\n');
    EXPECT_EQ(asked(), QStringList{"certificate"});
    node.reset(); // it may still call the server
}

TEST_F(SecuredServerNode, AnUnsafePolicyIsOffUntilTheUserAllowsIt)
{
    use("Basic128Rsa15");
    make();
    EXPECT_FALSE(node->connectServer());
    EXPECT_EQ(asked(), QStringList{"weak policy"});
    EXPECT_EQ(log().last(), "30 Aborting connection attempt");
    script.isWeakPolicyAllowed = true;
    EXPECT_FALSE(node->connectServer());
    EXPECT_EQ(asked(), (QStringList{"weak policy", "certificate"}));
    script.verdict.isAccepted = true;
    static_cast<void>(node->connectServer());
    EXPECT_EQ(asked().first(), "certificate") << "the word for the policy still holds";
    EXPECT_EQ(channelCertificates().size(), 1u);
    EXPECT_TRUE(log().filter("BadSecurityPolicyRejected").isEmpty())
        << "the channel knows of the user's word";
}

TEST_F(SecuredServerNode, ConsentToAnUnsafePolicyWentWithTheNodeToAnotherServer)
{
    use("Basic128Rsa15");
    make();
    script.isWeakPolicyAllowed = true;
    static_cast<void>(node->connectServer());
    EXPECT_EQ(asked().first(), "weak policy");
    setting.endpoint.url = "opc.tcp://elsewhere:4840";
    offerOne(setting.endpoint);
    node->setDiscoverySetting(setting);
    static_cast<void>(node->connectServer());
    EXPECT_EQ(asked().first(), "weak policy");
}

TEST_F(SecuredServerNode, SaysThatTheServerRefusedTheClientsCertificate)
{
    make();
    script.verdict.isAccepted = true;
    const QlumEndpoint endpoint = setting.endpoint;
    FakeStack::instance().on(
        OpcUa_GetEndpointsRequest_EncodeableType, [endpoint](const void*, void* response) {
            FakeStack::instance().setConnectResult(OpcUa_BadCertificateUntrusted);
            offerOne(endpoint);
            return FakeStack::instance().invoke(OpcUa_GetEndpointsRequest_EncodeableType, nullptr, response);
        });
    EXPECT_FALSE(node->connectServer());
    EXPECT_EQ(node->connectionStatus(), QlumConnectionStatus::ConnectFailed);
    auto* dialog = shown<QDialog>("certificateRefused");
    ASSERT_NE(dialog, nullptr) << log().join('\n');
    EXPECT_EQ(dialog->findChild<QLabel*>("message")->text(),
              "The server 'Plc' ended the connection with 'BadCertificateUntrusted'.");
    node.reset();
    EXPECT_EQ(shown<QDialog>("certificateRefused"), nullptr);
}

TEST_F(SecuredServerNode, ChangedCertificateWasAskedAboutLikeAnyUnknownOne)
{
    make();
    script.verdict.isAccepted = true;
    static_cast<void>(node->connectServer());
    EXPECT_EQ(asked().filter("certificate"), QStringList{"certificate"});
    const QByteArray before = setting.endpoint.serverCertificate;
    QlumDiscoverySetting trusting = node->discoverySetting();
    trusting.trustedCertificate = before; // as after a connect that has succeeded
    node->setDiscoverySetting(trusting);
    static_cast<void>(node->connectServer());
    EXPECT_EQ(asked().filter("certificate"), QStringList{"certificate"}) << "it is the same";

    const QByteArray now = anotherCertificate();
    trusting.endpoint.serverCertificate = now;
    offerOne(trusting.endpoint);
    EXPECT_FALSE(node->connectServer());
    EXPECT_EQ(asked().filter("certificate"), QStringList{"changed certificate"});
    EXPECT_EQ(log().last(), "100 Connecting cancelled by user.");
    EXPECT_FALSE(script.change.isTrusted);
    EXPECT_EQ(script.change.before, qlumToUaByteString(before));
    EXPECT_EQ(script.change.now, qlumToUaByteString(now));
    script.isChangeAccepted = true;
    static_cast<void>(node->connectServer());
    EXPECT_EQ(asked().filter("certificate"), (QStringList{"changed certificate", "certificate"}));

    trustNow(now);
    static_cast<void>(node->connectServer());
    EXPECT_EQ(asked().filter("certificate"), QStringList{"changed certificate"})
        << "one question for one that is trusted itself";
    EXPECT_TRUE(script.change.isTrusted);
    trusting.endpoint.url = "opc.tcp://elsewhere:4840";
    node->setDiscoverySetting(trusting);
    EXPECT_TRUE(node->discoverySetting().trustedCertificate.isEmpty()) << "it was another server's";
}

TEST_F(SecuredServerNode, CertificateThatTheUserHasGivenStandsForAListThatTheServerRefuses)
{
    const QByteArray known = setting.endpoint.serverCertificate;
    const auto refuse = [](OpcUa_StatusCode status) {
        FakeStack::instance().on(OpcUa_GetEndpointsRequest_EncodeableType,
                                 [status](const void*, void*) { return status; });
    };
    refuse(OpcUa_BadSecurityPolicyRejected); // it takes no unsecured channel
    make();
    script.verdict.isAccepted = true;
    EXPECT_FALSE(node->connectServer());
    EXPECT_TRUE(channelCertificates().empty()) << "what was once stored proves nothing";
    setting.givenCertificate = known;
    make();
    static_cast<void>(node->connectServer());
    EXPECT_EQ(asked().filter("certificate"), QStringList{"certificate"}) << "it is judged as any other";
    EXPECT_EQ(channelCertificates(), std::vector<std::string>{known.toStdString()});
    refuse(OpcUa_BadTimeout);
    EXPECT_FALSE(node->connectServer());
    EXPECT_EQ(channelCertificates().size(), 1u) << "nobody is there";

    QlumEndpoint shown = setting.endpoint;
    shown.serverCertificate = anotherCertificate();
    offerOne(shown);
    EXPECT_FALSE(node->connectServer());
    EXPECT_EQ(asked().filter("certificate"), QStringList{"changed certificate"});
    EXPECT_EQ(script.change.before, qlumToUaByteString(known));
}

TEST_F(SecuredServerNode, ChangedCertificateWasFailedWithForEverByTheReconnect)
{
    application.settings["General.AutomaticReconnect"] = true;
    application.settings["General.WatchdogTime"] = 600000u;
    SecuredServer server(FakeStack::instance(), OpcUa_SecurityPolicy_Basic256Sha256,
                         OpcUa_MessageSecurityMode_SignAndEncrypt);
    const UaByteString& own = server.certificate;
    setting.endpoint.url = "opc.tcp://localhost:4840"; // as it says
    setting.endpoint.serverCertificate = QByteArray(reinterpret_cast<const char*>(own.data()), own.length());
    offerOne(setting.endpoint);
    make();
    script.verdict.isAccepted = true;
    script.isErrorIgnored = true; // discovery says more than the session
    ASSERT_TRUE(node->connectServer()) << log().join('\n') << script.error.details;
    EXPECT_EQ(asked().filter("certificate"), QStringList{"certificate"});
    EXPECT_EQ(node->discoverySetting().trustedCertificate, setting.endpoint.serverCertificate);
    const auto fail = [this](OpcUa_StatusCode status) {
        std::thread([&] {
            static_cast<void>(
                node->connectError(node->serverId(), UaClient::OpenSecureChannel, status, false));
        }).join();
    };
    FakeStack::instance().setConnectResult(OpcUa_BadTcpInternalError);
    FakeStack::instance().loseLink();
    ASSERT_TRUE(QTest::qWaitFor(
        [this] { return node->connectionStatus() == QlumConnectionStatus::ConnectionError; }));
    FakeStack::instance().setConnectResult(OpcUa_Good);
    const int asked1 = FakeStack::instance().calls(OpcUa_GetEndpointsRequest_EncodeableType);
    fail(OpcUa_BadTcpInternalError);
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return FakeStack::instance().calls(OpcUa_GetEndpointsRequest_EncodeableType) > asked1; }));
    fail(OpcUa_BadConnectionRejected);
    EXPECT_EQ(node->connectionStatus(), QlumConnectionStatus::ConnectionError) << "it has the same one";

    const QByteArray now = anotherCertificate();
    QlumEndpoint changed = setting.endpoint;
    changed.serverCertificate = now;
    offerOne(changed);
    EXPECT_TRUE(QTest::qWaitFor([&] {
        fail(OpcUa_BadTcpInternalError); // each attempt
        return script.asked.contains("changed certificate");
    }));
    EXPECT_EQ(script.change.now, qlumToUaByteString(now));
    EXPECT_EQ(log().filter("Reconnecting waits for the user").size(), 1);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !node->isBusy(); }));
    EXPECT_EQ(node->connectionStatus(), QlumConnectionStatus::Disconnected) << "the user has declined it";
    EXPECT_TRUE(node->toolTip().endsWith("another certificate than before.")) << "the tree says why";
}

TEST_F(SecuredServerNode, ErrorsOfAReconnectAreShownWithoutHoldingItUp)
{
    make();
    const auto tell = [this](OpcUa_StatusCode status, bool clientSide) {
        bool answer = true;
        std::thread([&] {
            answer = node->connectError(node->serverId(), UaClient::CreateSession, status, clientSide);
        }).join();
        return answer;
    };
    for (int i = 0; i < 2; ++i)
        EXPECT_FALSE(tell(OpcUa_BadCertificateHostNameInvalid, true));
    QCoreApplication::processEvents();
    auto* box = shown<QMessageBox>("reconnectError");
    ASSERT_NE(box, nullptr);
    EXPECT_FALSE(box->isModal());
    EXPECT_EQ(application.window.findChildren<QMessageBox*>("reconnectError").size(), 1);
    EXPECT_TRUE(box->text().contains("'BadCertificateHostNameInvalid' was returned during CreateSession"));
    box->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(tell(OpcUa_BadSecurityChecksFailed, false));
    EXPECT_FALSE(tell(OpcUa_BadTimeout, false));
    QCoreApplication::processEvents();
    EXPECT_NE(shown<QDialog>("certificateRefused"), nullptr);
    EXPECT_EQ(shown<QMessageBox>("reconnectError"), nullptr) << "what cannot be decided is in the log alone";
}

TEST_F(SecuredServerNode, AStoredPasswordDoesNotLeaveInTheClearUnasked)
{
    setting.endpoint.securityMode = OpcUa_MessageSecurityMode_None;
    setting.endpoint.serverCertificate.clear();
    setting.userTokenType = QlumDiscoverySetting::UserName;
    setting.storePassword = true;
    setting.userName = "joe";
    setting.password = "secret";
    use("None");
    make();
    EXPECT_FALSE(node->connectServer());
    EXPECT_EQ(asked(), QStringList{"clear password"});
    EXPECT_EQ(script.danger, QlumPasswordDanger::Anyone);
    EXPECT_EQ(FakeStack::instance().calls(OpcUa_ActivateSessionRequest_EncodeableType), 0);
}

TEST_F(SecuredServerNode, PasswordForWhomNobodyHasCheckedIsAskedForInWordsThatSaySo)
{
    SecuredServer server(FakeStack::instance(), OpcUa_SecurityPolicy_None, OpcUa_MessageSecurityMode_None);
    const QString good(OpcUa_SecurityPolicy_Basic256Sha256);
    server.tokens = {{OpcUa_UserTokenType_UserName, OpcUa_SecurityPolicy_Basic256Sha256}};
    setting.endpoint.serverCertificate.clear();
    setting.userTokenType = QlumDiscoverySetting::UserName;
    setting.userName = "joe";
    useUnsecured({{"0", OpcUa_UserTokenType_UserName, "", "", good}});
    make();
    script.credentials = QlumCredentials{"joe", "secret"};
    EXPECT_TRUE(node->connectServer()) << log().join('\n');
    EXPECT_EQ(asked(), QStringList{"clear password"});
    EXPECT_EQ(script.danger, QlumPasswordDanger::FalseServer);
    EXPECT_EQ(server.logins, std::vector<std::string>{"user joe secret"});
    node->disconnectServer();

    // one that discovery shows is judged before anything is encrypted with it
    setting.endpoint.url = "opc.tcp://localhost:4840"; // as it says
    setting.endpoint.serverCertificate =
        QByteArray(reinterpret_cast<const char*>(der.data()), static_cast<int>(der.size()));
    offerOne(setting.endpoint);
    EXPECT_FALSE(node->connectServer());
    EXPECT_EQ(asked(), (QStringList{"password", "certificate"}));
}

TEST_F(SecuredServerNode, UserWhoSignsJudgesTheServerAndNobodyElseVouchesForIt)
{
    useUnsecured({{"0", OpcUa_UserTokenType_Anonymous, "", "", ""},
                  {"1", OpcUa_UserTokenType_Certificate, "", "", OpcUa_SecurityPolicy_Basic256Sha256}});
    make();
    EXPECT_TRUE(node->connectServer()) << log().join('\n');
    EXPECT_EQ(asked(), QStringList());
    EXPECT_TRUE(channelCertificates().empty()) << "nobody has judged it";
    node->disconnectServer();
    setting.userTokenType = QlumDiscoverySetting::Certificate;
    setting.certificateFile = QlumCertificateStore::ownCertificateFile();
    setting.privateKeyFile = QlumCertificateStore::ownPrivateKeyFile();
    node->setDiscoverySetting(setting);
    EXPECT_FALSE(node->connectServer());
    EXPECT_EQ(asked(), QStringList{"certificate"}) << log().join('\n');
}

TEST_F(SecuredServerNode, SecurityThatDiscoveryDidNotShowIsAskedAboutInWords)
{
    SecuredServer server(FakeStack::instance(), OpcUa_SecurityPolicy_None, OpcUa_MessageSecurityMode_None);
    QlumEndpoint hidden = setting.endpoint;
    useUnsecured({{"0", OpcUa_UserTokenType_Anonymous, "", "", ""}});
    server.tamperCreate = [&](OpcUa_CreateSessionResponse& answer) {
        UaEndpointDescriptions all;
        all.attach(answer.NoOfServerEndpoints, answer.ServerEndpoints);
        EXPECT_TRUE(all.append(qlumEndpointDescriptions({hidden})[0]));
        all.detach(&answer.NoOfServerEndpoints, &answer.ServerEndpoints);
    };
    make();
    EXPECT_FALSE(node->connectServer());
    EXPECT_EQ(asked(), QStringList{"connect error"});
    EXPECT_EQ(script.error.status, "BadSecurityChecksFailed");
    EXPECT_EQ(script.error.step, "CreateSession");
    EXPECT_TRUE(script.error.details.contains("better security")) << script.error.details;
    EXPECT_TRUE(server.logins.empty());
    EXPECT_EQ(node->connectionStatus(), QlumConnectionStatus::ConnectFailed);
    script.isErrorIgnored = true;
    EXPECT_TRUE(node->connectServer()) << log().join('\n');
    EXPECT_EQ(asked(), QStringList{"connect error"});
    node->disconnectServer();
    // what the server offers beside it is no news once discovery shows it
    hidden = setting.endpoint;
    EXPECT_TRUE(node->connectServer());
    EXPECT_EQ(asked(), QStringList());
}

TEST_F(SecuredServerNode, OneTlsQuestionAtATimeAndAnotherAttemptWhenItIsTrusted)
{
    use("None");
    setting.endpoint.securityMode = OpcUa_MessageSecurityMode_None;
    setting.endpoint.serverCertificate.clear();
    offerOne(setting.endpoint);
    make();
    const UaByteString tls(static_cast<OpcUa_Int32>(der.size()), der.data());
    std::thread([&] {
        for (int i = 0; i < 3; ++i)
            EXPECT_FALSE(node->sslCertificateValidationFailed(node->serverId(),
                                                              UaStatus(OpcUa_BadCertificateUntrusted), tls));
    }).join();
    script.isTlsTrusted = true;
    EXPECT_TRUE(QTest::qWaitFor([this] {
        return node->connectionStatus() == QlumConnectionStatus::Connected;
    })) << log().join('\n');
    EXPECT_EQ(asked(), QStringList{"tls trust"});
    EXPECT_TRUE(QTest::qWaitFor([this] { return !node->isBusy(); }));
    // the next failure is asked about again
    EXPECT_FALSE(
        node->sslCertificateValidationFailed(node->serverId(), UaStatus(OpcUa_BadCertificateUntrusted), tls));
    QCoreApplication::processEvents();
    EXPECT_EQ(asked(), QStringList{"tls trust"});
}

TEST_F(SecuredServerNode, ADeclinedTlsCertificateIsNotAskedAboutOnEachReconnect)
{
    use("None");
    setting.endpoint.securityMode = OpcUa_MessageSecurityMode_None;
    setting.endpoint.serverCertificate.clear();
    offerOne(setting.endpoint);
    make();
    const auto fail = [this](const UaByteString& certificate) {
        EXPECT_FALSE(node->sslCertificateValidationFailed(
            node->serverId(), UaStatus(OpcUa_BadCertificateUntrusted), certificate));
        QCoreApplication::processEvents();
        return asked().size();
    };
    const UaByteString tls(static_cast<OpcUa_Int32>(der.size()), der.data());
    EXPECT_EQ(fail(tls), 1);
    EXPECT_EQ(fail(tls), 0);
    const UaByteString other = SecuredServer::otherCertificate(); // made anew at each call
    EXPECT_EQ(fail(other), 1) << "another one is another question";
    EXPECT_EQ(fail(other), 0);
    EXPECT_TRUE(node->connectServer());
    EXPECT_EQ(fail(tls), 1) << "the user has tried anew";

    QDir().mkpath(QlumCertificateStore::tlsIssuerCertificates());
    ASSERT_TRUE(qlumOverruleTls(setting.endpoint.url, tls, {OpcUa_BadCertificateHostNameInvalid}));
    EXPECT_TRUE(node->sslCertificateValidationFailed(node->serverId(),
                                                     UaStatus(OpcUa_BadCertificateHostNameInvalid), tls));
    EXPECT_FALSE(node->sslCertificateValidationFailed(node->serverId(),
                                                      UaStatus(OpcUa_BadCertificateTimeInvalid), tls));
}

TEST_F(SecuredServerNode, TrustInATlsCertificateGoesOnWithTheConnect)
{
    use("None");
    setting.endpoint.url = "https://plc:443";
    setting.endpoint.securityMode = OpcUa_MessageSecurityMode_None;
    setting.endpoint.serverCertificate.clear();
    offerOne(setting.endpoint);
    const std::string certificate(der.begin(), der.end());
    script.beforeAnswer = [] { FakeStack::instance().distrustTls({}); }; // as the real one, once trusted
    for (const bool isDiscovered : {true, false}) {
        make();
        QStringList news;
        QObject::connect(node.get(), &QlumProjectNodeServer::newUntrustedSSLCertificate,
                         [&](unsigned int status) { news.append(qlumStatusText(status)); });
        if (!isDiscovered) { // the session meets it first
            FakeStack::instance().distrustTls({});
            const auto discover = FakeStack::instance().handler(OpcUa_GetEndpointsRequest_EncodeableType);
            FakeStack::instance().on(OpcUa_GetEndpointsRequest_EncodeableType,
                                     [=, isOver = false](const void* request, void* response) mutable {
                                         if (!std::exchange(isOver, true))
                                             FakeStack::instance().distrustTls(certificate);
                                         return discover(request, response);
                                     });
        } else
            FakeStack::instance().distrustTls(certificate);
        script.isTlsTrusted = true;
        EXPECT_TRUE(node->connectServer()) << log().join('\n');
        EXPECT_EQ(asked(), QStringList{"tls trust"});
        EXPECT_EQ(script.serverName, "Plc");
        EXPECT_EQ(news, QStringList{"BadCertificateUntrusted"});
        EXPECT_EQ(states.last(), 2);
        EXPECT_TRUE(log().contains(
            "100 The TLS certificate of server 'Plc' is not trusted: 'BadCertificateUntrusted'"));
        node->disconnectServer();
        script.isTlsTrusted = false;
        FakeStack::instance().distrustTls(certificate);
        EXPECT_FALSE(node->connectServer());
        EXPECT_EQ(asked(), QStringList{"tls trust"}) << "once, and not after the end";
        EXPECT_EQ(log().last(), "100 Could not connect to server: BadCertificateUntrusted");
    }
}
} // namespace
