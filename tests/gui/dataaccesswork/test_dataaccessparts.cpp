// The parts of a data access view in the view itself.
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumserverrole.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/dataaccess/qlumdamodel.h>
#include <plugins/dataaccess/qlumdaview.h>
#include <tests/gui/dataaccesswork/workfixture.h>
#include <tests/support/dialogdriver.h>
#include <tests/support/modeltext.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/qlummessagebar.h>

#include <QAbstractItemModel>
#include <QAction>
#include <QApplication>
#include <QByteArray>
#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QFile>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QList>
#include <QMap>
#include <QMetaObject>
#include <QObject>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QWidget>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

constexpr auto npos = std::string::npos;

class PlantApplication : public StubApplication
{
public:
    QString serverName(unsigned int id) override { return id == 5 ? QStringLiteral("Plc") : QString(); }
    QList<unsigned int> projectServerIds() override { return {5}; }
    int namespaceIndexFromUri(unsigned int id, const QString& uri) override
    {
        return namespaceTable(id).indexOf(uri);
    }
    QStringList namespaceTable(unsigned int) override
    {
        return {"http://opcfoundation.org/UA/", "urn:client:own", "urn:plant;1/north"};
    }
};

// Writes what its role allows.
class RoleServices : public PlantServices
{
public:
    UaStatus write(Settings& settings, const UaWriteValues& nodes, UaStatusCodeArray& results) override
    {
        return looks ? qlumRefusal(QlumServerRole::Look) : TableServices::write(settings, nodes, results);
    }
    bool looks = false;
};

class DataAccessParts : public testing::Test
{
protected:
    DataAccessParts()
    {
        services->table.object(PlantServices::node(1), "Plant");
        for (OpcUa_UInt32 id = 2; id <= 4; ++id) {
            const UaNodeId node = PlantServices::node(id);
            services->table.variable(node, ("Value" + std::to_string(id)).c_str(), UaVariant(OpcUa_Int32(id)),
                                     PlantServices::node(1));
            services->table.setAttribute(node, OpcUa_Attributes_DataType,
                                         UaDataValue(UaVariant(UaNodeId(6))));
            services->table.setAttribute(node, OpcUa_Attributes_ValueRank,
                                         UaDataValue(UaVariant(OpcUa_Int32(-1))));
        }
        view = makeView();
    }
    std::unique_ptr<QlumDaView> makeView()
    {
        auto made = std::make_unique<QlumDaView>(
            application,
            [this](unsigned int id) { return id == 5 ? services : std::shared_ptr<RoleServices>(); },
            [](unsigned int) { return std::shared_ptr<monitoring::MonitoredServer>(); });
        made->sessionStatusChanged(5, QlumConnectionStatus::Connected);
        return made;
    }
    QTableView* table(const char* name) { return view->findChild<QTableView*>(name); }
    void trigger(const char* name)
    {
        for (const QWidget* widget : view->findChildren<QWidget*>())
            for (QAction* action : widget->actions())
                if (action->objectName() == name)
                    return action->trigger();
        FAIL() << "no command " << name;
    }
    void loadNewValues(const QByteArray& content)
    {
        const QString path = lists.filePath("values.csv");
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        DialogDriver driver([&](QDialog& dialog) {
            for (QLineEdit* line : dialog.findChildren<QLineEdit*>())
                line->setText(path);
            QMetaObject::invokeMethod(&dialog, "accept");
        });
        trigger("loadNewValues");
    }
    void paste(const QString& text, const char* command)
    {
        QApplication::clipboard()->setText(text);
        trigger(command);
    }
    // Rows of the plant, with values in the view.
    void addRows()
    {
        paste("ns=2;i=2\nns=2;i=3\nns=2;i=4\n", "pasteNodes");
        ASSERT_TRUE(QTest::qWaitFor([&] { return view->model().rowCount() == 3; }));
        for (int row = 0; row < 3; ++row)
            setShown(row, OpcUa_Int32(row + 2));
    }
    void setShown(int row, OpcUa_Int32 value)
    {
        UaDataValue shown{UaVariant(value)};
        view->model().takeValue(view->model().rowAt(row).key, shown, 0, view->model().now());
        view->model().tellValues();
    }
    std::string column(int number) { return column(view->model(), number); }
    static std::string column(const QAbstractItemModel& model, int number)
    {
        std::string text;
        for (int row = 0; row < model.rowCount(); ++row)
            text += model.index(row, number).data().toString().toStdString() + "\n";
        return text;
    }
    bool waitForColumn(int number, const std::string& expected)
    {
        return QTest::qWaitFor([&] { return column(number) == expected; });
    }
    QString message()
    {
        auto* bar = view->findChild<QlumMessageBar*>();
        QStringList texts;
        for (const QLabel* label : bar->findChildren<QLabel*>())
            if (!label->text().isEmpty())
                texts.append(label->text());
        return bar->isHidden() ? QString() : texts.join(" | ");
    }

