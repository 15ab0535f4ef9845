// What a user does with a data access view, and what servers do to it.
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlummetatypes.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/dataaccess/qlumdafilter.h>
#include <plugins/dataaccess/qlumdamodel.h>
#include <plugins/dataaccess/qlumdataitem.h>
#include <plugins/dataaccess/qlumdaview.h>
#include <tests/gui/dataaccess/dafixture.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uavariant.h>
#include <watching/qlumdasettingsdialog.h>

#include <QAbstractItemModelTester>
#include <QAction>
#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QItemSelectionModel>
#include <QLabel>
#include <QMessageBox>
#include <QModelIndex>
#include <QPushButton>
#include <QRegularExpression>
#include <QRegularExpressionMatch>
#include <QSettings>
#include <QSpinBox>
#include <QString>
#include <QStringList>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

#include <utility>
#include <vector>

namespace {

using M = QlumDaModel;

TEST_F(DaViewTest, RowsAreDescribedReadMovedAndRemoved)
{
    const QAbstractItemModelTester tester(&view->model());
    connectServer();
    add(2);
    add(3);
    ASSERT_TRUE(waitFor(0, M::BrowsePath, "/Objects/2:Line/2:Speed"));
    ASSERT_TRUE(waitFor(0, M::Value, "12.5"));
    EXPECT_EQ(cell(0, M::DisplayName), "Speed");
    EXPECT_EQ(cell(0, M::DataType), "Double");
    EXPECT_EQ(cell(0, M::Server), "Plc 5");
    EXPECT_EQ(item(0).namespaceUri, "urn:line");

    services->table.setValue(node(2), UaVariant(-3.0));
    view->model().resetCounts({item(0).key});
    view->setSettings({item(0).key}, [] {
        QlumDataSettings settings;
        settings.readInterval = 50;
        return settings;
    }());
    ASSERT_TRUE(waitFor(0, M::Minimum, "-3"));
    EXPECT_EQ(cell(0, M::Status), "Good, read every 50 ms");

    const quint32 speed = item(0).key;
    view->model().moveKeys({speed}, 1);
    EXPECT_EQ(item(1).key, speed);
    view->table()->selectRow(0);
    view->command(QlumDaView::Remove)->trigger();
    ASSERT_EQ(view->model().rowCount(), 1);
    EXPECT_EQ(item(0).key, speed);
    EXPECT_EQ(view->model().rowOf(speed), 0);
}

TEST_F(DaViewTest, RowsStandTogetherByFolderWhateverTheyAreSortedBy)
{
    services->table.object(node(10), "Cell");
    services->table.variable(node(11), "Aaa", UaVariant(1.0), node(10));
    services->table.variable(node(12), "Zzz", UaVariant(1.0), node(10));
    connectServer();
    for (const OpcUa_UInt32 id : {12u, 2u, 11u, 3u})
        add(id);
    for (int row = 0; row < 4; ++row)
        ASSERT_TRUE(QTest::qWaitFor([&] { return !item(row).browsePath.isEmpty(); })) << row;
    auto* const filter = qobject_cast<QlumDaFilter*>(view->table()->model());
    ASSERT_NE(filter, nullptr);
    filter->setGroup(QlumDaFilter::ByFolder);
    const auto order = [filter] {
        QString names;
        for (int row = 0; row < filter->rowCount(); ++row)
            names += QString("%1%2 ").arg(filter->headings().contains(row) ? "|" : "",
                                          filter->index(row, M::DisplayName).data().toString());
        return names;
    };
    EXPECT_EQ(order(), "|Zzz Aaa |Speed Counts ");
    EXPECT_EQ(filter->headings().value(0), "Plc 5 /Objects/2:Cell (2 row(s))");
    const auto height = [this](int row) { return view->table()->rowHeight(row); };
    EXPECT_EQ(height(2), 2 * height(1)) << "there is room for the heading";
    filter->sort(M::DisplayName, Qt::DescendingOrder);
    EXPECT_EQ(order(), "|Zzz Aaa |Speed Counts ");
    filter->sort(M::DisplayName, Qt::AscendingOrder);
    EXPECT_EQ(order(), "|Aaa Zzz |Counts Speed ");
    filter->setGroup(QlumDaFilter::NoGroups);
    EXPECT_TRUE(QTest::qWaitFor([&] { return height(0) == height(1); }));
}

TEST_F(DaViewTest, ABranchIsCountedAndAddedWhenTheUserWants)
{
    connectServer();
    const QlumToolNode branch{5, node(1), OpcUa_NodeClass_Object, {}, "Line"};
    view->addNodes({&branch, 1});
    QMessageBox* box = nullptr;
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return (box = view->findChild<QMessageBox*>("addBranch")) != nullptr; }));
    EXPECT_EQ(box->text(), "Below \"Line\" are 2 variable(s).");
    EXPECT_EQ(view->model().rowCount(), 0);
    box->button(QMessageBox::Yes)->click();
    EXPECT_EQ(view->model().rowCount(), 2);
}

