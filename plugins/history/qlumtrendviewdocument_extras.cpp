// What a trend view has besides the raw curves: aggregates, modified values, lists, live values, files.
#include <plugins/history/qlumtrendviewdocument.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumtoolservices.h>
#include <plugins/history/qlumcurvevaluesmodel.h>
#include <plugins/history/qlumhistorycsv.h>
#include <plugins/history/qlumhistoryplan.h>
#include <plugins/history/qlummodifiedmodel.h>
#include <plugins/history/qlumtrendextras.h>
#include <plugins/history/qlumtrenditem.h>
#include <plugins/history/qlumtrenditemmodel.h>
#include <plugins/history/qlumtrendlive.h>
#include <plugins/history/qlumtrendpanel.h>
#include <plugins/history/qlumtrendreading.h>
#include <uawidgets/plot/qlumplot.h>
#include <uawidgets/plot/qlumplotarea.h>
#include <uawidgets/plot/qlumplotcurve.h>
#include <uawidgets/plot/qlumsamplestore.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/qlumviewheading.h>
#include <uawidgets/table/qlumtable.h>
#include <uawidgets/table/qlumtablefilter.h>

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QAction>
#include <QActionGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QLocale>
#include <QMap>
#include <QMenu>
#include <QModelIndex>
#include <QSignalBlocker>
#include <QString>
#include <QTabWidget>
#include <QTableView>
#include <QVBoxLayout>
#include <QVariant>
#include <QWidget>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <span>
#include <utility>
#include <vector>

namespace {

constexpr int processedKeys = firstExtraKey;    // keys of targets for aggregates begin here
constexpr int modifiedKeys = 2 * firstExtraKey; // and those for modified values here
constexpr int mostFiltered = 200'000;           // rows that are searched while the user types
constexpr int valueInterval = 500;              // ms between two looks whether a list is out of date
constexpr std::size_t recordedCapacity = 5'000'000;

const QString fileTopic = QStringLiteral("file");
const QString extraTopic = QStringLiteral("extra");

QTableView* makeTableView(const QString& name, const QString& accessibleName, QAbstractItemModel* model)
{
    auto* view = new QTableView;
    view->setObjectName(name);
    view->setAccessibleName(accessibleName);
    view->setModel(model);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setContextMenuPolicy(Qt::ActionsContextMenu);
    view->setSortingEnabled(true);
    view->sortByColumn(-1, Qt::AscendingOrder);
    return view;
}

} // namespace

// ---- lists

QWidget* QlumTrendViewDocument::makeNumericValues()
{
    auto* page = new QWidget;
    m_valueCurve = new QComboBox;
    m_valueCurve->setObjectName(QStringLiteral("valueCurve"));
    m_valueCurve->setAccessibleName(tr("Curve whose values are listed"));
    m_valueCurve->setToolTip(m_valueCurve->accessibleName());
    letBeSmall(m_valueCurve);
    m_valueText = new QLineEdit;
    m_valueText->setObjectName(QStringLiteral("valueFilter"));
    m_valueText->setAccessibleName(tr("Text that values must have to be listed"));
    m_valueText->setPlaceholderText(tr("Filter"));
    m_valueText->setClearButtonEnabled(true);
    m_values = new QlumCurveValuesModel(this);
    m_valueFilter = new QlumTableFilter(this);
    m_valueFilter->setSourceModel(m_values);
    QTableView* view =
        makeTableView(QStringLiteral("numericValues"), tr("Values of the curve"), m_valueFilter);
    makeCompact(view, {QlumCurveValuesModel::SourceTimestamp, QlumCurveValuesModel::ServerTimestamp});
    qlumMakeTable(view, {tr("Values of the curve appear here when its history has been read."),
                         QStringLiteral("values"), m_state, QStringLiteral("values"), false});
    auto* bar = new QHBoxLayout;
    bar->addWidget(m_valueCurve, 1);
    bar->addWidget(m_valueText, 1);
    auto* layout = new QVBoxLayout(page);
    layout->addLayout(bar);
    layout->addWidget(view, 1);
    return page;
}

