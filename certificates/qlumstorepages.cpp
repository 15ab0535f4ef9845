#include <certificates/qlumstorepages.h>

#include <app/api/qlumjobpool.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumcertificateentry.h>
#include <certificates/qlumcrlentry.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkirevocationlist.h>

#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QIcon>
#include <QMetaObject>
#include <QModelIndex>
#include <QString>
#include <QStringList>
#include <QTableView>
#include <QWidget>

#include <initializer_list>
#include <memory>
#include <utility>
#include <vector>

namespace {
QString certificatePageName(QlumCertificateModel::CertStoreType type)
{
    return type == QlumCertificateModel::Trusted   ? QStringLiteral("trustedCertificates")
           : type == QlumCertificateModel::Issuers ? QStringLiteral("issuerCertificates")
                                                   : QStringLiteral("tlsIssuerCertificates");
}

QString listPageName(QlumCRLModel::CRLStoreType type)
{
    return type == QlumCRLModel::Trusted   ? QStringLiteral("trustedCrls")
           : type == QlumCRLModel::Issuers ? QStringLiteral("issuerCrls")
                                           : QStringLiteral("tlsIssuerCrls");
}

const QString& folderOf(QlumCertificateModel::CertStoreType type,
                        const QlumCertificateStoreConfiguration& store)
{
    return type == QlumCertificateModel::Trusted   ? store.trustedCertificates
           : type == QlumCertificateModel::Issuers ? store.issuerCertificates
                                                   : store.tlsIssuerCertificates;
}

struct Width
{
    int column;
    int characters;
};

void setWidths(QTableView* view, std::initializer_list<Width> widths)
{
    const int character = view->fontMetrics().averageCharWidth();
    for (const Width& width : widths)
        view->horizontalHeader()->resizeSection(width.column, width.characters * character);
}
} // namespace

// ---- certificates

QlumCertificatePage::QlumCertificatePage(QlumCertificateModel::CertStoreType type, const QString& title,
                                         const QlumCertificateStoreConfiguration& store, const QIcon& icon,
                                         QWidget* parent)
    : QlumStorePage(certificatePageName(type), title, folderOf(type, store), parent), m_store(store),
      m_model(new QlumCertificateModel(type, icon, this))
{
    using M = QlumCertificateModel;
    m_model->setFileOf([this](const QModelIndex& index) { return fileOf(index); });
    setModel(m_model, M::SortRole);
    setWidths(view(), {{M::Status, 26},
                       {M::Name, 30},
                       {M::ValidFrom, 24},
                       {M::ValidTo, 24},
                       {M::OrganizationUnit, 20},
                       {M::AppUri, 50},
                       {M::DomainName, 30},
                       {M::Address, 30},
                       {M::FileName, 50},
                       {M::Signature, 28},
                       {M::Thumbprint, 50}});
}

const QlumCertificateEntry* QlumCertificatePage::currentEntry() const
{
    const QModelIndex index = current();
    return index.isValid() ? &m_model->entry(index) : nullptr;
}

int QlumCertificatePage::countOfFile(const QString& path) const
{
    int count = 0;
    for (int row = 0; row < m_model->rowCount(); ++row)
        if (fileOf(m_model->index(row, 0)) == path)
            ++count;
    return count;
}

QString QlumCertificatePage::fileOf(const QModelIndex& index) const
{
    const QlumCertificateEntry& entry = m_model->entry(index);
    switch (entry.state()) {
    case QlumCertificateEntry::Own:
        return m_store.ownCertificateFile;
    case QlumCertificateEntry::Rejected:
        return QDir(m_store.rejected).filePath(entry.fileName());
    default:
        return QDir(folder()).filePath(entry.fileName());
    }
}

// The own certificate is one row, wherever copies of it lie.
QlumCertificatePage::Source QlumCertificatePage::folderSource(const QString& folder,
                                                              QlumCertificateEntry::State state,
                                                              const UaPkiCertificate& own) const
{
    const auto kind = m_model->type() == QlumCertificateModel::TlsIssuers
                          ? QlumStoreFiles::Kind::HashedCertificates
                          : QlumStoreFiles::Kind::Certificates;
    const auto read = [folder, state, own](const QString& name) {
        const auto found = QlumStoreFiles::loadCertificates(QDir(folder).filePath(name));
        std::vector<QlumCertificateEntry> entries;
        for (int i = 0; i < found.size(); ++i) {
            const bool isOwn = state == QlumCertificateEntry::InStore && !own.isNull() && found[i] == own;
            entries.emplace_back(isOwn ? QlumCertificateEntry::Own : state, name, found[i]);
        }
        if (found.hasErrors()) // what somebody has put there and trusts in vain must be seen
            entries.emplace_back(state, name, UaPkiCertificate());
        return entries;
    };
    return {[folder, kind] { return QlumStoreFiles::names(folder, kind); }, read};
}

