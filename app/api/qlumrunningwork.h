#pragma once
#include <app/api/qlumapplicationinterface.h>

#include <QList>
#include <QObject>
#include <QString>
#include <QtGlobal>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QlumJobProgress;

/// One piece of work as the user sees it.
struct QlumRunningWorkRow
{
    quint64 number = 0;                   ///< for QlumRunningWork::cancel
    QString text;                         ///< what is being done
    unsigned int serverId = qlumNoServer; ///< whose services it calls
    qint64 done = 0;                      ///< in units of the work
    qint64 total = 0;                     ///< 0: unknown
    std::optional<qint64> left;           ///< ms, by how quickly it went so far
    bool isWaiting = false;               ///< for other work of its pool
    bool isCancelled = false;             ///< asked to end
};

/// All work of all job pools that has a text, for one list with a Cancel. GUI thread.
class QlumRunningWork : public QObject
{
    Q_OBJECT
public:
    /// Milliseconds that only go forward.
    using Clock = std::function<qint64()>;

    /// An empty list; times are those of the clock.
    explicit QlumRunningWork(Clock clock);
    ~QlumRunningWork() override;

    /// The one of the program.
    [[nodiscard]] static QlumRunningWork& instance();

    /// Work that ends sooner is not worth a line that comes and goes.
    static constexpr qint64 shownAfter = 500;

    /// Adds work that is about to wait for its turn.
    void insert(std::shared_ptr<QlumJobProgress> progress);
    /// What has gone on long enough to be shown, the oldest first. Whoever shows it asks again and again
    /// until isIdle(): nothing tells of progress.
    [[nodiscard]] QList<QlumRunningWorkRow> rows();
    /// Whether all work has ended.
    [[nodiscard]] bool isIdle();
    /// Asks one piece of work to end; its owner hears of that.
    void cancel(quint64 number);
    /// Asks all work that calls a server's services to end.
    void cancelServer(unsigned int serverId);

signals:
    /// There is work, and there was none before.
    void begun();

private:
    struct Known
    {
        std::shared_ptr<QlumJobProgress> progress;
        qint64 since = 0;                 ///< added
        std::optional<qint64> measuredAt; ///< when progress was seen for the first time
        qint64 measuredDone = 0;
    };

    void forgetEnded();
    [[nodiscard]] static std::optional<qint64> timeLeft(Known& known, qint64 now);

    const Clock m_clock;
    std::vector<Known> m_known;
};
