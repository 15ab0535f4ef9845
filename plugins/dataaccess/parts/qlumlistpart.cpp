#include <plugins/dataaccess/parts/qlumlistpart.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlumnodeaddress.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/dataaccess/parts/qlumstagedpart.h>
#include <plugins/dataaccess/parts/qlumworkcommand.h>
#include <plugins/dataaccess/qlumdamodel.h>
#include <plugins/dataaccess/qlumdataitem.h>
#include <uabase/values/uanodeid.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QHash>
#include <QInputDialog>
#include <QLatin1String>
#include <QList>
#include <QMetaObject>
#include <QPointer>
#include <QStringList>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <span>
#include <utility>
#include <vector>

namespace {
constexpr qint64 maximumFileSize = 64LL * 1024 * 1024;
const QLatin1String listTopic("list");
constexpr std::size_t linesOfPortion = 2000; // that the GUI thread takes in one turn

bool isFound(const QlumFoundNode& node)
{
    return node.reason.isEmpty() && !node.nodeId.isNull();
}
} // namespace

struct QlumListPart::Given
{
    QlumNodeList list;
    std::map<QString, unsigned int> servers; // by the names in the list; the empty one is the usual server
};

// Lines on their way to staged values.
struct QlumListPart::Portion
{
    struct Line
    {
        Node node;
        quint32 row = 0; // 0: one of those that are added
        QString text;
    };

    std::vector<QlumDataItem> added; // rows that there are none of yet
    std::vector<Node> nodes;         // of those
    std::vector<quint32> keys;       // of those, once they are there
    std::vector<Line> lines;
    std::vector<QlumStagedRow> faults;
};

QlumListPart::QlumListPart(QlumDaHost& host, QlumStagedPart& staged) : m_host(host), m_staged(staged)
{
    makeCommands();
}

void QlumListPart::makeCommands()
{
    QAction* paste = qlumWorkCommand(
        this, "pasteNodes", tr("&Paste Nodes"),
        tr("Adds a row for each line of the clipboard: node ids with the index or the URI of "
           "their namespace, or browse paths."),
        [this] { takeList(QApplication::clipboard()->text().toUtf8()); });
    QAction* loadRows = qlumWorkCommand(
        this, "loadNodes", tr("&Load List of Nodes..."),
        tr("Adds a row for each line of a CSV file with node ids or browse paths."),
        [this] { load(Purpose::Rows); });
    QAction* loadValues = qlumWorkCommand(
        this, "loadNewValues", tr("Load New &Values..."),
        tr("Stages the values of a CSV file with the columns Node Id and Value. Nothing is "
           "written before you say so."),
        [this] { load(Purpose::Values); });
    QAction* again =
        qlumWorkCommand(this, "lookAgain", tr("Look for Unresolved Rows &Again"),
                        tr("Asks the servers again for what named no node, of the selected rows or of all."),
                        [this] { lookAgain(); });
    m_host.addCommands(tr("&Lists"), {paste, loadRows, loadValues, again});
}

// ---- reading

void QlumListPart::takeList(const QByteArray& bytes)
{
    read(bytes, {}, Purpose::Rows);
}

void QlumListPart::load(Purpose purpose)
{
    const QString path = QFileDialog::getOpenFileName(
        m_host.widget(), purpose == Purpose::Values ? tr("Load New Values") : tr("Load List of Nodes"),
        QDir::homePath(), tr("Lists (*.csv *.txt);;All files (*)"));
    if (!path.isEmpty())
        read({}, path, purpose);
}

void QlumListPart::tellFault(const QString& what, const QString& why)
{
    m_host.tell({QlumMessage::Error, listTopic, what, why, {}, nullptr});
}

