#include <app/api/qlumjob.h>
#include <app/api/qlumrunningwork.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumcertificatestore.h>
#include <opcua/opcua_statuscodes.h>
#include <servers/qlumconnectinfo.h>
#include <servers/qlumdiscoverylookup.h>
#include <servers/qlumdiscoverysetting.h>
#include <servers/qlumdiscoverysettings.h>
#include <servers/qlumendpoint.h>
#include <servers/qlumendpointfetcher.h>
#include <servers/qlumgivencertificate.h>
#include <servers/qlumserversettingsdialog.h>
#include <tests/support/modeltext.h>
#include <tests/support/stubapplication.h>
#include <tests/support/temporaryfolder.h>
#include <tests/support/testcertificates.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/sessionconnectinfo.h>

#include <QByteArray>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QModelIndex>
#include <QPointer>
#include <QPushButton>
#include <QSpinBox>
#include <QString>
#include <QStringList>
#include <QTabWidget>
#include <QTest>
#include <QTreeView>
#include <QVector>
#include <QWidget>
#include <gtest/gtest.h>

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>

namespace {
QVector<QlumEndpoint> twoEndpoints()
{
    QlumEndpoint none;
    none.url = "opc.tcp://inner-name:4840/ua";
    none.securityPolicyUri = qlumPolicyNone();
    none.applicationName = "Boiler";
    none.securityLevel = 1;
    none.userTokens = {{"a", 0, "", "", ""}, {"u", 1, "", "", ""}, {"v", 1, "", "", ""}};
    QlumEndpoint secure = none;
    secure.securityPolicyUri = "http://opcfoundation.org/UA/SecurityPolicy#Basic256Sha256";
    secure.securityMode = 3;
    secure.securityLevel = 100;
    secure.userTokens = {{"u", 1, "", "", ""}, {"c", 2, "", "", ""}};
    return {none, secure};
}

class ServerDialog : public testing::Test
{
protected:
    // What the server answers; blocks while held, as a server does that does not answer.
    unsigned int get(const QString& url, QVector<QlumEndpoint>& endpoints)
    {
        std::unique_lock lock(mutex);
        asked = url;
        released.wait(lock, [this] { return !held; });
        endpoints = answer;
        return status;
    }
    void make(const QlumDiscoverySetting& setting = {})
    {
        fetcher = new QlumEndpointFetcher(
            [this](const QString& url, int, QVector<QlumEndpoint>& endpoints) { return get(url, endpoints); },
            nullptr);
        dialog = std::make_unique<QlumServerSettingsDialog>(setting, fetcher, asker, nullptr);
        dialog->show();
    }
    template <typename T>
    T* find(const char* name) const
    {
        return dialog->findChild<T*>(name);
    }
    QPushButton* ok() const { return find<QDialogButtonBox>("buttons")->button(QDialogButtonBox::Ok); }
    bool fetch(const QString& url)
    {
        find<QLineEdit>("endpointUrl")->setText(url);
        find<QPushButton>("getEndpoints")->click();
        return QTest::qWaitFor([this] { return find<QWidget>("fetchProgress")->isHidden(); });
    }
    std::string table() const { return modelText(*find<QTreeView>("endpoints")->model()); }

