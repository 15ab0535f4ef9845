// A server node on a server that is not ours: its certificate is trusted, accepted once or refused; every
// policy and every kind of user connects; a wrong password does not.
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumcertificates.h>
#include <certificates/qlumcertificatestore.h>
#include <opcua/opcua.h>
#include <servers/qlumdiscoverysetting.h>
#include <servers/qlumprojectnodeserver.h>
#include <tests/support/connectanswers.h>
#include <tests/support/demoserverinfo.h>
#include <tests/support/modeltext.h>
#include <tests/support/owncertificate.h>
#include <tests/support/stubapplication.h>
#include <tests/support/testcertificates.h>
#include <uabase/system/uaplatformlayer.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkicertificatecollection.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uanodeid.h>

#include <QDir>
#include <QString>
#include <QTest>
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <span>
#include <string>

namespace {

class SecureClient : public WithOwnCertificate
{
protected:
    SecureClient()
    {
        application.setPatience();
        setting.endpoint.url = QString::fromStdString(demoserver::endpointUrl());
        setting.displayName = "Plant";
        setting.sessionName = "secure client test";
        script.credentials = QlumCredentials{"demo", "wrong"};
        script.isErrorIgnored = true; // the demo server's certificate names no address
        use("Basic256Sha256", OpcUa_MessageSecurityMode_SignAndEncrypt);
        QDir trusted(trustedFolder);
        for (const QString& name : trusted.entryList(QDir::Files))
            trusted.remove(name);
    }
    void SetUp() override
    {
        ASSERT_FALSE(setting.endpoint.url.isEmpty()) << "the demo server was not started";
    }

    void use(const char* policy, OpcUa_MessageSecurityMode mode)
    {
        setting.endpoint.securityPolicyUri =
            QStringLiteral("http://opcfoundation.org/UA/SecurityPolicy#") + QLatin1String(policy);
        setting.endpoint.securityMode = mode;
    }
    enum class Word { No, Once, Trust };
    // Connects with that word about the server's certificate; whether it was asked for.
    bool connect(Word word, bool* isAsked = nullptr)
    {
        script.asked.clear();
        script.verdict = {word != Word::No, word == Word::Once, {}};
        script.beforeAnswer = [this, word] {
            if (word == Word::Trust && script.asked.last() == "certificate")
                trust(script.certificate.security.serverCertificate);
        };
        node = std::make_unique<QlumProjectNodeServer>(setting, std::make_unique<ConnectAnswers>(script));
        const bool connected = node->connectServer();
        if (isAsked)
            *isAsked = script.asked.contains("certificate");
        return connected;
    }
    void trust(const UaByteString& chain)
    {
        EXPECT_TRUE(UaPkiCertificateCollection::fromDERChain(chain).certificate(0).toDERFile(
            toUaString(trustedFolder + "/plant.der")));
    }
    // Whether the session is more than a green light.
    bool answers()
    {
        UaReadValueIds ids(1u);
        EXPECT_TRUE(OpcUa_IsGood(UaNodeId(OpcUaId_Server_ServerStatus_State).copyTo(&ids[0].NodeId)));
        ids[0].AttributeId = OpcUa_Attributes_Value;
        UaDataValues values;
        UaDiagnosticInfos infos;
        UaClientSdk::ServiceSettings settings;
        return node->session()
                   ->read(settings, 0, OpcUa_TimestampsToReturn_Neither, ids, values, infos)
                   .isGood() &&
               OpcUa_IsGood(values[0].StatusCode);
    }
    std::string log() const { return application.texts().join('\n').toStdString(); }

