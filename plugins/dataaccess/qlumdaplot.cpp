#include <plugins/dataaccess/qlumdaplot.h>

#include <app/api/qlumtext.h>
#include <plugins/dataaccess/qlumdamodel.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumdatafield.h>
#include <uawidgets/plot/qlumplot.h>
#include <uawidgets/plot/qlumplotarea.h>
#include <uawidgets/plot/qlumplotcurve.h>
#include <uawidgets/plot/qlumplotview.h>
#include <uawidgets/plot/qlumsamplestore.h>
#include <uawidgets/qlumwrappingbar.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWidget>

#include <limits>
#include <map>
#include <utility>
#include <vector>

namespace {
constexpr quint32 keptByServer = 100; // values that change faster than they are sent
constexpr int minute = 60'000;
} // namespace

QlumDaPlot::QlumDaPlot(QlumDaModel& model, QlumMonitoringProvider monitoring, QWidget* parent)
    : QWidget(parent), m_model(model), m_feed(model, std::move(monitoring), keptByServer),
      m_plot(new QlumPlot)
{
    connect(&m_feed, &QlumDaFeed::came, this, &QlumDaPlot::take);
    connect(&m_feed, &QlumDaFeed::lost, this, &QlumDaPlot::tellLost);
    connect(&m_feed, &QlumDaFeed::ended, this, &QlumDaPlot::dropCurves);
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

QlumDaPlot::~QlumDaPlot() = default;

QWidget* QlumDaPlot::makeBar()
{
    auto* bar = new QlumWrappingBar;
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
    m_note = new QLabel;
    m_note->setObjectName(QStringLiteral("plotNote"));
    m_note->setTextFormat(Qt::PlainText);
    for (QWidget* part : {static_cast<QWidget*>(m_pause), static_cast<QWidget*>(m_window),
                          static_cast<QWidget*>(m_ownAxes), static_cast<QWidget*>(m_note)})
        bar->add(part);
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
    std::vector<quint32> added;
    for (const quint32 key : keys)
        if (const QlumDataItem* item = m_model.find(key);
            item != nullptr && !item->nodeId.isNull() && m_curves.try_emplace(key).second) {
            m_curves[key] = makeCurve(*item);
            added.push_back(key);
        }
    m_feed.add(added);
    emit keysChanged();
}

void QlumDaPlot::rowsChanged()
{
    for (auto& [key, curve] : m_curves)
        if (const QlumDataItem* item = m_model.find(key);
            item != nullptr && (curve->name() != nameOf(*item) || curve->unit() != unitOf(*item)))
            remakeCurve(key, curve);
}

void QlumDaPlot::removeKeys(const std::vector<quint32>& keys)
{
    m_feed.remove(keys);
    dropCurves(keys);
}

void QlumDaPlot::dropCurves(const std::vector<quint32>& keys)
{
    bool isOther = false;
    for (const quint32 key : keys) {
        const auto found = m_curves.find(key);
        if (found == m_curves.end())
            continue;
        m_plot->removeCurve(found->second);
        m_curves.erase(found);
        isOther = true;
    }
    if (isOther)
        emit keysChanged();
}

std::vector<quint32> QlumDaPlot::keys() const
{
    return m_feed.keys();
}

QlumPlotCurve* QlumDaPlot::curve(quint32 key) const
{
    const auto found = m_curves.find(key);
    return found == m_curves.end() ? nullptr : found->second;
}

// Axes belong to units and the legend to names, so the curve is made anew with what it has.
void QlumDaPlot::remakeCurve(quint32 key, QlumPlotCurve*& curve)
{
    const QlumSampleStore& before = curve->samples();
    std::vector<QlumSample> samples;
    samples.reserve(before.size());
    for (std::size_t i = 0; i < before.size(); ++i)
        samples.push_back(before.at(i));
    QlumPlotCurve* const made = makeCurve(*m_model.find(key));
    m_plot->append(made, samples);
    m_plot->removeCurve(curve);
    curve = made;
}

// ---- what comes

// A value that is no number, since its node has changed its type for one, is a gap.
void QlumDaPlot::take(const std::vector<QlumDaFeed::Value>& values)
{
    std::map<quint32, std::vector<QlumSample>> samples;
    for (const QlumDaFeed::Value& one : values) {
        const QlumDataItem* item = m_model.find(one.key);
        if (item == nullptr || !m_curves.contains(one.key))
            continue;
        const UaDataValue& value = one.value;
        const UaDateTime time =
            value.sourceTimestamp().isNull() ? value.serverTimestamp() : value.sourceTimestamp();
        const UaVariant shown = m_model.partOf(*item, value.value());
        samples[one.key].push_back({time.isNull() ? one.received : time.value(),
                                    qlumDaNumber(shown).value_or(std::numeric_limits<double>::quiet_NaN()),
                                    value.statusCode().code(), value.serverTimestamp().value()});
    }
    for (const auto& [key, ofRow] : samples)
        m_plot->append(m_curves.at(key), ofRow);
}

void QlumDaPlot::tellLost(quint64 count)
{
    m_lost += count;
    m_note->setText(tr("%1 values came too fast to be drawn").arg(QLocale().toString(m_lost)));
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
