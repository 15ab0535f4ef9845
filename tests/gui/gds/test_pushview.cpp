// The view of a server's configuration: what it sends only after a yes, and what it says of what came back.
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumserverpools.h>
#include <plugins/gds/qlumpushcertificatepage.h>
#include <plugins/gds/qlumpushlistpage.h>
#include <plugins/gds/qlumpushlisttable.h>
#include <plugins/gds/qlumpushrecordpage.h>
#include <plugins/gds/qlumpushview.h>
#include <tests/gui/gds/pushworld.h>
#include <tests/support/stubapplication.h>
#include <tests/support/temporaryfolder.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>

#include <QLabel>
#include <QList>
#include <QPushButton>
#include <QString>
#include <QTest>
#include <QWidget>
#include <gtest/gtest.h>

#include <memory>
#include <string>
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
                          }});
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

    const UaByteString own = pushCertificate("This client");
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
    EXPECT_TRUE(view->listPage()->isEdited()) << "the changes stay until the list is read again";

    view->readList();
    ASSERT_TRUE(settled());
    removeTrusted(1);
    click("pushWrite");
    EXPECT_TRUE(isCalled("CloseAndUpdate"));
    EXPECT_FALSE(view->listPage()->isEdited());
    EXPECT_EQ(message("pushPending"), "Not applied yet: trust list of DefaultApplicationGroup");
    view->sessionStatusChanged(plant, QlumConnectionStatus::ConnectionError);
    view->sessionStatusChanged(plant, QlumConnectionStatus::NewSessionCreated);
    ASSERT_TRUE(settled());
    EXPECT_EQ(message("pushPending"), "Nothing waits to be applied.") << "gone with the session";
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
