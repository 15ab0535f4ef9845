// The performance view on the demo server: everything that it measures, and what happens when the server
// goes.
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtoolservices.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_types.h>
#include <plugins/performance/qlumfigures.h>
#include <plugins/performance/qlummeasurement.h>
#include <plugins/performance/qlumperformancepanel.h>
#include <plugins/performance/qlumperformanceview.h>
#include <plugins/performance/qlumperformancework.h>
#include <plugins/performance/qlumrunmodel.h>
#include <tests/integration/clientondemoserver.h>
#include <tests/support/dialogdriver.h>
#include <tests/support/owndemoserver.h>
#include <tests/support/performanceonserver.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/qlummessagebar.h>

#include <QAbstractButton>
#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QListWidget>
#include <QListWidgetItem>
#include <QMessageBox>
#include <QPushButton>
#include <QSpinBox>
#include <QString>
#include <QStringList>
#include <QTest>
#include <gtest/gtest.h>

#include <string>

namespace {

class PerformanceOnDemoServer : public PerformanceOn<ClientOnDemoServer>
{
protected:
    static UaNodeId demo(const char* id) { return UaNodeId(UaString(id), 2); }
};

TEST_F(PerformanceOnDemoServer, EveryKindIsMeasuredOnIt)
{
    openDemoProject();
    openView({{serverId, demo("Methods"), OpcUa_NodeClass_Unspecified, {}, {}},
              {serverId, demo("Scalar.Int32"), OpcUa_NodeClass_Unspecified, {}, {}},
              {serverId, demo("Dynamic.Sine"), OpcUa_NodeClass_Unspecified, {}, {}},
              {serverId, demo("Methods.Add"), OpcUa_NodeClass_Unspecified, {}, {}}});
    ASSERT_TRUE(waitFor([this] { return view->panel()->plan().nodes.size() == 2; })) << "the variables";
    int runs = 0;
    for (const QlumMeasuredKind kind :
         {QlumMeasuredKind::Read, QlumMeasuredKind::Write, QlumMeasuredKind::Browse,
          QlumMeasuredKind::TranslatePaths, QlumMeasuredKind::ReadRegistered, QlumMeasuredKind::Call,
          QlumMeasuredKind::MonitoredItems, QlumMeasuredKind::Session, QlumMeasuredKind::Notifications}) {
        const bool isSlow = kind == QlumMeasuredKind::Session || kind == QlumMeasuredKind::Notifications;
        choose(kind, isSlow ? 3 : 10);
        view->findChild<QSpinBox*>("warmUp")->setValue(2);
        press("measure");
        ASSERT_TRUE(waitForRuns(++runs)) << static_cast<int>(kind) << '\n' << logText();
        const QlumMeasurementRun& run = lastRun();
        SCOPED_TRACE(qlumMeasuredName(kind).toStdString() + ": " + run.remarks.join(' ').toStdString());
        EXPECT_EQ(run.end, QlumRunEnd::Done);
        EXPECT_GE(run.figures.calls, isSlow ? 3u : 10u);
        EXPECT_EQ(run.figures.failed(), 0u);
        EXPECT_EQ(run.figures.totals.badValues, 0u);
        ASSERT_TRUE(run.figures.duration);
        if (isSlow)
            continue;
        EXPECT_GT(run.figures.totals.bytesOut, 100u) << "from the gate";
        ASSERT_TRUE(run.figures.own);
        EXPECT_GT(run.figures.duration->median, run.figures.own->median) << "the server took its time, too";
    }
    EXPECT_TRUE(lastRun().remarks.join(' ').contains("The server's clock is"))
        << "notifications take it into account";
}

TEST_F(PerformanceOnDemoServer, SweepsAndComparesEndpointsAndEndsWhenItIsTold)
{
    openDemoProject();
    openView({{serverId, demo("Scalar.Int32"), OpcUa_NodeClass_Unspecified, {}, {}}});
    choose(QlumMeasuredKind::Read, 20);
    press("sweepNodes");
    ASSERT_TRUE(waitFor([this] { return !view->findChild<QLabel*>("sweepText")->text().isEmpty(); }));
    const int steps = view->runs()->rowCount();
    EXPECT_GE(steps, 4);
    EXPECT_GT(lastRun().plan.nodesPerCall, 1u);
    EXPECT_GT(lastRun().figures.valuesPerSecond(), view->runs()->rowAt(0).figures.valuesPerSecond())
        << "more values at once cost less each";

    press("compareSecurity");
    QDialog* dialog = nullptr;
    ASSERT_TRUE(waitFor([&] { return (dialog = view->findChild<QDialog*>("compareSecurityDialog")); }));
    auto* list = dialog->findChild<QListWidget*>("endpointsToCompare");
    ASSERT_GT(list->count(), 1);
    for (int row = 0; row < list->count(); ++row)
        list->item(row)->setCheckState(list->item(row)->text() == "None - None" ? Qt::Checked
                                                                                : Qt::Unchecked);
    dialog->accept();
    ASSERT_TRUE(waitForRuns(steps + 1)) << logText();
    EXPECT_EQ(lastRun().endpoint, "None - None");
    EXPECT_EQ(lastRun().figures.calls, 20u);
    EXPECT_EQ(lastRun().figures.failed(), 0u);

    choose(QlumMeasuredKind::Read, 0);
    press("measure");
    ASSERT_TRUE(waitFor([this] { return view->work()->current() && view->work()->current()->size() > 50; }));
    press("cancelMeasuring");
    ASSERT_TRUE(waitForRuns(steps + 2));
    EXPECT_EQ(lastRun().end, QlumRunEnd::Cancelled);
    EXPECT_GT(lastRun().figures.calls, 50u);
}

// By the server's own counts of sessions, on a server that nobody else uses.
class ComparedSecurity : public PerformanceOnDemoServer
{
protected:
    OpcUa_UInt32 serverCount(OpcUa_UInt32 nodeId)
    {
        UaReadValueIds nodes(1);
        EXPECT_TRUE(OpcUa_IsGood(UaNodeId(nodeId).copyTo(&nodes[0].NodeId)));
        nodes[0].AttributeId = OpcUa_Attributes_Value;
        QlumSessionServices::Settings settings;
        UaDataValues values;
        EXPECT_TRUE(qlumApplicationServices()(serverId)
                        ->read(settings, 0, OpcUa_TimestampsToReturn_Neither, nodes, values)
                        .isGood());
        return values.isEmpty() ? 0 : UaVariant(values[0].Value).toUInt32();
    }
    OpcUa_UInt32 current() { return serverCount(2277); }
    OpcUa_UInt32 everOpened() { return serverCount(2278); }

