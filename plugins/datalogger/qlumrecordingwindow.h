#pragma once
#include <app/api/qlumjobpool.h>
#include <app/api/qlumtoolservices.h>
#include <plugins/datalogger/qlumrecordingmodels.h>
#include <recording/recordreader.h>
#include <uawidgets/qlumbasewidget.h>
#include <uawidgets/qlummessagebar.h>

#include <QString>
#include <QWidget>

#include <memory>
#include <vector>

class QDateTimeEdit;
class QLabel;
class QProgressBar;
class QPushButton;
class QTableView;
class QTabWidget;

/// A recording, made here or elsewhere: its items, what happened, the values of a range as rows, as curves
/// and as a file. Needs no server; reads in the background.
class QlumRecordingWindow : public QlumBaseWidget
{
    Q_OBJECT
public:
    /// Begins to read.
    explicit QlumRecordingWindow(const QString& path, QWidget* parent = nullptr);
    ~QlumRecordingWindow() override;

    /// Reads again, for one that is still written.
    void refresh();
    /// Writes the range as CSV; of the selected items, or of all.
    void exportTo(const QString& path);
    [[nodiscard]] bool isReading() const { return m_pool->pending() > 0; } ///< something is under way

private:
    struct Read
    {
        QString error;
        std::vector<recording::RecordReader::Item> items;
        std::vector<recording::Mark> marks;
    };

    [[nodiscard]] QWidget* makeRange();
    [[nodiscard]] QWidget* makeButtons();
    void makeTables();
    void take(const Read& read);
    void showValues();
    void openInTrend();
    void askExport();
    void showCommands();
    [[nodiscard]] std::vector<recording::RecordReader::Item> selectedItems() const;
    [[nodiscard]] OpcUa_DateTime from() const;
    [[nodiscard]] OpcUa_DateTime to() const;

    const QString m_path;
    std::unique_ptr<QlumJobPool> m_pool;
    QlumRecordedItemModel* m_items;
    QlumMarkModel* m_marks;
    QlumRecordModel* m_values;
    QlumMessageBar* m_messages;
    QLabel* m_summary;
    QDateTimeEdit* m_from;
    QDateTimeEdit* m_to;
    QTabWidget* m_pages = nullptr;
    QTableView* m_itemTable = nullptr;
    QTableView* m_markTable = nullptr;
    QTableView* m_valueTable = nullptr;
    QPushButton* m_show = nullptr;
    QPushButton* m_trend = nullptr;
    QPushButton* m_export = nullptr;
    bool m_isRangeTouched = false;
};