TEST_F(DaViewTest, ANodeThatIsThereIsAddedAgainOnTheUsersWordOnly)
{
    connectServer();
    add(2, "Speed");
    add(2, "Speed");
    EXPECT_EQ(view->model().rowCount(), 1);
    QPushButton* help = nullptr;
    for (QPushButton* button : view->findChildren<QPushButton*>())
        if (button->text() == "&Add Again")
            help = button;
    ASSERT_NE(help, nullptr);
    help->click();
    EXPECT_EQ(view->model().rowCount(), 2);
}

TEST_F(DaViewTest, RatesAreThoseOfTheTimeThatWentByAlsoWhenNobodyLooked)
{
    QlumDataSettings often;
    often.readInterval = 50;
    view->setSettings({}, often);
    connectServer();
    add(2);
    ASSERT_TRUE(waitFor(0, M::Value, "12.5"));
    view->show();
    const auto* const label = view->findChild<QLabel*>("dataTraffic");
    ASSERT_TRUE(QTest::qWaitFor([&] { return label->text().contains("values/s"); }));
    view->hide();
    const QString before = label->text();
    QElapsedTimer clock;
    clock.start();
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
            view->watch()->readNow();
            return clock.elapsed() > 3000;
        },
        20'000));
    view->show();
    ASSERT_TRUE(QTest::qWaitFor([&] { return label->text() != before; }));
    const QRegularExpressionMatch rate = QRegularExpression("([0-9,]+) values/s").match(label->text());
    const int values = rate.captured(1).remove(',').toInt();
    EXPECT_GT(values, 0);
    EXPECT_LE(values, 100) << "one each 10 ms at most";
}

TEST_F(DaViewTest, AValueThatIsBadShowsItInItsOwnCell)
{
    connectServer();
    add(2);
    add(77);
    ASSERT_TRUE(waitFor(0, M::Value, "12.5"));
    ASSERT_TRUE(QTest::qWaitFor([this] { return cell(1, M::Status).contains("BadNodeIdUnknown"); }));
    const auto look = [this](int row, int role) { return view->model().index(row, M::Value).data(role); };
    EXPECT_FALSE(look(0, Qt::DecorationRole).isValid());
    EXPECT_TRUE(look(1, Qt::DecorationRole).isValid()) << "the column of the status may be out of sight";
    EXPECT_TRUE(look(1, Qt::ToolTipRole).toString().contains("BadNodeIdUnknown"));
}

TEST_F(DaViewTest, ALostConnectionIsToldSinceWhenAndHowItCameBack)
{
    connectServer();
    add(2);
    ASSERT_TRUE(waitFor(0, M::Value, "12.5"));
    view->sessionStatusChanged(5, QlumConnectionStatus::ConnectionError);
    EXPECT_TRUE(cell(0, M::Status).startsWith("Offline since ")) << cell(0, M::Status).toStdString();
    EXPECT_EQ(cell(0, M::Verdict), "cannot be known");
    EXPECT_EQ(cell(0, M::Value), "12.5") << "the last one stays";
    connectServer();
    EXPECT_EQ(view->model().server(5).recovery, QlumDaServer::Recovery::Resumed);
    EXPECT_TRUE(cell(0, M::Status).contains("resumed at"));
    view->sessionStatusChanged(5, QlumConnectionStatus::NewSessionCreated);
    EXPECT_EQ(view->model().server(5).recovery, QlumDaServer::Recovery::Renewed);
    EXPECT_TRUE(cell(0, M::Status).contains("created again at"));
}

