#pragma once
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uavariant.h>

#include <QList>

/// What was read of one of the attributes; a null value when it was not read, or badly.
[[nodiscard]] inline UaVariant qlumResultOf(int attributeId, const QList<int>& attributeIds,
                                            const UaDataValues& results)
{
    const int position = attributeIds.indexOf(attributeId);
    if (position < 0 || position >= static_cast<int>(results.length()))
        return {};
    const OpcUa_DataValue& result = results[static_cast<OpcUa_UInt32>(position)];
    return OpcUa_IsBad(result.StatusCode) ? UaVariant() : UaVariant(result.Value);
}
