// Bars and histograms of figures.
#include <uawidgets/plot/qlumbarplot.h>
#include <uawidgets/plot/qlumplotcolors.h>
#include <uawidgets/plot/qlumplotexport.h>
#include <uawidgets/qlummessagebar.h>

#include <QBuffer>
#include <QColor>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QList>
#include <QPalette>
#include <QSignalSpy>
#include <QSize>
#include <QString>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>
#include <qwt_scale_draw.h>
#include <qwt_text.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <random>
#include <vector>

namespace {

int count(QlumBarPlot& plot, int left, int right)
{
    const QColor color = QlumPlotColors(plot.palette()).curve(0);
    const QImage image = plot.canvas()->grab().toImage();
    int found = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = image.width() * left / 100; x < image.width() * right / 100; ++x)
            found += image.pixelColor(x, y) == color ? 1 : 0;
    return found;
}

} // namespace

TEST(Histogram, CountsEveryValueOnceAndInItsBin)
{
    std::mt19937 random(1);
    for (int round = 0; round < 50; ++round) {
        std::vector<double> values;
        for (std::size_t i = 0; i < 1 + random() % 1000; ++i)
            values.push_back(
                std::ldexp(static_cast<double>(random() % 1000), static_cast<int>(random() % 8)));
        const int bins = 1 + static_cast<int>(random() % 30);
        std::size_t sum = 0;
        for (const QlumHistogramBin& bin : qlumHistogram(values, bins)) {
            std::size_t expected = 0;
            const bool isLast = bin.to >= *std::max_element(values.begin(), values.end());
            for (const double value : values)
                expected += bin.from <= value && (value < bin.to || (isLast && value == bin.to)) ? 1 : 0;
            ASSERT_EQ(bin.count, expected);
            sum += bin.count;
        }
        ASSERT_EQ(sum, values.size());
    }
}

TEST(Histogram, LeavesOutWhatIsNoNumber)
{
    EXPECT_TRUE(qlumHistogram({}, 5).empty());
    const double infinity = std::numeric_limits<double>::infinity(),
                 most = std::numeric_limits<double>::max();
    const std::vector<double> odd{std::nan(""), infinity, -infinity};
    EXPECT_TRUE(qlumHistogram(odd, 5).empty());
    const std::vector<double> equal{2, 2, 2};
    ASSERT_EQ(qlumHistogram(equal, 5).size(), 1U);
    EXPECT_EQ(qlumHistogram(equal, 5)[0].count, 3U);
    const std::vector<double> wide{-most, 0, most};
    const std::vector<QlumHistogramBin> bins = qlumHistogram(wide, 3);
    ASSERT_EQ(bins.size(), 3U);
    for (const QlumHistogramBin& bin : bins)
        EXPECT_EQ(bin.count, 1U);
}

TEST(BarPlot, DrawsBarsAsHighAsTheirFigures)
{
    QlumBarPlot plot;
    plot.resize(600, 400);
    EXPECT_EQ(count(plot, 0, 100), 0);
    plot.setBars(
        {{QStringLiteral("read"), 10}, {QStringLiteral("<i>write</i>"), 5}, {QStringLiteral("none"), NAN}},
        QStringLiteral("ms"));
    const int first = count(plot, 0, 33), second = count(plot, 34, 66);
    EXPECT_NEAR(first, 2 * second, first / 10);
    EXPECT_EQ(count(plot, 67, 100), 0);
    EXPECT_EQ(plot.axisScaleDraw(QwtPlot::xBottom)->label(1).text(), QStringLiteral("<i>write</i>"));

    QBuffer csv;
    csv.open(QIODevice::WriteOnly);
    ASSERT_TRUE(plot.writeCsv(&csv));
    EXPECT_EQ(csv.data().toStdString(), "Name,Value\r\nread,10\r\n<i>write</i>,5\r\nnone,\r\n");
    plot.setBars({}, QString());
    EXPECT_EQ(count(plot, 0, 100), 0);
}

TEST(BarPlot, IsExportedAndSaysWhatFailed)
{
    QlumBarPlot plot;
    plot.resize(600, 400);
    plot.setBars({{QStringLiteral("read"), 2}}, QStringLiteral("ms"));
    QSignalSpy exported(&plot, &QlumBarPlot::exported);
    const QTemporaryDir folder;
    const auto* bar = plot.findChild<QlumMessageBar*>();
    ASSERT_TRUE(bar);
    for (const char* path : {"/nowhere/bars.csv", "/nowhere/bars.svg", "bars.exe"}) {
        plot.exportTo(QString::fromLatin1(path));
        ASSERT_FALSE(bar->isHidden()) << path;
        plot.show();
        EXPECT_TRUE(QTest::qWaitFor([&] { return bar->width() > 400; })) << "as wide as the plot";
        EXPECT_TRUE(bar->isAncestorOf(plot.childAt(bar->geometry().center()))) << "in front of the bars";
        const QList<QLabel*> labels = bar->findChildren<QLabel*>();
        EXPECT_TRUE(std::any_of(labels.begin(), labels.end(), [&](const QLabel* label) {
            return label->text().contains(QString::fromLatin1(path));
        })) << path;
    }
    plot.exportTo(folder.filePath(QStringLiteral("bars.CSV")));
    EXPECT_TRUE(bar->isHidden()) << "a success settles the failure before";
    QFile csv(folder.filePath(QStringLiteral("bars.CSV")));
    ASSERT_TRUE(csv.open(QIODevice::ReadOnly));
    EXPECT_EQ(csv.readAll().toStdString(), "Name,Value\r\nread,2\r\n");
    plot.exportTo(folder.filePath(QStringLiteral("bars.png")));
    EXPECT_EQ(QImage(folder.filePath(QStringLiteral("bars.png"))).size(), QSize(1200, 800));
    EXPECT_EQ(exported.count(), 2);
    ASSERT_EQ(plot.plotActions().size(), 1);
    EXPECT_TRUE(plot.actions().contains(plot.plotActions().first()));

    QSignalSpy failed(&plot, &QlumBarPlot::exportFailed);
    plot.exportTo(QStringLiteral("/nowhere/bars.csv"));
    EXPECT_EQ(failed.count(), 1);
    EXPECT_TRUE(bar->isHidden()) << "the tool tells it";
}

TEST(BarPlot, DrawsHistogramsInThePaletteOfTheMoment)
{
    QlumBarPlot plot;
    plot.resize(600, 400);
    const std::vector<double> values{1, 1, 1, 2, 9};
    plot.setHistogram(qlumHistogram(values, 2), QStringLiteral("ms"));
    EXPECT_GT(count(plot, 0, 50), 3 * count(plot, 50, 100));
    EXPECT_GT(count(plot, 50, 100), 100);
    QPalette dark;
    dark.setColor(QPalette::Base, Qt::black);
    dark.setColor(QPalette::Text, Qt::white);
    plot.setPalette(dark);
    EXPECT_GT(count(plot, 50, 100), 100);
    const QColor color = QlumPlotColors(dark).curve(0);
    const QImage image = qlumPlotImage(&plot, {400, 300});
    EXPECT_EQ(image.size(), QSize(400, 300));
    EXPECT_NE(color, QlumPlotColors(QPalette(Qt::white)).curve(0));
    QBuffer csv;
    csv.open(QIODevice::WriteOnly);
    ASSERT_TRUE(plot.writeCsv(&csv));
    EXPECT_EQ(csv.data().toStdString(), "From,To,Number\r\n1,5,4\r\n5,9,1\r\n");
}