TEST_F(DaViewTest, AProjectKeepsRowsByNamespaceAndServer)
{
    connectServer();
    add(2, "Speed");
    add(3, "Counts");
    QlumDataSettings own = view->model().viewSettings();
    own.queueSize = 12;
    view->setSettings({item(1).key}, own);
    view->model().changeItem(item(1).key, [](QlumDataItem& changed) { changed.indexRange = "1"; });
    const QTemporaryDir folder;
    QSettings settings(folder.filePath("project.ini"), QSettings::IniFormat);
    view->saveSettings(settings);

    application.tables = {{9, {"http://opcfoundation.org/UA/", "urn:plc"}}};
    application.modified = 0;
    view = makeView();
    view->loadSettings(settings, {{5, 9}});
    EXPECT_EQ(application.modified, 1) << "only by the settings of the fixture";
    ASSERT_EQ(view->model().rowCount(), 2);
    EXPECT_EQ(item(0).serverId, 9u);
    EXPECT_EQ(item(0).displayName, "Speed");
    EXPECT_EQ(item(0).state, QlumDataState::NamespaceGone);
    EXPECT_TRUE(cell(0, M::Status).contains("urn:line"));
    EXPECT_EQ(item(1).indexRange, "1");
    ASSERT_TRUE(item(1).settings);
    EXPECT_EQ(item(1).settings->queueSize, 12u);

    application.tables[9].insert(1, "urn:line"); // the server has it again, in another place
    view->sessionStatusChanged(9, QlumConnectionStatus::Connected);
    EXPECT_NE(item(0).state, QlumDataState::NamespaceGone);
    EXPECT_EQ(item(0).nodeId, UaNodeId(2u, 1));

    view = makeView();
    view->loadSettings(settings, {});
    EXPECT_EQ(item(0).state, QlumDataState::NoServer);
}

TEST_F(DaViewTest, WhatTheServerRefusesToTakeIsMarkedAtTheRow)
{
    connectServer();
    add(2);
    ASSERT_TRUE(waitFor(0, M::Value, "12.5"));
    services->table.fail(NodeTable::Service::Write, node(2), OpcUa_BadNotWritable);
    view->write(item(0).key, UaVariant(1.0));
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return cell(0, M::Value, Qt::ToolTipRole).contains("BadNotWritable"); }));
    services->table.fail(NodeTable::Service::Write, node(2), OpcUa_Good);
    view->write(item(0).key, UaVariant(1.0));
    ASSERT_TRUE(QTest::qWaitFor([&] { return view->model().writeFault(item(0)).isEmpty(); }));
}

TEST_F(DaViewTest, AServerWithoutRoomForSubscriptionsIsReadOnTheUsersWord)
{
    QlumDataSettings watched;
    view->setSettings({}, watched);
    connectServer();
    add(2);
    ASSERT_TRUE(QTest::qWaitFor([&] { return view->watch()->pending() == 0; }));
    monitoring::ItemChange change;
    change.state = monitoring::ItemState::Refused;
    change.status = UaStatusCode(OpcUa_BadTooManySubscriptions);
    view->model().takeChange(item(0).key, change);
    EXPECT_TRUE(cell(0, M::Status).contains("BadTooManySubscriptions"));
    emit view->watch()->refused(5, 1, change.status);
    QPushButton* help = nullptr;
    for (QPushButton* button : view->findChildren<QPushButton*>())
        if (button->text().contains("Read Every"))
            help = button;
    ASSERT_NE(help, nullptr);
    help->click();
    ASSERT_TRUE(waitFor(0, M::Value, "12.5"));
    EXPECT_EQ(cell(0, M::Status), "Good, read every 5 s");
    EXPECT_EQ(cell(0, M::Verdict), "sampled here");
}

