#include <plugins/dataaccess/parts/qlumchangelogpart.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumtext.h>
#include <plugins/dataaccess/parts/qlumworkcommand.h>
#include <plugins/dataaccess/parts/qlumworksettings.h>
#include <plugins/dataaccess/parts/qlumworktable.h>
#include <plugins/dataaccess/qlumdamodel.h>
#include <uabase/values/uadatavalue.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/qlumviewstate.h>
#include <uawidgets/table/qlumtable.h>

#include <QAbstractItemView>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLatin1String>
#include <QLocale>
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
constexpr std::size_t maximumLogged = 10'000;
const QLatin1String logTopic("log");
} // namespace

QlumChangeLogPart::QlumChangeLogPart(QlumDaHost& host)
    : m_host(host), m_model(new QlumChangeLogModel(QlumWorkSettings::logRows.value(&host.application()))),
      m_feed(host.model(), host.monitoring(), 1)
{
    m_page = makePage();
    m_model->setParent(m_page);
    makeCommands();
    host.addPage(m_page, tr("Log of Changes"));
    connect(m_model, &QlumChangeLogModel::counted, this, &QlumChangeLogPart::refresh);
    connect(&m_feed, &QlumDaFeed::came, this, &QlumChangeLogPart::take);
    connect(&m_feed, &QlumDaFeed::lost, m_model, &QlumChangeLogModel::addLost);
    connect(&m_feed, &QlumDaFeed::ended, this, &QlumChangeLogPart::forget);
    refresh();
}

QlumChangeLogPart::~QlumChangeLogPart() = default;

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
    m_summary->setWordWrap(true);
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
    int leftOut = 0;
    for (const quint32 key : keys) {
        const QlumDataItem* row = m_host.model().find(key);
        if (row == nullptr || row->nodeId.isNull() || m_logged.contains(key))
            continue;
        if (m_logged.size() >= maximumLogged) {
            ++leftOut;
            continue;
        }
        describe(m_logged[key], *row);
        added.push_back(key);
    }
    m_feed.add(added);
    m_host.markModified();
    refresh();
    if (leftOut > 0)
        m_host.tell({QlumMessage::Warning,
                     logTopic,
                     tr("%n row(s) are not logged.", nullptr, leftOut),
                     tr("A view logs %1 rows at most. Stop logging others, or open a second view.")
                         .arg(QLocale().toString(static_cast<qulonglong>(maximumLogged))),
                     {},
                     nullptr});
    else
        m_host.dismiss(logTopic);
}

void QlumChangeLogPart::stop(const std::vector<quint32>& keys)
{
    m_feed.remove(keys);
    m_host.dismiss(logTopic);
    m_host.markModified();
    forget(keys);
}

void QlumChangeLogPart::forget(const std::vector<quint32>& keys)
{
    for (const quint32 key : keys)
        m_logged.erase(key);
    refresh();
}

// What is known of the row now; changes that are there keep what was known then.
void QlumChangeLogPart::describe(Item& known, const QlumDataItem& row) const
{
    const std::shared_ptr<const QlumValueContext> context = m_host.model().typeContext(row);
    const QString name = row.fieldPath.isEmpty()
                             ? row.displayName
                             : QStringLiteral("%1.%2").arg(row.displayName, row.fieldPath);
    const QString nodeId =
        toQString(row.nodeId.toXmlString()) +
        (row.indexRange.isEmpty() ? QString() : QStringLiteral(" [%1]").arg(row.indexRange));
    if (known && known->context == context && known->name == name && known->unit == row.unit &&
        known->nodeId == nodeId)
        return;
    auto item = std::make_shared<QlumLoggedItem>();
    item->server = m_host.application().serverName(row.serverId);
    item->nodeId = nodeId;
    item->name = name;
    item->unit = row.unit;
    item->context = context;
    known = std::move(item);
}

void QlumChangeLogPart::take(const std::vector<QlumDaFeed::Value>& values)
{
    std::map<quint32, bool> described; // each row once for many values
    for (const QlumDaFeed::Value& one : values) {
        const auto logged = m_logged.find(one.key);
        const QlumDataItem* row = logged == m_logged.end() ? nullptr : m_host.model().find(one.key);
        if (row == nullptr)
            continue;
        if (!std::exchange(described[one.key], true))
            describe(logged->second, *row);
        QlumLoggedChange change{logged->second, one.value, one.received};
        if (!row->fieldPath.isEmpty() || !row->indexRange.isEmpty())
            change.value.setValue(m_host.model().partOf(*row, one.value.value()));
        m_model->add(std::move(change));
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
