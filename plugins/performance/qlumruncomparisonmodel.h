// The figures of a run, alone or beside those of another one.
#pragma once
#include <plugins/performance/qlummeasurement.h>
#include <uawidgets/models/qlumtablemodel.h>

#include <QObject>
#include <QString>
#include <QVariant>

#include <optional>

/// A figure, with what it is in both runs. Values that are not finite are not known.
struct QlumComparedFigure
{
    QString name; ///< for the user
    double value = 0;
    double other = 0;    ///< in the run that it is compared with
    bool isTime = false; ///< us; else a number
};

/// One row a figure. GUI thread.
class QlumRunComparisonModel : public QlumTableModel<QlumComparedFigure>
{
    Q_OBJECT
public:
    /// Of the columns.
    enum Column { Figure, Value, Other, Difference, Ratio };

    /// Without rows.
    explicit QlumRunComparisonModel(QObject* parent = nullptr);
    /// Shows that run, and what it is compared with, if anything.
    void show(const std::optional<QlumMeasurementRun>& run, const std::optional<QlumMeasurementRun>& other);

protected:
    /// Difference and ratio are to the other run.
    [[nodiscard]] QVariant cell(const QlumComparedFigure& figure, int column, int role) const override;
};
