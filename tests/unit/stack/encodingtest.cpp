#include <tests/unit/stack/encodingtest.h>

#include <fstream>

Bytes fromHex(std::string_view hex)
{
    Bytes bytes;
    std::string digits;
    for (const char c : hex) {
        if (c == ' ')
            continue;
        digits += c;
        if (digits.size() == 2) {
            bytes.push_back(static_cast<OpcUa_Byte>(std::stoul(digits, nullptr, 16)));
            digits.clear();
        }
    }
    return bytes;
}

std::string toHex(std::span<const OpcUa_Byte> bytes)
{
    static constexpr char digits[] = "0123456789abcdef";
    std::string hex;
    for (const OpcUa_Byte byte : bytes) {
        hex += digits[byte >> 4];
        hex += digits[byte & 15];
    }
    return hex;
}

Bytes operator+(Bytes left, const Bytes& right)
{
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

Bytes repeated(const Bytes& pattern, size_t count)
{
    Bytes bytes;
    for (size_t i = 0; i < count; ++i)
        bytes.insert(bytes.end(), pattern.begin(), pattern.end());
    return bytes;
}

std::vector<ReferenceCase> referenceCases(const std::string& file)
{
    static constexpr std::string_view separator = " | ";
    std::vector<ReferenceCase> cases;
    std::ifstream in(TAVELIN_TEST_DATA "/encoding/" + file);
    for (std::string line; std::getline(in, line);) {
        if (line.empty() || line.front() == '#')
            continue;
        std::array<std::string, 4> columns;
        size_t at = 0;
        for (std::string& column : columns) {
            const size_t end = line.find(separator, at);
            column = line.substr(at, end - at);
            at = end == std::string::npos ? line.size() : end + separator.size();
        }
        cases.push_back({columns[0], columns[1], columns[2], fromHex(columns[3])});
    }
    return cases;
}

OpcUa_Byte builtInTypeByName(std::string_view name)
{
    for (OpcUa_Byte type = OpcUaType_Boolean; type <= OpcUaType_DiagnosticInfo; ++type)
        if (name == OpcUa_BuiltInType_Name(type))
            return type;
    return OpcUaType_Null;
}

Value::Value(OpcUa_Byte type) : m_type(type)
{
    OpcUa_BuiltInType_InitializeArray(type, data(), 1);
}

Value::~Value()
{
    OpcUa_BuiltInType_ClearArray(m_type, data(), 1);
}

OpcUa_StatusCode Value::decode(std::span<const OpcUa_Byte> bytes, size_t* consumed)
{
    OpcUa_BuiltInType_ClearArray(m_type, data(), 1);
    m_storage.fill(0xA5);
    return OpcUa_BuiltInType_DecodeBinary(m_type, bytes.data(), bytes.size(), data(), consumed);
}

Bytes Value::encode() const
{
    OpcUa_ByteString encoded;
    if (OpcUa_IsBad(OpcUa_BuiltInType_EncodeBinary(m_type, data(), &encoded)))
        return {};
    Bytes bytes(encoded.Data, encoded.Data + encoded.Length);
    OpcUa_ByteString_Clear(&encoded);
    return bytes;
}

OpcUa_StatusCode Value::copyFrom(const Value& other)
{
    OpcUa_BuiltInType_ClearArray(m_type, data(), 1);
    m_storage.fill(0xA5);
    return OpcUa_BuiltInType_CopyArray(m_type, other.data(), data(), 1);
}

int Value::compare(const Value& other) const
{
    return OpcUa_BuiltInType_Compare(m_type, data(), other.data());
}

const Bytes& readResponseBytes()
{
    static const Bytes bytes = [] {
        for (const ReferenceCase& reference : referenceCases("messages.txt"))
            if (reference.type == "ReadResponse" && reference.name == "several-values")
                return reference.bytes;
        return Bytes();
    }();
    return bytes;
}
