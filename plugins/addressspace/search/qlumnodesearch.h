#pragma once
#include <app/api/qlumjob.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlumsessionservices.h>
#include <opcua/opcua_types.h>
#include <plugins/addressspace/search/qlumnodedetails.h>
#include <plugins/addressspace/search/qlumnodeindex.h>
#include <plugins/addressspace/search/qlumtextpattern.h>
#include <uabase/values/uanodeid.h>

#include <QObject>
#include <QString>

#include <deque>
#include <memory>
#include <vector>

/// What the user searches for. What a browse tells is looked at first; only of nodes that pass is the rest
/// read.
struct QlumNodeQuery
{
    /// Where the text is looked for.
    enum Field {
        Name,   ///< display name or browse name
        NodeId, ///< "ns=2;s=Line.Motor"
        Path    ///< display names from the begin of the search
    };

    QString text;                 ///< empty: any
    Field field = Name;           ///< where it is
    bool isExpression = false;    ///< a regular expression; the other patterns never are
    bool isCaseSensitive = false; ///< all patterns
    OpcUa_UInt32 nodeClasses = 0; ///< mask; 0: all
    QString typeDefinition;       ///< pattern of its name or id; empty: any
    QString description;          ///< pattern; has to be read
    QString dataType;             ///< the same, of its name
    QString unit;                 ///< the same
    bool mustBeReadable = false;  ///< by the user who is logged in; has to be read
    bool mustBeWritable = false;  ///< the same
    bool showsDetails = false;    ///< reads and shows them, whatever is searched for

    /// What has to be read of nodes that pass otherwise.
    [[nodiscard]] QlumDetailsWish wish() const;
};

/// A node that was found.
struct QlumSearchHit
{
    QlumNodeIndex::Number number = 0;               ///< in the index
    std::shared_ptr<const QlumNodeDetails> details; ///< null when they were not read
};
using QlumSearchHits = std::deque<QlumSearchHit>;

/// Looks through an index, also one that still grows, in the background, and tells what it finds as it comes.
/// GUI thread.
class QlumNodeSearch : public QObject
{
    Q_OBJECT
public:
    /// More hits help nobody, and have to be kept.
    static constexpr std::size_t maximumHits = 50000;

    /// Reads through these services where a search asks for more than the index has.
    explicit QlumNodeSearch(QlumSessionServicesProvider services, QObject* parent = nullptr);
    ~QlumNodeSearch() override;

    /// Begins anew. The branch is the number of a node in the index; false when a pattern is none.
    bool start(unsigned int serverId, std::shared_ptr<const QlumNodeIndex> index, const QlumNodeQuery& query,
               QlumNodeIndex::Number branch = 0);
    /// The index has grown, or is complete.
    void goOn();
    /// Nothing more comes of it.
    void cancel();
    /// As cancel(), and nothing calls the server any more when this returns.
    void endServer(unsigned int serverId);

    /// Whether it has not looked at everything that is there.
    [[nodiscard]] bool isRunning() const { return m_ticket != 0; }
    /// How many nodes it has looked at.
    [[nodiscard]] QlumNodeIndex::Number looked() const { return m_next; }
    /// What was found so far.
    [[nodiscard]] std::size_t hits() const { return m_hits; }
    /// Whether there were more hits than are told.
    [[nodiscard]] bool isCut() const { return m_hits >= maximumHits; }
    /// On how many texts an expression was given up.
    [[nodiscard]] std::size_t tooHard() const { return m_tooHard; }
    /// Why details could not be read; empty when they could.
    [[nodiscard]] QString failure() const { return m_failure; }
    /// Whether the user has ended it among the running work.
    [[nodiscard]] bool wasCancelled() const { return m_wasCancelled; }
    /// Why start() was false.
    [[nodiscard]] QString patternError() const { return m_patternError; }

signals:
    /// More nodes were found.
    void found(const QlumSearchHits& nodes);
    /// Everything in the index was looked at, for the time being.
    void idle();

private:
    struct Scan;

    void take(const QlumSearchHits& nodes);

    const QlumSessionServicesProvider m_services;
    unsigned int m_serverId = qlumNoServer;
    std::shared_ptr<const Scan> m_scan; ///< null before the first start
    QlumNodeIndex::Number m_next = 0;
    std::size_t m_hits = 0;
    std::size_t m_tooHard = 0;
    QString m_failure;
    QString m_patternError;
    bool m_wasCancelled = false;
    bool m_isDue = false; ///< the index has grown since the job began
    QlumJobPool::Ticket m_ticket = 0;
    QlumJobPool m_pool; ///< last: its work ends first
};
