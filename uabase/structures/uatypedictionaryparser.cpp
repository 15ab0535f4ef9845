// Reads the XML of a type dictionary; declared in uatypedictionary_p.h.
#include <uabase/structures/uatypedictionary.h>
#include <uabase/structures/uatypedictionary_p.h>
#include <uabase/system/uaxmldocument.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uatext_p.h>

#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace uabase {

namespace {

constexpr OpcUa_UInt32 maxBits = 64 * 1024;

UaString line(const UaXmlNode& node)
{
    return UaString("line " + std::to_string(node.line()));
}

void setFault(DictionaryType& type, const UaXmlNode& node, const std::string& reason)
{
    if (type.fault.isNull())
        type.fault = UaString(line(node).toStdString() + ": " + reason);
}

// "tns:Point"; a name without prefix is of the document's own namespace.
TypeName resolve(const UaXmlNode& node, const UaString& qualified, const UaString& own)
{
    const std::string_view text = trimmed(qualified.view());
    const auto colon = text.find(':');
    if (colon == std::string_view::npos)
        return {own, UaString(text)};
    return {node.namespaceOfPrefix(text.substr(0, colon)), UaString(text.substr(colon + 1))};
}

// An unsigned attribute; false when it is there and no number up to the limit.
template <typename T>
bool readNumber(const UaXmlNode& node, std::string_view name, T limit, T& number)
{
    const UaString text = node.attribute(name);
    if (text.isNull())
        return true;
    const auto parsed = parseNumber<T>(trimmed(text.view()));
    if (!parsed || *parsed > limit)
        return false;
    number = *parsed;
    return true;
}

bool isTrue(const UaString& text) noexcept
{
    const std::string_view view = trimmed(text.view());
    return view == "true" || view == "1";
}

bool readByteOrder(const UaXmlNode& node, std::string_view attribute, bool& bigEndian)
{
    const UaString order = node.attribute(attribute);
    if (order.isNull())
        return true;
    bigEndian = order.view() == "BigEndian";
    return bigEndian || order.view() == "LittleEndian";
}

bool readOperand(const UaString& text, SwitchOperand& operand)
{
    constexpr std::pair<std::string_view, SwitchOperand> operands[] = {
        {"Equals", SwitchOperand::Equals},
        {"GreaterThan", SwitchOperand::GreaterThan},
        {"LessThan", SwitchOperand::LessThan},
        {"GreaterThanOrEqual", SwitchOperand::GreaterThanOrEqual},
        {"LessThanOrEqual", SwitchOperand::LessThanOrEqual},
        {"NotEqual", SwitchOperand::NotEqual},
    };
    for (const auto& [name, value] : operands)
        if (text.view() == name) {
            operand = value;
            return true;
        }
    return text.isNull();
}

// "0A" or "0x0A": one byte that ends an array.
bool readTerminator(const UaString& text, int& terminator)
{
    if (text.isNull())
        return true;
    const UaByteString bytes = UaByteString::fromHex(text.view());
    if (bytes.length() != 1)
        return false;
    terminator = bytes.data()[0];
    return true;
}

UaLocalizedText documentation(const UaXmlNode& node)
{
    const UaXmlNode text = node.child("Documentation");
    return text.isNull() ? UaLocalizedText() : UaLocalizedText(UaString(), text.text());
}

class Parser
{
public:
    explicit Parser(DictionaryDocument& document) : m_document(document) {}

    bool parse(const UaXmlNode& root, UaString& error)
    {
        m_document.targetNamespace = root.attribute("TargetNamespace");
        if (m_document.targetNamespace.isEmpty() || !readByteOrder(root, "DefaultByteOrder", m_bigEndian)) {
            error = "no TargetNamespace, or an unknown DefaultByteOrder";
            return false;
        }
        for (UaXmlNode node = root.firstChild(); !node.isNull(); node = node.nextSibling())
            parseTop(node);
        return true;
    }

private:
    void parseTop(const UaXmlNode& node)
    {
        const UaString name = node.name();
        if (name == UaString("Import"))
            m_document.imports.push_back(node.attribute("Namespace"));
        else if (name == UaString("StructuredType"))
            parseStructure(node);
        else if (name == UaString("EnumeratedType"))
            parseEnumeration(node);
        else if (name == UaString("OpaqueType"))
            add(node, DictionaryType::Opaque);
    }

