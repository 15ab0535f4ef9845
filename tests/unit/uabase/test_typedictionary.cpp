// Type dictionaries in XML: what they make of bodies.
#include <opcua/opcua_statuscodes.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uagenericunionvalue.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/structures/uatypedefinitionstore.h>
#include <uabase/structures/uatypedictionary.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <gtest/gtest.h>

#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr const char* uri = "urn:test";

// A document around some types.
std::string document(const std::string& types, const std::string& attributes = {},
                     const std::string& space = uri)
{
    return "<opc:TypeDictionary xmlns:opc='http://opcfoundation.org/BinarySchema/' "
           "xmlns:ua='http://opcfoundation.org/UA/' xmlns:tns='" +
           space + "' xmlns:other='urn:other' TargetNamespace='" + space + "' " + attributes +
           "><opc:Import Namespace='http://opcfoundation.org/UA/'/>" + types + "</opc:TypeDictionary>";
}

std::span<const unsigned char> bytesOf(const std::string& text)
{
    return {reinterpret_cast<const unsigned char*>(text.data()), text.size()};
}

class TypeDictionaryTest : public testing::Test
{
protected:
    void define(const std::string& types, const std::string& attributes = {})
    {
        UaString error;
        ASSERT_TRUE(dictionary.addDocument(bytesOf(document(types, attributes)), error)) << error.toUtf8();
        dictionary.define(store, faults);
    }

    UaStructureDefinition structure(const char* name)
    {
        return store.structure(dictionary.dataTypeId({uri, name}));
    }

    std::string faultOf(const char* name) const
    {
        for (const UaTypeDictionary::Fault& fault : faults)
            if (fault.type.name.view() == name)
                return fault.reason.toStdString();
        return {};
    }

    // Decodes a body, expects the texts of its fields, and the same body when it is encoded again.
    void expectFields(const char* name, const char* hex,
                      const std::vector<std::pair<std::string, std::string>>& texts)
    {
        SCOPED_TRACE(name);
        const UaByteString body = UaByteString::fromHex(hex);
        UaGenericStructureValue value;
        const UaStatusCode status = value.decode(body, structure(name), &store);
        ASSERT_TRUE(status.isGood()) << status.toString().toUtf8() << ' ' << faultOf(name);
        ASSERT_EQ(value.fieldCount(), static_cast<int>(texts.size()));
        for (int i = 0; i < value.fieldCount(); ++i) {
            const auto& [field, text] = texts[static_cast<std::size_t>(i)];
            EXPECT_EQ(value.definition().field(i).name().toStdString(), field);
            EXPECT_EQ(value.isFieldSet(i) ? value.value(i).toString().toStdString() : "absent", text)
                << field;
        }
        UaExtensionObject object;
        UaByteString again;
        ASSERT_TRUE(value.encode(object).isGood());
        ASSERT_TRUE(OpcUa_IsGood(object.binaryBody(again)));
        EXPECT_EQ(again.toHex(), body.toHex());
        expectCutsFail(body, name);
    }

    void expectCutsFail(const UaByteString& body, const char* name)
    {
        for (OpcUa_Int32 size = 0; size < body.length(); ++size) {
            UaGenericStructureValue value;
            EXPECT_TRUE(value.decode(UaByteString(size, body.data()), structure(name), &store).isBad())
                << size;
        }
    }

    UaTypeDictionary dictionary;
    UaTypeDefinitionStore store;
    std::vector<UaTypeDictionary::Fault> faults;
};

