// What a type dictionary says, before names are resolved.
#pragma once

#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/structures/uastructurelayout_p.h>
#include <uabase/structures/uatypedictionary.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>

#include <map>
#include <optional>
#include <span>
#include <vector>

class UaXmlNode;

namespace uabase {

using TypeName = UaTypeDictionary::TypeName;

/// Fields of one structure with what it inherits, and elements of one fixed array.
constexpr std::size_t maxDictionaryFields = 10000;
constexpr OpcUa_UInt32 maxFixedLength = 1024 * 1024;

struct DictionaryField
{
    UaString name;
    UaLocalizedText description;
    TypeName type;
    UaString lengthField;
    UaString switchField;
    std::optional<OpcUa_UInt64> switchValue;
    SwitchOperand switchOperand = SwitchOperand::Equals;
    OpcUa_UInt32 length = 0; ///< bits of a Bit, else elements; 0: not said
    bool lengthInBytes = false;
    bool bigEndian = false;
    bool inherited = false; ///< repeats a field of the base type
    int terminator = -1;
};

struct DictionaryType
{
    enum Kind { Structure, Enumeration, OptionSet, Opaque };
    Kind kind = Structure;
    UaString name;
    UaLocalizedText description;
    TypeName base;
    OpcUa_UInt32 lengthInBits = 0;
    std::vector<DictionaryField> fields;
    std::vector<UaEnumValue> values;
    UaString fault; ///< why it cannot be used; null: no fault
};

struct DictionaryDocument
{
    UaString targetNamespace;
    std::vector<UaString> imports;
    std::vector<DictionaryType> types;
};

/// Reads a document; false with error when it is none. Faulty types are kept with their fault.
[[nodiscard]] bool parseDictionary(std::span<const unsigned char> xml, DictionaryDocument& document,
                                   UaString& error);

/// A type with its ids.
struct KnownType
{
    DictionaryType type;
    UaNodeId dataTypeId;
    UaNodeId binaryEncodingId;
    UaEnumDefinition enumDefinition; ///< made once, for all fields of the type
    UaOptionSetDefinition optionSetDefinition;
};
using KnownTypes = std::map<TypeName, KnownType>;

/// The definition of a structure; null with fault when one of its fields cannot be used.
[[nodiscard]] UaStructureDefinition buildStructure(const TypeName& name, const KnownTypes& types,
                                                   UaString& fault);
[[nodiscard]] UaEnumDefinition buildEnumeration(const KnownType& type);
[[nodiscard]] UaOptionSetDefinition buildOptionSet(const KnownType& type);
/// The number on the wire of an enumeration or option set; Null for a width that no number has.
[[nodiscard]] OpcUa_BuiltInType wireTypeOf(const DictionaryType& type) noexcept;

} // namespace uabase
