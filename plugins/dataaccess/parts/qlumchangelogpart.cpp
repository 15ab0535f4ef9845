#include <plugins/dataaccess/parts/qlumchangelogpart.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumtext.h>
#include <monitoring/allsink.h>
#include <monitoring/monitoredserver.h>
#include <plugins/dataaccess/parts/qlumworkcommand.h>
#include <plugins/dataaccess/parts/qlumworksettings.h>
#include <plugins/dataaccess/parts/qlumworktable.h>
#include <plugins/dataaccess/qlumdamodel.h>
#include <plugins/dataaccess/qlumdawatch.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/qlumviewstate.h>
#include <uawidgets/table/qlumtable.h>

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QMetaObject>
#include <QPointer>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTableView>
#include <QToolBar>
#include <QVBoxLayout>
#include <QVariant>
#include <QWidget>

#include <utility>

namespace {
constexpr int valueWidth = 200;
constexpr int maximumLogged = 10'000;
} // namespace

QlumChangeLogPart::QlumChangeLogPart(QlumDaHost& host)
    : m_host(host), m_model(new QlumChangeLogModel(QlumWorkSettings::logRows.value(&host.application()))),
      m_sink(std::make_shared<monitoring::AllSink>([this] { // on another thread, once until the next take()
          QMetaObject::invokeMethod(
              this, [this] { take(); }, Qt::QueuedConnection);
      }))
{
    m_page = makePage();
    m_model->setParent(m_page);
    makeCommands();
    host.addPage(m_page, tr("Log of Changes"));
    connect(m_model, &QlumChangeLogModel::counted, this, &QlumChangeLogPart::refresh);
    connect(&host.model(), &QAbstractItemModel::rowsRemoved, this, &QlumChangeLogPart::dropMissing);
    connect(&host.model(), &QAbstractItemModel::modelReset, this, &QlumChangeLogPart::dropMissing);
    refresh();
}

QlumChangeLogPart::~QlumChangeLogPart()
{
    m_sink->close();
    std::vector<quint32> keys;
    for (const auto& [key, logged] : m_logged)
        keys.push_back(key);
    stop(keys);
}

// ---- page

QWidget* QlumChangeLogPart::makePage()
{
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("changeLogPage"));
    page->setAccessibleName(tr("Log of changes"));
    auto* state = new QlumViewState(QStringLiteral("DataAccessView"), page);
    QTableView* table = qlumWorkTable("changeLog", tr("Log of changes"), m_model, page);
    for (const int column : {QlumChangeLogModel::Received, QlumChangeLogModel::SourceTime,
                             QlumChangeLogModel::ServerTime, QlumChangeLogModel::NodeId})
        table->setColumnWidth(column, valueWidth);
    table->setColumnWidth(QlumChangeLogModel::Value, valueWidth);
    qlumMakeTable(table, {tr("Select rows of the table above and choose Log Changes."),
                          QStringLiteral("changes"), state, QStringLiteral("changes"), false});
    auto* follow = new QCheckBox(tr("&Follow"), page);
    follow->setObjectName(QStringLiteral("changeLogFollow"));
    follow->setToolTip(tr("Keeps the newest change in sight."));
    follow->setChecked(true);
    connect(m_model, &QlumChangeLogModel::counted, table, [table, follow] {
        if (follow->isChecked())
            table->scrollToBottom();
    });
    m_summary = new QLabel(page);
    m_summary->setObjectName(QStringLiteral("changeLogSummary"));
    m_summary->setTextFormat(Qt::PlainText);
    auto* bar = new QToolBar(page);
    bar->setObjectName(QStringLiteral("changeLogBar"));
    bar->addActions(
        {qlumWorkCommand(this, "logStart", tr("&Log Selected Rows"),
                         tr("Records every change of the rows that are selected in the table above."),
                         [this] { start(m_host.selectedKeys()); }),
         qlumWorkCommand(this, "logStop", tr("&Stop Selected Rows"),
                         tr("Ends the recording of the rows that are selected in the table above."),
                         [this] { stop(m_host.selectedKeys()); }),
         qlumWorkCommand(this, "logClear", tr("&Clear"), tr("Forgets what was recorded."),
                         [this] { m_model->clear(); }),
         qlumWorkCommand(this, "logExport", tr("&Export as CSV..."), tr("Writes the log to a file."),
                         [table] { qlumExportCsv(table, QStringLiteral("changes")); })});
    bar->addWidget(follow);
    auto* head = new QHBoxLayout;
    head->addWidget(bar, 1);
    head->addWidget(m_summary);
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(head);
    layout->addWidget(table, 1);
    return page;
}

