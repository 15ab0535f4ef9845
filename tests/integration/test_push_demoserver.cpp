// The configuration of a server that is not ours is pushed to it: a certificate of our authority takes the
// place of its own, and its trust list changes.
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumserverrole.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumcertificates.h>
#include <certificates/qlumcertificatestoreconfiguration.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/gds/qlumpushclient.h>
#include <plugins/gds/qlumpushsigning.h>
#include <plugins/gds/qlumpushwords.h>
#include <plugins/gds/qlumtrustlist.h>
#include <servers/qlumdiscoverysetting.h>
#include <servers/qlumprojectnodeserver.h>
#include <tests/support/connectanswers.h>
#include <tests/support/owncertificate.h>
#include <tests/support/owndemoserver.h>
#include <tests/support/stubapplication.h>
#include <tests/support/temporaryfolder.h>
#include <uabase/uapkicpp/uapkiauthority.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkiidentity.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/uasession.h>

#include <QString>
#include <QTest>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <memory>
#include <string>
#include <sys/types.h>
#include <unistd.h>
#include <vector>

namespace {
constexpr OpcUa_Int64 year = 365 * 86400;

// How often a text stands in the memory of this process; it is given reversed, not to be found itself.
int countInMemory(const std::string& reversed)
{
    constexpr std::size_t blockSize = 1 << 20;
    constexpr unsigned long mostOfOne = 1UL << 32; // larger ones are the sanitizer's maps
    std::ifstream maps("/proc/self/maps");
    const int memory = ::open("/proc/self/mem", O_RDONLY | O_CLOEXEC);
    EXPECT_GE(memory, 0);
    std::vector<char> block(blockSize + reversed.size());
    int count = 0;
    for (std::string line; std::getline(maps, line);) {
        unsigned long from = 0;
        unsigned long to = 0;
        if (std::sscanf(line.c_str(), "%lx-%lx rw", &from, &to) != 2 ||
            line.find(" rw") == std::string::npos || to - from > mostOfOne)
            continue;
        for (; from < to; from += blockSize) {
            const auto length = ::pread(memory, block.data(), std::min(block.size(), std::size_t(to - from)),
                                        static_cast<off_t>(from));
            const char* const end = block.data() + std::max<ssize_t>(length, 0);
            const char* at = block.data();
            while ((at = static_cast<const char*>(
                        std::memchr(at, reversed.back(), static_cast<std::size_t>(end - at))))) {
                const bool isWhole = static_cast<std::size_t>(end - at) >= reversed.size() &&
                                     std::equal(reversed.rbegin(), reversed.rend(), at);
                if (isWhole && at < block.data() + blockSize)
                    ++count;
                ++at;
            }
        }
    }
    ::close(memory);
    return count;
}

class PushOnDemoServer : public WithOwnCertificate
{
protected:
    PushOnDemoServer()
    {
        application.setPatience();
        setting.displayName = "Plant";
        setting.sessionName = "push test";
        setting.role = QlumServerRole::Commission;
        script.isErrorIgnored = true;      // the server's certificate may name no address
        script.verdict = {true, true, {}}; // accepted once
        use("Basic256Sha256", OpcUa_MessageSecurityMode_SignAndEncrypt);
    }
    void SetUp() override
    {
        ASSERT_TRUE(server.start());
        setting.endpoint.url = QString::fromStdString(server.url());
    }
    void use(const char* policy, OpcUa_MessageSecurityMode mode)
    {
        setting.endpoint.securityPolicyUri =
            QStringLiteral("http://opcfoundation.org/UA/SecurityPolicy#") + QLatin1String(policy);
        setting.endpoint.securityMode = mode;
    }
    bool connect(const char* user)
    {
        setting.userTokenType = QlumDiscoverySetting::UserName;
        setting.userName = user;
        setting.storePassword = true;
        setting.password = user;
        node = std::make_unique<QlumProjectNodeServer>(setting, std::make_unique<ConnectAnswers>(script));
        const bool isConnected = node->connectServer();
        if (isConnected) {
            services = qlumApplicationServices()(node->serverId());
            client = std::make_unique<QlumPushClient>(*services, QlumPushClient::Manner());
            found = client->find();
        }
        return isConnected;
    }
    // Ends the session and begins another one.
    bool connectAgain(const char* user)
    {
        client.reset();
        services.reset();
        node->disconnectServer();
        return connect(user);
    }
    [[nodiscard]] UaByteString presented() const { return node->session()->serverCertificate(); }
    // Whether the certificate stands the test against the trusted ones of the server.
    bool isVerified(const QlumTrustList& list, const UaByteString& der)
    {
        std::string trusted;
        for (const UaByteString& one : list[QlumTrustPart::Trusted]) {
            EXPECT_TRUE(UaPkiCertificate::fromDER(one).toPEMFile(folder.file("one.pem").c_str()));
            trusted += TemporaryFolder::read(folder.file("one.pem"));
        }
        TemporaryFolder::write(folder.file("trusted.pem"), trusted);
        EXPECT_TRUE(UaPkiCertificate::fromDER(der).toPEMFile(folder.file("certificate.pem").c_str()));
        const std::string command = "openssl verify -CAfile '" + folder.file("trusted.pem") + "' '" +
                                    folder.file("certificate.pem") + "' >/dev/null 2>&1";
        return std::system(command.c_str()) == 0;
    }
    std::string log() const { return application.texts().join('\n').toStdString(); }

