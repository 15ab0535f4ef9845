// The view of a server's configuration: what it sends only after a yes, and what it says of what came back.
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumserverpools.h>
#include <app/api/qlumserverrole.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtoolservices.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/gds/qlumpushcertificatepage.h>
#include <plugins/gds/qlumpushlistpage.h>
#include <plugins/gds/qlumpushlisttable.h>
#include <plugins/gds/qlumpushrecordpage.h>
#include <plugins/gds/qlumpushview.h>
#include <plugins/gds/qlumtrustlist.h>
#include <tests/gui/gds/pushworld.h>
#include <tests/support/dialogdriver.h>
#include <tests/support/stubapplication.h>
#include <tests/support/temporaryfolder.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/qlummessagebar.h>

#include <QDialog>
#include <QFileDialog>
#include <QLabel>
#include <QList>
#include <QPushButton>
#include <QString>
#include <QTest>
#include <QWidget>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {
constexpr unsigned int plant = 5;
constexpr int viewLimit = 10'000;

class PushApplication : public StubApplication
{
public:
    QString serverName(unsigned int) override { return QStringLiteral("Plant"); }
    QList<unsigned int> projectServerIds() override { return {plant}; }
};

class PushViewTest : public testing::Test
{
protected:
    PushViewTest()
    {
        world->list[QlumTrustPart::Trusted] = {own, pushCertificate("Other")};
        world->rejected = {pushCertificate("Turned away")};
        view = std::make_unique<QlumPushView>(
            application, pools, [this](unsigned int) { return world; },
            QlumPushWorld{[this] { return UaPkiCertificate::fromDER(own); },
                          [this] { return QString::fromStdString(folder.file("ca")); },
                          [this](QWidget*, const QlumPushPlan& plan) {
                              plans.push_back(plan);
                              return isAgreed;
                          },
                          [this](const QlumSessionServices&) { return UaPkiCertificate::fromDER(presented); },
                          50});
        view->serverSelectionChanged(plant);
        view->sessionStatusChanged(plant, QlumConnectionStatus::Connected);
        EXPECT_TRUE(settled());
    }
    bool settled()
    {
        return QTest::qWaitFor([this] { return !view->isBusy() && pools->of(plant).pending() == 0; },
                               viewLimit);
    }
    [[nodiscard]] std::string message(const char* label) const
    {
        std::string all;
        for (const QLabel* const one : view->findChildren<QLabel*>())
            if (one->objectName() == QLatin1String(label))
                all += one->text().toStdString();
        return all;
    }
    void click(const char* button)
    {
        auto* const found = view->findChild<QPushButton*>(QLatin1String(button));
        ASSERT_NE(found, nullptr) << button;
        EXPECT_TRUE(found->isEnabled()) << button;
        found->click();
        EXPECT_TRUE(settled());
    }
    void removeTrusted(int row)
    {
        QlumPushListPage* const page = view->listPage();
        page->showPart(QlumTrustPart::Trusted);
        page->table(QlumTrustPart::Trusted)->select(row);
        click("pushRemove");
    }
    [[nodiscard]] bool isCalled(const char* method) const
    {
        return world->journal.contains(QLatin1String(method));
    }

    // What the message bar says at the moment.
    [[nodiscard]] std::string told() const
    {
        std::string all;
        for (const QLabel* const one : view->findChild<QlumMessageBar*>()->findChildren<QLabel*>())
            if (one->isVisibleTo(view.get()))
                all += one->text().toStdString() + '\n';
        return all;
    }
    // Presses the button and chooses that file in the dialog that comes up.
    void clickWithFile(const char* button, const std::string& path)
    {
        DialogDriver driver([&path](QDialog& one) {
            if (auto* files = qobject_cast<QFileDialog*>(&one)) {
                files->selectFile(QString::fromStdString(path));
                static_cast<QDialog*>(files)->done(QDialog::Accepted);
            }
        });
        click(button);
    }
    void importAnswer() { clickWithFile("pushAnswer", answerFile()); }
    // The answer of an authority: the certificate and its issuer, of which either comes first.
    std::string answerFile(bool isIssuerFirst = false)
    {
        const std::string path = folder.file("answer.pem");
        std::string content;
        for (const UaByteString& der : {answer, authority}) {
            EXPECT_TRUE(UaPkiCertificate::fromDER(der).toPEMFile(folder.file("one.pem").c_str()));
            const std::string one = TemporaryFolder::read(folder.file("one.pem"));
            content = isIssuerFirst ? one + content : content + one;
        }
        TemporaryFolder::write(path, content);
        return path;
    }
    void comeBack()
    {
        view->sessionStatusChanged(plant, QlumConnectionStatus::ConnectionError);
        view->sessionStatusChanged(plant, QlumConnectionStatus::NewSessionCreated);
        EXPECT_TRUE(settled());
    }

