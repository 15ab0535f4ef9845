// The view: questions before anything changes, figures that stand under the right run, a project that keeps
// them.
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumserverrole.h>
#include <app/api/qlumtoolservices.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/performance/qlumfigures.h>
#include <plugins/performance/qlummeasuredarguments.h>
#include <plugins/performance/qlumperformancepanel.h>
#include <plugins/performance/qlumperformanceview.h>
#include <plugins/performance/qlumperformancework.h>
#include <plugins/performance/qlumruncomparisonmodel.h>
#include <plugins/performance/qlumrunmodel.h>
#include <tests/support/modeltext.h>
#include <tests/support/stubapplication.h>
#include <tests/support/tableservices.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumargumentpanel.h>
#include <uawidgets/qlummessagebar.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QCoreApplication>
#include <QDialog>
#include <QLabel>
#include <QList>
#include <QMessageBox>
#include <QObject>
#include <QPushButton>
#include <QSettings>
#include <QSpinBox>
#include <QString>
#include <QStringList>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <vector>

namespace {

class PlantApplication : public StubApplication
{
public:
    QString serverName(unsigned int id) override { return id == 5 ? "Plc" : QString(); }
    QList<unsigned int> projectServerIds() override { return {5}; }
    void setModified() override { ++modified; }

    int modified = 0;
};

// A server that is set to a role in which nothing is written.
class GuardedServices : public TableServices
{
public:
    bool isLookedAtOnly = false;

    UaStatus write(Settings& settings, const UaWriteValues& nodes, UaStatusCodeArray& results) override
    {
        return isLookedAtOnly ? qlumRefusal(QlumServerRole::Look)
                              : TableServices::write(settings, nodes, results);
    }
};

class PerformanceView : public testing::Test
{
protected:
    PerformanceView()
    {
        server->table.variable(UaNodeId(1, 2), "Level", UaVariant(2.5));
        server->table.variable(UaNodeId(2, 2), "Alarm", UaVariant(true));
        UaVariant access;
        access.setByte(1);
        server->table.setAttribute(UaNodeId(2, 2), OpcUa_Attributes_UserAccessLevel, UaDataValue(access));
        access.setByte(3);
        server->table.setAttribute(UaNodeId(1, 2), OpcUa_Attributes_UserAccessLevel, UaDataValue(access));
        view = make();
    }
    std::unique_ptr<QlumPerformanceView> make()
    {
        auto made = std::make_unique<QlumPerformanceView>(
            application, [this](unsigned int id) { return id == 5 ? server : nullptr; });
        made->sessionStatusChanged(5, QlumConnectionStatus::Connected, {});
        return made;
    }
    void addNodes()
    {
        const QlumToolNodes nodes{{5, UaNodeId(1, 2), OpcUa_NodeClass_Unspecified, {}, {}},
                                  {5, UaNodeId(2, 2), OpcUa_NodeClass_Unspecified, {}, {}}};
        view->addNodes(nodes);
        ASSERT_TRUE(QTest::qWaitFor([this] { return view->panel()->plan().nodes.size() == 2; }));
    }
    void choose(QlumMeasuredKind kind)
    {
        auto* box = view->findChild<QComboBox*>("kind");
        box->setCurrentIndex(box->findData(static_cast<int>(kind)));
        view->findChild<QSpinBox*>("calls")->setValue(25);
    }
    void press(const char* name) { view->findChild<QPushButton*>(name)->click(); }
    [[nodiscard]] bool isIdle() const
    {
        return QTest::qWaitFor([this] { return !view->work()->isBusy(); });
    }
    // One that was answered goes in the next turn of the loop.
    [[nodiscard]] QMessageBox* question() const
    {
        QMessageBox* box = nullptr;
        EXPECT_TRUE(QTest::qWaitFor([&] {
            box = view->findChild<QMessageBox*>("performanceQuestion");
            return box && box->isVisible();
        }));
        return box;
    }
    [[nodiscard]] QlumMeasuredArgumentsDialog* arguments() const
    {
        QlumMeasuredArgumentsDialog* dialog = nullptr;
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return (dialog = view->findChild<QlumMeasuredArgumentsDialog*>()); }));
        return dialog;
    }
    static void answer(QMessageBox* box, const QString& text)
    {
        for (QAbstractButton* button : box->buttons())
            if (button->text() == text)
                return button->click();
        FAIL() << "no button " << text.toStdString();
    }

    PlantApplication application;
    std::shared_ptr<GuardedServices> server = std::make_shared<GuardedServices>();
    std::unique_ptr<QlumPerformanceView> view;
};