    const QTemporaryDir lists;
    PlantApplication application;
    std::shared_ptr<RoleServices> services = std::make_shared<RoleServices>();
    std::unique_ptr<QlumDaView> view;
};

TEST_F(DataAccessParts, LinesThatNameNothingStayAsRowsWithTheReason)
{
    paste("Server,Node Id\n,ns=2;i=2\n,nsu=urn:gone;i=1\nElsewhere,ns=2;i=2\n,=cmd|' /C calc'!A0\n",
          "pasteNodes");
    ASSERT_TRUE(QTest::qWaitFor([&] { return view->model().rowCount() == 4; }));
    EXPECT_EQ(column(QlumDaModel::DisplayName), "Value2\nnsu=urn:gone;i=1\nns=2;i=2\n=cmd|' /C calc'!A0\n");
    EXPECT_TRUE(column(QlumDaModel::Status)
                    .ends_with("The server has no namespace \"urn:gone\".\n"
                               "The project has no server \"Elsewhere\".\n"
                               "This is neither a node id nor a browse path.\n"));
    EXPECT_TRUE(message().contains("3 of 4 lines name no variable")) << message();

    services->table.variable(UaNodeId(1, 1), "Now", UaVariant(1));
    paste("ns=1;i=1", "pasteNodes");
    services->failCalls(NodeTable::Read, OpcUa_BadTimeout);
    paste("/Objects/2:Plant/2:Nothing", "pasteNodes");
    ASSERT_TRUE(QTest::qWaitFor([&] { return view->model().rowCount() == 6; }));
}

// They keep their places, and what was staged for them; what still names nothing says why anew.
TEST_F(DataAccessParts, RowsThatAreFoundLaterStayWhereTheyAre)
{
    paste("ns=2;i=2\nns=2;i=40\nns=2;i=41\nns=2;i=3\n", "pasteNodes");
    ASSERT_TRUE(QTest::qWaitFor([&] { return view->model().rowCount() == 4; }));
    const quint32 key = view->model().rowAt(1).key;
    table("dataItems")->selectRow(1);
    paste("55", "pasteNewValues");
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return column(QlumDaModel::NewValue).find("The row names no node of a server.") != npos; }));

    services->table.variable(PlantServices::node(40), "Later", UaVariant(OpcUa_Int32(1)),
                             PlantServices::node(1));
    services->table.setAttribute(PlantServices::node(40), OpcUa_Attributes_DataType,
                                 UaDataValue(UaVariant(UaNodeId(6))));
    table("dataItems")->clearSelection();
    trigger("lookAgain");
    ASSERT_TRUE(waitForColumn(QlumDaModel::DisplayName, "Value2\nLater\nns=2;i=41\nValue3\n"))
        << column(QlumDaModel::DisplayName);
    EXPECT_EQ(view->model().rowAt(1).key, key);
    EXPECT_EQ(view->model().rowAt(1).nodeId, PlantServices::node(40));
    EXPECT_EQ(view->model().rowAt(2).state, QlumDataState::Unresolved);
    ASSERT_TRUE(waitForColumn(QlumDaModel::NewValue, "\n55\n\n\n")) << column(QlumDaModel::NewValue);
    trigger("writeStaged");
    ASSERT_TRUE(QTest::qWaitFor([&] { return message().contains("1 of 1 values were written."); }));
    EXPECT_EQ(services->table.value(PlantServices::node(40)).toInt32(), 55);
}