TEST_F(TypeDictionaryTest, StandardFormsBecomePlainDefinitions)
{
    std::string bits =
        "<opc:Field Name='HasB' TypeName='opc:Bit'/><opc:Field Name='HasC' TypeName='opc:Bit'/>"
        "<opc:Field Name='Reserved1' TypeName='opc:Bit' Length='30'/>";
    define("<opc:StructuredType Name='Optional' BaseType='ua:ExtensionObject'>" + bits +
           "<opc:Field Name='A' TypeName='opc:Int16'/><opc:Field Name='B' TypeName='opc:CharArray' "
           "SwitchField='HasB'/>"
           "<opc:Field Name='NoOfC' TypeName='opc:Int32' SwitchField='HasC'/>"
           "<opc:Field Name='C' TypeName='opc:Byte' LengthField='NoOfC' "
           "SwitchField='HasC'/></opc:StructuredType>"
           "<opc:StructuredType Name='Choice' BaseType='ua:Union'><opc:Field Name='SwitchField' "
           "TypeName='opc:UInt32'/>"
           "<opc:Field Name='Number' TypeName='opc:Double' SwitchField='SwitchField' SwitchValue='1'/>"
           "<opc:Field Name='Range' TypeName='ua:Range' SwitchField='SwitchField' "
           "SwitchValue='2'/></opc:StructuredType>");
    EXPECT_TRUE(faults.empty());
    EXPECT_TRUE(structure("Optional").hasOptionalFields());
    EXPECT_EQ(structure("Optional").layout(), nullptr);
    expectFields("Optional", "02000000 0100 03000000 010203",
                 {{"A", "1"}, {"B", "absent"}, {"C", "{1|2|3}"}});
    expectFields("Optional", "01000000 0100 02000000 6869", {{"A", "1"}, {"B", "hi"}, {"C", "absent"}});
    ASSERT_TRUE(structure("Choice").isUnion());
    UaGenericUnionValue choice;
    ASSERT_TRUE(choice.decode(UaByteString::fromHex("01000000 000000000000f83f"), structure("Choice"), &store)
                    .isGood());
    EXPECT_EQ(choice.field().name(), UaString("Number"));
    EXPECT_EQ(choice.value().toDouble(), 1.5);
}

TEST_F(TypeDictionaryTest, BitsFillBytesFromTheLowestOn)
{
    define("<opc:StructuredType Name='Bits'><opc:Field Name='On' TypeName='opc:Bit'/>"
           "<opc:Field Name='Level' TypeName='opc:Bit' Length='3'/><opc:Field Name='Wide' TypeName='opc:Bit' "
           "Length='9'/>"
           "<opc:Field Name='After' TypeName='opc:UInt16'/></opc:StructuredType>");
    // 1, 101, 1.0000.0001 -> 0001 101 1 | 10000 -> low byte 0x1B, high byte 0x10
    expectFields("Bits", "1b10 3412", {{"On", "true"}, {"Level", "5"}, {"Wide", "257"}, {"After", "4660"}});
}

TEST_F(TypeDictionaryTest, EveryStructureBeginsWithAByte)
{
    define(
        "<opc:StructuredType Name='Part'><opc:Field Name='Head' TypeName='opc:Bit' Length='3'/>"
        "<opc:Field Name='Middle' TypeName='opc:Bit' Length='7'/><opc:Field Name='Tail' TypeName='opc:Bit' "
        "Length='3'/></opc:StructuredType>"
        "<opc:StructuredType Name='Parts'><opc:Field Name='NoOfList' TypeName='opc:Byte'/>"
        "<opc:Field Name='List' TypeName='tns:Part' LengthField='NoOfList'/>"
        "<opc:Field Name='One' TypeName='tns:Part'/>"
        "<opc:Field Name='Flag' TypeName='opc:Bit'/></opc:StructuredType>"
        "<opc:StructuredType Name='Half'><opc:Field Name='Head' TypeName='opc:Bit' Length='3'/>"
        "<opc:Field Name='Middle' TypeName='opc:Bit' Length='7'/></opc:StructuredType>");
    expectFields("Half", "0b02", {{"Head", "3"}, {"Middle", "65"}}); // a byte is too short for the second
    // tail 5, middle 65, head 3 -> 101 1000001 011; tail 2, middle 1, head 6 -> 010 0000001 110
    const UaByteString body = UaByteString::fromHex("02 0b16 0e08 0b16 01");
    UaGenericStructureValue parts;
    ASSERT_TRUE(parts.decode(body, structure("Parts"), &store).isGood());
    const auto numbers = [&](int field, int element) {
        const UaGenericStructureValue part = parts.structure(field, element, &store);
        return std::vector<OpcUa_UInt32>{part.value(0).toUInt32(), part.value(1).toUInt32(),
                                         part.value(2).toUInt32()};
    };
    const std::vector<OpcUa_UInt32> first{3, 65, 5};
    EXPECT_EQ(numbers(0, 0), first);
    EXPECT_EQ(numbers(0, 1), (std::vector<OpcUa_UInt32>{6, 1, 2}));
    EXPECT_EQ(numbers(1, -1), first);
    EXPECT_EQ(parts.value(2).toString(), UaString("true"));
    UaExtensionObject object;
    UaByteString again;
    ASSERT_TRUE(parts.encode(object).isGood());
    ASSERT_TRUE(OpcUa_IsGood(object.binaryBody(again)));
    EXPECT_EQ(again.toHex(), body.toHex());
    expectCutsFail(body, "Parts");
}

