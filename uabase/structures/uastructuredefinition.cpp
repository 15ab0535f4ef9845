#include <uabase/structures/uastructuredefinition.h>

#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>

#include <utility>
#include <vector>

class UaStructureDefinitionPrivate
{
public:
    UaString name;
    UaNodeId dataTypeId;
    UaNodeId binaryEncodingId;
    UaNodeId baseId;
    bool isUnion = false;
    bool isOptionSet = false;
    bool hasOptionalFields = false;
    std::vector<UaStructureField> fields;
    std::shared_ptr<const uabase::StructureLayout> layout;
    std::vector<OpcUa_Byte> types; // as many as there are fields while all are plain
};

namespace {

bool isPlain(const UaStructureField& field) noexcept
{
    const OpcUa_BuiltInType type = field.builtInType();
    const bool isFixed = (type >= OpcUaType_Boolean && type <= OpcUaType_Double) ||
                         type == OpcUaType_DateTime || type == OpcUaType_StatusCode;
    return isFixed && field.valueRank() < 0 && !field.isOptional();
}

} // namespace

UaStructureDefinition::UaStructureDefinition() noexcept = default;
UaStructureDefinition::UaStructureDefinition(const UaStructureDefinition&) noexcept = default;
UaStructureDefinition& UaStructureDefinition::operator=(const UaStructureDefinition&) noexcept = default;
UaStructureDefinition::~UaStructureDefinition() = default;

UaStructureDefinition::UaStructureDefinition(const UaString& name, const UaNodeId& dataTypeId,
                                             const UaNodeId& binaryEncodingId)
{
    UaStructureDefinitionPrivate& content = d.edit();
    content.name = name;
    content.dataTypeId = dataTypeId;
    content.binaryEncodingId = binaryEncodingId;
}

// clang-format off
UaString UaStructureDefinition::name() const noexcept { return d ? d->name : UaString(); }
UaNodeId UaStructureDefinition::dataTypeId() const noexcept { return d ? d->dataTypeId : UaNodeId(); }
UaNodeId UaStructureDefinition::binaryEncodingId() const noexcept { return d ? d->binaryEncodingId : UaNodeId(); }
UaNodeId UaStructureDefinition::baseId() const noexcept { return d ? d->baseId : UaNodeId(); }
bool UaStructureDefinition::isUnion() const noexcept { return d && d->isUnion; }
bool UaStructureDefinition::isOptionSet() const noexcept { return d && d->isOptionSet; }
bool UaStructureDefinition::hasOptionalFields() const noexcept { return d && d->hasOptionalFields; }
int UaStructureDefinition::fieldCount() const noexcept { return d ? static_cast<int>(d->fields.size()) : 0; }

void UaStructureDefinition::setName(const UaString& name) { d.edit().name = name; }
void UaStructureDefinition::setDataTypeId(const UaNodeId& dataTypeId) { d.edit().dataTypeId = dataTypeId; }
void UaStructureDefinition::setBinaryEncodingId(const UaNodeId& binaryEncodingId) { d.edit().binaryEncodingId = binaryEncodingId; }
void UaStructureDefinition::setBaseId(const UaNodeId& baseId) { d.edit().baseId = baseId; }
void UaStructureDefinition::setUnion(bool isUnion) { d.edit().isUnion = isUnion; }
void UaStructureDefinition::setOptionSet(bool isOptionSet) { d.edit().isOptionSet = isOptionSet; }
void UaStructureDefinition::setHasOptionalFields(bool hasOptionalFields) { d.edit().hasOptionalFields = hasOptionalFields; }
// clang-format on

const UaStructureField& UaStructureDefinition::fieldAt(int index) const noexcept
{
    return d->fields[static_cast<std::size_t>(index)];
}

std::span<const OpcUa_Byte> UaStructureDefinition::plainTypes() const noexcept
{
    if (!d || d->isUnion || d->hasOptionalFields || d->layout || d->types.size() != d->fields.size())
        return {};
    return d->types;
}

const uabase::StructureLayout* UaStructureDefinition::layout() const noexcept
{
    return d ? d->layout.get() : nullptr;
}

void UaStructureDefinition::setLayout(std::shared_ptr<const uabase::StructureLayout> layout)
{
    d.edit().layout = std::move(layout);
}

UaStructureField UaStructureDefinition::field(int index) const noexcept
{
    return index >= 0 && index < fieldCount() ? d->fields[static_cast<std::size_t>(index)]
                                              : UaStructureField();
}

int UaStructureDefinition::fieldIndex(const UaString& name) const noexcept
{
    for (int i = 0; i < fieldCount(); ++i)
        if (d->fields[static_cast<std::size_t>(i)].name() == name)
            return i;
    return -1;
}

void UaStructureDefinition::addField(const UaStructureField& field)
{
    UaStructureDefinitionPrivate& content = d.edit();
    if (isPlain(field) && content.types.size() == content.fields.size())
        content.types.push_back(static_cast<OpcUa_Byte>(field.builtInType()));
    content.fields.push_back(field);
    content.hasOptionalFields |= field.isOptional();
}

void UaStructureDefinition::setField(int index, const UaStructureField& field)
{
    if (index < 0 || index >= fieldCount())
        return;
    UaStructureDefinitionPrivate& content = d.edit();
    const auto position = static_cast<std::size_t>(index);
    content.fields[position] = field;
    if (!isPlain(field) && content.types.size() > position)
        content.types.resize(position); // an earlier end than the last field: not plain for good
    else if (content.types.size() > position)
        content.types[position] = static_cast<OpcUa_Byte>(field.builtInType());
    content.hasOptionalFields |= field.isOptional();
}
