// What an application is told of its sessions.
#pragma once

#include <uabase/values/uaarrays.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/historyresults.h>
#include <uaclientsdk/methodcall.h>
#include <uaclientsdk/uaclient.h>

namespace UaClientSdk {

/// The callee must outlive the session's connection. Status changes arrive on the session's thread, or on the
/// caller's during connect and disconnect; completions on threads of the shared pool. No lock of the session
/// is held, so a callback may call the session, but not disconnect it (BadInvalidState). What a callback
/// throws is traced.
class UaSessionCallback
{
public:
    virtual ~UaSessionCallback() = default;

    virtual void connectionStatusChanged(OpcUa_UInt32 clientConnectionId,
                                         UaClient::ServerStatus serverStatus) = 0;
    /// True overrides the error where the session allows it (clientSideError).
    virtual bool connectError(OpcUa_UInt32 /*clientConnectionId*/,
                              UaClient::ConnectServiceType /*serviceType*/, const UaStatus& /*error*/,
                              bool /*clientSideError*/)
    {
        return false;
    }
    /// A TLS certificate that no list trusts. True goes on with it.
    virtual bool sslCertificateValidationFailed(OpcUa_UInt32 /*clientConnectionId*/,
                                                const UaStatus& /*status*/,
                                                const UaByteString& /*certificate*/)
    {
        return false;
    }

    /// Completions of the asynchronous services, one for each call that was sent, but for those that a
    /// disconnect cuts short: they are dropped. Several may run at once, in any order. result is that of the
    /// service; the arrays are as those of the synchronous form, and the callee may move them away.
    /// clang-format off
    virtual void readComplete(OpcUa_UInt32 /*transactionId*/, const UaStatus& /*result*/,
                              UaDataValues& /*values*/, UaDiagnosticInfos& /*diagnosticInfos*/)
    {
    }
    virtual void writeComplete(OpcUa_UInt32 /*transactionId*/, const UaStatus& /*result*/,
                               UaStatusCodeArray& /*results*/, UaDiagnosticInfos& /*diagnosticInfos*/)
    {
    }
    virtual void callComplete(OpcUa_UInt32 /*transactionId*/, const UaStatus& /*result*/,
                              CallOut& /*callOut*/)
    {
    }
    virtual void addNodesComplete(OpcUa_UInt32 /*transactionId*/, const UaStatus& /*result*/,
                                  UaAddNodesResults& /*results*/, UaDiagnosticInfos& /*diagnosticInfos*/)
    {
    }
    virtual void addReferencesComplete(OpcUa_UInt32 /*transactionId*/, const UaStatus& /*result*/,
                                       UaStatusCodeArray& /*results*/, UaDiagnosticInfos& /*diagnosticInfos*/)
    {
    }
    virtual void deleteNodesComplete(OpcUa_UInt32 /*transactionId*/, const UaStatus& /*result*/,
                                     UaStatusCodeArray& /*results*/, UaDiagnosticInfos& /*diagnosticInfos*/)
    {
    }
    virtual void deleteReferencesComplete(OpcUa_UInt32 /*transactionId*/, const UaStatus& /*result*/,
                                          UaStatusCodeArray& /*results*/,
                                          UaDiagnosticInfos& /*diagnosticInfos*/)
    {
    }
    virtual void historyReadRawModifiedComplete(OpcUa_UInt32 /*transactionId*/, const UaStatus& /*result*/,
                                                HistoryReadDataResults& /*results*/,
                                                UaDiagnosticInfos& /*diagnosticInfos*/)
    {
    }
    virtual void historyReadProcessedComplete(OpcUa_UInt32 /*transactionId*/, const UaStatus& /*result*/,
                                              HistoryReadDataResults& /*results*/,
                                              UaDiagnosticInfos& /*diagnosticInfos*/)
    {
    }
    virtual void historyReadAtTimeComplete(OpcUa_UInt32 /*transactionId*/, const UaStatus& /*result*/,
                                           HistoryReadDataResults& /*results*/,
                                           UaDiagnosticInfos& /*diagnosticInfos*/)
    {
    }
    virtual void historyReadEventComplete(OpcUa_UInt32 /*transactionId*/, const UaStatus& /*result*/,
                                          HistoryReadEventResults& /*results*/,
                                          UaDiagnosticInfos& /*diagnosticInfos*/)
    {
    }
    virtual void historyUpdateDataComplete(OpcUa_UInt32 /*transactionId*/, const UaStatus& /*result*/,
                                           UaHistoryUpdateResults& /*results*/,
                                           UaDiagnosticInfos& /*diagnosticInfos*/)
    {
    }
    virtual void historyDeleteRawModifiedComplete(OpcUa_UInt32 /*transactionId*/, const UaStatus& /*result*/,
                                                  UaHistoryUpdateResults& /*results*/,
                                                  UaDiagnosticInfos& /*diagnosticInfos*/)
    {
    }
    virtual void historyDeleteAtTimeComplete(OpcUa_UInt32 /*transactionId*/, const UaStatus& /*result*/,
                                             UaHistoryUpdateResults& /*results*/,
                                             UaDiagnosticInfos& /*diagnosticInfos*/)
    {
    }
    virtual void historyUpdateEventsComplete(OpcUa_UInt32 /*transactionId*/, const UaStatus& /*result*/,
                                             UaHistoryUpdateResults& /*results*/,
                                             UaDiagnosticInfos& /*diagnosticInfos*/)
    {
    }
    virtual void historyDeleteEventsComplete(OpcUa_UInt32 /*transactionId*/, const UaStatus& /*result*/,
                                             UaHistoryUpdateResults& /*results*/,
                                             UaDiagnosticInfos& /*diagnosticInfos*/)
    {
    }

    /// A load of the server's data type definitions, which goes on beside the connection, has come to its
    /// end; on a thread of its own. When the result is good, values that were not decoded may be now; when it
    /// is bad, what was known before stays.
    virtual void dataTypesLoaded(OpcUa_UInt32 /*clientConnectionId*/, const UaStatus& /*result*/) {}
    // clang-format on
};

} // namespace UaClientSdk