QWidget* QlumTrendViewDocument::makeModifiedValues()
{
    m_modified = new QlumModifiedModel(this);
    auto* filter = new QlumTableFilter(this);
    filter->setSourceModel(m_modified);
    QTableView* view = makeTableView(QStringLiteral("modifiedValues"), tr("Modified values"), filter);
    makeCompact(view, {QlumModifiedModel::Source, QlumModifiedModel::Server, QlumModifiedModel::Changed});
    qlumMakeTable(view, {tr("Check \"Modified values\", and press Update, to see what somebody has changed."),
                         QStringLiteral("modified"), m_state, QStringLiteral("modified"), false});
    return view;
}

void QlumTrendViewDocument::makeItemActions()
{
    auto* steps = new QAction(tr("Draw as &Steps"), m_items);
    steps->setObjectName(QStringLiteral("drawSteps"));
    steps->setCheckable(true);
    steps->setWhatsThis(
        tr("<b>Draw as Steps</b><br>Each value holds until the next, instead of a line between them."));
    connect(steps, &QAction::triggered, this, &QlumTrendViewDocument::toggleSteps);
    auto* menu = new QMenu(tr("Line &Width"), m_items);
    auto* group = new QActionGroup(menu);
    constexpr int mostWidth = 4;
    for (int width = 1; width <= mostWidth; ++width) {
        QAction* action =
            menu->addAction(tr("%n pixel(s)", nullptr, width), this, [this, width] { setWidth(width); });
        action->setCheckable(true);
        group->addAction(action);
    }
    m_items->addAction(steps);
    m_items->addAction(menu->menuAction());
    connect(m_items->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this, steps, group, mostWidth](const QModelIndex& row) {
                if (!row.isValid())
                    return;
                const QlumTrendItem& item = m_model->rowAt(row);
                steps->setChecked(item.stepped);
                group->actions().at(std::clamp(item.width, 1, mostWidth) - 1)->setChecked(true);
            });
}

void QlumTrendViewDocument::connectExtras()
{
    connect(m_reading, &QlumTrendReading::aggregatesRead, m_extras, &QlumTrendExtras::addAggregates);
    connect(m_reading, &QlumTrendReading::fileWritten, this, &QlumTrendViewDocument::fileWritten);
    connect(m_live, &QlumTrendLive::samplesCame, this, &QlumTrendViewDocument::takeLive);
    connect(m_live, &QlumTrendLive::refused, this, [this](int key, const QString& why) {
        if (const QlumTrendItem* item = m_model->find(key))
            m_messages->tell({QlumMessage::Warning,
                              extraTopic,
                              tr("%1 does not go on live.").arg(item->name),
                              why,
                              {},
                              {}});
    });
    connect(m_liveBox, &QCheckBox::toggled, this, &QlumTrendViewDocument::setLive);
    connect(
        m_valueText, &QLineEdit::textChanged, this,
        [this](const QString& text) { m_valueFilter->setText(text); });
    connect(
        m_valueCurve, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this] { showValues(); });
    connect(m_tabs, &QTabWidget::currentChanged, this, [this] { listCurves(); });
    m_valueTimer.setInterval(valueInterval);
    connect(&m_valueTimer, &QTimer::timeout, this, &QlumTrendViewDocument::showValues);
    m_valueTimer.start();
}

// The choice keeps its curve, whatever comes and goes.
void QlumTrendViewDocument::listCurves()
{
    const std::vector<QlumPlotCurve*> curves = m_plot->area()->curves();
    const QVariant chosen = m_valueCurve->currentData();
    const QSignalBlocker quiet(m_valueCurve);
    m_valueCurve->clear();
    for (const QlumPlotCurve* curve : curves)
        m_valueCurve->addItem(curve->name(), curve->number());
    m_valueCurve->setCurrentIndex(std::max(0, m_valueCurve->findData(chosen)));
    showValues();
}

void QlumTrendViewDocument::showValues()
{
    if (!m_valueCurve->isVisible())
        return;
    for (const QlumPlotCurve* curve : m_plot->area()->curves()) {
        if (curve->number() != m_valueCurve->currentData().toInt() || m_values->shows(curve->samples()))
            continue;
        const bool canFilter = curve->samples().size() <= static_cast<std::size_t>(mostFiltered);
        m_valueText->setEnabled(canFilter);
        m_valueText->setToolTip(canFilter
                                    ? tr("Only values with this text are listed.")
                                    : tr("There are too many values to search; read a shorter time range."));
        m_values->setSamples(curve->samples(), curve->valueNames());
    }
}

