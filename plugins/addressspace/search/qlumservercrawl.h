#pragma once
#include <app/api/qlumjobpool.h>
#include <app/api/qlumsessionservices.h>
#include <plugins/addressspace/search/qlumcrawl.h>
#include <plugins/addressspace/search/qlumnodeindex.h>
#include <uabase/values/uanodeid.h>

#include <QDateTime>
#include <QObject>
#include <QString>

#include <memory>

/// What is known of one server's nodes by a crawl, kept for its session so that the next search needs none.
/// GUI thread.
class QlumServerCrawl : public QObject
{
    Q_OBJECT
public:
    /// Knows nothing yet.
    QlumServerCrawl(unsigned int serverId, QlumSessionServicesProvider services, QObject* parent = nullptr);
    ~QlumServerCrawl() override;

    /// Begins anew below a node, in the background; what was known is dropped.
    void start(const UaNodeId& root, const QString& name, OpcUa_UInt32 nodeClass);
    /// Holds it, or lets it go on.
    void setPaused(bool paused);
    /// Ends it; what was found stays.
    void cancel();
    /// Nothing of it holds any more: the session is another one, or its namespaces are.
    void forget();
    /// The server has told of changes since.
    void setOutdated() { m_isOutdated = m_isOutdated || m_index; }

    /// The node's number where the index has all that is below it; none where it has not.
    [[nodiscard]] QlumNodeIndex::Number answers(const UaNodeId& root) const;
    /// Null while nothing is known.
    [[nodiscard]] std::shared_ptr<const QlumNodeIndex> index() const { return m_index; }
    /// Of the last crawl.
    [[nodiscard]] const QlumCrawlState& state() const { return m_state; }
    /// Under way, or held.
    [[nodiscard]] bool isRunning() const { return m_ticket != 0; }
    /// Invalid while no crawl has come to its end.
    [[nodiscard]] QDateTime finishedAt() const { return m_finishedAt; }
    /// Whether the server has told of changes.
    [[nodiscard]] bool isOutdated() const { return m_isOutdated; }

signals:
    /// The index has grown, or the state is another one.
    void progressed();
    /// The crawl is over; state() says how.
    void ended();

private:
    void take(const QlumCrawlState& state);
    void finish(QlumCrawlState::Phase phase);

    const unsigned int m_serverId;
    const QlumSessionServicesProvider m_services;
    std::shared_ptr<QlumNodeIndex> m_index;
    std::shared_ptr<QlumCrawlControl> m_control;
    QlumCrawlState m_state;
    QDateTime m_finishedAt;
    bool m_isOutdated = false;
    bool m_isWhole = false; ///< the index has all that is below its root, as far as it can be had
    QlumJobPool::Ticket m_ticket = 0;
    QlumJobPool m_pool; ///< last: its work ends first
};