TEST_F(PerformanceView, MeasuresOnlyWhatIsThereAndNamesTheRun)
{
    EXPECT_FALSE(view->findChild<QPushButton*>("measure")->isEnabled());
    EXPECT_EQ(view->findChild<QLabel*>("measureHint")->text(),
              "Drop variables of this server: there is none below.");
    addNodes();
    choose(QlumMeasuredKind::Read);
    press("measure");
    ASSERT_TRUE(isIdle());
    ASSERT_EQ(view->runs()->rowCount(), 1);
    const QlumMeasurementRun& run = view->runs()->rowAt(0);
    EXPECT_EQ(run.name, "Read 1");
    EXPECT_EQ(run.server, "Plc");
    EXPECT_EQ(run.figures.calls, 25u);
    EXPECT_EQ(
        view->findChild<QTableView*>("figures")->model()->index(0, QlumRunComparisonModel::Value).data(),
        "25")
        << "the newest run is shown";
    EXPECT_GT(application.modified, 0);
}

TEST_F(PerformanceView, WriteAsksFirstLeavesOutAndWritesWhatWasThere)
{
    addNodes();
    choose(QlumMeasuredKind::Write);
    press("measure");
    QMessageBox* box = question();
    ASSERT_TRUE(box);
    EXPECT_TRUE(box->text().startsWith("The run writes to 1 variable(s) of Plc, 46 times."))
        << box->text().toStdString();
    EXPECT_TRUE(box->text().contains("puts back the value that was just read"));
    EXPECT_TRUE(box->detailedText().contains("Left out: Alarm: it may not be written by this user"))
        << box->detailedText().toStdString();
    EXPECT_EQ(server->calls(NodeTable::Write), 0) << "before the answer";
    answer(box, "&Write");
    ASSERT_TRUE(QTest::qWaitFor([this] { return view->runs()->rowCount() == 1; }));
    EXPECT_EQ(view->runs()->rowAt(0).figures.failed(), 0u);
    EXPECT_EQ(server->calls(NodeTable::Write), 1 + 20 + 25);
    EXPECT_EQ(server->table.value(UaNodeId(1, 2)), UaVariant(2.5));

    press("measure");
    box = question();
    ASSERT_TRUE(box);
    box->reject();
    ASSERT_TRUE(isIdle());
    EXPECT_EQ(view->runs()->rowCount(), 1);
}

TEST_F(PerformanceView, WriteThatTheRoleForbidsIsRefusedInWords)
{
    server->isLookedAtOnly = true;
    addNodes();
    choose(QlumMeasuredKind::Write);
    press("measure");
    QMessageBox* box = question();
    ASSERT_TRUE(box);
    answer(box, "&Write");
    ASSERT_TRUE(QTest::qWaitFor([this] { return view->runs()->rowCount() == 1; }));
    EXPECT_EQ(view->runs()->rowAt(0).end, QlumRunEnd::Broken);
    const auto* bar = view->findChild<QlumMessageBar*>();
    ASSERT_TRUE(bar->isVisibleTo(view.get()));
    QStringList said;
    for (const QLabel* label : bar->findChildren<QLabel*>())
        said.append(label->text());
    EXPECT_TRUE(said.join(' ').contains("Nothing was measured: Not sent: this server is set to Look"))
        << said.join(' ').toStdString();
    EXPECT_EQ(server->table.value(UaNodeId(1, 2)), UaVariant(2.5));
}

TEST_F(PerformanceView, CallAsksWithTheMethodAndHowOften)
{
    int called = 0;
    server->table.method(UaNodeId(3, 2), "Reset", UaNodeId(85), {{}, {}, [&](const auto&, auto&) {
                                                                     ++called;
                                                                     return OpcUa_Good;
                                                                 }});
    const QlumToolNodes nodes{{5, UaNodeId(3, 2), OpcUa_NodeClass_Method, UaNodeId(85), "Reset"}};
    view->addNodes(nodes);
    choose(QlumMeasuredKind::Call);
    press("measure");
    QMessageBox* box = question();
    ASSERT_TRUE(box);
    EXPECT_TRUE(box->text().startsWith("The run calls Reset of Plc 46 times, warm-up included"))
        << box->text().toStdString();
    EXPECT_EQ(called, 0);
    answer(box, "&Call");
    ASSERT_TRUE(QTest::qWaitFor([this] { return view->runs()->rowCount() == 1; }));
    EXPECT_EQ(called, 46) << "as often as the question says";
}

