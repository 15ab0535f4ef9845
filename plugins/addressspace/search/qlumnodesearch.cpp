#include <plugins/addressspace/search/qlumnodesearch.h>

#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uastatus.h>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace {
constexpr QlumNodeIndex::Number slice = 512; // nodes that are taken out of the index at a time
constexpr std::size_t portion = 1000;        // hits that are told at a time
constexpr int searchThreads = 3;             // searches that were given up may still wait for the server
} // namespace

QlumDetailsWish QlumNodeQuery::wish() const
{
    QlumDetailsWish wish;
    wish.description = showsDetails || !description.isEmpty();
    wish.typeAndUnit = showsDetails || !dataType.isEmpty() || !unit.isEmpty();
    wish.access = showsDetails || mustBeReadable || mustBeWritable;
    return wish;
}

// Everything that a job needs; jobs do not change it.
struct QlumNodeSearch::Scan
{
    Scan(std::shared_ptr<const QlumNodeIndex> searched, const QlumNodeQuery& asked,
         QlumNodeIndex::Number below)
        : index(std::move(searched)), query(asked), branchRoot(below),
          text(asked.text, asked.isExpression ? QlumTextPattern::Expression : QlumTextPattern::Wildcards,
               sensitivity()),
          type(asked.typeDefinition, QlumTextPattern::Wildcards, sensitivity()),
          description(asked.description, QlumTextPattern::Wildcards, sensitivity()),
          dataType(asked.dataType, QlumTextPattern::Wildcards, sensitivity()),
          unit(asked.unit, QlumTextPattern::Wildcards, sensitivity())
    {
        if (branchRoot != 0)
            branch = index->branch(branchRoot); // of an index that is complete
    }

    struct Candidate
    {
        QlumNodeIndex::Number number;
        OpcUa_UInt32 nodeClass;
        QlumNodeIndex::Number type;
        UaNodeId id;
        QString name;
        QString browseName; // empty when it is the name
    };

    [[nodiscard]] Qt::CaseSensitivity sensitivity() const
    {
        return query.isCaseSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive;
    }
    [[nodiscard]] std::vector<Candidate> candidates(QlumNodeIndex::Number first) const;
    [[nodiscard]] bool isOfType(QlumNodeIndex::Number type, std::vector<signed char>& known) const;
    [[nodiscard]] QlumTextPattern::Outcome matches(const Candidate& candidate) const;
    [[nodiscard]] bool matches(const QlumNodeDetails& details) const;

    const std::shared_ptr<const QlumNodeIndex> index;
    const QlumNodeQuery query;
    const QlumNodeIndex::Number branchRoot;
    std::vector<bool> branch; // empty: all
    const QlumTextPattern text;
    const QlumTextPattern type;
    const QlumTextPattern description;
    const QlumTextPattern dataType;
    const QlumTextPattern unit;
};

// Taken out of the index quickly, so that whoever fills it is not held up by a hard pattern.
std::vector<QlumNodeSearch::Scan::Candidate>
QlumNodeSearch::Scan::candidates(QlumNodeIndex::Number first) const
{
    std::vector<Candidate> taken;
    index->visit(first, first + slice, [&](QlumNodeIndex::Number number, const QlumNodeIndex::Node& node) {
        if (query.nodeClasses != 0 && (node.nodeClass & query.nodeClasses) == 0)
            return;
        if (!branch.empty() && (number >= branch.size() || !branch[number]))
            return;
        const bool isByName = query.field == QlumNodeQuery::Name && !text.isEmpty();
        taken.push_back(
            {number, node.nodeClass, node.type, node.id,
             isByName ? QlumNodeIndex::textOf(node.name) : QString(),
             isByName && node.browseName != node.name ? QlumNodeIndex::textOf(node.browseName) : QString()});
    });
    return taken;
}

bool QlumNodeSearch::Scan::isOfType(QlumNodeIndex::Number number, std::vector<signed char>& known) const
{
    if (type.isEmpty())
        return true;
    if (number == QlumNodeIndex::none)
        return false;
    if (number >= known.size())
        known.resize(number + 1, -1);
    if (known[number] < 0)
        known[number] = type.match(index->typeName(number)) == QlumTextPattern::Yes ||
                        type.match(toQString(index->typeId(number).toXmlString())) == QlumTextPattern::Yes;
    return known[number] > 0;
}

QlumTextPattern::Outcome QlumNodeSearch::Scan::matches(const Candidate& candidate) const
{
    if (text.isEmpty())
        return QlumTextPattern::Yes;
    if (query.field == QlumNodeQuery::NodeId)
        return text.match(toQString(candidate.id.toXmlString()));
    if (query.field == QlumNodeQuery::Path)
        return text.match(index->path(candidate.number));
    const QlumTextPattern::Outcome outcome = text.match(candidate.name);
    return outcome == QlumTextPattern::Yes || candidate.browseName.isEmpty()
               ? outcome
               : text.match(candidate.browseName);
}

bool QlumNodeSearch::Scan::matches(const QlumNodeDetails& details) const
{
    const auto fits = [](const QlumTextPattern& pattern, const QString& detail) {
        return pattern.isEmpty() || pattern.match(detail) == QlumTextPattern::Yes;
    };
    return fits(description, details.description) && fits(dataType, details.dataType) &&
           fits(unit, details.unit) && (!query.mustBeReadable || details.isReadable) &&
           (!query.mustBeWritable || details.isWritable);
}

