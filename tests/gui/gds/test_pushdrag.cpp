// Certificates are dragged from this client's own store onto a server's trust list.
#include <certificates/qlumcertificatemanager.h>
#include <certificates/qlumcertificatemanagerdialog.h>
#include <certificates/qlumcertificatestoreconfiguration.h>
#include <certificates/qlumstorepages.h>
#include <plugins/gds/qlumpushlistpage.h>
#include <plugins/gds/qlumpushlisttable.h>
#include <tests/gui/gds/pushworld.h>
#include <tests/support/temporaryfolder.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/qlumviewstate.h>

#include <QAbstractItemModel>
#include <QApplication>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QIcon>
#include <QMimeData>
#include <QModelIndex>
#include <QPoint>
#include <QPointF>
#include <QString>
#include <QTableView>
#include <QTest>
#include <QWidget>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {
constexpr int dragLimit = 10'000;

// What the mouse takes from a row of a store.
std::unique_ptr<QMimeData> taken(const QTableView& view, const QModelIndex& row)
{
    EXPECT_TRUE(view.dragEnabled());
    EXPECT_TRUE(row.flags() & Qt::ItemIsDragEnabled);
    return std::unique_ptr<QMimeData>(view.model()->mimeData({row}));
}

void drop(const QMimeData& data, QWidget* target)
{
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                          Qt::NoModifier);
    QApplication::sendEvent(target, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent event(QPointF(5, 5), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &event);
    EXPECT_EQ(event.dropAction(), Qt::CopyAction) << "the file stays in the store";
}

TEST(PushDrag, ARowOfTheCertificateManagerBecomesOneOfTheTrustList)
{
    const TemporaryFolder folder;
    QlumCertificateStoreConfiguration store;
    for (QString* const one : {&store.trustedCertificates, &store.trustedRevocationLists,
                               &store.issuerCertificates, &store.issuerRevocationLists, &store.rejected}) {
        *one = QString::fromStdString(folder.file(std::to_string(one - &store.trustedCertificates) + '/'));
        ASSERT_TRUE(QDir().mkpath(*one));
    }
    store.ownCertificateFile = QString::fromStdString(folder.file("own.der"));
    std::string both;
    const std::vector<UaByteString> ders{pushCertificate("First"), pushCertificate("Second")};
    for (const UaByteString& der : ders) {
        ASSERT_TRUE(UaPkiCertificate::fromDER(der).toPEMFile(folder.file("one.pem").c_str()));
        both += TemporaryFolder::read(folder.file("one.pem"));
    }
    TemporaryFolder::write(store.trustedCertificates.toStdString() + "both.crt", both);
    const testcertificates::Der list =
        testcertificates::makeRevocationList("Plant CA", testcertificates::key(2048, "Plant CA"), {});
    TemporaryFolder::write(store.trustedRevocationLists.toStdString() + "plant.crl",
                           std::string(list.begin(), list.end()));
    QlumCertificateManagerDialog manager("Tavelin", "Korvanda", store, QIcon());

    QlumViewState state(QStringLiteral("PushDragTest"), nullptr);
    QlumPushListPage page(state);
    QlumPushServer server;
    server.groups.push_back({});
    server.groups[0].id = UaNodeId("Group", 2);
    server.groups[0].trustList = UaNodeId("List", 2);
    page.setServer(server);
    page.setReady(true);
    page.setRead({}, {});

    const QTableView& certificates = *manager.manager()->certificatePage(0)->view();
    ASSERT_TRUE(QTest::qWaitFor([&] { return certificates.model()->rowCount() == 2; }, dragLimit));
    const auto second = taken(certificates, certificates.model()->index(1, 0));
    EXPECT_EQ(second->urls().value(0).toLocalFile(), store.trustedCertificates + "both.crt");
    drop(*second, page.table(QlumTrustPart::Trusted));
    ASSERT_TRUE(QTest::qWaitFor([&] { return page.isEdited(); }, dragLimit));
    EXPECT_EQ(page.edited()[QlumTrustPart::Trusted], std::vector{ders[1]}) << "that row, not all of its file";

    const QTableView& lists = *manager.manager()->crlPage(0)->view();
    ASSERT_TRUE(QTest::qWaitFor([&] { return lists.model()->rowCount() == 1; }, dragLimit));
    page.showPart(QlumTrustPart::IssuerCrls);
    drop(*taken(lists, lists.model()->index(0, 0)), page.table(QlumTrustPart::IssuerCrls));
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return !page.edited()[QlumTrustPart::IssuerCrls].empty(); }, dragLimit));
    EXPECT_EQ(page.edited()[QlumTrustPart::IssuerCrls], std::vector{pushDer(list)});
}
} // namespace
