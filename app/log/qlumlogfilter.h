#pragma once
#include <QModelIndex>
#include <QSortFilterProxyModel>
#include <QString>

/// Lets rows of the log through that are serious enough and hold a text in any column.
class QlumLogFilter : public QSortFilterProxyModel
{
    Q_OBJECT
public:
    using QSortFilterProxyModel::QSortFilterProxyModel;

    void setFilter(int minimumLevel, const QString& text);

protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

private:
    int m_minimumLevel = 0;
    QString m_text;
};