TEST_F(PerformanceView, CallAsksForArgumentsKeepsThemAndSaysHowOftenASweepCalls)
{
    std::vector<UaVariant> sent;
    server->table.method(UaNodeId(3, 2), "Fill", UaNodeId(85),
                         {{{"Level", UaNodeId(11)}}, {}, [&](const auto& inputs, auto&) {
                              sent.emplace_back(inputs[0]);
                              return OpcUa_Good;
                          }});
    const QlumToolNodes nodes{{5, UaNodeId(3, 2), OpcUa_NodeClass_Method, UaNodeId(85), "Fill"},
                              {5, UaNodeId(4, 2), OpcUa_NodeClass_Method, UaNodeId(85), "Gone"}};
    view->addNodes(nodes);
    choose(QlumMeasuredKind::Call);
    press("measure");
    QlumMeasuredArgumentsDialog* dialog = arguments();
    ASSERT_TRUE(dialog);
    auto* panel = dialog->findChild<QlumArgumentPanel*>();
    EXPECT_EQ(panel->value(0), UaVariant(0.0)) << "of the declared type";
    panel->setValue(0, UaVariant(7.5));
    dialog->accept();
    QMessageBox* box = question();
    ASSERT_TRUE(box);
    EXPECT_TRUE(box->text().contains("46 times, warm-up included, with the arguments given"));
    EXPECT_TRUE(box->detailedText().startsWith("Left out: Gone: ")) << box->detailedText().toStdString();
    EXPECT_TRUE(sent.empty());
    answer(box, "&Call");
    ASSERT_TRUE(QTest::qWaitFor([this] { return view->runs()->rowCount() == 1; }));
    EXPECT_EQ(sent, std::vector<UaVariant>(46, UaVariant(7.5)));

    press("sweepNodes");
    ASSERT_TRUE((dialog = arguments()));
    EXPECT_EQ(dialog->findChild<QlumArgumentPanel*>()->value(0), UaVariant(7.5)) << "as given before";
    dialog->accept();
    box = question();
    ASSERT_TRUE(box);
    EXPECT_TRUE(box->text().contains("86,848 times"))
        << "46 calls with 1, 2, 5 ... 1000 nodes each: " << box->text().toStdString();
    box->reject();
    EXPECT_EQ(sent.size(), 46u);
}

TEST_F(PerformanceView, AComparisonOfWritesAsksFirstAndListsTheEndpointsItLeavesOut)
{
    QlumToolServices tools;
    QObject owner;
    QStringList asked;
    QlumSideSessionDone late;
    tools.takeSideSession(&owner, [&](unsigned int, const QlumSideEndpoint& endpoint, const QlumIdentity&,
                                      const QlumSideSessionDone& done) {
        asked.append(endpoint.securityPolicy);
        if (endpoint.securityPolicy == "Slow")
            late = done;
        else
            done(nullptr, UaStatus(OpcUa_BadUserAccessDenied));
    });
    addNodes();
    choose(QlumMeasuredKind::Write);
    const auto compare = [this](const char* policy) {
        emit view->work()->offered({{"One", {{}, OpcUa_MessageSecurityMode_Sign, policy}}}, {});
        view->findChild<QDialog*>("compareSecurityDialog")->accept();
    };
    compare("Quick");
    QMessageBox* box = question();
    ASSERT_TRUE(box);
    EXPECT_EQ(asked, QStringList()) << "before the answer";
    answer(box, "&Write");
    ASSERT_TRUE(isIdle());
    EXPECT_EQ(asked, QStringList("Quick"));
    EXPECT_TRUE(view->findChild<QlumMessageBar*>()->isVisibleTo(view.get()));
    EXPECT_EQ(server->calls(NodeTable::Write), 0);

    choose(QlumMeasuredKind::Read);
    compare("Slow");
    ASSERT_TRUE(late);
    EXPECT_TRUE(view->work()->isBusy());
    press("cancelMeasuring");
    EXPECT_FALSE(view->work()->isBusy()) << "while the session is still being opened";
    press("measure");
    late(nullptr, UaStatus(OpcUa_BadTimeout));
    ASSERT_TRUE(QTest::qWaitFor([this] { return view->runs()->rowCount() == 1; }));
    EXPECT_EQ(view->runs()->rowAt(0).figures.calls, 25u) << "what comes late ends nothing";
}

