#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumdatatypeeventinterface.h>
#include <app/api/qlumtoolservices.h>
#include <plugins/attributes/qlumattributeplugin.h>
#include <plugins/attributes/qlumattributeview.h>
#include <plugins/attributes/qlumcomparison.h>
#include <plugins/attributes/qlumcomparisonwindow.h>
#include <tests/gui/attributes/attributepluginfixture.h>
#include <tests/support/dialogdriver.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/qlummessagebar.h>

#include <QAbstractItemModel>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QDialog>
#include <QDockWidget>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QModelIndex>
#include <QObject>
#include <QPoint>
#include <QPushButton>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeView>
#include <QWidget>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {
TEST_F(AttributePlugin, ShowsTheSelectedNodeWhileOn)
{
    EXPECT_EQ(plugin.name(), "UA Attribute Plugin");
    EXPECT_EQ(application.settings["AttributePlugin.MaxAge"], 0.0);
    select(1);
    ASSERT_TRUE(waitFor(1));
    EXPECT_EQ(plugin.model()->rowCount(), 15);
    EXPECT_EQ(services->journal, QStringList{"read ns=2;i=1"});
    EXPECT_TRUE(application.texts().contains("Read attributes of node 'ns=2;i=1' succeeded [ret = Good]."));
    action("onOff")->setChecked(false);
    select(2);
    action("onOff")->setChecked(true); // reads what was remembered
    ASSERT_TRUE(waitFor(2));
    EXPECT_EQ(services->journal.size(), 2);
    action("refresh")->trigger();
    ASSERT_TRUE(QTest::qWaitFor([this] { return services->journal.size() == 3; }));
}

TEST_F(AttributePlugin, TypesAreNamedWithoutHoldingUpTheWindow)
{
    const UaNodeId type(11);
    for (OpcUa_UInt32 id : {1u, 2u})
        services->attributes[{node(id), OpcUa_Attributes_DataType}] = UaVariant(type);
    services->attributes[{type, OpcUa_Attributes_DisplayName}] =
        UaVariant(UaLocalizedText(UaString("en"), UaString("Double")));
    for (OpcUa_UInt32 id : {1u, 2u}) {
        select(id);
        ASSERT_TRUE(waitFor(id));
        EXPECT_EQ(plugin.model()->index(8, 1).data().toString(), "Double (i=11)");
    }
    EXPECT_EQ(services->journal, (QStringList{"read ns=2;i=1", "read i=11", "read ns=2;i=2"})) << "once";
    services->forgetTypeNames(); // as the server's node does for a new session
    select(1);
    ASSERT_TRUE(waitFor(1));
    EXPECT_EQ(services->journal.last(), "read i=11") << "another server may answer now";
}

TEST_F(AttributePlugin, FailedReadsAreToldInTheViewUntilOneSucceeds)
{
    auto* bar = plugin.dock()->findChild<QlumMessageBar*>("messageBar");
    ASSERT_NE(bar, nullptr);
    services->callStatus = OpcUa_BadTimeout;
    select(2);
    ASSERT_TRUE(QTest::qWaitFor([bar] { return !bar->isHidden(); }));
    EXPECT_EQ(bar->findChild<QLabel*>("what")->text(), "The attributes of ns=2;i=2 could not be read.");
    EXPECT_EQ(bar->findChild<QLabel*>("why")->text(), "Plc: BadTimeout");
    services->callStatus = 0;
    bar->findChild<QPushButton*>("help")->click();
    ASSERT_TRUE(waitFor(2));
    EXPECT_TRUE(bar->isHidden());

    services->callStatus = OpcUa_BadTimeout;
    select(1);
    ASSERT_TRUE(QTest::qWaitFor([bar] { return !bar->isHidden(); }));
    plugin.sessionRemoved(5);
    EXPECT_TRUE(bar->isHidden()) << "nothing can be tried again";
}

