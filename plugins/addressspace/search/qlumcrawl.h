#pragma once
#include <app/api/qlumjob.h>
#include <app/api/qlumsessionservices.h>
#include <plugins/addressspace/search/qlumnodeindex.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/browseprogress.h>

#include <QString>
#include <QStringList>

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

/// How far a crawl is.
struct QlumCrawlState
{
    /// What it is doing.
    enum Phase {
        Running,
        Paused,  ///< by the user
        Waiting, ///< for the connection to come back
        Done,    ///< everything that can be reached was looked at
        Ended    ///< before that; remark says why
    };

    Phase phase = Running;
    std::size_t nodes = 0;      ///< found
    std::size_t queue = 0;      ///< found, and to be looked below
    std::size_t references = 0; ///< that the server has told
    std::size_t calls = 0;      ///< service calls
    std::size_t refused = 0;    ///< nodes of which the server did not tell what is below
    std::size_t late = 0;       ///< calls that the server did not answer in time
    QStringList refusals;       ///< some of them, with the reason
    QString remark;             ///< why it ended early
};

/// The user's hand on a crawl. Any thread.
class QlumCrawlControl
{
public:
    /// Holds the crawl before its next call, or lets it go on.
    void setPaused(bool paused);
    /// Whether it is to be held.
    [[nodiscard]] bool isPaused() const;
    /// Ends every wait; there is none any more.
    void stop();
    /// Sleeps for so long; false when it was stopped.
    bool rest(std::chrono::milliseconds time);
    /// Waits while it is paused; false when it was stopped.
    bool waitWhilePaused();

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_isPaused = false;
    bool m_isStopped = false;
};

/// Browses all that is below a node into an index, on the thread of a job: several nodes a call, one call at
/// a time, and after each a rest as long as it took, so that whatever else the session does goes first. Nodes
/// are looked at once however many ways lead to them. A call that the server does not answer in time, or
/// finds too large, is repeated with fewer nodes after all others; a lost connection is waited for.
class QlumCrawl
{
public:
    /// How a crawl goes about it.
    struct Options
    {
        std::size_t maximumNodes = 1000000;          ///< a server may invent ever new ones
        OpcUa_UInt32 nodesPerCall = 100;             ///< at most; the server's limits go first
        OpcUa_UInt32 maximumReferences = 1000;       ///< of one node in an answer
        std::chrono::milliseconds longestRest{200};  ///< after a call
        std::chrono::milliseconds betweenLooks{500}; ///< at a connection that is lost
    };
    /// Hears of the state ten times a second at most, and at the end.
    using Tell = std::function<void(const QlumCrawlState& state)>;

    /// All must outlive the crawl.
    QlumCrawl(QlumJob& job, QlumSessionServices& session, QlumNodeIndex& index, QlumCrawlControl& control,
              Tell tell, Options options);
    /// With the usual options.
    QlumCrawl(QlumJob& job, QlumSessionServices& session, QlumNodeIndex& index, QlumCrawlControl& control,
              Tell tell);

    /// Returns when it is done, or was told to end.
    void run();

private:
    using Number = QlumNodeIndex::Number;
    using Clock = std::chrono::steady_clock;
    struct Rest ///< of a node's references
    {
        Number node;
        UaByteString point;
        UaClientSdk::BrowseProgress pages;
        std::size_t references = 0;
    };

    [[nodiscard]] bool goOn();
    [[nodiscard]] bool waitForConnection();
    [[nodiscard]] std::vector<Number> nextBatch();
    [[nodiscard]] OpcUa_UInt32 batchSize() const;
    void browse(const std::vector<Number>& batch);
    void browseOn(std::vector<Rest> rests);
    void release(const std::vector<Rest>& rests);
    void take(Rest rest, OpcUa_BrowseResult& result, std::vector<Rest>& rests);
    void takeFailure(const std::vector<Number>& batch, const UaStatus& status);
    void refuse(Number node, const UaStatus& status);
    void readTypeNames();
    void readTypeNames(const std::vector<Number>& types);
    [[nodiscard]] QlumSessionServices::Settings settings() const;
    template <typename Call>
    UaStatus timed(Call&& call);
    void tell(bool isLast);

    QlumJob& m_job;
    QlumSessionServices& m_session;
    QlumNodeIndex& m_index;
    QlumCrawlControl& m_control;
    const Tell m_tell;
    const Options m_options;
    UaStringArray m_namespaces;
    std::deque<Number> m_queue;
    std::deque<std::vector<Number>> m_slow; ///< what was not answered, to be asked again in smaller groups
    std::vector<Number> m_fresh;
    OpcUa_UInt32 m_points; ///< how many continuation points the server seems to keep; 0: any number
    OpcUa_UInt32 m_lastTimeout = 0;
    Number m_namedTypes = 0;
    int m_broken = 0; ///< calls in a row that the link did not survive
    QlumCrawlState m_state;
    Clock::time_point m_told;
};
