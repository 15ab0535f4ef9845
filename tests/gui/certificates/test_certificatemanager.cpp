#include <app/api/qlumjob.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlumrunningwork.h>
#include <certificates/qlumcertificatemanager.h>
#include <certificates/qlumcertificatemanagerdialog.h>
#include <certificates/qlumcertificatemodel.h>
#include <certificates/qlumcertificatestoreconfiguration.h>
#include <certificates/qlumcrlmodel.h>
#include <certificates/qlumnewcertificatedlg.h>
#include <certificates/qlumowncertificate.h>
#include <certificates/qlumstorepages.h>
#include <certificates/qlumthumbprint.h>
#include <tests/gui/certificates/storefixture.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkicertificatestore.h>
#include <uabase/uapkicpp/uapkirevocationlist.h>
#include <uabase/uapkicpp/uapkirsakeypair.h>
#include <uabase/values/uastring.h>

#include <QAbstractItemModel>
#include <QAction>
#include <QApplication>
#include <QByteArray>
#include <QClipboard>
#include <QComboBox>
#include <QDesktopServices>
#include <QDialog>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QObject>
#include <QPoint>
#include <QPointF>
#include <QPushButton>
#include <QSignalSpy>
#include <QString>
#include <QStringList>
#include <QTabWidget>
#include <QTableView>
#include <QTest>
#include <QUrl>
#include <QWidget>

#include <future>
#include <memory>

namespace {
constexpr int limit = 20000; // ms

// Takes the place of the desktop.
class Desktop : public QObject
{
    Q_OBJECT
public:
    Desktop() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "open"); }
    ~Desktop() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }
    QStringList opened;
public slots:
    void open(const QUrl& url) { opened << url.toLocalFile(); }
};

class CertificateManager : public StoreTest
{
protected:
    void SetUp() override
    {
        StoreTest::SetUp();
        store = QlumCertificateStoreConfiguration::ofApplication();
    }
    void open()
    {
        dialog = std::make_unique<QlumCertificateManagerDialog>(QStringLiteral("Tavelin"),
                                                                QStringLiteral("Korvanda"), store, QIcon());
        dialog->show();
        manager = dialog->manager();
    }
    static void put(const QString& folder, const QString& name)
    {
        ASSERT_TRUE(certificate(name).toDERFile(uaPath(folder + name + QStringLiteral(".der"))));
    }
    // "status name" of the rows, as the view shows them.
    [[nodiscard]] QString rows(int page = 0) const
    {
        const QAbstractItemModel* model = manager->certificatePage(page)->view()->model();
        QStringList result;
        for (int row = 0; row < model->rowCount(); ++row)
            result << model->index(row, 0).data().toString() + QLatin1Char(' ') +
                          model->index(row, 1).data().toString();
        return result.join(QLatin1Char('|'));
    }
    void select(const QString& name, int page = 0) const
    {
        QTableView* view = manager->certificatePage(page)->view();
        for (int row = 0; row < view->model()->rowCount(); ++row)
            if (view->model()->index(row, QlumCertificateModel::Name).data() == name)
                view->setCurrentIndex(view->model()->index(row, 0));
    }
    [[nodiscard]] QAction* action(const char* name) const
    {
        return manager->findChild<QAction*>(QLatin1String(name));
    }
    [[nodiscard]] QString enabled() const
    {
        QStringList names;
        for (const char* name : {"trust", "reject", "open", "delete", "copyThumbprint"})
            if (action(name)->isEnabled())
                names << QLatin1String(name);
        return names.join(QLatin1Char(' '));
    }

    QlumCertificateStoreConfiguration store;
    std::unique_ptr<QlumCertificateManagerDialog> dialog;
    QlumCertificateManager* manager = nullptr;
};

