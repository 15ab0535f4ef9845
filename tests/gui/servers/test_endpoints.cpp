#include <opcua/opcua_types.h>
#include <servers/qlumdiscoverysetting.h>
#include <servers/qlumendpoint.h>
#include <servers/qlumendpointchoice.h>
#include <servers/qlumnamespacemap.h>
#include <servers/qlumsessionoptions.h>
#include <tests/support/modeltext.h>

#include <QByteArray>
#include <QFile>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QVector>
#include <gtest/gtest.h>

namespace {
const QString noPolicy = qlumPolicyNone();
const QString basic("http://opcfoundation.org/UA/SecurityPolicy#Basic256Sha256");

QlumEndpoint endpoint(const QString& url, const QString& policy = noPolicy, int mode = 1)
{
    QlumEndpoint made;
    made.url = url;
    made.securityPolicyUri = policy;
    made.securityMode = mode;
    return made;
}

TEST(EndpointChoice, Table)
{
    using Choice = QlumEndpointChoice;
    const struct
    {
        const char* what;
        const char* url;
        QVector<QlumEndpoint> endpoints;
        Choice::Match match;
        int index;
        int qualified;
    } cases[] = {
        {"default port, no path", "opc.tcp://h:4840/p", {endpoint("opc.tcp://other")}, Choice::Exact, 0, 1},
        {"same path",
         "opc.tcp://h:1/p",
         {endpoint("opc.tcp://h:1/q"), endpoint("opc.tcp://h:1/p")},
         Choice::Exact,
         1,
         2},
        {"a slash is no path", "opc.tcp://h:1", {endpoint("opc.tcp://h:1/")}, Choice::Exact, 0, 1},
        {"other paths",
         "opc.tcp://h:1/p",
         {endpoint("opc.tcp://h:1/a"), endpoint("opc.tcp://h:1/b")},
         Choice::OtherUrl,
         0,
         2},
        {"other port", "opc.tcp://h:1/p", {endpoint("opc.tcp://h:2/p")}, Choice::OtherUrl, 0, 1},
        {"exact ends the search",
         "opc.tcp://h:1",
         {endpoint("opc.tcp://h:1"), endpoint("opc.tcp://h:1")},
         Choice::Exact,
         0,
         1},
        {"other policy", "opc.tcp://h:1", {endpoint("opc.tcp://h:1", basic, 3)}, Choice::NoMatch, -1, 0},
        {"other mode", "opc.tcp://h:1", {endpoint("opc.tcp://h:1", noPolicy, 2)}, Choice::NoMatch, -1, 0},
        {"other scheme",
         "opc.tcp://h:1",
         {endpoint("https://h:1"), endpoint("OPC.TCP://h:1")},
         Choice::NoMatch,
         -1,
         0},
        {"http is not https", "http://h:1", {endpoint("https://h:1")}, Choice::NoMatch, -1, 0},
        {"not a URL", "opc.tcp://h:1", {endpoint("opc.tcp://h:99999")}, Choice::OtherUrl, 0, 1},
        {"none", "opc.tcp://h:1", {}, Choice::NoMatch, -1, 0},
    };
    for (const auto& test : cases) {
        const Choice choice = qlumChooseEndpoint(test.endpoints, test.url, noPolicy, 1);
        EXPECT_EQ(choice.match, test.match) << test.what;
        EXPECT_EQ(choice.index, test.index) << test.what;
        EXPECT_EQ(choice.qualified.size(), test.qualified) << test.what;
    }
    EXPECT_EQ(qlumChooseEndpoint({endpoint("opc.tcp://h", noPolicy, 0)}, "opc.tcp://h", noPolicy, 0).match,
              Choice::NoMatch)
        << "an invalid mode is never met";
}

TEST(EndpointPassword, TravelsInTheClearUnlessItOrTheConnectionIsEncrypted)
{
    EXPECT_TRUE(qlumSendsClearPassword(endpoint("opc.tcp://h", noPolicy, 1)));
    EXPECT_TRUE(qlumSendsClearPassword(endpoint("http://h", noPolicy, 1)));
    EXPECT_TRUE(qlumSendsClearPassword(endpoint("httpsx://h", noPolicy, 1)));
    EXPECT_FALSE(qlumSendsClearPassword(endpoint("https://h", noPolicy, 1)));
    EXPECT_FALSE(qlumSendsClearPassword(endpoint("HTTPS://h", noPolicy, 1)));
    EXPECT_FALSE(qlumSendsClearPassword(endpoint("opc.tcp://h", basic, 2)));
}

TEST(EndpointPassword, FirstOfSeveralTokensWasTakenForTheOneThatIsUsed)
{
    QlumEndpoint server = endpoint("opc.tcp://h", noPolicy, 1);
    server.userTokens = {{"0", OpcUa_UserTokenType_UserName, "", "", noPolicy},
                         {"1", OpcUa_UserTokenType_UserName, "", "", basic}};
    EXPECT_EQ(qlumPasswordPolicy(server), basic);
    EXPECT_FALSE(qlumSendsClearPassword(server));
    server.userTokens[1].securityPolicyUri = "urn:nobody-knows";
    EXPECT_TRUE(qlumSendsClearPassword(server)) << "it cannot be used";
}

TEST(EndpointUrl, PortAndPathOfTheTypedUrlWereThrownAway)
{
    const struct
    {
        QStringList named;
        QString chosen;
        QString asked;
        QString dialled;
    } cases[] = {
        {{"opc.tcp://inner:4840/ua"},
         "opc.tcp://inner:4840/ua",
         "opc.tcp://plc:4840",
         "opc.tcp://plc:4840/ua"},
        {{"opc.tcp://inner:4840"},
         "opc.tcp://inner:4840",
         "opc.tcp://gateway:14840",
         "opc.tcp://gateway:14840"},
        {{"opc.tcp://inner:4840"}, "opc.tcp://inner:4840", "opc.tcp://plc/line1", "opc.tcp://plc:4840/line1"},
        {{"opc.tcp://i:4840", "opc.tcp://i:4841"},
         "opc.tcp://i:4841",
         "opc.tcp://h:4840",
         "opc.tcp://h:4841"},
        {{"https://i:443/ua"}, "https://i:443/ua", "https://h:443/ua/discovery", "https://h:443/ua"},
        {{"https://i:443"}, "https://i:443", "opc.tcp://h:4840", "https://i:443"},
    };
    for (const auto& test : cases) {
        QVector<QlumEndpoint> endpoints;
        for (const QString& url : test.named)
            endpoints.append(endpoint(url, noPolicy, 1));
        EXPECT_EQ(qlumDialledUrl(endpoints, test.chosen, test.asked).toStdString(),
                  test.dialled.toStdString());
    }
    EXPECT_EQ(qlumCompleteUrl(" OPC.TCP://Plc:4840/Ua "), "opc.tcp://Plc:4840/Ua");
    EXPECT_EQ(qlumCompleteUrl("plc:4841"), "opc.tcp://plc:4841");
    EXPECT_TRUE(qlumIsUsableUrl("https://plc") && qlumIsUsableUrl("opc.tcp://plc"));
    EXPECT_FALSE(qlumIsUsableUrl("http://plc") || qlumIsUsableUrl("opc.tcp://"));
}

TEST(EndpointChoice, HighestLevelWasPreferredToWhatWasTyped)
{
    const auto level = [](QlumEndpoint one, int given) {
        one.securityLevel = given;
        return one;
    };
    const QVector<QlumEndpoint> endpoints{level(endpoint("opc.tcp://h:4840", basic, 3), 200),
                                          level(endpoint("https://other:4843", basic, 3), 90),
                                          level(endpoint("https://h:4844", basic, 3), 50),
                                          level(endpoint("https://h:4843", basic, 2), 30),
                                          level(endpoint("https://h:4843", basic, 3), 30),
                                          level(endpoint("https://h:4843", noPolicy, 1), 1),
                                          level(endpoint("https://h:4843", "urn:curve#ECC", 3), 255)};
    EXPECT_EQ(qlumPreferredEndpoint(endpoints, "https://h:4843"), 4);
    EXPECT_EQ(qlumPreferredEndpoint(endpoints, "https://h:1"), 2);
    EXPECT_EQ(qlumPreferredEndpoint(endpoints, "opc.tcp://elsewhere"), 0);
    EXPECT_EQ(qlumPreferredEndpoint({endpoints.last()}, "https://h:4843"), -1);
    EXPECT_TRUE(qlumWhyUnsupported(endpoints.last()).contains("'ECC'"));
    EXPECT_FALSE(qlumWhyUnsupported(endpoint("http://h", noPolicy, 1)).isEmpty());
    EXPECT_TRUE(qlumWhyUnsupported(endpoints.first()).isEmpty());
}

QlumDiscoverySetting fullSetting()
{
    QlumDiscoverySetting setting;
    setting.endpoint = endpoint("opc.tcp://h:4840/a,b;c", basic, 3);
    setting.endpoint.applicationUri = "urn:a";
    setting.endpoint.productUri = "urn:p";
    setting.endpoint.applicationNameLocale = "de";
    setting.endpoint.applicationName = QString::fromUtf8("Kühler, \"Nord\"");
    setting.endpoint.applicationType = 2;
    setting.endpoint.gatewayServerUri = "urn:g";
    setting.endpoint.discoveryProfileUri = "urn:d";
    setting.endpoint.discoveryUrls = QStringList{"opc.tcp://h:4840", "opc.tcp://i,j"};
    setting.endpoint.serverCertificate = QByteArray("\x30\x82\x00\xFF", 4);
    setting.endpoint.userTokens = {{"anon", 0, "", "", ""}, {"user", 1, "jwt", "http://i", noPolicy}};
    setting.endpoint.transportProfileUri = "urn:t";
    setting.endpoint.securityLevel = 200;
    setting.displayName = "My server";
    setting.userTokenType = QlumDiscoverySetting::UserName;
    setting.sessionName = "session";
    setting.discoveryHost = "h";
    setting.ignoredHost = "inner";
    setting.dialledHost = "h:4840";
    setting.session.maxOperations = 0;
    setting.session.automaticReconnect = false;
    setting.session.typeDictionaryMode = "Manual";
    setting.session.localeIds = QStringList{"de-CH", "en"};
    setting.userName = "joe";
    setting.storePassword = true;
    setting.password = "top-secret";
    setting.certificateFile = "/c.der";
    setting.privateKeyFile = "/k.pem";
    setting.trustedCertificate = QByteArray("\x30\x00\x01", 3);
    setting.givenCertificate = QByteArray("\x30\x00\x02", 3);
    return setting;
}

TEST(DiscoverySetting, RoundTripWithoutThePassword)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath("project.uap");
    const QlumDiscoverySetting stored = fullSetting();
    {
        QSettings settings(file, QSettings::IniFormat);
        settings.beginGroup("Servers/1");
        stored.storeSettings(settings);
    }
    QSettings settings(file, QSettings::IniFormat);
    settings.beginGroup("Servers/1");
    QlumDiscoverySetting wanted = stored;
    wanted.password.clear();
    EXPECT_TRUE(QlumDiscoverySetting::fromSetting(settings) == wanted);
    QFile raw(file);
    ASSERT_TRUE(raw.open(QIODevice::ReadOnly));
    const QByteArray bytes = raw.readAll();
    EXPECT_FALSE(bytes.contains("top-secret"));
    EXPECT_FALSE(bytes.contains(QByteArray("top-secret").toBase64()));
    EXPECT_TRUE(settings.contains("UserIdentityToken1.IssuerEndpointUrl"));
    EXPECT_FALSE(settings.contains("UserIdentityToken2.PolicyId"));
}

