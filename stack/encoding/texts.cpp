// Strings, byte strings and the types made of them.
#include <opcua/opcua_statuscodes.h>
#include <stack/encoding/elements.h>
#include <stack/encoding/lifecycle.h>

#include <algorithm>
#include <cstring>
#include <type_traits>

namespace opcua {

namespace {

// Strings and byte strings differ in the type of their bytes and in the NUL behind them.
template <typename Text>
bool isNullText(const Text& value)
{
    return value.Data == nullptr || value.Length < 0;
}

template <typename Text>
OpcUa_StatusCode assignText(Text& destination, const void* data, size_t length)
{
    destination.Length = -1;
    destination.Data = nullptr;
    if (data == nullptr)
        return OpcUa_Good;
    using Character = std::remove_pointer_t<decltype(destination.Data)>;
    auto* const copy = static_cast<Character*>(allocateMemory(length + 1));
    if (copy == nullptr)
        return OpcUa_BadOutOfMemory;
    if (length > 0)
        std::memcpy(copy, data, length);
    copy[length] = 0;
    destination.Data = copy;
    destination.Length = static_cast<OpcUa_Int32>(length);
    return OpcUa_Good;
}

template <typename Text>
OpcUa_StatusCode copyText(const Text& source, Text& destination)
{
    if (isNullText(source))
        return assignText(destination, nullptr, 0);
    return assignText(destination, source.Data, static_cast<size_t>(source.Length));
}

template <typename Text>
void clearText(Text& value)
{
    freeMemory(value.Data);
    value.Length = -1;
    value.Data = nullptr;
}

template <typename Text>
int compareTexts(const Text& left, const Text& right)
{
    if (isNullText(left) || isNullText(right))
        return static_cast<int>(isNullText(right)) - static_cast<int>(isNullText(left));
    const auto shorter = static_cast<size_t>(std::min(left.Length, right.Length));
    const int result = shorter == 0 ? 0 : std::memcmp(left.Data, right.Data, shorter);
    return result != 0 ? result : order(left.Length, right.Length);
}

} // namespace

void clear(OpcUa_String& value)
{
    clearText(value);
}

OpcUa_StatusCode copy(const OpcUa_String& source, OpcUa_String& destination)
{
    return copyText(source, destination);
}

OpcUa_StatusCode assign(OpcUa_String& destination, const char* text, OpcUa_Int32 length)
{
    const size_t bytes = text == nullptr ? 0 : length < 0 ? std::strlen(text) : static_cast<size_t>(length);
    if (bytes > INT32_MAX) {
        initialize(destination);
        return OpcUa_BadInvalidArgument;
    }
    return assignText(destination, text, bytes);
}

int compare(const OpcUa_String& left, const OpcUa_String& right)
{
    return compareTexts(left, right);
}

void clear(OpcUa_ByteString& value)
{
    clearText(value);
}

OpcUa_StatusCode copy(const OpcUa_ByteString& source, OpcUa_ByteString& destination)
{
    return copyText(source, destination);
}

OpcUa_StatusCode assign(OpcUa_ByteString& destination, const void* data, OpcUa_Int32 length)
{
    if (length < 0)
        data = nullptr;
    return assignText(destination, data, static_cast<size_t>(std::max(length, 0)));
}

int compare(const OpcUa_ByteString& left, const OpcUa_ByteString& right)
{
    return compareTexts(left, right);
}

int compare(const OpcUa_Guid& left, const OpcUa_Guid& right)
{
    if (left.Data1 != right.Data1)
        return order(left.Data1, right.Data1);
    if (left.Data2 != right.Data2)
        return order(left.Data2, right.Data2);
    if (left.Data3 != right.Data3)
        return order(left.Data3, right.Data3);
    return std::memcmp(left.Data4, right.Data4, sizeof left.Data4);
}

void clear(OpcUa_QualifiedName& value)
{
    value.NamespaceIndex = 0;
    clear(value.Name);
}

OpcUa_StatusCode copy(const OpcUa_QualifiedName& source, OpcUa_QualifiedName& destination)
{
    initialize(destination);
    const OpcUa_StatusCode status = copy(source.Name, destination.Name);
    if (OpcUa_IsGood(status))
        destination.NamespaceIndex = source.NamespaceIndex;
    return status;
}

int compare(const OpcUa_QualifiedName& left, const OpcUa_QualifiedName& right)
{
    if (left.NamespaceIndex != right.NamespaceIndex)
        return order(left.NamespaceIndex, right.NamespaceIndex);
    return compare(left.Name, right.Name);
}

void clear(OpcUa_LocalizedText& value)
{
    clear(value.Locale);
    clear(value.Text);
}

OpcUa_StatusCode copy(const OpcUa_LocalizedText& source, OpcUa_LocalizedText& destination)
{
    initialize(destination);
    OpcUa_StatusCode status = copy(source.Locale, destination.Locale);
    if (OpcUa_IsGood(status))
        status = copy(source.Text, destination.Text);
    if (OpcUa_IsBad(status))
        clear(destination);
    return status;
}

int compare(const OpcUa_LocalizedText& left, const OpcUa_LocalizedText& right)
{
    const int result = compare(left.Locale, right.Locale);
    return result != 0 ? result : compare(left.Text, right.Text);
}

} // namespace opcua
