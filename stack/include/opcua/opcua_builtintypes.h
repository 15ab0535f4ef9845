// The built-in types of OPC 10000-6, 5.1.2, as plain C structures.
//
// Rules for all of them: a structure filled with zero bytes through its Initialize function is the type's
// null value; Clear frees what it owns and initialises it again; Copy makes a deep copy (the destination is
// initialised first, never cleared) and answers Good, BadInvalidArgument for a null pointer, or
// BadOutOfMemory, with which the destination is the null value; Compare orders totally and is negative, 0 or
// positive. Memory is that of OpcUa_Memory_Alloc. Initialize and Clear ignore a null pointer; to Compare it
// stands before every value. Any threads may use different objects at the same time; one object is for one
// thread at a time.
#ifndef OPCUA_BUILTINTYPES_H
#define OPCUA_BUILTINTYPES_H

#include <opcua/opcua_platform.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Ids of the built-in types, OPC 10000-6, table 1.
typedef enum OpcUa_BuiltInType {
    OpcUaType_Null = 0,
    OpcUaType_Boolean = 1,
    OpcUaType_SByte = 2,
    OpcUaType_Byte = 3,
    OpcUaType_Int16 = 4,
    OpcUaType_UInt16 = 5,
    OpcUaType_Int32 = 6,
    OpcUaType_UInt32 = 7,
    OpcUaType_Int64 = 8,
    OpcUaType_UInt64 = 9,
    OpcUaType_Float = 10,
    OpcUaType_Double = 11,
    OpcUaType_String = 12,
    OpcUaType_DateTime = 13,
    OpcUaType_Guid = 14,
    OpcUaType_ByteString = 15,
    OpcUaType_XmlElement = 16,
    OpcUaType_NodeId = 17,
    OpcUaType_ExpandedNodeId = 18,
    OpcUaType_StatusCode = 19,
    OpcUaType_QualifiedName = 20,
    OpcUaType_LocalizedText = 21,
    OpcUaType_ExtensionObject = 22,
    OpcUaType_DataValue = 23,
    OpcUaType_Variant = 24,
    OpcUaType_DiagnosticInfo = 25
} OpcUa_BuiltInType;

/// 100 ns intervals since 1601-01-01 00:00 UTC; 0 is the null value and the smallest date.
typedef OpcUa_Int64 OpcUa_DateTime;

/// UTF-8 as received; Length -1 with Data null is the null string, Length 0 the empty one. Data is always
/// followed by a NUL that does not count; the text itself may hold NULs.
typedef struct OpcUa_String
{
    OpcUa_Int32 Length;
    char* Data;
} OpcUa_String;

/// Length -1 with Data null is the null value.
typedef struct OpcUa_ByteString
{
    OpcUa_Int32 Length;
    OpcUa_Byte* Data;
} OpcUa_ByteString;

typedef OpcUa_ByteString OpcUa_XmlElement;

typedef struct OpcUa_Guid
{
    OpcUa_UInt32 Data1;
    OpcUa_UInt16 Data2;
    OpcUa_UInt16 Data3;
    OpcUa_Byte Data4[8];
} OpcUa_Guid;

typedef enum OpcUa_IdentifierType {
    OpcUa_IdentifierType_Numeric = 0,
    OpcUa_IdentifierType_String = 1,
    OpcUa_IdentifierType_Guid = 2,
    OpcUa_IdentifierType_Opaque = 3
} OpcUa_IdentifierType;

typedef struct OpcUa_NodeId
{
    OpcUa_UInt16 IdentifierType; ///< OpcUa_IdentifierType
    OpcUa_UInt16 NamespaceIndex;
    union {
        OpcUa_UInt32 Numeric;
        OpcUa_String String;
        OpcUa_Guid Guid;
        OpcUa_ByteString ByteString;
    } Identifier;
} OpcUa_NodeId;

typedef struct OpcUa_ExpandedNodeId
{
    OpcUa_NodeId NodeId;
    OpcUa_String NamespaceUri;
    OpcUa_UInt32 ServerIndex;
} OpcUa_ExpandedNodeId;

typedef struct OpcUa_QualifiedName
{
    OpcUa_UInt16 NamespaceIndex;
    OpcUa_String Name;
} OpcUa_QualifiedName;

typedef struct OpcUa_LocalizedText
{
    OpcUa_String Locale;
    OpcUa_String Text;
} OpcUa_LocalizedText;