    const UaByteString own = pushCertificate("This client");
    const UaByteString authority = pushCertificate("Plant CA", {}, true);
    const UaByteString answer = pushCertificate("Plant", "Plant CA");
    UaByteString presented = pushCertificate("Plant");
    const TemporaryFolder folder;
    PushApplication application;
    std::shared_ptr<PushWorld> world = std::make_shared<PushWorld>();
    std::shared_ptr<QlumServerPools> pools = std::make_shared<QlumServerPools>();
    std::vector<QlumPushPlan> plans;
    bool isAgreed = true;
    std::unique_ptr<QlumPushView> view;
};

TEST_F(PushViewTest, ShowsTheListAndTrustsARejectedCertificateByOneClick)
{
    EXPECT_EQ(view->listPage()->table(QlumTrustPart::Trusted)->count(), 2);
    ASSERT_EQ(view->rejected()->count(), 1);
    view->rejected()->select(0);
    view->trustRejected();
    ASSERT_TRUE(settled());
    EXPECT_TRUE(plans.empty());
    EXPECT_TRUE(world->list.contains(QlumTrustPart::Trusted, world->rejected[0]));
    EXPECT_EQ(view->listPage()->table(QlumTrustPart::Trusted)->count(), 3) << "read again";
    EXPECT_TRUE(view->record()->text().contains("AddCertificate: Turned away  -> Good"))
        << view->record()->text().toStdString();
}

TEST_F(PushViewTest, ALockOutNeedsItsSecondYesAndANoSendsNothing)
{
    view->listPage()->setAtOnce(true);
    isAgreed = false;
    removeTrusted(0);
    ASSERT_EQ(plans.size(), 1U);
    EXPECT_TRUE(plans[0].danger.contains("lock yourself out"));
    EXPECT_FALSE(isCalled("RemoveCertificate"));
    isAgreed = true;
    removeTrusted(1);
    ASSERT_EQ(plans.size(), 2U);
    EXPECT_TRUE(plans[1].danger.isEmpty()) << "somebody else's";
    EXPECT_TRUE(isCalled("RemoveCertificate"));
    EXPECT_EQ(world->list[QlumTrustPart::Trusted].size(), 1U);
}