TEST_F(TypeDictionaryTest, ByteOrdersOfDocumentTypeAndField)
{
    define("<opc:StructuredType Name='Big'><opc:Field Name='A' TypeName='opc:UInt32'/>"
           "<opc:Field Name='B' TypeName='opc:UInt16' ByteOrder='LittleEndian'/><opc:Field Name='NoOfC' "
           "TypeName='opc:UInt16'/>"
           "<opc:Field Name='C' TypeName='opc:Int16' LengthField='NoOfC'/></opc:StructuredType>"
           "<opc:StructuredType Name='Little' DefaultByteOrder='LittleEndian'><opc:Field Name='A' "
           "TypeName='opc:Float'/>"
           "<opc:Field Name='B' TypeName='tns:Big'/></opc:StructuredType>",
           "DefaultByteOrder='BigEndian'");
    expectFields("Big", "00000102 0100 0002 fffe 0003", {{"A", "258"}, {"B", "1"}, {"C", "{-2|3}"}});
    UaGenericStructureValue little;
    ASSERT_TRUE(
        little.decode(UaByteString::fromHex("0000c03f 00000001 0000 0000"), structure("Little"), &store)
            .isGood());
    EXPECT_EQ(little.value(0).toFloat(), 1.5f);
    EXPECT_EQ(little.structure(1, -1, &store).value(0).toUInt32(), 1u);
}

TEST_F(TypeDictionaryTest, LengthsElsewhereInBytesFixedAndTerminated)
{
    define("<opc:OpaqueType Name='Key' LengthInBits='24'/><opc:StructuredType Name='Lengths'>"
           "<opc:Field Name='Size' TypeName='opc:Byte'/><opc:Field Name='Id' TypeName='opc:Byte'/>"
           "<opc:Field Name='Values' TypeName='opc:UInt16' LengthField='Size' IsLengthInBytes='true'/>"
           "<opc:Field Name='Fixed' TypeName='opc:SByte' Length='2'/><opc:Field Name='Label' "
           "TypeName='opc:Char' Length='4'/>"
           "<opc:Field Name='Line' TypeName='opc:Char' Terminator='0A'/><opc:Field Name='Secret' "
           "TypeName='tns:Key'/>"
           "<opc:Field Name='NameSize' TypeName='opc:Int16'/>"
           "<opc:Field Name='Name' TypeName='opc:Char' LengthField='NameSize'/></opc:StructuredType>");
    expectFields("Lengths", "04 09 01000200 ff01 61620000 78790a 010203 0200 6869",
                 {{"Id", "9"},
                  {"Values", "{1|2}"},
                  {"Fixed", "{-1|1}"},
                  {"Label", "ab"},
                  {"Line", "xy"},
                  {"Secret", "0x010203"},
                  {"Name", "hi"}});
    UaGenericStructureValue value;
    // an odd number of bytes for elements of two, and a length that lies
    EXPECT_TRUE(value
                    .decode(UaByteString::fromHex("03 09 010002 ff01 61620000 780a 010203 ffff"),
                            structure("Lengths"), &store)
                    .isBad());
    // defaults for a new value can be written
    UaExtensionObject object;
    EXPECT_TRUE(UaGenericStructureValue(structure("Lengths"), &store).encode(object).isGood());
    ASSERT_TRUE(value.decode(object, structure("Lengths"), &store).isGood());
    EXPECT_EQ(value.value(UaString("Fixed")).toString(), UaString("{0|0}"));
    // a text that does not fit, and one that holds the terminator
    ASSERT_TRUE(value.setField(UaString("Label"), UaVariant("12345")).isGood());
    EXPECT_TRUE(value.encode(object).isBad());
    ASSERT_TRUE(value.setField(UaString("Label"), UaVariant("1234")).isGood());
    EXPECT_TRUE(value.encode(object).isGood());
    ASSERT_TRUE(value.setField(UaString("Line"), UaVariant("a\nb")).isGood());
    EXPECT_TRUE(value.encode(object).isBad());
}

