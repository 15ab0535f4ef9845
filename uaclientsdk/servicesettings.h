// What a caller may say about one service call.
#pragma once

#include <uabase/values/uaarrays.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastring.h>

namespace UaClientSdk {

/// Plain record; not thread-safe, one for each call. responseTime is filled by synchronous calls.
struct ServiceSettings
{
    OpcUa_UInt32 callTimeout = 10000;   ///< ms; also the request's timeout hint
    OpcUa_UInt32 returnDiagnostics = 0; ///< mask of OPC 10000-4, 7.32
    UaString auditEntryId;              ///< sent only when not empty
    UaStringArray localeIds;
    UaString purpose; ///< what the call is for, as guard and observer of the session see it; never sent
    OpcUa_UInt32 requestHandle = 0; ///< 0: the session counts
    UaDateTime requestTime;
    UaDateTime responseTime;
};

} // namespace UaClientSdk
