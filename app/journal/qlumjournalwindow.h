#pragma once
#include <app/api/qlumjobpool.h>
#include <app/api/qlumjournal.h>
#include <uawidgets/qlumbasewidget.h>

#include <QDate>
#include <QString>
#include <QWidget>

#include <memory>
#include <vector>

class QComboBox;
class QLabel;
class QLayout;
class QLineEdit;
class QPushButton;
class QTreeView;
class QlumJournalFilter;
class QlumJournalModel;

/// Shows what was changed on servers, a day at a time; that of today goes on while it is shown.
class QlumJournalWindow : public QlumBaseWidget
{
    Q_OBJECT
public:
    explicit QlumJournalWindow(std::shared_ptr<QlumJournal> journal, QWidget* parent = nullptr);
    ~QlumJournalWindow() override;

private:
    QLayout* makeFilters();
    QTreeView* makeTable();
    QLayout* makeButtons();
    void fillDays();
    void fillServers();
    void read();
    void add(const std::vector<QlumJournalEntry>& entries);
    void take(const QlumJournalReading& reading);
    void tell();
    [[nodiscard]] QDate day() const;

    const std::shared_ptr<QlumJournal> m_journal;
    QlumJournalModel* m_model;
    QlumJournalFilter* m_filter;
    QComboBox* m_day;
    QComboBox* m_server;
    QComboBox* m_outcome;
    QLineEdit* m_text;
    QTreeView* m_table;
    QLabel* m_message;
    QString m_remark;                        ///< of the file that was read
    std::vector<QlumJournalEntry> m_pending; ///< came while it was read
    bool m_isReading = false;
    QlumJobPool m_pool; ///< last: its work ends first
};
