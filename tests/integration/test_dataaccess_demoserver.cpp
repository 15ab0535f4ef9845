// The data access view on the demo server: values come, are judged, mended, plotted and written.
#include <app/api/qlumtoolservices.h>
#include <plugins/dataaccess/qlumdamodel.h>
#include <plugins/dataaccess/qlumdaplot.h>
#include <plugins/dataaccess/qlumdataitem.h>
#include <plugins/dataaccess/qlumdaview.h>
#include <tests/integration/clientondemoserver.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/plot/qlumplotcurve.h>
#include <uawidgets/plot/qlumsamplestore.h>

#include <QAction>
#include <QPushButton>
#include <QString>
#include <QTableView>
#include <QTest>
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <functional>
#include <initializer_list>
#include <string>

namespace {

using M = QlumDaModel;

class DataAccessOnDemoServer : public ClientOnDemoServer
{
protected:
    void openView(std::initializer_list<const char*> names)
    {
        openDemoProject();
        QlumToolNodes nodes;
        for (const char* name : names)
            nodes.push_back({serverId, UaNodeId(UaString(name), 2), OpcUa_NodeClass_Variable, {}, {}});
        ASSERT_TRUE(QlumToolServices::instance()->openNodes("Data Access View", nodes));
        view = window->findChild<QlumDaView*>();
        ASSERT_NE(view, nullptr);
        ASSERT_EQ(view->model().rowCount(), static_cast<int>(nodes.size()));
    }
    bool waitFor(const std::function<bool()>& condition) { return QTest::qWaitFor(condition, limit); }
    [[nodiscard]] QString cell(int row, int column) const
    {
        return view->model().index(row, column).data().toString();
    }
    [[nodiscard]] const QlumDataItem& item(int row) const { return view->model().rowAt(row); }

