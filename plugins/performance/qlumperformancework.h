// The runs of a performance view, one after the other.
#pragma once
#include <app/api/qlumjobpool.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtoolservices.h>
#include <plugins/performance/qlummeasuredarguments.h>
#include <plugins/performance/qlummeasurement.h>
#include <plugins/performance/qlumsamplelog.h>
#include <plugins/performance/qlumsweep.h>
#include <uabase/values/uastatus.h>

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace UaClientSdk {
class UaSession;
}
class QlumJob;
class QlumSessionRun;

/// What a run of Write would write.
struct QlumWriteCheck
{
    QlumMeasurementPlan plan; ///< with the nodes that can be written and their values
    QStringList leftOut;      ///< the others, each with its reason
};

/// An endpoint that a server offers.
struct QlumOfferedEndpoint
{
    QString text; ///< for the user
    QlumSideEndpoint endpoint;
};

/// Measures as it is told, off the GUI thread. GUI thread only.
class QlumPerformanceWork : public QObject
{
    Q_OBJECT
public:
    /// The services of the project's servers.
    explicit QlumPerformanceWork(QlumSessionServicesProvider services, QObject* parent = nullptr);
    ~QlumPerformanceWork() override;

    /// Whether something is being measured or prepared.
    [[nodiscard]] bool isBusy() const { return m_isBusy; }
    /// What is being measured just now fills them; null while nothing is.
    [[nodiscard]] const std::shared_ptr<QlumSampleLog>& current() const { return m_current; }
    /// What is being measured just now, of how many runs.
    [[nodiscard]] QString stepText() const;

    /// Where the server is connected; empty while it is not.
    [[nodiscard]] QString endpointText(unsigned int serverId) const;
    /// The most nodes that the server says it takes in a call; 0 when it sets no limit.
    [[nodiscard]] quint32 nodesLimit(unsigned int serverId, QlumMeasuredKind kind) const;

    /// Asks the servers for names and classes of nodes, and of methods for their objects; described() tells,
    /// once for each server.
    void describe(const QlumToolNodes& nodes);
    /// Reads what a Write would write; checked() tells.
    void checkWrite(const QlumMeasurementPlan& plan);
    /// Asks for the arguments that a Call would need; argumentsKnown() tells.
    void readArguments(const QlumMeasurementPlan& plan);
    /// Asks the server which endpoints it offers; offered() tells.
    void listEndpoints(unsigned int serverId);
    /// One run.
    void measure(const QlumMeasurementRun& run);
    /// The same run in steps up to the largest size; swept() tells at the end.
    void sweep(const QlumMeasurementRun& run, QlumSweepOver over, quint32 largest);
    /// The same run over each endpoint, in a session of its own that is closed afterwards.
    void compare(const QlumMeasurementRun& run, const std::vector<QlumOfferedEndpoint>& endpoints);
    /// Ends what is being measured, and begins no further run.
    void cancel();
    /// Nothing of the server is used any more when this returns.
    void endServer(unsigned int serverId);

signals:
    /// As far as they are known now.
    void described(const QlumToolNodes& nodes);
    /// What can be written was read.
    void checked(const QlumWriteCheck& check);
    /// What can be called was asked for.
    void argumentsKnown(const QlumCallCheck& check);
    /// The endpoints are known; none and why not.
    void offered(const std::vector<QlumOfferedEndpoint>& endpoints, const QString& problem);
    /// A run has ended, however.
    void ended(const QlumMeasurementRun& run);
    /// An endpoint could not be measured.
    void leftOut(const QString& endpoint, const QString& reason);
    /// A sweep has ended.
    void swept(const std::vector<QlumSweepPoint>& points, QlumSweepOver over);
    /// Nothing is left to be done.
    void finished();
    /// isBusy() or stepText() is another.
    void stateChanged();

private:
    struct Step
    {
        QlumMeasurementRun run;
        std::optional<QlumSideEndpoint> endpoint;
    };

    /// Works on a job and gives what is to be done with it here.
    using Question = std::function<std::function<void()>(QlumJob& job)>;
    using SideSession = std::shared_ptr<UaClientSdk::UaSession>;

    void prepare(const QString& text, unsigned int serverId, const Question& question);
    void begin(std::deque<Step> steps);
    void next();
    void open(const Step& step);
    void runStep(QlumMeasurementRun run, std::shared_ptr<QlumSessionServices> services, SideSession side);
    void take(const QlumMeasurementRun& run);
    void setBusy(bool isBusy);
    template <typename Measurer>
    void runOn(const std::shared_ptr<Measurer>& measurer, unsigned int serverId, SideSession side);

    const QlumSessionServicesProvider m_services;
    std::deque<Step> m_steps;
    std::size_t m_stepCount = 0;
    bool m_isBusy = false;
    std::optional<QlumSweepOver> m_over;
    std::vector<QlumSweepPoint> m_points;
    unsigned int m_serverId = qlumNoServer; ///< that is being measured
    std::shared_ptr<QlumSampleLog> m_current;
    std::function<void()> m_cancel; ///< ends the run
    quint64 m_opening = 0;          ///< number of the session that is waited for; what others become is late
    QPointer<QlumSessionRun> m_sessionRun;
    QlumJobPool m_questions; ///< which need not wait for a run
    QlumJobPool m_pool;      ///< last: its work ends first
};
