// The commands of the dock and of its rows, by the buttons and entries that the user has.
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/attributes/qlumattributemodel.h>
#include <plugins/attributes/qlumattributeplugin.h>
#include <plugins/attributes/qlumattributeview.h>
#include <tests/gui/attributes/attributepluginfixture.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/qlummessagebar.h>

#include <QAction>
#include <QClipboard>
#include <QCoreApplication>
#include <QDockWidget>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QModelIndex>
#include <QString>
#include <QStringList>
#include <QTest>
#include <QToolBar>
#include <QToolButton>

#include <vector>

namespace {
class AttributeCommands : public AttributePlugin
{
protected:
    AttributeCommands()
    {
        services->attributes[{node(1), OpcUa_Attributes_BrowseName}] =
            UaVariant(UaQualifiedName(UaString("Pump, main"), 2));
        services->attributes[{node(1), OpcUa_Attributes_Description}] =
            UaVariant(UaLocalizedText("en", "says \"stop\""));
    }
    void showFirst()
    {
        plugin.dock()->show();
        select(1);
        ASSERT_TRUE(waitFor(1));
    }
    void press(const char* name)
    {
        const auto* bar = plugin.dock()->findChild<QToolBar*>("attributeToolBar");
        auto* button = qobject_cast<QToolButton*>(bar->widgetForAction(action(name)));
        ASSERT_TRUE(button && button->isEnabled()) << name;
        button->click();
    }
    // An entry of the rows' menu; what it put into the clipboard.
    QString copied(const char* name)
    {
        QGuiApplication::clipboard()->setText("nothing");
        for (QAction* entry : view()->actions())
            if (entry->objectName() == QLatin1String(name))
                entry->trigger();
        return QGuiApplication::clipboard()->text();
    }
    void goTo(const char* name)
    {
        const auto found =
            plugin.model()->match(plugin.model()->index(0, 0), Qt::DisplayRole, name, 1, Qt::MatchExactly);
        ASSERT_EQ(found.size(), 1) << name;
        view()->setCurrentIndex(found.first());
    }
    QModelIndex value() const { return plugin.model()->index(0, 1, plugin.model()->index(7, 0)); }
    QString told() const
    {
        const auto* bar = plugin.dock()->findChild<QlumMessageBar*>("messageBar");
        return bar->isHidden() ? QString() : bar->findChild<QLabel*>("why")->text();
    }
};

TEST_F(AttributeCommands, AllRowsAreCopiedAsTextAndAsCommaSeparatedValues)
{
    showFirst();
    const QStringList lines = copied("copyAllText").split('\n');
    EXPECT_EQ(lines.value(0), "NodeId\tns=2;i=1");
    EXPECT_TRUE(lines.contains("  IdentifierType\tNumeric")) << "below its row";
    EXPECT_TRUE(lines.contains("BrowseName\t2, \"Pump, main\""));
    EXPECT_TRUE(lines.contains("  Value\tvalue 1"));
    const QStringList records = copied("copyAllCsv").split("\r\n");
    EXPECT_EQ(records.value(0), "Attribute,Value");
    EXPECT_EQ(records.value(1), "NodeId,ns=2;i=1");
    EXPECT_TRUE(records.contains("NodeId/IdentifierType,Numeric"));
    EXPECT_TRUE(records.contains(R"(BrowseName,"2, ""Pump, main""")")) << "one cell";
    EXPECT_TRUE(records.contains(R"(Description,"""en"", ""says ""stop""""")"))
        << copied("copyAllCsv").toStdString();
    EXPECT_TRUE(records.contains("Value/Value,value 1"));
}

// It can be read back: types and fields are not lost.
TEST_F(AttributeCommands, TheValueOfARowIsCopiedAsJson)
{
    UaStructureDefinition pair(UaString("Pair"), UaNodeId(20, 2), UaNodeId(21, 2));
    pair.addField(UaStructureField(UaString("first"), UaNodeId(6), OpcUaType_Int32));
    pair.addField(UaStructureField(UaString("second"), UaNodeId(12), OpcUaType_String));
    services->structures[UaNodeId(21, 2)] = pair;
    UaGenericStructureValue fields(pair);
    ASSERT_TRUE(fields.setField(0, UaVariant(OpcUa_Int32{-7})).isGood());
    ASSERT_TRUE(fields.setField(1, UaVariant("b")).isGood());
    UaExtensionObject object;
    ASSERT_TRUE(fields.encode(object).isGood());
    services->attributes[{node(1), OpcUa_Attributes_Value}] = UaVariant(object);
    showFirst();
    const auto json = [this] { return QJsonDocument::fromJson(copied("copyJson").toUtf8()).object(); };
    view()->setCurrentIndex(value());
    const QString whole = QString::fromUtf8(QJsonDocument(json()).toJson(QJsonDocument::Compact));
    EXPECT_TRUE(whole.contains(R"("first":-7)") && whole.contains(R"("second":"b")")) << whole.toStdString();
    view()->setCurrentIndex(plugin.model()->index(0, 1, value().siblingAtColumn(0)));
    EXPECT_EQ(json()["Body"].toInt(), -7);
    EXPECT_EQ(json()["Type"].toInt(), OpcUaType_Int32);
    goTo("Description");
    EXPECT_EQ(json()["Body"].toObject()["Text"].toString(), "says \"stop\"");
}

TEST_F(AttributeCommands, TheNodeIsCopiedInTheFormsThatOutliveItsNamespaceIndex)
{
    services->browses[node(1)] = {{{{"Objects", UaNodeId(OpcUaId_ObjectsFolder)}}}};
    services->browses[UaNodeId(OpcUaId_ObjectsFolder)] = {{{{"Root", UaNodeId(OpcUaId_RootFolder)}}}};
    services->attributes[{UaNodeId(OpcUaId_ObjectsFolder), OpcUa_Attributes_BrowseName}] =
        UaVariant(UaQualifiedName(UaString("Objects"), 0));
    showFirst();
    EXPECT_EQ(copied("copyUriNodeId"), "nsu=urn:plant;i=1");
    const auto isCopied = [](const char* text) {
        return QTest::qWaitFor([text] { return QGuiApplication::clipboard()->text() == text; });
    };
    copied("copyBrowsePath");
    EXPECT_TRUE(isCopied("/Objects/2:Pump, main")) << QGuiApplication::clipboard()->text().toStdString();
    services->browses[node(1)].clear(); // nothing leads to it
    copied("copyBrowsePath");
    EXPECT_TRUE(isCopied("ns=2;i=1")) << QGuiApplication::clipboard()->text().toStdString();
    services->attributeStatus[{node(1), OpcUa_Attributes_BrowseName}] = OpcUa_BadUserAccessDenied;
    EXPECT_EQ(copied("copyBrowsePath"), "nothing");
    EXPECT_TRUE(QTest::qWaitFor([this] { return told().contains("BadUserAccessDenied"); }))
        << told().toStdString();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "nothing");
}

TEST_F(AttributeCommands, AllRowsAreOpenedAndClosed)
{
    showFirst();
    const auto openRows = [this] {
        QStringList open;
        for (int row = 0; row < plugin.model()->rowCount(); ++row)
            if (const QModelIndex index = plugin.model()->index(row, 0);
                plugin.model()->hasChildren(index) && view()->isExpanded(index))
                open.append(index.data().toString());
        return open.join(' ');
    };
    EXPECT_EQ(openRows(), "Value");
    press("expandAll");
    EXPECT_EQ(openRows(), "NodeId Value");
    press("collapseAll");
    EXPECT_EQ(openRows(), "");
}

TEST_F(AttributeCommands, BackAndForwardFollowTheVisitedNodes)
{
    addVariable(node(3), "value 3");
    showFirst();
    for (const OpcUa_UInt32 id : {2u, 3u}) {
        select(id);
        ASSERT_TRUE(waitFor(id));
    }
    const auto pressed = [this](const char* name) {
        application.selections.clear();
        press(name);
        const QString chosen = application.selections.join(' ');
        if (chosen.startsWith("5 ns=2;i="))
            select(chosen.mid(9).toUInt()); // as the application tells all tools
        return chosen;
    };
    EXPECT_EQ(pressed("back"), "5 ns=2;i=2");
    ASSERT_TRUE(waitFor(2));
    EXPECT_EQ(pressed("back"), "5 ns=2;i=1");
    ASSERT_TRUE(waitFor(1));
    EXPECT_FALSE(action("back")->isEnabled());
    EXPECT_EQ(pressed("forward"), "5 ns=2;i=2");
    ASSERT_TRUE(waitFor(2));
    select(1);
    EXPECT_FALSE(action("forward")->isEnabled()) << "the way is another one now";
    EXPECT_EQ(pressed("back"), "5 ns=2;i=2");
}

TEST_F(AttributeCommands, OffReadsNothingButWhatWasWritten)
{
    showFirst();
    press("onOff");
    EXPECT_FALSE(action("onOff")->isChecked());
    services->journal.clear();
    services->attributes[{node(1), OpcUa_Attributes_Value}] = UaVariant("as the server likes it");
    ASSERT_TRUE(plugin.model()->setData(value(), "as entered", Qt::EditRole));
    ASSERT_TRUE(QTest::qWaitFor([this] { return value().data() == "as the server likes it"; }));
    EXPECT_EQ(
        told(),
        "as entered was written, and the server has taken it, but as the server likes it was read back.");
    EXPECT_EQ(services->journal, (QStringList{"write ns=2;i=1", "read ns=2;i=1"}));
    services->writeResult = OpcUa_BadNotWritable;
    EXPECT_FALSE(plugin.model()->setData(value(), "again", Qt::EditRole));
    select(2);
    QCoreApplication::processEvents();
    EXPECT_EQ(services->journal.filter("read").size(), 1) << "it is off";
    press("onOff");
    ASSERT_TRUE(waitFor(2));
}

// The other way round: on, one write leads to one read.
TEST_F(AttributeCommands, OnReadsWhatWasWrittenOnce)
{
    showFirst();
    services->journal.clear();
    ASSERT_TRUE(plugin.model()->setData(value(), "new", Qt::EditRole));
    EXPECT_EQ(application.selections, QStringList{"5 ns=2;i=1"});
    select(1); // as the application tells all tools
    ASSERT_TRUE(QTest::qWaitFor([this] { return services->journal.size() == 2; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(services->journal, (QStringList{"write ns=2;i=1", "read ns=2;i=1"}));
}
} // namespace