TEST_F(DataAccessParts, PastedValuesAreStagedCheckedWrittenAndReverted)
{
    addRows();
    table("dataItems")->selectRow(0);
    paste("20\nmany\n40\n50\n", "pasteNewValues");
    ASSERT_TRUE(
        waitForColumn(QlumDaModel::NewValue, "20\nmany (\"many\" is no value of the type Int32.)\n40\n"))
        << column(QlumDaModel::NewValue);
    EXPECT_TRUE(message().contains("1 value(s) had no row")) << message();
    EXPECT_EQ(services->calls(NodeTable::Write), 0) << "staging writes nothing";

    trigger("writeStaged");
    ASSERT_TRUE(QTest::qWaitFor([&] { return message().contains("2 of 2 values were written."); }))
        << message();
    EXPECT_TRUE(message().contains("1 staged value(s) were held back by the checks.")) << message();
    EXPECT_EQ(services->table.value(PlantServices::node(4)).toInt32(), 40);
    trigger("revertStaged");
    ASSERT_TRUE(QTest::qWaitFor([&] { return message().contains("2 of 2 old values are there again."); }));
    EXPECT_EQ(services->table.value(PlantServices::node(4)).toInt32(), 4);
}

TEST_F(DataAccessParts, WhatWasWrittenCanBeRevertedAfterTheProjectWasOpenedAgain)
{
    addRows();
    table("dataItems")->selectRow(0);
    paste("20\n30\n", "pasteNewValues");
    services->table.fail(NodeTable::Write, PlantServices::node(3), OpcUa_BadNotWritable);
    ASSERT_TRUE(waitForColumn(QlumDaModel::NewValue, "20\n30\n\n"));
    trigger("writeStaged");
    ASSERT_TRUE(QTest::qWaitFor([&] { return message().contains("1 of 2 values were written."); }));
    QTemporaryDir folder;
    QSettings settings(folder.filePath("project.uap"), QSettings::IniFormat);
    view->saveSettings(settings);
    services->failCalls(NodeTable::Read, OpcUa_BadNotConnected);
    view = makeView();
    view->loadSettings(settings, {{5, 5}});
    const QAbstractItemModel& staged = *table("stagedValues")->model();
    EXPECT_EQ(column(staged, 6), "Written\nRefused. BadNotWritable: the value may not be written\n");
    EXPECT_EQ(column(staged, 7), "2\n3\n");
    ASSERT_TRUE(QTest::qWaitFor([&] { return column(staged, 5).find("BadNotConnected") == 0; }))
        << column(staged, 5);
    services->failCalls(NodeTable::Read, OpcUa_Good);
    view->sessionStatusChanged(5, QlumConnectionStatus::Connected);
    EXPECT_TRUE(QTest::qWaitFor([&] { return column(staged, 5) == "\n\n"; }))
        << "they are looked at once the server is there: " << column(staged, 5);
    trigger("revertStaged");
    ASSERT_TRUE(QTest::qWaitFor([&] { return message().contains("1 of 1 old values are there again."); }));
    EXPECT_EQ(services->table.value(PlantServices::node(2)).toInt32(), 2);
}

TEST_F(DataAccessParts, RefusalsOfTheGuardShowAtTheRow)
{
    addRows();
    services->looks = true;
    table("dataItems")->selectAll();
    paste("7", "pasteNewValues");
    ASSERT_TRUE(waitForColumn(QlumDaModel::NewValue, "7\n7\n7\n")) << "one value for all that are selected";
    trigger("writeStaged");
    ASSERT_TRUE(waitForColumn(QlumDaModel::NewValue,
                              "7 (Not sent: this server is set to Look)\n"
                              "7 (Left out: one before it was not written, or you have stopped)\n"
                              "7 (Left out: one before it was not written, or you have stopped)\n"))
        << column(QlumDaModel::NewValue);
    services->looks = false;
    trigger("writeStaged");
    ASSERT_TRUE(QTest::qWaitFor([&] { return message().contains("3 of 3 values were written."); }))
        << message();
    EXPECT_EQ(column(QlumDaModel::NewValue), "7\n7\n7\n");
    EXPECT_EQ(services->table.value(PlantServices::node(3)).toInt32(), 7);
}