TEST_F(CertificateManager, ShowsEveryStoreWithWhatBelongsThere)
{
    ASSERT_EQ(values(QStringLiteral("Own")).create(), QString());
    ASSERT_TRUE(
        QFile::copy(store.ownCertificateFile, store.trustedCertificates + QStringLiteral("copy.der")));
    put(store.trustedCertificates, QStringLiteral("good"));
    put(store.rejected, QStringLiteral("bad"));
    put(store.issuerCertificates, QStringLiteral("ca"));
    ASSERT_TRUE(
        certificate(QStringLiteral("tls")).toDERFile(uaPath(store.tlsIssuerCertificates + "1a2b3c4d.0")));
    ASSERT_TRUE(
        certificate(QStringLiteral("tls")).toDERFile(uaPath(store.trustedCertificates + "1a2b3c4d.0")));
    open();
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Manage Certificates"));
    EXPECT_EQ(rows(), QStringLiteral("Own Certificate Own|Trusted good|Untrusted bad"));
    EXPECT_EQ(rows(1), QStringLiteral("Known Issuer ca"));
    EXPECT_EQ(rows(2), QStringLiteral("Trusted tls"));
    EXPECT_EQ(
        manager->certificatePage(0)->model()->index(0, QlumCertificateModel::FileName).data().toString(),
        QStringLiteral("tavelin.der"));
    EXPECT_EQ(enabled(), QString());
    select(QStringLiteral("bad"));
    EXPECT_EQ(enabled(), QStringLiteral("trust open delete copyThumbprint"));
    select(QStringLiteral("good"));
    EXPECT_EQ(enabled(), QStringLiteral("reject open delete copyThumbprint"));
    select(QStringLiteral("Own"));
    EXPECT_EQ(enabled(), QStringLiteral("open copyThumbprint"));
    action("copyThumbprint")->trigger();
    EXPECT_EQ(QGuiApplication::clipboard()->text(),
              qlumThumbprint(UaPkiCertificate::fromDERFile(uaPath(store.ownCertificateFile))));

    auto* tabs = manager->findChild<QTabWidget*>(QStringLiteral("certificateStores"));
    EXPECT_EQ(tabs->count(), 3);
    store.tlsIssuerCertificates.clear();
    manager->setPaths(store);
    EXPECT_EQ(tabs->count(), 2);
}

TEST_F(CertificateManager, TrustRejectAndDelete)
{
    put(store.rejected, QStringLiteral("x"));
    put(store.rejected, QStringLiteral("y"));
    open();
    select(QStringLiteral("x"));
    action("trust")->trigger();
    EXPECT_EQ(rows(), QStringLiteral("Trusted x|Untrusted y"));
    EXPECT_EQ(enabled(), QStringLiteral("reject open delete copyThumbprint")) << "it stays selected";
    action("reject")->trigger();
    EXPECT_EQ(rows(), QStringLiteral("Untrusted x|Untrusted y"));
    {
        write(store.trustedCertificates + QStringLiteral("x.der"), "another");
        const DialogDriver driver(DialogDriver::press(QMessageBox::Ok));
        action("trust")->trigger();
        EXPECT_EQ(driver.seen(),
                  QStringList(QStringLiteral("CertificateManager: Could not move certificate x.der to "
                                             "the trusted directory")));
        EXPECT_EQ(rows(), QStringLiteral("Unreadable |Untrusted x|Untrusted y"));
        ASSERT_TRUE(QFile::remove(store.trustedCertificates + QStringLiteral("x.der")));
        action("refresh")->trigger();
        select(QStringLiteral("x"));
    }
    {
        const DialogDriver driver(DialogDriver::press(QMessageBox::No));
        action("delete")->trigger();
        EXPECT_EQ(driver.seen(),
                  QStringList(QStringLiteral("Delete Certificate: Do you really want to delete the "
                                             "selected certificate?")));
        EXPECT_EQ(rows(), QStringLiteral("Untrusted x|Untrusted y"));
    }
    const DialogDriver driver([](QDialog& box) {
        auto* message = qobject_cast<QMessageBox*>(&box);
        message->button(message->button(QMessageBox::Yes) ? QMessageBox::Yes : QMessageBox::Ok)->click();
    });
    action("delete")->trigger();
    EXPECT_EQ(rows(), QStringLiteral("Untrusted y"));
    select(QStringLiteral("y"));
    ASSERT_TRUE(QFile::remove(store.rejected + QStringLiteral("y.der")));
    action("delete")->trigger();
    EXPECT_EQ(driver.seen().last(), QStringLiteral("CertificateManager: Could not delete certificate y.der"));
    EXPECT_EQ(rows(), QString());
}