TEST_F(DaViewTest, ElementsBecomeRowsThatShowThemAlone)
{
    connectServer();
    add(3);
    ASSERT_TRUE(QTest::qWaitFor([&] {
        view->watch()->readNow();
        return item(0).received != 0;
    }));
    view->table()->selectRow(0);
    view->command(QlumDaView::AddParts)->trigger();
    ASSERT_EQ(view->model().rowCount(), 3);
    EXPECT_EQ(item(2).indexRange, "1");
    const UaVariant element(OpcUa_Int32(9));
    UaVariant sent; // as servers send one element
    ASSERT_EQ(sent.setArray(OpcUaType_Int32, {&element, 1}), OpcUa_Good);
    UaDataValue value(sent);
    view->model().takeValue(item(2).key, value, 0, view->model().now());
    EXPECT_EQ(cell(2, M::Value), "9");
    EXPECT_EQ(cell(2, M::Maximum), "9");
    const QModelIndex shown = view->model().index(2, M::Value); // as delegates and editors ask for it
    EXPECT_EQ(shown.data(M::ValueRole).value<UaVariant>(), element);
    EXPECT_TRUE(QTest::qWaitFor([&] {
        return shown.data(M::DataTypeRole).value<UaNodeId>() == UaNodeId(OpcUaType_Int32) &&
               shown.data(M::DictionaryRole).value<UaDataTypeDictionary*>() != nullptr;
    }));
    EXPECT_EQ(view->model().index(2, 0).data(M::KeyRole).toUInt(), item(2).key);
}

TEST_F(DaViewTest, TheOldestValueIsThatOfTheRowThatHasBeenSilentLongest)
{
    QlumDaModel model(application);
    std::vector<QlumDataItem> items(3);
    for (QlumDataItem& one : items)
        one.serverId = 5;
    const std::vector<quint32> keys = model.add(std::move(items));
    const auto take = [&](std::size_t row, OpcUa_DateTime when) {
        UaDataValue value(UaVariant(1.0));
        model.takeValue(keys[row], value, 0, when);
        return model.summary().oldest;
    };
    EXPECT_EQ(model.summary().oldest, 0) << "none has come";
    take(0, 100);
    take(1, 200);
    EXPECT_EQ(take(2, 300), 100);
    EXPECT_EQ(take(0, 400), 200);
    model.removeKeys({keys[1]});
    EXPECT_EQ(model.summary().oldest, 300);
    EXPECT_EQ(take(2, 400), 400);
    EXPECT_EQ(model.summary().waiting, 2);
    model.setState(keys[0], QlumDataState::Watched);
    EXPECT_EQ(model.summary().waiting, 1);
}

TEST_F(DaViewTest, OfManyRowsOnlyWhatIsTouchedChanges)
{
    QlumDataSettings shown, other;
    shown.queueSize = 3;
    other.publishingInterval = 250;
    QlumDaSettingsDialog dialog("rows", shown, QlumDaSettingsDialog::Revised{1000, 500, 2, 60, 20});
    dialog.findChild<QSpinBox*>("priority")->setValue(7);
    const QlumDataSettings applied = dialog.applied(other);
    EXPECT_EQ(applied.priority, 7);
    EXPECT_EQ(applied.queueSize, other.queueSize);
    EXPECT_EQ(applied.publishingInterval, 250);
    QStringList revised;
    for (const QLabel* label : dialog.findChildren<QLabel*>())
        if (label->text().contains("(revised)"))
            revised.append(label->text());
    EXPECT_EQ(revised, QStringList({"the server: 500 ms (revised)", "the server: 2 (revised)",
                                    "the server: 60 (revised)", "the server: 20 (revised)"}));
    QPushButton* const ok = dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
    for (const auto& [range, isRange] : {std::pair("0:9", true), {"3:1", false}, {"1,", false}, {"", true}}) {
        dialog.setIndexRange(range);
        EXPECT_EQ(ok->isEnabled(), isRange) << range;
    }
}

} // namespace