    const TemporaryFolder folder;
    OwnDemoServer server;
    StubApplication application;
    QlumDiscoverySetting setting;
    ConnectScript script;
    std::unique_ptr<QlumProjectNodeServer> node;
    std::shared_ptr<QlumSessionServices> services;
    std::unique_ptr<QlumPushClient> client;
    QlumPushServer found;
};

TEST_F(PushOnDemoServer, ACertificateIsReplacedAndTheServerComesBackWithIt)
{
    ASSERT_TRUE(connect("admin")) << log();
    ASSERT_EQ(found.missing.join(' '), QString());
    ASSERT_EQ(found.mode, OpcUa_MessageSecurityMode_SignAndEncrypt);
    const QlumPushGroup group = *found.group(found.groups.at(0).id);
    const UaByteString old = presented();

    const UaString place(folder.file("ca").c_str());
    UaPkiIdentity name;
    name.commonName = "Plant CA";
    const UaPkiAuthority authority = UaPkiAuthority::create(place, name, year, UaString("secret"), nullptr);
    ASSERT_FALSE(authority.isNull());
    QlumPushOrder order;
    order.wish = {group.id, group.types.at(0).id, "CN=Demo,O=Korvanda", true};
    order.days = 30;
    const QlumPushSigned made = qlumSignForServer(*client, found, order, UaPkiCertificate::fromDER(old),
                                                  toQString(place), QString("secret"), nullptr);
    ASSERT_EQ(made.fault, QString());
    EXPECT_TRUE(made.isApplyRequired);
    ASSERT_TRUE(qlumKnowAuthority(toQString(place), QlumCertificateStoreConfiguration::ofApplication()));

    QlumTrustList list;
    list[QlumTrustPart::Trusted] = {authority.certificate().toByteStringDER()};
    list[QlumTrustPart::TrustedCrls] = {UaByteString(authority.revocationList().toDER())};
    bool isApplyRequired = false;
    ASSERT_TRUE(client->writeTrustList(found, group, list, isApplyRequired).isGood());
    EXPECT_EQ(presented(), old) << "not before it is applied";
    ASSERT_TRUE(client->applyChanges(found).isGood()) << client->takeSteps().back().words.toStdString();

    EXPECT_TRUE(QTest::qWaitFor(
        [this] { return node->connectionStatus() != QlumConnectionStatus::Connected; }, 20'000))
        << "the server closes its channels";
    ASSERT_TRUE(connectAgain("admin")) << log();
    EXPECT_EQ(presented(), made.certificate);
    EXPECT_EQ(script.certificate.security.verifyServerCertificate(nullptr).code(),
              OpcUa_BadCertificateUntrusted)
        << "its chain and revocation list are there, but only the user trusts it";
    QlumTrustList now;
    ASSERT_TRUE(client->readTrustList(group, OpcUa_TrustListMasks_All, now).isGood());
    EXPECT_TRUE(now.contains(QlumTrustPart::Trusted, authority.certificate().toByteStringDER()));
    EXPECT_EQ(now[QlumTrustPart::TrustedCrls], list[QlumTrustPart::TrustedCrls]);
    EXPECT_TRUE(isVerified(list, made.certificate));
    EXPECT_FALSE(isVerified(list, old));
}

TEST_F(PushOnDemoServer, AKeyThatIsMadeHereIsSentInEachFormatThatTheServerTakes)
{
    ASSERT_TRUE(connect("admin")) << log();
    ASSERT_EQ(found.keyFormats.join(' '), "PEM PFX");
    const UaString place(folder.file("ca").c_str());
    UaPkiIdentity name;
    name.commonName = "Plant CA";
    ASSERT_FALSE(UaPkiAuthority::create(place, name, year, UaString("secret"), nullptr).isNull());
    const QlumPushGroup group = found.groups.at(0);
    QlumPushOrder order;
    order.wish = {group.id, group.types.at(0).id, {}, false};
    order.key = QlumPushOrder::OurNewKey;
    order.days = 30;
    const UaPkiCertificate old = UaPkiCertificate::fromDER(presented());
    QlumPushSigned made;
    const auto make = [&](const char* format) {
        order.keyFormat = format;
        made = qlumSignForServer(*client, found, order, old, toQString(place), QString("secret"),
                                 [] { return false; });
        return made.fault;
    };
    EXPECT_FALSE(make("JKS").isEmpty());
    EXPECT_TRUE(client->takeSteps().empty()) << "nothing is sent";
    for (const char* const format : {"PFX", "PEM"})
        ASSERT_EQ(make(format), QString()) << format;
    ASSERT_TRUE(client->applyChanges(found).isGood()) << client->takeSteps().back().words.toStdString();
    ASSERT_TRUE(QTest::qWaitFor(
        [this] { return node->connectionStatus() != QlumConnectionStatus::Connected; }, 20'000));
    ASSERT_TRUE(connectAgain("admin")) << log();
    EXPECT_EQ(presented(), made.certificate) << "whose key the server has, or there would be no channel";
    EXPECT_EQ(UaPkiCertificate::fromDER(presented()).info().URI, old.info().URI);
    // another process reads it, so that it does not come into this one by being looked for
    const std::string middle = "sed -n 12p '" + server.certificates() +
                               "/server/own/private/private_key.pem' | tr -d '\\n' | rev > '" +
                               folder.file("line") + "'";
    ASSERT_EQ(std::system(middle.c_str()), 0);
    const std::string line = TemporaryFolder::read(folder.file("line"));
    ASSERT_EQ(line.find_last_not_of('\n'), std::size_t{63});
    EXPECT_EQ(countInMemory(line.substr(0, 64)), 0) << "wiped wherever it was";
    const std::string forward(line.rend() - 64, line.rend());
    EXPECT_GE(countInMemory(line.substr(0, 64)), 1) << "one that is there is found";

    use("Basic256Sha256", OpcUa_MessageSecurityMode_Sign);
    ASSERT_TRUE(connectAgain("admin")) << log();
    EXPECT_NE(make("PEM").toStdString().find("SignAndEncrypt only"), std::string::npos);
}

TEST_F(PushOnDemoServer, RefusesWhoMayNotAndWhatDoesNotFit)
{
    ASSERT_TRUE(connect("admin")) << log();
    const QlumPushServer known = found;
    ASSERT_TRUE(connectAgain("demo")) << log();
    EXPECT_TRUE(found.missing.contains("GetRejectedList")) << "hidden from this user";
    std::vector<UaByteString> rejected;
    EXPECT_EQ(client->rejectedList(known, rejected).code(), OpcUa_BadUserAccessDenied);
    ASSERT_TRUE(connectAgain("admin")) << log();
    EXPECT_TRUE(client->rejectedList(found, rejected).isGood());
    bool isApplyRequired = false;
    const QlumPushGroup group = found.groups.at(0);
    // of this client: another key, another application
    const UaByteString foreign = QlumCertificates::instance()->certificate().toByteStringDER();
    EXPECT_TRUE(client
                    ->updateCertificate(found, {group.id, group.types.at(0).id, foreign, {}, "", nullptr},
                                        isApplyRequired)
                    .isBad());
    EXPECT_EQ(client->applyChanges(found).code(), OpcUa_BadNothingToDo);
    ASSERT_TRUE(client->addCertificate(group, foreign, true).isGood());
    ASSERT_TRUE(client->removeCertificate(group, foreign, true).isGood());
    EXPECT_EQ(client->removeCertificate(group, foreign, true).code(), OpcUa_BadInvalidArgument);
}
} // namespace
