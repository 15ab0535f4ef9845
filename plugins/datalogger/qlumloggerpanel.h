#pragma once
#include <recording/recorder.h>

#include <QString>
#include <QWidget>

class QLabel;
class QlumElidedLabel;

/// The state of a recording at a glance.
class QlumLoggerPanel : public QWidget
{
    Q_OBJECT
public:
    /// Of no recording.
    explicit QlumLoggerPanel(QWidget* parent = nullptr);

    /// Once a second. The items whose server is not connected are no part of what is recorded.
    void show(const recording::RecorderStatus& status, bool isStopping, int cutOffItems = 0);
    using QWidget::show;

private:
    [[nodiscard]] QLabel* makeFigure(const char* name, const QString& what);
    void showState(const recording::RecorderStatus& status, bool isStopping, int cutOffItems);

    QLabel* m_icon;
    QLabel* m_state;
    QlumElidedLabel* m_path;
    QLabel* m_since;
    QLabel* m_records;
    QLabel* m_rate;
    QLabel* m_queue;
    QLabel* m_size;
    QLabel* m_free;
    QLabel* m_lost;
    QLabel* m_error;
    OpcUa_UInt64 m_recordsBefore = 0;
    OpcUa_DateTime m_before{};
    double m_perSecond = 0;
};

/// "12.3 MB".
[[nodiscard]] QString qlumLoggerBytes(qint64 bytes);
