// Data types of servers that know no DataTypeDefinition attribute.
#pragma once

#include <uabase/structures/uatypedefinitionstore.h>
#include <uabase/structures/uatypedictionary.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/types/datatypetree.h>

#include <map>
#include <vector>

namespace UaClientSdk {

class UaSession;

/// Takes what the properties EnumStrings, EnumValues and OptionSetValues and the XML type dictionaries say
/// about some types. Each step is one service call for all types. What is broken is left out and named in the
/// trace. One object serves one load.
class OlderDataTypes
{
public:
    OlderDataTypes(UaSession& session, const DataTypeTree& tree, UaTypeDefinitionStore& store)
        : m_session(session), m_tree(tree), m_store(store)
    {
    }

    UaStatus load(ServiceSettings& settings, const std::vector<UaNodeId>& types);

private:
    enum class Property { EnumStrings, EnumValues, OptionSetValues };
    struct PropertyNode
    {
        UaNodeId dataType;
        Property property;
        UaNodeId node;
    };
    /// A structure on its way to its description in a dictionary.
    struct Described
    {
        UaNodeId dataType;
        UaNodeId encoding;
        UaNodeId description;
        UaNodeId dictionary;
        UaString name; ///< in the dictionary
    };

    UaStatus findMembers(ServiceSettings& settings, const std::vector<UaNodeId>& types);
    void addMember(const UaNodeId& dataType, const OpcUa_ReferenceDescription& reference);
    UaStatus readProperties(ServiceSettings& settings);
    void addProperty(const PropertyNode& property, const UaVariant& value);
    void addEnumeration(const UaNodeId& dataType, const std::vector<UaEnumValue>& values);
    void addOptionSet(const UaNodeId& dataType, const std::vector<UaEnumValue>& values);
    UaStatus findDescriptions(ServiceSettings& settings);
    UaStatus findDictionaries(ServiceSettings& settings);
    UaStatus readDictionaries(ServiceSettings& settings, const std::vector<UaNodeId>& nodes);
    UaStatus readImports(ServiceSettings& settings);
    void nameTypes();
    void defineAll();
    UaStatus readValues(ServiceSettings& settings, const std::vector<UaNodeId>& nodes,
                        std::vector<UaVariant>& values) const;

    UaSession& m_session;
    const DataTypeTree& m_tree;
    UaTypeDefinitionStore& m_store;
    std::vector<PropertyNode> m_properties;
    std::vector<Described> m_described;
    std::map<UaNodeId, UaString> m_namespaces; // of the dictionaries read; null: broken
    UaTypeDictionary m_dictionary;
};

} // namespace UaClientSdk