    StubApplication application;
    std::mutex mutex;
    std::condition_variable released;
    bool held = false;
    unsigned int status = 0;
    QString asked;
    QVector<QlumEndpoint> answer = twoEndpoints();
    std::unique_ptr<QlumServerSettingsDialog> dialog;
    QlumEndpointFetcher* fetcher = nullptr; // of the dialog
    const QlumDiscoveryLookup::Asker asker = [](QlumJob&, QlumDiscoveryQuestion, const QString&, int) {
        QlumDiscoveryAnswer told;
        told.servers.append({"Boiler", "opc.tcp://plc1:4840", "urn:boiler"});
        told.told = 1;
        return told;
    };
};

TEST_F(ServerDialog, AddsAServerWithTheChosenEndpoint)
{
    make();
    EXPECT_FALSE(ok()->isEnabled());
    EXPECT_FALSE(find<QPushButton>("getEndpoints")->isEnabled());
    ASSERT_TRUE(fetch("plc1:4840"));
    EXPECT_EQ(asked, "opc.tcp://plc1:4840");
    EXPECT_EQ(table(),
              "Basic256Sha256 | SignAndEncrypt | 100 | TCP | User name, Certificate | Proposed | "
              "opc.tcp://inner-name:4840/ua\n"
              "None | None | 1 | TCP | Anonymous, User name | Not secured | opc.tcp://inner-name:4840/ua\n");
    EXPECT_EQ(find<QTreeView>("endpoints")->currentIndex().row(), 0) << "the proposed one";
    auto* view = find<QTreeView>("endpoints");
    view->setCurrentIndex(view->model()->index(1, 0));
    ASSERT_TRUE(ok()->isEnabled());
    const QlumDiscoverySetting setting = dialog->discoverySetting();
    EXPECT_EQ(setting.displayName, "Boiler");
    EXPECT_EQ(setting.endpoint.securityMode, 1);
    EXPECT_EQ(setting.endpoint.url, "opc.tcp://plc1:4840/ua") << "under the name by which it was reached";
    EXPECT_EQ(setting.discoveryHost, "plc1");
    EXPECT_FALSE(setting.sessionName.isEmpty());
}

TEST_F(ServerDialog, CancelLeavesTheDialogUsable)
{
    make();
    held = true;
    find<QLineEdit>("endpointUrl")->setText("opc.tcp://silent");
    auto* button = find<QPushButton>("getEndpoints");
    button->click();
    EXPECT_FALSE(find<QWidget>("fetchProgress")->isHidden());
    button->click();
    EXPECT_TRUE(find<QWidget>("fetchProgress")->isHidden());
    {
        const std::lock_guard lock(mutex);
        held = false;
    }
    released.notify_all();
    ASSERT_TRUE(fetch("opc.tcp://plc1"));
    EXPECT_EQ(find<QTreeView>("endpoints")->model()->rowCount(), 2);
}

TEST_F(ServerDialog, AQuestionCanBeGivenUpInTheListOfRunningWork)
{
    make();
    held = true;
    find<QLineEdit>("endpointUrl")->setText("opc.tcp://silent");
    find<QPushButton>("getEndpoints")->click();
    QlumRunningWork& work = QlumRunningWork::instance();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !work.rows().isEmpty(); }));
    EXPECT_TRUE(work.rows().first().text.contains("opc.tcp://silent"));
    work.cancel(work.rows().first().number);
    {
        const std::lock_guard lock(mutex);
        held = false;
    }
    released.notify_all();
    ASSERT_TRUE(QTest::qWaitFor([this] { return find<QWidget>("fetchProgress")->isHidden(); }));
    EXPECT_TRUE(find<QLabel>("message")->text().contains("BadRequestCancelledByClient"));
    EXPECT_EQ(find<QTreeView>("endpoints")->model()->rowCount(), 0) << "the answer came too late";
}

TEST_F(ServerDialog, FailuresSayWhatAndWhere)
{
    make();
    status = OpcUa_BadTimeout;
    ASSERT_TRUE(fetch("opc.tcp://plc1"));
    const QString message = find<QLabel>("message")->text();
    EXPECT_TRUE(message.contains("opc.tcp://plc1") && message.contains("BadTimeout")) << message;
    EXPECT_EQ(find<QLabel>("message")->textFormat(), Qt::PlainText);
    EXPECT_FALSE(ok()->isEnabled());
}