// A file when there is a path. A list of 100,000 lines takes about a second.
void QlumListPart::read(const QByteArray& bytes, const QString& path, Purpose purpose)
{
    const auto function = [this, bytes, path, purpose](QlumJob& job) {
        const auto given = std::make_shared<Given>();
        QlumNodeList& list = given->list;
        const QByteArray content = path.isEmpty() ? bytes : contentOf(path, list.fault);
        if (list.fault.isEmpty())
            list = qlumReadNodeList(content, [&job](qint64 done, qint64 total) {
                job.setProgress(done, total);
                return !job.isCancelled();
            });
        for (const QlumNodeLine& line : list.lines)
            given->servers.emplace(line.server, qlumNoServer);
        if (job.isCancelled())
            return;
        job.post([this, given, purpose] {
            // the user may be asked, which is not to be done in the middle of the pool
            QMetaObject::invokeMethod(
                this, [this, given, purpose] { take(given, purpose); }, Qt::QueuedConnection);
        });
    };
    m_host.pool().add({tr("Reading a list of nodes"), qlumNoServer}, function);
}

QByteArray QlumListPart::contentOf(const QString& path, QString& fault)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        fault = tr("%1 cannot be read: %2.").arg(QDir::toNativeSeparators(path), file.errorString());
    else if (file.size() > maximumFileSize)
        fault = tr("%1 is too large. Lists may have up to %2 MB.")
                    .arg(QDir::toNativeSeparators(path))
                    .arg(maximumFileSize / 1024 / 1024);
    return fault.isEmpty() ? file.readAll() : QByteArray();
}

void QlumListPart::take(const std::shared_ptr<Given>& given, Purpose purpose)
{
    const QlumNodeList& list = given->list;
    const bool lacksValues = purpose == Purpose::Values && list.fault.isEmpty() && !list.hasValues;
    if (!list.fault.isEmpty() || lacksValues)
        return tellFault(tr("Nothing was taken from the list."),
                         lacksValues ? tr("It has no column with values.") : list.fault);
    for (const unsigned int id : m_host.application().projectServerIds())
        if (const auto named = given->servers.find(m_host.application().serverName(id));
            named != given->servers.end())
            named->second = id;
    const QPointer<QlumListPart> guard(this);
    if (const auto usual = given->servers.find(QString()); usual != given->servers.end()) {
        bool isGivenUp = false;
        usual->second = usualServer(isGivenUp);
        if (isGivenUp || !guard)
            return; // the view may go while the user is asked
    }
    std::set<unsigned int> servers;
    for (const auto& [name, id] : given->servers)
        servers.insert(id);
    find(
        servers, [given](QlumJob&) { return linesOf(*given); }, purpose, list.remark);
}

QlumListPart::Lines QlumListPart::linesOf(const Given& given)
{
    Lines lines;
    lines.reserve(given.list.lines.size());
    for (const QlumNodeLine& line : given.list.lines) {
        Wanted& wanted = lines.emplace_back();
        wanted.line = line;
        wanted.serverId = given.servers.at(line.server);
        if (wanted.serverId == qlumNoServer)
            wanted.found.reason = tr("The project has no server \"%1\".").arg(line.server);
    }
    return lines;
}

// The one that is worked with; only where that is open the user is asked.
unsigned int QlumListPart::usualServer(bool& isGivenUp)
{
    const std::vector<quint32> selected = m_host.selectedKeys();
    const QlumDataItem* item = selected.empty() ? nullptr : m_host.model().find(selected.front());
    if (item != nullptr && item->serverId != qlumNoServer)
        return item->serverId;
    const std::vector<unsigned int> used = m_host.model().serverIds();
    const QList<unsigned int> all = m_host.application().projectServerIds();
    if (used.size() == 1)
        return used.front();
    if (all.size() == 1)
        return all.front();
    QStringList names;
    for (const unsigned int id : all)
        names.append(m_host.application().serverName(id));
    bool isChosen = false;
    const QString name = names.isEmpty() ? QString()
                                         : QInputDialog::getItem(m_host.widget(), tr("Server of the List"),
                                                                 tr("Lines without a server are nodes of:"),
                                                                 names, 0, false, &isChosen);
    isGivenUp = !names.isEmpty() && !isChosen;
    return isChosen ? all.at(names.indexOf(name)) : qlumNoServer;
}

