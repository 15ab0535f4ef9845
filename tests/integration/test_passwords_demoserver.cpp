// Passwords that outlive the program: in a real keyring, and with a service that is locked, hangs, dies or is
// not there, at a server that is not ours.
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumsecret.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumcertificates.h>
#include <certificates/qlumcertificatestore.h>
#include <opcua/opcua.h>
#include <servers/passwords/qlumkeyring.h>
#include <servers/passwords/qlumpasswordkeeper.h>
#include <servers/passwords/qlumsecretservice.h>
#include <servers/qlumconnectflow.h>
#include <servers/qlumdiscoverysetting.h>
#include <servers/qlumprojectnodeserver.h>
#include <tests/support/connectanswers.h>
#include <tests/support/demoserverinfo.h>
#include <tests/support/modeltext.h>
#include <tests/support/owncertificate.h>
#include <tests/support/stubapplication.h>
#include <uabase/system/uaplatformlayer.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTest>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <map>
#include <memory>
#include <stop_token>
#include <string>
#include <thread>
#include <tuple>
#include <utility>

namespace {

const QlumKeyringKey joe{"urn:plant", "opc.tcp://plant:4840 Basic256Sha256 Sign", "joe"};
const std::stop_token noStop;

std::string found(QlumKeyring& keyring, const QlumKeyringKey& key)
{
    UaClientSdk::SecretBytes password;
    const QlumKeyringAnswer answer = keyring.find(key, password, noStop);
    const auto bytes = password.bytes();
    return answer.state == QlumKeyringAnswer::Done ? std::string(bytes.begin(), bytes.end())
                                                   : "none " + std::to_string(answer.state);
}

void keep(QlumKeyring& keyring, const QlumKeyringKey& key, const std::string& password)
{
    const QlumKeyringAnswer answer =
        keyring.keep(key, UaClientSdk::SecretBytes(password), "Tavelin: test", noStop);
    EXPECT_EQ(answer.state, QlumKeyringAnswer::Done) << answer.words;
}

const std::string missing = "none " + std::to_string(QlumKeyringAnswer::Missing);

int lockKeyring()
{
    return QProcess::execute("dbus-send", {"--session", "--print-reply", "--dest=org.freedesktop.secrets",
                                           "/org/freedesktop/secrets", "org.freedesktop.Secret.Service.Lock",
                                           "array:objpath:/org/freedesktop/secrets/collection/login"});
}

// Of the one that answers now; 0 when there is none.
int keyringProcess()
{
    QProcess question;
    question.start("dbus-send", {"--session", "--print-reply=literal", "--dest=org.freedesktop.DBus",
                                 "/org/freedesktop/DBus", "org.freedesktop.DBus.GetConnectionUnixProcessID",
                                 "string:org.freedesktop.secrets"});
    question.waitForFinished();
    return question.readAllStandardOutput().simplified().split(' ').last().toInt();
}

// From now on the question for the keyring's password waits for a user who does not come. The file that it
// makes first.
QString askSilently()
{
    const QString data = qEnvironmentVariable("XDG_DATA_HOME");
    const QString asked = data + "/asked";
    QDir().mkpath(data + "/dbus-1/services");
    QFile service(data + "/dbus-1/services/org.gnome.keyring.SystemPrompter.service");
    EXPECT_TRUE(service.open(QIODevice::WriteOnly));
    service.write(("[D-BUS Service]\nName=org.gnome.keyring.SystemPrompter\nExec=/bin/sh -c 'touch " + asked +
                   "; exec sleep 60 >/dev/null 2>&1'\n")
                      .toUtf8());
    service.close();
    EXPECT_EQ(QProcess::execute("dbus-send", {"--session", "--print-reply", "--dest=org.freedesktop.DBus",
                                              "/org/freedesktop/DBus", "org.freedesktop.DBus.ReloadConfig"}),
              0);
    return asked;
}

// ---- the service itself

TEST(SecretService, KeepsForServerEndpointAndUserAndForgets)
{
    QlumSecretService service;
    EXPECT_EQ(service.check(noStop).state, QlumKeyringAnswer::Done);
    EXPECT_EQ(found(service, joe), missing);
    keep(service, joe, "first");
    keep(service, joe, "p\xc3\xa4ula's \"2nd\"");
    EXPECT_EQ(found(service, joe), "p\xc3\xa4ula's \"2nd\"");
    for (const QlumKeyringKey& other :
         {QlumKeyringKey{"urn:other", joe.endpoint, joe.user},
          QlumKeyringKey{joe.serverUri, "opc.tcp://plant:4840 None None", "joe"},
          QlumKeyringKey{joe.serverUri, joe.endpoint, "jane"}})
        EXPECT_EQ(found(service, other), missing) << other.serverUri << other.endpoint << other.user;
    EXPECT_EQ(service.forget({"", joe.endpoint, joe.user}, noStop).state, QlumKeyringAnswer::Done);
    EXPECT_EQ(found(service, joe), missing);
}

TEST(SecretService, OneThatIsAbsentSaysSo)
{
    if (qEnvironmentVariableIsSet("TAVELIN_NO_SERVICE")) { // the run below
        QlumSecretService service;
        EXPECT_EQ(service.check(noStop).state, QlumKeyringAnswer::Absent);
        EXPECT_EQ(found(service, joe), "none " + std::to_string(QlumKeyringAnswer::Absent));
        return;
    }
    // the bus of a process is found once
    QProcess other;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
    environment.insert("TAVELIN_NO_SERVICE", "1");
    other.setProcessEnvironment(environment);
    other.setProcessChannelMode(QProcess::ForwardedChannels);
    other.start(QCoreApplication::applicationFilePath(), {"--gtest_filter=SecretService.OneThatIsAbsent*"});
    ASSERT_TRUE(other.waitForFinished());
    EXPECT_EQ(other.exitCode(), 0);
}

// ---- a keyring in memory, with what may go wrong

class MemoryKeyring : public QlumKeyring
{
public:
    struct World
    {
        std::map<std::tuple<std::string, std::string>, std::string> passwords; // by endpoint and user
        QlumKeyringAnswer answer;
        bool isHanging = false;
    };

