#pragma once
#include <app/support/qlumsupportreport.h>
#include <uawidgets/qlumbasewidget.h>

#include <QString>
#include <QWidget>

#include <vector>

class QListWidget;
class QPlainTextEdit;
class QPushButton;
class QlumMessageBar;

/// Shows what a report would contain, to the letter, and writes what the user leaves checked.
class QlumSupportDialog : public QlumBaseWidget
{
    Q_OBJECT
public:
    explicit QlumSupportDialog(std::vector<QlumReportPart> parts, QWidget* parent = nullptr);

    /// The parts that are checked.
    [[nodiscard]] std::vector<QlumReportPart> chosen() const;

private:
    void sltShow(int row);
    void sltSave();

    std::vector<QlumReportPart> m_parts;
    QListWidget* m_list;
    QPlainTextEdit* m_text;
    QPushButton* m_save;
    QlumMessageBar* m_messages;
};
