#include <uabase/structures/uaenumdefinition.h>

#include <uabase/values/uastring.h>

#include <algorithm>

class UaEnumDefinitionPrivate
{
public:
    UaString name;
    UaNodeId dataTypeId;
    std::vector<UaEnumValue> values;

    const UaEnumValue* find(OpcUa_Int64 number) const noexcept
    {
        const auto found = std::find_if(values.begin(), values.end(),
                                        [number](const UaEnumValue& value) { return value.value == number; });
        return found == values.end() ? nullptr : &*found;
    }
};

UaEnumDefinition::UaEnumDefinition() noexcept = default;
UaEnumDefinition::UaEnumDefinition(const UaEnumDefinition&) noexcept = default;
UaEnumDefinition& UaEnumDefinition::operator=(const UaEnumDefinition&) noexcept = default;
UaEnumDefinition::~UaEnumDefinition() = default;

UaEnumDefinition::UaEnumDefinition(const UaString& name, const UaNodeId& dataTypeId)
{
    d.edit().name = name;
    d.edit().dataTypeId = dataTypeId;
}

UaString UaEnumDefinition::name() const noexcept
{
    return d ? d->name : UaString();
}

UaNodeId UaEnumDefinition::dataTypeId() const noexcept
{
    return d ? d->dataTypeId : UaNodeId();
}

void UaEnumDefinition::setName(const UaString& name)
{
    d.edit().name = name;
}

void UaEnumDefinition::setDataTypeId(const UaNodeId& dataTypeId)
{
    d.edit().dataTypeId = dataTypeId;
}

void UaEnumDefinition::addValue(const UaEnumValue& value)
{
    d.edit().values.push_back(value);
}

void UaEnumDefinition::addValue(OpcUa_Int64 value, const UaString& name)
{
    addValue(UaEnumValue{value, name, UaLocalizedText(UaString(), name), UaLocalizedText()});
}

int UaEnumDefinition::valueCount() const noexcept
{
    return d ? static_cast<int>(d->values.size()) : 0;
}

UaEnumValue UaEnumDefinition::valueAt(int index) const noexcept
{
    return index >= 0 && index < valueCount() ? d->values[static_cast<std::size_t>(index)] : UaEnumValue();
}

bool UaEnumDefinition::hasValue(OpcUa_Int64 value) const noexcept
{
    return d && d->find(value);
}

UaEnumValue UaEnumDefinition::value(OpcUa_Int64 value) const noexcept
{
    const UaEnumValue* found = d ? d->find(value) : nullptr;
    return found ? *found : UaEnumValue();
}

UaString UaEnumDefinition::valueName(OpcUa_Int64 value) const noexcept
{
    const UaEnumValue* found = d ? d->find(value) : nullptr;
    if (!found)
        return {};
    return found->name.isEmpty() ? found->displayName.text() : found->name;
}

bool UaEnumDefinition::valueOf(const UaString& name, OpcUa_Int64& value) const noexcept
{
    for (int i = 0; i < valueCount(); ++i) {
        const UaEnumValue& candidate = d->values[static_cast<std::size_t>(i)];
        if (candidate.name == name || (candidate.name.isEmpty() && candidate.displayName.text() == name)) {
            value = candidate.value;
            return true;
        }
    }
    return false;
}
