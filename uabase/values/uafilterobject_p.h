// Structures of the standard inside extension objects.
#pragma once

#include <opcua/opcua_encodeable.h>
#include <opcua/opcua_statuscodes.h>

/// A new initialised structure that destination owns; null when out of memory.
template <typename T>
T* uaAttachNew(const OpcUa_EncodeableType& type, OpcUa_ExtensionObject* destination) noexcept
{
    void* const object = OpcUa_EncodeableObject_Create(&type);
    if (object)
        OpcUa_ExtensionObject_AttachEncodeable(destination, &type, object);
    return static_cast<T*>(object);
}