TEST_F(PerformanceView, ASweepEndsWithItsAdvice)
{
    addNodes();
    choose(QlumMeasuredKind::Read);
    press("sweepNodes");
    ASSERT_TRUE(isIdle());
    EXPECT_EQ(view->runs()->rowCount(), 10) << "1, 2, 5 ... 1000";
    EXPECT_EQ(view->runs()->rowAt(9).plan.nodesPerCall, 1000u);
    EXPECT_FALSE(view->findChild<QLabel*>("sweepText")->text().isEmpty());
}

TEST_F(PerformanceView, AServerThatGoesEndsItsRunAndTakesItsNodes)
{
    addNodes();
    choose(QlumMeasuredKind::Read);
    view->findChild<QSpinBox*>("calls")->setValue(0);
    view->findChild<QSpinBox*>("seconds")->setValue(3600);
    press("measure");
    ASSERT_TRUE(
        QTest::qWaitFor([this] { return view->work()->current() && view->work()->current()->size() > 0; }));
    view->sessionRemoved(5);
    EXPECT_FALSE(view->work()->isBusy());
    EXPECT_TRUE(view->panel()->plan().nodes.empty());
    const int reads = server->calls(NodeTable::Read);
    QCoreApplication::processEvents();
    EXPECT_EQ(server->calls(NodeTable::Read), reads);
}

TEST_F(PerformanceView, ComparesTwoRunsByDifferenceAndRatio)
{
    QlumMeasurementRun one;
    one.figures.calls = 10;
    one.figures.duration = QlumSpread{100, 200, 200, 300, 300, 300, 10};
    QlumMeasurementRun two = one;
    two.figures.duration->median = 500;
    QlumRunComparisonModel model;
    model.show(two, one);
    int row = 0;
    while (row < model.rowCount() && model.rowAt(row).name != "Duration: median")
        ++row;
    ASSERT_LT(row, model.rowCount());
    EXPECT_EQ(model.index(row, QlumRunComparisonModel::Value).data(), "500 us");
    EXPECT_EQ(model.index(row, QlumRunComparisonModel::Difference).data(), "300 us");
    EXPECT_EQ(model.index(row, QlumRunComparisonModel::Ratio).data(), "2.500");
    two.figures.duration->median = 1234567.89;
    QlumRunModel runs;
    runs.addRun(two);
    EXPECT_EQ(runs.index(0, QlumRunModel::Median).data(), "1234567.9") << "as a spreadsheet reads it";
    model.show(two, std::nullopt);
    EXPECT_EQ(model.index(row, QlumRunComparisonModel::Ratio).data(), "-");
}

TEST_F(PerformanceView, TheProjectKeepsNodesFieldsAndRuns)
{
    addNodes();
    choose(QlumMeasuredKind::Read);
    view->findChild<QSpinBox*>("nodesPerCall")->setValue(7);
    press("measure");
    ASSERT_TRUE(isIdle());
    ASSERT_TRUE(view->runs()->setData(view->runs()->index(0, QlumRunModel::Name), "Before the change"));
    QTemporaryDir folder;
    QSettings settings(folder.filePath("project.uap"), QSettings::IniFormat);
    view->saveSettings(settings);
    settings.setValue("Runs/1/Duration", "1 2 nonsense");
    const QlumFigures kept = view->runs()->rowAt(0).figures;

    view = make();
    view->loadSettings(settings, {{5, 5}});
    EXPECT_EQ(view->panel()->plan().nodesPerCall, 7u);
    EXPECT_EQ(view->panel()->plan().nodes.size(), 2u);
    ASSERT_EQ(view->runs()->rowCount(), 1);
    EXPECT_EQ(view->runs()->rowAt(0).name, "Before the change");
    EXPECT_EQ(view->runs()->rowAt(0).figures.calls, kept.calls);
    EXPECT_FALSE(view->runs()->rowAt(0).figures.duration) << "what is no number is not shown as one";

    settings.remove("Runs");
    view = make();
    view->loadSettings(settings, {});
    EXPECT_TRUE(view->panel()->plan().nodes.empty());
}

} // namespace
