#include <certificates/qlumcertificatemodel.h>

#include <app/api/qlumdisplaytext.h>
#include <certificates/qlumvalidity.h>
#include <uabase/uapkicpp/uapkicertificate.h>

#include <QByteArray>
#include <QLocale>
#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QThread>
#include <QVariant>

#include <algorithm>
#include <iterator>
#include <utility>

namespace {
QIcon stateIcon(int state, const QIcon& application)
{
    switch (state) {
    case QlumCertificateEntry::Rejected:
        return QIcon(QStringLiteral(":/uawidgets/images/clearlog.png"));
    case QlumCertificateEntry::Own:
        return application;
    default:
        return QIcon(QStringLiteral(":/uawidgets/images/on.png"));
    }
}
} // namespace

QlumCertificateModel::QlumCertificateModel(CertStoreType type, const QIcon& icon, QObject* parent)
    : QAbstractTableModel(parent), m_type(type)
{
    for (std::size_t state = 0; state < m_icons.size(); ++state)
        for (std::size_t validity = 0; validity < m_icons[state].size(); ++validity)
            m_icons[state][validity] = qlumValidityIcon(stateIcon(static_cast<int>(state), icon),
                                                        static_cast<QlumValidity>(validity));
}

void QlumCertificateModel::addCertificate(const UaPkiCertificate& certificate, const QString& fileName,
                                          QlumCertificateEntry::State state)
{
    addEntries({QlumCertificateEntry(state, fileName, certificate)});
}

void QlumCertificateModel::addEntries(std::vector<QlumCertificateEntry> entries)
{
    Q_ASSERT(QThread::currentThread() == thread());
    const auto isOwn = [](const QlumCertificateEntry& entry) {
        return entry.state() == QlumCertificateEntry::Own;
    };
    std::vector<QlumCertificateEntry> added;
    for (QlumCertificateEntry& entry : entries) {
        const auto old =
            isOwn(entry) ? std::find_if(m_entries.begin(), m_entries.end(), isOwn) : m_entries.end();
        const auto waiting = isOwn(entry) ? std::find_if(added.begin(), added.end(), isOwn) : added.end();
        if (old != m_entries.end()) {
            *old = std::move(entry);
            const int row = static_cast<int>(old - m_entries.begin());
            emit dataChanged(index(row, 0), index(row, ColumnCount - 1));
        } else if (waiting != added.end()) {
            *waiting = std::move(entry);
        } else {
            added.push_back(std::move(entry));
        }
    }
    if (added.empty())
        return;
    const int first = rowCount();
    beginInsertRows(QModelIndex(), first, first + static_cast<int>(added.size()) - 1);
    std::move(added.begin(), added.end(), std::back_inserter(m_entries));
    endInsertRows();
}

void QlumCertificateModel::clear()
{
    beginResetModel();
    m_entries.clear();
    endResetModel();
}

const QlumCertificateEntry& QlumCertificateModel::entry(const QModelIndex& index) const
{
    Q_ASSERT(index.model() == this);
    return m_entries.at(static_cast<std::size_t>(index.row()));
}

int QlumCertificateModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_entries.size());
}

int QlumCertificateModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant QlumCertificateModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const QlumCertificateEntry& shown = entry(index);
    switch (role) {
    case Qt::DisplayRole:
        return text(shown, index.column());
    case Qt::DecorationRole:
        return index.column() == Status ? QVariant(m_icons[static_cast<std::size_t>(shown.state())]
                                                          [static_cast<std::size_t>(shown.validState())])
                                        : QVariant();
    case Qt::ToolTipRole:
        return index.column() == Status ? validityText(shown.validState()) : QVariant();
    case Qt::TextAlignmentRole:
        return index.column() == DaysLeft || index.column() == KeySize
                   ? QVariant(int(Qt::AlignRight | Qt::AlignVCenter))
                   : QVariant();
    case EntryRole:
        return QVariant::fromValue(shown);
    case DerRole: {
        const UaByteArray bytes = shown.certificate().toDER();
        return QByteArray(reinterpret_cast<const char*>(bytes.rawData()), static_cast<int>(bytes.size()));
    }
    case ThumbprintRole:
        return shown.details().thumbprint;
    case SortRole:
        return sortValue(shown, index.column());
    default:
        return {};
    }
}

QVariant QlumCertificateModel::validityText(QlumValidity validity)
{
    switch (validity) {
    case QlumExpiresSoon:
        return tr("The certificate will expire soon");
    case QlumExpired:
        return tr("The certificate has expired");
    case QlumNotYetValid:
        return tr("The certificate is not yet valid");
    default:
        return {};
    }
}

QString QlumCertificateModel::statusText(const QlumCertificateEntry& entry) const
{
    if (m_type == Issuers)
        return tr("Known Issuer");
    if (m_type == TlsIssuers)
        return tr("Trusted");
    switch (entry.state()) {
    case QlumCertificateEntry::Own:
        return tr("Own Certificate");
    case QlumCertificateEntry::Rejected:
        return tr("Untrusted");
    default:
        return tr("Trusted");
    }
}

QString QlumCertificateModel::text(const QlumCertificateEntry& entry, int column) const
{
    const QlumCertificateEntry::Details& details = entry.details();
    switch (column) {
    case Status:
        return statusText(entry);
    case Name:
        return details.name;
    case ValidFrom:
        return qlumValidityTime(details.validFrom);
    case ValidTo:
        return qlumValidityTime(details.validTo);
    case Organization:
        return details.organization;
    case OrganizationUnit:
        return details.organizationUnit;
    case Locality:
        return details.locality;
    case State:
        return details.state;
    case Country:
        return details.country;
    case AppUri:
        return details.applicationUri;
    case DomainName:
        return details.domainNames;
    case Address:
        return details.addresses;
    case FileName:
        return qlumSingleLine(entry.fileName());
    case DaysLeft:
        return QLocale::system().toString(qlumDaysLeft(details.validTo));
    case KeySize:
        return tr("%1 bits").arg(details.keySize);
    case Signature:
        return details.signature;
    default:
        return details.thumbprint;
    }
}

QVariant QlumCertificateModel::sortValue(const QlumCertificateEntry& entry, int column) const
{
    switch (column) {
    case ValidFrom:
        return static_cast<qlonglong>(entry.details().validFrom.value());
    case ValidTo:
    case DaysLeft:
        return static_cast<qlonglong>(entry.details().validTo.value());
    case KeySize:
        return entry.details().keySize;
    default:
        return text(entry, column);
    }
}

QVariant QlumCertificateModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    static constexpr std::array<const char*, ColumnCount> titles{
        QT_TR_NOOP("Status"),    QT_TR_NOOP("Name"),         QT_TR_NOOP("Valid From"),
        QT_TR_NOOP("Valid To"),  QT_TR_NOOP("Organization"), QT_TR_NOOP("OrganizationUnit"),
        QT_TR_NOOP("Locality"),  QT_TR_NOOP("State"),        QT_TR_NOOP("Country"),
        QT_TR_NOOP("AppURI"),    QT_TR_NOOP("DomainName"),   QT_TR_NOOP("IP"),
        QT_TR_NOOP("Filename"),  QT_TR_NOOP("Days Left"),    QT_TR_NOOP("Key Size"),
        QT_TR_NOOP("Signature"), QT_TR_NOOP("Thumbprint")};
    return section >= 0 && section < ColumnCount ? QVariant(tr(titles[static_cast<std::size_t>(section)]))
                                                 : QVariant();
}