void QlumChangeLogPart::makeCommands()
{
    m_host.addCommands(tr("Log of C&hanges"),
                       {qlumWorkCommand(
                            this, "logChanges", tr("&Log Changes"),
                            tr("Records every change of the selected rows in the log of changes."),
                            [this] {
                                start(m_host.selectedKeys());
                                m_host.showPage(m_page);
                            }),
                        qlumWorkCommand(
                            this, "stopLogging", tr("&Stop Logging"),
                            tr("Ends the recording of the selected rows; the log stays."),
                            [this] { stop(m_host.selectedKeys()); })});
}

void QlumChangeLogPart::refresh()
{
    QString text = tr("%n row(s) logged", nullptr, static_cast<int>(m_logged.size()));
    if (m_model->dropped() > 0)
        text += tr(", %1 older changes were dropped").arg(QLocale().toString(m_model->dropped()));
    if (m_model->lost() > 0)
        text += tr(", %1 came too fast to be recorded").arg(QLocale().toString(m_model->lost()));
    m_summary->setText(text);
}

// ---- recording

void QlumChangeLogPart::start(const std::vector<quint32>& keys)
{
    std::vector<quint32> added;
    for (const quint32 key : keys) {
        const QlumDataItem* row = m_host.model().find(key);
        if (row == nullptr || row->nodeId.isNull() || m_logged.size() >= maximumLogged ||
            m_logged.contains(key))
            continue;
        Logged& logged = m_logged[key];
        logged.serverId = row->serverId;
        logged.changes = row->changes;
        describe(logged, *row);
        const bool isRead =
            m_host.model().settingsOf(*row).readInterval > 0 || row->state == QlumDataState::Read;
        if (!isRead)
            added.push_back(key); // begins with the present value
        else if (row->received != 0)
            add(logged, row, row->value, row->received);
    }
    watch(added);
    m_host.markModified();
    refresh();
}

std::shared_ptr<monitoring::MonitoredServer> QlumChangeLogPart::serverOf(unsigned int serverId) const
{
    return m_host.monitoring() ? m_host.monitoring()(serverId) : nullptr;
}

void QlumChangeLogPart::watch(const std::vector<quint32>& keys)
{
    std::map<std::pair<unsigned int, const QlumDataSettings*>, std::vector<quint32>> groups;
    for (const quint32 key : keys) {
        const QlumDataItem* row = m_host.model().find(key);
        groups[{row->serverId, &m_host.model().settingsOf(*row)}].push_back(key);
    }
    for (const auto& [group, members] : groups) {
        const std::shared_ptr<monitoring::MonitoredServer> server = serverOf(group.first);
        if (!server)
            continue;
        std::vector<monitoring::ItemWish> wishes;
        for (const quint32 key : members) {
            const QlumDataItem* row = m_host.model().find(key);
            monitoring::ItemWish& wish = wishes.emplace_back();
            wish.nodeId = row->nodeId;
            wish.attributeId = row->attributeId;
            wish.indexRange = toUaString(row->indexRange);
            wish.key = key;
        }
        const std::vector<monitoring::ItemId> ids =
            server->add(m_sink, qlumMonitoringSettings(*group.second), wishes);
        for (std::size_t i = 0; i < members.size() && i < ids.size(); ++i)
            m_logged[members[i]].watched = ids[i];
    }
}

void QlumChangeLogPart::stop(const std::vector<quint32>& keys)
{
    for (const quint32 key : keys) {
        const auto logged = m_logged.find(key);
        if (logged == m_logged.end())
            continue;
        const std::shared_ptr<monitoring::MonitoredServer> server = serverOf(logged->second.serverId);
        if (server && logged->second.watched != 0)
            server->remove(std::span(&logged->second.watched, 1));
        m_logged.erase(logged);
    }
    refresh();
}