// The lines are made by the job, since there may be very many.
void QlumListPart::find(const std::set<unsigned int>& servers, std::function<Lines(QlumJob&)> makeLines,
                        Purpose purpose, const QString& remark)
{
    std::set<unsigned int> ids = servers;
    ids.erase(qlumNoServer);
    const QlumWork work{tr("Looking for the nodes of a list"), ids.size() == 1 ? *ids.begin() : qlumNoServer};
    const auto function = [this, makeLines = std::move(makeLines), services = m_host.services(), ids, purpose,
                           remark](QlumJob& job) {
        Lines lines = makeLines(job);
        for (const unsigned int id : ids) {
            std::vector<std::size_t> places;
            std::vector<QString> texts;
            for (std::size_t i = 0; i < lines.size(); ++i)
                if (lines[i].serverId == id) {
                    places.push_back(i);
                    texts.push_back(lines[i].line.text);
                }
            std::vector<QlumFoundNode> found(texts.size());
            const std::shared_ptr<QlumSessionServices> session = services(id);
            const bool canAsk = session && session->isConnected();
            const UaStatus status =
                canAsk ? qlumFindNodes(job, *session, texts, found) : UaStatus(OpcUa_BadNotConnected);
            for (std::size_t i = 0; i < places.size(); ++i) {
                lines[places[i]].found = std::move(found[i]);
                lines[places[i]].status = status;
            }
        }
        for (Wanted& wanted : lines)
            wanted.item = itemFor(wanted);
        if (!job.isCancelled())
            handOver(job, lines, purpose, remark);
    };
    m_host.pool().add(work, function);
}

void QlumListPart::handOver(QlumJob& job, Lines& lines, Purpose purpose, const QString& remark)
{
    if (purpose == Purpose::Values)
        return stage(job, lines);
    int unresolved = 0;
    QString first;
    for (const Wanted& wanted : lines)
        if (wanted.item.state == QlumDataState::Unresolved && ++unresolved == 1)
            first = tr("Line %1, \"%2\": %3")
                        .arg(QString::number(wanted.line.line), wanted.line.text, wanted.item.problem);
    job.post([this, unresolved, total = lines.size(), first, remark] {
        tellRows(unresolved, total, first, remark);
    });
    if (purpose == Purpose::Rows)
        addRows(job, lines);
    else
        resolveRows(job, lines);
}

// ---- rows

// What could not be asked for is watched once its server is there; a path needs the server first.
QlumDataItem QlumListPart::itemFor(const Wanted& wanted)
{
    QlumDataItem item;
    item.serverId = wanted.serverId;
    item.displayName = wanted.line.text;
    if (isFound(wanted.found)) {
        item.nodeId = wanted.found.nodeId;
        item.displayName = wanted.found.displayName;
        return item;
    }
    QlumNodeAddress address = qlumReadAddress(wanted.line.text);
    if (wanted.status.isBad() && address.fault.isEmpty() && address.path.empty() &&
        wanted.serverId != qlumNoServer) {
        item.nodeId = address.nodeId;
        item.namespaceUri = address.namespaceUri;
        return item;
    }
    item.state = QlumDataState::Unresolved;
    item.problem = wanted.found.reason;
    if (item.problem.isEmpty())
        item.problem = address.fault.isEmpty()
                           ? tr("The server cannot be asked at the moment; look for it again later.")
                           : address.fault;
    return item;
}

void QlumListPart::addRows(QlumJob& job, Lines& lines)
{
    job.setText(tr("Adding the rows of a list"));
    for (std::size_t begin = 0; begin < lines.size(); begin += linesOfPortion) {
        job.setProgress(static_cast<qint64>(begin), static_cast<qint64>(lines.size()));
        const std::size_t end = std::min(begin + linesOfPortion, lines.size());
        std::vector<QlumDataItem> items;
        items.reserve(end - begin);
        for (std::size_t i = begin; i < end; ++i)
            items.push_back(std::move(lines[i].item));
        if (!job.postAndWait([this, items = std::move(items)]() mutable {
                static_cast<void>(m_host.addItems(std::move(items)));
            }))
            return;
    }
}