TEST_F(ServerDialog, FailedLookUpLeftTheEndpointsOfTheServerBefore)
{
    make();
    ASSERT_TRUE(fetch("opc.tcp://plc1:4840"));
    ASSERT_TRUE(ok()->isEnabled());
    status = OpcUa_BadTimeout;
    ASSERT_TRUE(fetch("opc.tcp://plc2:4840"));
    EXPECT_EQ(table(), "");
    EXPECT_FALSE(ok()->isEnabled());

    QlumDiscoverySetting stored;
    stored.endpoint = twoEndpoints().at(1);
    stored.displayName = "Mine";
    make(stored);
    ASSERT_TRUE(fetch(stored.endpoint.url));
    EXPECT_TRUE(ok()->isEnabled()) << "a server that is off can be renamed";
}

TEST_F(ServerDialog, UrlThatWasTypedInThePropertiesWasLost)
{
    QlumDiscoverySetting stored;
    stored.endpoint = twoEndpoints().at(1);
    stored.displayName = "Mine";
    make(stored);
    find<QLineEdit>("endpointUrl")->setText("OPC.TCP://plc:4841/other");
    EXPECT_EQ(dialog->discoverySetting().endpoint.url, "opc.tcp://plc:4841/other");
    EXPECT_EQ(dialog->discoverySetting().endpoint.securityMode, 3);
    ASSERT_TRUE(fetch("opc.tcp://gateway:14840"));
    EXPECT_EQ(dialog->discoverySetting().endpoint.url, "opc.tcp://gateway:14840/ua");
    find<QLineEdit>("endpointUrl")->setText("http://plc:80");
    EXPECT_FALSE(ok()->isEnabled());
    EXPECT_FALSE(find<QPushButton>("getEndpoints")->isEnabled());
    EXPECT_TRUE(find<QLabel>("urlHint")->isVisible());
}

TEST_F(ServerDialog, EndpointsThatCannotBeUsedWereOfferedLikeAllOthers)
{
    answer[1].securityPolicyUri = "http://opcfoundation.org/UA/SecurityPolicy#ECC_nistP256";
    make();
    ASSERT_TRUE(fetch("plc1:4840"));
    auto* view = find<QTreeView>("endpoints");
    const QModelIndex curve = view->model()->index(0, 0);
    EXPECT_EQ(curve.data().toString(), "ECC_nistP256 (not supported)");
    EXPECT_TRUE(curve.data(Qt::ToolTipRole).toString().contains("'ECC_nistP256' is not supported"));
    EXPECT_FALSE(curve.flags() & Qt::ItemIsEnabled);
    EXPECT_EQ(view->currentIndex().row(), 1);
    answer.removeFirst();
    ASSERT_TRUE(fetch("plc1:4840"));
    EXPECT_FALSE(ok()->isEnabled());
}

TEST_F(ServerDialog, ButtonsAndChosenRowLayOutOfReachInASmallWindow)
{
    while (answer.size() < 30)
        answer.append(answer.first());
    make();
    ASSERT_TRUE(fetch("plc1:4840"));
    auto* view = find<QTreeView>("endpoints");
    view->setCurrentIndex(view->model()->index(20, 0));
    dialog->resize(500, 380);
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return view->viewport()->rect().contains(view->visualRect(view->currentIndex()).center()); }));
    EXPECT_LE(dialog->height(), 400);
    EXPECT_TRUE(dialog->rect().contains(ok()->mapTo(dialog.get(), ok()->rect().center())));
}

