#include <certificates/qlumcertificatemodel.h>

#include <app/api/qlumdisplaytext.h>
#include <certificates/qlumvalidity.h>
#include <uabase/uapkicpp/uapkicertificate.h>

#include <QLocale>
#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QVariant>

#include <algorithm>
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
    : QlumStoreModel(parent), m_type(type)
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
    qlumAssertGuiThread();
    const auto isOwn = [](const QlumCertificateEntry& entry) {
        return entry.state() == QlumCertificateEntry::Own;
    };
    std::vector<QlumCertificateEntry>& present = this->entries();
    std::vector<QlumCertificateEntry> added;
    for (QlumCertificateEntry& entry : entries) {
        const auto old = isOwn(entry) ? std::find_if(present.begin(), present.end(), isOwn) : present.end();
        const auto waiting = isOwn(entry) ? std::find_if(added.begin(), added.end(), isOwn) : added.end();
        if (old != present.end()) {
            *old = std::move(entry);
            const int row = static_cast<int>(old - present.begin());
            emit dataChanged(index(row, 0), index(row, ColumnCount - 1));
        } else if (waiting != added.end()) {
            *waiting = std::move(entry);
        } else {
            added.push_back(std::move(entry));
        }
    }
    append(std::move(added));
}

int QlumCertificateModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant QlumCertificateModel::data(const QModelIndex& index, int role) const
{
    qlumAssertGuiThread();
    if (!index.isValid())
        return {};
    if (role == ThumbprintRole)
        return entry(index).details().thumbprint;
    if (role == Qt::TextAlignmentRole && (index.column() == DaysLeft || index.column() == KeySize))
        return int(Qt::AlignRight | Qt::AlignVCenter);
    return QlumStoreModel::data(index, role);
}

QIcon QlumCertificateModel::icon(const QlumCertificateEntry& entry) const
{
    return m_icons[static_cast<std::size_t>(entry.state())][static_cast<std::size_t>(entry.validState())];
}

UaByteArray QlumCertificateModel::der(const QlumCertificateEntry& entry) const
{
    return entry.certificate().toDER();
}

QVariant QlumCertificateModel::validityText(QlumValidity validity) const
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
