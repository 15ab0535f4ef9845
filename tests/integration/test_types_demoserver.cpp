// Data type definitions from a server that is not ours: attributes, properties and a type dictionary.
#include <opcua/opcua.h>
#include <tests/support/demoserverinfo.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/system/uaplatformlayer.h>
#include <uabase/system/uatrace.h>
#include <uabase/system/uatracehook.h>
#include <uabase/text/uavaluetext.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/types/datatypetree.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using namespace UaClientSdk;

constexpr OpcUa_UInt16 structureNs = 3;

class QuietCallback : public UaSessionCallback
{
public:
    void connectionStatusChanged(OpcUa_UInt32, UaClient::ServerStatus) override {}
};

// Counts the service calls that the trace tells of, and keeps its warnings.
class CallCounter : public UaTraceHook
{
public:
    void traceOutput(UaTrace::TraceLevel level, const char* text, int) override
    {
        const std::lock_guard lock(m_mutex);
        const std::string line(text);
        if (line.find("CALL OpcUa_ClientApi_") != std::string::npos)
            m_calls.push_back(line);
        if (level == UaTrace::Warning)
            m_warnings += line + '\n';
    }
    std::size_t calls()
    {
        const std::lock_guard lock(m_mutex);
        return m_calls.size();
    }
    std::string warnings()
    {
        const std::lock_guard lock(m_mutex);
        return m_warnings;
    }

private:
    std::mutex m_mutex;
    std::vector<std::string> m_calls;
    std::string m_warnings;
};

class TypesTest : public testing::Test
{
protected:
    static void SetUpTestSuite() { ASSERT_EQ(UaPlatformLayer::init(), 0); }
    static void TearDownTestSuite() { UaPlatformLayer::cleanup(); }

    void SetUp() override
    {
        const UaString url(demoserver::endpointUrl().c_str());
        ASSERT_FALSE(url.isEmpty()) << "the demo server has not been started";
        SessionConnectInfo info;
        info.sessionName = UaString("types test");
        info.maxOperationsPerServiceCall = 1000;
        const UaStatus status = session.connect(url, info, SessionSecurityInfo(), &callback);
        ASSERT_TRUE(status.isGood()) << status.toString().toUtf8();
    }

    void TearDown() override
    {
        if (session.isConnected())
            EXPECT_TRUE(session.disconnect(settings, true).isGood());
    }

    UaVariant readValue(const char* id)
    {
        UaReadValueIds nodes(1u);
        EXPECT_TRUE(OpcUa_IsGood(UaNodeId(UaString(id), structureNs).copyTo(&nodes[0].NodeId)));
        nodes[0].AttributeId = OpcUa_Attributes_Value;
        UaDataValues values;
        UaDiagnosticInfos diagnostics;
        const UaStatus status =
            session.read(settings, 0.0, OpcUa_TimestampsToReturn_Neither, nodes, values, diagnostics);
        EXPECT_TRUE(status.isGood()) << status.toString().toUtf8();
        return values.isEmpty() ? UaVariant() : UaVariant(values[0].Value);
    }

    ServiceSettings settings;
    QuietCallback callback;
    UaSession session;
};

TEST_F(TypesTest, AllTypesComeInTwentyCalls)
{
    CallCounter counter;
    UaTrace::setTraceLevel(UaTrace::Data);
    UaTrace::setTraceHook(&counter);
    const UaStatus status = session.loadDataTypeDictionaries();
    UaTrace::setTraceHook(nullptr);
    UaTrace::setTraceLevel(UaTrace::NoTrace);
    ASSERT_TRUE(status.isGood()) << status.toString().toUtf8();
    EXPECT_GE(counter.calls(), 3u); // the trace was listened to
    EXPECT_LE(counter.calls(), 20u);
    RecordProperty("calls", static_cast<int>(counter.calls()));

    DataTypeTree tree;
    ASSERT_TRUE(tree.browse(session, settings).isGood());
    std::size_t known = 0;
    std::string unknown;
    for (const auto& [id, type] : tree.types()) {
        const OpcUa_BuiltInType wire = tree.wireType(id);
        const bool isStructure = wire == OpcUaType_ExtensionObject;
        const bool isEnumeration = tree.derivesFrom(id, UaNodeId(OpcUaId_Enumeration));
        if (wire != OpcUaType_Null && !isStructure && !isEnumeration)
            ++known;
        else if (session.definitionType(id) != UaDataTypeDictionary::UndefinedType)
            ++known;
        else
            unknown += type.name.toStdString() + ' ' + id.toFullString().toStdString() + '\n';
    }
    EXPECT_GT(known, 300u);
    // what has no content of its own: the roots of the tree, and Decimal, which is no structure
    EXPECT_EQ(unknown, "Structure ns=0;i=22\nEnumeration ns=0;i=29\nDecimal ns=0;i=50\n")
        << counter.warnings();
    std::printf("%zu types known, %zu calls\n", known, counter.calls());
}

