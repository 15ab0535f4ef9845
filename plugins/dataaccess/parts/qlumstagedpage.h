#pragma once
#include <plugins/dataaccess/parts/qlumstagedmodel.h>
#include <plugins/dataaccess/parts/qlumstagedwrite.h>

#include <QString>
#include <QWidget>

#include <vector>

class QAction;
class QCheckBox;
class QLabel;
class QTableView;
class QToolBar;
class QlumApplicationInterface;

/// The staged values, in the order in which they are written, and what came of them.
class QlumStagedPage : public QWidget
{
    Q_OBJECT
public:
    /// Makes its model; the application must outlive it.
    explicit QlumStagedPage(QlumApplicationInterface& application, QWidget* parent = nullptr);

    [[nodiscard]] QlumStagedModel& model() { return *m_model; }
    /// As the user has ticked them.
    [[nodiscard]] QlumApplyOptions options() const;
    /// While values are written or put back: nothing can be edited, and Stop works.
    void setRunning(bool isRunning);

    [[nodiscard]] QAction* writeAction() const { return m_write; }   ///< "Write All"
    [[nodiscard]] QAction* revertAction() const { return m_revert; } ///< "Revert"
    [[nodiscard]] QAction* stopAction() const { return m_stop; }     ///< "Stop"

private:
    QAction* add(const char* name, const QString& text, const QString& icon, const QString& toolTip);
    void makeActions();
    void makeTable();
    [[nodiscard]] std::vector<int> selectedPlaces() const;
    void refresh();

    QlumApplicationInterface& m_application;
    QlumStagedModel* m_model;
    QToolBar* m_bar;
    QTableView* m_table = nullptr;
    QLabel* m_summary;
    QCheckBox* m_stops;
    QCheckBox* m_readsBack;
    QAction* m_write = nullptr;
    QAction* m_stop = nullptr;
    QAction* m_revert = nullptr;
    QAction* m_up = nullptr;
    QAction* m_down = nullptr;
    QAction* m_discard = nullptr;
    QAction* m_discardAll = nullptr;
    bool m_isRunning = false;
};
