#include <uabase/values/uaextensionobject.h>

#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uanodeid.h>

UaExtensionObject::UaExtensionObject(const UaExpandedNodeId& typeId, const UaByteString& body) noexcept
{
    OpcUa_ExtensionObject value;
    OpcUa_ExtensionObject_Initialize(&value);
    const bool hasType = OpcUa_IsGood(typeId.copyTo(&value.TypeId));
    if (hasType && !body.isNull() && OpcUa_IsGood(body.copyTo(&value.Body.Binary)))
        value.Encoding = OpcUa_ExtensionObjectEncoding_Binary;
    m_value.attach(&value);
}

bool UaExtensionObject::isNull() const noexcept
{
    return encoding() == OpcUa_ExtensionObjectEncoding_None && typeId().isNull();
}

UaNodeId UaExtensionObject::encodingId() const noexcept
{
    const UaExpandedNodeId id = typeId();
    return id.isLocal() ? id.nodeId() : UaNodeId();
}

OpcUa_StatusCode UaExtensionObject::binaryBody(UaByteString& body) const noexcept
{
    body.clear();
    if (encoding() == OpcUa_ExtensionObjectEncoding_Binary) {
        body = UaByteString(m_value->Body.Binary);
        return OpcUa_Good;
    }
    const OpcUa_EncodeableType* type = encodeableType();
    if (!type)
        return OpcUa_BadNoData;
    OpcUa_ByteString bytes;
    OpcUa_ByteString_Initialize(&bytes);
    const OpcUa_StatusCode status =
        OpcUa_EncodeableObject_EncodeBinary(type, m_value->Body.EncodeableObject.Object, &bytes);
    if (OpcUa_IsGood(status))
        body.attach(&bytes);
    return status;
}

UaByteString UaExtensionObject::xmlBody() const noexcept
{
    return encoding() == OpcUa_ExtensionObjectEncoding_Xml ? UaByteString(m_value->Body.Xml) : UaByteString();
}

const void* UaExtensionObject::decoded(const OpcUa_EncodeableType& type) const noexcept
{
    return encodeableType() == &type ? m_value->Body.EncodeableObject.Object : nullptr;
}

const OpcUa_EncodeableType* UaExtensionObject::encodeableType() const noexcept
{
    if (!isDecoded() || !m_value->Body.EncodeableObject.Object)
        return nullptr;
    return m_value->Body.EncodeableObject.Type;
}

void UaExtensionObject::attachDecoded(const OpcUa_EncodeableType& type, void* object) noexcept
{
    OpcUa_ExtensionObject value;
    OpcUa_ExtensionObject_Initialize(&value);
    if (object)
        OpcUa_ExtensionObject_AttachEncodeable(&value, &type, object);
    m_value.attach(&value);
}

OpcUa_StatusCode UaExtensionObject::setDecoded(const OpcUa_EncodeableType& type, const void* object) noexcept
{
    clear();
    void* copy = OpcUa_EncodeableObject_Create(&type);
    if (!copy)
        return OpcUa_BadOutOfMemory;
    const OpcUa_StatusCode status = OpcUa_EncodeableObject_Copy(&type, object, copy);
    if (OpcUa_IsGood(status))
        attachDecoded(type, copy);
    else
        OpcUa_EncodeableObject_Delete(&type, &copy);
    return status;
}
