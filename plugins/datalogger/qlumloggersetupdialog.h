#pragma once
#include <plugins/datalogger/qlumloggeritem.h>
#include <uawidgets/qlumbasewidget.h>

#include <QString>
#include <QWidget>

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QFormLayout;
class QLabel;
class QLineEdit;

/// Asks where and how a data logger records.
class QlumLoggerSetupDialog : public QlumBaseWidget
{
    Q_OBJECT
public:
    /// With what holds so far.
    explicit QlumLoggerSetupDialog(const QlumLoggerSetup& setup, QWidget* parent = nullptr);
    [[nodiscard]] QlumLoggerSetup setup() const; ///< as the user has it now

private:
    void makeFile(QFormLayout* form, const QlumLoggerSetup& setup);
    void makeLimits(QFormLayout* form, const QlumLoggerSetup& setup);
    void addNumber(QFormLayout* form, QDoubleSpinBox* field, const char* name, const QString& label,
                   const QString& explanation, const QString& zero, double value);
    void browse();
    void kindChanged();

    QComboBox* m_kind;
    QLineEdit* m_path;
    QLabel* m_hint;
    QDoubleSpinBox* m_freeFloor;
    QDoubleSpinBox* m_rotateBytes;
    QDoubleSpinBox* m_rotateHours;
    QDoubleSpinBox* m_keepBytes;
    QDoubleSpinBox* m_keepDays;
    QCheckBox* m_startsWithProject;
};