// ---- aggregates and modified values

void QlumTrendViewDocument::readExtras(const std::map<unsigned int, QlumHistoryPlan>& raw)
{
    const auto readWith = [this](QlumHistoryPlan plan, int keys) {
        for (QlumHistoryTarget& target : plan.targets) {
            target.key += keys;
            target.aggregate = plan.kind == QlumHistoryPlan::Processed ? m_extras->aggregate() : UaNodeId();
        }
        m_reading->read(plan);
    };
    if (m_extras->wantsProcessed() && !m_extras->hasProcessed())
        m_extraFaults.append(tr("the servers of these variables list no aggregates"));
    for (const auto& [serverId, plan] : raw) {
        if (m_extras->hasProcessed()) {
            QlumHistoryPlan processed = plan;
            processed.kind = QlumHistoryPlan::Processed;
            processed.interval = m_extras->interval();
            processed.aggregateConfiguration = m_extras->configuration();
            readWith(processed, processedKeys);
        }
        if (m_extras->hasModified() && !plan.readModified) {
            QlumHistoryPlan modified = plan;
            modified.readModified = true;
            modified.returnBounds = false;
            readWith(modified, modifiedKeys);
        }
    }
}

bool QlumTrendViewDocument::takeExtraBatch(QlumHistoryBatch& batch)
{
    if (batch.key < firstExtraKey)
        return false;
    const bool isModified = batch.key >= modifiedKeys;
    const int key = batch.key - (isModified ? modifiedKeys : processedKeys);
    const auto found = m_trends.find(key);
    const QlumTrendItem* item = m_model->find(key);
    if (found == m_trends.end() || item == nullptr)
        return true;
    if (isModified) {
        m_modified->add(key, item->name, std::move(batch.modified));
        return true;
    }
    Trend& trend = found->second;
    if (trend.processed == nullptr) {
        trend.processed = m_plot->addCurve(tr("%1 (%2)").arg(item->name, m_extras->aggregateName()),
                                           trend.node.unit, QlumCurveForm::Steps);
        trend.processed->setOwnColor(item->color.darker(150));
        trend.processed->setWidth(item->width + 1);
    }
    m_plot->append(trend.processed, batch.samples);
    return true;
}

QlumPlotCurve* QlumTrendViewDocument::processedCurve(int key) const
{
    const auto found = m_trends.find(key);
    return found == m_trends.end() ? nullptr : found->second.processed;
}

void QlumTrendViewDocument::tellExtraFaults()
{
    if (m_extraFaults.isEmpty())
        return m_messages->dismiss(extraTopic);
    m_messages->tell({QlumMessage::Warning,
                      extraTopic,
                      tr("Not all processed or modified values could be read."),
                      m_extraFaults.join(QStringLiteral("; ")),
                      {},
                      {}});
}

// ---- live values

void QlumTrendViewDocument::setLive(bool isLive)
{
    m_plot->setFollowing(isLive);
    for (const QlumTrendItem& item : m_model->rows())
        if (!isLive)
            m_live->unwatch(item.key);
        else if (!item.isLost)
            m_live->watch(item.key, item.serverId, item.nodeId);
}

void QlumTrendViewDocument::takeLive(int key, const std::vector<QlumSample>& samples)
{
    const auto found = m_trends.find(key);
    if (found == m_trends.end())
        return;
    Trend& trend = found->second;
    trend.waiting.insert(trend.waiting.end(), samples.begin(), samples.end());
    if (!trend.isReading)
        appendLive(trend);
    m_heading->touch();
}

// What the history has already told is not told again.
void QlumTrendViewDocument::appendLive(Trend& trend)
{
    const QlumSampleStore& known = trend.curve->samples();
    const std::int64_t last = known.isEmpty() ? 0 : known.timeAt(known.size() - 1);
    std::erase_if(trend.waiting, [last](const QlumSample& sample) { return sample.time <= last; });
    if (!trend.waiting.empty())
        m_plot->append(trend.curve, std::exchange(trend.waiting, {}));
}

// ---- what other tools have recorded

