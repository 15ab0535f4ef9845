#pragma once
#include <uawidgets/qlumbasewidget.h>

#include <QWidget>

class QCheckBox;
class QSpinBox;

/// Asks whether and how often to look for updates.
class QlumUpdateDialog : public QlumBaseWidget
{
    Q_OBJECT
public:
    explicit QlumUpdateDialog(int interval, QWidget* parent = nullptr);

    [[nodiscard]] bool checkForUpdates() const;
    /// Days.
    [[nodiscard]] int interval() const;

private:
    QCheckBox* m_check;
    QSpinBox* m_interval;
};