TEST_F(CertificateManager, WhatIsTrustedWithoutBeingListedOrListedWithoutBeingTrusted)
{
    const auto pem = [this](const QString& name) {
        const QString path = home.filePath(QStringLiteral("one.pem"));
        EXPECT_TRUE(certificate(name).toPEMFile(uaPath(path)));
        return read(path);
    };
    const auto der = [](const QString& name) {
        const UaByteArray bytes = certificate(name).toDER();
        return QByteArray(reinterpret_cast<const char*>(bytes.rawData()), static_cast<int>(bytes.size()));
    };
    write(store.trustedCertificates + QStringLiteral("1.crt"), pem(QStringLiteral("text")));
    write(store.trustedCertificates + QStringLiteral("2.der"),
          der(QStringLiteral("a")) + der(QStringLiteral("b")));
    write(store.trustedCertificates + QStringLiteral("3.der"), der(QStringLiteral("longer")) + '\n');
    write(store.rejected + QStringLiteral("4.cer"), pem(QStringLiteral("c")) + pem(QStringLiteral("d")));
    write(store.tlsIssuerCertificates + QStringLiteral("plc.pem"), der(QStringLiteral("web")));
    open();
    EXPECT_EQ(rows(), QStringLiteral("Trusted text|Trusted a|Trusted b|Unreadable |Untrusted c|Untrusted d"));
    EXPECT_EQ(rows(2), QStringLiteral("Trusted web"));
    UaPkiCertificateStore chainDialog;
    EXPECT_EQ(chainDialog.addFolder(uaPath(store.trustedCertificates)).size(), 3u);
    select(QString());
    EXPECT_EQ(enabled(), QStringLiteral("reject open delete")) << "there is nothing to trust in it";

    select(QStringLiteral("d"));
    {
        const DialogDriver driver(DialogDriver::press(QMessageBox::No));
        action("trust")->trigger();
        ASSERT_EQ(driver.seen().size(), 1);
        EXPECT_TRUE(driver.seen().first().contains(QStringLiteral("2 certificates")));
    }
    EXPECT_TRUE(rows().endsWith(QStringLiteral("Untrusted c|Untrusted d"))) << "one click trusts one";
}

TEST_F(CertificateManager, RevocationLists)
{
    UaPkiRevocationList list(86400 * 60, values().subject, 7);
    ASSERT_TRUE(list.sign(key().privateKey()));
    ASSERT_TRUE(list.toDERFile(uaPath(store.trustedRevocationLists + QStringLiteral("a.crl"))));
    ASSERT_TRUE(list.toPEMFile(uaPath(store.trustedRevocationLists + QStringLiteral("b.crl"))));
    write(store.trustedRevocationLists + QStringLiteral("c.crl"), "none");
    open();
    const QlumCRLModel* model = manager->crlPage(0)->model();
    const auto waitForRows = [model](int count) { // what takes long to read comes later
        return QTest::qWaitFor([=] { return model->rowCount() == count; }, limit);
    };
    ASSERT_TRUE(waitForRows(2));
    manager->findChild<QTabWidget*>(QStringLiteral("kinds"))->setCurrentIndex(1);
    EXPECT_FALSE(action("deleteCrl")->isEnabled());
    manager->crlPage(0)->view()->setCurrentIndex(manager->crlPage(0)->view()->model()->index(1, 0));
    Desktop desktop;
    action("openCrl")->trigger();
    EXPECT_EQ(desktop.opened, QStringList(store.trustedRevocationLists + QStringLiteral("b.crl")));
    const DialogDriver driver(DialogDriver::press(QMessageBox::Yes));
    action("deleteCrl")->trigger();
    EXPECT_EQ(driver.seen(),
              QStringList(QStringLiteral("Delete CRL: Do you really want to delete the selected CRL?")));
    ASSERT_TRUE(waitForRows(1));
    EXPECT_EQ(model->index(0, QlumCRLModel::FileName).data().toString(), QStringLiteral("a.crl"));
}

TEST_F(CertificateManager, FiltersSortsAndOpens)
{
    for (const char* name : {"beta", "alpha", "gamma"})
        put(store.trustedCertificates, QLatin1String(name));
    open();
    QTableView* view = manager->certificatePage(0)->view();
    view->sortByColumn(QlumCertificateModel::Name, Qt::DescendingOrder);
    EXPECT_EQ(rows(), QStringLiteral("Trusted gamma|Trusted beta|Trusted alpha"));
    manager->findChild<QLineEdit*>(QStringLiteral("trustedCertificatesFilter"))
        ->setText(QStringLiteral("MMA"));
    EXPECT_EQ(rows(), QStringLiteral("Trusted gamma"));
    Desktop desktop;
    view->setCurrentIndex(view->model()->index(0, 0));
    emit view->doubleClicked(view->currentIndex());
    manager->findChild<QPushButton*>(QStringLiteral("trustedCertificatesLocation"))->click();
    action("ownLocation")->trigger();
    EXPECT_EQ(desktop.opened,
              (QStringList{store.trustedCertificates + QStringLiteral("gamma.der"), store.trustedCertificates,
                           QFileInfo(store.ownCertificateFile).path()}));
}

