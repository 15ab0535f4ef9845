// Services that are sent as they are: one request, one answer, nothing to split.
#pragma once

#include <uabase/system/uatrace.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/calls/stackcall.h>
#include <uaclientsdk/services/servicenames.h>

namespace UaClientSdk {

/// prepare(request) sets the fields, borrowed from the caller; take(response) moves out what is wanted and
/// says whether it is in order. count stands for the request's array in the checks.
template <typename Request, typename Response, typename Prepare, typename Take>
UaStatus callOnce(SessionContext& context, const ServiceNames& names, OpcUa_UInt32 count,
                  OpcUa_StatusCode (*function)(OpcUa_Channel, const Request*, Response*),
                  const OpcUa_EncodeableType& requestType, const OpcUa_EncodeableType& responseType,
                  ServiceSettings& settings, const Prepare& prepare, const Take& take)
{
    UaTrace::tInOut("--> UaSession::%s count=%u [Session=%u]", names.method, count, context.traceId);
    UaStatus status = checkReady(context, names, count);
    if (!status.isBad()) {
        BorrowingRequest<Request> request(requestType);
        Encodeable<Response> response(responseType);
        {
            SessionLock lock(context.mutex);
            context.fillRequestHeaderLocked(settings, request->RequestHeader);
        }
        settings.requestTime = UaDateTime(request->RequestHeader.Timestamp);
        prepare(*request);
        context.mutex.assertUnlocked();
        status = UaStatus(callStack(names.stackName, function, context.channel, *request, *response));
        settings.responseTime = UaDateTime(response->ResponseHeader.Timestamp);
        const UaStatus taken = status.isBad() ? status : take(*response);
        status = taken.isBad() ? taken : status;
    }
    UaTrace::tInOut("<-- UaSession::%s [ret=0x%lx]", names.method,
                    static_cast<unsigned long>(status.statusCode()));
    return status;
}

} // namespace UaClientSdk
