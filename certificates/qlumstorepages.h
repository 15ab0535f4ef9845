// The two kinds of pages of the certificate manager.
#pragma once
#include <app/api/qlumjobpool.h>
#include <certificates/qlumcertificateentry.h>
#include <certificates/qlumcertificatemodel.h>
#include <certificates/qlumcertificatestoreconfiguration.h>
#include <certificates/qlumcrlentry.h>
#include <certificates/qlumcrlmodel.h>
#include <certificates/qlumstorefiles.h>
#include <certificates/qlumstorepage.h>
#include <certificates/qlumstorereader.h>
#include <uabase/uapkicpp/uapkicertificate.h>

#include <QIcon>
#include <QModelIndex>
#include <QString>
#include <QWidget>

#include <memory>

/// Certificates; the trusted store shows the rejected ones and the application's own as well.
class QlumCertificatePage : public QlumStorePage
{
    Q_OBJECT
public:
    QlumCertificatePage(QlumCertificateModel::CertStoreType type, const QString& title,
                        const QlumCertificateStoreConfiguration& store, const QIcon& icon,
                        QWidget* parent = nullptr);

    [[nodiscard]] QlumCertificateModel* model() const { return m_model; }
    /// Null when no row is current.
    [[nodiscard]] const QlumCertificateEntry* currentEntry() const;
    /// How many rows show something of that file.
    [[nodiscard]] int countOfFile(const QString& path) const;

protected:
    void startReading(QlumJobPool& pool) override;
    void takeEntries() override;
    [[nodiscard]] QString fileOf(const QModelIndex& index) const override;

private:
    using Source = QlumStoreSource<QlumCertificateEntry>;

    void reloadCertificateModel(QlumCertificateModel* model, const QString& folder, QlumJobPool& pool);
    [[nodiscard]] Source folderSource(const QString& folder, QlumCertificateEntry::State state,
                                      const UaPkiCertificate& own) const;

    QlumCertificateStoreConfiguration m_store;
    QlumCertificateModel* m_model;
    std::shared_ptr<QlumStoreInbox<QlumCertificateEntry>> m_inbox;
};

/// Revocation lists.
class QlumCrlPage : public QlumStorePage
{
    Q_OBJECT
public:
    QlumCrlPage(QlumCRLModel::CRLStoreType type, const QString& title, const QString& folder,
                QWidget* parent = nullptr);

    [[nodiscard]] QlumCRLModel* model() const { return m_model; }

protected:
    void startReading(QlumJobPool& pool) override;
    void takeEntries() override;
    [[nodiscard]] QString fileOf(const QModelIndex& index) const override;

private:
    void reloadCRLModel(QlumCRLModel* model, const QString& folder, QlumJobPool& pool);

    QlumCRLModel* m_model;
    std::shared_ptr<QlumStoreInbox<QlumCRLEntry>> m_inbox;
};
