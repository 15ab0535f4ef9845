#include <app/log/qlumlogfilter.h>

#include <app/api/qlumguithread.h>
#include <app/log/qlumlogmodel.h>

#include <QModelIndex>
#include <QString>

void QlumLogFilter::setFilter(int minimumLevel, const QString& text)
{
    qlumAssertGuiThread();
    m_minimumLevel = minimumLevel;
    m_text = text;
    invalidateFilter();
}

bool QlumLogFilter::filterAcceptsRow(int row, const QModelIndex& parent) const
{
    qlumAssertGuiThread();
    const QModelIndex first = sourceModel()->index(row, 0, parent);
    if (first.data(QlumLogModel::levelRole).toInt() < m_minimumLevel)
        return false;
    if (m_text.isEmpty())
        return true;
    for (int column = QlumLogModel::Source; column < QlumLogModel::ColumnCount; ++column)
        if (first.siblingAtColumn(column).data().toString().contains(m_text, Qt::CaseInsensitive))
            return true;
    return false;
}