TEST_F(AttributePlugin, AFailedWriteIsToldAlthoughTheNodeIsReadAgain)
{
    auto* bar = plugin.dock()->findChild<QlumMessageBar*>("messageBar");
    select(1);
    ASSERT_TRUE(waitFor(1));
    emit plugin.model()->writeFailed("BadUserAccessDenied");
    EXPECT_EQ(bar->findChild<QLabel*>("why")->text(), "Plc: BadUserAccessDenied");
    const int before = services->journal.size();
    select(1);
    ASSERT_TRUE(QTest::qWaitFor([this, before] { return services->journal.size() > before; }));
    ASSERT_TRUE(QTest::qWaitFor([this] {
        return application.texts().filter("Read attributes of node 'ns=2;i=1' succeeded").size() == 2;
    }));
    QCoreApplication::processEvents();
    EXPECT_FALSE(bar->isHidden());
    select(2);
    ASSERT_TRUE(waitFor(2));
    EXPECT_TRUE(bar->isHidden()) << "it is about another node";
}

TEST_F(AttributePlugin, TheHeadingSaysWhatIsShownAndFollowsTheConnection)
{
    const auto* heading = plugin.dock()->findChild<QWidget*>("viewHeading");
    const auto text = [heading](const char* name) { return heading->findChild<QLabel*>(name)->text(); };
    EXPECT_EQ(text("server"), "");
    select(1);
    ASSERT_TRUE(waitFor(1));
    EXPECT_EQ(text("server") + " " + text("node") + " " + text("status"), "Plc ns=2;i=1 connected");
    plugin.sessionStatusChanged(5, QlumConnectionStatus::ConnectionError, {});
    plugin.sessionStatusChanged(6, QlumConnectionStatus::Connected, {});
    EXPECT_EQ(text("status"), "connection lost");
    select(2);
    ASSERT_TRUE(waitFor(2));
    EXPECT_EQ(text("status"), "connection lost") << "a late answer does not bring the connection back";
    plugin.sessionRemoved(5);
    EXPECT_EQ(text("server") + text("node") + text("status"), "");
}

TEST_F(AttributePlugin, ARemovedSessionLeavesNothing)
{
    select(1);
    ASSERT_TRUE(waitFor(1));
    plugin.sessionRemoved(6);
    EXPECT_GT(plugin.model()->rowCount(), 0);
    select(2);
    plugin.sessionRemoved(5); // a read may be under way
    services.reset();
    QCoreApplication::processEvents();
    EXPECT_EQ(plugin.model()->rowCount(), 0);
    action("refresh")->trigger();
    EXPECT_FALSE(application.texts().contains("Session not valid."));
}

TEST_F(AttributePlugin, ASessionGoesOnlyWhenItsLastReadHasEnded)
{
    const auto other = std::exchange(services, nullptr);
    const auto slow = std::make_shared<SlowServices>();
    services = slow;
    select(1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return slow->entered.load(); }));
    services = other;
    UaNodeId next = node(2);
    plugin.selectionChanged(6, &next, OpcUa_NodeClass_Variable, nullptr); // the read of server 5 is left
    slow->mayGoOn = true;
    plugin.sessionRemoved(5);
    EXPECT_TRUE(slow->left);
    EXPECT_TRUE(waitFor(2)) << "the node of the other server is read nevertheless";
    EXPECT_EQ(plugin.model()->serverId(), 6u);
}

TEST_F(AttributePlugin, AnyNodeByItsId)
{
    DialogDriver enters([](QDialog& dialog) {
        dialog.findChild<QLineEdit*>("nodeId")->setText("ns=2;i=2");
        dialog.accept();
    });
    action("customNodeId")->trigger();
    EXPECT_EQ(enters.seen(), QStringList{"Set Custom NodeId"});
    ASSERT_TRUE(waitFor(2));
    EXPECT_EQ(plugin.model()->rowCount(), 15);
    services->attributeStatus[{node(2), OpcUa_Attributes_NodeClass}] = OpcUa_BadNodeIdUnknown;
    action("customNodeId")->trigger();
    ASSERT_TRUE(QTest::qWaitFor([this] {
        return application.texts().last() ==
               "Read NodeClass of node 'ns=2;i=2' failed [ret = BadNodeIdUnknown].";
    }));
    EXPECT_EQ(plugin.model()->nodeId(), node(2)) << "nothing new is shown";
}

