#include <uabase/structures/uatypedictionary.h>

#include <uabase/structures/uastructuredefinition.h>
#include <uabase/structures/uatypedictionary_p.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>

namespace {

// Of all documents together: a server may bring any number of them.
constexpr std::size_t maxTypes = 50000;
constexpr std::size_t maxFields = 1000000;
constexpr OpcUa_UInt16 ownNamespace = 65535;

} // namespace

class UaTypeDictionaryPrivate
{
public:
    uabase::KnownTypes types;
    std::set<UaString> namespaces;
    std::set<UaString> imports;
    UaString targetNamespace;
};

UaTypeDictionary::UaTypeDictionary() : d(std::make_unique<UaTypeDictionaryPrivate>()) {}
UaTypeDictionary::~UaTypeDictionary() = default;

bool UaTypeDictionary::addDocument(std::span<const unsigned char> xml, UaString& error)
{
    uabase::DictionaryDocument document;
    if (!uabase::parseDictionary(xml, document, error))
        return false;
    if (d->types.size() + document.types.size() > maxTypes) {
        error = "too many types";
        return false;
    }
    const UaString& uri = document.targetNamespace;
    for (uabase::DictionaryType& type : document.types) {
        const TypeName name{uri, type.name};
        // an id of our own until the server's is known: nested structures are looked up by it
        const UaNodeId id(uri + UaString("#") + type.name, ownNamespace);
        d->types.try_emplace(name, uabase::KnownType{std::move(type), id, {}, {}, {}});
    }
    d->targetNamespace = uri;
    d->namespaces.insert(uri);
    d->imports.insert(document.imports.begin(), document.imports.end());
    return true;
}

UaString UaTypeDictionary::targetNamespace() const
{
    return d->targetNamespace;
}

std::set<UaString> UaTypeDictionary::missingNamespaces() const
{
    std::set<UaString> missing;
    for (const UaString& uri : d->imports)
        if (!d->namespaces.contains(uri) && uri.view() != schemaNamespace && uri.view() != standardNamespace)
            missing.insert(uri);
    return missing;
}

bool UaTypeDictionary::hasType(const TypeName& type) const
{
    return d->types.contains(type);
}

std::vector<UaTypeDictionary::TypeName> UaTypeDictionary::types() const
{
    std::vector<TypeName> names;
    for (const auto& [name, type] : d->types)
        names.push_back(name);
    return names;
}

void UaTypeDictionary::setIds(const TypeName& type, const UaNodeId& dataTypeId,
                              const UaNodeId& binaryEncodingId)
{
    const auto found = d->types.find(type);
    if (found == d->types.end())
        return;
    found->second.dataTypeId = dataTypeId;
    found->second.binaryEncodingId = binaryEncodingId;
}

UaNodeId UaTypeDictionary::dataTypeId(const TypeName& type) const
{
    const auto found = d->types.find(type);
    return found == d->types.end() ? UaNodeId() : found->second.dataTypeId;
}

void UaTypeDictionary::define(UaTypeDefinitionStore& store, std::vector<Fault>& faults)
{
    for (auto& [name, known] : d->types) {
        if (!known.type.fault.isNull() || known.type.kind == uabase::DictionaryType::Structure)
            continue;
        if (uabase::wireTypeOf(known.type) == OpcUaType_Null &&
            known.type.kind != uabase::DictionaryType::Opaque)
            known.type.fault = "no number has this many bits";
        else if (known.type.kind == uabase::DictionaryType::Enumeration)
            known.enumDefinition = uabase::buildEnumeration(known);
        else if (known.type.kind == uabase::DictionaryType::OptionSet)
            known.optionSetDefinition = uabase::buildOptionSet(known);
        store.add(known.enumDefinition);
        store.add(known.optionSetDefinition);
    }
    std::size_t fields = 0;
    for (const auto& [name, known] : d->types) {
        UaString fault = known.type.fault;
        if (fault.isNull() && known.type.kind == uabase::DictionaryType::Structure) {
            const UaStructureDefinition definition =
                fields > maxFields ? UaStructureDefinition() : uabase::buildStructure(name, d->types, fault);
            fields += static_cast<std::size_t>(definition.fieldCount());
            if (definition.isNull() && fault.isNull())
                fault = "too many fields in all types";
            store.add(definition);
        }
        if (!fault.isNull())
            faults.push_back({name, fault});
    }
}
