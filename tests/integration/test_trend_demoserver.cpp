// The history trend view on the demo server: raw and processed values by its library, modified ones by code
// of the demo server's own.
#include <app/api/qlumtoolservices.h>
#include <plugins/history/qlummodifiedmodel.h>
#include <plugins/history/qlumnonnumericmodel.h>
#include <plugins/history/qlumtrenditem.h>
#include <plugins/history/qlumtrenditemmodel.h>
#include <plugins/history/qlumtrendviewdocument.h>
#include <tests/integration/clientondemoserver.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uawidgets/plot/qlumplotcurve.h>
#include <uawidgets/plot/qlumsamplestore.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDateTime>
#include <QFile>
#include <QSpinBox>
#include <QString>
#include <QTest>
#include <gtest/gtest.h>

#include <cstddef>
#include <initializer_list>
#include <string>

namespace {

class TrendOnDemoServer : public ClientOnDemoServer
{
protected:
    void openTrend(std::initializer_list<const char*> names)
    {
        openDemoProject();
        QlumToolNodes nodes;
        for (const char* name : names) {
            QlumToolNode node;
            node.serverId = serverId;
            node.nodeId = UaNodeId(UaString((std::string("History.") + name).c_str()), 2);
            nodes.push_back(node);
        }
        ASSERT_TRUE(QlumToolServices::instance()->openNodes("History Trend View", nodes));
        view = window->findChild<QlumTrendViewDocument*>();
        ASSERT_NE(view, nullptr);
        const int count = static_cast<int>(nodes.size());
        ASSERT_TRUE(QTest::qWaitFor([&] { return view->model()->rowCount() == count; }, limit)) << logText();
    }
    bool readMinutes(int from, int to)
    {
        const QDateTime now = QDateTime::currentDateTime();
        view->sltUpdateTrendData(false, now.addSecs(60 * from), now.addSecs(60 * to));
        return QTest::qWaitFor(
            [this] {
                for (const QlumTrendItem& item : view->model()->rows())
                    if (item.history.endsWith("..."))
                        return false;
                return true;
            },
            limit);
    }
    [[nodiscard]] const QlumSampleStore& samples(int row) const
    {
        return view->curve(view->model()->rowAt(row).key)->samples();
    }

    QlumTrendViewDocument* view = nullptr;
};

TEST_F(TrendOnDemoServer, ReadsNumbersStatesGapsAndTexts)
{
    openTrend({"Sine", "Switch", "Gaps", "Words"});
    ASSERT_TRUE(readMinutes(-50, -10));
    EXPECT_GT(samples(0).size(), 2300U) << view->model()->rowAt(0).history.toStdString();
    const QlumSampleSummary sine = samples(0).summary(0, samples(0).size());
    EXPECT_NEAR(sine.minimum, 0, 0.1);
    EXPECT_NEAR(sine.maximum, 100, 0.1);
    EXPECT_EQ(view->curve(view->model()->rowAt(1).key)->form(), QlumCurveForm::Steps);
    EXPECT_NE(samples(2).summary(0, samples(2).size()).traits & qlumHasBad, 0U);
    EXPECT_GT(view->texts(view->model()->rowAt(3).key)->rowCount(), 2300);
}

TEST_F(TrendOnDemoServer, ReadsAggregatesModifiedValuesAndLiveOnes)
{
    openTrend({"Sine"});
    auto* aggregate = view->findChild<QComboBox*>("aggregate");
    ASSERT_TRUE(QTest::qWaitFor([&] { return aggregate->findText("Average") >= 0; }, limit));
    aggregate->setCurrentIndex(aggregate->findText("Average"));
    view->findChild<QCheckBox*>("processed")->setChecked(true);
    view->findChild<QCheckBox*>("modified")->setChecked(true);
    ASSERT_TRUE(readMinutes(-40, -10));
    const int key = view->model()->rowAt(0).key;
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return view->processedCurve(key) != nullptr && view->modifiedValues()->rowCount() >= 2; },
        limit))
        << logText();
    const QlumSampleStore& averages = view->processedCurve(key)->samples();
    ASSERT_TRUE(QTest::qWaitFor([&] { return averages.size() >= 25; }, limit)) << averages.size();
    EXPECT_LT(averages.summary(0, averages.size()).maximum, 99.5) << "flatter than what it is an average of";
    const QlumModifiedRow& changed = view->modifiedValues()->rowAt(0);
    EXPECT_EQ(changed.value.user, "operator");
    EXPECT_EQ(changed.value.what, OpcUa_HistoryUpdateType_Replace);
    EXPECT_GT(changed.value.changed, changed.value.source);

    const std::size_t before = samples(0).size();
    view->findChild<QCheckBox*>("continueLive")->setChecked(true);
    EXPECT_TRUE(QTest::qWaitFor([&] { return samples(0).size() >= before + 2; }, limit));
}

} // namespace
