#include <plugins/dataaccess/parts/qlumstagedpart.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/dataaccess/parts/qlumstagedpage.h>
#include <plugins/dataaccess/parts/qlumstagedwrite.h>
#include <plugins/dataaccess/parts/qlumworkcommand.h>
#include <plugins/dataaccess/qlumdamodel.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uawidgets/editors/qlumcelltext.h>
#include <uawidgets/editors/qlumcontextreader.h>
#include <uawidgets/editors/qlumdatafield.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/table/qlumtabletext.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QInputDialog>
#include <QLatin1String>
#include <QLineEdit>
#include <QStringList>
#include <QVector>

#include <algorithm>
#include <deque>
#include <map>
#include <set>
#include <span>
#include <utility>

namespace {
constexpr std::size_t contextsPerStep = 200;

struct Described
{
    quint64 key = 0;
    std::shared_ptr<const QlumValueContext> context; // null: see fault
    QString fault;
};

// A reader for each portion: what the GUI thread has got is not read further.
std::vector<Described> describe(QlumJob& job, const std::shared_ptr<QlumSessionServices>& session,
                                std::span<const QlumToDescribe> wanted)
{
    std::vector<UaNodeId> nodes;
    for (const QlumToDescribe& one : wanted)
        nodes.push_back(one.nodeId);
    std::vector<QlumValueContext> contexts;
    UaStatus status(OpcUa_BadNotConnected);
    if (session) {
        QlumContextReader reader(session, job);
        status = reader.read(nodes, contexts);
    }
    std::vector<Described> described;
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        Described& one = described.emplace_back();
        one.key = wanted[i].key;
        if (i < contexts.size())
            one.context = std::make_shared<QlumValueContext>(std::move(contexts[i]));
        else
            one.fault = qlumResultInWords(status);
    }
    return described;
}
} // namespace

QlumStagedPart::QlumStagedPart(QlumDaHost& host)
    : m_host(host), m_page(new QlumStagedPage(host.application())),
      m_stopped(std::make_shared<std::atomic<bool>>(false))
{
    host.addPage(m_page, tr("Staged Values"));
    connect(
        &m_page->model(), &QlumStagedModel::itemsChanged, this,
        [this](const std::vector<quint32>& items) {
            emit newValuesChanged(items);
            m_host.markModified();
        });
    connect(
        m_page->writeAction(), &QAction::triggered, this, [this] { apply(false); });
    connect(
        m_page->revertAction(), &QAction::triggered, this, [this] { revert(); });
    connect(m_page->stopAction(), &QAction::triggered, this, [this] { m_stopped->store(true); });
    m_outcomeTimer.setSingleShot(true);
    connect(&m_outcomeTimer, &QTimer::timeout, this, &QlumStagedPart::takeOutcomes);
    makeCommands();
}

QlumStagedPart::~QlumStagedPart()
{
    m_stopped->store(true);
}

void QlumStagedPart::makeCommands()
{
    QAction* same = qlumWorkCommand(
        this, "stageSameValue", tr("Set New &Value..."),
        tr("Stages one value for all selected rows, in the type of each."), [this] { askSameValue(); });
    QAction* paste = qlumWorkCommand(
        this, "pasteNewValues", tr("&Paste as New Values"),
        tr("Stages the cells of the clipboard, one for each row from the selected one downward; "
           "with several rows selected, only in these."),
        [this] { pasteColumn(QApplication::clipboard()->text()); });
    QAction* present = qlumWorkCommand(
        this, "stagePresentValues", tr("Take &Present Values as New Values"),
        tr("Stages what the selected rows show now, to be edited or written later."),
        [this] {
            std::vector<std::pair<quint32, UaVariant>> values;
            for (const quint32 key : m_host.selectedKeys())
                if (const QlumDataItem* item = m_host.model().find(key);
                    item != nullptr && item->received != 0)
                    values.emplace_back(key, item->value.value());
            stageValues(values);
        });
    QAction* discard =
        qlumWorkCommand(this, "discardNewValues", tr("&Discard New Values"),
                        tr("The selected rows have no staged value any more. Nothing is written."),
                        [this] { m_page->model().discard(m_host.selectedKeys()); });
    m_host.addCommands(tr("&New Values"),
                       {same, paste, present, discard, m_page->writeAction(), m_page->revertAction()});
}

// ---- staging

