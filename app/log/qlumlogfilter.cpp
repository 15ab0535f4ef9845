#include <app/log/qlumlogfilter.h>

#include <app/log/qlumlogmodel.h>

#include <QModelIndex>
#include <QObject>
#include <QString>

QlumLogFilter::QlumLogFilter(QObject* parent) : QlumTableFilter(parent)
{
    setSearchedColumns({QlumLogModel::Source, QlumLogModel::Server, QlumLogModel::Message});
}

void QlumLogFilter::setFilter(int minimumLevel, const QString& text)
{
    const bool isOtherLevel = minimumLevel != m_minimumLevel;
    m_minimumLevel = minimumLevel;
    if (!setText(text) && isOtherLevel)
        refilter();
}

bool QlumLogFilter::acceptsRow(int row, const QModelIndex& parent) const
{
    return sourceModel()->index(row, 0, parent).data(QlumLogModel::levelRole).toInt() >= m_minimumLevel;
}