    // Compares these endpoints, or all for none; their names.
    QStringList compare(const QStringList& wanted)
    {
        press("compareSecurity");
        QDialog* dialog = nullptr;
        EXPECT_TRUE(waitFor([&] {
            dialog = view->findChild<QDialog*>("compareSecurityDialog");
            return dialog && dialog->isVisible();
        }));
        QStringList chosen;
        auto* list = dialog->findChild<QListWidget*>("endpointsToCompare");
        for (int row = 0; row < list->count(); ++row) {
            const bool isChosen = wanted.isEmpty() || wanted.contains(list->item(row)->text());
            list->item(row)->setCheckState(isChosen ? Qt::Checked : Qt::Unchecked);
            if (isChosen)
                chosen.append(list->item(row)->text());
        }
        dialog->accept();
        return chosen;
    }
    // What the server part asks of the user about a certificate.
    void answer(QDialog& dialog) const
    {
        if (!isTrusting)
            return dialog.reject();
        if (auto* once = dialog.findChild<QCheckBox*>("acceptOnce"); once && once->isEnabled())
            once->setChecked(true);
        if (auto* go = dialog.findChild<QPushButton*>("continue"); go && go->isEnabled())
            return go->click();
        if (auto* box = qobject_cast<QMessageBox*>(&dialog))
            for (QAbstractButton* button : box->buttons())
                if (const auto role = box->buttonRole(button);
                    role == QMessageBox::AcceptRole || role == QMessageBox::YesRole)
                    return button->click();
    }
    [[nodiscard]] std::string said() const
    {
        QStringList texts;
        for (const QLabel* label : view->findChild<QlumMessageBar*>()->findChildren<QLabel*>())
            texts.append(label->text());
        return texts.join(' ').toStdString();
    }