TEST_F(TypesTest, TypeOfADictionaryDecodesAndComesBack)
{
    const UaExtensionObject object = readValue("Structure.Legacy").toExtensionObject();
    const UaStructureDefinition definition = session.structureDefinition(object.encodingId());
    ASSERT_FALSE(definition.isNull());
    EXPECT_EQ(definition.dataTypeId(), UaNodeId(3018, structureNs));
    UaGenericStructureValue value;
    ASSERT_TRUE(value.decode(object, definition, &session).isGood());
    EXPECT_EQ(value.value(UaString("Code")).toUInt16(), 7);
    EXPECT_EQ(value.value(UaString("Name")).toString(), UaString("alt"));
    EXPECT_EQ(value.value(UaString("Values")).toString(), UaString("{0.5|1.5}"));

    ASSERT_TRUE(value.setField(UaString("Name"), UaVariant("neu")).isGood());
    UaExtensionObject changed;
    ASSERT_TRUE(value.encode(changed).isGood());
    UaWriteValues nodes(1u);
    EXPECT_TRUE(OpcUa_IsGood(UaNodeId(UaString("Structure.Legacy"), structureNs).copyTo(&nodes[0].NodeId)));
    nodes[0].AttributeId = OpcUa_Attributes_Value;
    EXPECT_TRUE(OpcUa_IsGood(UaVariant(changed).copyTo(&nodes[0].Value.Value)));
    UaStatusCodeArray results;
    UaDiagnosticInfos diagnostics;
    ASSERT_TRUE(session.write(settings, nodes, results, diagnostics).isGood());
    ASSERT_EQ(results[0], static_cast<OpcUa_StatusCode>(OpcUa_Good));
    UaGenericStructureValue again;
    ASSERT_TRUE(
        again.decode(readValue("Structure.Legacy").toExtensionObject(), definition, &session).isGood());
    EXPECT_EQ(again.value(UaString("Name")).toString(), UaString("neu"));
    ASSERT_TRUE(value.setField(UaString("Name"), UaVariant("alt")).isGood());
    ASSERT_TRUE(value.encode(changed).isGood());
    OpcUa_Variant_Clear(&nodes[0].Value.Value);
    EXPECT_TRUE(OpcUa_IsGood(UaVariant(changed).copyTo(&nodes[0].Value.Value)));
    EXPECT_TRUE(session.write(settings, nodes, results, diagnostics).isGood());
}

TEST_F(TypesTest, EnumerationsAndOptionSetsHaveTheirNames)
{
    const UaEnumDefinition colour = session.enumDefinition(UaNodeId(3001, structureNs));
    EXPECT_EQ(colour.valueName(2), UaString("Blue"));
    const UaEnumDefinition mode = session.enumDefinition(UaNodeId(3002, structureNs));
    EXPECT_EQ(mode.valueName(-1), UaString("Emergency"));
    EXPECT_EQ(mode.valueName(20), UaString("Fast"));
    EXPECT_EQ(session.optionSetDefinition(UaNodeId(3003, structureNs)).bitName(2), UaString("Fault"));
}

// Bodies that the server's implementation has made: what they hold, and the same body from its text again.
TEST_F(TypesTest, BodiesHoldWhatTheServerPutIn)
{
    const std::pair<const char*, const char*> cases[] = {
        {"Structure.Point", R"("Body":{"X":1.5,"Y":-2.5})"},
        {"Structure.NamedPoint", R"("Body":{"X":3,"Y":4,"Name":"Kirchturm","Colour":2})"},
        {"Structure.Segment",
         R"("Body":{"From":{"X":0,"Y":0},"To":{"X":10,"Y":20},"Label":{"Locale":"de","Text":"Strecke"}})"},
        {"Structure.SampleFull",
         R"("Body":{"EncodingMask":7,"Id":1,"Comment":"all there","Weight":2.5,"Place":{"X":5,"Y":6}})"},
        {"Structure.SampleBare", R"("Body":{"EncodingMask":0,"Id":2})"},
        {"Structure.MeasurementNumber", R"("Body":{"SwitchField":1,"Value":12.5})"},
        {"Structure.MeasurementText", R"("Body":{"SwitchField":2,"Value":"out of range"})"},
        {"Structure.Track",
         R"("Points":[{"X":0,"Y":0},{"X":1,"Y":1}],"Values":[0.5,1.5,2.5],"Tags":["a","b"])"},
        {"Structure.Tree",
         R"({"Name":"root","Children":[{"Name":"left","Children":[{"Name":"leaf","Children":[]}]},{"Name":"right")"},
        {"Structure.EveryType", R"("Int64Field":"7","UInt64Field":"8","FloatField":0.5,"DoubleField":0.25)"},
        {"Structure.EveryType", R"("AnyField":{"Type":12,"Body":"any"},"ModeField":10)"},
        {"Structure.Legacy", R"("Body":{"Code":7,"Name":"alt","Values":[0.5,1.5]})"},
        {"Structure.PointArray", R"("Body":{"X":3,"Y":4})"},
        {"Structure.PointEmptyArray", R"("Body":[])"},
        {"Structure.Range", R"("Body":{"Low":-1,"High":1})"},
    };
    for (const auto& [id, expected] : cases) {
        SCOPED_TRACE(id);
        const UaVariant value = readValue(id);
        UaString json;
        UaString xml;
        UaString error;
        UaVariant fromJson;
        UaVariant fromXml;
        ASSERT_TRUE(UaValueText::toJson(value, &session, json).isGood());
        EXPECT_NE(json.view().find(expected), std::string_view::npos) << json.toUtf8();
        ASSERT_TRUE(UaValueText::fromJson(json.view(), &session, fromJson, &error).isGood())
            << error.toUtf8();
        ASSERT_TRUE(UaValueText::toXml(value, &session, xml).isGood());
        ASSERT_TRUE(UaValueText::fromXml(xml.view(), &session, fromXml, &error).isGood()) << error.toUtf8();
        EXPECT_EQ(fromJson, fromXml) << json.toUtf8() << xml.toUtf8();
        if (UaString(id) != UaString("Structure.Range")) // the stack decodes that one itself
            EXPECT_EQ(value, fromJson);
    }
}

} // namespace
