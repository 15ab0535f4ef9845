// The tree of a server's data types.
#pragma once

#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/servicesettings.h>

#include <map>
#include <vector>

namespace UaClientSdk {

class UaSession;

struct DataType
{
    UaNodeId id;
    UaNodeId parent;
    UaString name;
};

/// Which types there are and what each derives from. Read once, then only looked at.
class DataTypeTree
{
public:
    /// A level in each service call.
    UaStatus browse(UaSession& session, ServiceSettings& settings);
    const std::map<UaNodeId, DataType>& types() const { return m_types; }
    /// The built-in type that travels for a data type; Null when nobody knows.
    [[nodiscard]] OpcUa_BuiltInType wireType(const UaNodeId& dataTypeId) const;
    /// Whether it is base or derives from it.
    [[nodiscard]] bool derivesFrom(const UaNodeId& dataTypeId, const UaNodeId& base) const;

private:
    UaStatus browseLevel(UaSession& session, ServiceSettings& settings, std::vector<UaNodeId>& level);

    std::map<UaNodeId, DataType> m_types;
};

} // namespace UaClientSdk
