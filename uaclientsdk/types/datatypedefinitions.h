// The data type definitions of a server, read from its address space.
#pragma once

#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/structures/uatypedefinitionstore.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/servicesettings.h>
#include <uaclientsdk/types/datatypetree.h>

#include <mutex>
#include <vector>

namespace UaClientSdk {

class UaSession;

/// Walks the tree of data types, a level in each service call, and reads the DataTypeDefinition attribute of
/// what the standard does not define (OPC 10000-3, 8.48 and 8.49); what has none is looked for in properties
/// and type dictionaries. Look-ups may come from any thread; the mutex guards the definitions and is not held
/// during a service call.
class DataTypeDefinitions
{
public:
    explicit DataTypeDefinitions(UaSession& session) : m_session(session) {}

    /// Replaces what is loaded. A type whose definition is broken costs that type only.
    UaStatus load(ServiceSettings settings);
    void clear();
    /// Also true after a load that failed: it is not tried again before clear, or each look-up would cost a
    /// round trip.
    [[nodiscard]] bool isLoaded() const;

    /// Null definitions for what is not known; types of namespace 0 are known without loading.
    [[nodiscard]] UaStructureDefinition structure(const UaNodeId& dataTypeOrEncodingId) const;
    [[nodiscard]] UaEnumDefinition enumeration(const UaNodeId& dataTypeId) const;
    [[nodiscard]] UaOptionSetDefinition optionSet(const UaNodeId& dataTypeId) const;

private:
    UaStatus loadAll(ServiceSettings& settings, UaTypeDefinitionStore& store) const;
    /// Leaves in types those that have no such attribute.
    UaStatus readDefinitions(ServiceSettings& settings, const DataTypeTree& tree,
                             std::vector<UaNodeId>& types, UaTypeDefinitionStore& store) const;

    UaSession& m_session;
    mutable std::mutex m_mutex;
    bool m_isLoaded = false;
    UaTypeDefinitionStore m_loaded;
};

} // namespace UaClientSdk
