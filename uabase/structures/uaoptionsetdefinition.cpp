#include <uabase/structures/uaoptionsetdefinition.h>

#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>

#include <string>
#include <string_view>

class UaOptionSetDefinitionPrivate
{
public:
    UaEnumDefinition bits;
    UaNodeId binaryEncodingId;
    OpcUa_BuiltInType builtInType = OpcUaType_UInt32;
};

UaOptionSetDefinition::UaOptionSetDefinition() noexcept = default;
UaOptionSetDefinition::UaOptionSetDefinition(const UaOptionSetDefinition&) noexcept = default;
UaOptionSetDefinition& UaOptionSetDefinition::operator=(const UaOptionSetDefinition&) noexcept = default;
UaOptionSetDefinition::~UaOptionSetDefinition() = default;

UaOptionSetDefinition::UaOptionSetDefinition(const UaString& name, const UaNodeId& dataTypeId,
                                             OpcUa_BuiltInType builtInType)
{
    d.edit().bits = UaEnumDefinition(name, dataTypeId);
    d.edit().builtInType = builtInType;
}

UaString UaOptionSetDefinition::name() const noexcept
{
    return d ? d->bits.name() : UaString();
}

UaNodeId UaOptionSetDefinition::dataTypeId() const noexcept
{
    return d ? d->bits.dataTypeId() : UaNodeId();
}

UaNodeId UaOptionSetDefinition::binaryEncodingId() const noexcept
{
    return d ? d->binaryEncodingId : UaNodeId();
}

OpcUa_BuiltInType UaOptionSetDefinition::builtInType() const noexcept
{
    return d ? d->builtInType : OpcUaType_Null;
}

void UaOptionSetDefinition::setBinaryEncodingId(const UaNodeId& encodingId)
{
    d.edit().binaryEncodingId = encodingId;
}

void UaOptionSetDefinition::addBit(const UaEnumValue& bit)
{
    d.edit().bits.addValue(bit);
}

void UaOptionSetDefinition::addBit(OpcUa_Int64 bit, const UaString& name)
{
    d.edit().bits.addValue(bit, name);
}

UaEnumValue UaOptionSetDefinition::bitAt(int index) const noexcept
{
    return d ? d->bits.valueAt(index) : UaEnumValue();
}

int UaOptionSetDefinition::bitCount() const noexcept
{
    return d ? d->bits.valueCount() : 0;
}

bool UaOptionSetDefinition::bitOf(const UaString& name, OpcUa_Int64& bit) const noexcept
{
    return d && d->bits.valueOf(name, bit);
}

UaString UaOptionSetDefinition::bitName(OpcUa_Int64 bit) const noexcept
{
    return d ? d->bits.valueName(bit) : UaString();
}

UaString UaOptionSetDefinition::toString(OpcUa_UInt64 value, std::string_view separator) const
{
    std::string text;
    for (int bit = 0; bit < 64; ++bit) {
        if (!(value >> bit & 1u))
            continue;
        if (!text.empty())
            text += separator;
        const UaString name = bitName(bit);
        if (name.isEmpty())
            text += std::to_string(bit);
        else
            text += name.view();
    }
    return UaString(text);
}
