#include <servers/doctor/qlumdoctormodel.h>

#include <app/api/qlumdisplaytext.h>
#include <certificates/qlumcertificateerror.h>
#include <certificates/qlumseverityicon.h>

#include <QString>

#include <deque>

QlumDoctorModel::QlumDoctorModel(QObject* parent)
    : QlumTableModel({tr("Step"), tr("Result"), tr("Time"), tr("What Was Found")}, parent)
{
    show(QlumDiagnosis());
}

void QlumDoctorModel::show(const QlumDiagnosis& diagnosis)
{
    reset(std::deque<QlumRung>(diagnosis.rungs.begin(), diagnosis.rungs.end()));
}

void QlumDoctorModel::take(const QlumRung& rung)
{
    change(
        rung.step, [&rung](QlumRung& row) { row = rung; });
}

QVariant QlumDoctorModel::cell(const QlumRung& rung, int column, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return qlumCutText(qlumSingleLine(text(rung, column)));
    case Qt::ToolTipRole:
        return column == Finding ? qlumPlainToolTip(rung.finding) : QVariant();
    case Qt::DecorationRole:
        return column == Result ? picture(rung) : QVariant();
    case Qt::TextAlignmentRole:
        return column == Time ? QVariant(Qt::AlignRight | Qt::AlignVCenter) : QVariant();
    default:
        return {};
    }
}

QString QlumDoctorModel::text(const QlumRung& rung, int column)
{
    switch (column) {
    case Step:
        return qlumRungName(rung.step);
    case Result:
        return qlumRungStateName(rung.state);
    case Time:
        return qlumRungTime(rung);
    case Finding:
        return rung.finding;
    default:
        return {};
    }
}

QVariant QlumDoctorModel::picture(const QlumRung& rung)
{
    switch (rung.state) {
    case QlumRung::Passed:
        return qlumSeverityIcon(QlumCertificateError::None);
    case QlumRung::Warned:
        return qlumSeverityIcon(QlumCertificateError::Warning);
    case QlumRung::Failed:
        return qlumSeverityIcon(QlumCertificateError::Error);
    default:
        return {};
    }
}
