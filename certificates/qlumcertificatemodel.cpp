#include <certificates/qlumcertificatemodel.h>

#include <app/api/qlumdisplaytext.h>
#include <certificates/qlumvalidity.h>
#include <uabase/uapkicpp/uapkicertificate.h>

#include <QLocale>
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
    : QlumStoreModel({tr("Status"), tr("Name"), tr("Valid From"), tr("Valid To"), tr("Organization"),
                      tr("OrganizationUnit"), tr("Locality"), tr("State"), tr("Country"), tr("AppURI"),
                      tr("DomainName"), tr("IP"), tr("Filename"), tr("Days Left"), tr("Key Size"),
                      tr("Signature"), tr("Thumbprint")},
                     parent),
      m_type(type), m_unreadable(QStringLiteral(":/images/error.png"))
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
    const auto isOwn = [](const QlumCertificateEntry& entry) {
        return entry.state() == QlumCertificateEntry::Own;
    };
    std::vector<QlumCertificateEntry> added;
    for (QlumCertificateEntry& entry : entries) {
        const auto old = isOwn(entry) ? std::find_if(rows().begin(), rows().end(), isOwn) : rows().end();
        const auto waiting = isOwn(entry) ? std::find_if(added.begin(), added.end(), isOwn) : added.end();
        if (old != rows().end())
            change(static_cast<int>(old - rows().begin()), [&](auto& own) { own = std::move(entry); });
        else if (waiting != added.end())
            *waiting = std::move(entry);
        else
            added.push_back(std::move(entry));
    }
    append(std::move(added));
}

QVariant QlumCertificateModel::cell(const QlumCertificateEntry& entry, int column, int role) const
{
    if (role == ThumbprintRole)
        return entry.details().thumbprint;
    if (role == Qt::ToolTipRole && column == Status && !entry.isReadable())
        return tr("The file, or a part of it, is no certificate that can be read; that part is not trusted");
    if (role == Qt::TextAlignmentRole && (column == DaysLeft || column == KeySize))
        return int(Qt::AlignRight | Qt::AlignVCenter);
    return QlumStoreModel::cell(entry, column, role);
}

QIcon QlumCertificateModel::icon(const QlumCertificateEntry& entry) const
{
    if (!entry.isReadable())
        return m_unreadable;
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
    if (!entry.isReadable())
        return tr("Unreadable");
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
    if (!entry.isReadable() && (column == DaysLeft || column == KeySize))
        return {};
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
