// The connection doctor at servers that are not ours, each with a fault of its own: it stops at the step
// where the fault is, says whose it is, and what it offers helps.
#include <app/api/qlumservicerecorder.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumcertificates.h>
#include <certificates/qlumcertificatestore.h>
#include <opcua/opcua.h>
#include <servers/doctor/qlumdiagnosis.h>
#include <servers/doctor/qlumdoctor.h>
#include <servers/doctor/qlumdoctordialog.h>
#include <servers/doctor/qlumdoctorwords.h>
#include <servers/qlumdiscoverysetting.h>
#include <servers/qlumendpoint.h>
#include <tests/support/connectanswers.h>
#include <tests/support/demoserverinfo.h>
#include <tests/support/httpsfront.h>
#include <tests/support/modeltext.h>
#include <tests/support/owncertificate.h>
#include <tests/support/owndemoserver.h>
#include <tests/support/stubapplication.h>
#include <tests/support/temporaryfolder.h>
#include <tests/support/testcertificates.h>
#include <uabase/system/uaplatformlayer.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkicertificatecollection.h>
#include <uabase/values/uabytestring.h>

#include <QClipboard>
#include <QDir>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QHostAddress>
#include <QObject>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QString>
#include <QStringList>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QVector>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>

namespace {

const QString secret = QStringLiteral("correct horse");

class Doctor : public WithOwnCertificate
{
protected:
    Doctor()
    {
        application.settings["General.ConnectTimeout"] = 20000u;
        application.settings["General.SessionTimeout"] = 1200000.0;
        setting.endpoint.url = QString::fromStdString(demoserver::endpointUrl());
        setting.displayName = "Plant";
        setting.sessionName = "doctor test";
        use("Basic256Sha256", OpcUa_MessageSecurityMode_SignAndEncrypt);
        for (const QString& folder :
             {QlumCertificateStore::trustedCertificates(), QlumCertificateStore::trustedRevocationLists()})
            for (const QString& name : QDir(folder).entryList(QDir::Files))
                QDir(folder).remove(name);
        script.beforeAnswer = [this] {
            if (script.asked.last() == "certificate" && !script.verdict.isForOnce)
                trust(script.certificate.security.serverCertificate);
        };
    }
    ~Doctor() override
    {
        // whatever a user has entered stays in the fields where he did
        EXPECT_FALSE(application.texts().join('\n').contains(secret));
        if (doctor)
            EXPECT_FALSE(doctor->report().contains(secret));
    }

    void use(const char* policy, OpcUa_MessageSecurityMode mode)
    {
        setting.endpoint.securityPolicyUri =
            QStringLiteral("http://opcfoundation.org/UA/SecurityPolicy#") + QLatin1String(policy);
        setting.endpoint.securityMode = mode;
    }
    static void trust(const UaByteString& chain)
    {
        EXPECT_TRUE(UaPkiCertificateCollection::fromDERChain(chain).certificate(0).toDERFile(
            toUaString(QlumCertificateStore::trustedCertificates() + "/plant.der")));
    }
    static void trust(const testcertificates::Der& der)
    {
        trust(UaByteString(static_cast<OpcUa_Int32>(der.size()), der.data()));
    }
    void begin()
    {
        doctor = std::make_unique<QlumDoctor>(7, setting, std::make_unique<ConnectAnswers>(script));
        doctor->start();
    }
    bool isOver() const
    {
        return QTest::qWaitFor([this] { return !doctor->isRunning(); }, 60000);
    }
    // "step: state" of where it has stopped, and who has stopped it; "passed" when nothing has.
    std::string outcome() const
    {
        const QlumRung* rung = doctor->diagnosis().failed();
        return rung ? (qlumRungName(rung->step) + ", " + qlumRungSideName(rung->side)).toStdString()
                    : "passed";
    }
    std::string diagnose()
    {
        begin();
        return isOver() ? outcome() : "not over";
    }
    const QlumRung& rung(QlumRung::Step step) const { return doctor->diagnosis().rungs.at(step); }
    QlumRung::Fix fix() const
    {
        const QlumRung* fixable = doctor->diagnosis().fixable();
        return fixable ? fixable->fix : QlumRung::NoFix;
    }
    std::string report() const { return doctor->report().toStdString(); }

