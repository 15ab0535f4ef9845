#pragma once
#include <uawidgets/table/qlumtablefilter.h>

#include <QModelIndex>
#include <QObject>
#include <QString>

/// What a user wants to see of a log or a list of alarms.
class QlumEventFilterModel : public QlumTableFilter
{
    Q_OBJECT
public:
    /// The column of the source of an event; type and severity are found by the roles of QlumEventModel.
    explicit QlumEventFilterModel(int sourceColumn, QObject* parent = nullptr);

    /// Only rows of that severity or more.
    void setLeastSeverity(int severity);
    /// Only rows whose source has that in its name; empty for all.
    void setSource(const QString& text);
    /// Only rows whose type has that in its name; empty for all.
    void setType(const QString& text);
    /// Without the rows that a refresh has sent again.
    void setHidesRefreshed(bool hides);

protected:
    bool acceptsRow(int row, const QModelIndex& parent) const override;

private:
    const int m_sourceColumn;
    int m_leastSeverity = 0;
    QString m_source;
    QString m_type;
    bool m_hidesRefreshed = false;
};
