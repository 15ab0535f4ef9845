// What a server answers to a read of history, for each node.
#pragma once

#include <uabase/values/uaarrays.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatus.h>

#include <vector>

namespace UaClientSdk {

/// status BadTypeMismatch: the server answered with another structure than was asked for; 0x80460000: its
/// values and modificationInfos differ in number. Then both are empty.
struct HistoryReadDataResult
{
    UaStatus status;
    UaByteString continuationPoint; ///< not empty: there is more
    UaDataValues values;
    UaModificationInfos modificationInfos; ///< as many as values when modified values were read, else empty
};

struct HistoryReadEventResult
{
    UaStatus status;
    UaByteString continuationPoint;
    UaHistoryEventFieldLists events;
};

using HistoryReadDataResults = std::vector<HistoryReadDataResult>;
using HistoryReadEventResults = std::vector<HistoryReadEventResult>;

/// Moves the contents over.
[[nodiscard]] HistoryReadDataResults takeHistoryData(UaHistoryReadResults& results);
[[nodiscard]] HistoryReadEventResults takeHistoryEvents(UaHistoryReadResults& results);

} // namespace UaClientSdk
