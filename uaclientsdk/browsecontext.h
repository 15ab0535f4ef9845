// What to browse and how, OPC 10000-4, 5.8.2.
#pragma once

#include <opcua/opcua_types.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>

namespace UaClientSdk {

struct BrowseContext
{
    UaNodeId viewId; ///< null: the whole address space
    UaDateTime viewTimestamp;
    OpcUa_UInt32 viewVersion = 0;
    OpcUa_BrowseDirection browseDirection = OpcUa_BrowseDirection_Forward;
    UaNodeId referenceTypeId; ///< null: all
    bool includeSubtypes = true;
    OpcUa_UInt32 nodeClassMask = 0;         ///< 0: all classes
    OpcUa_UInt32 resultMask = 63;           ///< all fields
    OpcUa_UInt32 maxReferencesToReturn = 0; ///< 0: the server decides
};

} // namespace UaClientSdk
