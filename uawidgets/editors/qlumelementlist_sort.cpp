// Sorting of QlumElementList.
#include <uawidgets/editors/qlumelementlist.h>

#include <opcua/opcua_builtintypes.h>
#include <uabase/values/uavariant.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <functional>
#include <numeric>
#include <string_view>
#include <type_traits>
#include <vector>

namespace {
template <typename T>
void sortNumbers(void* elements, std::size_t count, bool descending)
{
    auto* numbers = static_cast<T*>(elements);
    auto* end = numbers + count;
    if constexpr (std::is_floating_point_v<T>)
        end = std::stable_partition(numbers, end, [](T number) { return !std::isnan(number); });
    if (descending)
        std::stable_sort(numbers, end, std::greater<T>());
    else
        std::stable_sort(numbers, end);
}

std::string_view viewOf(const OpcUa_String& text)
{
    return text.Length > 0 ? std::string_view(reinterpret_cast<const char*>(text.Data),
                                              static_cast<std::size_t>(text.Length))
                           : std::string_view();
}

bool isElementLess(OpcUa_BuiltInType type, const void* left, const void* right)
{
    if (type == OpcUaType_String)
        return viewOf(*static_cast<const OpcUa_String*>(left)) <
               viewOf(*static_cast<const OpcUa_String*>(right));
    if (type == OpcUaType_LocalizedText)
        return viewOf(static_cast<const OpcUa_LocalizedText*>(left)->Text) <
               viewOf(static_cast<const OpcUa_LocalizedText*>(right)->Text);
    return OpcUa_BuiltInType_Compare(static_cast<OpcUa_Byte>(type), left, right) < 0;
}

// The elements change places as they are: what they own goes with them.
void sortElements(OpcUa_BuiltInType type, unsigned char* elements, std::size_t count, bool descending)
{
    const std::size_t size = OpcUa_BuiltInType_Size(static_cast<OpcUa_Byte>(type));
    std::vector<std::size_t> order(count);
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [&](std::size_t left, std::size_t right) {
        const unsigned char* first = elements + left * size;
        const unsigned char* second = elements + right * size;
        return descending ? isElementLess(type, second, first) : isElementLess(type, first, second);
    });
    const std::vector<unsigned char> before(elements, elements + count * size);
    for (std::size_t i = 0; i < count; ++i)
        std::memcpy(elements + i * size, before.data() + order[i] * size, size);
}

void sortBlock(OpcUa_BuiltInType type, void* elements, std::size_t count, bool descending)
{
    switch (type) {
    case OpcUaType_Boolean:
    case OpcUaType_Byte:
        return sortNumbers<OpcUa_Byte>(elements, count, descending);
    case OpcUaType_SByte:
        return sortNumbers<OpcUa_SByte>(elements, count, descending);
    case OpcUaType_Int16:
        return sortNumbers<OpcUa_Int16>(elements, count, descending);
    case OpcUaType_UInt16:
        return sortNumbers<OpcUa_UInt16>(elements, count, descending);
    case OpcUaType_Int32:
        return sortNumbers<OpcUa_Int32>(elements, count, descending);
    case OpcUaType_UInt32:
    case OpcUaType_StatusCode:
        return sortNumbers<OpcUa_UInt32>(elements, count, descending);
    case OpcUaType_Int64:
    case OpcUaType_DateTime:
        return sortNumbers<OpcUa_Int64>(elements, count, descending);
    case OpcUaType_UInt64:
        return sortNumbers<OpcUa_UInt64>(elements, count, descending);
    case OpcUaType_Float:
        return sortNumbers<OpcUa_Float>(elements, count, descending);
    case OpcUaType_Double:
        return sortNumbers<OpcUa_Double>(elements, count, descending);
    default:
        return sortElements(type, static_cast<unsigned char*>(elements), count, descending);
    }
}
} // namespace

bool QlumElementList::hasOrder(OpcUa_BuiltInType type)
{
    return type >= OpcUaType_Boolean && type <= OpcUaType_LocalizedText;
}

bool QlumElementList::sort(int first, int count, bool descending)
{
    if (!hasOrder(m_type) || count < 2 || !isThere(first, count))
        return false;
    UaVariant array = whole();
    OpcUa_Variant raw;
    if (array.isNull() || !OpcUa_IsGood(array.copyTo(&raw)))
        return false;
    auto* begin = static_cast<unsigned char*>(raw.Value.Array.Data) +
                  static_cast<std::size_t>(first) * OpcUa_BuiltInType_Size(raw.Datatype);
    sortBlock(m_type, begin, static_cast<std::size_t>(count), descending);
    array.attach(&raw);
    m_runs = {{0, m_count, array, 0, false, true}};
    m_whole = array;
    m_unchanged = false;
    return true;
}
