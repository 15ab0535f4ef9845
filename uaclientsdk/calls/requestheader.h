// What every request says of itself.
#pragma once

#include <opcua/opcua_types.h>
#include <uaclientsdk/servicesettings.h>

namespace UaClientSdk {

/// Fills an initialised header, all but the token of a session; the caller clears it.
inline void fillRequestHeader(const ServiceSettings& settings, OpcUa_UInt32 requestHandle,
                              OpcUa_RequestHeader& header)
{
    header.Timestamp = OpcUa_DateTime_UtcNow();
    header.TimeoutHint = settings.callTimeout;
    header.ReturnDiagnostics = settings.returnDiagnostics;
    header.RequestHandle = requestHandle;
    if (!settings.auditEntryId.isEmpty())
        static_cast<void>(settings.auditEntryId.copyTo(&header.AuditEntryId)); // else the call has none
}

} // namespace UaClientSdk
