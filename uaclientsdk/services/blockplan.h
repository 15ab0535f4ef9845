// How a request that is too large for one call is cut, and cut again when the server does not take it.
#pragma once

#include <opcua/opcua_types.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/calls/blocklimits.h>
#include <uaclientsdk/connection/sessioncontext.h>
#include <uaclientsdk/connection/sessiongate.h>

namespace UaClientSdk {

/// What holds for all blocks of one call.
struct BlockPlan
{
    SplitService service;
    bool hasEffects = false;
    OpcUa_UInt32 limit = 0; ///< items in one request
    GateRequest wanted; ///< the epoch in which the first block is sent: the others are of no use in another
    bool isShrunk = false; ///< and no block of the smaller size went through yet

    /// After a block that came back bad: whether it is to be sent again, cut in halves, as nothing of it was
    /// done and its size was the reason.
    [[nodiscard]] bool shrinkAfter(const UaStatus& status, OpcUa_UInt32 count);
};

/// Without the mutex.
[[nodiscard]] BlockPlan planBlocks(const SessionContext& context, SplitService service, bool hasEffects);
/// After a good block: what the server took after it had refused more is where the session's next calls
/// begin.
void rememberSize(SessionContext& context, BlockPlan& plan);

} // namespace UaClientSdk
