// What to read from history and how, OPC 10000-11, 6.4.
#pragma once

#include <uabase/values/uaarrays.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatetime.h>

namespace UaClientSdk {

/// Common to all. Of several nodes each carries its continuation point in its UaHistoryReadValueIds entry.
struct HistoryReadContext
{
    OpcUa_TimestampsToReturn timestampsToReturn = OpcUa_TimestampsToReturn_Both;
    UaByteString continuationPoint;         ///< of the only node, unless its entry has one
    bool releaseContinuationPoints = false; ///< true: nothing is read, the server forgets the points
};

/// Times may be null and may run backwards, as the standard allows.
struct HistoryReadRawModifiedContext : HistoryReadContext
{
    bool isReadModified = false; ///< the values that were replaced or deleted, with who did it and when
    UaDateTime startTime;
    UaDateTime endTime;
    OpcUa_UInt32 numValuesPerNode = 0; ///< 0: all
    bool returnBounds = false;
};

struct HistoryReadProcessedContext : HistoryReadContext
{
    UaDateTime startTime;
    UaDateTime endTime;
    double processingInterval = 0.0; ///< ms; 0: one value for the whole range
    UaNodeIdArray aggregateTypes;    ///< one for each node
    OpcUa_AggregateConfiguration aggregateConfiguration{OpcUa_True, OpcUa_False, 0, 0, OpcUa_False};
};

struct HistoryReadAtTimeContext : HistoryReadContext
{
    UaDateTimeArray requestedTimes;
    bool useSimpleBounds = false;
};

struct HistoryReadEventContext : HistoryReadContext
{
    UaDateTime startTime;
    UaDateTime endTime;
    OpcUa_UInt32 numValuesPerNode = 0; ///< 0: all
    UaSimpleAttributeOperands selectClauses;
    UaContentFilterElements whereClause;
};

} // namespace UaClientSdk
