#include <plugins/dataaccess/parts/qlumdifferencemodel.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumnodeaddress.h>
#include <app/api/qlumtext.h>
#include <uabase/values/uadatetime.h>
#include <uawidgets/editors/qlumcelltext.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QDateTime>
#include <QLocale>

#include <iterator>
#include <utility>

namespace {
QString differenceTime(const QlumSnapshotRow& row)
{
    const QDateTime local = qlumDateTime(row.value.sourceTimestamp().value());
    return local.isValid() ? qlumShowDateTime(local) : QString();
}

QString differenceStatus(const QlumSnapshotRow& row)
{
    return row.hasValue ? qlumStatusText(row.value.statusCode().code()) : QString();
}

QString differenceValue(const QlumSnapshotRow& row)
{
    return row.hasValue ? qlumCellText(row.value.value(), QlumValueContext()) : QString();
}

QString kindText(const QlumDifferenceRow& row)
{
    switch (row.kind) {
    case QlumDifferenceKind::Changed:
        return row.before.hasValue && row.after.hasValue &&
                       row.before.value.value().type() != row.after.value.value().type()
                   ? QlumDifferenceModel::tr("Changed, with another type")
                   : QlumDifferenceModel::tr("Changed");
    case QlumDifferenceKind::Status:
        return QlumDifferenceModel::tr("Other status");
    case QlumDifferenceKind::Gone:
        return QlumDifferenceModel::tr("Gone");
    case QlumDifferenceKind::New:
        return QlumDifferenceModel::tr("New");
    case QlumDifferenceKind::Same:
        break;
    }
    return QlumDifferenceModel::tr("Same");
}

QlumStatusLevel differenceLevel(QlumDifferenceKind kind)
{
    switch (kind) {
    case QlumDifferenceKind::Gone:
        return QlumStatusLevel::Bad;
    case QlumDifferenceKind::Changed:
    case QlumDifferenceKind::Status:
        return QlumStatusLevel::Uncertain;
    default:
        return QlumStatusLevel::Good;
    }
}

// The names only; the URIs of their namespaces would hide them.
QString plainPath(const QString& path)
{
    const QlumNodeAddress address = qlumReadAddress(path);
    if (!address.fault.isEmpty())
        return path;
    QString plain;
    for (const QlumPathStep& step : address.path)
        plain += QLatin1Char('/') + step.name;
    return plain;
}
} // namespace

QlumDifferenceModel::QlumDifferenceModel(QObject* parent)
    : QlumTableModel({tr("Difference"), tr("Server"), tr("Display Name"), tr("Node Id"), tr("Browse Path"),
                      tr("Before"), tr("After"), tr("Unit"), tr("Status Before"), tr("Status After"),
                      tr("Source Time Before"), tr("Source Time After")},
                     parent)
{
}

void QlumDifferenceModel::show(std::vector<QlumDifferenceRow> differences)
{
    m_counts = {};
    for (const QlumDifferenceRow& row : differences)
        ++m_counts[static_cast<std::size_t>(row.kind)];
    reset({std::make_move_iterator(differences.begin()), std::make_move_iterator(differences.end())});
}

QString QlumDifferenceModel::text(const QlumDifferenceRow& row, int column) const
{
    const QlumSnapshotRow& known = row.kind == QlumDifferenceKind::Gone ? row.before : row.after;
    switch (column) {
    case Difference:
        return row.isByPath ? tr("%1 (another node id)").arg(kindText(row)) : kindText(row);
    case Server:
        return qlumSingleLine(known.server);
    case Name:
        return qlumSingleLine(known.fieldPath.isEmpty() ? known.name
                                                        : known.name + QLatin1Char('.') + known.fieldPath);
    case NodeId:
        return qlumSingleLine(known.nodeId) +
               (known.indexRange.isEmpty() ? QString() : QStringLiteral(" [%1]").arg(known.indexRange));
    case BrowsePath:
        return qlumSingleLine(plainPath(known.browsePath));
    case Before:
        return differenceValue(row.before);
    case After:
        return differenceValue(row.after);
    case Unit:
        return qlumSingleLine(known.unit);
    case StatusBefore:
        return differenceStatus(row.before);
    case StatusAfter:
        return differenceStatus(row.after);
    case TimeBefore:
        return differenceTime(row.before);
    case TimeAfter:
        return differenceTime(row.after);
    default:
        return {};
    }
}

QVariant QlumDifferenceModel::cell(const QlumDifferenceRow& row, int column, int role) const
{
    if (role == Qt::DisplayRole)
        return text(row, column);
    if (role == Qt::ToolTipRole && column == NodeId) {
        const QlumSnapshotRow& known = row.kind == QlumDifferenceKind::Gone ? row.before : row.after;
        const QString uri = tr("Namespace: %1").arg(known.namespaceUri);
        return qlumPlainToolTip(
            row.isByPath ? uri + QLatin1Char('\n') + tr("Before: %1").arg(row.before.nodeId) : uri);
    }
    if (role == Qt::ToolTipRole)
        return qlumPlainToolTip(text(row, column));
    if (column == Difference && row.kind != QlumDifferenceKind::Same)
        return qlumStatusCell(differenceLevel(row.kind), role);
    const bool isStatus =
        (column == StatusBefore && row.before.hasValue) || (column == StatusAfter && row.after.hasValue);
    if (isStatus)
        return qlumStatusCell(
            qlumStatusLevel((column == StatusBefore ? row.before : row.after).value.statusCode().code()),
            role);
    return {};
}

void QlumDifferenceFilter::showSame(bool show)
{
    m_showsSame = show;
    refilter();
}

bool QlumDifferenceFilter::acceptsRow(int row, const QModelIndex&) const
{
    const auto* model = qobject_cast<const QlumDifferenceModel*>(sourceModel());
    return m_showsSame || model == nullptr || model->rowAt(row).kind != QlumDifferenceKind::Same;
}
