// The value of an option set: bits with names, in the structured form also which of them are valid.
#pragma once

#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <string_view>
#include <vector>

/// The value is a number, or in the structured form two byte strings of equal length.
class UaGenericOptionSetValue
{
public:
    UaGenericOptionSetValue() noexcept = default;
    explicit UaGenericOptionSetValue(const UaOptionSetDefinition& definition) : m_definition(definition) {}

    /// An unsigned number of the definition's type, or an ExtensionObject of the structured form.
    /// BadTypeMismatch, BadDecodingError; the value is then null.
    UaStatusCode decode(const UaVariant& value, const UaOptionSetDefinition& definition);
    /// The reverse. BadInvalidState when null.
    UaStatusCode encode(UaVariant& value) const;

    bool isNull() const noexcept { return m_definition.isNull(); }
    const UaOptionSetDefinition& definition() const noexcept { return m_definition; }
    bool isSet(OpcUa_UInt32 bit) const noexcept;
    bool isValid(OpcUa_UInt32 bit) const noexcept; ///< always true for numbers within the type
    /// BadOutOfRange when the type has no such bit (structured form: 64 KiB of bits at most).
    UaStatusCode setBit(OpcUa_UInt32 bit, bool set, bool valid = true);
    /// The lowest 64 bits.
    OpcUa_UInt64 value() const noexcept;
    /// Names of the set and valid bits, joined by separator.
    [[nodiscard]] UaString toString(std::string_view separator = " | ") const;

private:
    UaOptionSetDefinition m_definition;
    std::vector<OpcUa_Byte> m_bits;
    std::vector<OpcUa_Byte> m_valid;
};