    explicit MemoryKeyring(World& world) : m_world(world) {}
    QlumKeyringAnswer check(const std::stop_token&) override { return m_world.answer; }
    QlumKeyringAnswer find(const QlumKeyringKey& key, UaClientSdk::SecretBytes& password,
                           const std::stop_token& stop) override
    {
        while (m_world.isHanging && !stop.stop_requested())
            std::this_thread::yield();
        const auto found = m_world.passwords.find({key.endpoint, key.user});
        if (m_world.answer.state != QlumKeyringAnswer::Done || found == m_world.passwords.end())
            return m_world.answer.state == QlumKeyringAnswer::Done
                       ? QlumKeyringAnswer{QlumKeyringAnswer::Missing, {}}
                       : m_world.answer;
        password.append({reinterpret_cast<const OpcUa_Byte*>(found->second.data()), found->second.size()});
        return {};
    }
    QlumKeyringAnswer keep(const QlumKeyringKey& key, const UaClientSdk::SecretBytes& password,
                           const std::string&, const std::stop_token&) override
    {
        const auto bytes = password.bytes();
        m_world.passwords[{key.endpoint, key.user}] = std::string(bytes.begin(), bytes.end());
        return {};
    }
    QlumKeyringAnswer forget(const QlumKeyringKey& key, const std::stop_token&) override
    {
        m_world.passwords.erase({key.endpoint, key.user});
        return {};
    }

private:
    World& m_world; // looked at while no job runs
};

// ---- a server of the project

class Passwords : public ::testing::Test
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

    Passwords()
    {
        application.settings["General.ConnectTimeout"] = 20000u;
        application.settings["General.TypeDictionaryMode"] = "Manual";
        setting.endpoint.url = QString::fromStdString(demoserver::endpointUrl());
        setting.endpoint.securityPolicyUri = "http://opcfoundation.org/UA/SecurityPolicy#Basic256Sha256";
        setting.endpoint.securityMode = OpcUa_MessageSecurityMode_SignAndEncrypt;
        setting.displayName = "Plant";
        setting.sessionName = "password test";
        setting.userTokenType = QlumDiscoverySetting::UserName;
        setting.userName = "demo";
        setting.storePassword = true;
        script.verdict = {true, true, {}};
        script.isErrorIgnored = true;
        script.credentials = QlumCredentials{"demo", "demo"};
    }
    ~Passwords() override
    {
        node.reset();
        EXPECT_FALSE(application.texts().join('\n').contains("demo-secret"));
    }

    void use(std::unique_ptr<QlumKeyring> keyring)
    {
        keeper = std::make_unique<QlumPasswordKeeper>(std::move(keyring));
        ASSERT_TRUE(isIdle());
    }
    void useMemory() { use(std::make_unique<MemoryKeyring>(world)); }
    // The jobs have ended and what they have posted has arrived.
    bool isIdle()
    {
        const bool isDone = keeper->waitForDone(20000);
        QCoreApplication::processEvents();
        return isDone;
    }
    void make()
    {
        node = std::make_unique<QlumProjectNodeServer>(setting, std::make_unique<ConnectAnswers>(script));
    }
    // As the program does when it is started again: from what the project holds.
    void makeAnew()
    {
        QSettings file(QDir::tempPath() + "/stored.ini", QSettings::IniFormat);
        node->storeSettings(file);
        file.sync();
        setting = QlumDiscoverySetting::fromSetting(file);
        EXPECT_TRUE(setting.password.isEmpty());
        make();
    }
    // Whether it was connected, and what was asked for it but the certificate.
    std::string connect()
    {
        script.asked.clear();
        const bool isConnected = node->connectServer();
        EXPECT_TRUE(isIdle());
        script.asked.removeAll("certificate");
        script.asked.removeAll("connect error");
        const std::string asked = script.asked.join(' ').toStdString();
        return (isConnected ? "connected" : "failed") + (asked.empty() ? asked : ", asked: " + asked);
    }