namespace {
using Session = std::shared_ptr<QlumSessionServices>;

// Of candidates that pass by what was browsed those that pass by what is read.
template <typename Scan, typename Candidates>
UaStatus readAndAppend(QlumJob& job, const Session& session, const Scan& scan, const Candidates& passed,
                       QlumSearchHits& hits)
{
    const QlumDetailsWish wish = scan.query.wish();
    for (std::size_t first = 0; first < passed.size(); first += qlumDetailsPortion) {
        if (job.isCancelled())
            return {};
        std::vector<QlumAskedNode> asked;
        for (std::size_t i = first; i < passed.size() && i < first + qlumDetailsPortion; ++i)
            asked.push_back({passed[i].id, passed[i].nodeClass});
        std::vector<QlumNodeDetails> details;
        const UaStatus status = session ? qlumReadDetails(job, session, asked, wish, details)
                                        : UaStatus(OpcUa_BadServerNotConnected);
        if (status.isBad())
            return status;
        for (std::size_t i = 0; i < details.size(); ++i)
            if (scan.matches(details[i]))
                hits.push_back({passed[first + i].number,
                                std::make_shared<const QlumNodeDetails>(std::move(details[i]))});
    }
    return {};
}
} // namespace

QlumNodeSearch::QlumNodeSearch(QlumSessionServicesProvider services, QObject* parent)
    : QObject(parent), m_services(std::move(services)), m_pool(searchThreads)
{
}

QlumNodeSearch::~QlumNodeSearch() = default;

bool QlumNodeSearch::start(unsigned int serverId, std::shared_ptr<const QlumNodeIndex> index,
                           const QlumNodeQuery& query, QlumNodeIndex::Number branch)
{
    cancel();
    m_next = 0;
    m_hits = 0;
    m_tooHard = 0;
    m_failure.clear();
    m_wasCancelled = false;
    m_serverId = serverId;
    const auto scan = std::make_shared<const Scan>(std::move(index), query, branch);
    m_patternError = scan->text.error();
    if (!m_patternError.isEmpty())
        return false;
    m_scan = scan;
    goOn();
    return true;
}

void QlumNodeSearch::goOn()
{
    if (!m_scan || isCut() || m_wasCancelled || !m_failure.isEmpty())
        return;
    m_isDue = m_ticket != 0;
    if (m_isDue || m_next >= m_scan->index->size())
        return;
    const bool reads = m_scan->query.wish().any();
    const auto function = [this, scan = m_scan, first = m_next, serverId = m_serverId, services = m_services,
                           reads](QlumJob& job) {
        const Session session = reads ? services(serverId) : nullptr;
        std::vector<signed char> types;
        QlumNodeIndex::Number next = first;
        UaStatus status;
        for (QlumSearchHits hits; next < scan->index->size() && !job.isCancelled() && !status.isBad();) {
            std::size_t tooHard = 0;
            std::vector<Scan::Candidate> passed;
            for (Scan::Candidate& candidate : scan->candidates(next)) {
                if (job.isCancelled() || !scan->isOfType(candidate.type, types))
                    continue;
                const QlumTextPattern::Outcome outcome = scan->matches(candidate);
                tooHard += outcome == QlumTextPattern::TooHard ? 1 : 0;
                if (outcome == QlumTextPattern::Yes)
                    passed.push_back(std::move(candidate));
            }
            if (reads)
                status = readAndAppend(job, session, *scan, passed, hits);
            else
                for (const Scan::Candidate& candidate : passed)
                    hits.push_back({candidate.number, nullptr});
            next = std::min(next + slice, scan->index->size());
            job.setProgress(next, scan->index->size());
            if (!reads && hits.size() < portion && next < scan->index->size() && tooHard == 0)
                continue;
            job.post([this, hits = std::exchange(hits, {}), next, tooHard] {
                m_next = next;
                m_tooHard += tooHard;
                take(hits);
            });
        }
        if (status.isBad())
            job.post([this, why = qlumResultInWords(status)] { m_failure = why; });
    };
    m_ticket = m_pool.add({reads ? tr("Reading nodes for a search") : QString(), m_serverId}, function,
                          [this](QlumWorkEnd end) {
                              m_ticket = 0;
                              if (end == QlumWorkEnd::Cancelled)
                                  m_wasCancelled = true;
                              if (end == QlumWorkEnd::Done && m_isDue)
                                  goOn();
                              if (m_ticket == 0)
                                  emit idle();
                          });
}

void QlumNodeSearch::take(const QlumSearchHits& nodes)
{
    if (nodes.empty() || isCut())
        return;
    const std::size_t room = maximumHits - m_hits;
    m_hits += std::min(room, nodes.size());
    if (nodes.size() <= room)
        emit found(nodes);
    else
        emit found(QlumSearchHits(nodes.begin(), nodes.begin() + static_cast<std::ptrdiff_t>(room)));
    if (isCut()) {
        m_pool.giveUp(std::exchange(m_ticket, 0));
        emit idle();
    }
}

void QlumNodeSearch::cancel()
{
    m_pool.cancelAll();
    m_ticket = 0;
    m_isDue = false;
    m_scan.reset();
}

void QlumNodeSearch::endServer(unsigned int serverId)
{
    if (serverId == m_serverId)
        cancel();
    m_pool.endServer(serverId);
}
