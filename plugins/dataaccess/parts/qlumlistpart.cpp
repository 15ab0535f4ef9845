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

#include <map>
#include <memory>
#include <set>
#include <utility>

namespace {
constexpr qint64 maximumFileSize = 64LL * 1024 * 1024;
const QLatin1String listTopic("list");

bool isFound(const QlumFoundNode& node)
{
    return node.reason.isEmpty() && !node.nodeId.isNull();
}
} // namespace

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
        QlumNodeList list;
        const QByteArray content = path.isEmpty() ? bytes : contentOf(path, list.fault);
        if (list.fault.isEmpty())
            list = qlumReadNodeList(content, [&job](qint64 done, qint64 total) {
                job.setProgress(done, total);
                return !job.isCancelled();
            });
        if (job.isCancelled())
            return;
        job.post([this, list = std::move(list), purpose] {
            // the user may be asked, which is not to be done in the middle of the pool
            QMetaObject::invokeMethod(
                this, [this, list, purpose] { take(list, purpose); }, Qt::QueuedConnection);
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

void QlumListPart::take(const QlumNodeList& list, Purpose purpose)
{
    const bool lacksValues = purpose == Purpose::Values && list.fault.isEmpty() && !list.hasValues;
    if (!list.fault.isEmpty() || lacksValues)
        return tellFault(tr("Nothing was taken from the list."),
                         lacksValues ? tr("It has no column with values.") : list.fault);
    QHash<QString, unsigned int> servers;
    for (const unsigned int id : m_host.application().projectServerIds())
        servers.insert(m_host.application().serverName(id), id);
    Lines lines;
    lines.reserve(list.lines.size());
    const QPointer<QlumListPart> guard(this);
    unsigned int usual = qlumNoServer;
    bool isAsked = false;
    for (const QlumNodeLine& line : list.lines) {
        Wanted& wanted = lines.emplace_back();
        wanted.line = line;
        bool isGivenUp = false;
        if (line.server.isEmpty() && !std::exchange(isAsked, true))
            usual = usualServer(isGivenUp);
        if (isGivenUp || !guard)
            return; // the view may go while the user is asked
        wanted.serverId = line.server.isEmpty() ? usual : servers.value(line.server, qlumNoServer);
        if (wanted.serverId == qlumNoServer)
            wanted.found.reason = tr("The project has no server \"%1\".").arg(line.server);
    }
    find(std::move(lines), purpose, list.remark);
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

void QlumListPart::find(Lines lines, Purpose purpose, const QString& remark)
{
    std::set<unsigned int> servers;
    for (const Wanted& wanted : lines)
        servers.insert(wanted.serverId);
    servers.erase(qlumNoServer);
    const QlumWork work{tr("Looking for the nodes of a list"),
                        servers.size() == 1 ? *servers.begin() : qlumNoServer};
    const auto function = [this, lines = std::move(lines), services = m_host.services(), servers, purpose,
                           remark](QlumJob& job) mutable {
        for (const unsigned int id : servers) {
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
            job.post([this, lines = std::move(lines), purpose, remark]() mutable {
                finish(lines, purpose, remark);
            });
    };
    m_host.pool().add(work, function);
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

void QlumListPart::finish(Lines& lines, Purpose purpose, const QString& remark)
{
    if (purpose == Purpose::Values) {
        stage(lines);
        return;
    }
    tellRows(lines, remark);
    std::vector<QlumDataItem> items;
    std::vector<quint32> replaced;
    items.reserve(lines.size());
    for (Wanted& wanted : lines) {
        if (purpose == Purpose::Again && wanted.item.state == QlumDataState::Unresolved) {
            const QString& problem = wanted.item.problem;
            m_host.model().changeItem(wanted.row, [&problem](QlumDataItem& row) { row.problem = problem; });
            continue;
        }
        if (purpose == Purpose::Again)
            replaced.push_back(wanted.row);
        items.push_back(std::move(wanted.item));
    }
    m_host.model().removeKeys(replaced);
    if (!items.empty())
        static_cast<void>(m_host.addItems(std::move(items)));
}

void QlumListPart::tellRows(const Lines& lines, const QString& remark)
{
    int unresolved = 0;
    QString first;
    for (const Wanted& wanted : lines) {
        const QlumDataItem& item = wanted.item;
        if (item.state != QlumDataState::Unresolved)
            continue;
        ++unresolved;
        if (first.isEmpty())
            first = tr("Line %1, \"%2\": %3")
                        .arg(QString::number(wanted.line.line), wanted.line.text, item.problem);
    }
    if (unresolved == 0 && remark.isEmpty()) {
        m_host.dismiss(listTopic);
        return;
    }
    const QString what =
        unresolved > 0
            ? tr("%1 of %2 lines name no variable; their rows say why.").arg(unresolved).arg(lines.size())
            : tr("%n row(s) were added.", nullptr, static_cast<int>(lines.size()));
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
    Lines lines;
    for (const bool onlySelected : {true, false}) {
        if (!lines.empty())
            break;
        for (const QlumDataItem& item : m_host.model().rows()) {
            if (item.state != QlumDataState::Unresolved || (onlySelected && !wantedKeys.contains(item.key)))
                continue;
            Wanted& wanted = lines.emplace_back();
            wanted.row = item.key;
            wanted.line.line = m_host.model().rowOf(item.key) + 1;
            wanted.line.text = item.displayName;
            wanted.serverId = item.serverId;
            wanted.found.reason = item.problem;
        }
    }
    if (!lines.empty())
        find(std::move(lines), Purpose::Again, {});
}

// ---- values

void QlumListPart::stage(const Lines& lines)
{
    std::map<std::pair<unsigned int, UaNodeId>, quint32> known;
    for (const QlumDataItem& item : m_host.model().rows())
        if (item.fieldPath.isEmpty() && item.indexRange.isEmpty() &&
            item.attributeId == OpcUa_Attributes_Value)
            known.emplace(std::pair(item.serverId, item.nodeId), item.key);
    std::vector<QlumDataItem> items;
    std::vector<std::pair<unsigned int, UaNodeId>> added;
    std::vector<QlumStagedRow> faults;
    for (const Wanted& wanted : lines) {
        QlumDataItem item = wanted.item;
        const std::pair node(item.serverId, item.nodeId);
        if (item.state == QlumDataState::Unresolved || !wanted.line.hasValue) {
            QlumStagedRow& fault = faults.emplace_back();
            fault.place = wanted.line.text;
            fault.server = wanted.line.server;
            fault.given = wanted.line.value;
            fault.isText = fault.isChecked = true;
            fault.fault =
                item.problem.isEmpty() ? tr("Line %1 has no value.").arg(wanted.line.line) : item.problem;
        } else if (known.emplace(node, 0).second) {
            added.push_back(node);
            items.push_back(std::move(item));
        }
    }
    const std::vector<quint32> keys =
        items.empty() ? std::vector<quint32>() : m_host.addItems(std::move(items));
    for (std::size_t i = 0; i < keys.size() && i < added.size(); ++i)
        known[added[i]] = keys[i];
    QlumStagedPart::Texts texts;
    for (const Wanted& wanted : lines) {
        const QlumDataItem& item = wanted.item;
        if (item.state != QlumDataState::Unresolved && wanted.line.hasValue)
            texts.emplace_back(known[{item.serverId, item.nodeId}], wanted.line.value);
    }
    m_staged.stageTexts(texts);
    m_staged.stageFaults(faults);
    m_staged.show();
    if (faults.empty())
        m_host.dismiss(listTopic);
    else
        m_host.tell({QlumMessage::Warning,
                     listTopic,
                     tr("%1 of %2 lines cannot be staged; the list of staged values says why.")
                         .arg(faults.size())
                         .arg(lines.size()),
                     faults.front().fault,
                     {},
                     nullptr});
}