TEST_F(TypeDictionaryTest, SwitchesThatAreFieldsOfTheirOwn)
{
    define("<opc:StructuredType Name='Versions'><opc:Field Name='Version' TypeName='opc:Byte'/>"
           "<opc:Field Name='Old' TypeName='opc:Byte' SwitchField='Version' SwitchValue='2' "
           "SwitchOperand='LessThan'/>"
           "<opc:Field Name='New' TypeName='opc:UInt32' SwitchField='Version' SwitchValue='2' "
           "SwitchOperand='GreaterThanOrEqual'/></opc:StructuredType>");
    expectFields("Versions", "01 07", {{"Version", "1"}, {"Old", "7"}, {"New", "absent"}});
    expectFields("Versions", "02 07000000", {{"Version", "2"}, {"Old", "absent"}, {"New", "7"}});
    UaGenericStructureValue value;
    ASSERT_TRUE(value.decode(UaByteString::fromHex("0107"), structure("Versions"), &store).isGood());
    ASSERT_TRUE(value.setField(UaString("Version"), UaVariant(static_cast<OpcUa_Byte>(2))).isGood());
    UaExtensionObject object;
    EXPECT_TRUE(value.encode(object).isBad()); // says 2 and holds what 1 does
}

TEST_F(TypeDictionaryTest, NestedDictionariesRecursionAndInheritance)
{
    UaString error;
    const std::string other =
        document("<opc:EnumeratedType Name='Colour' LengthInBits='32'>"
                 "<opc:EnumeratedValue Name='Red' Value='0'/><opc:EnumeratedValue Name='Blue' Value='2'/>"
                 "</opc:EnumeratedType>",
                 {}, "urn:other");
    const std::string types =
        "<opc:Import Namespace='urn:other'/>"
        "<opc:StructuredType Name='Node'><opc:Field Name='Colour' TypeName='other:Colour'/>"
        "<opc:Field Name='NoOfChildren' TypeName='opc:Int32'/>"
        "<opc:Field Name='Children' TypeName='tns:Node' LengthField='NoOfChildren'/></opc:StructuredType>"
        "<opc:StructuredType Name='Base'><opc:Field Name='X' TypeName='opc:Byte'/></opc:StructuredType>"
        "<opc:StructuredType Name='Derived' BaseType='tns:Base'><opc:Field Name='Y' "
        "TypeName='opc:Byte'/></opc:StructuredType>"
        "<opc:StructuredType Name='Repeats' BaseType='tns:Base'><opc:Field Name='X' TypeName='opc:Byte' "
        "SourceType='tns:Base'/>"
        "<opc:Field Name='Y' TypeName='opc:Byte'/></opc:StructuredType>";
    ASSERT_TRUE(dictionary.addDocument(bytesOf(document(types)), error)) << error.toUtf8();
    EXPECT_EQ(dictionary.missingNamespaces(), std::set<UaString>{UaString("urn:other")});
    ASSERT_TRUE(dictionary.addDocument(bytesOf(other), error)) << error.toUtf8();
    EXPECT_TRUE(dictionary.missingNamespaces().empty());
    dictionary.define(store, faults);
    EXPECT_TRUE(faults.empty());
    EXPECT_EQ(structure("Node").field(0).enumDefinition().valueName(2), UaString("Blue"));
    UaGenericStructureValue node;
    ASSERT_TRUE(node.decode(UaByteString::fromHex("02000000 02000000 00000000ffffffff 0200000000000000"),
                            structure("Node"), &store)
                    .isGood());
    EXPECT_EQ(node.structure(1, 1, &store).value(0).toInt32(), 2);
    expectFields("Derived", "0102", {{"X", "1"}, {"Y", "2"}});
    expectFields("Repeats", "0102", {{"X", "1"}, {"Y", "2"}});
}

