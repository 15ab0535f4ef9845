// The thread of a recorder.
#pragma once

#include <recording/recorder.h>
#include <uabase/system/uamutex.h>

#include <QString>

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace recording {

/// Turns what sources hold into portions, on the recorder's thread.
class PortionBuilder
{
public:
    /// Of an item so far.
    struct Counts
    {
        ItemFigures figures;
        OpcUa_DateTime waitsSince{}; ///< 0 while the server reports it
        bool isNew = false;          ///< since the figures were taken
    };

    /// Appends everything of the batch, in its order.
    void add(Portion& portion, const QString& server, monitoring::AllSink::Batch& batch);
    /// The item is recorded from now on, as soon as the server reports it.
    void begin(ItemNumber item, OpcUa_DateTime now) { countsOf(item).waitsSince = now; }
    [[nodiscard]] Counts& countsOf(ItemNumber item);
    [[nodiscard]] std::vector<ItemFigures> takeFigures();
    [[nodiscard]] OpcUa_UInt64 lost() const { return m_lost; }

private:
    void addIncident(Portion& portion, const QString& server, const monitoring::Incident& incident);
    void addRecord(Portion& portion, const QString& server, monitoring::AllSink::Value& value);
    void addState(Portion& portion, Mark& mark);

    std::vector<Counts> m_counts;
    std::vector<ItemNumber> m_touched;
    OpcUa_UInt64 m_lost = 0;
};

class RecorderWork
{
public:
    RecorderWork(std::unique_ptr<RecordSink> sink, const RecorderSettings& settings,
                 Surroundings surroundings);
    ~RecorderWork();

    std::shared_ptr<monitoring::AllSink> source(const QString& server);
    ItemNumber addItem(const RecordedItem& item);
    void start();
    void stop();
    void mark(const Mark& mark);
    bool flush(int milliseconds);
    RecorderStatus status() const;
    std::vector<ItemFigures> takeFigures();

private:
    struct Source
    {
        QString server;
        std::shared_ptr<monitoring::AllSink> sink;
    };

    void wake();
    void run();
    void takeAll();
    void look();
    void step();
    void watchClock(std::size_t firstRecord);
    [[nodiscard]] bool isDue() const;
    [[nodiscard]] bool addItems();
    [[nodiscard]] bool writeNew();
    [[nodiscard]] bool commitAll();
    void trouble(const QString& why);
    void recover();
    [[nodiscard]] bool reopen();
    [[nodiscard]] bool openFile();
    [[nodiscard]] bool rewrite();
    void watchSpace();
    void setState(RecorderState state);
    void keepWithin();
    void begin();
    void end();
    void tellStatus();
    [[nodiscard]] Mark markOf(MarkKind kind) const;

    const std::unique_ptr<RecordSink> m_sink;
    const RecorderSettings m_settings;
    const Surroundings m_surroundings;

    // ---- guarded by the mutex
    mutable std::mutex m_mutex;
    std::condition_variable m_wake;
    std::condition_variable m_told;
    std::vector<Source> m_sources;
    std::vector<RecordedItem> m_items; ///< by number - 1
    std::vector<Mark> m_wishes;
    RecorderStatus m_status;
    PortionBuilder m_builder;
    bool m_isWoken = false;
    bool m_isEnding = false;
    OpcUa_UInt64 m_flushWanted = 0;
    OpcUa_UInt64 m_flushDone = 0;

    // ---- the thread's
    Portion m_open;                                       ///< since the last commit
    std::size_t m_writtenRecords = 0, m_writtenMarks = 0; ///< of those
    std::size_t m_addedItems = 0;                         ///< that the sink knows
    OpcUa_Int64 m_lastCommit = 0, m_lastLook = 0, m_retryAt = 0;
    OpcUa_Int64 m_clockOffset = 0; ///< ticks: the clock less the steady one
    OpcUa_DateTime m_pausedAt{};
    OpcUa_DateTime m_troubleAt{};
    OpcUa_DateTime m_startedAt{};
    QString m_troubleText;
    int m_tries = 0;
    bool m_isOpen = false;
    bool m_wasOpen = false;
    RecorderState m_state = RecorderState::Idle;

    std::thread m_thread; ///< the last one: it uses the others
};

} // namespace recording
