#pragma once
#include <app/recovery/qlumsessionrecord.h>

#include <QDialog>
#include <QList>
#include <QWidget>

class QLabel;
class QPlainTextEdit;
class QPushButton;
class QTreeWidget;

/// Shown after a start when an earlier one did not end well: projects with changes that were not saved, and
/// reports of crashes. The user opens one of them, saves a report or throws away what is left.
class QlumRecoveryDialog : public QDialog
{
    Q_OBJECT
public:
    QlumRecoveryDialog(const QlumSessionRecord& record, QList<QlumSessionRecord::Leftover> leftovers,
                       QWidget* parent = nullptr);

    /// What is to be opened, once the dialog was accepted.
    [[nodiscard]] QlumSessionRecord::Leftover chosen() const;
    /// What has not been thrown away.
    [[nodiscard]] const QList<QlumSessionRecord::Leftover>& leftovers() const { return m_leftovers; }

private:
    void makeWidgets();
    void fillList();
    [[nodiscard]] int current() const;
    void showCurrent();
    void saveReport();
    void discardCurrent();

    const QlumSessionRecord& m_record;
    QList<QlumSessionRecord::Leftover> m_leftovers;
    QTreeWidget* m_list;
    QLabel* m_what;
    QPlainTextEdit* m_report;
    QPushButton* m_open = nullptr;
    QPushButton* m_save = nullptr;
    QPushButton* m_discard = nullptr;
};