TEST_F(ServerDialog, TrustInATlsCertificateAsksTheServerAgain)
{
    for (const QString& folder : QlumCertificateStore::folders())
        QDir().mkpath(folder);
    const QString trusted = QlumCertificateStore::tlsIssuerCertificates();
    for (const QString& name : QDir(trusted).entryList(QDir::Files))
        QFile::remove(trusted + '/' + name);
    testcertificates::Recipe recipe;
    recipe.pair = testcertificates::key(2048);
    recipe.names = "URI:urn:localhost:test,DNS:plc1";
    const testcertificates::Der der = testcertificates::make(recipe);
    const QByteArray certificate(reinterpret_cast<const char*>(der.data()), static_cast<int>(der.size()));
    const auto question = [this] {
        auto* shown = dialog->findChild<QDialog*>();
        return shown && shown->isVisible() ? shown : nullptr;
    };
    make();
    status = OpcUa_BadCertificateUntrusted;
    ASSERT_TRUE(fetch("https://plc1"));
    for (int i = 0; i < 2; ++i) // it may have several faults
        emit fetcher->untrustedCertificate(status, certificate);
    ASSERT_TRUE(QTest::qWaitFor([&] { return question() != nullptr; }));
    status = OpcUa_Good;
    auto* trust = question()->findChild<QPushButton*>("trust");
    ASSERT_NE(trust, nullptr);
    trust->click();
    EXPECT_TRUE(QTest::qWaitFor([this] { return find<QTreeView>("endpoints")->model()->rowCount() == 2; }));
    emit fetcher->untrustedCertificate(OpcUa_BadCertificateUntrusted, certificate);
    ASSERT_TRUE(QTest::qWaitFor([&] { return question() != nullptr; }));
    const QPointer<QDialog> open = question();
    dialog.reset();
    EXPECT_TRUE(open.isNull());
}

TEST_F(ServerDialog, ShowsStoredSettingsAndForgetsThePasswordOfAnotherUser)
{
    QlumDiscoverySetting stored;
    stored.endpoint = twoEndpoints().at(1);
    stored.displayName = "Mine";
    stored.userTokenType = QlumDiscoverySetting::UserName;
    stored.userName = "joe";
    stored.password = "secret";
    stored.storePassword = true;
    make(stored);
    find<QTabWidget>("pages")->setCurrentIndex(2);
    EXPECT_TRUE(find<QWidget>("userName")->isVisible());
    EXPECT_FALSE(find<QWidget>("Certificate file")->isVisible());
    EXPECT_TRUE(ok()->isEnabled());
    ASSERT_TRUE(fetch("opc.tcp://inner-name:4840/ua"));
    EXPECT_EQ(dialog->discoverySetting().endpoint.securityMode, 3) << "the stored choice stays chosen";
    EXPECT_EQ(dialog->discoverySetting().displayName, "Mine");
    EXPECT_EQ(dialog->discoverySetting().password, "secret");
    find<QLineEdit>("endpointUrl")->setText("opc.tcp://elsewhere:4840");
    EXPECT_TRUE(dialog->discoverySetting().password.isEmpty()) << "it was given for another server";
    find<QLineEdit>("endpointUrl")->setText("opc.tcp://inner-name:4840/ua");
    find<QLineEdit>("userName")->setText("jane");
    EXPECT_TRUE(dialog->discoverySetting().password.isEmpty());
    auto* type = find<QComboBox>("userTokenType");
    type->setCurrentIndex(type->findData(QlumDiscoverySetting::Certificate));
    EXPECT_TRUE(find<QWidget>("Certificate file")->isVisible());
}

TEST_F(ServerDialog, PressedServerOfTheTreeIsAskedAndItsRowSaysHowThatEnded)
{
    make();
    auto* tree = find<QTreeView>("discovery");
    tree->expand(tree->model()->index(0, 0));
    ASSERT_TRUE(QTest::qWaitFor([&] { return tree->model()->rowCount(tree->model()->index(0, 0)) == 1; }));
    const QModelIndex boiler = tree->model()->index(0, 0, tree->model()->index(0, 0));
    const auto press = [&] {
        tree->setCurrentIndex(boiler);
        emit tree->clicked(boiler);
        ASSERT_TRUE(QTest::qWaitFor([this] { return find<QWidget>("fetchProgress")->isHidden(); }));
    };
    status = OpcUa_BadConnectionRejected;
    press();
    EXPECT_TRUE(boiler.siblingAtColumn(2).data().toString().contains("BadConnectionRejected"));
    EXPECT_FALSE(ok()->isEnabled());
    status = OpcUa_Good;
    press();
    EXPECT_EQ(asked, "opc.tcp://plc1:4840");
    EXPECT_EQ(boiler.siblingAtColumn(2).data().toString(), "The server offers 2 endpoint(s).");
    EXPECT_TRUE(ok()->isEnabled());
    dialog->accept();
    EXPECT_EQ(application.settings[QlumDiscoverySettings::recentUrls].toStringList(),
              QStringList{"opc.tcp://plc1:4840/ua"});
}