// Each keeps its place, and what is staged for it.
void QlumListPart::resolveRows(QlumJob& job, Lines& lines)
{
    job.setText(tr("Showing what the rows have become"));
    for (std::size_t begin = 0; begin < lines.size(); begin += linesOfPortion) {
        job.setProgress(static_cast<qint64>(begin), static_cast<qint64>(lines.size()));
        const std::size_t end = std::min(begin + linesOfPortion, lines.size());
        std::vector<QlumDataItem> items;
        items.reserve(end - begin);
        for (std::size_t i = begin; i < end; ++i) {
            items.push_back(std::move(lines[i].item));
            items.back().key = lines[i].row;
        }
        if (!job.postAndWait(
                [this, items = std::move(items)]() mutable { m_host.resolveItems(std::move(items)); }))
            return;
    }
}

void QlumListPart::tellRows(int unresolved, std::size_t total, const QString& first, const QString& remark)
{
    if (unresolved == 0 && remark.isEmpty()) {
        m_host.dismiss(listTopic);
        return;
    }
    const QString what =
        unresolved > 0 ? tr("%1 of %2 lines name no variable; their rows say why.").arg(unresolved).arg(total)
                       : tr("%n row(s) were added.", nullptr, static_cast<int>(total));
    m_host.tell({QlumMessage::Warning,
                 listTopic,
                 what,
                 first.isEmpty() || remark.isEmpty() ? first + remark : first + QLatin1Char(' ') + remark,
                 {},
                 nullptr});
}

void QlumListPart::lookAgain()
{
    const std::vector<quint32> selected = m_host.selectedKeys();
    const std::set<quint32> wantedKeys(selected.begin(), selected.end());
    std::vector<quint32> keys;
    std::set<unsigned int> servers;
    for (const bool onlySelected : {true, false}) {
        if (!keys.empty())
            break;
        for (const QlumDataItem& item : m_host.model().rows()) {
            if (item.state != QlumDataState::Unresolved || (onlySelected && !wantedKeys.contains(item.key)))
                continue;
            keys.push_back(item.key);
            servers.insert(item.serverId);
        }
    }
    if (!keys.empty())
        find(servers, [this, keys](QlumJob& job) { return linesOfRows(job, keys); }, Purpose::Again, {});
}

QlumListPart::Lines QlumListPart::linesOfRows(QlumJob& job, const std::vector<quint32>& keys)
{
    const auto lines = std::make_shared<Lines>();
    for (std::size_t begin = 0; begin < keys.size(); begin += linesOfPortion) {
        const auto portion = std::span(keys).subspan(begin, std::min(linesOfPortion, keys.size() - begin));
        if (!job.postAndWait([this, lines, some = std::vector(portion.begin(), portion.end())] {
                appendLines(some, *lines);
            }))
            return {};
    }
    return std::move(*lines);
}

void QlumListPart::appendLines(std::span<const quint32> keys, Lines& lines) const
{
    for (const quint32 key : keys) {
        const QlumDataItem* item = m_host.model().find(key);
        if (item == nullptr)
            continue;
        Wanted& wanted = lines.emplace_back();
        wanted.row = key;
        wanted.line.line = m_host.model().rowOf(key) + 1;
        wanted.line.text = item->displayName;
        wanted.serverId = item->serverId;
        wanted.found.reason = item->problem;
    }
}

// ---- values

