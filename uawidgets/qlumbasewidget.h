#pragma once
#include <QDialog>
#include <QShowEvent>
#include <QString>
#include <QWidget>

/// Base of the dialogs whose size and place are kept from one use to the next, in the settings group given.
class QlumBaseWidget : public QDialog
{
    Q_OBJECT
public:
    /// No two dialogs may share a group.
    explicit QlumBaseWidget(const QString& settingsGroup, QWidget* parent = nullptr,
                            Qt::WindowFlags flags = Qt::WindowFlags());
    ~QlumBaseWidget() override;

protected:
    /// Restores size and place when the dialog is shown for the first time; call it when you override it.
    void showEvent(QShowEvent* event) override;
    /// Where a derived dialog may keep more.
    [[nodiscard]] QString settingsGroup() const { return m_settingsGroup; }

private:
    QString m_settingsGroup;
    bool m_restored = false;
};
