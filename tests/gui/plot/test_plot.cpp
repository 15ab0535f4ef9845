// What plots paint, and what the user can do with them.
#include <tests/gui/plot/randomsamples.h>
#include <uawidgets/plot/qlumbarplot.h>
#include <uawidgets/plot/qlumdecimation.h>
#include <uawidgets/plot/qlumplot.h>
#include <uawidgets/plot/qlumplotarea.h>
#include <uawidgets/plot/qlumplotcolors.h>
#include <uawidgets/plot/qlumplotcursors.h>
#include <uawidgets/plot/qlumplotcurve.h>
#include <uawidgets/plot/qlumplotexport.h>
#include <uawidgets/plot/qlumplotnavigator.h>
#include <uawidgets/plot/qlumplotview.h>
#include <uawidgets/plot/qlumsamplestore.h>
#include <uawidgets/qlummessagebar.h>

#include <QAction>
#include <QApplication>
#include <QBuffer>
#include <QByteArray>
#include <QColor>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QEvent>
#include <QFile>
#include <QImage>
#include <QMap>
#include <QMouseEvent>
#include <QPalette>
#include <QPixmap>
#include <QPoint>
#include <QPointF>
#include <QRect>
#include <QSignalSpy>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>
#include <QWheelEvent>
#include <QWidget>
#include <QXmlStreamReader>
#include <gtest/gtest.h>
#include <qwt_legend_label.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>
#include <utility>
#include <vector>

namespace {

constexpr std::int64_t tick = 10'000; // a millisecond

// 0 at each of many milliseconds, but for one value.
std::vector<QlumSample> spike(int count, int place, double height)
{
    std::vector<QlumSample> samples;
    for (int i = 0; i < count; ++i)
        samples.push_back({startOfSamples + i * tick, i == place ? height : 0.0, 0});
    return samples;
}

QPalette darkPalette()
{
    QPalette palette(QColor(40, 42, 46));
    palette.setColor(QPalette::Base, QColor(24, 26, 30));
    palette.setColor(QPalette::Text, QColor(230, 230, 230));
    palette.setColor(QPalette::WindowText, QColor(230, 230, 230));
    return palette;
}

class Plot : public testing::Test
{
protected:
    Plot()
    {
        plot.resize(800, 500);
        plot.setUtc(true);
        plot.show();
    }

    void add(QlumPlotCurve* curve, const std::vector<QlumSample>& samples)
    {
        plot.append(curve, samples);
        plot.area()->setView(plot.area()->wholeView());
    }

    QImage canvasImage() { return plot.area()->canvas()->grab().toImage(); }

    // Number of pixels of a colour in a part of the canvas.
    int count(const QColor& color, const QRect& part)
    {
        const QImage image = canvasImage();
        int found = 0;
        for (int y = part.top(); y <= part.bottom(); ++y)
            for (int x = part.left(); x <= part.right(); ++x)
                found += image.valid(x, y) && image.pixelColor(x, y) == color ? 1 : 0;
        return found;
    }

    int xOf(std::int64_t time)
    {
        return static_cast<int>(
            std::lround(plot.area()->canvasMap(QwtPlot::xBottom).transform(qlumPlotTime(time))));
    }

    [[nodiscard]] QRect canvasRect() const { return plot.area()->canvas()->rect(); }
    QAction* action(const char* name) { return plot.findChild<QAction*>(QLatin1String(name)); }

    void drag(QPoint from, QPoint to, Qt::KeyboardModifiers keys = Qt::NoModifier)
    {
        QWidget* canvas = plot.area()->canvas();
        const auto send = [&](QEvent::Type type, QPoint place, Qt::MouseButton button,
                              Qt::MouseButtons buttons) {
            QMouseEvent event(type, place, button, buttons, keys);
            QApplication::sendEvent(canvas, &event);
        };
        send(QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton);
        send(QEvent::MouseMove, (from + to) / 2, Qt::NoButton, Qt::LeftButton);
        send(QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton);
        send(QEvent::MouseButtonRelease, to, Qt::LeftButton, Qt::NoButton);
    }

