// What to query, OPC 10000-4, 5.9.3, and what comes back with the data.
#pragma once

#include <uabase/values/uaarrays.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uanodeid.h>

namespace UaClientSdk {

struct QueryContext
{
    UaNodeId viewId; ///< null: the whole address space
    UaDateTime viewTimestamp;
    OpcUa_UInt32 viewVersion = 0;
    UaContentFilterElements filter;         ///< empty: all instances of the types
    OpcUa_UInt32 maxDataSetsToReturn = 0;   ///< 0: the server decides
    OpcUa_UInt32 maxReferencesToReturn = 0; ///< 0: the server decides
};

/// The server's findings about the query itself; empty where it had none.
struct QueryFindings
{
    UaParsingResults parsingResults; ///< one for each node type
    UaContentFilterElementResults filterResults;
    UaDiagnosticInfos diagnosticInfos; ///< of the parsing results
};

} // namespace UaClientSdk