    StubApplication application;
    QlumDiscoverySetting setting;
    ConnectScript script;
    std::unique_ptr<QlumDoctor> doctor;
};

// ---- nobody there, or somebody else

TEST_F(Doctor, UnknownHostsDeadPortsAndOtherProtocols)
{
    setting.endpoint.url = "opc.tcp://no-such-host.invalid:4840";
    EXPECT_EQ(diagnose(), "Name resolution, this computer") << report();
    setting.endpoint.url = "opc.tcp://joe:" + secret + "@plc:4840";
    EXPECT_EQ(diagnose(), "Name resolution, this computer") << "user information in a URL is refused";

    QTcpServer port;
    ASSERT_TRUE(port.listen(QHostAddress::LocalHost));
    const QString url = QStringLiteral("opc.tcp://127.0.0.1:%1").arg(port.serverPort());
    setting.endpoint.url = url;
    QObject::connect(&port, &QTcpServer::newConnection, [&port] {
        QTcpSocket* socket = port.nextPendingConnection();
        socket->write("HTTP/1.1 400 Bad Request\r\nServer: other\r\n\r\n");
    });
    EXPECT_EQ(diagnose(), "Hello, the server");
    EXPECT_TRUE(rung(QlumRung::Hello).evidence.join('\n').contains("HTTP/1.1 400 Bad Request")) << report();
    EXPECT_EQ(rung(QlumRung::Connection).state, QlumRung::Passed);
    EXPECT_EQ(rung(QlumRung::Channel).state, QlumRung::Waiting);

    port.disconnect();
    QObject::connect(&port, &QTcpServer::newConnection, [&port] { port.nextPendingConnection()->close(); });
    EXPECT_EQ(diagnose(), "Hello, the server") << "it hangs up";
    EXPECT_EQ(rung(QlumRung::Hello).status, OpcUa_StatusCode(OpcUa_BadConnectionClosed));

    port.close();
    EXPECT_EQ(diagnose(), "TCP connection, the server") << report();
}

TEST_F(Doctor, ASilentPortIsWaitedForAndCanBeLeft)
{
    QTcpServer port;
    ASSERT_TRUE(port.listen(QHostAddress::LocalHost));
    setting.endpoint.url = QStringLiteral("opc.tcp://127.0.0.1:%1").arg(port.serverPort());
    begin();
    ASSERT_TRUE(QTest::qWaitFor([this] { return rung(QlumRung::Hello).state == QlumRung::Running; }));
    QElapsedTimer timer;
    timer.start();
    doctor->cancel();
    EXPECT_FALSE(doctor->isRunning());
    EXPECT_EQ(outcome(), "passed");
    begin(); // and the one before is joined
    EXPECT_LT(timer.elapsed(), 10000) << "a cancelled step goes on";
    doctor.reset();
    application.settings["General.ConnectTimeout"] = 200u;
    EXPECT_EQ(diagnose(), "Hello, the server");
    EXPECT_EQ(rung(QlumRung::Hello).status, OpcUa_StatusCode(OpcUa_BadTimeout));
    EXPECT_GE(rung(QlumRung::Hello).milliseconds, 200);
}

// ---- the demo server

TEST_F(Doctor, TrustLeadsFromTheCertificateToTheUserAndTheRightPasswordIn)
{
    setting.userTokenType = QlumDiscoverySetting::UserName;
    setting.userName = "demo";
    EXPECT_EQ(diagnose(), "Our check of the server's certificate, this computer") << report();
    ASSERT_EQ(fix(), QlumRung::TrustServer);
    EXPECT_EQ(rung(QlumRung::ServerCertificate).status, OpcUa_StatusCode(OpcUa_BadCertificateUntrusted));
    script.verdict = {true, false, {}};
    doctor->trustServer();
    ASSERT_TRUE(isOver());
    EXPECT_EQ(outcome(), "passed") << report();
    EXPECT_EQ(rung(QlumRung::Session).state, QlumRung::Passed);
    EXPECT_EQ(rung(QlumRung::User).state, QlumRung::Skipped) << "no password is known";

    ASSERT_EQ(fix(), QlumRung::ChooseUser);
    script.user = QlumUserChoice{QlumDiscoverySetting::UserName, "demo", secret, {}, {}};
    doctor->chooseUser();
    ASSERT_TRUE(isOver());
    EXPECT_EQ(outcome(), "User, the server") << report();
    EXPECT_EQ(rung(QlumRung::Session).state, QlumRung::Passed);
    EXPECT_EQ(fix(), QlumRung::ChooseUser);
    script.user->password = QStringLiteral("demo");
    doctor->chooseUser();
    ASSERT_TRUE(isOver());
    EXPECT_EQ(outcome(), "passed") << report();
    for (const QlumRung& passed : doctor->diagnosis().rungs)
        EXPECT_TRUE(passed.state == QlumRung::Passed && passed.milliseconds >= 0) << report();
}

TEST_F(Doctor, AnUnsecuredConnectionNeedsNoCertificate)
{
    use("None", OpcUa_MessageSecurityMode_None);
    setting.endpoint.securityPolicyUri = qlumPolicyNone();
    EXPECT_EQ(diagnose(), "passed") << report();
    EXPECT_EQ(rung(QlumRung::ServerCertificate).state, QlumRung::Skipped);
    EXPECT_EQ(rung(QlumRung::User).state, QlumRung::Passed);
}

TEST_F(Doctor, ItsCallsAreSeenAsThoseOfTheServer)
{
    use("None", OpcUa_MessageSecurityMode_None);
    const auto& recorder = QlumServiceRecorder::ofApplication();
    recorder->setOn(true);
    EXPECT_EQ(diagnose(), "passed") << report();
    recorder->setOn(false);
    QStringList seen;
    for (const QlumServiceRecord& record : recorder->take())
        if (record.hasEnded && record.status.isGood())
            seen.append(record.server + ' ' + record.service);
    seen.removeAll("Plant Read"); // what the session asks about limits
    EXPECT_EQ(seen.join(", ").toStdString(),
              "Plant GetEndpoints, Plant CreateSession, Plant ActivateSession, Plant CloseSession");
}

TEST_F(Doctor, AHostThatNobodyKnowsIsAWarningUntilItIsDoneWithout)
{
    OwnDemoServer server;
    ASSERT_TRUE(server.start("pki", "--name plant.invalid"));
    setting.endpoint.url = QString::fromStdString(server.url());
    use("None", OpcUa_MessageSecurityMode_None);
    EXPECT_EQ(diagnose(), "passed") << report();
    EXPECT_EQ(rung(QlumRung::Endpoints).state, QlumRung::Warned);
    EXPECT_TRUE(rung(QlumRung::Endpoints).finding.contains("'plant.invalid'")) << report();
    ASSERT_EQ(fix(), QlumRung::KeepDialledHost);
    QString ignored;
    QObject::connect(doctor.get(), &QlumDoctor::settingChanged,
                     [&ignored](const QlumDiscoverySetting& changed) { ignored = changed.ignoredHost; });
    doctor->keepDialledHost();
    ASSERT_TRUE(isOver());
    EXPECT_EQ(ignored, "plant.invalid");
    EXPECT_EQ(rung(QlumRung::Endpoints).state, QlumRung::Passed) << report();
    EXPECT_EQ(fix(), QlumRung::NoFix);
}

TEST_F(Doctor, TlsThatNobodyTrustsStopsBeforeTheEndpoints)
{
    const HttpsFront front(TAVELIN_TESTSUPPORT "/../..");
    ASSERT_FALSE(front.url().empty()) << front.log();
    setting.endpoint.url = QString::fromStdString(front.url());
    use("None", OpcUa_MessageSecurityMode_None);
    EXPECT_EQ(diagnose(), "Secure channel, this computer") << report();
    EXPECT_EQ(rung(QlumRung::Hello).state, QlumRung::Skipped);
    ASSERT_EQ(fix(), QlumRung::TrustServer);
    script.isTlsTrusted = true;
    doctor->trustServer();
    ASSERT_TRUE(isOver());
    EXPECT_EQ(script.asked, QStringList{"tls trust"});
    EXPECT_EQ(outcome(), "passed") << report();
}

TEST_F(Doctor, AnEndpointThatIsOfferedTakesThePlaceOfOneThatIsNot)
{
    use("Basic256", OpcUa_MessageSecurityMode_Sign);
    EXPECT_EQ(diagnose(), "Endpoints, this computer") << report();
    ASSERT_EQ(fix(), QlumRung::ChooseEndpoint);
    QString kept;
    QObject::connect(doctor.get(), &QlumDoctor::settingChanged, [&kept](const QlumDiscoverySetting& changed) {
        kept = changed.endpoint.securityPolicyUri;
    });
    const QVector<QlumEndpoint> offered = doctor->diagnosis().endpoints;
    const auto none = std::find_if(offered.begin(), offered.end(), [](const QlumEndpoint& endpoint) {
        return endpoint.securityPolicyUri == qlumPolicyNone();
    });
    ASSERT_NE(none, offered.end());
    doctor->useEndpoint(*none);
    ASSERT_TRUE(isOver());
    EXPECT_EQ(outcome(), "passed") << report();
    EXPECT_EQ(kept, qlumPolicyNone());
}

TEST_F(Doctor, TheDialogShowsWhereItStopsAndCopiesTheReport)
{
    setting.endpoint.url = "opc.tcp://no-such-host.invalid:4840";
    setting.displayName = "<b>Plant</b>\nsecond line";
    auto made = std::make_unique<QlumDoctor>(7, setting, std::make_unique<ConnectAnswers>(script));
    const QlumDoctor& shown = *made;
    QlumDoctorDialog dialog(std::move(made));
    dialog.show();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !shown.isRunning(); }));
    EXPECT_TRUE(dialog.findChild<QPlainTextEdit*>("details")->toPlainText().contains("no-such-host.invalid"));
    EXPECT_FALSE(dialog.findChild<QPushButton*>("fix")->isVisible());
    dialog.findChild<QPushButton*>("copyReport")->click();
    const QString copied = QGuiApplication::clipboard()->text();
    EXPECT_TRUE(copied.contains("1. Name resolution: failed")) << copied.toStdString();
    EXPECT_TRUE(copied.contains("Server: <b>Plant</b> second line\n")) << copied.toStdString();
}

