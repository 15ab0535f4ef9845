// What an application is told of its sessions.
#pragma once

#include <uabase/uaarrays.h>
#include <uabase/uabytestring.h>
#include <uabase/uastatus.h>
#include <uaclientsdk/uaclient.h>

namespace UaClientSdk {

// The callee must outlive the session's connection. Status changes arrive on the session's thread, or on the
// caller's during connect and disconnect; completions on threads of the shared pool. No lock of the session
// is held, so a callback may call the session, but not disconnect it.
class UaSessionCallback
{
public:
    virtual ~UaSessionCallback() = default;

    virtual void connectionStatusChanged(OpcUa_UInt32 clientConnectionId,
                                         UaClient::ServerStatus serverStatus) = 0;
    // True overrides the error where the session allows it (clientSideError).
    virtual bool connectError(OpcUa_UInt32 /*clientConnectionId*/,
                              UaClient::ConnectServiceType /*serviceType*/, const UaStatus& /*error*/,
                              bool /*clientSideError*/)
    {
        return false;
    }
    // A TLS certificate that no list trusts. True goes on with it.
    virtual bool sslCertificateValidationFailed(OpcUa_UInt32 /*clientConnectionId*/,
                                                const UaStatus& /*status*/,
                                                const UaByteString& /*certificate*/)
    {
        return false;
    }
};

} // namespace UaClientSdk
