#pragma once
#include <QDateTime>
#include <QString>
#include <QTime>
#include <QWidget>

class QDateTimeEdit;
class QGroupBox;
class QPushButton;
class QTimeEdit;
class QVBoxLayout;

/// What the user asks a trend view for: a time range to read once, or a span up to now to read again and
/// again.
class QlumTrendPanel : public QWidget
{
    Q_OBJECT
public:
    /// The last hour, and five minutes every ten seconds.
    explicit QlumTrendPanel(QWidget* parent = nullptr);

    [[nodiscard]] QDateTime startTime() const; ///< of a single update
    [[nodiscard]] QDateTime endTime() const;   ///< the same; may be earlier
    /// Shows a start that was found.
    void setStartTime(const QDateTime& time);
    /// Shows an end.
    void setEndTime(const QDateTime& time);

    [[nodiscard]] QTime timespan() const;       ///< up to now, of a cyclic update
    [[nodiscard]] QTime updateInterval() const; ///< from one to the next
    /// Shows a span.
    void setTimespan(const QTime& span);
    /// Shows an interval.
    void setUpdateInterval(const QTime& interval);

    [[nodiscard]] bool isCyclic() const; ///< which of the two is chosen
    /// Chooses one of the two.
    void setCyclic(bool isCyclic);
    /// Whether cyclic updates are under way: the button reads "Stop", and the span cannot be changed.
    void setRunning(bool isRunning);
    /// Adds a group of settings below the others.
    void addGroup(QWidget* group);

signals:
    void updateClicked();       ///< "Update"
    void getStartTimeClicked(); ///< "Get Start Time"
    void startStopClicked();    ///< "Start" or "Stop"
    void changed();             ///< something was changed, by whomever

private:
    [[nodiscard]] QGroupBox* makeSingle();
    [[nodiscard]] QGroupBox* makeCyclic();

    QVBoxLayout* m_layout;
    QGroupBox* m_single;
    QGroupBox* m_cyclic;
    QDateTimeEdit* m_start;
    QDateTimeEdit* m_end;
    QTimeEdit* m_timespan;
    QTimeEdit* m_interval;
    QPushButton* m_startStop;
};
