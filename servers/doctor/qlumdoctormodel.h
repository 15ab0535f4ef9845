#pragma once
#include <servers/doctor/qlumdiagnosis.h>
#include <uawidgets/models/qlumtablemodel.h>

#include <QObject>
#include <QString>
#include <QVariant>

/// The steps of a diagnosis as a table.
class QlumDoctorModel : public QlumTableModel<QlumRung>
{
    Q_OBJECT
public:
    enum Column { Step, Result, Time, Finding };

    explicit QlumDoctorModel(QObject* parent = nullptr);

    /// All of another diagnosis.
    void show(const QlumDiagnosis& diagnosis);
    /// One step of it has gone on.
    void take(const QlumRung& rung);

protected:
    [[nodiscard]] QVariant cell(const QlumRung& rung, int column, int role) const override;

private:
    [[nodiscard]] static QString text(const QlumRung& rung, int column);
    [[nodiscard]] static QVariant picture(const QlumRung& rung);
};
