// Strings, byte strings and the types made of them.
#include <opcua/opcua_statuscodes.h>
#include <stack/encoding/elements.h>

#include <algorithm>
#include <cstring>
#include <type_traits>

namespace {

// Strings and byte strings differ in the type of their bytes and in the NUL behind them.
template <typename Text>
bool isNull(const Text& value)
{
    return value.Data == nullptr || value.Length < 0;
}

template <typename Text>
OpcUa_StatusCode assign(Text* destination, const void* data, size_t length)
{
    destination->Length = -1;
    destination->Data = nullptr;
    if (data == nullptr)
        return OpcUa_Good;
    using Character = std::remove_pointer_t<decltype(destination->Data)>;
    auto* const copy = static_cast<Character*>(OpcUa_Memory_Alloc(length + 1));
    if (copy == nullptr)
        return OpcUa_BadOutOfMemory;
    if (length > 0)
        std::memcpy(copy, data, length);
    copy[length] = 0;
    destination->Data = copy;
    destination->Length = static_cast<OpcUa_Int32>(length);
    return OpcUa_Good;
}

template <typename Text>
OpcUa_StatusCode copy(const Text* source, Text* destination)
{
    if (isNull(*source))
        return assign(destination, nullptr, 0);
    return assign(destination, source->Data, static_cast<size_t>(source->Length));
}

template <typename Text>
void clear(Text* value)
{
    OpcUa_Memory_Free(value->Data);
    value->Length = -1;
    value->Data = nullptr;
}

template <typename Text>
int compare(const Text& left, const Text& right)
{
    if (isNull(left) || isNull(right))
        return static_cast<int>(isNull(right)) - static_cast<int>(isNull(left));
    const auto shorter = static_cast<size_t>(std::min(left.Length, right.Length));
    const int result = shorter == 0 ? 0 : std::memcmp(left.Data, right.Data, shorter);
    return result != 0 ? result : opcua::order(left.Length, right.Length);
}

} // namespace

void OpcUa_String_Initialize(OpcUa_String* value)
{
    *value = {-1, nullptr};
}

void OpcUa_String_Clear(OpcUa_String* value)
{
    clear(value);
}

OpcUa_StatusCode OpcUa_String_Copy(const OpcUa_String* source, OpcUa_String* destination)
{
    return copy(source, destination);
}

OpcUa_StatusCode OpcUa_String_Assign(OpcUa_String* destination, const char* text, OpcUa_Int32 length)
{
    const size_t bytes = text == nullptr ? 0 : length < 0 ? std::strlen(text) : static_cast<size_t>(length);
    if (bytes > INT32_MAX) {
        OpcUa_String_Initialize(destination);
        return OpcUa_BadInvalidArgument;
    }
    return assign(destination, text, bytes);
}

int OpcUa_String_Compare(const OpcUa_String* left, const OpcUa_String* right)
{
    return compare(*left, *right);
}

void OpcUa_ByteString_Initialize(OpcUa_ByteString* value)
{
    *value = {-1, nullptr};
}

void OpcUa_ByteString_Clear(OpcUa_ByteString* value)
{
    clear(value);
}

OpcUa_StatusCode OpcUa_ByteString_Copy(const OpcUa_ByteString* source, OpcUa_ByteString* destination)
{
    return copy(source, destination);
}

OpcUa_StatusCode OpcUa_ByteString_Assign(OpcUa_ByteString* destination, const void* data, OpcUa_Int32 length)
{
    if (length < 0)
        data = nullptr;
    return assign(destination, data, static_cast<size_t>(std::max(length, 0)));
}

int OpcUa_ByteString_Compare(const OpcUa_ByteString* left, const OpcUa_ByteString* right)
{
    return compare(*left, *right);
}

int OpcUa_Guid_Compare(const OpcUa_Guid* left, const OpcUa_Guid* right)
{
    if (left->Data1 != right->Data1)
        return opcua::order(left->Data1, right->Data1);
    if (left->Data2 != right->Data2)
        return opcua::order(left->Data2, right->Data2);
    if (left->Data3 != right->Data3)
        return opcua::order(left->Data3, right->Data3);
    return std::memcmp(left->Data4, right->Data4, sizeof left->Data4);
}

void OpcUa_QualifiedName_Initialize(OpcUa_QualifiedName* value)
{
    value->NamespaceIndex = 0;
    OpcUa_String_Initialize(&value->Name);
}

void OpcUa_QualifiedName_Clear(OpcUa_QualifiedName* value)
{
    value->NamespaceIndex = 0;
    OpcUa_String_Clear(&value->Name);
}

OpcUa_StatusCode OpcUa_QualifiedName_Copy(const OpcUa_QualifiedName* source, OpcUa_QualifiedName* destination)
{
    OpcUa_QualifiedName_Initialize(destination);
    const OpcUa_StatusCode status = OpcUa_String_Copy(&source->Name, &destination->Name);
    if (OpcUa_IsGood(status))
        destination->NamespaceIndex = source->NamespaceIndex;
    return status;
}

int OpcUa_QualifiedName_Compare(const OpcUa_QualifiedName* left, const OpcUa_QualifiedName* right)
{
    if (left->NamespaceIndex != right->NamespaceIndex)
        return opcua::order(left->NamespaceIndex, right->NamespaceIndex);
    return OpcUa_String_Compare(&left->Name, &right->Name);
}

void OpcUa_LocalizedText_Initialize(OpcUa_LocalizedText* value)
{
    OpcUa_String_Initialize(&value->Locale);
    OpcUa_String_Initialize(&value->Text);
}

void OpcUa_LocalizedText_Clear(OpcUa_LocalizedText* value)
{
    OpcUa_String_Clear(&value->Locale);
    OpcUa_String_Clear(&value->Text);
}

OpcUa_StatusCode OpcUa_LocalizedText_Copy(const OpcUa_LocalizedText* source, OpcUa_LocalizedText* destination)
{
    OpcUa_LocalizedText_Initialize(destination);
    OpcUa_StatusCode status = OpcUa_String_Copy(&source->Locale, &destination->Locale);
    if (OpcUa_IsGood(status))
        status = OpcUa_String_Copy(&source->Text, &destination->Text);
    if (OpcUa_IsBad(status))
        OpcUa_LocalizedText_Clear(destination);
    return status;
}

int OpcUa_LocalizedText_Compare(const OpcUa_LocalizedText* left, const OpcUa_LocalizedText* right)
{
    const int result = OpcUa_String_Compare(&left->Locale, &right->Locale);
    return result != 0 ? result : OpcUa_String_Compare(&left->Text, &right->Text);
}
