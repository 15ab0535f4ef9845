// Which elements of an array a read or write means, OPC 10000-4, 7.27.
#pragma once

#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <string_view>
#include <vector>

/// One range for each dimension: "3", "2:5", "1:2,0:1". Strings and byte strings count as arrays of their
/// bytes (a last range beyond the array's dimensions goes into them).
class UaNumericRange
{
public:
    struct Bounds
    {
        OpcUa_UInt32 first = 0;
        OpcUa_UInt32 last = 0; ///< as first for one element
        OpcUa_UInt32 count() const noexcept { return last - first + 1; }
        friend bool operator==(const Bounds&, const Bounds&) noexcept = default;
    };

    UaNumericRange() noexcept = default; ///< everything
    /// Everything for an empty text; also on a fault, which ok tells apart.
    [[nodiscard]] static UaNumericRange fromString(std::string_view text, bool* ok = nullptr);
    [[nodiscard]] UaString toString() const;

    bool isEmpty() const noexcept { return m_bounds.empty(); }
    const std::vector<Bounds>& bounds() const noexcept { return m_bounds; }

    /// The elements that the range means; an end beyond the array is cut. BadIndexRangeNoData when there are
    /// none, BadIndexRangeInvalid when the dimensions are not those of the value.
    UaStatusCode read(const UaVariant& value, UaVariant& part) const;
    /// Replaces them; part must have exactly their shape. The same statuses, and BadTypeMismatch. value is
    /// unchanged on failure.
    UaStatusCode write(UaVariant& value, const UaVariant& part) const;

    friend bool operator==(const UaNumericRange&, const UaNumericRange&) noexcept = default;

private:
    std::vector<Bounds> m_bounds;
};
