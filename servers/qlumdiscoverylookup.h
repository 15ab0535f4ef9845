#pragma once
#include <app/api/qlumjob.h>
#include <app/api/qlumjobpool.h>

#include <QMetaType>
#include <QObject>
#include <QString>
#include <QVector>
#include <QtGlobal>

#include <functional>
#include <set>

/// A server that somebody has told of, cut to what can be shown.
struct QlumFoundServer
{
    QString name;
    QString url;     ///< as it was told: it may be no usable one
    QString details; ///< application URI or capabilities, for a tool tip

    friend bool operator==(const QlumFoundServer&, const QlumFoundServer&) = default;
};

/// What a discovery server has answered.
struct QlumDiscoveryAnswer
{
    unsigned int status = 0;
    QVector<QlumFoundServer> servers; ///< at most QlumDiscoveryLimits::servers
    int told = 0;                     ///< how many there were in the answer
};
Q_DECLARE_METATYPE(QlumDiscoveryAnswer)

/// What a server can be asked about others.
enum class QlumDiscoveryQuestion {
    Servers,  ///< which it knows: itself, or those that registered with it
    Network,  ///< which it has heard of
    Directory ///< which its directory lists
};

/// Bounds for what discovery servers may say.
namespace QlumDiscoveryLimits {
inline constexpr int servers = 1000;
inline constexpr int urlsOfServer = 10;
inline constexpr int nameLength = 256;
inline constexpr int lookUps = 8; ///< at the same time
} // namespace QlumDiscoveryLimits

/// Asks discovery servers side by side, a few at a time, without blocking; the others wait for their turn.
/// What is under way ends with this object, which does not wait for any server. GUI thread.
class QlumDiscoveryLookup : public QObject
{
    Q_OBJECT
public:
    /// Number of a question, never 0.
    using Ticket = quint64;
    /// Asks, on a thread of the look-up; the job tells when to give up.
    using Asker = std::function<QlumDiscoveryAnswer(QlumJob& job, QlumDiscoveryQuestion question,
                                                    const QString& url, int milliseconds)>;

    /// Null: asks the servers themselves.
    explicit QlumDiscoveryLookup(Asker asker = nullptr, QObject* parent = nullptr);
    ~QlumDiscoveryLookup() override;

    Ticket ask(QlumDiscoveryQuestion question, const QString& url);
    /// Ends everything unheard.
    void cancel();
    /// Questions that are not answered yet.
    [[nodiscard]] int pending() const { return static_cast<int>(m_pending.size()); }

signals:
    /// Once for each question that was not cancelled here; BadRequestCancelledByClient when the user has
    /// ended it in the list of running work.
    void answered(quint64 ticket, const QlumDiscoveryAnswer& answer);

private:
    void deliver(Ticket ticket, const QlumDiscoveryAnswer& answer);

    const Asker m_asker;
    Ticket m_last = 0;
    std::set<Ticket> m_pending;
    QlumJobPool m_pool; ///< last: joined first
};
