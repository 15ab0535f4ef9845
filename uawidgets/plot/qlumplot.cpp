#include <uawidgets/plot/qlumplot.h>

#include <app/api/qlumactiontable.h>
#include <app/api/qlumguithread.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumtext.h>
#include <uawidgets/plot/qlumplotactions_p.h>
#include <uawidgets/plot/qlumplotarea.h>
#include <uawidgets/plot/qlumplotcursors.h>
#include <uawidgets/plot/qlumplotcurve.h>
#include <uawidgets/plot/qlumplotexport.h>
#include <uawidgets/plot/qlumplotnavigator.h>
#include <uawidgets/plot/qlumplotview.h>
#include <uawidgets/plot/qlumsamplestore.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/table/qlumcopy.h>

#include <QAbstractItemView>
#include <QAction>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDateTime>
#include <QFileInfo>
#include <QFutureWatcherBase>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHeaderView>
#include <QIODevice>
#include <QList>
#include <QLocale>
#include <QMenu>
#include <QMetaMethod>
#include <QPaintEvent>
#include <QPainter>
#include <QPoint>
#include <QRectF>
#include <QSaveFile>
#include <QSignalBlocker>
#include <QString>
#include <QStringList>
#include <QTableWidget>
#include <QTableWidgetItem>
#include <QTimeZone>
#include <QVariant>
#include <QWidget>
#include <QtConcurrentRun>
#include <qwt_interval.h>
#include <qwt_legend.h>
#include <qwt_legend_data.h>
#include <qwt_legend_label.h>
#include <qwt_plot.h>
#include <qwt_scale_map.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace {

namespace A = QlumPlotAction;

constexpr int paintInterval = 50; // ms
constexpr double panOfKey = 0.1;
constexpr int cursorPixelsOfKey = 1;
constexpr int significantDigits = 10;
constexpr int readoutLines = 9;       // of text; more rows scroll
constexpr double firstWidth = 60'000; // ms that are shown while samples begin to arrive

// The value axes, beside the area.
class ValueScales : public QWidget
{
public:
    ValueScales(QlumPlotArea* area, QWidget* parent) : QWidget(parent), m_area(area)
    {
        setObjectName(QStringLiteral("valueScales"));
        setAccessibleName(QlumPlot::tr("Value axes"));
    }

    void follow()
    {
        setFixedWidth(static_cast<int>(m_area->valueScalesWidth()));
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        const QRectF canvas(m_area->canvas()->geometry());
        QwtScaleMap map = m_area->canvasMap(QwtPlot::yLeft);
        map.setPaintInterval(map.p1() + canvas.top(), map.p2() + canvas.top());
        m_area->drawValueScales(&painter, QRectF(width(), canvas.top(), canvas.width(), canvas.height()),
                                map);
    }

private:
    QlumPlotArea* m_area;
};

QString numberText(const std::optional<double>& value)
{
    return value ? QLocale().toString(*value, 'g', significantDigits) : QStringLiteral("\u2013");
}

} // namespace

QlumPlot::QlumPlot(QWidget* parent) : QWidget(parent), m_area(new QlumPlotArea(this))
{
    m_area->setObjectName(QStringLiteral("plotArea"));
    m_area->setAccessibleName(tr("Plot"));
    auto* scales = new ValueScales(m_area, this);
    m_scales = scales;
    m_messages = new QlumMessageBar(this);
    m_cursors = new QlumPlotCursors(m_area, this);
    m_navigator = new QlumPlotNavigator(m_area, m_cursors, this);
    makeReadout();
    makeActions();

    auto* legend = new QwtLegend(m_area);
    legend->setObjectName(QStringLiteral("legend"));
    legend->setAccessibleName(tr("Legend; a click hides or shows a curve"));
    legend->setDefaultItemMode(QwtLegendData::Checkable);
    m_area->insertLegend(legend, QwtPlot::BottomLegend);
    connect(legend, &QwtLegend::checked, this, &QlumPlot::toggleCurve);

    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_messages, 0, 0, 1, 2);
    layout->addWidget(m_scales, 1, 0);
    layout->addWidget(m_area, 1, 1);
    layout->addWidget(m_readout, 2, 0, 1, 2);
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(1, 1);

    m_flushTimer.setSingleShot(true);
    m_flushTimer.setInterval(paintInterval);
    connect(&m_flushTimer, &QTimer::timeout, this, &QlumPlot::flush);
    connect(m_area, &QlumPlotArea::scalesChanged, scales, [scales] { scales->follow(); });
    connect(m_cursors, &QlumPlotCursors::changed, this, &QlumPlot::updateReadout);
    connect(m_navigator, &QlumPlotNavigator::navigated, this, [this] { setFollowing(false); });
    connect(m_area, &QlumPlotArea::viewChanged, this, &QlumPlot::updateActions);
    setFocusProxy(m_area->canvas());
    setFollowing(true);
    setUtc(qlumTimeLook().isUtc);
    setEmptyText(tr("No samples yet"), tr("Curves appear here as soon as values arrive."));
}

