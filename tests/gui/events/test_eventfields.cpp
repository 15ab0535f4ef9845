// Fields of events: how they are found, chosen, asked for and shown.
#include <app/api/qlumjobpool.h>
#include <app/api/qlumlog.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <plugins/events/qlumbrowsepath.h>
#include <plugins/events/qlumdetailsmodel.h>
#include <plugins/events/qlumevent.h>
#include <plugins/events/qlumeventfilter.h>
#include <plugins/events/qlumeventtypejob.h>
#include <plugins/events/qlumeventtypemodel.h>
#include <plugins/events/qlumeventtypes.h>
#include <plugins/events/qlumeventwhere.h>
#include <plugins/events/qlumwherepage.h>
#include <tests/gui/events/eventtest.h>
#include <uabase/values/uaarray.h>
#include <uabase/values/uacontentfilter.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadiagnosticinfo.h>
#include <uabase/values/uaeventfilter.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QAbstractItemModelTester>
#include <QComboBox>
#include <QLineEdit>
#include <QModelIndex>
#include <QObject>
#include <QPushButton>
#include <QString>
#include <QStringList>
#include <QTest>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {
const UaNodeId hasSubtype(45);
const UaNodeId hasProperty(46);

// A server with the standard's three roots and types of its own.
class TypeServer : public TableServices
{
public:
    TypeServer()
    {
        type(2041, "BaseEventType", 0);
        field(1, "EventId", 2041);
        field(2, "Message", 2041);
        type(2782, "ConditionType", 2041);
        type(2052, "AuditEventType", 2041);
        type(2915, "AlarmConditionType", 2782);
        table.variable(UaNodeId(3), "ActiveState", UaVariant(), UaNodeId(2915));
        field(4, "Id", 3);
        table.object(UaNodeId(5), "ShelvingState", UaNodeId());
        table.reference(UaNodeId(2915), UaNodeId(47), UaNodeId(5));
        field(6, "UnshelveTime", 5);
    }
    void type(OpcUa_UInt32 id, const char* name, OpcUa_UInt32 parent, OpcUa_UInt16 index = 0)
    {
        const UaNodeId nodeId(id, index);
        table.object(nodeId, name, UaNodeId());
        table.setAttribute(nodeId, OpcUa_Attributes_NodeClass,
                           UaDataValue(UaVariant(static_cast<OpcUa_Int32>(OpcUa_NodeClass_ObjectType))));
        if (parent != 0)
            table.reference(UaNodeId(parent), hasSubtype, nodeId);
    }
    void field(OpcUa_UInt32 id, const char* name, OpcUa_UInt32 parent)
    {
        table.variable(UaNodeId(id), name, UaVariant(), UaNodeId());
        table.reference(UaNodeId(parent), hasProperty, UaNodeId(id));
    }
};

class EventFields : public testing::Test
{
protected:
    bool read()
    {
        bool isOver = false;
        const QObject listener; // a later answer finds nobody
        QObject::connect(
            &types, &QlumEventTypes::treeRead, &listener, [&] { isOver = true; });
        QObject::connect(&types, &QlumEventTypes::treeFailed, &listener, [&] { isOver = true; });
        types.request(1);
        return QTest::qWaitFor([&] { return isOver; });
    }