    void turnWheel(unsigned long time)
    {
        QWheelEvent event(QPointF(100, 100), QPointF(100, 100), QPoint(), QPoint(0, 120), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        event.setTimestamp(time);
        QApplication::sendEvent(plot.area()->canvas(), &event);
    }

    QlumPlot plot;
};

} // namespace

// ---- what is painted

TEST_F(Plot, PaintsASpikeAmongAMillionSamples)
{
    QlumPlotCurve* curve =
        plot.addCurve(QStringLiteral("Pressure"), QStringLiteral("bar"), QlumCurveForm::Lines);
    add(curve, spike(1'000'000, 654'321, 50));
    const int x = xOf(startOfSamples + 654'321 * tick);
    const QRect upper(0, canvasRect().top(), canvasRect().width(), canvasRect().height() / 2);
    EXPECT_GT(count(curve->color(), upper & QRect(x - 2, 0, 5, canvasRect().height())), upper.height() / 4);
    EXPECT_EQ(count(curve->color(), upper & QRect(0, 0, x - 3, canvasRect().height())), 0);
}

TEST_F(Plot, LeavesGapsAndMarksBadAndUncertainValues)
{
    for (const QlumCurveForm form : {QlumCurveForm::Lines, QlumCurveForm::Steps}) {
        QlumPlotCurve* curve = plot.addCurve(QStringLiteral("Flow"), QString(), form);
        std::vector<QlumSample> samples;
        for (int i = 0; i <= 100; ++i) {
            const std::uint32_t status = i >= 40 && i < 60 ? badStatus : i == 80 ? uncertainStatus : 0;
            samples.push_back({startOfSamples + i * tick, i == 80 ? 3.0 : 1.0, status});
        }
        add(curve, samples);
        const QlumPlotColors colors(plot.palette());
        const int first = xOf(startOfSamples + 41 * tick), last = xOf(startOfSamples + 59 * tick);
        EXPECT_EQ(count(curve->color(), QRect(first, 0, last - first, canvasRect().height())), 0);
        EXPECT_GT(count(curve->color(), QRect(0, 0, first, canvasRect().height())), first / 2);
        EXPECT_GT(count(colors.bad, QRect(first, 0, last - first, canvasRect().height())), 5);
        EXPECT_EQ(count(colors.bad, QRect(last + 20, 0, 1000, canvasRect().height())), 0);
        EXPECT_GT(
            count(colors.uncertain, QRect(xOf(startOfSamples + 80 * tick) - 4, 0, 9, canvasRect().height())),
            5);
        plot.removeCurve(curve);
    }
}

TEST_F(Plot, StepsHoldTheirValueUntilTheNextOne)
{
    QlumPlotCurve* curve = plot.addCurve(QStringLiteral("State"), QString(), QlumCurveForm::Steps);
    add(curve, {{startOfSamples, 0, 0}, {startOfSamples + 1000 * tick, 1, 0}});
    const int middle = canvasRect().width() / 2;
    // in the middle of time a line would be in the middle of the height
    EXPECT_EQ(count(curve->color(), QRect(middle, 0, 1, canvasRect().height() * 3 / 4)), 0);
    EXPECT_GT(count(curve->color(), QRect(middle, canvasRect().height() * 3 / 4, 1, canvasRect().height())),
              0);
}

TEST_F(Plot, SaysWhatToDoWhileItIsEmpty)
{
    plot.setEmptyText(QStringLiteral("No items"), QStringLiteral("Drop variables here."));
    const QColor text = QlumPlotColors(plot.palette()).text;
    const QRect middle = canvasRect().adjusted(canvasRect().width() / 4, canvasRect().height() / 3,
                                               -canvasRect().width() / 4, -canvasRect().height() / 3);
    EXPECT_GT(count(text, middle), 20);
    EXPECT_TRUE(
        plot.area()->canvas()->accessibleDescription().contains(QLatin1String("Drop variables here.")));
    add(plot.addCurve(QStringLiteral("x")), spike(10, 3, 1));
    EXPECT_EQ(count(text, middle), 0);
}

TEST_F(Plot, AxisIsOfTodayWhileItIsEmpty)
{
    const auto now = static_cast<double>(QDateTime::currentMSecsSinceEpoch());
    const QwtScaleDiv shown = plot.area()->axisScaleDiv(QwtPlot::xBottom);
    EXPECT_NEAR(shown.lowerBound(), now, 600'000);
    EXPECT_NEAR(shown.upperBound(), now, 600'000);
    EXPECT_GT(shown.upperBound(), shown.lowerBound());
}

TEST_F(Plot, TextOfAnEmptyPlotIsCutNowhere)
{
    const QString hint =
        QStringLiteral("Measure, and select the run in the table below, of which there may be "
                       "many with names of any length.");
    const auto ink = [](const QImage& image, const QColor& color, int from, int to) {
        int found = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = from; x < to; ++x)
                found += image.pixelColor(x, y) == color ? 1 : 0;
        return found;
    };
    QlumBarPlot bars;
    bars.setEmptyText(QStringLiteral("No samples"), hint);
    plot.setEmptyText(QStringLiteral("No samples"), hint);
    const QColor color = QlumPlotColors(plot.palette()).text;
    for (const int width : {260, 900, 260}) {
        for (const auto& [widget, canvas] :
             {std::pair<QWidget*, QWidget*>(&plot, plot.area()->canvas()), {&bars, bars.canvas()}}) {
            widget->resize(width, 300);
            widget->show();
            QCoreApplication::processEvents();
            const QImage image = canvas->grab().toImage();
            EXPECT_GT(ink(image, color, 0, image.width()), 20) << width;
            EXPECT_EQ(ink(image, color, 0, 4), 0) << width;
            EXPECT_EQ(ink(image, color, image.width() - 4, image.width()), 0) << width;
        }
    }
}

TEST_F(Plot, EveryUnitHasItsAxisAndItsRange)
{
    QlumPlotCurve* bar = plot.addCurve(QStringLiteral("p"), QStringLiteral("bar"), QlumCurveForm::Lines);
    QlumPlotCurve* kelvin = plot.addCurve(QStringLiteral("T"), QStringLiteral("K"), QlumCurveForm::Lines);
    QlumPlotCurve* volt = plot.addCurve(QStringLiteral("U"), QStringLiteral("V"), QlumCurveForm::Lines);
    QlumPlotCurve* more = plot.addCurve(QStringLiteral("q"), QStringLiteral("bar"), QlumCurveForm::Lines);
    const double narrow = plot.area()->valueScalesWidth();
    add(bar, spike(10, 3, 2));
    add(kelvin, spike(10, 3, -300'000));
    add(volt, spike(10, 3, 0.25));
    add(more, spike(10, 3, 7));
    EXPECT_EQ(plot.area()->units(),
              (std::vector<QString>{QStringLiteral("bar"), QStringLiteral("K"), QStringLiteral("V")}));
    EXPECT_EQ(plot.area()->valueRange(0).minValue(), 0);
    EXPECT_GE(plot.area()->valueRange(0).maxValue(), 7);
    EXPECT_LE(plot.area()->valueRange(1).minValue(), -300'000);
    EXPECT_LT(plot.area()->valueRange(2).maxValue(), 1);
    EXPECT_GT(plot.area()->valueScalesWidth(), narrow);
    plot.removeCurve(kelvin);
    EXPECT_EQ(plot.area()->units().size(), 2U);
    plot.removeCurve(bar);
    EXPECT_EQ(plot.area()->units().size(), 2U) << "another curve has that unit";
}

TEST_F(Plot, AnAxisOfStatesHasTheirNamesUnlessTheyDiffer)
{
    const QMap<qint64, QString> names{{0, QStringLiteral("closed")}, {1, QStringLiteral("wide open")}};
    const auto addState = [&](const QMap<qint64, QString>& named) {
        QlumPlotCurve* curve =
            plot.addCurve(QStringLiteral("Door"), QStringLiteral("state"), QlumCurveForm::Steps);
        curve->setValueNames(named);
        add(curve, {{startOfSamples, 0, 0}, {startOfSamples + tick, 1, 0}});
        plot.area()->refresh();
        return plot.area()->valueScalesWidth();
    };
    const double named = addState(names), same = addState(names),
                 other = addState({{0, QStringLiteral("off")}});
    EXPECT_EQ(named, same);
    EXPECT_LT(other, named) << "numbers are true of all of them";
}

TEST_F(Plot, AxesStandWhereTheirValuesAre)
{
    QlumPlotCurve* curve = plot.addCurve(QStringLiteral("x"), QString(), QlumCurveForm::Lines);
    add(curve, {{startOfSamples, 5, 0}, {startOfSamples + 1000 * tick, 5, 0}});
    QlumPlotView view = plot.area()->view();
    view.values = {{0, 10}};
    plot.area()->setView(view);
    QCoreApplication::processEvents();
    for (const QImage& image : {plot.grab().toImage(), qlumPlotImage(plot.area(), {700, 500})}) {
        // the line is in the middle of the values; so is the middle of the axis, the longest dark column on
        // the left
        const int right = static_cast<int>(plot.area()->valueScalesWidth());
        int line = -1, longest = 0, middle = -1;
        for (int y = 0; y < image.height(); ++y)
            if (line < 0 && image.pixelColor(image.width() / 2, y) == curve->color()) // below is the legend
                line = y;
        for (int x = right - 4; x < right; ++x)
            for (int y = 0, run = 0; y < image.height(); ++y) {
                run = image.pixelColor(x, y).lightness() < 128 ? run + 1 : 0;
                if (run > longest) {
                    longest = run;
                    middle = y - run / 2;
                }
            }
        ASSERT_GT(longest, 200);
        EXPECT_NEAR(middle, line, 1.01);
    }
}

TEST_F(Plot, FollowsThePalette)
{
    QlumPlotCurve* curve = plot.addCurve(QStringLiteral("x"), QString(), QlumCurveForm::Lines);
    add(curve, spike(100, 50, 1));
    const QColor light = curve->color();
    EXPECT_GT(count(light, canvasRect()), 100);
    plot.setPalette(darkPalette());
    EXPECT_NE(curve->color(), light);
    EXPECT_GT(count(curve->color(), canvasRect()), 100);
    EXPECT_EQ(count(light, canvasRect()), 0);
    EXPECT_GT(count(QColor(24, 26, 30), canvasRect()), canvasRect().width() * canvasRect().height() / 2);
}

TEST_F(Plot, AClickInTheLegendHidesItsCurve)
{
    QlumPlotCurve* curve = plot.addCurve(QStringLiteral("x"), QString(), QlumCurveForm::Lines);
    plot.addCurve(QStringLiteral("<b>y</b>"));
    add(curve, spike(100, 50, 1));
    const auto labels = plot.findChildren<QwtLegendLabel*>();
    ASSERT_EQ(labels.size(), 2);
    EXPECT_TRUE(labels[0]->isChecked());
    EXPECT_GT(labels[1]->sizeHint().width(), labels[0]->sizeHint().width() + 30)
        << "a server's text, not markup";
    QTest::mouseClick(labels[0], Qt::LeftButton);
    EXPECT_EQ(count(curve->color(), canvasRect()), 0);
    QTest::mouseClick(labels[0], Qt::LeftButton);
    EXPECT_GT(count(curve->color(), canvasRect()), 100);
}

TEST(PlotColors, StandOutFromTheirGround)
{
    const auto luminance = [](const QColor& color) {
        const auto linear = [](double part) {
            return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
               0.0722 * linear(color.blueF());
    };
    QPalette light;
    light.setColor(QPalette::Base, Qt::white);
    for (const QPalette& palette : {light, darkPalette()}) {
        const QlumPlotColors colors(palette);
        std::vector<QColor> all{colors.uncertain, colors.bad};
        for (int i = 0; i < 8; ++i)
            all.push_back(colors.curve(i));
        for (const QColor& color : all) {
            const double one = luminance(color) + 0.05, other = luminance(colors.ground) + 0.05;
            EXPECT_GE(std::max(one, other) / std::min(one, other), 3.0) << color.name().toStdString();
        }
    }
}

// ---- moving around

TEST_F(Plot, ZoomsToADraggedRectangleAndBack)
{
    QlumPlotCurve* curve = plot.addCurve(QStringLiteral("x"), QStringLiteral("m"), QlumCurveForm::Lines);
    add(curve, spike(100'000, 50'000, 8));
    const QlumPlotView whole = plot.area()->view();
    const QRect canvas = canvasRect();
    const double from = plot.area()->timeAt(200), to = plot.area()->timeAt(400);
    drag({200, canvas.height() / 2}, {400, canvas.height() - 1});
    EXPECT_NEAR(plot.area()->view().from, from, 300);
    EXPECT_NEAR(plot.area()->view().to, to, 300);
    EXPECT_NEAR(plot.area()->valueRange(0).maxValue(), 4, 0.5) << "the lower half of the values";
    drag({200, 100}, {300, 103});
    EXPECT_NEAR(plot.area()->valueRange(0).maxValue(), 4, 0.5) << "a flat rectangle leaves values alone";
    action("plotBack")->trigger();
    action("plotBack")->trigger();
    EXPECT_EQ(plot.area()->view(), whole);
    EXPECT_FALSE(action("plotBack")->isEnabled());
    action("plotForward")->trigger();
    EXPECT_NEAR(plot.area()->view().from, from, 300);
    EXPECT_TRUE(action("plotForward")->isEnabled());
}

TEST_F(Plot, EveryGestureIsOneStepBack)
{
    add(plot.addCurve(QStringLiteral("x")), spike(100'000, 50'000, 8));
    const QlumPlotView whole = plot.area()->view();
    turnWheel(1000);
    turnWheel(1200);
    turnWheel(1400);
    const QlumPlotView closer = plot.area()->view();
    EXPECT_NEAR(closer.to - closer.from, (whole.to - whole.from) * 0.512, 1);
    drag({300, 100}, {500, 100}, Qt::ShiftModifier);
    EXPECT_NEAR(plot.area()->view().to - plot.area()->view().from, closer.to - closer.from, 1);
    EXPECT_LT(plot.area()->view().from, closer.from);
    plot.navigator()->goBack();
    EXPECT_EQ(plot.area()->view(), closer);
    plot.navigator()->goBack();
    EXPECT_EQ(plot.area()->view(), whole);
    turnWheel(5000);
    turnWheel(9000); // another gesture
    plot.navigator()->goBack();
    plot.navigator()->goBack();
    EXPECT_EQ(plot.area()->view(), whole);
}

TEST_F(Plot, FollowsTheNewestUntilTheUserLooksElsewhere)
{
    QlumPlotCurve* curve = plot.addCurve(QStringLiteral("x"));
    plot.append(curve, spike(10, 3, 1));
    ASSERT_TRUE(QTest::qWaitFor([&] { return plot.area()->view().to == curve->times().maxValue(); }));
    action("plotLeft")->trigger();
    EXPECT_FALSE(plot.isFollowing());
    const QlumPlotView view = plot.area()->view();
    plot.append(curve, std::vector<QlumSample>{{startOfSamples + 100'000 * tick, 1, 0}});
    action("plotFollow")->trigger();
    EXPECT_EQ(plot.area()->view().to, curve->times().maxValue());
    EXPECT_NEAR(plot.area()->view().to - plot.area()->view().from, view.to - view.from, 1e-3);
}

TEST_F(Plot, SortsLateSamplesInTheBackground)
{
    QlumPlotCurve* curve = plot.addCurve(QStringLiteral("x"));
    std::vector<QlumSample> samples = spike(50'000, 3, 1);
    std::reverse(samples.begin(), samples.end());
    plot.append(curve, samples);
    EXPECT_EQ(curve->samples().size(), 1U);
    ASSERT_TRUE(QTest::qWaitFor([&] { return curve->samples().size() == 50'000; }));
    EXPECT_EQ(curve->samples().at(3).value, 1);
    plot.append(curve, samples); // and once more, with the curve gone meanwhile
    action("plotFollow")->trigger();
    plot.removeCurve(curve);
    QCoreApplication::processEvents();
    EXPECT_TRUE(plot.area()->curves().empty());
}

TEST(PlotView, StaysWithinTimesThatExist)
{
    const QlumPlotView narrow = QlumPlotView{1000, 1000.001, {}}.bounded();
    EXPECT_EQ(narrow.to - narrow.from, 10);
    for (const QlumPlotView& wild : {QlumPlotView{-1e300, 1e300, {}}, QlumPlotView{std::nan(""), 0, {}},
                                     QlumPlotView{1e18, 2e18, {}}, QlumPlotView{5, -5, {}}}) {
        const QlumPlotView view = wild.bounded();
        EXPECT_LT(view.from, view.to);
        EXPECT_GE(view.from, -1.2e13);
        EXPECT_LE(view.to, 2.6e14);
    }
    const QlumPlotView view{1000, 2000, {}};
    EXPECT_EQ(view.zoomed(0.5, 0.25).from, 1125);
    EXPECT_EQ(view.zoomed(0.5, 0.25).to, 1625);
}

// ---- cursors

TEST_F(Plot, CursorsTellValuesAndDifferences)
{
    QlumPlotCurve* curve = plot.addCurve(QStringLiteral("x"), QStringLiteral("m"), QlumCurveForm::Lines);
    add(curve, {{startOfSamples, 1, 0},
                {startOfSamples + 1000 * tick, 4.5, 0},
                {startOfSamples + 2000 * tick, 0, badStatus},
                {startOfSamples + 3000 * tick, 9, 0}});
    action("plotCursors")->trigger();
    const double start = qlumPlotTime(startOfSamples);
    plot.cursors()->setTime(0, start + 1500);
    plot.cursors()->setTime(1, start + 500);
    const auto* table = plot.findChild<QTableWidget*>(QStringLiteral("cursorReadout"));
    ASSERT_TRUE(table->isVisibleTo(&plot));
    const auto row = [&](int number) {
        QStringList texts;
        for (int column = 0; column < table->columnCount(); ++column)
            texts.append(table->item(number, column)->text());
        return texts;
    };
    EXPECT_EQ(row(0).last(), QStringLiteral("-00:00:01.000"));
    EXPECT_EQ(row(1).join(QLatin1Char(' ')).toStdString(), "x m 4.5 1 -3.5");
    plot.cursors()->setTime(1, start + 2500);
    EXPECT_FALSE(plot.cursors()->readings()[0].b) << "a bad sample has no value";
    EXPECT_FALSE(plot.cursors()->readings()[0].difference());

    const int x = static_cast<int>(plot.area()->canvasMap(QwtPlot::xBottom).transform(start + 1500));
    drag({x + 2, 100}, {x + 60, 100});
    EXPECT_NEAR(plot.cursors()->time(0), plot.area()->timeAt(x + 60), 1e-3);
    EXPECT_FALSE(plot.navigator()->history().hasBack()) << "a dragged cursor is no zoom";
    EXPECT_EQ(qlumDurationText(93'784'005).toStdString(), "1 d 02:03:04.005");
}

// ---- export

TEST_F(Plot, ExportsPicturesWithAllAxes)
{
    QlumPlotCurve* curve = plot.addCurve(QStringLiteral("p"), QStringLiteral("bar"), QlumCurveForm::Lines);
    plot.addCurve(QStringLiteral("T"), QStringLiteral("kelvin"));
    add(curve, spike(1000, 500, 5));
    const QImage image = qlumPlotImage(plot.area(), {600, 400}, 2);
    EXPECT_EQ(image.size(), QSize(1200, 800));
    int inCurveColor = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            inCurveColor += image.pixelColor(x, y) == curve->color() ? 1 : 0;
    EXPECT_GT(inCurveColor, 1000);
    QBuffer svg;
    svg.open(QIODevice::WriteOnly);
    ASSERT_TRUE(qlumWritePlotSvg(plot.area(), {600, 400}, &svg));
    QXmlStreamReader reader(svg.data());
    QString texts;
    while (!reader.atEnd())
        if (reader.readNext() == QXmlStreamReader::Characters)
            texts += reader.text();
    EXPECT_FALSE(reader.hasError());
    EXPECT_TRUE(texts.contains(QLatin1String("bar")) && texts.contains(QLatin1String("kelvin")));
    EXPECT_TRUE(svg.data().contains(curve->color().name().toUtf8()));
}

TEST_F(Plot, ExportsSamplesAsCsv)
{
    QlumPlotCurve* curve = plot.addCurve(QStringLiteral("=1+1, \"x\""), QStringLiteral("\u00b0C"));
    plot.addCurve(QStringLiteral("hidden"))->setVisible(false);
    add(curve, {{startOfSamples + 1, 0.1, 0},
                {startOfSamples + tick, 1e300, uncertainStatus, startOfSamples + tick / 2},
                {startOfSamples + 2 * tick, NAN, badStatus}});
    const QTemporaryDir folder;
    const QString name = QDir(folder.path()).filePath(QStringLiteral("plot.csv"));
    QSignalSpy exported(&plot, &QlumPlot::exported);
    plot.exportTo(QStringLiteral("plot.exe"));
    EXPECT_FALSE(plot.findChild<QlumMessageBar*>()->isHidden()) << "nobody else tells it";
    QSignalSpy failed(&plot, &QlumPlot::exportFailed);
    plot.exportTo(name);
    ASSERT_TRUE(QTest::qWaitFor([&] { return exported.count() == 1; }));
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    EXPECT_EQ(text.toStdString(),
              "Time,Name,Unit,Value,Quality,Status,Server Time\r\n"
              "2025-08-18T14:13:20.0000001Z,\"'=1+1, \"\"x\"\"\",\u00b0C,0.1,Good,0x00000000,\r\n"
              "2025-08-18T14:13:20.001Z,\"'=1+1, "
              "\"\"x\"\"\",\u00b0C,1e+300,Uncertain,0x40000000,2025-08-18T14:13:20.0005Z\r\n"
              "2025-08-18T14:13:20.002Z,\"'=1+1, \"\"x\"\"\",\u00b0C,,Bad,0x80000000,\r\n");
    for (const char* path : {"/nowhere/plot.csv", "/nowhere/plot.png", "plot.exe"}) {
        failed.clear();
        plot.exportTo(QString::fromLatin1(path));
        EXPECT_TRUE(QTest::qWaitFor([&] { return failed.count() == 1; })) << path;
        EXPECT_TRUE(failed.value(0).value(0).toString().startsWith(path)) << path;
    }
    EXPECT_EQ(exported.count(), 1);
}

TEST_F(Plot, CsvEndsWhenItIsCancelledOrTheDiskIsFull)
{
    add(plot.addCurve(QStringLiteral("x")), spike(5000, 3, 1));
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    std::size_t told = 0;
    EXPECT_FALSE(qlumWritePlotCsv(qlumVisibleSamples(*plot.area()), &buffer, [&](std::size_t lines) {
        told = lines;
        return lines < 2000;
    }));
    EXPECT_EQ(told, 2000U);
    QFile full(QStringLiteral("/dev/full"));
    ASSERT_TRUE(full.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    EXPECT_FALSE(qlumWritePlotCsv(qlumVisibleSamples(*plot.area()), &full, [](std::size_t) { return true; }));
}