    DictionaryType& add(const UaXmlNode& node, DictionaryType::Kind kind)
    {
        DictionaryType& type = m_document.types.emplace_back();
        type.kind = kind;
        type.name = node.attribute("Name");
        type.description = documentation(node);
        if (type.name.isEmpty())
            setFault(type, node, "type without a name");
        if (!readNumber(node, "LengthInBits", maxBits, type.lengthInBits))
            setFault(type, node, "LengthInBits is not a number up to 65536");
        return type;
    }

    void parseStructure(const UaXmlNode& node)
    {
        DictionaryType& type = add(node, DictionaryType::Structure);
        if (const UaString base = node.attribute("BaseType"); !base.isEmpty())
            type.base = resolve(node, base, m_document.targetNamespace);
        bool bigEndian = m_bigEndian;
        if (!readByteOrder(node, "DefaultByteOrder", bigEndian))
            setFault(type, node, "unknown DefaultByteOrder");
        for (UaXmlNode child = node.firstChild(); !child.isNull(); child = child.nextSibling()) {
            if (child.name() != UaString("Field"))
                continue;
            if (type.fields.size() >= maxDictionaryFields)
                return setFault(type, child, "too many fields");
            type.fields.push_back(parseField(child, bigEndian, type));
        }
    }

    DictionaryField parseField(const UaXmlNode& node, bool bigEndian, DictionaryType& type)
    {
        DictionaryField field;
        field.name = node.attribute("Name");
        field.description = documentation(node);
        field.type = resolve(node, node.attribute("TypeName"), m_document.targetNamespace);
        field.lengthField = node.attribute("LengthField");
        field.switchField = node.attribute("SwitchField");
        field.lengthInBytes = isTrue(node.attribute("IsLengthInBytes"));
        field.inherited = node.hasAttribute("SourceType");
        field.bigEndian = bigEndian;
        OpcUa_UInt64 switchValue = 1;
        if (field.name.isEmpty() || field.type.name.isEmpty())
            setFault(type, node, "field without a name or type");
        if (!readNumber(node, "Length", maxFixedLength, field.length) ||
            !readNumber(node, "SwitchValue", UINT64_MAX, switchValue) ||
            !readOperand(node.attribute("SwitchOperand"), field.switchOperand) ||
            !readTerminator(node.attribute("Terminator"), field.terminator) ||
            !readByteOrder(node, "ByteOrder", field.bigEndian))
            setFault(type, node, "field with an attribute that is out of range");
        if (node.hasAttribute("SwitchValue"))
            field.switchValue = switchValue;
        return field;
    }

    void parseEnumeration(const UaXmlNode& node)
    {
        const bool isOptionSet = isTrue(node.attribute("IsOptionSet"));
        DictionaryType& type =
            add(node, isOptionSet ? DictionaryType::OptionSet : DictionaryType::Enumeration);
        for (const UaXmlNode& child : node.children("EnumeratedValue")) {
            const auto value = parseNumber<OpcUa_Int64>(trimmed(child.attribute("Value").view()));
            if (!value)
                return setFault(type, child, "enumerated value without a number");
            const UaString name = child.attribute("Name");
            type.values.push_back({*value, name, UaLocalizedText(UaString(), name), documentation(child)});
        }
    }

    DictionaryDocument& m_document;
    bool m_bigEndian = false;
};

} // namespace

bool parseDictionary(std::span<const unsigned char> xml, DictionaryDocument& document, UaString& error)
{
    const UaXmlDocument source = UaXmlDocument::fromBytes(xml);
    if (source.isNull()) {
        error = source.error();
        return false;
    }
    const UaXmlNode root = source.root();
    if (!root.is("TypeDictionary", UaTypeDictionary::schemaNamespace)) {
        error = "not a type dictionary";
        return false;
    }
    return Parser(document).parse(root, error);
}

} // namespace uabase
