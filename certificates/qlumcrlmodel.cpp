#include <certificates/qlumcrlmodel.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumvalidity.h>
#include <uabase/uapkicpp/uapkirevocationlist.h>
#include <uabase/values/uastring.h>

#include <QObject>
#include <QString>
#include <QVariant>

#include <utility>

namespace {
QString shown(const UaString& text)
{
    return qlumCutText(qlumSingleLine(toQString(text)));
}
} // namespace

QlumCRLModel::QlumCRLModel(CRLStoreType type, QObject* parent)
    : QlumStoreModel({tr("Number"), tr("Valid From"), tr("Next Update"), tr("Organization"),
                      tr("OrganizationUnit"), tr("Locality"), tr("State"), tr("Country"), tr("Filename")},
                     parent),
      m_type(type)
{
    const QIcon icon(QStringLiteral(":/uawidgets/images/on.png"));
    for (std::size_t validity = 0; validity < m_icons.size(); ++validity)
        m_icons[validity] = qlumValidityIcon(icon, static_cast<QlumValidity>(validity));
}

void QlumCRLModel::addCRL(const UaPkiRevocationList& list, const QString& fileName)
{
    addEntries({QlumCRLEntry(fileName, list)});
}

void QlumCRLModel::addEntries(std::vector<QlumCRLEntry> entries)
{
    append(std::move(entries));
}

QIcon QlumCRLModel::icon(const QlumCRLEntry& entry) const
{
    return m_icons[static_cast<std::size_t>(entry.validState())];
}

UaByteArray QlumCRLModel::der(const QlumCRLEntry& entry) const
{
    return entry.list().toDER();
}

QVariant QlumCRLModel::validityText(QlumValidity validity) const
{
    switch (validity) {
    case QlumExpiresSoon:
        return tr("The CRL will expire soon");
    case QlumExpired:
        return tr("The CRL has expired");
    case QlumNotYetValid:
        return tr("The CRL is not yet valid");
    default:
        return {};
    }
}

QString QlumCRLModel::text(const QlumCRLEntry& entry, int column) const
{
    switch (column) {
    case Number: {
        const OpcUa_Int64 number = entry.list().crlNumber();
        return number < 0 ? tr("(none)") : QString::number(number);
    }
    case ValidFrom:
        return qlumValidityTime(entry.validFrom());
    case NextUpdate:
        return qlumValidityTime(entry.nextUpdate());
    case Organization:
        return shown(entry.issuer().organization);
    case OrganizationUnit:
        return shown(entry.issuer().organizationUnit);
    case Locality:
        return shown(entry.issuer().locality);
    case State:
        return shown(entry.issuer().state);
    case Country:
        return shown(entry.issuer().country);
    default:
        return qlumSingleLine(entry.fileName());
    }
}

QVariant QlumCRLModel::sortValue(const QlumCRLEntry& entry, int column) const
{
    switch (column) {
    case Number:
        return static_cast<qlonglong>(entry.list().crlNumber());
    case ValidFrom:
        return static_cast<qlonglong>(entry.validFrom().value());
    case NextUpdate:
        return static_cast<qlonglong>(entry.nextUpdate().value());
    default:
        return text(entry, column);
    }
}
