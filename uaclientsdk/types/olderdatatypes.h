// Data types of servers that know no DataTypeDefinition attribute.
#pragma once

#include <uabase/structures/uatypedefinitionstore.h>
#include <uabase/structures/uatypedictionary.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/servicesettings.h>
#include <uaclientsdk/types/datatypetree.h>

#include <map>
#include <set>
#include <vector>

namespace UaClientSdk {

class UaSession;

/// Takes what the properties EnumStrings, EnumValues and OptionSetValues and the XML type dictionaries say
/// about some types. Each step is one service call for all types. What is broken is left out and named in the
/// trace. One object serves one load.
class OlderDataTypes
{
public:
    OlderDataTypes(UaSession& session, ServiceSettings& settings, const DataTypeTree& tree,
                   UaTypeDefinitionStore& store)
        : m_session(session), m_settings(settings), m_tree(tree), m_store(store)
    {
    }

    UaStatus load(const std::vector<UaNodeId>& types);

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

    class Steps;
    /// The namespace that the server tells of a dictionary.
    struct NamespaceOf
    {
        UaNodeId dictionary;
        UaString uri;
    };

    UaStatus findMembers(const std::vector<UaNodeId>& types);
    void addMember(const UaNodeId& dataType, const OpcUa_ReferenceDescription& reference);
    UaStatus readProperties();
    void addProperty(const PropertyNode& property, const UaVariant& value);
    void addEnumeration(const UaNodeId& dataType, const std::vector<UaEnumValue>& values);
    void addOptionSet(const UaNodeId& dataType, const std::vector<UaEnumValue>& values);
    UaStatus findDescriptions();
    UaStatus findDictionaries();
    UaStatus readDictionaries(const std::vector<UaNodeId>& nodes);
    [[nodiscard]] std::vector<UaNodeId> describingDictionaries() const;
    UaStatus readImports();
    /// Empty when a step has gone wrong, here or before.
    [[nodiscard]] std::vector<UaNodeId> dictionariesOfServer(Steps& steps) const;
    [[nodiscard]] std::vector<NamespaceOf> namespacesOf(const std::vector<UaNodeId>& dictionaries,
                                                        Steps& steps) const;
    [[nodiscard]] std::vector<UaNodeId> wantedDictionaries(const std::set<UaString>& missing,
                                                           const std::vector<NamespaceOf>& candidates) const;
    void nameTypes();
    void defineAll();
    UaStatus readValues(const std::vector<UaNodeId>& nodes, std::vector<UaVariant>& values) const;

    UaSession& m_session;
    ServiceSettings& m_settings;
    const DataTypeTree& m_tree;
    UaTypeDefinitionStore& m_store;
    std::vector<PropertyNode> m_properties;
    std::vector<Described> m_described;
    std::map<UaNodeId, UaString> m_namespaces; // of the dictionaries read; null: broken
    UaTypeDictionary m_dictionary;
};

} // namespace UaClientSdk
