#include <uaclientsdk/services/blockplan.h>

#include <opcua/opcua_statuscodes.h>

namespace UaClientSdk {

bool BlockPlan::shrinkAfter(const UaStatus& status, OpcUa_UInt32 count)
{
    bool isTooLarge = false;
    switch (status.statusCode()) {
    case OpcUa_BadTooManyOperations:
    case OpcUa_BadRequestTooLarge:
        isTooLarge = true;
        break;
    case OpcUa_BadResponseTooLarge:
    case OpcUa_BadEncodingLimitsExceeded:
        isTooLarge = !hasEffects; // the answer may have been the trouble, and the work be done
        break;
    default:
        break;
    }
    if (!isTooLarge || count < 2)
        return false;
    limit = count / 2;
    isShrunk = true;
    return true;
}

BlockPlan planBlocks(const SessionContext& context, SplitService service, bool hasEffects)
{
    SessionLock lock(context.mutex);
    const OpcUa_UInt32 setting = context.connectInfo.maxOperationsPerServiceCall;
    return {service,
            hasEffects,
            context.blockLimits.blockSize(service, setting),
            {CallKind::Service, context.connection.epoch()}};
}

void rememberSize(SessionContext& context, BlockPlan& plan)
{
    if (!plan.isShrunk)
        return;
    plan.isShrunk = false;
    SessionLock lock(context.mutex);
    if (plan.wanted.epoch && context.connection.isSameSession(*plan.wanted.epoch))
        context.blockLimits.lower(plan.service, plan.limit);
}

} // namespace UaClientSdk
