#pragma once
#include <uawidgets/table/qlumtablefilter.h>

#include <QModelIndex>
#include <QObject>
#include <QString>

/// Lets rows of the log through that are serious enough and hold a text in any column.
class QlumLogFilter : public QlumTableFilter
{
    Q_OBJECT
public:
    explicit QlumLogFilter(QObject* parent = nullptr);

    void setFilter(int minimumLevel, const QString& text);

protected:
    [[nodiscard]] bool acceptsRow(int row, const QModelIndex& parent) const override;

private:
    int m_minimumLevel = 0;
};