// ---- servers with certificates of their own

class DoctorAtOwnServer : public Doctor
{
protected:
    // A server that shows a certificate made so.
    void start(testcertificates::Recipe recipe)
    {
        recipe.pair = testcertificates::key(2048, "server");
        certificate = testcertificates::make(recipe);
        const std::string own = folder.file("server/own");
        std::filesystem::create_directories(own + "/certs");
        std::filesystem::create_directories(own + "/private");
        TemporaryFolder::write(own + "/certs/certificate.pem",
                               testcertificates::pem("CERTIFICATE", certificate));
        TemporaryFolder::write(own + "/private/private_key.pem",
                               testcertificates::pem("PRIVATE KEY", pkcs8(recipe.pair)));
        ASSERT_TRUE(server.start("pki", "--pki '" + folder.path() + "'"));
        setting.endpoint.url = QString::fromStdString(server.url());
    }
    static testcertificates::Der pkcs8(EVP_PKEY* pair)
    {
        const std::unique_ptr<PKCS8_PRIV_KEY_INFO, decltype(&PKCS8_PRIV_KEY_INFO_free)> info(
            EVP_PKEY2PKCS8(pair), PKCS8_PRIV_KEY_INFO_free);
        return testcertificates::encoded(info.get(), i2d_PKCS8_PRIV_KEY_INFO);
    }
    static testcertificates::Recipe local()
    {
        testcertificates::Recipe recipe;
        recipe.name = "Plant";
        recipe.names = "URI:urn:korvanda:tavelin:demoserver,DNS:localhost,IP:127.0.0.1";
        return recipe;
    }
    static void write(const QString& path, const testcertificates::Der& der)
    {
        TemporaryFolder::write(path.toStdString(), std::string(der.begin(), der.end()));
    }

