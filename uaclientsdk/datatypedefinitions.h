// The data type definitions of a server, read from its address space.
#pragma once

#include <map>
#include <mutex>
#include <vector>

#include <uabase/uaarrays.h>
#include <uabase/uadatatypedictionary.h>
#include <uabase/uastatus.h>
#include <uaclientsdk/servicesettings.h>

namespace UaClientSdk {

class UaSession;

// Walks the tree of data types, a level in each service call, and reads the DataTypeDefinition attribute of
// what the standard does not define (OPC 10000-3, 8.48 and 8.49). Look-ups may come from any thread; the
// mutex guards the maps and is not held during a service call.
class DataTypeDefinitions
{
public:
    explicit DataTypeDefinitions(UaSession& session) : m_session(session) {}

    // Replaces what is loaded. A type whose definition is broken costs that type only.
    UaStatus load(ServiceSettings settings);
    void clear();
    // Also true after a load that failed: it is not tried again before clear, or each look-up would cost a
    // round trip.
    [[nodiscard]] bool isLoaded() const;

    // Null definitions for what is not known; types of namespace 0 are known without loading.
    [[nodiscard]] UaStructureDefinition structure(const UaNodeId& dataTypeOrEncodingId) const;
    [[nodiscard]] UaEnumDefinition enumeration(const UaNodeId& dataTypeId) const;
    [[nodiscard]] UaOptionSetDefinition optionSet(const UaNodeId& dataTypeId) const;

private:
    struct DataType
    {
        UaNodeId id;
        UaNodeId parent;
        UaString name;
    };
    using TypeTree = std::map<UaNodeId, DataType>;
    struct Loaded
    {
        std::map<UaNodeId, UaStructureDefinition> structures; // by data type
        std::map<UaNodeId, UaNodeId> encodings;               // binary encoding to data type
        std::map<UaNodeId, UaEnumDefinition> enumerations;
        std::map<UaNodeId, UaOptionSetDefinition> optionSets;
    };

    UaStatus browseTypes(ServiceSettings& settings, TypeTree& types) const;
    UaStatus browseLevel(ServiceSettings& settings, const std::vector<UaNodeId>& level, TypeTree& types,
                         std::vector<UaNodeId>& next) const;
    UaStatus readDefinitions(ServiceSettings& settings, const TypeTree& types, Loaded& loaded) const;
    static void addDefinition(const DataType& type, const TypeTree& types, const OpcUa_DataValue& value,
                              Loaded& loaded);
    static void addStructure(const DataType& type, const TypeTree& types,
                             const OpcUa_StructureDefinition& attribute, Loaded& loaded);
    static void addEnumeration(const DataType& type, const TypeTree& types,
                               const OpcUa_EnumDefinition& attribute, Loaded& loaded);
    static OpcUa_BuiltInType wireType(const UaNodeId& dataTypeId, const TypeTree& types);

    UaSession& m_session;
    mutable std::mutex m_mutex;
    bool m_isLoaded = false;
    Loaded m_loaded;
};

} // namespace UaClientSdk