void QlumChangeLogPart::dropMissing()
{
    std::vector<quint32> gone;
    for (const auto& [key, logged] : m_logged)
        if (m_host.model().find(key) == nullptr)
            gone.push_back(key);
    if (!gone.empty())
        stop(gone);
}

void QlumChangeLogPart::serverRemoved(unsigned int serverId)
{
    std::vector<quint32> gone;
    for (const auto& [key, logged] : m_logged)
        if (logged.serverId == serverId)
            gone.push_back(key);
    stop(gone);
}

// What is known of the row now; changes that are there keep what was known then.
void QlumChangeLogPart::describe(Logged& logged, const QlumDataItem& row) const
{
    const std::shared_ptr<const QlumValueContext> context = m_host.model().typeContext(row);
    const QString name = row.fieldPath.isEmpty()
                             ? row.displayName
                             : QStringLiteral("%1.%2").arg(row.displayName, row.fieldPath);
    if (logged.item && logged.item->context == context && logged.item->name == name &&
        logged.item->unit == row.unit)
        return;
    auto item = std::make_shared<QlumLoggedItem>();
    item->server = m_host.application().serverName(row.serverId);
    item->nodeId = toQString(row.nodeId.toXmlString()) +
                   (row.indexRange.isEmpty() ? QString() : QStringLiteral(" [%1]").arg(row.indexRange));
    item->name = name;
    item->unit = row.unit;
    item->context = context;
    logged.item = std::move(item);
}

void QlumChangeLogPart::add(Logged& logged, const QlumDataItem* row, const UaDataValue& value,
                            OpcUa_DateTime received)
{
    QlumLoggedChange change;
    change.value = value;
    change.received = received;
    if (row != nullptr) {
        describe(logged, *row);
        if (!row->fieldPath.isEmpty()) {
            QlumDataItem part = *row;
            part.value = value;
            change.value.setValue(m_host.model().shownValue(part));
        }
    }
    change.item = logged.item;
    m_model->add(std::move(change));
}

void QlumChangeLogPart::take()
{
    const monitoring::AllSink::Batch batch = m_sink->take();
    const OpcUa_DateTime now = UaDateTime::now().value();
    for (const monitoring::AllSink::Value& value : batch.values) {
        const auto logged = m_logged.find(static_cast<quint32>(value.key));
        if (logged != m_logged.end())
            add(logged->second, m_host.model().find(logged->first), value.value, now);
    }
    if (batch.overflowed > 0)
        m_model->addLost(batch.overflowed);
}

void QlumChangeLogPart::valuesChanged(std::span<const quint32> keys)
{
    if (m_logged.empty())
        return;
    for (const quint32 key : keys) {
        const auto logged = m_logged.find(key);
        const QlumDataItem* row = logged == m_logged.end() ? nullptr : m_host.model().find(key);
        if (row == nullptr || logged->second.watched != 0 || row->changes == logged->second.changes)
            continue;
        logged->second.changes = row->changes;
        add(logged->second, row, row->value, row->received);
    }
}

// ---- project

void QlumChangeLogPart::saveSettings(QSettings& settings)
{
    QStringList places;
    for (const auto& [key, logged] : m_logged)
        places.append(QString::number(m_host.model().rowOf(key)));
    settings.setValue(QStringLiteral("LoggedRows"), places.join(QLatin1Char(' ')));
}

void QlumChangeLogPart::loadSettings(QSettings& settings, const QMap<int, int>&)
{
    std::vector<quint32> keys;
    const QStringList places =
        settings.value(QStringLiteral("LoggedRows")).toString().split(QLatin1Char(' '));
    for (const QString& place : places) {
        bool isNumber = false;
        const int row = place.toInt(&isNumber);
        if (isNumber && row >= 0 && row < m_host.model().rowCount())
            keys.push_back(m_host.model().rowAt(row).key);
    }
    if (!keys.empty())
        start(keys);
}
