// Staged values, lists and snapshots of a data access view on the demo server.
#include <app/api/qlumtoolservices.h>
#include <plugins/dataaccess/qlumdamodel.h>
#include <plugins/dataaccess/qlumdaview.h>
#include <tests/integration/clientondemoserver.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>

#include <QAbstractItemModel>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QString>
#include <QStringList>
#include <QTableView>
#include <QTest>
#include <QWidget>
#include <gtest/gtest.h>

namespace {

class StagedOnDemoServer : public ClientOnDemoServer
{
protected:
    void open()
    {
        openDemoProject();
        QlumToolNode node;
        node.serverId = serverId;
        node.nodeId = UaNodeId(UaString("Scalar.Int32"), 2);
        node.nodeClass = OpcUa_NodeClass_Variable;
        ASSERT_TRUE(QlumToolServices::instance()->openNodes("Data Access View", {&node, 1}));
        view = window->findChild<QlumDaView*>();
        ASSERT_NE(view, nullptr);
        ASSERT_TRUE(QTest::qWaitFor([&] { return view->model().rowCount() == 1; }, limit)) << logText();
    }
    void trigger(const char* name)
    {
        for (const QWidget* widget : view->findChildren<QWidget*>())
            for (QAction* action : widget->actions())
                if (action->objectName() == name) {
                    // a run has said what became of the last row before it has ended
                    ASSERT_TRUE(QTest::qWaitFor([&] { return action->isEnabled(); }, limit)) << name;
                    return action->trigger();
                }
        FAIL() << "no command " << name;
    }
    void paste(const QString& text, const char* command)
    {
        QApplication::clipboard()->setText(text);
        trigger(command);
    }
    [[nodiscard]] QStringList column(const QAbstractItemModel& model, int number) const
    {
        QStringList texts;
        for (int row = 0; row < model.rowCount(); ++row)
            texts.append(model.index(row, number).data().toString());
        return texts;
    }
    bool waitForColumn(const QAbstractItemModel& model, int number, const QStringList& expected)
    {
        return QTest::qWaitFor([&] { return column(model, number) == expected; }, limit);
    }

    QlumDaView* view = nullptr;
};

TEST_F(StagedOnDemoServer, ValuesOfAllKindsAreCheckedWrittenReadBackAndReverted)
{
    open();
    // no node that a test beside this one writes: a revert leaves what somebody else has written
    paste("nsu=urn:korvanda:tavelin:demo;s=DataAccess.Temperature\n"
          "/Objects/2:Demo/2:Access/2:RejectsWrites\n"
          "ns=2;s=Access.ReadOnly\n"
          "ns=2;s=Array.Int32\n"
          "ns=3;s=Structure.Colour\n"
          "ns=2;s=Missing\n",
          "pasteNodes");
    ASSERT_TRUE(QTest::qWaitFor([&] { return view->model().rowCount() == 7; }, limit)) << logText();
    EXPECT_TRUE(column(view->model(), QlumDaModel::Status).last().contains("no such node"));
    auto* rows = view->findChild<QTableView*>("dataItems");
    rows->selectRow(0);
    paste("-12\n2.5\n5\n6\n[7, 8, 9]\n2\n", "pasteNewValues");
    const QAbstractItemModel& staged = *view->findChild<QTableView*>("stagedValues")->model();
    enum { Value = 4, Check, Result, Old, Back };
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return staged.rowCount() == 6 && !column(staged, Check).contains("Being looked at"); }, limit));
    EXPECT_NE(staged.index(3, Check).data(), "") << "the node says that it may not be written";

    view->findChild<QCheckBox*>("stagedStops")->setChecked(false);
    trigger("writeStaged");
    ASSERT_TRUE(QTest::qWaitFor([&] { return staged.index(5, Result).data() == "Written"; }, limit))
        << column(staged, Result).join("; ").toStdString();
    EXPECT_EQ(column(staged, Result),
              QStringList({"Written", "Written",
                           "Refused. BadOutOfRange: the value is outside what the server allows", "",
                           "Written", "Written"}));
    EXPECT_EQ(staged.index(0, Back).data(), "-12");
    const QStringList old = column(staged, Old);
    trigger("revertStaged");
    const QString back = "The old value is there again";
    ASSERT_TRUE(waitForColumn(staged, Result, {back, back, column(staged, Result).at(2), "", back, back}))
        << column(staged, Result).join("; ").toStdString();

    trigger("discardAllStaged");
    rows->selectRow(0);
    paste("3", "pasteNewValues");
    ASSERT_TRUE(waitForColumn(staged, Check, {""})) << column(staged, Check).join("; ").toStdString();
    trigger("writeStaged");
    ASSERT_TRUE(waitForColumn(staged, Result, {"Written"}))
        << column(staged, Result).join("; ").toStdString();
    EXPECT_EQ(column(staged, Old).first(), old.first()) << "the revert had put it back";
    trigger("revertStaged");
    ASSERT_TRUE(waitForColumn(staged, Result, {back})) << column(staged, Result).join("; ").toStdString();
}

} // namespace