TEST_F(DataAccessParts, FilesOfValuesAreStagedForTheirNodes)
{
    addRows();
    loadNewValues("Node Id;New Value\nnsu=urn:plant%3B1/north;i=4;44\n\"ns=2;i=2\";22\nns=2;i=99;1\n");
    ASSERT_TRUE(waitForColumn(QlumDaModel::NewValue, "22\n\n44\n")) << column(QlumDaModel::NewValue);
    const QAbstractItemModel& staged = *table("stagedValues")->model();
    EXPECT_TRUE(QTest::qWaitFor([&] { return column(staged, 4) == "44\n22\n1\n"; }))
        << "in the order of the file, what cannot be staged at the end: " << column(staged, 4);
    const auto checks = [&] { return column(staged, 5); };
    EXPECT_TRUE(QTest::qWaitFor([&] { return checks() == "\n\nThe server has no such node.\n"; }))
        << checks();
}

// Its lines come in portions: a later one has to find the rows that earlier ones have made.
TEST_F(DataAccessParts, OfALongListEachNodeHasOneRowAndItsLastValue)
{
    QByteArray list("Node Id;New Value\n");
    for (int line = 1; line <= 4500; ++line)
        list += "ns=2;i=" + QByteArray::number(2 + line % 3) + ';' + QByteArray::number(line) + '\n';
    loadNewValues(list);
    ASSERT_TRUE(waitForColumn(QlumDaModel::NewValue, "4498\n4499\n4500\n")) << column(QlumDaModel::NewValue);
    EXPECT_EQ(view->model().rowCount(), 3);
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return column(*table("stagedValues")->model(), 4) == "4498\n4499\n4500\n"; }));
    trigger("writeStaged");
    ASSERT_TRUE(QTest::qWaitFor([&] { return message().contains("3 of 3 values were written."); }))
        << message();
}

// Each outcome by itself would have the list told of a hundred thousand times, and what is left out after a
// failure comes all at once.
TEST_F(DataAccessParts, OutcomesOfManyValuesAreToldTogether)
{
    constexpr OpcUa_UInt32 first = 100, count = 1500;
    QByteArray list("Node Id;New Value\n");
    for (OpcUa_UInt32 id = first; id < first + count; ++id) {
        const UaNodeId node = PlantServices::node(id);
        services->table.variable(node, "Value", UaVariant(OpcUa_Int32(1)), PlantServices::node(1));
        services->table.setAttribute(node, OpcUa_Attributes_DataType, UaDataValue(UaVariant(UaNodeId(6))));
        list += "ns=2;i=" + QByteArray::number(id) + ";7\n";
    }
    loadNewValues(list);
    const QAbstractItemModel& staged = *table("stagedValues")->model();
    const auto result = [&](int row) { return staged.index(row, 6).data().toString(); };
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return staged.rowCount() == int(count) && view->pool().pending() == 0; }));
    int told = 0;
    QObject::connect(&staged, &QAbstractItemModel::dataChanged, view.get(), [&told] { ++told; });
    services->table.fail(NodeTable::Write, PlantServices::node(first + 3), OpcUa_BadNotWritable);
    trigger("writeStaged");
    ASSERT_TRUE(QTest::qWaitFor([&] { return message().contains("3 of 1500 values were written."); }, 30'000))
        << message();
    EXPECT_TRUE(result(int(count) - 1).startsWith("Left out"));
    services->table.fail(NodeTable::Write, PlantServices::node(first + 3), OpcUa_Good);
    trigger("writeStaged");
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return message().contains("1497 of 1497 values were written."); }, 60'000))
        << message();
    for (int row = 0; row < int(count); ++row)
        ASSERT_EQ(result(row), "Written") << row;
    EXPECT_LT(told, 300) << "of 3000 outcomes";
}