TEST_F(CertificateManager, DroppedFilesAreAddedAfterAQuestion)
{
    const QString file = home.filePath(QStringLiteral("new.der"));
    const QString wrong = home.filePath(QStringLiteral("wrong <b>.der"));
    ASSERT_TRUE(certificate(QStringLiteral("new")).toDERFile(uaPath(file)));
    write(wrong, "x");
    open();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(file), QUrl::fromLocalFile(wrong)});
    const auto drop = [&] { // onto the table, as users do
        QWidget* target = manager->certificatePage(0)->view()->viewport();
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                              Qt::NoModifier);
        QApplication::sendEvent(target, &enter);
        EXPECT_TRUE(enter.isAccepted());
        QDropEvent event(QPointF(5, 5), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                         Qt::NoModifier);
        QApplication::sendEvent(target, &event);
        EXPECT_EQ(event.dropAction(), Qt::CopyAction);
    };
    {
        const DialogDriver driver(DialogDriver::press(QMessageBox::No));
        drop();
        ASSERT_TRUE(QTest::qWaitFor([&] { return driver.seen().size() == 1; }, limit));
        EXPECT_EQ(rows(), QString());
    }
    const DialogDriver driver([](QDialog& box) {
        auto* message = qobject_cast<QMessageBox*>(&box);
        message->button(message->button(QMessageBox::Yes) ? QMessageBox::Yes : QMessageBox::Ok)->click();
    });
    drop();
    ASSERT_TRUE(QTest::qWaitFor([&] { return driver.seen().size() == 2; }, limit));
    EXPECT_EQ(
        driver.seen().last(),
        QStringLiteral("CertificateManager: wrong <b>.der is neither a certificate nor a revocation list."));
    EXPECT_EQ(rows(), QStringLiteral("Trusted new"));
    EXPECT_TRUE(QFile::exists(file));
}

TEST_F(CertificateManager, OneWindowStaysOpenBesideTheOthers)
{
    QWidget parent;
    qlumShowCertificateManager(&parent);
    const auto windows = [&parent] { return parent.findChildren<QlumCertificateManagerDialog*>(); };
    ASSERT_EQ(windows().size(), 1);
    EXPECT_FALSE(windows()[0]->isModal());
    manager = windows()[0]->manager();
    put(store.trustedCertificates, QStringLiteral("later"));
    qlumManageCertificates(&parent); // would not return from a dialog
    qlumShowCertificateManager(&parent);
    ASSERT_EQ(windows().size(), 1);
    EXPECT_EQ(rows(), QStringLiteral("Trusted later"));
    windows()[0]->close();
    ASSERT_TRUE(QTest::qWaitFor([&] { return windows().isEmpty(); }, limit));
    qlumShowCertificateManager(&parent);
    EXPECT_EQ(windows().size(), 1) << "another one, which goes with its parent";
}

TEST_F(CertificateManager, NewApplicationCertificateTakesTheOldOnesPlace)
{
    QlumOwnCertificate old = values(QStringLiteral("Old Name"));
    EXPECT_TRUE(old.info.DNSNames.append(*UaString("old.example").get()));
    ASSERT_EQ(old.create(), QString());
    open();
    QSignalSpy created(manager, &QlumCertificateManager::sigNewCertificateCreated);
    {
        const DialogDriver driver; // cancels
        action("createOwn")->trigger();
        EXPECT_EQ(driver.seen().size(), 1);
        EXPECT_EQ(created.count(), 0);
    }
    const DialogDriver driver([](QDialog& box) {
        if (!qobject_cast<QlumNewCertificateDlg*>(&box))
            return box.accept();
        EXPECT_EQ(box.findChild<QLineEdit*>(QStringLiteral("commonName"))->text(),
                  QStringLiteral("Old Name"));
        box.findChild<QLineEdit*>(QStringLiteral("locality"))->setText(QStringLiteral("Here"));
        box.accept();
    });
    action("createOwn")->trigger();
    EXPECT_EQ(created.count(), 1);
    const auto made = UaPkiCertificate::fromDERFile(uaPath(store.ownCertificateFile));
    EXPECT_EQ(made.subject().locality, UaString("Here"));
    ASSERT_EQ(made.info().DNSNames.length(), 2u) << "this host and the old name";
    EXPECT_EQ(UaString(made.info().DNSNames[1]), UaString("old.example"));
    const auto pair = UaPkiRsaKeyPair::fromPEMFile(uaPath(store.ownPrivateKeyFile));
    EXPECT_TRUE(UaPkiRsaKeyPair::checkKeyPair(made.publicKey(), pair.privateKey()));
    EXPECT_EQ(rows(), QStringLiteral("Own Certificate Old Name"));

    // the new key does not fit on the disk
    const QByteArray before = read(store.ownCertificateFile) + read(store.ownPrivateKeyFile);
    const FullDisk full(200);
    action("createOwn")->trigger();
    EXPECT_EQ(created.count(), 1);
    EXPECT_TRUE(driver.seen().last().startsWith(
        QStringLiteral("Could Not Create Certificate: The application certificate could not be created:\n")));
    EXPECT_EQ(read(store.ownCertificateFile) + read(store.ownPrivateKeyFile), before);
}