void QlumTrendViewDocument::showSamples(std::span<const QlumToolCurve> curves)
{
    for (QlumPlotCurve* curve : std::exchange(m_recorded, {}))
        m_plot->removeCurve(curve);
    for (const QlumToolCurve& given : curves) {
        QlumPlotCurve* curve =
            m_plot->addCurve(given.name, given.unit,
                             given.isStepped ? QlumCurveForm::Steps : QlumCurveForm::Lines, recordedCapacity);
        std::vector<QlumSample> samples;
        samples.reserve(given.samples.size());
        for (const QlumToolSample& sample : given.samples)
            samples.push_back({sample.time, sample.value, sample.status, sample.serverTime});
        m_plot->append(curve, samples);
        m_recorded.push_back(curve);
    }
    m_plot->area()->setView(m_plot->area()->wholeView());
    m_tabs->setCurrentIndex(0);
    listCurves();
}

// ---- files

void QlumTrendViewDocument::askForFile()
{
    const QString name = QFileDialog::getSaveFileName(
        this, tr("Save History as CSV"), QStringLiteral("history.csv"), tr("Comma separated values (*.csv)"));
    if (!name.isEmpty())
        saveRange(name);
}

void QlumTrendViewDocument::saveRange(const QString& fileName)
{
    const QDateTime start = std::exchange(m_rangeStart, m_panel->startTime());
    const QDateTime end = std::exchange(m_rangeEnd, m_panel->endTime());
    std::vector<QlumHistoryPlan> all;
    for (auto& [serverId, plan] : plans()) {
        plan.readModified = false;
        plan.maximumNextCalls = std::numeric_limits<int>::max();
        plan.maximumValues = 0;
        all.push_back(std::move(plan));
    }
    m_rangeStart = start;
    m_rangeEnd = end;
    QMap<int, QlumHistoryName> names;
    for (const QlumTrendItem& item : m_model->rows())
        names.insert(item.key, {item.name, m_trends.at(item.key).node.unit});
    if (all.empty())
        return m_messages->tell({QlumMessage::Warning,
                                 fileTopic,
                                 tr("Nothing was saved."),
                                 tr("There is no variable whose server is connected."),
                                 {},
                                 {}});
    m_messages->tell({QlumMessage::Note, fileTopic,
                      tr("The history is being written to %1.").arg(QDir::toNativeSeparators(fileName)),
                      tr("How far it is stands in the list of running work."), tr("&Cancel"),
                      [this] { m_reading->cancelFiles(); }});
    m_reading->writeFile(std::move(all), names, fileName);
}

void QlumTrendViewDocument::fileWritten(const QlumHistoryFile& file, const QString& fileName)
{
    const QString name = QDir::toNativeSeparators(fileName);
    if (!file.fault.isEmpty())
        return m_messages->tell(
            {QlumMessage::Error, fileTopic, tr("%1 was not written.").arg(name), file.fault, {}, {}});
    const QString values = QLocale().toString(file.values);
    if (file.incomplete > 0)
        return m_messages->tell(
            {QlumMessage::Warning,
             fileTopic,
             tr("%1 holds %2 values.").arg(name, values),
             tr("%n variable(s) could not be read to the end; the log says more.", nullptr, file.incomplete),
             {},
             {}});
    m_messages->tell({QlumMessage::Note, fileTopic, tr("%1 holds %2 values.").arg(name, values), {}, {}, {}});
}

// ---- how curves look

void QlumTrendViewDocument::setWidth(int width)
{
    for (const QModelIndex& row : m_items->selectionModel()->selectedRows()) {
        const QlumTrendItem item = m_model->rowAt(row.row());
        m_model->setStyle(item.key, item.stepped, width);
        curve(item.key)->setWidth(width);
    }
    m_plot->area()->refresh();
    markModified();
}

void QlumTrendViewDocument::toggleSteps()
{
    for (const QModelIndex& row : m_items->selectionModel()->selectedRows()) {
        const QlumTrendItem item = m_model->rowAt(row.row());
        m_model->setStyle(item.key, !item.stepped, item.width);
        curve(item.key)->setForm(item.stepped ? QlumCurveForm::Lines : QlumCurveForm::Steps);
    }
    m_plot->area()->refresh();
    markModified();
}