QlumStagedRow QlumStagedPart::rowFor(const QlumDataItem& item) const
{
    QlumStagedRow row;
    row.item = item.key;
    row.server = m_host.application().serverName(item.serverId);
    row.place = item.nodeId.isNull() ? item.displayName : toQString(item.nodeId.toXmlString());
    row.write.serverId = item.serverId;
    row.write.nodeId = item.nodeId;
    row.write.attributeId = item.attributeId;
    row.write.indexRange = item.indexRange;
    row.write.fieldPath = item.fieldPath;
    row.write.name =
        item.fieldPath.isEmpty() ? item.displayName : item.displayName + QLatin1Char('.') + item.fieldPath;
    if (item.nodeId.isNull())
        row.fault = tr("The row names no node of a server.");
    else if (item.attributeId != OpcUa_Attributes_Value)
        row.fault = tr("Only values can be staged.");
    row.isChecked = !row.fault.isEmpty();
    return row;
}

void QlumStagedPart::stageTexts(const Texts& texts)
{
    std::vector<QlumStagedRow> rows;
    for (const auto& [key, text] : texts)
        if (const QlumDataItem* item = m_host.model().find(key)) {
            rows.push_back(rowFor(*item));
            rows.back().given = text;
            rows.back().isText = true;
        }
    readContexts(m_page->model().stage(std::move(rows)));
}

void QlumStagedPart::stageValues(const std::vector<std::pair<quint32, UaVariant>>& values)
{
    std::vector<QlumStagedRow> rows;
    for (const auto& [key, value] : values)
        if (const QlumDataItem* item = m_host.model().find(key)) {
            rows.push_back(rowFor(*item));
            rows.back().write.value = value;
            if (value.isScalar() && item->fieldPath.isEmpty())
                static_cast<void>(qlumWrapElement(item->indexRange, value.type(), rows.back().write.value));
        }
    readContexts(m_page->model().stage(std::move(rows)));
}

void QlumStagedPart::stageFaults(const std::vector<QlumStagedRow>& rows)
{
    static_cast<void>(m_page->model().stage(rows));
}

void QlumStagedPart::show()
{
    m_host.showPage(m_page);
}

void QlumStagedPart::readContexts(const std::vector<quint64>& keys)
{
    std::set<unsigned int> servers;
    for (const quint64 key : keys)
        if (const QlumStagedRow* row = m_page->model().findKey(key); row != nullptr && !row->isChecked) {
            m_toDescribe[row->write.serverId].push_back(key);
            servers.insert(row->write.serverId);
        }
    for (const unsigned int serverId : servers)
        if (m_describing.insert(serverId).second)
            startDescribing(serverId);
}

// The job asks for one portion after the other, so that there may be very many.
void QlumStagedPart::startDescribing(unsigned int serverId)
{
    const auto function = [this, serverId, services = m_host.services()](QlumJob& job) {
        qint64 done = 0;
        std::vector<Described> results;
        do {
            struct Turn
            {
                std::vector<Described> results;
                std::vector<QlumToDescribe> next;
                qint64 left = 0;
            };
            const auto turn = std::make_shared<Turn>();
            turn->results = std::exchange(results, {});
            const bool isTaken = job.postAndWait([this, serverId, turn] {
                for (const Described& one : turn->results)
                    takeDescription(one.key, one.context, one.fault);
                turn->next = nextToDescribe(serverId);
                turn->left = static_cast<qint64>(m_toDescribe[serverId].size());
            });
            if (!isTaken || (turn->next.empty() && turn->left == 0))
                return;
            if (!turn->next.empty())
                results = describe(job, services(serverId), turn->next);
            done += static_cast<qint64>(turn->next.size());
            job.setProgress(done, done + turn->left);
        } while (!job.isCancelled());
    };
    m_host.pool().add({tr("Looking at staged values"), serverId}, function,
                      [this, serverId](QlumWorkEnd end) { described(serverId, end); });
}

std::vector<QlumToDescribe> QlumStagedPart::nextToDescribe(unsigned int serverId)
{
    std::deque<quint64>& keys = m_toDescribe[serverId];
    std::vector<QlumToDescribe> next;
    for (std::size_t looked = 0; looked < contextsPerStep && !keys.empty(); ++looked) {
        const quint64 key = keys.front();
        keys.pop_front();
        const QlumStagedRow* row = m_page->model().findKey(key);
        if (row == nullptr || row->isChecked)
            continue;
        const QlumDataItem* item = m_host.model().find(row->item);
        if (item != nullptr && item->state == QlumDataState::NamespaceGone) // its id would mean another node
            m_page->model().setFault(key, tr("The namespace of its node is not known yet."));
        else
            next.push_back({key, item ? item->nodeId : row->write.nodeId});
    }
    return next;
}