    TemporaryFolder folder;
    OwnDemoServer server;
    testcertificates::Der certificate;
};

TEST_F(DoctorAtOwnServer, AnExpiredCertificate)
{
    testcertificates::Recipe recipe = local();
    recipe.from = -7200;
    recipe.to = -3600;
    start(recipe);
    trust(certificate);
    EXPECT_EQ(diagnose(), "Our check of the server's certificate, this computer") << report();
    EXPECT_EQ(rung(QlumRung::ServerCertificate).status, OpcUa_StatusCode(OpcUa_BadCertificateTimeInvalid));
    EXPECT_EQ(doctor->diagnosis().clockOffset.value_or(1e9) / 60000, 0) << "no clock is to blame";
}

TEST_F(DoctorAtOwnServer, ACertificateOfAnotherHost)
{
    testcertificates::Recipe recipe = local();
    recipe.names = "URI:urn:korvanda:tavelin:demoserver,DNS:other.example";
    start(recipe);
    trust(certificate);
    EXPECT_EQ(diagnose(), "Our check of the server's certificate, this computer") << report();
    EXPECT_EQ(rung(QlumRung::ServerCertificate).status,
              OpcUa_StatusCode(OpcUa_BadCertificateHostNameInvalid));
    EXPECT_TRUE(rung(QlumRung::ServerCertificate).evidence.join('\n').contains("other.example"));
    script.verdict = {true, true, {}};
    doctor->trustServer();
    ASSERT_TRUE(isOver());
    EXPECT_EQ(outcome(), "passed") << "the user knows of the host\n" << report();
    EXPECT_EQ(rung(QlumRung::ServerCertificate).state, QlumRung::Warned);
}

