#include <uabase/values/uanumericrange.h>

#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uatext_p.h>

#include <algorithm>
#include <ranges>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace {

using Bounds = UaNumericRange::Bounds;

// More than any array has dimensions.
constexpr std::size_t maxDimensions = 32;

bool parseBounds(std::string_view text, Bounds& bounds)
{
    const auto colon = text.find(':');
    const auto first = uabase::parseNumber<OpcUa_UInt32>(text.substr(0, colon));
    if (!first)
        return false;
    bounds = {*first, *first};
    if (colon == std::string_view::npos)
        return true;
    const auto last = uabase::parseNumber<OpcUa_UInt32>(text.substr(colon + 1));
    bounds.last = last.value_or(0);
    return last && *last > *first;
}

bool isText(const UaVariant& value) noexcept
{
    return value.type() == OpcUaType_String || value.type() == OpcUaType_ByteString;
}

std::string_view bytesOf(const UaVariant& value)
{
    const OpcUa_Variant& content = *value.get();
    const char* data = value.type() == OpcUaType_String
                           ? content.Value.String.Data
                           : reinterpret_cast<const char*>(content.Value.ByteString.Data);
    const OpcUa_Int32 length =
        value.type() == OpcUaType_String ? content.Value.String.Length : content.Value.ByteString.Length;
    return data ? std::string_view(data, static_cast<std::size_t>(std::max(length, 0))) : std::string_view();
}

UaVariant textLike(const UaVariant& value, std::string_view bytes)
{
    if (value.type() == OpcUaType_String)
        return UaVariant(UaString(bytes));
    return UaVariant(UaByteString(
        std::span<const OpcUa_Byte>(reinterpret_cast<const OpcUa_Byte*>(bytes.data()), bytes.size())));
}

UaStatusCode readText(const UaVariant& value, const Bounds& bounds, UaVariant& part)
{
    const std::string_view bytes = bytesOf(value);
    if (bounds.first >= bytes.size())
        return OpcUa_BadIndexRangeNoData;
    part = textLike(value, bytes.substr(bounds.first, bounds.count() == 0 ? bytes.size() : bounds.count()));
    return OpcUa_Good;
}

UaStatusCode writeText(UaVariant& value, const Bounds& bounds, const UaVariant& part)
{
    std::string bytes(bytesOf(value));
    if (bounds.last >= bytes.size())
        return OpcUa_BadIndexRangeNoData;
    if (!part.isScalar() || part.type() != value.type())
        return OpcUa_BadTypeMismatch;
    const std::string_view fresh = bytesOf(part);
    if (fresh.size() != bounds.count())
        return OpcUa_BadIndexRangeInvalid;
    bytes.replace(bounds.first, fresh.size(), fresh);
    value = textLike(value, bytes);
    return OpcUa_Good;
}

// The part of an array: what it takes of each dimension, and where its elements lie.
struct Selection
{
    std::vector<Bounds> bounds;
    std::vector<OpcUa_Int32> lengths; // of the part
    std::vector<OpcUa_UInt32> elements;
};

// False when nothing is inside.
bool select(const UaVariant& value, std::span<const Bounds> bounds, bool cut, Selection& selection)
{
    const auto dimensions = value.dimensions();
    for (OpcUa_UInt32 i = 0; i < dimensions.length(); ++i) {
        Bounds inside = bounds[i];
        const auto length = static_cast<OpcUa_UInt32>(dimensions[i]);
        if (inside.first >= length || (!cut && inside.last >= length))
            return false;
        inside.last = std::min(inside.last, length - 1);
        selection.bounds.push_back(inside);
        selection.lengths.push_back(static_cast<OpcUa_Int32>(inside.count()));
    }
    std::vector<OpcUa_UInt32> offsets{0};
    for (OpcUa_UInt32 i = 0; i < dimensions.length(); ++i) {
        std::vector<OpcUa_UInt32> next;
        for (const OpcUa_UInt32 offset : offsets)
            for (OpcUa_UInt32 k = selection.bounds[i].first; k <= selection.bounds[i].last; ++k)
                next.push_back(offset * static_cast<OpcUa_UInt32>(dimensions[i]) + k);
        offsets = std::move(next);
    }
    selection.elements = std::move(offsets);
    return true;
}