    StubApplication application;
    MemoryKeyring::World world;
    std::unique_ptr<QlumPasswordKeeper> keeper;
    QlumDiscoverySetting setting;
    ConnectScript script;
    std::unique_ptr<QlumProjectNodeServer> node;
};

TEST_F(Passwords, ARememberedOneOutlivesTheProgramUntilTheServerIsRemoved)
{
    use(std::make_unique<QlumSecretService>());
    EXPECT_TRUE(QlumPasswordKeeper::rememberText().contains("password store"));
    make();
    EXPECT_EQ(connect(), "connected, asked: password");
    makeAnew();
    EXPECT_EQ(connect(), "connected") << application.texts().join('\n').toStdString();
    EXPECT_EQ(node->discoverySetting().password, "demo");
    node->forgetSecrets();
    makeAnew();
    EXPECT_EQ(connect(), "connected, asked: password");
    node->forgetSecrets();
    EXPECT_TRUE(isIdle());
}

TEST_F(Passwords, OneThatIsRefusedOrWasForOtherSettingsIsForgotten)
{
    useMemory();
    make();
    EXPECT_EQ(connect(), "connected, asked: password");
    ASSERT_EQ(world.passwords.size(), 1u);
    world.passwords.begin()->second = "old"; // the server has another one now
    makeAnew();
    EXPECT_EQ(connect(), "failed");
    EXPECT_TRUE(world.passwords.empty()) << "a second attempt may lock the account";
    EXPECT_EQ(connect(), "connected, asked: password");

    QlumDiscoverySetting other = node->discoverySetting();
    other.endpoint.securityMode = OpcUa_MessageSecurityMode_Sign;
    node->setDiscoverySetting(other);
    EXPECT_TRUE(isIdle());
    EXPECT_TRUE(world.passwords.empty());
    node->disconnectServer();
    EXPECT_EQ(connect(), "connected, asked: password");
    EXPECT_EQ(world.passwords.size(), 1u);
    other = node->discoverySetting();
    other.storePassword = false;
    node->setDiscoverySetting(other);
    EXPECT_TRUE(isIdle());
    EXPECT_TRUE(world.passwords.empty()) << "the user does not want it kept any more";
}

TEST_F(Passwords, AStoreThatCannotAnswerIsToldInTheQuestion)
{
    world.answer = {QlumKeyringAnswer::Locked, "the words of the service"};
    useMemory();
    make();
    EXPECT_EQ(connect(), "connected, asked: password");
    EXPECT_EQ(script.problem, "The desktop's password store is locked.");
    EXPECT_TRUE(application.texts().join('\n').contains("the words of the service"));
    EXPECT_EQ(node->discoverySetting().password, "demo") << "until the program ends";
    world.answer = {QlumKeyringAnswer::Absent, ""};
    useMemory();
    EXPECT_TRUE(QlumPasswordKeeper::rememberText().contains("until the program ends"));
}

TEST_F(Passwords, AStoreThatHangsHoldsNobodyUp)
{
    useMemory();
    world.isHanging = true;
    make();
    ASSERT_TRUE(node->startConnect());
    ASSERT_TRUE(
        QTest::qWaitFor([this] { return node->connectFlow().step() == QlumConnectFlow::Step::User; }));
    EXPECT_EQ(script.asked, QStringList()) << "nobody is asked before the store has answered";
    node->disconnectServer();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !node->isBusy(); }));
    EXPECT_TRUE(isIdle()) << "its job goes on";
    world.isHanging = false;
    EXPECT_EQ(connect(), "connected, asked: password");
}

TEST_F(Passwords, AServiceThatIsLockedOrDiesLeavesTheConnectGoingOn)
{
    use(std::make_unique<QlumSecretService>());
    make();
    EXPECT_EQ(connect(), "connected, asked: password");
    ASSERT_EQ(lockKeyring(), 0);
    makeAnew();
    EXPECT_EQ(connect(), "connected, asked: password") << "nobody unlocks it";
    EXPECT_EQ(script.problem, "The desktop's password store is locked.")
        << application.texts().join('\n').toStdString();

    const QString asked = askSilently();
    ::kill(keyringProcess(), SIGSTOP);
    makeAnew();
    script.asked.clear();
    ASSERT_TRUE(node->startConnect());
    ASSERT_TRUE(
        QTest::qWaitFor([this] { return node->connectFlow().step() == QlumConnectFlow::Step::User; }));
    QCoreApplication::processEvents(); // which the silence of the service does not stop
    EXPECT_FALSE(script.asked.contains("password"));
    ::kill(qEnvironmentVariableIntValue("TAVELIN_KEYRING"), SIGKILL);
    // another one comes in its place, with a locked keyring, and dies while the user is asked to unlock it
    ASSERT_TRUE(QTest::qWaitFor([&asked] { return QFile::exists(asked); }, 30000));
    const int second = keyringProcess();
    ASSERT_GT(second, 1);
    ::kill(second, SIGKILL);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !node->isBusy(); }, 30000));
    EXPECT_TRUE(script.asked.contains("password"));
    EXPECT_EQ(node->connectionStatus(), QlumConnectionStatus::Connected);
}
} // namespace
