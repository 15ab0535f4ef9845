// What a caller may say about one service call.
#pragma once

#include <uabase/values/uaarrays.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastring.h>

#include <memory>

namespace UaClientSdk {

class ServiceObserver;

/// What a caller has to say to guard and observer of the session beyond the purpose; they know of which kind
/// it is. Never changed once it is in the settings: any thread may look at it.
struct ServiceNote
{
    virtual ~ServiceNote() = default;
};

/// Plain record; not thread-safe, one for each call. responseTime is filled by synchronous calls.
struct ServiceSettings
{
    OpcUa_UInt32 callTimeout = 10000;   ///< ms; also the request's timeout hint
    OpcUa_UInt32 returnDiagnostics = 0; ///< mask of OPC 10000-4, 7.32
    UaString auditEntryId;              ///< sent only when not empty
    UaStringArray localeIds;
    UaString purpose; ///< what the call is for, as guard and observer of the session see it; never sent
    std::shared_ptr<const ServiceNote> note;   ///< for guard and observer, too; never sent
    std::shared_ptr<ServiceObserver> observer; ///< sees this call, besides that of the session; null for none
    OpcUa_UInt32 requestHandle = 0;            ///< 0: the session counts
    UaDateTime requestTime;
    UaDateTime responseTime;
};

} // namespace UaClientSdk