struct OpcUa_EncodeableType;

typedef enum OpcUa_ExtensionObjectEncoding {
    OpcUa_ExtensionObjectEncoding_None = 0,
    OpcUa_ExtensionObjectEncoding_Binary = 1,
    OpcUa_ExtensionObjectEncoding_Xml = 2,
    OpcUa_ExtensionObjectEncoding_EncodeableObject = 3
} OpcUa_ExtensionObjectEncoding;

/// A structure with its type. Bodies whose binary encoding id is known to the type tables arrive decoded as
/// EncodeableObject; others keep their bytes. TypeId is the id of the encoding as on the wire.
typedef struct OpcUa_ExtensionObject
{
    OpcUa_ExpandedNodeId TypeId;
    OpcUa_Byte Encoding; ///< OpcUa_ExtensionObjectEncoding
    union {
        OpcUa_ByteString Binary;
        OpcUa_XmlElement Xml;
        struct
        {
            void* Object;
            const struct OpcUa_EncodeableType* Type;
        } EncodeableObject;
    } Body;
} OpcUa_ExtensionObject;

typedef enum OpcUa_VariantArrayType {
    OpcUa_VariantArrayType_Scalar = 0,
    OpcUa_VariantArrayType_Array = 1,
    OpcUa_VariantArrayType_Matrix = 2
} OpcUa_VariantArrayType;

struct OpcUa_DataValue;

/// Elements are those of the built-in type, packed: OpcUa_Int32[], OpcUa_String[], OpcUa_Variant[] ...
typedef struct OpcUa_VariantArray
{
    OpcUa_Int32 Length;         ///< of a matrix: the product of its dimensions; -1 a null array
    OpcUa_Int32 NoOfDimensions; ///< 0 unless a matrix
    OpcUa_Int32* Dimensions;    ///< null unless a matrix; own block
    void* Data;
} OpcUa_VariantArray;

/// Types of up to 16 bytes lie inside; larger ones are one block that the variant owns.
typedef struct OpcUa_Variant
{
    OpcUa_Byte Datatype;  ///< OpcUa_BuiltInType
    OpcUa_Byte ArrayType; ///< OpcUa_VariantArrayType
    union {
        OpcUa_Boolean Boolean;
        OpcUa_SByte SByte;
        OpcUa_Byte Byte;
        OpcUa_Int16 Int16;
        OpcUa_UInt16 UInt16;
        OpcUa_Int32 Int32;
        OpcUa_UInt32 UInt32;
        OpcUa_Int64 Int64;
        OpcUa_UInt64 UInt64;
        OpcUa_Float Float;
        OpcUa_Double Double;
        OpcUa_DateTime DateTime;
        OpcUa_StatusCode StatusCode;
        OpcUa_Guid Guid;
        OpcUa_String String;
        OpcUa_ByteString ByteString;
        OpcUa_XmlElement XmlElement;
        OpcUa_NodeId* NodeId;
        OpcUa_ExpandedNodeId* ExpandedNodeId;
        OpcUa_QualifiedName* QualifiedName;
        OpcUa_LocalizedText* LocalizedText;
        OpcUa_ExtensionObject* ExtensionObject;
        struct OpcUa_DataValue* DataValue;
        struct OpcUa_DiagnosticInfo* DiagnosticInfo;
        OpcUa_VariantArray Array; ///< of arrays and matrices of every type
    } Value;
} OpcUa_Variant;

typedef struct OpcUa_DataValue
{
    OpcUa_Variant Value;
    OpcUa_StatusCode StatusCode;
    OpcUa_UInt16 SourcePicoseconds;
    OpcUa_UInt16 ServerPicoseconds;
    OpcUa_DateTime SourceTimestamp;
    OpcUa_DateTime ServerTimestamp;
} OpcUa_DataValue;

/// Indexes point into the string table of the response header; -1 where absent.
typedef struct OpcUa_DiagnosticInfo
{
    OpcUa_Int32 SymbolicId;
    OpcUa_Int32 NamespaceUri;
    OpcUa_Int32 Locale;
    OpcUa_Int32 LocalizedText;
    OpcUa_String AdditionalInfo;
    OpcUa_StatusCode InnerStatusCode;
    struct OpcUa_DiagnosticInfo* InnerDiagnosticInfo;
} OpcUa_DiagnosticInfo;