TEST_F(PushViewTest, WritesTheListUnlessSomebodyElseHasChangedIt)
{
    removeTrusted(1);
    EXPECT_FALSE(isCalled("RemoveCertificate")) << "gathered";
    const UaNodeId lastUpdate = PushWorld::below(world->trustList, "LastUpdateTime");
    world->table.setValue(lastUpdate, UaVariant(UaDateTime::fromTime_t(1'700'000'111)));
    click("pushWrite");
    EXPECT_FALSE(isCalled("Open"));
    EXPECT_TRUE(view->listPage()->isEdited());

    const UaByteString foreign = pushCertificate("By somebody else");
    world->list[QlumTrustPart::Trusted].push_back(foreign);
    view->readList();
    ASSERT_TRUE(settled());
    click("pushWrite");
    ASSERT_TRUE(isCalled("CloseAndUpdate")) << "what was changed is changed in what is there now";
    QlumTrustList written;
    ASSERT_TRUE(qlumDecodeTrustList(world->written, written).isGood());
    EXPECT_EQ(written[QlumTrustPart::Trusted], (std::vector{own, foreign}));
    EXPECT_FALSE(view->listPage()->isEdited());
    EXPECT_EQ(message("pushPending"), "Not applied yet: trust list of DefaultApplicationGroup");
    view->sessionStatusChanged(plant, QlumConnectionStatus::ConnectionError);
    view->sessionStatusChanged(plant, QlumConnectionStatus::NewSessionCreated);
    ASSERT_TRUE(settled());
    EXPECT_EQ(message("pushPending"), "Nothing waits to be applied.") << "gone with the session";
}

TEST_F(PushViewTest, WhatWasSentAtOnceDoesNotHideWhatSomebodyElseHasChanged)
{
    removeTrusted(1);
    world->table.setValue(PushWorld::below(world->trustList, "LastUpdateTime"),
                          UaVariant(UaDateTime::fromTime_t(1'700'000'111)));
    view->listPage()->setAtOnce(true);
    removeTrusted(0);
    EXPECT_TRUE(isCalled("RemoveCertificate"));
    EXPECT_NE(told().find("Somebody else has changed the trust list"), std::string::npos) << told();
    click("pushWrite");
    EXPECT_FALSE(isCalled("Open")) << "the list that is shown is still the old one";
}

TEST_F(PushViewTest, AFileThatTheServerHasLostIsToldInWords)
{
    world->failures["Read"] = world->failures["Close"] = OpcUa_BadInvalidArgument;
    view->readList();
    ASSERT_TRUE(settled());
    EXPECT_NE(told().find("does not know the opened file any more"), std::string::npos) << told();
    EXPECT_EQ(view->listPage()->table(QlumTrustPart::Trusted)->count(), 2) << "what was read before stays";
}

TEST_F(PushViewTest, SomebodyElseSignsARequestAndHisAnswerIsSent)
{
    clickWithFile("pushRequest", folder.file("server.csr"));
    EXPECT_EQ(TemporaryFolder::read(folder.file("server.csr")), "\x30\x03\x02\x01\x01");
    for (const bool isIssuerFirst : {false, true}) {
        clickWithFile("pushAnswer", answerFile(isIssuerFirst));
        EXPECT_EQ(world->update, answer) << isIssuerFirst;
        EXPECT_EQ(world->issuers, std::vector{authority});
    }
    EXPECT_EQ(plans.size(), 3U);
    EXPECT_EQ(message("pushPending"), "Not applied yet: certificate Plant");

    click("pushCancel");
    EXPECT_TRUE(isCalled("CancelChanges"));
    EXPECT_EQ(message("pushPending"), "Nothing waits to be applied.");
    EXPECT_FALSE(view->findChild<QPushButton*>("pushApply")->isEnabled());
    EXPECT_TRUE(plans[1].danger.isEmpty()) << plans[1].danger.toStdString();
    ASSERT_TRUE(UaPkiCertificate::fromDER(pushCertificate("Another key"))
                    .toPEMFile(folder.file("another.pem").c_str()));
    isAgreed = false;
    clickWithFile("pushAnswer", folder.file("another.pem"));
    EXPECT_TRUE(plans.back().danger.contains("nor to the key that the server uses now"));
    isAgreed = true;
    TemporaryFolder::write(folder.file("nothing.pem"), "no certificate");
    clickWithFile("pushAnswer", folder.file("nothing.pem"));
    EXPECT_NE(told().find("The file holds no certificate."), std::string::npos) << told();
    EXPECT_EQ(world->journal.count("UpdateCertificate"), 2);
}

TEST_F(PushViewTest, AllIsWellOnlyWhenTheServerComesBackWithWhatWasSent)
{
    importAnswer();
    world->failures["ApplyChanges"] = OpcUa_BadSecureChannelClosed; // how servers apply
    click("pushApply");
    EXPECT_EQ(message("pushPending"), "Nothing waits to be applied.");
    presented = answer;
    comeBack();
    EXPECT_NE(told().find("All is well: Plant is back with its new certificate."), std::string::npos)
        << told();

    presented = pushCertificate("Plant");
    importAnswer();
    click("pushApply");
    comeBack();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !told().empty(); }, viewLimit));
    EXPECT_NE(told().find("Plant still has its old certificate."), std::string::npos) << told();

    importAnswer();
    click("pushApply");
    view->sessionStatusChanged(plant, QlumConnectionStatus::ConnectionError);
    ASSERT_TRUE(QTest::qWaitFor(
        [this] {
            return told().find("has not come back since the changes were applied") != std::string::npos;
        },
        viewLimit))
        << told();

    presented = answer;
    comeBack();
    EXPECT_NE(told().find("All is well"), std::string::npos) << "late, but well: " << told();
    presented = pushCertificate("Plant");
    importAnswer();
    world->failures["ApplyChanges"] = OpcUa_BadTimeout;
    click("pushApply");
    EXPECT_NE(told().find("It is not known whether the changes were applied."), std::string::npos) << told();
    EXPECT_EQ(message("pushPending"), "Not applied yet: certificate Plant");
    presented = answer;
    view->sltRefresh();
    ASSERT_TRUE(settled());
    EXPECT_NE(told().find("All is well"), std::string::npos) << "it was, all the same: " << told();
}

TEST_F(PushViewTest, ResetsTheServerAndForgetsWhatWaited)
{
    importAnswer();
    isAgreed = false;
    click("pushReset");
    EXPECT_FALSE(plans.back().danger.isEmpty());
    EXPECT_FALSE(isCalled("ResetToServerDefaults"));
    isAgreed = true;
    world->failures["ResetToServerDefaults"] = OpcUa_BadConnectionClosed;
    click("pushReset");
    EXPECT_NE(told().find("Plant was reset to its defaults."), std::string::npos) << told();
    EXPECT_EQ(message("pushPending"), "Nothing waits to be applied.");
    EXPECT_FALSE(view->record()->text().contains("BadConnectionClosed"));
    world->failures["ResetToServerDefaults"] = OpcUa_BadUserAccessDenied;
    click("pushReset");
    EXPECT_NE(told().find("connect as an administrator"), std::string::npos) << told();
}

TEST_F(PushViewTest, ARefusedCertificateIsToldInWordsAndDoesNotWait)
{
    const std::pair<OpcUa_StatusCode, const char*> refusals[] = {
        {OpcUa_BadInvalidArgument, "does not know the certificate group or type"},
        {OpcUa_BadCertificateInvalid, "is not valid"},
        {OpcUa_BadNotSupported, "does not take private keys of this format"},
        {OpcUa_BadSecurityChecksFailed, "does not belong to its key"},
        {OpcUa_BadCertificateUriInvalid, "another application URI"},
        {OpcUa_BadUserAccessDenied, "connect as an administrator"},
        {OpcUa_BadSecurityModeInsufficient, "SignAndEncrypt only"},
        {OpcUa_BadTransactionPending, "another session has changes"}};
    for (const auto& [status, words] : refusals) {
        world->failures["UpdateCertificate"] = status;
        importAnswer();
        EXPECT_NE(told().find(words), std::string::npos) << told();
        EXPECT_EQ(message("pushPending"), "Nothing waits to be applied.");
    }
    world->failures.clear();
    world->role = QlumServerRole::Operate;
    importAnswer();
    EXPECT_NE(told().find("Not sent"), std::string::npos) << told();
}

TEST_F(PushViewTest, TheRecordNamesWhoSatHereAndAsWhomTheServerSawHim)
{
    QlumToolServices tools;
    tools.takeSessionUser(view.get(), [](unsigned int server) {
        return server == plant ? QStringLiteral("admin") : QString();
    });
    view->readRejected();
    ASSERT_TRUE(settled());
    const std::string last = view->record()->text().toStdString();
    EXPECT_NE(last.find(" as admin  GetRejectedList  -> Good"), std::string::npos) << last;
}

TEST_F(PushViewTest, AListWhoseServerTellsNoTimeIsComparedItself)
{
    world->table.setValue(PushWorld::below(world->trustList, "LastUpdateTime"), UaVariant());
    view->readList();
    ASSERT_TRUE(settled());
    removeTrusted(1);
    world->list[QlumTrustPart::Trusted].push_back(pushCertificate("By somebody else"));
    click("pushWrite");
    EXPECT_FALSE(isCalled("Open")) << told();
    EXPECT_NE(told().find("somebody else has changed"), std::string::npos) << told();
    world->list[QlumTrustPart::Trusted].pop_back();
    click("pushWrite");
    EXPECT_TRUE(isCalled("Open"));
}

TEST_F(PushViewTest, SaysWhyWhenTheServerRefusesOrHasNoConfiguration)
{
    world->failures["OpenWithMasks"] = OpcUa_BadUserAccessDenied;
    view->readList();
    ASSERT_TRUE(settled());
    EXPECT_TRUE(view->record()->text().contains("connect as an administrator"));

    world = std::make_shared<PushWorld>();
    const auto bare = std::make_shared<TableServices>();
    QlumPushView other(
        application, pools, [bare](unsigned int) { return bare; },
        QlumPushWorld{[] { return UaPkiCertificate(); }, [] { return QString(); },
                      [](QWidget*, const QlumPushPlan&) { return false; }});
    other.serverSelectionChanged(plant);
    EXPECT_TRUE(other.findChild<QLabel*>("pushNote")->text().startsWith("There is no connection"));
    other.sessionStatusChanged(plant, QlumConnectionStatus::Connected);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !other.isBusy(); }, viewLimit));
    EXPECT_TRUE(other.findChild<QLabel*>("pushNote")->text().contains("no object ServerConfiguration"));
}
} // namespace