TEST_F(ServerDialog, HostThatTheServerNamesIsDialledOnlyWhenTheUserSaysSo)
{
    make();
    ASSERT_TRUE(fetch("gateway:14840"));
    EXPECT_TRUE(find<QCheckBox>("dialsHost")->isChecked());
    QlumDiscoverySetting setting = dialog->discoverySetting();
    EXPECT_EQ(setting.endpoint.url, "opc.tcp://gateway:14840/ua");
    EXPECT_EQ(setting.dialledHost, "gateway:14840");
    EXPECT_EQ(setting.endpoint.securityPolicyUri, answer[1].securityPolicyUri)
        << "the answer's, as its tokens";
    EXPECT_EQ(setting.endpoint.userTokens, answer[1].userTokens);
    find<QLineEdit>("dialledHost")->setText("joe@elsewhere");
    EXPECT_FALSE(ok()->isEnabled());
    find<QLineEdit>("dialledHost")->setText("backup");
    EXPECT_EQ(dialog->discoverySetting().endpoint.url, "opc.tcp://backup:4840/ua");
    find<QCheckBox>("dialsHost")->setChecked(false);
    setting = dialog->discoverySetting();
    EXPECT_EQ(setting.endpoint.url, "opc.tcp://inner-name:4840/ua");
    EXPECT_TRUE(setting.dialledHost.isEmpty());
}

TEST_F(ServerDialog, RememberedHostStaysUntilAnotherServerIsAsked)
{
    QlumDiscoverySetting stored;
    stored.endpoint = twoEndpoints().at(1);
    stored.endpoint.url = "opc.tcp://gateway:14840/ua";
    stored.displayName = "Mine";
    stored.dialledHost = "gateway:14840";
    stored.sessionName = "mine";
    make(stored);
    EXPECT_EQ(dialog->discoverySetting().endpoint, stored.endpoint);
    EXPECT_EQ(dialog->discoverySetting().dialledHost, "gateway:14840");
    ASSERT_TRUE(fetch("opc.tcp://inner-name:4840"));
    EXPECT_TRUE(dialog->discoverySetting().dialledHost.isEmpty());
}

