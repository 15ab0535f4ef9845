// Members of UaSession about attributes; declared in uasession.h, which has too many for one source.
#include <uaclientsdk/session/uasession_p.h>

#include <uabase/system/uatrace.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/generated/servicetraits.h>
#include <uaclientsdk/services/asyncblockservice.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>

#include <span>

namespace UaClientSdk {

namespace {

void traceReadItems(std::span<const OpcUa_ReadValueId> nodes)
{
    UaTrace::tData("Read %d nodes", static_cast<int>(nodes.size()));
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        UaTrace::tData("  Node[%d] NodeId=%s AtrId=%d", static_cast<int>(i),
                       UaNodeId(nodes[i].NodeId).toFullString().toUtf8(),
                       static_cast<int>(nodes[i].AttributeId));
    }
}

void traceReadResults(std::span<const OpcUa_DataValue> values)
{
    UaTrace::tData("Read results for %d nodes", static_cast<int>(values.size()));
    for (std::size_t i = 0; i < values.size(); ++i) {
        const OpcUa_DataValue& value = values[i];
        const OpcUa_StatusCode status = value.StatusCode;
        if (OpcUa_IsBad(value.StatusCode)) {
            UaTrace::tData("  Node[%d] Failed StatusCode=0x%x", static_cast<int>(i), status);
        } else {
            UaTrace::tData("  Node[%d] Value=%s Status=0x%x", static_cast<int>(i),
                           UaVariant(value.Value).toString().toUtf8(), status);
        }
    }
}

constexpr BlockService<Services::Read> tracedReadService()
{
    BlockService<Services::Read> service =
        blockService<Services::Read>(SplitService::Read, "Empty read array passed");
    service.traceItems = traceReadItems;
    service.traceResults = traceReadResults;
    return service;
}

const auto readService = tracedReadService();
const auto writeService = keepingService<Services::Write>(SplitService::Write, "Empty write array passed");

auto readPreparation(double maxAge, OpcUa_TimestampsToReturn timestampsToReturn)
{
    return [maxAge, timestampsToReturn](OpcUa_ReadRequest& request, OpcUa_UInt32) {
        request.MaxAge = maxAge;
        request.TimestampsToReturn = timestampsToReturn;
    };
}

} // namespace

UaStatus UaSession::read(ServiceSettings& settings, double maxAge,
                         OpcUa_TimestampsToReturn timestampsToReturn, const UaReadValueIds& nodesToRead,
                         UaDataValues& values, UaDiagnosticInfos& diagnosticInfos)
{
    return callInBlocks(d->context, readService, settings, nodesToRead.span(), values, diagnosticInfos,
                        readPreparation(maxAge, timestampsToReturn));
}

UaStatus UaSession::beginRead(ServiceSettings& settings, double maxAge,
                              OpcUa_TimestampsToReturn timestampsToReturn, const UaReadValueIds& nodesToRead,
                              OpcUa_UInt32 transactionId)
{
    return beginInBlocks(d->context, readService, settings, nodesToRead.span(),
                         readPreparation(maxAge, timestampsToReturn),
                         completeWith(transactionId, &UaSessionCallback::readComplete));
}

UaStatus UaSession::write(ServiceSettings& settings, const UaWriteValues& nodesToWrite,
                          UaStatusCodeArray& results, UaDiagnosticInfos& diagnosticInfos)
{
    return callInBlocks(d->context, writeService, settings, nodesToWrite.span(), results, diagnosticInfos);
}

UaStatus UaSession::beginWrite(ServiceSettings& settings, const UaWriteValues& nodesToWrite,
                               OpcUa_UInt32 transactionId)
{
    return beginInBlocks(d->context, writeService, settings, nodesToWrite.span(), NothingToPrepare(),
                         completeWith(transactionId, &UaSessionCallback::writeComplete));
}

} // namespace UaClientSdk