QlumPlot::~QlumPlot()
{
    // the area would tell of its last changes
    disconnect(m_area, nullptr, this, nullptr);
    disconnect(m_area, nullptr, m_scales, nullptr);
    delete m_navigator;
    delete m_cursors;
}

// ---- curves

QlumPlotCurve* QlumPlot::addCurve(const QString& name, const QString& unit, QlumCurveForm form,
                                  std::size_t capacity)
{
    QlumPlotCurve* curve = m_area->addCurve(name, unit, form, capacity);
    if (auto* legend = qobject_cast<QwtLegend*>(m_area->legend())) {
        const QSignalBlocker quiet(legend);
        if (auto* label = qobject_cast<QwtLegendLabel*>(legend->legendWidget(m_area->itemToInfo(curve)))) {
            label->setChecked(true);
            label->setAccessibleName(name);
        }
    }
    updateReadout();
    return curve;
}

void QlumPlot::removeCurve(QlumPlotCurve* curve)
{
    m_sorting.erase(curve);
    m_area->removeCurve(curve);
    updateReadout();
}

void QlumPlot::append(QlumPlotCurve* curve, std::span<const QlumSample> samples)
{
    qlumAssertGuiThread();
    curve->samples().append(samples);
    if (!m_flushTimer.isActive())
        m_flushTimer.start();
}

void QlumPlot::clearSamples()
{
    for (QlumPlotCurve* curve : m_area->curves())
        curve->samples().clear();
    m_hasShownSamples = false;
    flush();
}

void QlumPlot::flush()
{
    QwtInterval times;
    for (QlumPlotCurve* curve : m_area->curves()) {
        times |= curve->times();
        if (curve->samples().unsorted() > 0)
            sortLate(curve);
    }
    if (isFollowing() && times.isValid()) {
        QlumPlotView view = m_area->view();
        const double width = m_hasShownSamples ? view.to - view.from : std::max(times.width(), firstWidth);
        view.to = times.maxValue();
        view.from = view.to - width;
        m_hasShownSamples = true;
        m_area->setView(view);
    } else {
        m_area->refresh();
    }
    updateReadout();
}

// The sort works on a copy, so that a million samples of a history do not stop the window.
void QlumPlot::sortLate(QlumPlotCurve* curve)
{
    auto& watcher = m_sorting[curve];
    if (watcher && watcher->isRunning())
        return;
    watcher = std::make_unique<QFutureWatcher<QlumSampleStore>>();
    connect(
        watcher.get(), &QFutureWatcherBase::finished, this,
        [this, curve] {
            static_cast<void>(curve->samples().adopt(m_sorting.at(curve)->result()));
            m_flushTimer.start();
        });
    watcher->setFuture(QtConcurrent::run([samples = curve->samples()] { return samples.sorted(); }));
}

void QlumPlot::toggleCurve(const QVariant& item, bool on)
{
    QwtPlotItem* curve = m_area->infoToItem(item);
    if (curve == nullptr)
        return;
    curve->setVisible(on);
    m_area->refresh();
    updateReadout();
}

// ---- settings