    QlumDaView* view = nullptr;
};

TEST_F(DataAccessOnDemoServer, ValuesAreWatchedJudgedMendedAndPlotted)
{
    openView({"Dynamic.Sine", "Missing"});
    QlumDataSettings settings;
    settings.publishingInterval = 500;
    settings.samplingInterval = 100;
    view->setSettings({}, settings);
    ASSERT_TRUE(waitFor([this] { return item(0).changes >= 2; })) << logText();
    ASSERT_TRUE(waitFor([this] { return !cell(0, M::DataType).isEmpty(); })) << logText();
    EXPECT_EQ(cell(0, M::DataType), "Double");
    EXPECT_TRUE(cell(0, M::BrowsePath).startsWith("/Objects/")) << cell(0, M::BrowsePath).toStdString();
    EXPECT_TRUE(waitFor([this] { return cell(1, M::Status).contains("BadNodeIdUnknown"); }));

    ASSERT_TRUE(waitFor([this] { return cell(0, M::Verdict) == "sampled"; }))
        << cell(0, M::Verdict).toStdString();
    view->table()->selectRow(0);
    auto* const remedy = view->findChild<QPushButton*>("remedy");
    ASSERT_TRUE(waitFor([remedy] { return !remedy->isHidden(); }));
    remedy->click();
    EXPECT_GE(view->model().settingsOf(item(0)).queueSize, 10u);
    EXPECT_TRUE(waitFor([this] { return cell(0, M::Verdict) == "complete"; }))
        << cell(0, M::Verdict).toStdString();

    view->command(QlumDaView::Plot)->trigger();
    const QlumPlotCurve* const curve = view->plot()->curve(item(0).key);
    ASSERT_NE(curve, nullptr);
    EXPECT_TRUE(waitFor([curve] { return curve->samples().size() >= 10; })) << curve->samples().size();
}

TEST_F(DataAccessOnDemoServer, AWrittenValueComesBackAndARefusedOneIsMarked)
{
    openView({"Scalar.Double", "Access.ReadOnly"});
    ASSERT_TRUE(waitFor([this] { return item(0).received != 0 && item(1).received != 0; })) << logText();
    view->write(item(0).key, UaVariant(41.75));
    EXPECT_TRUE(waitFor([this] { return cell(0, M::Value) == "41.75"; })) << cell(0, M::Value).toStdString();
    view->write(item(1).key, view->model().shownValue(item(1)));
    EXPECT_TRUE(waitFor([this] { return view->model().writeFault(item(1)).contains("BadNotWritable"); }));
}

TEST_F(DataAccessOnDemoServer, AValueThatChangesItsTypeStaysInTheTableAndIsAGapInThePlot)
{
    openView({"Scalar.Variant"});
    QlumDataSettings settings;
    settings.publishingInterval = 100;
    view->setSettings({}, settings);
    ASSERT_TRUE(waitFor([this] { return item(0).received != 0; })) << logText();
    const UaVariant first = view->model().shownValue(item(0)); // others find it there again
    const QString firstText = cell(0, M::Value);
    view->model().resetCounts({item(0).key});
    view->table()->selectRow(0);
    view->command(QlumDaView::Plot)->trigger();
    const auto writeAndWait = [this](const UaVariant& value, const char* text) {
        view->write(item(0).key, value);
        return waitFor([this, text] { return cell(0, M::Value) == text; });
    };
    ASSERT_TRUE(writeAndWait(UaVariant(OpcUa_Int32(3)), "3")) << cell(0, M::Value).toStdString();
    ASSERT_TRUE(writeAndWait(UaVariant(UaString("stopped")), "stopped")) << cell(0, M::Value).toStdString();
    ASSERT_TRUE(writeAndWait(UaVariant(4.5), "4.5")) << cell(0, M::Value).toStdString();
    EXPECT_EQ(cell(0, M::Maximum), "4.5") << "texts are no extremes";
    std::string drawn;
    const auto isDrawn = [&] {
        drawn.clear();
        const QlumSampleStore& samples =
            view->plot()->curve(item(0).key)->samples(); // made anew with its name
        for (std::size_t i = 0; i < samples.size(); ++i) {
            const double value = samples.at(i).value;
            drawn += std::isnan(value) ? "- " : std::to_string(value).substr(0, 3) + " ";
        }
        return drawn.ends_with("3.0 - 4.5 ");
    };
    EXPECT_TRUE(waitFor(isDrawn)) << drawn;
    EXPECT_TRUE(writeAndWait(first, firstText.toUtf8().constData())) << cell(0, M::Value).toStdString();
}

TEST_F(DataAccessOnDemoServer, AFieldIsWrittenAloneAndTheOthersStay)
{
    openDemoProject();
    const QlumToolNode point{
        serverId, UaNodeId(UaString("Structure.Point"), 3), OpcUa_NodeClass_Variable, {}, {}};
    ASSERT_TRUE(QlumToolServices::instance()->openNodes("Data Access View", {&point, 1}));
    view = window->findChild<QlumDaView*>();
    ASSERT_NE(view, nullptr);
    ASSERT_TRUE(waitFor([this] { return cell(0, M::Value).startsWith("Point {"); })) << logText();
    view->table()->selectRow(0);
    view->command(QlumDaView::AddParts)->trigger();
    ASSERT_GE(view->model().rowCount(), 3);
    ASSERT_TRUE(waitFor([this] { return !cell(1, M::Value).isEmpty() && !cell(2, M::Value).isEmpty(); }));
    const QString other = cell(2, M::Value);
    const double before = cell(1, M::Value).toDouble();
    view->write(item(1).key, UaVariant(before + 1));
    EXPECT_TRUE(waitFor([&] { return cell(1, M::Value).toDouble() == before + 1; }))
        << cell(1, M::Value).toStdString() << view->model().writeFault(item(1)).toStdString();
    EXPECT_EQ(cell(2, M::Value), other);
    view->write(item(1).key, UaVariant(before)); // others find it there again
    EXPECT_TRUE(waitFor([&] { return cell(1, M::Value).toDouble() == before; }));
}

} // namespace
