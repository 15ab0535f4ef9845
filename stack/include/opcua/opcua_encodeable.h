// Structures of the standard, described by tables: one reader, one writer and one set of life-cycle functions
// serve them all.
#ifndef OPCUA_ENCODEABLE_H
#define OPCUA_ENCODEABLE_H

#include <opcua/opcua_builtintypes.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Kinds of a field beyond the built-in types (1..25).
enum {
    OpcUa_FieldKind_Enumeration = 30, ///< OpcUa_Int32 on the wire; the C field is a 32-bit enum
    OpcUa_FieldKind_Structure = 31    ///< StructureType says which
};

typedef struct OpcUa_FieldDescriptor
{
    const char* Name;
    OpcUa_Byte Kind;           ///< OpcUa_BuiltInType or OpcUa_FieldKind_...
    OpcUa_Byte IsArray;        ///< the C fields are OpcUa_Int32 `NoOf<Name>` and a pointer `<Name>`
    OpcUa_Byte IsPointer;      ///< a recursive or optional structure held by pointer
    OpcUa_UInt32 Offset;       ///< of the field, or of the array's pointer
    OpcUa_UInt32 LengthOffset; ///< of `NoOf<Name>`; arrays only
    const struct OpcUa_EncodeableType* StructureType;
    /// as the standard declares it, in namespace 0: 290 for a Duration of kind Double
    OpcUa_UInt32 DataTypeId;
} OpcUa_FieldDescriptor;

typedef struct OpcUa_EncodeableType
{
    const char* TypeName;              ///< "ReadRequest"
    OpcUa_UInt32 TypeId;               ///< data type node id in namespace 0
    OpcUa_UInt32 BinaryEncodingTypeId; ///< 0: has no encoding of its own
    OpcUa_UInt32 XmlEncodingTypeId;
    OpcUa_UInt32 AllocationSize;
    const OpcUa_FieldDescriptor* Fields; ///< inherited fields first
    OpcUa_UInt32 FieldCount;
    /// first C field is OpcUa_UInt32 SwitchField; fields follow in order of their value
    OpcUa_Boolean IsUnion;
    OpcUa_Boolean HasOptionalFields; ///< first C field is OpcUa_UInt32 EncodingMask
    OpcUa_UInt32 OptionalMask;       ///< bit i: field i is optional (present when its mask bit is set)
    OpcUa_UInt32 MinimumSize;        ///< bytes that one value takes at least on the wire
    OpcUa_Boolean IsFlat;            ///< no field owns memory: the bytes of the C structure are the value
} OpcUa_EncodeableType;

/// An enumeration of namespace 0, or an option set: then the values are masks of a BuiltInType.
typedef struct OpcUa_EnumeratedValue
{
    const char* Name;
    OpcUa_Int64 Value;
} OpcUa_EnumeratedValue;

typedef struct OpcUa_EnumeratedType
{
    const char* TypeName;   ///< "NodeClass"
    OpcUa_UInt32 TypeId;    ///< data type node id in namespace 0
    OpcUa_Byte BuiltInType; ///< Int32, or the unsigned type of an option set
    OpcUa_Boolean IsOptionSet;
    const OpcUa_EnumeratedValue* Values;
    OpcUa_UInt32 ValueCount;
} OpcUa_EnumeratedType;

/// Enumerations have 32 bits in C and in C++, and may hold numbers that have no name.
#ifdef __cplusplus
#    define OPCUA_ENUM_BASE : OpcUa_Int32
#else
#    define OPCUA_ENUM_BASE
#endif

/// Life cycle of any structure, with the rules of the built-in types (opcua_builtintypes.h). object holds
/// type->AllocationSize bytes. Create allocates and initialises, and is null when out of memory; Delete
/// clears, frees and nulls the pointer; DeleteArray does it with a block of count objects. Copy answers Good,
/// BadInvalidArgument or BadOutOfMemory.
OPCUA_EXPORT void OpcUa_EncodeableObject_Initialize(const OpcUa_EncodeableType* type, void* object);
OPCUA_EXPORT void OpcUa_EncodeableObject_Clear(const OpcUa_EncodeableType* type, void* object);
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_EncodeableObject_Copy(const OpcUa_EncodeableType* type,
                                                                          const void* source,
                                                                          void* destination);
OPCUA_EXPORT int OpcUa_EncodeableObject_Compare(const OpcUa_EncodeableType* type, const void* left,
                                                const void* right);
OPCUA_EXPORT void* OpcUa_EncodeableObject_Create(const OpcUa_EncodeableType* type);
OPCUA_EXPORT void OpcUa_EncodeableObject_Delete(const OpcUa_EncodeableType* type, void** object);
OPCUA_EXPORT void OpcUa_EncodeableObject_DeleteArray(const OpcUa_EncodeableType* type, void** objects,
                                                     size_t count);

/// The table entry for a type of namespace 0; null when unknown. Tables are static and never change: any
/// thread.
OPCUA_EXPORT const OpcUa_EncodeableType*
OpcUa_EncodeableType_FindByBinaryId(OpcUa_UInt32 binaryEncodingTypeId);
OPCUA_EXPORT const OpcUa_EncodeableType* OpcUa_EncodeableType_FindByTypeId(OpcUa_UInt32 dataTypeId);

/// Names of an enumeration's values; null when the data type is no enumeration of namespace 0.
OPCUA_EXPORT const OpcUa_EnumeratedType* OpcUa_EnumeratedType_Find(OpcUa_UInt32 enumDataTypeId);
/// "Object" for the value 1 of NodeClass (257); null when it has no name.
OPCUA_EXPORT const char* OpcUa_EnumValue_Name(OpcUa_UInt32 enumDataTypeId, OpcUa_Int32 value);

/// Binary form of a structure's body, without type id (OPC 10000-6, 5.2). Encode allocates bytes.Data.
/// Good; BadEncodingError, BadEncodingLimitsExceeded, BadInvalidArgument, BadOutOfMemory with null bytes.
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_EncodeableObject_EncodeBinary(
    const OpcUa_EncodeableType* type, const void* object, OpcUa_ByteString* bytes);
/// Decodes one body; object is initialised by the call and is left initialised on failure. consumed may be
/// null; it is the number of bytes read. Good, BadDecodingError, BadEncodingLimitsExceeded,
/// BadInvalidArgument, BadOutOfMemory.
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_EncodeableObject_DecodeBinary(
    const OpcUa_EncodeableType* type, const OpcUa_Byte* data, size_t size, void* object, size_t* consumed);
/// The same for one value of a built-in type; an unknown type is BadEncodingError or BadDecodingError.
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_BuiltInType_EncodeBinary(OpcUa_Byte builtInType,
                                                                             const void* value,
                                                                             OpcUa_ByteString* bytes);
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_BuiltInType_DecodeBinary(OpcUa_Byte builtInType,
                                                                             const OpcUa_Byte* data,
                                                                             size_t size, void* value,
                                                                             size_t* consumed);

#ifdef __cplusplus
}
#endif
#endif
