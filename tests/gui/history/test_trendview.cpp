#include <app/api/qlumconnectionstatus.h>
#include <plugins/history/qlumcolorlisteditor.h>
#include <plugins/history/qlumtrenditem.h>
#include <plugins/history/qlumtrenditemmodel.h>
#include <plugins/history/qlumtrendpanel.h>
#include <plugins/history/qlumtrendviewdocument.h>
#include <tests/gui/history/trendfixture.h>
#include <tests/support/temporaryfolder.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/plot/qlumplot.h>
#include <uawidgets/plot/qlumplotarea.h>
#include <uawidgets/plot/qlumplotcurve.h>
#include <uawidgets/plot/qlumplotpicker.h>

#include <QAbstractButton>
#include <QCheckBox>
#include <QColor>
#include <QCoreApplication>
#include <QPoint>
#include <QRect>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QTime>
#include <gtest/gtest.h>
#include <qwt_plot.h>
#include <qwt_scale_map.h>

namespace {

class TrendView : public TrendFixture
{
protected:
    QTemporaryDir folder;
    QSettings settings{folder.filePath("project.uap"), QSettings::IniFormat};
};

TEST_F(TrendView, ProjectKeepsItAndTranslatesServersAndNamespaces)
{
    addVariable(1, "Level", numbers(1));
    addVariable(2, "Valve", numbers(1));
    ASSERT_TRUE(addItems({node(1), node(2)}));
    ASSERT_TRUE(
        view.model()->setData(view.model()->index(1, QlumTrendItemModel::Color), "#123456", Qt::EditRole));
    view.panel()->setStartTime(time(0));
    view.panel()->setEndTime(time(60));
    view.panel()->setTimespan(QTime(1, 2, 3));
    view.panel()->setUpdateInterval(QTime(0, 0, 30));
    view.panel()->setCyclic(true);
    view.sltStartStop();
    view.saveSettings(settings);
    EXPECT_EQ(settings.value("SingleUpdate").toString(), "false");
    EXPECT_EQ(settings.value("StartTime").toString(), "2023-11-14T22:13:20.000Z");
    EXPECT_EQ(settings.value("EndTime").toString(), "2023-11-14T22:14:20.000Z");
    EXPECT_EQ(settings.value("CyclicUpdate").toString(), "true");
    EXPECT_EQ(settings.value("Timespan").toString(), "01:02:03");
    EXPECT_EQ(settings.value("UpdateInterval").toString(), "00:00:30");
    EXPECT_EQ(settings.value("CyclicUpdateRunning").toString(), "true");
    EXPECT_EQ(settings.value("Items/2/NodeId").toString(), "ns=2;i=2");
    EXPECT_EQ(settings.value("Items/2/Color").toString(), "#123456");
    EXPECT_EQ(settings.value("Items/2/Stepped").toString(), "false");
    settings.setValue("Items/1/ServerId", 6); // of a server that the project has not
    settings.setValue("Items/2/Stepped", true);

    QlumTrendViewDocument loaded(application, [](unsigned int) { return nullptr; });
    loaded.loadSettings(settings, {{5, 9}});
    ASSERT_EQ(loaded.model()->rowCount(), 1);
    const QlumTrendItem& restored = loaded.model()->rowAt(0);
    EXPECT_EQ(restored.serverId, 9U);
    EXPECT_EQ(restored.nodeId, node(2));
    EXPECT_EQ(restored.color, QColor("#123456"));
    EXPECT_EQ(loaded.curve(restored.key)->form(), QlumCurveForm::Steps);
    EXPECT_EQ(loaded.panel()->startTime(), time(0));
    EXPECT_EQ(loaded.panel()->timespan(), QTime(1, 2, 3));
    EXPECT_TRUE(loaded.isRunning());

    loaded.sessionStatusChanged(9, QlumConnectionStatus::Connected, {{2, 4}});
    EXPECT_EQ(loaded.model()->rowAt(0).nodeId, UaNodeId(2, 4));
    loaded.sessionStatusChanged(9, QlumConnectionStatus::Connected, {{3, 3}});
    EXPECT_TRUE(loaded.model()->rowAt(0).isLost);
    loaded.sessionRemoved(9);
    EXPECT_EQ(loaded.model()->rowCount(), 0);
}

TEST_F(TrendView, PickerTellsCurveValueAndTimeOnWhite)
{
    EXPECT_EQ(qlumTrackerText("<b>A & B", QColor(0x0a, 0x0b, 0xff), "1.5", "12:00"),
              "<font color=\"#0A0BFF\">&nbsp;&lt;b&gt;A &amp; "
              "B&nbsp;</font><br>&nbsp;1.5&nbsp;<br>&nbsp;12:00&nbsp;");
    EXPECT_EQ(qlumTrackerText({}, {}, "1.5", "12:00"), "&nbsp;1.5&nbsp;<br>&nbsp;12:00&nbsp;");

    addVariable(1, "Level", numbers(11));
    ASSERT_TRUE(addItems({node(1)}));
    view.resize(900, 600);
    view.show();
    ASSERT_TRUE(read(0, 10));
    view.plot()->area()->refresh();
    QCoreApplication::processEvents();
    auto* picker = view.plot()->findChild<QlumPlotPicker*>();
    const double x =
        view.plot()->area()->canvasMap(QwtPlot::xBottom).transform(double(time(5).toMSecsSinceEpoch() + 100));
    const double y = view.plot()->area()->canvasMap(QwtPlot::yLeft).transform(0.507);
    EXPECT_TRUE(picker->textAt({x, y}).contains("Level"));
    EXPECT_FALSE(picker->textAt({x, y}).contains("&nbsp;5&nbsp;")) << "a place between two samples";
    view.findChild<QCheckBox*>("catchValues")->setChecked(true);
    EXPECT_TRUE(picker->textAt({x, y}).contains("&nbsp;5&nbsp;")) << "the sample beside it";
    EXPECT_FALSE(picker->textAt({x, 2}).contains("Level"));
}

TEST_F(TrendView, FitsIntoASmallWindowWithAllItsButtons)
{
    view.show();
    for (const int width : {1200, 500}) {
        view.resize(width, 500);
        QCoreApplication::processEvents();
        EXPECT_EQ(view.width(), width);
        for (const char* name : {"catchValues", "resetView", "continueLive", "saveRange"}) {
            const auto* button = view.findChild<QAbstractButton*>(name);
            EXPECT_TRUE(view.rect().contains(QRect(button->mapTo(&view, QPoint()), button->size())))
                << name << " at " << width;
            EXPECT_GE(button->width(), button->sizeHint().width()) << name;
        }
    }
}

TEST_F(TrendView, ColourEditorOffersTheColoursOfCurvesAndKeepsOthers)
{
    QlumColorListEditor editor;
    editor.setColor(QColor("#c4321f"));
    EXPECT_EQ(editor.currentText(), "Red");
    editor.setColor(QColor("#123456"));
    EXPECT_EQ(editor.color(), QColor("#123456"));
    EXPECT_EQ(editor.currentText(), "#123456");
}

} // namespace