// ---- strings
OPCUA_EXPORT void OpcUa_String_Initialize(OpcUa_String* value);
OPCUA_EXPORT void OpcUa_String_Clear(OpcUa_String* value);
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_String_Copy(const OpcUa_String* source,
                                                                OpcUa_String* destination);
/// Copies length bytes; length -1 means up to the NUL; a null text gives the null string. What destination
/// held is not freed. Good, BadInvalidArgument (also for more than 2^31 - 1 bytes), BadOutOfMemory.
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_String_Assign(OpcUa_String* destination, const char* text,
                                                                  OpcUa_Int32 length);
/// Bytewise order, null before empty before all others.
OPCUA_EXPORT int OpcUa_String_Compare(const OpcUa_String* left, const OpcUa_String* right);

OPCUA_EXPORT void OpcUa_ByteString_Initialize(OpcUa_ByteString* value);
OPCUA_EXPORT void OpcUa_ByteString_Clear(OpcUa_ByteString* value);
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_ByteString_Copy(const OpcUa_ByteString* source,
                                                                    OpcUa_ByteString* destination);
/// Copies length bytes; null data or a negative length gives the null value. What destination held is not
/// freed. Good, BadInvalidArgument, BadOutOfMemory.
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_ByteString_Assign(OpcUa_ByteString* destination,
                                                                      const void* data, OpcUa_Int32 length);
/// As for strings.
OPCUA_EXPORT int OpcUa_ByteString_Compare(const OpcUa_ByteString* left, const OpcUa_ByteString* right);

/// Field by field, in the order in which they are declared.
OPCUA_EXPORT int OpcUa_Guid_Compare(const OpcUa_Guid* left, const OpcUa_Guid* right);

// ---- node ids
OPCUA_EXPORT void OpcUa_NodeId_Initialize(OpcUa_NodeId* value);
OPCUA_EXPORT void OpcUa_NodeId_Clear(OpcUa_NodeId* value);
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_NodeId_Copy(const OpcUa_NodeId* source,
                                                                OpcUa_NodeId* destination);
/// Total order: namespace index, identifier type, identifier.
OPCUA_EXPORT int OpcUa_NodeId_Compare(const OpcUa_NodeId* left, const OpcUa_NodeId* right);
/// In namespace 0, and the identifier is 0, empty or all zeros. A null pointer is null.
OPCUA_EXPORT OpcUa_Boolean OpcUa_NodeId_IsNull(const OpcUa_NodeId* value);

OPCUA_EXPORT void OpcUa_ExpandedNodeId_Initialize(OpcUa_ExpandedNodeId* value);
OPCUA_EXPORT void OpcUa_ExpandedNodeId_Clear(OpcUa_ExpandedNodeId* value);
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_ExpandedNodeId_Copy(const OpcUa_ExpandedNodeId* source,
                                                                        OpcUa_ExpandedNodeId* destination);
/// Total order: server index, namespace URI, node id.
OPCUA_EXPORT int OpcUa_ExpandedNodeId_Compare(const OpcUa_ExpandedNodeId* left,
                                              const OpcUa_ExpandedNodeId* right);

// ---- names and texts
OPCUA_EXPORT void OpcUa_QualifiedName_Initialize(OpcUa_QualifiedName* value);
OPCUA_EXPORT void OpcUa_QualifiedName_Clear(OpcUa_QualifiedName* value);
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_QualifiedName_Copy(const OpcUa_QualifiedName* source,
                                                                       OpcUa_QualifiedName* destination);
/// Total order: namespace index, name.
OPCUA_EXPORT int OpcUa_QualifiedName_Compare(const OpcUa_QualifiedName* left,
                                             const OpcUa_QualifiedName* right);

OPCUA_EXPORT void OpcUa_LocalizedText_Initialize(OpcUa_LocalizedText* value);
OPCUA_EXPORT void OpcUa_LocalizedText_Clear(OpcUa_LocalizedText* value);
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_LocalizedText_Copy(const OpcUa_LocalizedText* source,
                                                                       OpcUa_LocalizedText* destination);
/// Total order: locale, text.
OPCUA_EXPORT int OpcUa_LocalizedText_Compare(const OpcUa_LocalizedText* left,
                                             const OpcUa_LocalizedText* right);

