#include <app/api/qlumtoolservices.h>
#include <certificates/qlumcertificateviewer.h>
#include <tests/gui/validation/validationfixture.h>
#include <tests/support/testcertificates.h>
#include <uabase/values/uabytestring.h>

#include <QApplication>
#include <QLabel>
#include <QListWidget>
#include <QObject>
#include <QTreeView>
#include <QWidget>

#include <memory>
#include <string>

namespace {
class CertificateViewer : public ValidationFixture
{
protected:
    // As a tool has it shown; null when no window opened.
    QlumCertificateViewer* show(const UaByteString& der)
    {
        EXPECT_TRUE(services.showCertificate(der));
        return application.window.findChild<QlumCertificateViewer*>();
    }

    StubApplication application;
    QlumToolServices services;
    QObject owner;
};

TEST_F(CertificateViewer, ShowsEachCertificateOfAChain)
{
    qlumTakeCertificates(services, &owner);
    Der both = testcertificates::make(flawless("Plc"));
    const Der issuer = testcertificates::make(flawless("Issuer"));
    both.insert(both.end(), issuer.begin(), issuer.end());
    QlumCertificateViewer* viewer = show(bytes(both));
    ASSERT_NE(viewer, nullptr);
    auto* list = viewer->findChild<QListWidget*>("certificates");
    const auto* details = viewer->findChild<QTreeView*>("details");
    ASSERT_EQ(list->count(), 2);
    EXPECT_EQ(list->item(0)->text(), "Plc");
    EXPECT_NE(modelText(*details->model()).find("Plc"), std::string::npos);
    list->setCurrentRow(1);
    EXPECT_EQ(modelText(*details->model()).find("Plc"), std::string::npos);
    EXPECT_NE(modelText(*details->model()).find("Issuer"), std::string::npos);
    EXPECT_TRUE(viewer->findChild<QLabel*>("nothing")->isHidden());
    EXPECT_FALSE(viewer->isModal());
}

TEST_F(CertificateViewer, SaysThatBytesAreNoCertificate)
{
    qlumTakeCertificates(services, &owner);
    QlumCertificateViewer* viewer = show(bytes(Der{0x30, 0x03, 0x01}));
    ASSERT_NE(viewer, nullptr);
    EXPECT_FALSE(viewer->findChild<QLabel*>("nothing")->isHidden());
    EXPECT_TRUE(viewer->findChild<QTreeView*>("details")->isHidden());
}
} // namespace
