// Shortens the tables of services: the fields of the stack's structures follow one pattern of names.
#pragma once

#include <opcua/opcua_clientapi.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/services/asyncblockservice.h>
#include <uaclientsdk/uasessioncallback.h>

// The functions, types and items of a service; then come the results.
#define UA_SERVICE(Service, Items)                                                                           \
    OpcUa_ClientApi_##Service, OpcUa_ClientApi_Begin##Service, OpcUa_##Service##Request_EncodeableType,      \
        OpcUa_##Service##Response_EncodeableType, &OpcUa_##Service##Request::NoOf##Items,                    \
        &OpcUa_##Service##Request::Items
#define UA_RESULTS(Service) &OpcUa_##Service##Response::NoOfResults, &OpcUa_##Service##Response::Results

namespace UaClientSdk {

/// A completion that hands over what the service gave, for beginInBlocks.
template <typename Results>
auto completeWith(OpcUa_UInt32 transactionId,
                  void (UaSessionCallback::*completion)(OpcUa_UInt32, const UaStatus&, Results&,
                                                        UaDiagnosticInfos&))
{
    return [transactionId, completion](UaSessionCallback& callback, const UaStatus& status, Results& results,
                                       UaDiagnosticInfos& diagnosticInfos) {
        (callback.*completion)(transactionId, status, results, diagnosticInfos);
    };
}

} // namespace UaClientSdk