// ---- values
OPCUA_EXPORT void OpcUa_ExtensionObject_Initialize(OpcUa_ExtensionObject* value);
OPCUA_EXPORT void OpcUa_ExtensionObject_Clear(OpcUa_ExtensionObject* value);
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_ExtensionObject_Copy(const OpcUa_ExtensionObject* source,
                                                                         OpcUa_ExtensionObject* destination);
/// Total order: type id, encoding, body.
OPCUA_EXPORT int OpcUa_ExtensionObject_Compare(const OpcUa_ExtensionObject* left,
                                               const OpcUa_ExtensionObject* right);
/// Clears value, which then owns object (made with OpcUa_EncodeableObject_Create). type must outlive value.
OPCUA_EXPORT void OpcUa_ExtensionObject_AttachEncodeable(OpcUa_ExtensionObject* value,
                                                         const struct OpcUa_EncodeableType* type,
                                                         void* object);

OPCUA_EXPORT void OpcUa_Variant_Initialize(OpcUa_Variant* value);
OPCUA_EXPORT void OpcUa_Variant_Clear(OpcUa_Variant* value);
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_Variant_Copy(const OpcUa_Variant* source,
                                                                 OpcUa_Variant* destination);
/// Total order; 0 exactly when type, shape and every element are equal (floating point compared bitwise).
OPCUA_EXPORT int OpcUa_Variant_Compare(const OpcUa_Variant* left, const OpcUa_Variant* right);
/// Whether a scalar of this built-in type is a block of its own, to which the variant points.
OPCUA_EXPORT OpcUa_Boolean OpcUa_Variant_IsHeldByPointer(OpcUa_Byte builtInType);
/// Where the value of a scalar variant lies, inside or in its block; null for all other variants. Valid until
/// the variant changes.
OPCUA_EXPORT const void* OpcUa_Variant_ScalarData(const OpcUa_Variant* value);

OPCUA_EXPORT void OpcUa_DataValue_Initialize(OpcUa_DataValue* value);
OPCUA_EXPORT void OpcUa_DataValue_Clear(OpcUa_DataValue* value);
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_DataValue_Copy(const OpcUa_DataValue* source,
                                                                   OpcUa_DataValue* destination);
/// Total order: value, status, source time, server time.
OPCUA_EXPORT int OpcUa_DataValue_Compare(const OpcUa_DataValue* left, const OpcUa_DataValue* right);

OPCUA_EXPORT void OpcUa_DiagnosticInfo_Initialize(OpcUa_DiagnosticInfo* value);
OPCUA_EXPORT void OpcUa_DiagnosticInfo_Clear(OpcUa_DiagnosticInfo* value);
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_DiagnosticInfo_Copy(const OpcUa_DiagnosticInfo* source,
                                                                        OpcUa_DiagnosticInfo* destination);
/// Total order: field by field, inner ones last.
OPCUA_EXPORT int OpcUa_DiagnosticInfo_Compare(const OpcUa_DiagnosticInfo* left,
                                              const OpcUa_DiagnosticInfo* right);

// ---- by built-in type, for those that handle all of them
/// sizeof the C type; 0 for an unknown one.
OPCUA_EXPORT size_t OpcUa_BuiltInType_Size(OpcUa_Byte builtInType);
/// "Int32", "NodeId" ...; "Null" for 0, "Unknown" otherwise; static storage.
OPCUA_EXPORT const char* OpcUa_BuiltInType_Name(OpcUa_Byte builtInType);
/// count elements lie packed at data; data itself is not freed. Nothing happens for an unknown type.
OPCUA_EXPORT void OpcUa_BuiltInType_InitializeArray(OpcUa_Byte builtInType, void* data, size_t count);
OPCUA_EXPORT void OpcUa_BuiltInType_ClearArray(OpcUa_Byte builtInType, void* data, size_t count);
/// Deep copies into memory that holds anything. Good; BadInvalidArgument for an unknown type or a null
/// pointer; BadOutOfMemory, with which every element of the destination is the null value.
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_BuiltInType_CopyArray(OpcUa_Byte builtInType,
                                                                          const void* source,
                                                                          void* destination, size_t count);
/// Orders two values of one type; 0 for an unknown type.
OPCUA_EXPORT int OpcUa_BuiltInType_Compare(OpcUa_Byte builtInType, const void* left, const void* right);

/// Now, from the system's clock. Any thread.
OPCUA_EXPORT OpcUa_DateTime OpcUa_DateTime_UtcNow(void);

#ifdef __cplusplus
}
#endif
#endif