void QlumCertificatePage::reloadCertificateModel(QlumCertificateModel* model, const QString& folder,
                                                 QlumJobPool& pool)
{
    model->clear();
    m_inbox = std::make_shared<QlumStoreInbox<QlumCertificateEntry>>();
    std::vector<Source> sources;
    if (model->type() == QlumCertificateModel::Trusted) {
        const UaPkiCertificate own = QlumStoreFiles::loadCertificate(m_store.ownCertificateFile);
        sources.push_back(folderSource(folder, QlumCertificateEntry::InStore, own));
        sources.push_back(folderSource(m_store.rejected, QlumCertificateEntry::Rejected, own));
        const QString file = QFileInfo(m_store.ownCertificateFile).fileName();
        sources.push_back({[file] { return QStringList{file}; },
                           [own](const QString& name) {
                               std::vector<QlumCertificateEntry> entries;
                               if (!own.isNull())
                                   entries.emplace_back(QlumCertificateEntry::Own, name, own);
                               return entries;
                           }});
    } else {
        sources.push_back(folderSource(folder, QlumCertificateEntry::InStore, UaPkiCertificate()));
    }
    const auto notify = [this] {
        QMetaObject::invokeMethod(
            this, [this] { takeRead(); }, Qt::QueuedConnection);
    };
    read(pool, std::make_unique<QlumStoreReader<QlumCertificateEntry>>(std::move(sources), m_inbox, notify));
}

void QlumCertificatePage::startReading(QlumJobPool& pool)
{
    reloadCertificateModel(m_model, folder(), pool);
}

void QlumCertificatePage::takeEntries()
{
    if (m_inbox)
        m_model->addEntries(m_inbox->take());
}

// ---- revocation lists

QlumCrlPage::QlumCrlPage(QlumCRLModel::CRLStoreType type, const QString& title, const QString& folder,
                         QWidget* parent)
    : QlumStorePage(listPageName(type), title, folder, parent), m_model(new QlumCRLModel(type, this))
{
    using M = QlumCRLModel;
    m_model->setFileOf([this](const QModelIndex& index) { return fileOf(index); });
    setModel(m_model, M::SortRole);
    setWidths(view(), {{M::Number, 14},
                       {M::ValidFrom, 24},
                       {M::NextUpdate, 24},
                       {M::Organization, 24},
                       {M::OrganizationUnit, 20},
                       {M::FileName, 50}});
}

QString QlumCrlPage::fileOf(const QModelIndex& index) const
{
    return QDir(folder()).filePath(m_model->entry(index).fileName());
}

void QlumCrlPage::reloadCRLModel(QlumCRLModel* model, const QString& folder, QlumJobPool& pool)
{
    model->clear();
    m_inbox = std::make_shared<QlumStoreInbox<QlumCRLEntry>>();
    const auto names = [folder] {
        return QlumStoreFiles::names(folder, QlumStoreFiles::Kind::RevocationLists);
    };
    const auto readOne = [folder](const QString& name) {
        const auto list = UaPkiRevocationList::fromFile(toUaString(QDir(folder).filePath(name)));
        return list.isNull() ? std::vector<QlumCRLEntry>() : std::vector{QlumCRLEntry(name, list)};
    };
    const auto notify = [this] {
        QMetaObject::invokeMethod(
            this, [this] { takeRead(); }, Qt::QueuedConnection);
    };
    read(pool, std::make_unique<QlumStoreReader<QlumCRLEntry>>(
                   std::vector<QlumStoreSource<QlumCRLEntry>>{{names, readOne}}, m_inbox, notify));
}

void QlumCrlPage::startReading(QlumJobPool& pool)
{
    reloadCRLModel(m_model, folder(), pool);
}

void QlumCrlPage::takeEntries()
{
    if (m_inbox)
        m_model->addEntries(m_inbox->take());
}