// Dimensions that the ranges must have for a value; one more goes into strings.
bool fits(const UaVariant& value, std::size_t ranges)
{
    const std::size_t dimensions = value.dimensions().length();
    return dimensions > 0 && (ranges == dimensions || (isText(value) && ranges == dimensions + 1));
}

} // namespace

UaNumericRange UaNumericRange::fromString(std::string_view text, bool* ok)
{
    UaNumericRange range;
    bool valid = true;
    while (valid && !text.empty()) {
        const auto comma = text.find(',');
        Bounds bounds;
        valid = parseBounds(text.substr(0, comma), bounds) && range.m_bounds.size() < maxDimensions &&
                comma + 1 != text.size();
        range.m_bounds.push_back(bounds);
        text = comma == std::string_view::npos ? std::string_view() : text.substr(comma + 1);
    }
    if (ok)
        *ok = valid;
    return valid ? range : UaNumericRange();
}

UaString UaNumericRange::toString() const
{
    std::string text;
    for (const Bounds& bounds : m_bounds) {
        text.append(text.empty() ? "" : ",").append(std::to_string(bounds.first));
        if (bounds.last != bounds.first)
            text.append(":").append(std::to_string(bounds.last));
    }
    return UaString(text);
}

UaStatusCode UaNumericRange::read(const UaVariant& value, UaVariant& part) const
{
    if (isEmpty()) {
        part = value;
        return OpcUa_Good;
    }
    if (value.isScalar())
        return isText(value) && m_bounds.size() == 1 ? readText(value, m_bounds[0], part)
                                                     : UaStatusCode(OpcUa_BadIndexRangeInvalid);
    Selection selection;
    if (!value.isScalar() && value.elementCount() == 0)
        return OpcUa_BadIndexRangeNoData;
    if (!fits(value, m_bounds.size()))
        return OpcUa_BadIndexRangeInvalid;
    if (!select(value, m_bounds, true, selection))
        return OpcUa_BadIndexRangeNoData;
    std::vector<UaVariant> elements;
    for (const OpcUa_UInt32 index : selection.elements) {
        UaVariant element = value.at(index);
        if (m_bounds.size() > selection.bounds.size())
            if (const UaStatusCode status = readText(value.at(index), m_bounds.back(), element);
                status.isBad())
                return status;
        elements.push_back(std::move(element));
    }
    UaVariant made;
    OpcUa_StatusCode status = made.setArray(value.type(), elements);
    if (OpcUa_IsGood(status) && selection.lengths.size() > 1)
        status = made.setDimensions(selection.lengths);
    if (OpcUa_IsGood(status))
        part = std::move(made);
    return status;
}

UaStatusCode UaNumericRange::write(UaVariant& value, const UaVariant& part) const
{
    if (isEmpty()) {
        value = part;
        return OpcUa_Good;
    }
    if (value.isScalar())
        return isText(value) && m_bounds.size() == 1 ? writeText(value, m_bounds[0], part)
                                                     : UaStatusCode(OpcUa_BadIndexRangeInvalid);
    Selection selection;
    if (!fits(value, m_bounds.size()))
        return OpcUa_BadIndexRangeInvalid;
    if (!select(value, m_bounds, false, selection))
        return OpcUa_BadIndexRangeNoData;
    if (part.type() != value.type())
        return OpcUa_BadTypeMismatch;
    if (!std::ranges::equal(part.dimensions().span(), selection.lengths))
        return OpcUa_BadIndexRangeInvalid;
    UaVariant changed = value;
    for (std::size_t i = 0; i < selection.elements.size(); ++i) {
        UaVariant element = part.at(static_cast<OpcUa_UInt32>(i));
        if (m_bounds.size() > selection.bounds.size()) {
            UaVariant whole = value.at(selection.elements[i]);
            if (const UaStatusCode status = writeText(whole, m_bounds.back(), element); status.isBad())
                return status;
            element = std::move(whole);
        }
        if (const OpcUa_StatusCode status = changed.setAt(selection.elements[i], element);
            !OpcUa_IsGood(status))
            return status;
    }
    value = std::move(changed);
    return OpcUa_Good;
}
