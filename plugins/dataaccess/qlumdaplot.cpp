#include <plugins/dataaccess/qlumdaplot.h>

#include <app/api/qlumtext.h>
#include <monitoring/allsink.h>
#include <monitoring/monitoredserver.h>
#include <plugins/dataaccess/qlumdamodel.h>
#include <plugins/dataaccess/qlumdawatch.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumdatafield.h>
#include <uawidgets/plot/qlumplot.h>
#include <uawidgets/plot/qlumplotarea.h>
#include <uawidgets/plot/qlumplotcurve.h>
#include <uawidgets/plot/qlumplotview.h>
#include <uawidgets/plot/qlumsamplestore.h>

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMetaObject>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWidget>

#include <algorithm>
#include <limits>
#include <map>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace {
constexpr quint32 keptByServer = 100; // values that change faster than they are sent
constexpr int minute = 60'000;
} // namespace

QlumDaPlot::QlumDaPlot(QlumDaModel& model, QlumMonitoringProvider monitoring, QWidget* parent)
    : QWidget(parent), m_model(model), m_monitoring(std::move(monitoring)),
      m_sink(std::make_shared<monitoring::AllSink>(
          [this] { QMetaObject::invokeMethod(this, &QlumDaPlot::take, Qt::QueuedConnection); })),
      m_plot(new QlumPlot)
{
    setObjectName(QStringLiteral("dataPlotPage"));
    m_plot->setObjectName(QStringLiteral("dataPlot"));
    m_plot->setEmptyText(tr("No curves yet"),
                         tr("Select rows of the table and choose \"Plot\" in their menu."));
    constexpr int leastHeight = 200; // axis, legend and a curve that can be seen
    m_plot->setMinimumHeight(leastHeight);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(makeBar());
    layout->addWidget(m_plot, 1);
}

QlumDaPlot::~QlumDaPlot()
{
    m_sink->close();
    for (const auto& [key, plotted] : m_plotted)
        if (plotted.server && plotted.item != 0)
            plotted.server->remove(std::span(&plotted.item, 1));
}

QWidget* QlumDaPlot::makeBar()
{
    auto* bar = new QWidget;
    m_pause = new QPushButton(tr("&Pause"));
    m_pause->setObjectName(QStringLiteral("pausePlot"));
    m_pause->setCheckable(true);
    m_pause->setToolTip(tr("Holds the picture still; values are collected on."));
    m_pause->setWhatsThis(m_pause->toolTip());
    connect(m_pause, &QPushButton::toggled, this, &QlumDaPlot::setPaused);
    m_window = new QComboBox;
    m_window->setObjectName(QStringLiteral("plotWindow"));
    m_window->setAccessibleName(tr("Time that is shown"));
    m_window->setToolTip(tr("How much time the plot shows while it follows the newest values."));
    for (const int minutes : {1, 5, 15, 60, 480})
        m_window->addItem(minutes < 60 ? tr("%1 min").arg(minutes) : tr("%1 h").arg(minutes / 60),
                          minutes * minute);
    connect(m_window, QOverload<int>::of(&QComboBox::activated), this,
            [this] { setWindow(m_window->currentData().toInt()); });
    m_ownAxes = new QCheckBox(tr("An a&xis for each curve"));
    m_ownAxes->setObjectName(QStringLiteral("ownAxes"));
    m_ownAxes->setToolTip(tr("Else curves of one unit share an axis."));
    connect(m_ownAxes, &QCheckBox::toggled, this, &QlumDaPlot::rowsChanged);
    auto* layout = new QHBoxLayout(bar);
    layout->setContentsMargins(4, 4, 4, 0);
    layout->addWidget(m_pause);
    layout->addWidget(m_window);
    layout->addWidget(m_ownAxes);
    layout->addStretch(1);
    return bar;
}

// ---- rows

QString QlumDaPlot::nameOf(const QlumDataItem& item) const
{
    QString name = item.displayName.isEmpty() ? toQString(item.nodeId.toXmlString()) : item.displayName;
    if (!item.fieldPath.isEmpty())
        name += QLatin1Char('.') + item.fieldPath;
    return item.indexRange.isEmpty() ? name : name + QStringLiteral("[%1]").arg(item.indexRange);
}

QString QlumDaPlot::unitOf(const QlumDataItem& item) const
{
    return m_ownAxes->isChecked() ? QStringLiteral("%1 %2").arg(nameOf(item), item.unit).trimmed()
                                  : item.unit;
}

QlumPlotCurve* QlumDaPlot::makeCurve(const QlumDataItem& item)
{
    return m_plot->addCurve(nameOf(item), unitOf(item), QlumCurveForm::Steps);
}