void QlumStagedPart::takeDescription(quint64 key, const std::shared_ptr<const QlumValueContext>& context,
                                     const QString& fault)
{
    QlumStagedModel& model = m_page->model();
    const QlumStagedRow* row = model.findKey(key);
    const QlumDataItem* item = row ? m_host.model().find(row->item) : nullptr;
    if (!context)
        return model.setFault(key, fault);
    if (item == nullptr || item->fieldPath.isEmpty())
        return model.check(key, context, item ? item->value.value() : UaVariant());
    auto ofField = std::make_shared<QlumValueContext>(*context);
    const UaVariant part =
        qlumFieldOf(qlumElementOf(item->value.value(), item->indexRange), item->fieldPath, *ofField);
    ofField->accessFault = context->accessFault;
    if (part.isNull())
        m_openFields[row->item] = item->received == 0;
    if (part.isNull())
        model.setFault(key, item->received == 0
                                ? tr("No value has come yet, so nothing is known of its fields.")
                                : tr("The value has no such field now, or nobody knows its type."));
    else
        model.check(key, ofField, part);
}

// More may have come when the job was ending. What the user wanted written meanwhile can be written now.
void QlumStagedPart::described(unsigned int serverId, QlumWorkEnd end)
{
    if (end == QlumWorkEnd::Done && !m_toDescribe[serverId].empty())
        return startDescribing(serverId);
    m_toDescribe.erase(serverId);
    m_describing.erase(serverId);
    if (m_describing.empty() && m_wanted)
        apply(*std::exchange(m_wanted, std::nullopt));
}

void QlumStagedPart::pasteColumn(const QString& clipboard)
{
    const QVector<QStringList> cells = qlumTabbedRows(clipboard);
    std::vector<quint32> rows = m_host.selectedKeys();
    if (cells.isEmpty() || rows.empty()) {
        m_host.tell({QlumMessage::Note,
                     stagedTopic,
                     cells.isEmpty() ? tr("The clipboard holds no text.") : tr("No row is selected."),
                     tr("Copy a column of values, and select the row where it begins."),
                     {},
                     nullptr});
        return;
    }
    const bool isOneForAll = cells.size() == 1 && rows.size() > 1;
    if (rows.size() == 1) {
        const std::vector<quint32> shown = m_host.shownKeys();
        rows.assign(std::find(shown.begin(), shown.end(), rows.front()), shown.end());
    }
    Texts texts;
    for (std::size_t i = 0; i < rows.size() && (isOneForAll || i < static_cast<std::size_t>(cells.size()));
         ++i)
        texts.emplace_back(rows[i], cells.at(isOneForAll ? 0 : static_cast<int>(i)).first());
    stageTexts(texts);
    const int beyond = cells.size() - static_cast<int>(texts.size());
    if (beyond > 0)
        m_host.tell({QlumMessage::Warning,
                     stagedTopic,
                     tr("%n value(s) had no row to go to.", nullptr, beyond),
                     tr("The clipboard has more lines than there are rows."),
                     {},
                     nullptr});
    m_host.showPage(m_page);
}

void QlumStagedPart::askSameValue()
{
    const std::vector<quint32> keys = m_host.selectedKeys();
    const QlumDataItem* first = keys.empty() ? nullptr : m_host.model().find(keys.front());
    if (first == nullptr)
        return;
    const std::shared_ptr<const QlumValueContext> context = m_host.model().typeContext(*first);
    const QString present = first->received == 0
                                ? QString()
                                : qlumCopyText(first->value.value(), context ? *context : QlumValueContext());
    bool isGiven = false;
    const QString text = QInputDialog::getText(
        m_host.widget(), tr("Set New Value"),
        tr("New value of the %n selected row(s):", nullptr, static_cast<int>(keys.size())), QLineEdit::Normal,
        present, &isGiven);
    if (!isGiven)
        return;
    Texts texts;
    for (const quint32 key : keys)
        texts.emplace_back(key, text);
    stageTexts(texts);
    m_host.showPage(m_page);
}

// ---- what becomes of rows and servers

