#include <certificates/qlumcrlmodel.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumvalidity.h>
#include <uabase/uapkicpp/uapkirevocationlist.h>
#include <uabase/values/uastring.h>

#include <QByteArray>
#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QThread>
#include <QVariant>

#include <algorithm>
#include <iterator>
#include <utility>

namespace {
QString shown(const UaString& text)
{
    return qlumCutText(qlumSingleLine(toQString(text)));
}
} // namespace

QlumCRLModel::QlumCRLModel(CRLStoreType type, QObject* parent) : QAbstractTableModel(parent), m_type(type)
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
    Q_ASSERT(QThread::currentThread() == thread());
    if (entries.empty())
        return;
    const int first = rowCount();
    beginInsertRows(QModelIndex(), first, first + static_cast<int>(entries.size()) - 1);
    std::move(entries.begin(), entries.end(), std::back_inserter(m_entries));
    endInsertRows();
}

void QlumCRLModel::clear()
{
    beginResetModel();
    m_entries.clear();
    endResetModel();
}

const QlumCRLEntry& QlumCRLModel::entry(const QModelIndex& index) const
{
    Q_ASSERT(index.model() == this);
    return m_entries.at(static_cast<std::size_t>(index.row()));
}

int QlumCRLModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_entries.size());
}

int QlumCRLModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant QlumCRLModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const QlumCRLEntry& one = entry(index);
    switch (role) {
    case Qt::DisplayRole:
        return text(one, index.column());
    case Qt::DecorationRole:
        return index.column() == Number ? QVariant(m_icons[static_cast<std::size_t>(one.validState())])
                                        : QVariant();
    case Qt::ToolTipRole:
        return index.column() == Number ? validityText(one.validState()) : QVariant();
    case EntryRole:
        return QVariant::fromValue(one);
    case DerRole: {
        const UaByteArray bytes = one.list().toDER();
        return QByteArray(reinterpret_cast<const char*>(bytes.rawData()), static_cast<int>(bytes.size()));
    }
    case SortRole:
        return sortValue(one, index.column());
    default:
        return {};
    }
}

QVariant QlumCRLModel::validityText(QlumValidity validity)
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

QString QlumCRLModel::text(const QlumCRLEntry& entry, int column)
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

QVariant QlumCRLModel::sortValue(const QlumCRLEntry& entry, int column)
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

QVariant QlumCRLModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    static constexpr std::array<const char*, ColumnCount> titles{
        QT_TR_NOOP("Number"),       QT_TR_NOOP("Valid From"),       QT_TR_NOOP("Next Update"),
        QT_TR_NOOP("Organization"), QT_TR_NOOP("OrganizationUnit"), QT_TR_NOOP("Locality"),
        QT_TR_NOOP("State"),        QT_TR_NOOP("Country"),          QT_TR_NOOP("Filename")};
    return section >= 0 && section < ColumnCount ? QVariant(tr(titles[static_cast<std::size_t>(section)]))
                                                 : QVariant();
}
