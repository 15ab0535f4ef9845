#pragma once
#include <app/api/qlumservicerecorder.h>

#include <QString>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <memory>

class QAction;
class QComboBox;
class QLabel;
class QLineEdit;
class QSpinBox;
class QToolBar;
class QTreeView;
class QlumServiceDetails;
class QlumServicesFilter;
class QlumServicesModel;
class QlumServiceTimeline;
class QlumViewState;

/// Content of the dock "Services": every service call while it is switched on, and the one that is selected
/// in all detail.
class QlumServicesView : public QWidget
{
    Q_OBJECT
public:
    explicit QlumServicesView(std::shared_ptr<QlumServiceRecorder> recorder, QWidget* parent = nullptr);
    ~QlumServicesView() override;

private:
    QToolBar* makeToolBar();
    void makeTable();
    void makeDetails();
    void connectParts();
    void take();
    void fillChoices();
    void showCurrent();
    void tellState();
    void scaleTimes();

    const std::shared_ptr<QlumServiceRecorder> m_recorder;
    QlumViewState* m_state;
    QlumServicesModel* m_model;
    QlumServicesFilter* m_filter;
    QlumServiceDetails* m_details;
    QlumServiceTimeline* m_timeline;
    QAction* m_record;
    QAction* m_clear;
    QComboBox* m_server;
    QComboBox* m_service;
    QComboBox* m_outcome;
    QSpinBox* m_duration;
    QLineEdit* m_text;
    QLabel* m_message;
    QTreeView* m_table;
    QTreeView* m_tree;
    QTimer m_timer;       ///< runs while there is something to take
    int m_dropped = 0;    ///< calls that came too fast, since the list was cleared
    bool m_follow = true; ///< the newest call is kept in sight
    quint64 m_shown = 0;  ///< number of the call in the details; 0 for none
    bool m_isShownEnded = false;
};