// The GUI thread only takes what the job has sorted out, some lines at a time.
void QlumListPart::stage(QlumJob& job, Lines& lines)
{
    job.setText(tr("Staging the values of a list"));
    const auto present = std::make_shared<std::vector<std::pair<Node, quint32>>>();
    if (!job.postAndWait([this, present] { *present = nodesOfRows(); }))
        return;
    RowOfNode rows(present->begin(), present->end());
    std::vector<QlumStagedRow> faults;
    std::size_t done = 0;
    while (done < lines.size() && !job.isCancelled()) {
        const std::size_t count = std::min(linesOfPortion, lines.size() - done);
        const auto portion =
            std::make_shared<Portion>(portionOf(std::span(lines).subspan(done, count), rows));
        if (!job.postAndWait([this, portion] { stagePortion(*portion); }))
            break;
        for (std::size_t i = 0; i < portion->keys.size(); ++i)
            rows[portion->nodes[i]] = portion->keys[i];
        std::move(portion->faults.begin(), portion->faults.end(), std::back_inserter(faults));
        done += count;
        job.setProgress(static_cast<qint64>(done), static_cast<qint64>(lines.size()));
    }
    for (std::size_t begin = 0; begin < faults.size() && !job.isCancelled(); begin += linesOfPortion) {
        const auto from = faults.begin() + static_cast<std::ptrdiff_t>(begin);
        const auto count = static_cast<std::ptrdiff_t>(std::min(linesOfPortion, faults.size() - begin));
        static_cast<void>(
            job.postAndWait([this, some = std::vector(from, from + count)] { m_staged.stageFaults(some); }));
    }
    job.post(
        [this, done, total = lines.size(), faults = std::move(faults)] { tellStaged(done, total, faults); });
}

QlumListPart::Portion QlumListPart::portionOf(std::span<Wanted> lines, RowOfNode& rows)
{
    Portion portion;
    for (Wanted& wanted : lines) {
        QlumDataItem& item = wanted.item;
        const Node node(item.serverId, item.nodeId);
        if (item.state == QlumDataState::Unresolved || !wanted.line.hasValue) {
            QlumStagedRow& fault = portion.faults.emplace_back();
            fault.place = wanted.line.text;
            fault.server = wanted.line.server;
            fault.given = wanted.line.value;
            fault.isText = fault.isChecked = true;
            fault.fault =
                item.problem.isEmpty() ? tr("Line %1 has no value.").arg(wanted.line.line) : item.problem;
            continue;
        }
        if (rows.emplace(node, 0).second) {
            portion.nodes.push_back(node);
            portion.added.push_back(std::move(item));
        }
        portion.lines.push_back({node, rows[node], wanted.line.value});
    }
    return portion;
}

std::vector<std::pair<QlumListPart::Node, quint32>> QlumListPart::nodesOfRows() const
{
    std::vector<std::pair<Node, quint32>> nodes;
    for (const QlumDataItem& item : m_host.model().rows())
        if (item.fieldPath.isEmpty() && item.indexRange.isEmpty() &&
            item.attributeId == OpcUa_Attributes_Value)
            nodes.emplace_back(Node(item.serverId, item.nodeId), item.key);
    return nodes;
}

void QlumListPart::stagePortion(Portion& portion)
{
    if (!portion.added.empty())
        portion.keys = m_host.addItems(std::move(portion.added));
    RowOfNode added;
    for (std::size_t i = 0; i < portion.keys.size(); ++i)
        added.emplace(portion.nodes[i], portion.keys[i]);
    QlumStagedPart::Texts texts;
    texts.reserve(portion.lines.size());
    for (const Portion::Line& line : portion.lines)
        texts.emplace_back(line.row != 0 ? line.row : added[line.node], line.text);
    m_staged.stageTexts(texts);
}

void QlumListPart::tellStaged(std::size_t staged, std::size_t total, const std::vector<QlumStagedRow>& faults)
{
    m_staged.show();
    const bool isCut = staged < total;
    if (!isCut && faults.empty())
        return m_host.dismiss(listTopic);
    m_host.tell(
        {QlumMessage::Warning,
         listTopic,
         isCut ? tr("Only the first %1 of %2 lines were staged; you have stopped it.").arg(staged).arg(total)
               : tr("%1 of %2 lines cannot be staged; the list of staged values says why.")
                     .arg(faults.size())
                     .arg(total),
         faults.empty() ? QString() : faults.front().fault,
         {},
         nullptr});
}