    EventApplication application;
    std::shared_ptr<TypeServer> server = std::make_shared<TypeServer>();
    QlumEventTypes types{[this](unsigned int) { return server; }};
    QlumEventTypeModel model;
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST(BrowsePaths, AreWrittenAndReadBackWhateverNamesTheyHave)
{
    const BrowsePathList path(
        {UaQualifiedName(UaString("AckedState"), 0), UaQualifiedName(UaString("Id"), 3)});
    EXPECT_EQ(path.toString(), "AckedState/3:Id/");
    EXPECT_EQ(path.fieldName(), "AckedState/3:Id");
    EXPECT_EQ(BrowsePathList().fieldName(), "ConditionId");
    const BrowsePathList odd(
        {UaQualifiedName(UaString("a/b:c&"), 65535), UaQualifiedName(UaString("2:x"), 0)});
    for (const BrowsePathList& one : {path, odd, BrowsePathList()}) {
        const QlumSelectClause clause{UaNodeId(UaString("a b"), 4), one, true};
        QlumSelectClause read;
        EXPECT_TRUE(qlumReadClause(qlumStoredClause(clause), read));
        EXPECT_EQ(read, clause) << one.toString();
    }
    QlumSelectClause none;
    for (const char* line : {"", "value\tEventId\ti=2041", "value\tEventId/\tnonsense", "value\t/\ti=1", "x"})
        EXPECT_FALSE(qlumReadClause(line, none)) << line;
}

TEST_F(EventFields, AreSelectedOfAllEventsAndTheConditionByItsNodeId)
{
    const QlumSelectClauses clauses{{UaNodeId(2915), BrowsePathList::fromString("ActiveState/2:Id/"), false},
                                    {UaNodeId(2782), {}, false},
                                    {UaNodeId(2041), BrowsePathList::fromString("ActiveState/2:Id/"), false},
                                    {UaNodeId(2915), BrowsePathList::fromString("ShelvingState/"), true}};
    UaEventFilter filter;
    qlumSelectFields(filter, clauses);
    OpcUa_ExtensionObject object{};
    OpcUa_ExtensionObject_Initialize(&object);
    ASSERT_TRUE(OpcUa_IsGood(filter.copyTo(&object)));
    qlumLogFilter(QlumLog("Event Plugin", 1), object);
    OpcUa_ExtensionObject_Clear(&object);
    EXPECT_TRUE(filter.where().isEmpty());
    EXPECT_EQ(application.said().join('\n').toStdString(), "SelectClause:\n"
                                                           "    SelectClause [0]:\n"
                                                           "        TypeDefinitionId: ns=0;i=2041\n"
                                                           "        BrowsePath: ActiveState/2:Id/\n"
                                                           "        AttributeId: 13\n"
                                                           "    SelectClause [1]:\n"
                                                           "        TypeDefinitionId: ns=0;i=2782\n"
                                                           "        BrowsePath: \n"
                                                           "        AttributeId: 1\n"
                                                           "    SelectClause [2]:\n"
                                                           "        TypeDefinitionId: ns=0;i=2041\n"
                                                           "        BrowsePath: ShelvingState/\n"
                                                           "        AttributeId: 1");
    EXPECT_EQ(QlumFieldNames::of(clauses)->names().join('|'), "ActiveState/2:Id|ConditionId|ShelvingState");
}

TEST_F(EventFields, StandInATreeWithThreeRootsWhoseTicksAgree)
{
    server->type(1000, "LineEventType", 2041, 2);
    server->field(1001, "Message", 2041); // the same path twice
    ASSERT_TRUE(read());
    model.setClauses({{UaNodeId(2041), BrowsePathList::fromString("Message/"), false},
                      {UaNodeId(2830), BrowsePathList::fromString("Prompt/"), false}});
    model.setTree(types.tree(1));
    EXPECT_EQ(modelText(model), "SimpleEvents\n"
                                "  EventId | EventId/\n"
                                "  Message | Message/\n"
                                "  2:LineEventType\n"
                                "  Message | Message/\n"
                                "ConditionType\n"
                                "  ConditionId\n"
                                "  AlarmConditionType\n"
                                "    ActiveState | ActiveState/\n"
                                "      Id | ActiveState/Id/\n"
                                "    ShelvingState | ShelvingState/\n"
                                "      UnshelveTime | ShelvingState/UnshelveTime/\n"
                                "AuditEventType\n");
    const QModelIndex simple = model.index(0, 0);
    EXPECT_EQ(simple.data(Qt::CheckStateRole).toInt(), Qt::PartiallyChecked);
    const QModelIndex alarm = model.index(1, 0, model.index(1, 0));
    const QModelIndex active = model.index(0, 0, alarm);
    EXPECT_TRUE(model.setData(alarm, Qt::Checked, Qt::CheckStateRole));
    EXPECT_EQ(alarm.data(Qt::CheckStateRole).toInt(), Qt::Checked);
    EXPECT_TRUE(model.setData(model.index(0, 0, active), Qt::Unchecked, Qt::CheckStateRole));
    EXPECT_EQ(active.data(Qt::CheckStateRole).toInt(), Qt::PartiallyChecked);
    EXPECT_TRUE(model.setData(model.index(3, 0, simple), Qt::Unchecked, Qt::CheckStateRole));
    EXPECT_EQ(model.index(1, 0, simple).data(Qt::CheckStateRole).toInt(),
              Qt::Unchecked); // the other one, too
    QStringList names;
    for (const QlumSelectClause& clause : model.clauses())
        names.append(clause.path.toString() + (clause.isObject ? "!" : ""));
    EXPECT_EQ(names.join(' '), "Prompt/ ActiveState/ ShelvingState/! ShelvingState/UnshelveTime/");
}

TEST_F(EventFields, OfManyTypesCostFewRoundTripsAndAreReadOnceForASession)
{
    constexpr OpcUa_UInt32 count = 500;
    for (OpcUa_UInt32 i = 0; i < count; ++i)
        server->type(10000 + i, "Type", i < 20 ? 2041 : 10000 + i % 20);
    ASSERT_TRUE(read());
    const int calls = server->calls(NodeTable::Browse);
    EXPECT_LT(calls, static_cast<int>(count) / 10);
    ASSERT_TRUE(read());
    EXPECT_EQ(server->calls(NodeTable::Browse), calls);
    types.nodeChanged(1, UaNodeId(85)); // no type
    EXPECT_TRUE(types.tree(1));
    types.nodeChanged(1, UaNodeId(10007));
    EXPECT_FALSE(types.tree(1));
    server->failCalls(NodeTable::Browse, OpcUa_BadTimeout);
    ASSERT_TRUE(read());
    EXPECT_FALSE(types.tree(1));
}

TEST_F(EventFields, OfTypesThatCouldNotBeReadAreSaidToBeMissingAndReadAgain)
{
    server->type(1000, "LineEventType", 2041, 2);
    server->table.fail(NodeTable::Browse, UaNodeId(1000, 2), OpcUa_BadUserAccessDenied);
    ASSERT_TRUE(read());
    ASSERT_TRUE(types.tree(1));
    EXPECT_EQ(types.gap(1), "this user may not do that");
    EXPECT_TRUE(
        application.said().contains("Browse of event type ns=2;i=1000 failed [ret = BadUserAccessDenied]."));
    server->table.fail(NodeTable::Browse, UaNodeId(1000, 2), OpcUa_Good);
    ASSERT_TRUE(read());
    EXPECT_EQ(types.gap(1), "");
    const int calls = server->calls(NodeTable::Browse);
    ASSERT_TRUE(read());
    EXPECT_EQ(server->calls(NodeTable::Browse), calls) << "now it is kept";
    // a server without conditions lacks nothing
    types.forget(1);
    server->table.fail(NodeTable::Browse, UaNodeId(2782), OpcUa_BadNodeIdUnknown);
    ASSERT_TRUE(read());
    EXPECT_EQ(types.gap(1), "");
}

TEST_F(EventFields, ReleaseWhatTheSettingsDoNotAllowToFollow)
{
    application.settings["General.MaxReferencesToReturn"] = 1u;
    application.settings["General.MaxBrowseNextCalls"] = 1;
    ASSERT_TRUE(read());
    EXPECT_FALSE(application
                     .said("Server returned more ContinuationPoints than accepted by setting "
                           "'General.MaxBrowseNextCalls'. Releasing current ContinuationPoint.")
                     .isEmpty());
    EXPECT_EQ(server->table.openContinuationPoints(), 0);
    EXPECT_EQ(types.gap(1), "the server has more than the settings let this program read");
}

// ---- conditions

// "0: Or 1 2|1: And ..." with the elements that operands name.
QString clauseText(const UaContentFilter& filter)
{
    QStringList lines;
    for (const OpcUa_ContentFilterElement& element : filter.elements()) {
        QString line = QString::number(element.FilterOperator);
        for (OpcUa_Int32 i = 0; i < element.NoOfFilterOperands; ++i) {
            const UaExtensionObject operand(element.FilterOperands[i]);
            if (const void* named = operand.decoded(OpcUa_ElementOperand_EncodeableType))
                line += QStringLiteral(" #%1").arg(static_cast<const OpcUa_ElementOperand*>(named)->Index);
            else if (const void* literal = operand.decoded(OpcUa_LiteralOperand_EncodeableType))
                line +=
                    ' ' +
                    toQString(UaVariant(static_cast<const OpcUa_LiteralOperand*>(literal)->Value).toString());
            else
                line += " field";
        }
        lines.append(line);
    }
    return lines.join('|');
}

TEST_F(EventFields, AreAskedForByConditionsThatServerAndProgramReadAlike)
{
    QlumEventCondition severe, source, type, field;
    severe.value = UaVariant(OpcUa_UInt16{500});
    source.kind = QlumEventCondition::Source;
    source.value = UaVariant("Boiler");
    type.kind = QlumEventCondition::OfType;
    type.type = UaNodeId(2782);
    type.isOr = true;
    field.kind = QlumEventCondition::Field;
    field.field = BrowsePathList::fromString("Message/");
    field.filterOperator = OpcUa_FilterOperator_Like;
    field.value = UaVariant("%hot_");
    field.isNegated = true;
    // severe and from the boiler, or a condition that does not say hot
    const QlumEventConditions all{severe, source, type, field};
    std::vector<int> rows;
    EXPECT_EQ(clauseText(qlumWhereClause(all, &rows)),
              "11 #1 #2|10 #3 #4|10 #5 #6|4 field 500|0 field Boiler|"
              "14 i=2782|7 #7|6 field %hot_");
    EXPECT_EQ(rows, (std::vector<int>{-1, -1, -1, 0, 1, 2, -1, 3}));
    EXPECT_TRUE(qlumWhereClause({}).isEmpty());
    ASSERT_TRUE(read());
    const auto meets = [&](const QlumEvent& event) {
        return qlumMeets(event, all, [this](const UaNodeId& below, const UaNodeId& base) {
            return types.derives(1, below, base);
        });
    };
    const EventValues boiler{{"EventType", UaVariant(UaNodeId(2041))},
                             {"SourceName", UaVariant(UaString("Boiler"))},
                             {"Severity", UaVariant(OpcUa_UInt16(500))}};
    EventValues mild = boiler;
    mild["Severity"] = UaVariant(OpcUa_UInt16(499));
    EXPECT_TRUE(meets(makeEvent(boiler)));
    EXPECT_FALSE(meets(makeEvent(mild)));
    EXPECT_TRUE(meets(makeAlarm(1, {{"Message", textVariant("too cold")}})));
    EXPECT_FALSE(meets(makeAlarm(1, {{"Message", textVariant("it is hot!")}})));
    EXPECT_TRUE(meets(makeSimple(refreshEnd))); // or a refresh would never end
    EXPECT_TRUE(meets(makeSimple(OpcUaId_EventQueueOverflowEventType)));
    EXPECT_TRUE(meets(makeAlarm(1, {{"Message", textVariant("it is hot!")}, {"Retain", UaVariant(false)}})))
        << "or it would stay in the list";
    EXPECT_EQ(qlumReadConditions(qlumStoredConditions(all)), all);
    // severe and (from the boiler, or a condition that does not say hot)
    QlumEventConditions bracketed = all;
    bracketed[1].opens = 1;
    bracketed[3].closes = 2; // one too many
    EXPECT_EQ(clauseText(qlumWhereClause(bracketed)),
              "10 #1 #2|4 field 500|11 #3 #4|0 field Boiler|10 #5 #6|14 i=2782|7 #7|6 field %hot_");
    EXPECT_EQ(qlumConditionText(bracketed[3], nullptr), "not Message like %hot_))");
    EXPECT_FALSE(qlumMeets(makeAlarm(1, {{"Severity", UaVariant(OpcUa_UInt16(1))}}), bracketed,
                           [](const UaNodeId&, const UaNodeId&) { return true; }));
    EXPECT_EQ(qlumReadConditions(qlumStoredConditions(bracketed)), bracketed);
    // of a project whose values had no types
    const QlumEventConditions before = qlumReadConditions(
        {"0\t0\t1\t0\ti=0\t\t500", "0\t0\t2\t0\ti=0\t\tBoiler", "0\t0\t3\t0\ti=0\tMessage/\t2.5"});
    ASSERT_EQ(before.size(), 3u);
    EXPECT_EQ(before[0].value, severe.value);
    EXPECT_EQ(before[1].value, source.value);
    EXPECT_EQ(before[2].value, UaVariant(2.5));
    EXPECT_TRUE(qlumReadConditions({"", "1\t2", "0\t0\t9\t0\ti=1\t\tx", "0\t0\t1\t99\ti=1\t\tx"}).empty());
}

TEST(WherePage, GivesEachFieldAnEditorOfItsType)
{
    QlumWherePage page;
    QlumEventConditions edited;
    QObject::connect(&page, &QlumWherePage::conditionsEdited,
                     [&](const QlumEventConditions& conditions) { edited = conditions; });
    page.setOffer(1, nullptr, {"Retain", "Time", "Message"});
    const auto box = [&](const char* name) { return page.findChild<QComboBox*>(name); };
    auto* const add = page.findChild<QPushButton*>("addCondition");
    page.findChild<QLineEdit*>("whereValue")->setText("70000"); // of a severity
    EXPECT_FALSE(add->isEnabled());
    page.findChild<QLineEdit*>("whereValue")->setText("700");
    add->click();
    ASSERT_EQ(edited.size(), 1u);
    EXPECT_EQ(edited[0].value, UaVariant(OpcUa_UInt16{700}));
    box("whereKind")->setCurrentIndex(QlumEventCondition::Field);
    box("whereField")->setCurrentText("Retain");
    EXPECT_FALSE(add->isEnabled()) << "neither true nor false yet";
    box("whereValue")->setCurrentIndex(1);
    page.setOffer(1, nullptr, {"Time", "Retain", "Message"}); // the types have been read meanwhile
    add->click();
    ASSERT_EQ(edited.size(), 2u);
    EXPECT_EQ(edited[1].value, UaVariant(true));
    box("whereField")->setCurrentText("Time");
    add->click();
    ASSERT_EQ(edited.size(), 3u);
    EXPECT_EQ(edited[2].value.type(), OpcUaType_DateTime);
    EXPECT_EQ(qlumReadConditions(qlumStoredConditions(edited)), edited);
    box("whereOperator")->setCurrentText("like");
    EXPECT_NE(page.findChild<QLineEdit*>("whereValue"), nullptr) << "a pattern is a text";
}

// ---- details

TEST(EventDetails, AreShownByTheTypeOfTheValueAndNotBeforeTheyAreOpened)
{
    EventApplication application;
    UaDataValue data(UaVariant(OpcUa_Int32(5)), UaStatusCode(OpcUa_BadTimeout));
    UaVariant dataValue;
    dataValue.setDataValue(data);
    UaVariant matrix;
    matrix.setInt32Array(UaArray<OpcUa_Int32>(4u));
    const OpcUa_Int32 dimensions[] = {2, 2};
    ASSERT_TRUE(OpcUa_IsGood(matrix.setDimensions(dimensions)));
    UaVariant large;
    large.setInt32Array(UaArray<OpcUa_Int32>(1000000u));
    const OpcUa_Range range{1.0, 2.5};
    UaExtensionObject structure;
    ASSERT_TRUE(OpcUa_IsGood(structure.setDecoded(OpcUa_Range_EncodeableType, &range)));
    const std::vector<std::pair<QString, UaVariant>> fields{
        {"Node", UaVariant(UaNodeId(UaString("<i>"), 2))},
        {"Expanded", UaVariant(UaExpandedNodeId(UaNodeId(7), UaString("urn:x"), 3))},
        {"Data", dataValue},
        {"Structure", UaVariant(structure)},
        {"Name", UaVariant(UaQualifiedName(UaString("n"), 4))},
        {"Text", textVariant("hot")},
        {"Bytes", bytesVariant("\x01\xff")},
        {"Flag", UaVariant(true)},
        {"Matrix", matrix},
        {"Large", large},
        {"Empty", UaVariant(UaString())},
        {"Nothing", UaVariant()}};
    QStringList names;
    UaVariantArray values(static_cast<OpcUa_UInt32>(fields.size()));
    for (OpcUa_UInt32 i = 0; i < values.length(); ++i) {
        names.append(fields[i].first);
        ASSERT_TRUE(OpcUa_IsGood(fields[i].second.copyTo(&values[i])));
    }
    const QlumEventFields event(std::make_shared<const QlumFieldNames>(names), values.rawData(),
                                static_cast<OpcUa_Int32>(values.length()));
    QlumDetailsModel model;
    model.setEvent(event, nullptr);
    EXPECT_EQ(model.rowCount(), 11); // without the one that is not there
    for (int row = 0; row < 9; ++row)
        model.fetchMore(model.index(row, 0));
    model.fetchMore(model.index(9, 0));
    EXPECT_EQ(model.rowCount(model.index(9, 0)), 100);
    model.fetchMore(model.index(0, 0, model.index(1, 0)));
    const std::string text = modelText(model);
    EXPECT_EQ(text.substr(0, text.find("Large")), "Node | ns=2;s=<i>\n"
                                                  "  NamespaceIndex | 2\n"
                                                  "  IdentifierType | String\n"
                                                  "  Identifier | <i>\n"
                                                  "Expanded | svr=3;nsu=urn:x;i=7\n"
                                                  "  NodeId | i=7\n"
                                                  "    NamespaceIndex | 0\n"
                                                  "    IdentifierType | Numeric\n"
                                                  "    Identifier | 7\n"
                                                  "  NamespaceUri | urn:x\n"
                                                  "  ServerIndex | 3\n"
                                                  "Data | 5; BadTimeout\n"
                                                  "  Value | 5\n"
                                                  "  StatusCode | BadTimeout\n"
                                                  "  SourceTimestamp | 1601-01-01T00:00:00.000Z\n"
                                                  "  SourcePicoseconds | 0\n"
                                                  "  ServerTimestamp | 1601-01-01T00:00:00.000Z\n"
                                                  "  ServerPicoseconds | 0\n"
                                                  "Structure | Range\n"
                                                  "  Low | 1\n"
                                                  "  High | 2.5\n"
                                                  "Name | 4, \"n\"\n"
                                                  "Text | \"en\", \"hot\"\n"
                                                  "Bytes | len=2, 0x01ff\n"
                                                  "Flag | True\n"
                                                  "Matrix | Matrix of Int32\n"
                                                  "  [0][0] | 0\n"
                                                  "  [0][1] | 0\n"
                                                  "  [1][0] | 0\n"
                                                  "  [1][1] | 0\n");
    EXPECT_EQ(model.index(10, 1).data(), "Null");
    application.settings["EventsPlugin.ShowNullEventFields"] = true;
    model.setEvent(event, nullptr);
    EXPECT_EQ(model.rowCount(), 12);
}
} // namespace