TEST_F(DoctorAtOwnServer, ARevokedCertificate)
{
    testcertificates::Recipe issuer;
    issuer.name = "Issuer";
    issuer.pair = testcertificates::key(2048, "issuer");
    issuer.authority = true;
    testcertificates::Recipe recipe = local();
    recipe.issuer = issuer.name;
    recipe.issuerPair = issuer.pair;
    recipe.serial = 4711;
    start(recipe);
    trust(testcertificates::make(issuer));
    write(QlumCertificateStore::trustedRevocationLists() + "/issuer.crl",
          testcertificates::makeRevocationList(issuer.name, issuer.pair, {4711}));
    EXPECT_EQ(diagnose(), "Our check of the server's certificate, this computer") << report();
    EXPECT_EQ(rung(QlumRung::ServerCertificate).status, OpcUa_StatusCode(OpcUa_BadCertificateRevoked));
}

TEST_F(DoctorAtOwnServer, AServerThatRefusesOurCertificate)
{
    ASSERT_TRUE(server.start("pki", "--accept-all no"));
    setting.endpoint.url = QString::fromStdString(server.url());
    script.verdict = {true, false, {}};
    diagnose();
    doctor->trustServer();
    ASSERT_TRUE(isOver());
    EXPECT_EQ(outcome(), "The server's check of our certificate, the server") << report();
    EXPECT_EQ(fix(), QlumRung::ExportOwn);
    EXPECT_TRUE(rung(QlumRung::OwnCertificate).evidence.join('\n').contains("Thumbprint")) << report();
}

TEST_F(DoctorAtOwnServer, AClockTwoHoursAheadIsToldInWords)
{
    ::setenv("TAVELIN_CLOCK_SHIFT", "7200000", 1);
    ::setenv("NODE_OPTIONS", "--require=\"" TAVELIN_TESTSUPPORT "/shiftedclock.cjs\"", 1);
    const bool isStarted = server.start();
    ::unsetenv("NODE_OPTIONS");
    ASSERT_TRUE(isStarted);
    setting.endpoint.url = QString::fromStdString(server.url());
    script.verdict = {true, false, {}};
    diagnose();
    doctor->trustServer();
    ASSERT_TRUE(isOver());
    const QString words = "The server's clock is 2 hours ahead of this computer's.";
    EXPECT_EQ(rung(QlumRung::Endpoints).finding, words);
    EXPECT_EQ(rung(QlumRung::Endpoints).state, QlumRung::Warned);
    EXPECT_EQ(outcome(), "Our check of the server's certificate, this computer") << report();
    EXPECT_EQ(rung(QlumRung::ServerCertificate).status, OpcUa_StatusCode(OpcUa_BadCertificateTimeInvalid));
    EXPECT_TRUE(rung(QlumRung::ServerCertificate).advice.contains(words)) << report();
}
} // namespace
