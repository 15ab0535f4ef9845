// Services that take one array and answer with another: checks, splitting, merging and trace, written once.
#pragma once

#include <algorithm>
#include <utility>

#include <opcua/opcua_statuscodes.h>
#include <uabase/uaarrays.h>
#include <uabase/uastatus.h>
#include <uabase/uatrace.h>
#include <uaclientsdk/sessioncontext.h>
#include <uaclientsdk/stackcall.h>

namespace UaClientSdk {

// Names of one service in the trace and its status without a connection.
struct ServiceNames
{
    const char* method;    // "read"
    const char* stackName; // "Read"
    const char* emptyText; // "Empty read array passed"
    OpcUa_StatusCode notConnected = OpcUa_BadConnectionClosed;
    const char* notConnectedText = "ret=OpcUa_BadConnectionClosed";
};

// The checks that every service begins with. count is that of its request array.
inline UaStatus checkReady(const SessionContext& context, const ServiceNames& names, OpcUa_UInt32 count)
{
    SessionLock lock(context.mutex);
    if (!context.connectRequested) {
        // the session's own reads run before the application may call
        if (!context.channelConnected || !context.activatedOnce) {
            lock.unlock();
            UaTrace::tError("<-- UaSession::%s [%s] - Server not connected", names.method,
                            names.notConnectedText);
            return UaStatus(names.notConnected);
        }
    } else if (!context.sessionActive) { // not even while a reconnect has a channel again
        lock.unlock();
        UaTrace::tError("<-- UaSession::%s [%s] - Channel not connected", names.method,
                        names.notConnectedText);
        return UaStatus(names.notConnected);
    }
    if (count == 0) {
        lock.unlock();
        UaTrace::tError("<-- UaSession::%s [ret=OpcUa_BadNothingToDo] - %s", names.method, names.emptyText);
        return UaStatus(OpcUa_BadNothingToDo);
    }
    return UaStatus();
}

// How one such service names its fields in the stack's structures.
template <class Request, class Response, class Item, class Result>
struct BlockService
{
    ServiceNames names;
    OpcUa_StatusCode (*function)(OpcUa_Channel, const Request*, Response*);
    const OpcUa_EncodeableType& requestType;
    const OpcUa_EncodeableType& responseType;
    OpcUa_Int32 Request::*itemCount;
    Item* Request::*items;
    OpcUa_Int32 Response::*resultCount;
    Result* Response::*results;
};

// Checks that an answer has as many results as were asked for, and no or as many diagnostic infos.
inline UaStatus checkCounts(const ServiceNames& names, OpcUa_UInt32 wanted, OpcUa_Int32 results,
                            OpcUa_Int32 diagnostics)
{
    if (results < 0 || static_cast<OpcUa_UInt32>(results) != wanted) {
        UaTrace::tError("Error: UaSession::%s - number of results does not match number of requests",
                        names.method);
        return UaStatus(wrongResultCount);
    }
    if (diagnostics > 0 && static_cast<OpcUa_UInt32>(diagnostics) != wanted) {
        UaTrace::tError("Error: UaSession::%s - number of diagnostic infos does not match number of requests",
                        names.method);
        return UaStatus(wrongResultCount);
    }
    return UaStatus();
}

// Moves a block's diagnostic infos behind those of the blocks before it, which may have come without.
template <class Response>
bool takeDiagnostics(Response& response, OpcUa_UInt32 before, OpcUa_UInt32 count, UaDiagnosticInfos& merged)
{
    UaDiagnosticInfos block;
    OpcUa_ResponseHeader& header = response.ResponseHeader;
    block.attach(std::exchange(response.NoOfDiagnosticInfos, 0),
                 std::exchange(response.DiagnosticInfos, nullptr), std::exchange(header.NoOfStringTable, 0),
                 std::exchange(header.StringTable, nullptr));
    if (block.isEmpty() && merged.isEmpty()) {
        return true;
    }
    return merged.resize(before) && (!block.isEmpty() || block.resize(count)) &&
           merged.append(std::move(block));
}

// Sends one block of count items and appends what comes back.
template <class Request, class Response, class Item, class Result, class Prepare>
UaStatus callBlock(SessionContext& context, const BlockService<Request, Response, Item, Result>& service,
                   ServiceSettings& settings, OpcUa_UInt32 count, const Item* items, UaArray<Result>& results,
                   UaDiagnosticInfos& diagnosticInfos, const Prepare& prepare)
{
    BorrowingRequest<Request> request(service.requestType);
    Encodeable<Response> response(service.responseType);
    {
        SessionLock lock(context.mutex);
        context.fillRequestHeaderLocked(settings, request->RequestHeader);
    }
    settings.requestTime = UaDateTime(request->RequestHeader.Timestamp);
    prepare(*request);
    (*request).*service.itemCount = static_cast<OpcUa_Int32>(count);
    (*request).*service.items = const_cast<Item*>(items); // the stack only reads them
    UaStatus status(
        callStack(service.names.stackName, service.function, context.channel, *request, *response));
    settings.responseTime = UaDateTime(response->ResponseHeader.Timestamp);
    if (status.isBad()) {
        return status;
    }
    const UaStatus counts =
        checkCounts(service.names, count, (*response).*service.resultCount, response->NoOfDiagnosticInfos);
    if (counts.isBad()) {
        return counts;
    }
    UaArray<Result> block;
    block.attachFrom(&((*response).*service.resultCount), &((*response).*service.results));
    const bool merged = takeDiagnostics(*response, results.length(), count, diagnosticInfos);
    return merged && results.appendMoved(std::move(block)) ? status : UaStatus(OpcUa_BadOutOfMemory);
}

// The whole service: split by the session's maximum operations per call, stopped at the first bad block.
// prepare(request) sets the fields that are the same in each block.
template <class Request, class Response, class Item, class Result, class Prepare>
UaStatus callInBlocks(SessionContext& context, const BlockService<Request, Response, Item, Result>& service,
                      ServiceSettings& settings, const UaArray<Item>& items, UaArray<Result>& results,
                      UaDiagnosticInfos& diagnosticInfos, const Prepare& prepare)
{
    const ServiceNames& names = service.names;
    UaTrace::tInOut("--> UaSession::%s count=%u [Session=%u]", names.method, items.length(), context.traceId);
    results.clear();
    diagnosticInfos.clear();
    OpcUa_UInt32 limit = 0;
    {
        SessionLock lock(context.mutex);
        limit = std::max<OpcUa_UInt32>(context.connectInfo.maxOperationsPerServiceCall, 1);
    }
    UaStatus status = checkReady(context, names, items.length());
    for (OpcUa_UInt32 done = 0; !status.isBad() && done < items.length();) {
        const OpcUa_UInt32 count = std::min(limit, items.length() - done);
        status = done == 0 ? status : checkReady(context, names, count);
        if (!status.isBad()) {
            status = callBlock(context, service, settings, count, items.rawData() + done, results,
                               diagnosticInfos, prepare);
        }
        done += count;
    }
    if (status.isBad()) {
        results.clear();
        diagnosticInfos.clear();
    }
    UaTrace::tInOut("<-- UaSession::%s [ret=0x%lx]", names.method,
                    static_cast<unsigned long>(status.statusCode()));
    return status;
}

} // namespace UaClientSdk
