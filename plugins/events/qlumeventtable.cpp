#include <plugins/events/qlumeventtable.h>

QlumEventTable::QlumEventTable(const QStringList& titles, QObject* parent) : QlumTableModel(titles, parent) {}

void QlumEventTable::setExtraFields(const QStringList& fields)
{
    if (fields == m_extraFields)
        return;
    beginResetModel();
    m_extraFields = fields;
    endResetModel();
}

int QlumEventTable::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : titleCount() + m_extraFields.size();
}

QVariant QlumEventTable::headerData(int section, Qt::Orientation orientation, int role) const
{
    const int extra = section - titleCount();
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && extra >= 0 &&
        extra < m_extraFields.size())
        return m_extraFields.at(extra);
    return QlumTableModel::headerData(section, orientation, role);
}

QString QlumEventTable::extraText(const QlumEvent& event, int column) const
{
    return event.text(m_extraFields.value(column - titleCount()));
}
