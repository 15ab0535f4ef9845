// The generated tables, as the lookup functions see them. Not for use outside the stack.
#ifndef STACK_ENCODING_NAMETABLES_H
#define STACK_ENCODING_NAMETABLES_H

#include <opcua/opcua_encodeable.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct StatusCodeName
{
    OpcUa_StatusCode Code;
    const char* Name;
} StatusCodeName;

/// by code
extern const StatusCodeName opcua_statusCodeNames[];
extern const unsigned opcua_statusCodeNameCount;

/// the first is attribute 1
extern const char* const opcua_attributeNames[];
extern const unsigned opcua_attributeNameCount;

/// by TypeId and by BinaryEncodingTypeId
extern const OpcUa_EncodeableType* const opcua_typesByTypeId[];
extern const unsigned opcua_typesByTypeIdCount;
extern const OpcUa_EncodeableType* const opcua_typesByBinaryId[];
extern const unsigned opcua_typesByBinaryIdCount;

/// by TypeId
extern const OpcUa_EnumeratedType opcua_enumeratedTypes[];
extern const unsigned opcua_enumeratedTypeCount;

#ifdef __cplusplus
}
#endif
#endif
