// Life cycle of the stack's structures, one traits class for each kind of element. destroy() clears elements
// and frees the block that they fill.
#pragma once

#include <opcua/opcua_builtintypes.h>
#include <opcua/opcua_encodeable.h>

#include <cstddef>
#include <cstring>
#include <type_traits>

/// Elements without memory of their own: numbers, booleans, dates, status codes, enumerations, GUIDs.
template <typename T>
struct UaTrivialElement
{
    static_assert(std::is_trivially_copyable_v<T>);
    static void initialize(T* data, std::size_t count) noexcept { std::memset(data, 0, count * sizeof(T)); }
    static void clear(T* data, std::size_t count) noexcept { initialize(data, count); }
    [[nodiscard]] static OpcUa_StatusCode copy(const T* source, T* destination, std::size_t count) noexcept
    {
        std::memcpy(destination, source, count * sizeof(T));
        return 0;
    }
    static void destroy(T* data, std::size_t) noexcept { OpcUa_Memory_Free(data); }
};

/// Elements of a built-in type that own memory.
template <typename T, OpcUa_Byte BuiltInType>
struct UaBuiltInElement
{
    static void initialize(T* data, std::size_t count) noexcept
    {
        OpcUa_BuiltInType_InitializeArray(BuiltInType, data, count);
    }
    static void clear(T* data, std::size_t count) noexcept
    {
        OpcUa_BuiltInType_ClearArray(BuiltInType, data, count);
    }
    [[nodiscard]] static OpcUa_StatusCode copy(const T* source, T* destination, std::size_t count) noexcept
    {
        return OpcUa_BuiltInType_CopyArray(BuiltInType, source, destination, count);
    }
    static void destroy(T* data, std::size_t count) noexcept
    {
        clear(data, count);
        OpcUa_Memory_Free(data);
    }
};

/// The same for those whose null value is zero in all bytes: values come in such numbers that a call for each
/// would count.
template <typename T, OpcUa_Byte BuiltInType>
struct UaZeroedElement : UaBuiltInElement<T, BuiltInType>
{
    static void initialize(T* data, std::size_t count) noexcept
    {
        std::memset(static_cast<void*>(data), 0, count * sizeof(T));
    }
};

/// Structures of the standard, by their type table.
template <typename T, const OpcUa_EncodeableType& Type>
struct UaEncodeableElement
{
    static void initialize(T* data, std::size_t count) noexcept
    {
        for (std::size_t i = 0; i < count; ++i)
            OpcUa_EncodeableObject_Initialize(&Type, data + i);
    }
    static void clear(T* data, std::size_t count) noexcept
    {
        for (std::size_t i = 0; i < count; ++i)
            OpcUa_EncodeableObject_Clear(&Type, data + i);
    }
    [[nodiscard]] static OpcUa_StatusCode copy(const T* source, T* destination, std::size_t count) noexcept
    {
        initialize(destination, count);
        OpcUa_StatusCode status = 0;
        for (std::size_t i = 0; i < count && OpcUa_IsGood(status); ++i)
            status = OpcUa_EncodeableObject_Copy(&Type, source + i, destination + i);
        if (!OpcUa_IsGood(status))
            clear(destination, count);
        return status;
    }
    static void destroy(T* data, std::size_t count) noexcept
    {
        void* block = data;
        OpcUa_EncodeableObject_DeleteArray(&Type, &block, count);
    }
};

/// Chosen by the element's type: initialize, clear (leaves initialised elements) and deep copy (the
/// destination is raw memory; after a failure it holds null values). None throws.
template <typename T>
struct UaElement : UaTrivialElement<T>
{
    static_assert(std::is_arithmetic_v<T> || std::is_enum_v<T> || std::is_same_v<T, OpcUa_Guid>,
                  "this structure needs a UaElement specialisation, see uabase/uaarrays.h");
};

#define UA_BUILT_IN_ELEMENT(Type, Traits)                                                                    \
    template <>                                                                                              \
    struct UaElement<OpcUa_##Type> : Traits<OpcUa_##Type, OpcUaType_##Type>                                  \
    {                                                                                                        \
    };

UA_BUILT_IN_ELEMENT(String, UaBuiltInElement)
UA_BUILT_IN_ELEMENT(ByteString, UaBuiltInElement)
UA_BUILT_IN_ELEMENT(NodeId, UaZeroedElement)
UA_BUILT_IN_ELEMENT(ExpandedNodeId, UaBuiltInElement)
UA_BUILT_IN_ELEMENT(QualifiedName, UaBuiltInElement)
UA_BUILT_IN_ELEMENT(LocalizedText, UaBuiltInElement)
UA_BUILT_IN_ELEMENT(ExtensionObject, UaBuiltInElement)
UA_BUILT_IN_ELEMENT(DataValue, UaZeroedElement)
UA_BUILT_IN_ELEMENT(Variant, UaZeroedElement)
UA_BUILT_IN_ELEMENT(DiagnosticInfo, UaBuiltInElement)

#undef UA_BUILT_IN_ELEMENT