TEST_F(AttributePlugin, ANodeChosenByItsIdCountsAsSelectedOnceTheServerKnowsIt)
{
    DialogDriver enters([](QDialog& dialog) {
        dialog.findChild<QLineEdit*>("nodeId")->setText("ns=2;i=2");
        dialog.accept();
    });
    select(1);
    ASSERT_TRUE(waitFor(1));
    action("customNodeId")->trigger();
    ASSERT_TRUE(waitFor(2));
    services->journal.clear();
    action("refresh")->trigger();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !services->journal.isEmpty(); }));
    EXPECT_EQ(services->journal, QStringList{"read ns=2;i=2"});

    action("customNodeId")->trigger();
    select(1); // before the answer is looked at
    ASSERT_TRUE(waitFor(1));
    QCoreApplication::processEvents();
    services->journal.clear();
    action("refresh")->trigger();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !services->journal.isEmpty(); }));
    EXPECT_EQ(services->journal, QStringList{"read ns=2;i=1"});
}

TEST_F(AttributePlugin, CopiesTheWholeTextAndKeepsWhatIsOpen)
{
    addVariable(node(1), std::string(300, 'x'));
    select(1);
    ASSERT_TRUE(waitFor(1));
    auto& model = *plugin.model();
    const QModelIndex top = model.index(7, 0);
    ASSERT_EQ(top.data().toString(), "Value");
    EXPECT_TRUE(view()->isExpanded(top));
    view()->setCurrentIndex(model.index(0, 1, top));
    view()->sltCopyCell();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QString(300, 'x'));
    view()->sltCopyRow();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "Value\t" + QString(300, 'x'));
    view()->sltCopyPath();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "Value/Value");
    view()->sltCopyNodeId();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "ns=2;i=1");
    view()->sltCopyAllCsv();
    EXPECT_TRUE(
        QGuiApplication::clipboard()->text().contains("\r\nValue/Value," + QString(300, 'x') + "\r\n"));
    view()->sltCopyAllJson();
    const QJsonObject all = QJsonDocument::fromJson(QGuiApplication::clipboard()->text().toUtf8()).object();
    EXPECT_EQ(all["Value"].toObject()["Body"].toString(), QString(300, 'x'));
    EXPECT_TRUE(all.contains("WriteMask"));
    view()->collapse(top);
    view()->expand(model.index(0, 0)); // NodeId
    select(2);
    ASSERT_TRUE(waitFor(2));
    EXPECT_FALSE(view()->isExpanded(model.index(7, 0)));
    EXPECT_TRUE(view()->isExpanded(model.index(0, 0)));
}

TEST_F(AttributePlugin, GoesBackToTheNodesThatWereVisited)
{
    EXPECT_FALSE(action("back")->isEnabled());
    for (const OpcUa_UInt32 id : {1u, 2u}) {
        select(id);
        ASSERT_TRUE(waitFor(id));
    }
    action("back")->trigger();
    EXPECT_EQ(application.selections.last(), "5 ns=2;i=1");
    select(1); // as the application tells all tools
    EXPECT_FALSE(action("back")->isEnabled());
    EXPECT_TRUE(action("forward")->isEnabled());
    plugin.sessionRemoved(5);
    EXPECT_FALSE(action("forward")->isEnabled());
}

TEST_F(AttributePlugin, TwoNodesStandSideBySide)
{
    services->attributes[{node(1), OpcUa_Attributes_Description}] = UaVariant(UaLocalizedText("en", "old"));
    for (const OpcUa_UInt32 id : {1u, 2u}) {
        UaVariant numbers;
        const std::vector elements{UaVariant(1.5), UaVariant(static_cast<double>(id))};
        ASSERT_TRUE(OpcUa_IsGood(numbers.setArray(OpcUaType_Double, elements)));
        services->attributes[{node(id), OpcUa_Attributes_Value}] = numbers;
    }
    select(1);
    ASSERT_TRUE(waitFor(1));
    plugin.findChild<QAction*>("keepNode")->trigger();
    select(2);
    ASSERT_TRUE(waitFor(2));
    plugin.findChild<QAction*>("compareNodes")->trigger();
    auto* window = application.window.findChild<QlumComparisonWindow*>();
    ASSERT_NE(window, nullptr);
    const QAbstractItemModel& rows = *window->findChild<QTreeView*>("comparisonTable")->model();
    window->findChild<QCheckBox*>("differencesOnly")->setChecked(true);
    QStringList shown;
    for (int row = 0; row < rows.rowCount(); ++row)
        shown.append(rows.index(row, 0).data().toString() + ": " + rows.index(row, 1).data().toString() +
                     " | " + rows.index(row, 2).data().toString());
    EXPECT_TRUE(shown.contains("Value/Value/[1]: 1 | 2")) << shown.join('\n').toStdString();
    EXPECT_FALSE(shown.join(' ').contains("[0]"));
    EXPECT_TRUE(shown.filter("NodeClass").isEmpty()) << "the same in both";
}