TEST_F(CertificateManager, TheApplicationCertificateIsCopied)
{
    open();
    QString target = home.filePath(QStringLiteral("copy.der"));
    const DialogDriver driver([&](QDialog& box) {
        auto* files = qobject_cast<QFileDialog*>(&box);
        if (!files)
            return box.accept();
        EXPECT_EQ(files->nameFilters(), QStringList(QStringLiteral("Certificates (*.der)")));
        EXPECT_EQ(files->directory().absolutePath(), home.path());
        files->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(target);
        box.accept();
    });
    action("copyOwn")->trigger();
    EXPECT_EQ(driver.seen(),
              QStringList(QStringLiteral("Certificate Not Found: The application certificate '%1' does "
                                         "not exist.")
                              .arg(store.ownCertificateFile)));
    ASSERT_EQ(values().create(), QString());
    action("copyOwn")->trigger();
    EXPECT_EQ(read(target), read(store.ownCertificateFile));
    ASSERT_TRUE(QFile::remove(target));
    const FullDisk full(10);
    action("copyOwn")->trigger();
    EXPECT_EQ(
        driver.seen().last(),
        QStringLiteral("Could Not Copy Certificate: The application certificate could not be copied to '%1'.")
            .arg(target));
    EXPECT_FALSE(QFile::exists(target));
}

TEST(StorePage, SaysThatTheUserHasCancelledItsReading)
{
    QlumCrlPage page(QlumCRLModel::Trusted, "Lists", QString());
    std::promise<void> end;
    QlumJobPool pool;
    pool.add({}, [free = end.get_future().share()](QlumJob&) { free.wait(); }); // keeps the thread
    page.reload(pool);
    QlumRunningWork& work = QlumRunningWork::instance();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !work.rows().isEmpty(); }));
    EXPECT_EQ(work.rows().first().text, "Reading Lists");
    work.cancel(work.rows().first().number);
    end.set_value();
    const auto* count = page.findChild<QLabel*>(page.objectName() + "Count");
    EXPECT_TRUE(QTest::qWaitFor([&] { return count->text() == "0 entries; reading was cancelled"; }));
    page.reload(pool);
    EXPECT_FALSE(count->text().contains("cancelled"));
    EXPECT_TRUE(pool.waitForDone(limit));
}

TEST_F(CertificateManager, FiveThousandFilesDoNotHoldUpTheWindow)
{
    constexpr int certificateCount = 5000;
    const QByteArray pattern = [this] {
        const QString file = home.filePath(QStringLiteral("pattern.der"));
        EXPECT_TRUE(certificate(QStringLiteral("many")).toDERFile(uaPath(file)));
        return read(file);
    }();
    for (int i = 0; i < certificateCount; ++i)
        write(store.trustedCertificates + QStringLiteral("%1.der").arg(i), pattern);
    QElapsedTimer timer;
    timer.start();
    open();
    const qint64 opened = timer.elapsed();
    EXPECT_LT(opened, 1000);
    const QlumCertificateModel* model = manager->certificatePage(0)->model();
    ASSERT_TRUE(QTest::qWaitFor([&] { return model->rowCount() == certificateCount; }, limit))
        << model->rowCount();
    RecordProperty("opened_ms", static_cast<int>(opened));
    RecordProperty("all_ms", static_cast<int>(timer.elapsed()));
    manager->sltReload();
    dialog.reset(); // while it reads
}
} // namespace

#include "test_certificatemanager.moc"
