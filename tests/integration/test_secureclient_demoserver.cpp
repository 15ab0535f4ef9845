// A server node on a server that is not ours: its certificate is trusted, accepted once or refused; every
// policy and every kind of user connects; a wrong password does not.
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumcertificates.h>
#include <certificates/qlumcertificatestore.h>
#include <opcua/opcua.h>
#include <servers/qlumdiscoverysetting.h>
#include <servers/qlumprojectnodeserver.h>
#include <tests/support/demoserverinfo.h>
#include <tests/support/dialogdriver.h>
#include <tests/support/modeltext.h>
#include <tests/support/owncertificate.h>
#include <tests/support/stubapplication.h>
#include <tests/support/testcertificates.h>
#include <uabase/system/uaplatformlayer.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uanodeid.h>

#include <QAbstractButton>
#include <QDialog>
#include <QDir>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QString>
#include <QStringList>
#include <QTest>
#include <gtest/gtest.h>

#include <cstdio>
#include <initializer_list>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace {

class SecureClient : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        ASSERT_EQ(UaPlatformLayer::init(), 0);
        for (const QString& folder : QlumCertificateStore::folders())
            QDir().mkpath(folder);
        ASSERT_EQ(provideOwnCertificate(), QString());
    }
    static void TearDownTestSuite()
    {
        QlumCertificates::cleanup();
        UaPlatformLayer::cleanup();
    }

    SecureClient()
    {
        for (const char* key : {"General.ConnectTimeout", "General.PublishTimeout", "General.CallTimeout",
                                "General.WatchdogTime", "General.WatchdogTimeout"})
            application.settings[key] = 20000u;
        application.settings["General.SessionTimeout"] = 1200000.0;
        application.settings["General.SecureChannelLifetime"] = 3600000u;
        application.settings["General.TypeDictionaryMode"] = "Manual";
        setting.endpoint.url = QString::fromStdString(demoserver::endpointUrl());
        setting.displayName = "Plant";
        setting.sessionName = "secure client test";
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
    // Connects with each dialog answered by pressing these buttons; what the dialogs were.
    bool connect(std::initializer_list<const char*> buttons, QStringList* seen = nullptr)
    {
        node = std::make_unique<QlumProjectNodeServer>(setting);
        const std::vector<const char*> names(buttons);
        const DialogDriver driver([&names](QDialog& dialog) {
            for (const char* name : names)
                if (auto* button = dialog.findChild<QAbstractButton*>(QLatin1String(name));
                    button && button->isEnabled() && dialog.isVisible())
                    button->click();
            if (auto* password = dialog.findChild<QLineEdit*>("password")) {
                password->setText("wrong");
                dialog.accept();
            }
            if (auto* box = qobject_cast<QMessageBox*>(&dialog); box && box->button(QMessageBox::Ignore))
                box->button(QMessageBox::Ignore)->click(); // the demo server's certificate names no address
            if (dialog.isVisible())
                dialog.reject();
        });
        const bool connected = node->connectServer();
        if (seen)
            *seen = driver.seen();
        return connected;
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
    std::unique_ptr<QlumProjectNodeServer> node;
};

TEST_F(SecureClient, RefusedAcceptedOnceAndTrusted)
{
    EXPECT_FALSE(connect({}));
    EXPECT_TRUE(application.texts().contains("Connecting cancelled by user.")) << log();
    EXPECT_EQ(node->connectionStatus(), QlumConnectionStatus::Disconnected);

    ASSERT_TRUE(connect({"acceptOnce", "continue"})) << log();
    EXPECT_TRUE(answers());
    EXPECT_TRUE(QDir(trustedFolder).isEmpty());
    QStringList seen;
    ASSERT_TRUE(connect({"trust", "continue"}, &seen)) << log();
    EXPECT_TRUE(seen.contains("Certificate Validation")) << "accepted for one session only";
    EXPECT_TRUE(answers());
    EXPECT_EQ(QDir(trustedFolder).entryList(QDir::Files).size(), 1);
    ASSERT_TRUE(connect({}, &seen)) << log();
    EXPECT_FALSE(seen.contains("Certificate Validation"));
}

TEST_F(SecureClient, EveryPolicyAndMode)
{
    for (const char* policy : {"Basic256Sha256", "Aes128_Sha256_RsaOaep", "Aes256_Sha256_RsaPss"}) {
        for (const auto mode : {OpcUa_MessageSecurityMode_Sign, OpcUa_MessageSecurityMode_SignAndEncrypt}) {
            use(policy, mode);
            EXPECT_TRUE(connect({"acceptOnce", "continue"}) && answers()) << policy << mode << '\n' << log();
        }
    }
}

TEST_F(SecureClient, PasswordsAndUserCertificates)
{
    setting.userTokenType = QlumDiscoverySetting::UserName;
    setting.userName = "demo";
    EXPECT_FALSE(connect({"acceptOnce", "continue"})) << "a wrong password";
    EXPECT_EQ(node->connectionStatus(), QlumConnectionStatus::ConnectFailed) << log();
    setting.storePassword = true;
    setting.password = "demo";
    EXPECT_TRUE(connect({"acceptOnce", "continue"}) && answers()) << log();

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
    EXPECT_TRUE(connect({"acceptOnce", "continue"}) && answers()) << log();
}
} // namespace