TEST_F(ServerDialog, EndpointSetByHandNeedsNoAnswerOfTheServer)
{
    make();
    find<QLineEdit>("displayName")->setText("Old PLC");
    auto* byHand = find<QGroupBox>("byHand");
    byHand->setChecked(true);
    EXPECT_FALSE(ok()->isEnabled());
    find<QLineEdit>("handUrl")->setText("plc7:4841/ua");
    auto* policy = find<QComboBox>("handPolicy");
    policy->setCurrentIndex(policy->findText("Basic256 (deprecated)"));
    EXPECT_EQ(find<QComboBox>("handMode")->currentText(), "SignAndEncrypt")
        << "None with a policy means nothing";
    ASSERT_TRUE(ok()->isEnabled());
    const QlumDiscoverySetting setting = dialog->discoverySetting();
    EXPECT_EQ(setting.endpoint.url, "opc.tcp://plc7:4841/ua");
    EXPECT_EQ(setting.endpoint.securityPolicyUri, "http://opcfoundation.org/UA/SecurityPolicy#Basic256");
    EXPECT_EQ(setting.endpoint.securityMode, 3);
    policy->setCurrentIndex(policy->findText("None"));
    EXPECT_EQ(dialog->discoverySetting().endpoint.securityMode, 1);

    testcertificates::Recipe recipe;
    recipe.pair = testcertificates::key(2048);
    const testcertificates::Der der = testcertificates::make(recipe);
    const TemporaryFolder folder;
    TemporaryFolder::write(folder.file("old.pem"), testcertificates::pem("CERTIFICATE", der));
    TemporaryFolder::write(folder.file("other.pem"), "nothing");
    auto* certificate = find<QlumGivenCertificate>("handCertificate");
    certificate->load(QString::fromStdString(folder.file("old.pem")));
    const QByteArray given = dialog->discoverySetting().givenCertificate;
    EXPECT_EQ(given.toStdString(), std::string(der.begin(), der.end()));
    certificate->load(QString::fromStdString(folder.file("other.pem")));
    EXPECT_FALSE(find<QLabel>("givenCertificateProblem")->isHidden());
    EXPECT_EQ(dialog->discoverySetting().givenCertificate, given);
    make(dialog->discoverySetting());
    EXPECT_TRUE(find<QGroupBox>("byHand")->isChecked());
    EXPECT_EQ(dialog->discoverySetting().givenCertificate, given);
}

TEST_F(ServerDialog, OnlyUsersThatTheEndpointTakesAreOffered)
{
    make();
    ASSERT_TRUE(fetch("plc1:4840"));
    auto* kind = find<QComboBox>("userTokenType");
    const auto kinds = [&] {
        return QString::fromStdString(modelText(*kind->model())).split('\n', Qt::SkipEmptyParts);
    };
    EXPECT_EQ(kinds(), (QStringList{"User name and password", "Certificate"}));
    EXPECT_FALSE(find<QLabel>("identityHint")->isHidden()) << "it would have been Anonymous";
    auto* view = find<QTreeView>("endpoints");
    view->setCurrentIndex(view->model()->index(1, 0));
    EXPECT_EQ(kinds(), (QStringList{"Anonymous", "User name and password"}));
    EXPECT_EQ(kind->currentText(), "Anonymous") << "which was wanted all the time";
    EXPECT_TRUE(find<QLabel>("identityHint")->isHidden());
}

TEST_F(ServerDialog, SessionFollowsTheSettingsOfTheProgramButWhereItHasItsOwn)
{
    application.settings["General.SessionTimeout"] = 60000.0;
    QlumDiscoverySetting stored;
    stored.endpoint = twoEndpoints().at(1);
    stored.displayName = "Mine";
    stored.sessionName = "mine";
    stored.discoveryHost = "inner-name";
    stored.userTokenType = QlumDiscoverySetting::UserName;
    stored.session.watchdogTime = 1500;
    stored.session.localeIds = QStringList{"de", "en"};
    make(stored);
    EXPECT_EQ(find<QSpinBox>("Session_SessionTimeout")->value(), 60000);
    EXPECT_EQ(dialog->discoverySetting(), stored) << "nothing was touched";
    find<QCheckBox>("Session_SessionTimeout_own")->setChecked(true);
    find<QSpinBox>("Session_SessionTimeout")->setValue(90000);
    find<QCheckBox>("Session_WatchdogTime_own")->setChecked(false);
    find<QLineEdit>("Session_LocaleIds")->setText(" fr ,, fr, de-CH");
    const QlumDiscoverySetting setting = dialog->discoverySetting();
    const UaClientSdk::SessionConnectInfo info = qlumConnectInfo(1, setting);
    EXPECT_EQ(info.sessionTimeout, 90000.0);
    EXPECT_EQ(info.watchdogTime, 5000u);
    EXPECT_EQ(toQString(info.localeId), "fr");
    ASSERT_EQ(info.additionalLocaleIds.length(), 1u);
    EXPECT_EQ(toQString(UaString(info.additionalLocaleIds[0])), "de-CH");
}
} // namespace