    bool isTrusting = false;
};

TEST_F(ComparedSecurity, EveryEndpointIsMeasuredInASessionOfItsOwnThatIsClosedAfterwards)
{
    OwnDemoServer own;
    ASSERT_TRUE(own.start());
    openDemoProject(own.url());
    openView({{serverId, demo("Scalar.Int32"), OpcUa_NodeClass_Unspecified, {}, {}}});
    choose(QlumMeasuredKind::Read, 20);
    const OpcUa_UInt32 before = current();
    const OpcUa_UInt32 openedBefore = everOpened();

    // a certificate that the user does not want
    DialogDriver driver([this](QDialog& dialog) {
        if (dialog.objectName() != "compareSecurityDialog")
            answer(dialog);
    });
    ASSERT_EQ(compare({"Basic256Sha256 - SignAndEncrypt"}).size(), 1);
    ASSERT_TRUE(waitFor([this] { return !view->work()->isBusy(); })) << logText();
    EXPECT_EQ(view->runs()->rowCount(), 0);
    EXPECT_NE(said().find("Basic256Sha256 - SignAndEncrypt: "), std::string::npos) << said();
    EXPECT_EQ(everOpened(), openedBefore) << "none was opened for it";

    isTrusting = true;
    const QStringList offered = compare({});
    ASSERT_GE(offered.filter(" - SignAndEncrypt").size(), 2) << offered.join(' ').toStdString();
    ASSERT_TRUE(waitFor([this] { return !view->work()->isBusy(); })) << logText();
    ASSERT_EQ(view->runs()->rowCount(), offered.size()) << said() << '\n' << logText();
    QStringList measured;
    for (int row = 0; row < view->runs()->rowCount(); ++row) {
        const QlumMeasurementRun& run = view->runs()->rowAt(row);
        measured.append(run.endpoint);
        EXPECT_EQ(run.figures.calls, 20u) << run.endpoint.toStdString();
        EXPECT_EQ(run.figures.failed(), 0u) << run.endpoint.toStdString();
    }
    EXPECT_EQ(measured, offered);
    EXPECT_GE(everOpened(), openedBefore + static_cast<OpcUa_UInt32>(offered.size()));
    EXPECT_TRUE(waitFor([&] { return current() == before; })) << current() << " sessions are left";
}

TEST_F(PerformanceOnDemoServer, AServerThatDiesEndsTheRunWhichKeepsItsSamples)
{
    OwnDemoServer own;
    ASSERT_TRUE(own.start());
    openDemoProject(own.url());
    openView({{serverId, demo("Scalar.Int32"), OpcUa_NodeClass_Unspecified, {}, {}}});
    choose(QlumMeasuredKind::Read, 0);
    press("measure");
    ASSERT_TRUE(waitFor([this] { return view->work()->current() && view->work()->current()->size() > 50; }));
    own.kill();
    ASSERT_TRUE(waitForRuns(1)) << logText();
    EXPECT_EQ(lastRun().end, QlumRunEnd::Broken);
    EXPECT_GT(lastRun().figures.calls, 50u);
    EXPECT_TRUE(lastRun().figures.duration) << "of the calls before";
    EXPECT_TRUE(lastRun().remarks.join(' ').contains("What was measured before counts"))
        << lastRun().remarks.join(' ').toStdString();
}

} // namespace