    const QString trustedFolder = QlumCertificateStore::trustedCertificates();
    StubApplication application;
    QlumDiscoverySetting setting;
    ConnectScript script;
    std::unique_ptr<QlumProjectNodeServer> node;
};

TEST_F(SecureClient, RefusedAcceptedOnceAndTrusted)
{
    EXPECT_FALSE(connect(Word::No));
    EXPECT_TRUE(application.texts().contains("Connecting cancelled by user.")) << log();
    EXPECT_EQ(node->connectionStatus(), QlumConnectionStatus::Disconnected);

    ASSERT_TRUE(connect(Word::Once)) << log();
    EXPECT_TRUE(answers());
    EXPECT_TRUE(QDir(trustedFolder).isEmpty());
    bool isAsked = false;
    ASSERT_TRUE(connect(Word::Trust, &isAsked)) << log();
    EXPECT_TRUE(isAsked) << "accepted for one session only";
    EXPECT_TRUE(answers());
    ASSERT_TRUE(connect(Word::No, &isAsked)) << log();
    EXPECT_FALSE(isAsked);
}

TEST_F(SecureClient, AnAnonymousSessionGoesOnAsAUserAndHearsOfModelChanges)
{
    EXPECT_FALSE(connect(Word::No));
    ASSERT_TRUE(connect(Word::Trust)) << log();
    EXPECT_FALSE(node->discoverySetting().trustedCertificate.isEmpty());
    EXPECT_TRUE(QTest::qWaitFor([this] {
        return application.texts().contains("Registered for ModelChangeEvents");
    })) << log();
    const auto change = [this](const char* password) {
        script.user = QlumUserChoice{QlumDiscoverySetting::UserName, "demo", password, "", ""};
        node->changeUser();
        EXPECT_TRUE(QTest::qWaitFor([this] { return !node->isBusy(); }));
    };
    change("wrong");
    EXPECT_EQ(script.asked.last(), "user refused");
    EXPECT_FALSE(script.failure.reason.isEmpty());
    EXPECT_TRUE(answers()) << "as before";
    change("demo");
    EXPECT_TRUE(application.texts().contains("ChangeUser succeeded.")) << log();
    EXPECT_TRUE(answers());
}

TEST_F(SecureClient, EveryPolicyAndMode)
{
    for (const char* policy : {"Basic256Sha256", "Aes128_Sha256_RsaOaep", "Aes256_Sha256_RsaPss"}) {
        for (const auto mode : {OpcUa_MessageSecurityMode_Sign, OpcUa_MessageSecurityMode_SignAndEncrypt}) {
            use(policy, mode);
            EXPECT_TRUE(connect(Word::Once) && answers()) << policy << mode << '\n' << log();
        }
    }
}

TEST_F(SecureClient, PasswordsAndUserCertificates)
{
    setting.userTokenType = QlumDiscoverySetting::UserName;
    setting.userName = "demo";
    EXPECT_FALSE(connect(Word::Once)) << "a wrong password";
    EXPECT_EQ(node->connectionStatus(), QlumConnectionStatus::ConnectFailed) << log();
    setting.storePassword = true;
    setting.password = "demo";
    EXPECT_TRUE(connect(Word::Once) && answers()) << log();

    testcertificates::Recipe recipe;
    recipe.name = "Jane";
    recipe.pair = testcertificates::key(2048, "user");
    const testcertificates::Der der = testcertificates::make(recipe);
    const QString folder = QDir::homePath();
    setting.userTokenType = QlumDiscoverySetting::Certificate;
    setting.certificateFile = folder + "/user.der";
    setting.privateKeyFile = folder + "/user.pem";
    ASSERT_TRUE(UaPkiCertificate::fromDER(UaByteString(std::span<const OpcUa_Byte>(der)))
                    .toDERFile(toUaString(setting.certificateFile)));
    FILE* file = std::fopen(setting.privateKeyFile.toLocal8Bit().constData(), "w");
    ASSERT_NE(file, nullptr);
    PEM_write_PrivateKey(file, recipe.pair, nullptr, nullptr, 0, nullptr, nullptr);
    std::fclose(file);
    EXPECT_TRUE(connect(Word::Once) && answers()) << log();
}
} // namespace