TEST(DiscoverySetting, HostileFilesStayWithinBounds)
{
    const QTemporaryDir folder;
    QSettings settings(folder.filePath("hostile.uap"), QSettings::IniFormat);
    settings.setValue("ServerUrl", QString(1000000, 'x'));
    settings.setValue("Server.NoOfDiscoveryUrls", 2000000000);
    settings.setValue("NoOfUserIdentityTokens", 2000000000);
    settings.setValue("UserIdentityToken0.TokenType", -7);
    settings.setValue("MessageSecurityMode", "none of them");
    settings.setValue("UserTokenType", 99);
    settings.setValue("SecurityLevel", 4711);
    settings.setValue("ServerCertificate", QString(4000000, 'A'));
    settings.setValue("Session.WatchdogTime", 1);
    settings.setValue("Session.TypeDictionaryMode", "Never");
    settings.setValue("Session.LocaleIds", QString(4000000, 'l'));
    const QlumDiscoverySetting setting = QlumDiscoverySetting::fromSetting(settings);
    EXPECT_EQ(setting.endpoint.url.size(), QlumEndpointLimits::textLength);
    EXPECT_TRUE(setting.endpoint.discoveryUrls.isEmpty());
    EXPECT_LE(setting.endpoint.userTokens.size(), QlumEndpointLimits::userTokens);
    EXPECT_EQ(setting.endpoint.securityMode, 0) << "never taken for None";
    EXPECT_EQ(setting.userTokenType, QlumDiscoverySetting::Anonymous);
    EXPECT_EQ(setting.endpoint.securityLevel, 0);
    EXPECT_TRUE(setting.endpoint.serverCertificate.isEmpty());
    EXPECT_TRUE(setting.session == QlumSessionOptions()) << "as the settings of the program say";
    settings.setValue("NoOfUserIdentityTokens", 100);
    EXPECT_EQ(QlumDiscoverySetting::fromSetting(settings).endpoint.userTokens.size(), 100);
    EXPECT_EQ(QlumDiscoverySetting::fromSetting(settings).endpoint.userTokens.first().tokenType, 0);
}

TEST(NamespaceMap, MapsWhatIsInBothTables)
{
    EXPECT_EQ(qlumNamespaceMap({"ua", "a", "b", "gone"}, {"ua", "b", "new", "a", "b"}),
              (NamespaceMap{{0, 0}, {1, 3}, {2, 1}}));
    EXPECT_TRUE(qlumNamespaceMap({}, {"ua"}).isEmpty());
}
} // namespace
