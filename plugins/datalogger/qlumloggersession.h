#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlummonitoring.h>
#include <plugins/datalogger/qlumloggeritem.h>
#include <recording/recorder.h>

#include <QObject>
#include <QString>

#include <memory>
#include <vector>

class QlumLoggerModel;

/// Has the items of a view watched and recorded. GUI thread.
class QlumLoggerSession : public QObject
{
    Q_OBJECT
public:
    /// All must outlive it.
    QlumLoggerSession(QlumApplicationInterface& application, QlumLoggerModel& model,
                      QlumMonitoringProvider monitoring, QlumJobPool& pool, QObject* parent = nullptr);
    ~QlumLoggerSession() override; ///< stops, and waits for the disk

    /// A new recording, or more of the one that is there, with all items that are on.
    void start(const QlumLoggerSetup& setup);
    /// Nothing comes any more; the file is closed in the background.
    void stop();
    [[nodiscard]] bool isRunning() const { return m_recorder != nullptr; } ///< between start and stop
    [[nodiscard]] bool isStopping() const { return m_isStopping; }         ///< the file is not closed yet

    /// Items that are switched on while it runs.
    void begin(const std::vector<quint32>& keys);
    /// Items that are switched off, removed or get a new place.
    void end(const std::vector<quint32>& keys);
    /// Other settings for these.
    void applySettings(const std::vector<quint32>& keys);
    /// Asks servers again for what they refused.
    void retry();
    /// A line of the user's, with the time of now.
    void note(const QString& text);
    /// Of the recording that runs, or of the last one.
    [[nodiscard]] recording::RecorderStatus status() const;
    /// Tells the model what has come.
    void takeFigures();

signals:
    /// Running or not.
    void changed();

private:
    [[nodiscard]] recording::RecordedItem recordedItem(const QlumLoggerItem& item) const;

    QlumApplicationInterface& m_application;
    QlumLoggerModel& m_model;
    const QlumMonitoringProvider m_monitoring;
    QlumJobPool& m_pool;
    std::shared_ptr<recording::Recorder> m_recorder;
    recording::RecorderStatus m_lastStatus;
    bool m_isStopping = false;
};
