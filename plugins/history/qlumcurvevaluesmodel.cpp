#include <plugins/history/qlumcurvevaluesmodel.h>

#include <app/api/qlumtext.h>
#include <plugins/history/qlumnonnumericmodel.h>
#include <uabase/values/uadatetime.h>
#include <uawidgets/plot/qlumsamplestore.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QMap>
#include <QModelIndex>
#include <QString>
#include <QVariant>

#include <cmath>
#include <cstddef>

QlumCurveValuesModel::QlumCurveValuesModel(QObject* parent)
    : QlumTitledModel({tr("Source Timestamp"), tr("Server Timestamp"), tr("Value"), tr("Status")}, parent)
{
}

void QlumCurveValuesModel::setSamples(const QlumSampleStore& samples, const QMap<qint64, QString>& names)
{
    beginResetModel();
    m_samples = samples;
    m_names = names;
    endResetModel();
}

int QlumCurveValuesModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_samples.size());
}

int QlumCurveValuesModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : titleCount();
}

QVariant QlumCurveValuesModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const QlumSample sample = m_samples.at(static_cast<std::size_t>(index.row()));
    if (index.column() == Status && role != Qt::DisplayRole)
        return qlumStatusCell(qlumStatusLevel(sample.status), role);
    if (role != Qt::DisplayRole)
        return {};
    switch (index.column()) {
    case SourceTimestamp:
        return qlumHistoryTime(UaDateTime(sample.time), false);
    case ServerTimestamp:
        return qlumHistoryTime(UaDateTime(sample.serverTime), false);
    case Value: {
        const auto name = m_names.constFind(std::llround(sample.value));
        if (name != m_names.constEnd())
            return QStringLiteral("%1 (%2)").arg(*name).arg(sample.value);
        return std::isnan(sample.value) ? QVariant() : QVariant(sample.value);
    }
    default:
        return qlumStatusText(sample.status);
    }
}