void QlumPlot::setEmptyText(const QString& headline, const QString& hint)
{
    m_area->setEmptyText(headline, hint);
}

void QlumPlot::setFollowing(bool follows)
{
    m_actions[A::Follow]->setChecked(follows);
}

bool QlumPlot::isFollowing() const
{
    return m_actions[A::Follow]->isChecked();
}

void QlumPlot::setUtc(bool isUtc)
{
    m_actions[A::Utc]->setChecked(isUtc);
    m_area->setTimeZone(isUtc ? QTimeZone::utc() : QTimeZone::systemTimeZone());
    updateReadout();
}

// ---- commands

void QlumPlot::makeActions()
{
    m_actions = qlumPlotActions(this);
    const auto on = [this](A::Id id, auto function) {
        connect(m_actions[id], &QAction::triggered, this, function);
    };
    on(
        A::Back, [this] { m_navigator->goBack(); });
    on(
        A::Forward, [this] { m_navigator->goForward(); });
    on(
        A::ZoomIn, [this] { m_navigator->go(m_area->view().zoomed(0.5, 0.5)); });
    on(
        A::ZoomOut, [this] { m_navigator->go(m_area->view().zoomed(2, 0.5)); });
    on(
        A::ShowAll, [this] { m_navigator->go(m_area->wholeView()); });
    on(
        A::Left, [this] { m_navigator->go(m_area->view().panned(-panOfKey)); });
    on(
        A::Right, [this] { m_navigator->go(m_area->view().panned(panOfKey)); });
    on(
        A::Follow, [this] { flush(); });
    on(
        A::Cursors, [this](bool visible) { m_cursors->setVisible(visible); });
    on(
        A::CursorALeft, [this] { moveCursor(0, -cursorPixelsOfKey); });
    on(
        A::CursorARight, [this] { moveCursor(0, cursorPixelsOfKey); });
    on(
        A::CursorBLeft, [this] { moveCursor(1, -cursorPixelsOfKey); });
    on(
        A::CursorBRight, [this] { moveCursor(1, cursorPixelsOfKey); });
    on(
        A::Utc, [this](bool isUtc) { setUtc(isUtc); });
    on(
        A::UsualRanges, [this](bool shows) { m_area->setShowsUsualRanges(shows); });
    on(
        A::Copy,
        [this] { QGuiApplication::clipboard()->setImage(qlumPlotImage(m_area, m_area->size(), 1)); });
    on(A::Export, [this] { askForExport(); });
    addActions(plotActions());
    addActions(m_actions.list({A::CursorALeft, A::CursorARight, A::CursorBLeft, A::CursorBRight}));
    updateActions();
}

QList<QAction*> QlumPlot::plotActions() const
{
    return m_actions.list({A::Back, A::Forward, A::ZoomIn, A::ZoomOut, A::ShowAll, A::Left, A::Right,
                           A::Follow, A::Cursors, A::Utc, A::UsualRanges, A::Copy, A::Export});
}

void QlumPlot::updateActions()
{
    m_actions[A::Back]->setEnabled(m_navigator->history().hasBack());
    m_actions[A::Forward]->setEnabled(m_navigator->history().hasForward());
}

void QlumPlot::contextMenuEvent(QContextMenuEvent* event)
{
    QMenu menu(this);
    menu.addActions(plotActions());
    menu.exec(event->globalPos());
}

// ---- cursors

void QlumPlot::makeReadout()
{
    m_readout = new QTableWidget(this);
    m_readout->setObjectName(QStringLiteral("cursorReadout"));
    m_readout->setAccessibleName(tr("Values at the cursors"));
    m_readout->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_readout->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_readout->setColumnCount(5);
    m_readout->setHorizontalHeaderLabels({tr("Curve"), tr("Unit"), tr("A"), tr("B"), tr("B \u2212 A")});
    m_readout->verticalHeader()->hide();
    m_readout->horizontalHeader()->setSectionResizeMode(
        QHeaderView::ResizeToContents); // a row for each curve, no more
    m_readout->horizontalHeader()->setStretchLastSection(true);
    m_readout->hide();
    qlumAddCopyActions(m_readout);
}

