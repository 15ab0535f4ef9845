// Life cycle of the built-in types and of structures, as the codecs need it. The C interface adds a check of
// its arguments to these.
//
// initialize gives a value that holds anything its null value; clear frees what it owns and initialises it
// again; copy makes a deep copy into a destination that holds anything, and answers Good or BadOutOfMemory,
// with which the destination is initialised; compare orders totally, 0 means equal.
#pragma once

#include <opcua/opcua_encodeable.h>
#include <stack/encoding/memory.h>

#include <cstring>

namespace opcua {

// ---- initialize

inline void initialize(OpcUa_String& value)
{
    value = {-1, nullptr};
}
inline void initialize(OpcUa_ByteString& value)
{
    value = {-1, nullptr};
}
inline void initialize(OpcUa_NodeId& value)
{
    std::memset(&value, 0, sizeof value);
}
inline void initialize(OpcUa_ExpandedNodeId& value)
{
    initialize(value.NodeId);
    initialize(value.NamespaceUri);
    value.ServerIndex = 0;
}
inline void initialize(OpcUa_QualifiedName& value)
{
    value.NamespaceIndex = 0;
    initialize(value.Name);
}
inline void initialize(OpcUa_LocalizedText& value)
{
    initialize(value.Locale);
    initialize(value.Text);
}
inline void initialize(OpcUa_ExtensionObject& value)
{
    std::memset(&value, 0, sizeof value);
    initialize(value.TypeId);
}
inline void initialize(OpcUa_Variant& value)
{
    std::memset(&value, 0, sizeof value);
}
inline void initialize(OpcUa_DataValue& value)
{
    std::memset(&value, 0, sizeof value);
}
inline void initialize(OpcUa_DiagnosticInfo& value)
{
    value = {-1, -1, -1, -1, {-1, nullptr}, 0, nullptr};
}

// ---- clear

void clear(OpcUa_String& value);
void clear(OpcUa_ByteString& value);
void clear(OpcUa_NodeId& value);
void clear(OpcUa_ExpandedNodeId& value);
void clear(OpcUa_QualifiedName& value);
void clear(OpcUa_LocalizedText& value);
void clear(OpcUa_ExtensionObject& value);
void clear(OpcUa_Variant& value);
void clear(OpcUa_DataValue& value);
void clear(OpcUa_DiagnosticInfo& value);

// ---- copy

[[nodiscard]] OpcUa_StatusCode copy(const OpcUa_String& source, OpcUa_String& destination);
[[nodiscard]] OpcUa_StatusCode copy(const OpcUa_ByteString& source, OpcUa_ByteString& destination);
[[nodiscard]] OpcUa_StatusCode copy(const OpcUa_NodeId& source, OpcUa_NodeId& destination);
[[nodiscard]] OpcUa_StatusCode copy(const OpcUa_ExpandedNodeId& source, OpcUa_ExpandedNodeId& destination);
[[nodiscard]] OpcUa_StatusCode copy(const OpcUa_QualifiedName& source, OpcUa_QualifiedName& destination);
[[nodiscard]] OpcUa_StatusCode copy(const OpcUa_LocalizedText& source, OpcUa_LocalizedText& destination);
[[nodiscard]] OpcUa_StatusCode copy(const OpcUa_ExtensionObject& source, OpcUa_ExtensionObject& destination);
[[nodiscard]] OpcUa_StatusCode copy(const OpcUa_Variant& source, OpcUa_Variant& destination);
[[nodiscard]] OpcUa_StatusCode copy(const OpcUa_DataValue& source, OpcUa_DataValue& destination);
[[nodiscard]] OpcUa_StatusCode copy(const OpcUa_DiagnosticInfo& source, OpcUa_DiagnosticInfo& destination);

/// Copies length bytes, or with a negative length up to the NUL; a null text gives the null string. Also
/// BadInvalidArgument for a text that is too long for the type.
[[nodiscard]] OpcUa_StatusCode assign(OpcUa_String& destination, const char* text, OpcUa_Int32 length);
/// Null data or a negative length gives the null value.
[[nodiscard]] OpcUa_StatusCode assign(OpcUa_ByteString& destination, const void* data, OpcUa_Int32 length);

// ---- compare

[[nodiscard]] int compare(const OpcUa_String& left, const OpcUa_String& right);
[[nodiscard]] int compare(const OpcUa_ByteString& left, const OpcUa_ByteString& right);
[[nodiscard]] int compare(const OpcUa_Guid& left, const OpcUa_Guid& right);
[[nodiscard]] int compare(const OpcUa_NodeId& left, const OpcUa_NodeId& right);
[[nodiscard]] int compare(const OpcUa_ExpandedNodeId& left, const OpcUa_ExpandedNodeId& right);
[[nodiscard]] int compare(const OpcUa_QualifiedName& left, const OpcUa_QualifiedName& right);
[[nodiscard]] int compare(const OpcUa_LocalizedText& left, const OpcUa_LocalizedText& right);
[[nodiscard]] int compare(const OpcUa_ExtensionObject& left, const OpcUa_ExtensionObject& right);
[[nodiscard]] int compare(const OpcUa_Variant& left, const OpcUa_Variant& right);
[[nodiscard]] int compare(const OpcUa_DataValue& left, const OpcUa_DataValue& right);
[[nodiscard]] int compare(const OpcUa_DiagnosticInfo& left, const OpcUa_DiagnosticInfo& right);

[[nodiscard]] bool isNull(const OpcUa_NodeId& value);

// ---- structures

void initializeStructure(const OpcUa_EncodeableType& type, void* object);
void clearStructure(const OpcUa_EncodeableType& type, void* object);
[[nodiscard]] OpcUa_StatusCode copyStructure(const OpcUa_EncodeableType& type, const void* source,
                                             void* destination);
[[nodiscard]] int compareStructures(const OpcUa_EncodeableType& type, const void* left, const void* right);
/// Null when out of memory.
[[nodiscard]] void* createStructure(const OpcUa_EncodeableType& type);
/// Clears and frees; null is no structure.
void deleteStructure(const OpcUa_EncodeableType& type, void* object);

/// Clears value, which then owns object.
void attach(OpcUa_ExtensionObject& value, const OpcUa_EncodeableType& type, void* object);

} // namespace opcua