TEST_F(TypeDictionaryTest, BrokenTypesCostThemselvesOnly)
{
    define(
        "<opc:StructuredType Name='Good'><opc:Field Name='A' TypeName='opc:Byte'/></opc:StructuredType>"
        "<opc:StructuredType Name='Unknown'><opc:Field Name='A' TypeName='tns:Nothing'/></opc:StructuredType>"
        "<opc:StructuredType Name='NoLength'><opc:Field Name='A' TypeName='opc:Byte' "
        "LengthField='B'/></opc:StructuredType>"
        "<opc:StructuredType Name='Later'><opc:Field Name='A' TypeName='opc:Byte' LengthField='B'/>"
        "<opc:Field Name='B' TypeName='opc:Int32'/></opc:StructuredType>"
        "<opc:StructuredType Name='TextLength'><opc:Field Name='B' TypeName='opc:String'/>"
        "<opc:Field Name='A' TypeName='opc:Byte' LengthField='B'/></opc:StructuredType>"
        "<opc:StructuredType Name='Huge'><opc:Field Name='A' TypeName='opc:Byte' "
        "Length='4294967295'/></opc:StructuredType>"
        "<opc:StructuredType Name='Wide'><opc:Field Name='A' TypeName='opc:Bit' "
        "Length='65'/></opc:StructuredType>"
        "<opc:StructuredType Name='CircleA' BaseType='tns:CircleB'><opc:Field Name='A' "
        "TypeName='opc:Byte'/></opc:StructuredType>"
        "<opc:StructuredType Name='CircleB' BaseType='tns:CircleA'><opc:Field Name='B' "
        "TypeName='opc:Byte'/></opc:StructuredType>"
        "<opc:EnumeratedType Name='Odd' LengthInBits='7'/>"
        "<opc:EnumeratedType Name='NoNumber' LengthInBits='32'><opc:EnumeratedValue "
        "Name='A'/></opc:EnumeratedType>"
        "<opc:StructuredType Name=''><opc:Field Name='A' TypeName='opc:Byte'/></opc:StructuredType>");
    EXPECT_FALSE(structure("Good").isNull());
    for (const char* name : {"Unknown", "NoLength", "Later", "TextLength", "Huge", "Wide", "CircleA",
                             "CircleB", "Odd", "NoNumber", ""}) {
        EXPECT_FALSE(faultOf(name).empty()) << name;
        EXPECT_TRUE(structure(name).isNull()) << name;
    }
    EXPECT_EQ(faults.size(), 11u);
}

TEST_F(TypeDictionaryTest, ContentThatExplodesEnds)
{
    // each level holds a thousand of the next, and a structure that contains itself
    std::string types =
        "<opc:StructuredType Name='L0'><opc:Field Name='A' TypeName='opc:Byte' "
        "Length='1000'/></opc:StructuredType>"
        "<opc:StructuredType Name='Self'><opc:Field Name='A' TypeName='tns:Self'/></opc:StructuredType>"
        "<opc:StructuredType Name='Empty'/><opc:StructuredType Name='Many'>"
        "<opc:Field Name='N' TypeName='opc:UInt32'/><opc:Field Name='A' TypeName='tns:Empty' "
        "LengthField='N'/>"
        "</opc:StructuredType>";
    for (int i = 1; i < 8; ++i)
        types += "<opc:StructuredType Name='L" + std::to_string(i) + "'><opc:Field Name='A' TypeName='tns:L" +
                 std::to_string(i - 1) + "' Length='1000'/></opc:StructuredType>";
    define(types);
    UaExtensionObject object;
    EXPECT_TRUE(UaGenericStructureValue(structure("L7"), &store).encode(object).isBad());
    UaGenericStructureValue value;
    EXPECT_TRUE(value.decode(UaByteString::fromHex("01"), structure("Self"), &store).isBad());
    EXPECT_TRUE(value.decode(UaByteString::fromHex("ffffff7f"), structure("Many"), &store).isBad());
}

TEST_F(TypeDictionaryTest, OtherDocumentsAreRefused)
{
    UaString error;
    for (const std::string& text :
         {std::string(), std::string("<x"), std::string("<x/>"),
          std::string("<!DOCTYPE t [<!ENTITY a SYSTEM 'file:///etc/passwd'>]>") + document("&a;"),
          document("", "DefaultByteOrder='Middle'"), document("", "", "")}) {
        error = UaString();
        EXPECT_FALSE(dictionary.addDocument(bytesOf(text), error)) << text;
        EXPECT_FALSE(error.isEmpty());
    }
    EXPECT_TRUE(dictionary.types().empty());
}

} // namespace