// Whatever one of them lacks does not put the rows behind it out of step.
TEST(NodeComparison, RowsOfTheSameNameStandBesideEachOther)
{
    const QlumShownRows left{{"a", "1"}, {"b", "2"}, {"d", "4"}, {"e", "5"}};
    const QlumShownRows right{{"z", "0"}, {"a", "1"}, {"c", "3"}, {"e", "x"}, {"d", "4"}, {"f", "6"}};
    QStringList shown;
    for (const QlumComparedRow& row : qlumCompareRows(left, right))
        shown.append(row.path + row.left.value_or("-") + row.right.value_or("-"));
    EXPECT_EQ(shown.join(' '), "z-0 a11 c-3 b2- d44 e5x f-6");
}

TEST_F(AttributePlugin, RowsThatNameANodeHaveItsCommands)
{
    QlumToolServices tools;
    QStringList revealed;
    QObject owner;
    tools.takeReveal(&owner, [&](unsigned int server, const UaNodeId& id) {
        revealed.append(QString::number(server) + " " + toQString(id.toXmlString()));
        return true;
    });
    services->attributes[{node(1), OpcUa_Attributes_DataType}] = UaVariant(UaNodeId(17));
    services->attributes[{node(1), OpcUa_Attributes_Value}] = UaVariant(UaNodeId(8, 3));
    select(1);
    ASSERT_TRUE(waitFor(1));
    auto& model = *plugin.model();
    auto* reveal = view()->findChild<QAction*>("revealNode");
    ASSERT_TRUE(reveal);
    const auto revealAt = [&](const QModelIndex& index, QContextMenuEvent::Reason reason, QWidget* asked) {
        view()->setCurrentIndex(index);
        const QPoint place(1, 1);
        QContextMenuEvent menu(reason, place, asked->mapToGlobal(place));
        QTimer::singleShot(
            0,
            [] {
                while (QWidget* popup = QApplication::activePopupWidget())
                    popup->close();
            });
        QApplication::sendEvent(asked, &menu);
        if (reveal->isVisible())
            reveal->trigger();
        return reveal->isVisible();
    };
    const auto row = [&](const char* name) {
        return model.match(model.index(0, 0), Qt::DisplayRole, name, 1, Qt::MatchExactly).value(0);
    };
    EXPECT_TRUE(revealAt(row("NodeId"), QContextMenuEvent::Mouse, view()->viewport()));
    const QModelIndex detail = model.index(1, 1, row("NodeId"));
    EXPECT_TRUE(revealAt(detail, QContextMenuEvent::Keyboard, view()));
    EXPECT_TRUE(revealAt(row("DataType"), QContextMenuEvent::Keyboard, view()));
    EXPECT_TRUE(revealAt(model.index(0, 1, row("Value")), QContextMenuEvent::Mouse, view()->viewport()));
    EXPECT_FALSE(revealAt(row("NodeClass"), QContextMenuEvent::Mouse, view()->viewport()));
    EXPECT_EQ(revealed, (QStringList{"5 ns=2;i=1", "5 ns=2;i=1", "5 i=17", "5 ns=3;i=8"}));
    EXPECT_EQ(model.nodeIn(row("NodeId")).nodeClass, OpcUa_NodeClass_Variable);
    EXPECT_EQ(model.nodeIn(row("DataType")).nodeClass, OpcUa_NodeClass_Unspecified);
}