TEST_F(DataAccessParts, SnapshotsAreComparedAndGivenBackAsStagedValues)
{
    addRows();
    {
        DialogDriver driver([](QDialog& dialog) {
            dynamic_cast<QInputDialog&>(dialog).setTextValue("Before");
            dialog.accept();
        });
        trigger("takeSnapshot");
    }
    setShown(1, 33);
    trigger("compareSnapshots");
    auto* differences = table("snapshotDifferences");
    ASSERT_EQ(differences->model()->rowCount(), 1) << "what is the same is hidden";
    EXPECT_EQ(differences->model()->index(0, 5).data(), "3");
    EXPECT_EQ(differences->model()->index(0, 6).data(), "33");
    EXPECT_EQ(view->findChild<QLabel*>("snapshotSummary")->text(),
              "1 changed, 0 with another status, 0 gone, 0 new, 2 the same");
    trigger("stageBefore");
    EXPECT_TRUE(waitForColumn(QlumDaModel::NewValue, "\n3\n\n"));

    QTemporaryDir folder;
    {
        QSettings settings(folder.filePath("project.uap"), QSettings::IniFormat);
        view->saveSettings(settings);
    }
    QSettings settings(folder.filePath("project.uap"), QSettings::IniFormat);
    view = makeView();
    view->loadSettings(settings, {{5, 5}});
    EXPECT_TRUE(waitForColumn(QlumDaModel::NewValue, "\n3\n\n")) << "staged values are kept with their rows";
    EXPECT_TRUE(view->findChild<QComboBox*>("snapshotBefore")->currentText().startsWith("Before, "));
}

TEST_F(DataAccessParts, SnapshotsThatTheProjectHasNoRoomForAreNamed)
{
    addRows();
    UaDataValue large{UaVariant(UaString(std::string(4'000'000, 'x').c_str()))};
    view->model().takeValue(view->model().rowAt(0).key, large, 0, view->model().now());
    for (const char* name : {"One", "Two"}) {
        DialogDriver driver([name](QDialog& dialog) {
            dynamic_cast<QInputDialog&>(dialog).setTextValue(name);
            dialog.accept();
        });
        trigger("takeSnapshot");
    }
    EXPECT_TRUE(message().contains("1 snapshot(s) are not kept with the project: One.")) << message();
    EXPECT_TRUE(view->findChild<QComboBox*>("snapshotBefore")->itemText(0).endsWith("(not in the project)"));
    QTemporaryDir folder;
    QSettings settings(folder.filePath("project.uap"), QSettings::IniFormat);
    view->saveSettings(settings);
    view = makeView();
    view->loadSettings(settings, {{5, 5}});
    auto* kept = view->findChild<QComboBox*>("snapshotBefore");
    ASSERT_EQ(kept->count(), 1);
    EXPECT_TRUE(kept->itemText(0).startsWith("Two")) << "the newest goes first";
}

TEST_F(DataAccessParts, ChangesOfLoggedRowsAreKeptUpToABoundAndCounted)
{
    application.settings["DataAccessPlugin.ChangeLogRows"] = 3;
    view = makeView();
    QlumDataSettings reading;
    reading.readInterval = 3'600'000;
    view->setSettings({}, reading);
    addRows();
    table("dataItems")->selectRow(1);
    trigger("logChanges");
    for (int value = 10; value < 15; ++value) {
        setShown(1, value);
        setShown(2, value); // not logged
    }
    const QAbstractItemModel& log = *table("changeLog")->model();
    const std::string newest = "12\n13\n14\n";
    EXPECT_TRUE(QTest::qWaitFor([&] { return column(log, 6) == newest; })) << column(log, 6);
    const QString summary = view->findChild<QLabel*>("changeLogSummary")->text();
    EXPECT_TRUE(summary.startsWith("1 row(s) logged, ")) << summary;
    EXPECT_TRUE(summary.endsWith(" older changes were dropped")) << summary;
    trigger("stopLogging");
    setShown(1, 20);
    view->model().removeKeys({view->model().rowAt(1).key});
    EXPECT_EQ(column(log, 6), newest) << "the log stays";
}

TEST_F(DataAccessParts, BrowsePathsAreReadBeforeTheyAreCopied)
{
    addRows();
    table("dataItems")->selectRow(1);
    QApplication::clipboard()->clear();
    trigger("copyPathsByIndex");
    ASSERT_TRUE(QTest::qWaitFor([] { return !QApplication::clipboard()->text().isEmpty(); }));
    const QString path = QApplication::clipboard()->text();
    paste(path, "pasteNodes");
    ASSERT_TRUE(QTest::qWaitFor([&] { return view->model().rowCount() == 4; }));
    EXPECT_EQ(view->model().rowAt(3).nodeId, PlantServices::node(3)) << path;
}

} // namespace