void QlumStagedPart::lookAgain(const std::vector<quint32>& items)
{
    std::vector<quint64> keys;
    for (const quint32 item : items) {
        m_openFields.erase(item);
        if (const QlumStagedRow* row = m_page->model().find(item))
            keys.push_back(row->write.key);
    }
    readContexts(keys);
}

void QlumStagedPart::valuesChanged(std::span<const quint32> keys)
{
    std::vector<quint32> known;
    if (!m_openFields.empty())
        for (const quint32 key : keys)
            if (const auto open = m_openFields.find(key); open != m_openFields.end() && open->second)
                known.push_back(key);
    lookAgain(known);
}

// A row that named nothing may have a node now.
void QlumStagedPart::watchChanged(const std::vector<quint32>& keys)
{
    Texts texts;
    std::vector<std::pair<quint32, UaVariant>> values;
    for (const quint32 key : keys) {
        const QlumStagedRow* row = m_page->model().find(key);
        const QlumDataItem* item = row ? m_host.model().find(key) : nullptr;
        if (item == nullptr || item->nodeId.isNull() || !row->write.nodeId.isNull())
            continue;
        if (row->isText)
            texts.emplace_back(key, row->given);
        else
            values.emplace_back(key, row->write.value);
    }
    if (!texts.empty())
        stageTexts(texts);
    if (!values.empty())
        stageValues(values);
}

void QlumStagedPart::rowsDescribed()
{
    std::vector<quint32> known;
    for (const auto& [item, lacksValue] : m_openFields)
        known.push_back(item);
    lookAgain(known);
}

// What could not be looked at without a connection is looked at now.
void QlumStagedPart::statusChanged(unsigned int serverId, QlumConnectionStatus status)
{
    const auto queue = m_toDescribe.find(serverId);
    const bool isQueued = queue != m_toDescribe.end() && !queue->second.empty();
    if (status != QlumConnectionStatus::Connected || isQueued)
        return; // a job that has taken the last of them may end just now, with what it could not find out
    std::vector<quint64> keys;
    for (const QlumStagedRow& row : m_page->model().rows())
        if (row.write.serverId == serverId && !row.isChecked)
            keys.push_back(row.write.key);
    readContexts(keys);
}

void QlumStagedPart::serverRemoved(unsigned int serverId)
{
    m_describing.erase(serverId);
    m_toDescribe.erase(serverId);
    if (m_underWay.empty())
        return;
    while (takeSomeOutcomes())
        ;
    m_page->model().loseServer(serverId, m_underWay);
    const bool isGone = std::all_of(m_underWay.begin(), m_underWay.end(), [this](quint64 key) {
        const QlumStagedRow* row = m_page->model().findKey(key);
        return row == nullptr || row->write.state != QlumStagedState::Waiting;
    });
    if (isGone)
        finished();
}

// ---- the column

QVariant QlumStagedPart::newValueCell(const QlumDataItem& item, int role) const
{
    const QlumStagedRow* row = m_page->model().find(item.key);
    if (row == nullptr)
        return {};
    const QlumStagedState state = row->write.state;
    const bool isQuiet = state == QlumStagedState::Waiting || state == QlumStagedState::Written ||
                         state == QlumStagedState::Reverted;
    const QString words = isQuiet ? row->fault : qlumStagedText(row->write);
    const QString value = QlumStagedModel::valueText(*row);
    switch (role) {
    case Qt::DisplayRole:
        return words.isEmpty() ? value : QStringLiteral("%1 (%2)").arg(value, words);
    case Qt::ToolTipRole: {
        QStringList lines{value, QlumStagedModel::checkText(*row), qlumStagedText(row->write)};
        lines.removeAll(QString());
        return qlumPlainToolTip(lines.join(QLatin1Char('\n')));
    }
    default:
        return QlumStagedModel::level(*row) == QlumStatusLevel::Inactive
                   ? QVariant() // nothing to be said yet
                   : qlumStatusCell(QlumStagedModel::level(*row), role);
    }
}

UaVariant QlumStagedPart::newValue(const QlumDataItem& item) const
{
    const QlumStagedRow* row = m_page->model().find(item.key);
    return row == nullptr || row->isText ? UaVariant() : row->write.value;
}

void QlumStagedPart::takeNewValue(const QlumDataItem& item, const UaVariant& value)
{
    stageValues({{item.key, value}});
}
