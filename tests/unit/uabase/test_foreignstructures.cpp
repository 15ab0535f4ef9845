// Bodies encoded by an implementation that is not ours, by the definitions of a type dictionary.
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uagenericunionvalue.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/structures/uatypedefinitionstore.h>
#include <uabase/structures/uatypedictionary.h>
#include <uabase/text/uavaluetext.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

constexpr const char* uri = "urn:korvanda:tavelin:demo/structures";
constexpr OpcUa_UInt16 ns = 3;

std::string fileText(const std::string& name)
{
    std::ifstream in(std::string(TAVELIN_TEST_DATA "/encoding/") + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

struct Case
{
    std::string name;
    OpcUa_UInt32 dataTypeId = 0;
    UaByteString body;
};

// "NAME | DATATYPEID | HEX"
std::vector<Case> cases()
{
    std::vector<Case> all;
    std::istringstream in(fileText("structures.txt"));
    for (std::string line; std::getline(in, line);) {
        if (line.starts_with('#'))
            continue;
        std::istringstream columns(line);
        Case made;
        std::string bar;
        std::string hex;
        columns >> made.name >> bar >> made.dataTypeId >> bar >> hex;
        made.body = UaByteString::fromHex(hex);
        all.push_back(made);
    }
    return all;
}

class ForeignStructures : public testing::Test
{
protected:
    void SetUp() override
    {
        const std::string xml = fileText("dictionary.xml");
        UaString error;
        ASSERT_TRUE(
            dictionary.addDocument({reinterpret_cast<const unsigned char*>(xml.data()), xml.size()}, error))
            << error.toUtf8();
        // as a server's description nodes tell them
        const std::pair<const char*, OpcUa_UInt32> ids[] = {
            {"Point", 3010},    {"NamedPoint", 3011},  {"Segment", 3012},
            {"Sample", 3013},   {"Measurement", 3014}, {"Track", 3015},
            {"TreeNode", 3016}, {"EveryType", 3017},   {"Legacy", 3018}};
        for (const auto& [name, id] : ids)
            dictionary.setIds({uri, name}, UaNodeId(id, ns), UaNodeId(id + 1000, ns));
        std::vector<UaTypeDictionary::Fault> faults;
        dictionary.define(store, faults);
        for (const UaTypeDictionary::Fault& fault : faults)
            ADD_FAILURE() << fault.type.name.toUtf8() << ": " << fault.reason.toUtf8();
    }

    UaTypeDictionary dictionary;
    UaTypeDefinitionStore store;
};

TEST_F(ForeignStructures, DecodeByTheDictionaryAndComeBackBitForBit)
{
    const std::map<std::string, std::string> expected = {
        {"Point", R"({"X":1.5,"Y":-2.5})"},
        {"NamedPoint", R"({"X":3,"Y":4,"Name":"Kirchturm","Colour":2})"},
        {"SampleFull", R"("Id":1,"Comment":"all there","Weight":2.5,"Place":{"X":5,"Y":6}})"},
        {"SampleBare", R"({"EncodingMask":0,"Id":2})"},
        {"MeasurementNumber", R"({"SwitchField":1,"Value":12.5})"},
        {"MeasurementText", R"({"SwitchField":2,"Value":"out of range"})"},
        {"Track", R"("Points":[{"X":0,"Y":0},{"X":1,"Y":1}],"Values":[0.5,1.5,2.5],"Tags":["a","b"]})"},
        {"Tree", R"({"Name":"root","Children":[{"Name":"left","Children":[{"Name":"leaf","Children":[]}]},)"},
        {"EveryType", R"("StatusCodeField":1083310080,)"},
        {"Legacy", R"({"Code":7,"Name":"alt","Values":[0.5,1.5]})"},
    };
    std::size_t found = 0;
    for (const Case& foreign : cases()) {
        SCOPED_TRACE(foreign.name);
        const UaStructureDefinition definition = store.structure(UaNodeId(foreign.dataTypeId, ns));
        ASSERT_FALSE(definition.isNull());
        EXPECT_EQ(definition.layout(), nullptr); // the standard's forms are recognised
        const UaVariant value(
            UaExtensionObject(UaExpandedNodeId(definition.binaryEncodingId()), foreign.body));
        UaString json;
        UaVariant back;
        ASSERT_TRUE(UaValueText::toJson(value, &store, json).isGood());
        if (const auto wanted = expected.find(foreign.name); wanted != expected.end()) {
            ++found;
            EXPECT_NE(json.view().find(wanted->second), std::string_view::npos) << json.toUtf8();
        }
        ASSERT_TRUE(UaValueText::fromJson(json.view(), &store, back).isGood());
        EXPECT_EQ(value, back) << json.toUtf8();
    }
    EXPECT_EQ(found, expected.size());
}

} // namespace