TEST_F(AttributePlugin, LoadedTypesDecodeWhatIsShownAndKeepItsPlace)
{
    UaStructureDefinition pair(UaString("Pair"), UaNodeId(20, 2), UaNodeId(21, 2));
    pair.addField(UaStructureField(UaString("first"), UaNodeId(6), OpcUaType_Int32));
    UaExtensionObject object;
    ASSERT_TRUE(UaGenericStructureValue(pair).encode(object).isGood());
    services->attributes[{node(1), OpcUa_Attributes_Value}] = UaVariant(object);
    select(1);
    ASSERT_TRUE(waitFor(1));
    auto& model = *plugin.model();
    const auto value = [&] { return model.index(0, 1, model.index(7, 0)); };
    EXPECT_EQ(value().data().toString(), "ExtensionObject");
    view()->expand(model.index(0, 0)); // NodeId
    view()->setCurrentIndex(value());

    services->structures[UaNodeId(21, 2)] = pair;
    services->journal.clear();
    qobject_cast<QlumDataTypeEventInterface*>(&plugin)->dataTypesLoaded(5);
    ASSERT_TRUE(QTest::qWaitFor([&] { return value().data().toString() == "Pair"; }));
    EXPECT_EQ(services->journal.filter("read"), QStringList{"read ns=2;i=1"});
    EXPECT_EQ(modelText(model, value().siblingAtColumn(0)), "first | 0\n");
    EXPECT_TRUE(view()->isExpanded(model.index(0, 0)));
    EXPECT_EQ(view()->currentIndex().siblingAtColumn(1), value());
}

TEST_F(AttributePlugin, AnElementOfALongArrayStaysSelectedOverARefresh)
{
    UaVariant many;
    ASSERT_EQ(many.setArray(OpcUaType_Int32, std::vector<UaVariant>(3000, UaVariant(OpcUa_Int32{7}))),
              OpcUa_Good);
    services->attributes[{node(1), OpcUa_Attributes_Value}] = many;
    select(1);
    ASSERT_TRUE(waitFor(1));
    auto& model = *plugin.model();
    const auto value = [&] { return model.index(0, 0, model.index(7, 0)); };
    const auto readAgain = [&] {
        services->journal.clear();
        action("refresh")->trigger();
        return QTest::qWaitFor([&] { return !services->journal.isEmpty() && model.rowCount(value()) > 0; });
    };
    view()->expand(value());
    while (model.rowCount(value()) < 2000)
        model.fetchMore(value());
    view()->setCurrentIndex(model.index(1500, 0, value()));
    for (int round = 0; round < 2; ++round) {
        ASSERT_TRUE(readAgain());
        EXPECT_EQ(view()->currentIndex(), model.index(1500, 0, value()));
        EXPECT_EQ(view()->currentIndex().data().toString(), "[1500]");
    }
}

TEST_F(AttributePlugin, LoadedTypesReadNothingThatNobodyWaitsFor)
{
    plugin.dataTypesLoaded(5); // nothing is shown
    select(1);
    ASSERT_TRUE(waitFor(1));
    plugin.dataTypesLoaded(6);
    action("onOff")->setChecked(false);
    plugin.dataTypesLoaded(5);
    action("onOff")->setChecked(true); // reads
    ASSERT_TRUE(QTest::qWaitFor([this] { return services->journal.size() == 2; }));
    plugin.dock()->show();
    view()->edit(plugin.model()->index(0, 1, plugin.model()->index(7, 0)));
    auto* editor = view()->findChild<QLineEdit*>("valueEditor");
    ASSERT_NE(editor, nullptr);
    editor->setText("half a wo");
    plugin.dataTypesLoaded(5); // what is being typed stays
    select(2);
    ASSERT_TRUE(waitFor(2));
    EXPECT_EQ(services->journal, (QStringList{"read ns=2;i=1", "read ns=2;i=1", "read ns=2;i=2"}));
}

TEST_F(AttributePlugin, EditsInPlace)
{
    select(1);
    ASSERT_TRUE(waitFor(1));
    plugin.dock()->show();
    const QModelIndex value = plugin.model()->index(0, 1, plugin.model()->index(7, 0));
    view()->edit(value);
    auto* editor = view()->findChild<QLineEdit*>("valueEditor");
    ASSERT_NE(editor, nullptr);
    EXPECT_EQ(editor->text(), "value 1");
    editor->setText("changed");
    QTest::keyClick(editor, Qt::Key_Return);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !services->written.empty(); }));
    EXPECT_EQ(services->written.front(), UaVariant("changed"));
}

TEST_F(AttributePlugin, OnAndOffIsKeptInTheProject)
{
    const QTemporaryDir folder;
    QSettings settings(folder.filePath("p.uap"), QSettings::IniFormat);
    action("onOff")->setChecked(false);
    plugin.saveSettings(settings);
    EXPECT_EQ(settings.value("Act_OnOff_Checked"), false);
    action("onOff")->setChecked(true);
    plugin.loadSettings(settings, {});
    EXPECT_FALSE(action("onOff")->isChecked());
}
} // namespace
