// Services that are sent as they are: one request, one answer, nothing to split.
#pragma once

#include <uabase/values/uadatetime.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/calls/stackcall.h>
#include <uaclientsdk/services/servicenames.h>

namespace UaClientSdk {

/// prepare(request) sets the fields, borrowed from the caller; take(response) moves out what is wanted and
/// says whether it is in order. count stands for the request's array in the checks.
template <typename Service, typename Prepare, typename Take>
UaStatus callOnce(SessionContext& context, const ServiceNames& names, OpcUa_UInt32 count,
                  ServiceSettings& settings, const Prepare& prepare, const Take& take)
{
    TraceScope trace = traceService(context, names, count);
    UaStatus status = checkReady(context, names, count);
    if (!status.isBad()) {
        BorrowingRequest<Service> request;
        OwningResponse<Service> response;
        prepare(*request);
        status = callThroughGate<Service>(context, {}, settings, *request, *response);
        const UaStatus taken = status.isBad() ? status : take(*response);
        status = taken.isBad() ? taken : status;
    }
    return trace.ending(status);
}

} // namespace UaClientSdk
