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

#include <condition_variable>
#include <mutex>
#include <optional>
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

    /// Replaces what is loaded, once all is there; a load that fails leaves what an earlier good one brought,
    /// or what it has got itself when there was none. A type whose definition is broken costs that type only.
    /// While another thread loads, waits for it and has its result. link: of the connection, see needsLoad.
    UaStatus load(ServiceSettings settings, OpcUa_UInt32 link);
    void clear();
    /// For a look-up that finds nothing loaded. False after a load that failed, or each look-up would cost a
    /// round trip, until the link is another one.
    [[nodiscard]] bool needsLoad(OpcUa_UInt32 link) const;
    /// Whether the last load failed.
    [[nodiscard]] bool hasFailed() const;

    /// Null definitions for what is not known; types of namespace 0 are known without loading.
    [[nodiscard]] UaStructureDefinition structure(const UaNodeId& dataTypeOrEncodingId) const;
    [[nodiscard]] UaEnumDefinition enumeration(const UaNodeId& dataTypeId) const;
    [[nodiscard]] UaOptionSetDefinition optionSet(const UaNodeId& dataTypeId) const;

private:
    UaStatus loadGuarded(ServiceSettings& settings, UaTypeDefinitionStore& store) const;
    UaStatus loadAll(ServiceSettings& settings, UaTypeDefinitionStore& store) const;
    /// Leaves in types those that have no such attribute.
    UaStatus readDefinitions(ServiceSettings& settings, const DataTypeTree& tree,
                             std::vector<UaNodeId>& types, UaTypeDefinitionStore& store) const;

    UaSession& m_session;
    mutable std::mutex m_mutex;
    std::condition_variable m_loadEnded;
    bool m_loading = false;
    bool m_isLoaded = false;
    OpcUa_UInt32 m_clears = 0; ///< a load that one of them overtook belongs to nobody
    std::optional<OpcUa_UInt32> m_failedLink;
    UaStatus m_lastResult;
    UaTypeDefinitionStore m_loaded;
};

} // namespace UaClientSdk
