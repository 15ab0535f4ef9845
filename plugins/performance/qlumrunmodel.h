// The runs of a performance view as a table.
#pragma once
#include <plugins/performance/qlummeasurement.h>
#include <uawidgets/models/qlumtablemodel.h>

#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QVariant>

/// One row a run, oldest first. The name can be edited. GUI thread.
class QlumRunModel : public QlumTableModel<QlumMeasurementRun>
{
    Q_OBJECT
public:
    /// Of the columns.
    enum Column {
        Name,
        Measured,
        Server,
        Endpoint,
        NodesPerCall,
        Outstanding,
        Calls,
        Failed,
        Minimum,
        Median,
        Mean,
        Percentile95,
        Percentile99,
        Maximum,
        Deviation,
        Own,
        CallsPerSecond,
        ValuesPerSecond,
        BytesOut,
        BytesIn,
        Begun,
        Remarks
    };

    /// Empty.
    explicit QlumRunModel(QObject* parent = nullptr);

    /// At the end.
    void addRun(const QlumMeasurementRun& run);
    /// Takes rows out.
    void removeRuns(int first, int count) { remove(first, count); }

    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

signals:
    /// A name is another now.
    void renamed();

protected:
    /// Numbers for sorting in Qt::EditRole; times are in us in every row, so that columns can be compared.
    [[nodiscard]] QVariant cell(const QlumMeasurementRun& run, int column, int role) const override;
};

/// "12.3 us", "4.56 ms", "7.89 s": three digits, in the unit that suits.
[[nodiscard]] QString qlumMicrosecondsText(double microseconds);
