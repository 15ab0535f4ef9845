#include <plugins/events/qlumeventfiltermodel.h>

#include <plugins/events/qlumeventmodel.h>

QlumEventFilterModel::QlumEventFilterModel(int sourceColumn, QObject* parent)
    : QlumTableFilter(parent), m_sourceColumn(sourceColumn)
{
    setSortRole(QlumEventModel::sortRole);
}

void QlumEventFilterModel::setLeastSeverity(int severity)
{
    if (m_leastSeverity == severity)
        return;
    m_leastSeverity = severity;
    refilter();
}

void QlumEventFilterModel::setSource(const QString& text)
{
    if (m_source == text)
        return;
    m_source = text;
    refilter();
}

void QlumEventFilterModel::setType(const QString& text)
{
    if (m_type == text)
        return;
    m_type = text;
    refilter();
}

void QlumEventFilterModel::setHidesRefreshed(bool hides)
{
    if (m_hidesRefreshed == hides)
        return;
    m_hidesRefreshed = hides;
    refilter();
}

bool QlumEventFilterModel::acceptsRow(int row, const QModelIndex& parent) const
{
    const QModelIndex first = sourceModel()->index(row, 0, parent);
    if (m_leastSeverity > 0 && first.data(QlumEventModel::severityRole).toInt() < m_leastSeverity)
        return false;
    if (m_hidesRefreshed && first.data(QlumEventModel::refreshedRole).toBool())
        return false;
    if (!m_type.isEmpty() &&
        !first.data(QlumEventModel::typeRole).toString().contains(m_type, Qt::CaseInsensitive))
        return false;
    return m_source.isEmpty() ||
           first.siblingAtColumn(m_sourceColumn).data().toString().contains(m_source, Qt::CaseInsensitive);
}