void QlumPlot::updateReadout()
{
    m_readout->setVisible(m_cursors->isVisible());
    m_actions[A::Cursors]->setChecked(m_cursors->isVisible());
    if (!m_cursors->isVisible())
        return;
    const auto timeText = [this](int cursor) {
        const QDateTime time =
            QDateTime::fromMSecsSinceEpoch(std::llround(m_cursors->time(cursor)), m_area->timeZone());
        return QLocale().toString(time, qlumDateTimeFormat());
    };
    std::vector<QStringList> rows{{tr("Time"), QString(), timeText(0), timeText(1),
                                   qlumDurationText(m_cursors->time(1) - m_cursors->time(0))}};
    for (const QlumCursorReading& reading : m_cursors->readings())
        rows.push_back({reading.curve, reading.unit, numberText(reading.a), numberText(reading.b),
                        numberText(reading.difference())});
    m_readout->setRowCount(static_cast<int>(rows.size()));
    const int height = m_readout->horizontalHeader()->sizeHint().height() +
                       m_readout->verticalHeader()->length() + 2 * m_readout->frameWidth();
    m_readout->setMaximumHeight(std::min(height, m_readout->fontMetrics().height() * readoutLines));
    for (int row = 0; row < m_readout->rowCount(); ++row)
        for (int column = 0; column < m_readout->columnCount(); ++column) {
            if (m_readout->item(row, column) == nullptr)
                m_readout->setItem(row, column, new QTableWidgetItem);
            m_readout->item(row, column)->setText(rows[static_cast<std::size_t>(row)][column]);
        }
}

void QlumPlot::moveCursor(int cursor, int pixels)
{
    if (!m_cursors->isVisible())
        return;
    const QlumPlotView& view = m_area->view();
    m_cursors->setTime(cursor, m_cursors->time(cursor) +
                                   pixels * (view.to - view.from) / std::max(1, m_area->canvas()->width()));
}

// ---- export

void QlumPlot::askForExport()
{
    const QString name = qlumAskForPlotFile(this, tr("Samples as text"));
    if (!name.isEmpty())
        exportTo(name);
}

void QlumPlot::exportTo(const QString& fileName)
{
    switch (qlumPlotFileOf(fileName)) {
    case QlumPlotFile::Csv:
        return exportSamples(fileName);
    case QlumPlotFile::Png:
    case QlumPlotFile::Svg:
        return endExport(fileName, qlumWritePlotPicture(m_area, size(), fileName));
    case QlumPlotFile::Unknown:
        failExport(qlumPlotFileFault(fileName, QString()));
    }
}

void QlumPlot::exportSamples(const QString& fileName)
{
    const auto write = [this, fileName, curves = qlumVisibleSamples(*m_area)](QlumJob& job) {
        std::size_t total = 0;
        for (const QlumCurveSamples& curve : curves)
            total += curve.samples.size();
        const auto goesOn = [&job, total](std::size_t lines) {
            job.setProgress(static_cast<qint64>(lines), static_cast<qint64>(total));
            return !job.isCancelled();
        };
        QSaveFile file(fileName);
        const bool isWritten =
            file.open(QIODevice::WriteOnly) && qlumWritePlotCsv(curves, &file, goesOn) && file.commit();
        if (isWritten || !job.isCancelled())
            job.post([this, fileName, fault = isWritten ? QString() : file.errorString()] {
                endExport(fileName, fault);
            });
    };
    m_exports.add({tr("Exporting samples to %1").arg(QFileInfo(fileName).fileName())}, write);
}

void QlumPlot::endExport(const QString& fileName, const QString& fault)
{
    if (!fault.isEmpty())
        return failExport(qlumPlotFileFault(fileName, fault));
    m_messages->dismiss();
    emit exported(fileName);
}

void QlumPlot::failExport(const QString& message)
{
    if (isSignalConnected(QMetaMethod::fromSignal(&QlumPlot::exportFailed)))
        emit exportFailed(message);
    else
        m_messages->tell({QlumMessage::Error, {}, message, {}, {}, {}});
}