void QlumDaPlot::addKeys(const std::vector<quint32>& keys)
{
    for (const quint32 key : keys) {
        const QlumDataItem* item = m_model.find(key);
        if (item == nullptr || item->nodeId.isNull() || m_plotted.contains(key))
            continue;
        Plotted plotted;
        plotted.curve = makeCurve(*item);
        watch(*item, plotted);
        m_plotted.emplace(key, std::move(plotted));
    }
    emit keysChanged();
}

// A row whose namespace nobody knows yet has to wait: its node id would mean another node.
void QlumDaPlot::watch(const QlumDataItem& item, Plotted& plotted)
{
    if (item.state == QlumDataState::NamespaceGone || item.state == QlumDataState::NoServer)
        return;
    plotted.server = m_monitoring ? m_monitoring(item.serverId) : nullptr;
    if (!plotted.server)
        return;
    monitoring::ItemSettings settings = qlumMonitoringSettings(m_model.settingsOf(item));
    settings.queueSize = std::max(settings.queueSize, keptByServer);
    monitoring::ItemWish wish;
    wish.nodeId = item.nodeId;
    wish.attributeId = item.attributeId;
    wish.indexRange = toUaString(item.indexRange);
    wish.key = item.key;
    plotted.item = plotted.server->add(m_sink, settings, std::span(&wish, 1)).front();
}

void QlumDaPlot::rowsChanged()
{
    for (auto& [key, plotted] : m_plotted) {
        const QlumDataItem* item = m_model.find(key);
        if (item == nullptr)
            continue;
        if (plotted.item == 0)
            watch(*item, plotted);
        if (plotted.curve->name() != nameOf(*item) || plotted.curve->unit() != unitOf(*item))
            remakeCurve(key, plotted);
    }
}

void QlumDaPlot::removeKeys(const std::vector<quint32>& keys)
{
    bool isOther = false;
    for (const quint32 key : keys) {
        const auto found = m_plotted.find(key);
        if (found == m_plotted.end())
            continue;
        if (found->second.server && found->second.item != 0)
            found->second.server->remove(std::span(&found->second.item, 1));
        m_plot->removeCurve(found->second.curve);
        m_plotted.erase(found);
        isOther = true;
    }
    if (isOther)
        emit keysChanged();
}

std::vector<quint32> QlumDaPlot::keys() const
{
    std::vector<quint32> result;
    for (const auto& [key, plotted] : m_plotted)
        result.push_back(key);
    return result;
}

QlumPlotCurve* QlumDaPlot::curve(quint32 key) const
{
    const auto found = m_plotted.find(key);
    return found == m_plotted.end() ? nullptr : found->second.curve;
}

// Axes belong to units and the legend to names, so the curve is made anew with what it has.
void QlumDaPlot::remakeCurve(quint32 key, Plotted& plotted)
{
    const QlumSampleStore& before = plotted.curve->samples();
    std::vector<QlumSample> samples;
    samples.reserve(before.size());
    for (std::size_t i = 0; i < before.size(); ++i)
        samples.push_back(before.at(i));
    QlumPlotCurve* const made = makeCurve(*m_model.find(key));
    m_plot->append(made, samples);
    m_plot->removeCurve(plotted.curve);
    plotted.curve = made;
}

// ---- what comes

void QlumDaPlot::take()
{
    monitoring::AllSink::Batch batch = m_sink->take();
    std::map<quint32, std::vector<QlumSample>> samples;
    for (const monitoring::AllSink::Value& one : batch.values) {
        const auto key = static_cast<quint32>(one.key);
        const QlumDataItem* item = m_model.find(key);
        if (item == nullptr || !m_plotted.contains(key))
            continue;
        const UaDataValue& value = one.value;
        const UaDateTime time =
            value.sourceTimestamp().isNull() ? value.serverTimestamp() : value.sourceTimestamp();
        const UaVariant shown = m_model.partOf(*item, value.value());
        samples[key].push_back({time.isNull() ? UaDateTime::now().value() : time.value(),
                                qlumDaNumber(shown).value_or(std::numeric_limits<double>::quiet_NaN()),
                                value.statusCode().code(), value.serverTimestamp().value()});
    }
    for (const auto& [key, ofRow] : samples)
        m_plot->append(m_plotted.at(key).curve, ofRow);
}

void QlumDaPlot::setPaused(bool isPaused)
{
    m_plot->setFollowing(!isPaused);
    m_pause->setText(isPaused ? tr("&Go On") : tr("&Pause"));
}

void QlumDaPlot::setWindow(int milliseconds)
{
    QlumPlotView view = m_plot->area()->view();
    view.from = view.to - milliseconds;
    view.values.clear();
    m_plot->area()->setView(view);
}
