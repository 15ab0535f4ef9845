#pragma once
#include <app/api/qlumrunningwork.h>

#include <QList>
#include <QString>
#include <QTimer>
#include <QWidget>

class QFrame;
class QLabel;
class QProgressBar;
class QToolButton;
class QVBoxLayout;

/// What runs in the background, in the status bar: the oldest piece of work with its progress and a Cancel,
/// and a button with the list of all. Hidden while there is nothing to tell.
class QlumWorkIndicator : public QWidget
{
    Q_OBJECT
public:
    explicit QlumWorkIndicator(QlumRunningWork& work, QWidget* parent = nullptr);
    ~QlumWorkIndicator() override;

    /// "Reading history: 30 of 100, 7 s left" as far as that is known.
    [[nodiscard]] static QString textOf(const QlumRunningWorkRow& row);

private:
    struct Line; ///< of the list

    void watch();
    void refresh();
    void showList();
    void fillList(const QList<QlumRunningWorkRow>& rows);
    [[nodiscard]] Line* addLine(quint64 number);
    static void showProgress(QProgressBar& bar, const QlumRunningWorkRow& row);

    QlumRunningWork& m_work;
    QTimer m_timer; ///< progress is asked for, so that no flood of it reaches the window
    QLabel* m_text = nullptr;
    QProgressBar* m_progress = nullptr;
    QToolButton* m_cancel = nullptr;
    QToolButton* m_all = nullptr;
    QFrame* m_list = nullptr;
    QVBoxLayout* m_lines = nullptr;
    QList<Line*> m_shown; ///< children of the list
    quint64 m_first = 0;  ///< the work that the status bar shows
};
