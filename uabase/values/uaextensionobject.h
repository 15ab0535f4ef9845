// A structure's body with the id of its type, OPC 10000-6, 5.2.2.15.
#pragma once

#include <uabase/values/uabytestring.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uanodeid.h>

/// Copies share the body.
class UaExtensionObject
{
public:
    UaExtensionObject() noexcept = default;
    explicit UaExtensionObject(const OpcUa_ExtensionObject& value) noexcept : m_value(value) {}
    /// A binary body; typeId is the id of the binary encoding. Without body when out of memory.
    UaExtensionObject(const UaExpandedNodeId& typeId, const UaByteString& body) noexcept;

    bool isNull() const noexcept; ///< neither type nor body
    /// The id of the encoding as on the wire.
    UaExpandedNodeId typeId() const noexcept { return UaExpandedNodeId(m_value->TypeId); }
    /// The same as a node id; null when it names another server or a namespace by URI.
    UaNodeId encodingId() const noexcept;
    OpcUa_ExtensionObjectEncoding encoding() const noexcept
    {
        return static_cast<OpcUa_ExtensionObjectEncoding>(m_value->Encoding);
    }
    bool isDecoded() const noexcept { return encoding() == OpcUa_ExtensionObjectEncoding_EncodeableObject; }

    /// The binary body; one that the stack has decoded is encoded again. BadNoData for no body and for XML.
    [[nodiscard]] OpcUa_StatusCode binaryBody(UaByteString& body) const noexcept;
    /// The XML body as text; null for others.
    [[nodiscard]] UaByteString xmlBody() const noexcept;
    /// The decoded structure, when it is of that type; borrowed, else null.
    const void* decoded(const OpcUa_EncodeableType& type) const noexcept;
    /// The type of a decoded body, else null.
    const OpcUa_EncodeableType* encodeableType() const noexcept;
    /// Takes ownership of an object made with OpcUa_EncodeableObject_Create.
    void attachDecoded(const OpcUa_EncodeableType& type, void* object) noexcept;
    /// Deep copy of a structure of the standard.
    [[nodiscard]] OpcUa_StatusCode setDecoded(const OpcUa_EncodeableType& type, const void* object) noexcept;
    void clear() noexcept { m_value.clear(); }

    /// As for UaString: get borrows, attach takes over, detach hands over, copyTo copies into raw memory.
    const OpcUa_ExtensionObject* get() const noexcept { return m_value.get(); }
    void attach(OpcUa_ExtensionObject* value) noexcept { m_value.attach(value); }
    [[nodiscard]] OpcUa_StatusCode detach(OpcUa_ExtensionObject* destination) noexcept
    {
        return m_value.detach(destination);
    }
    [[nodiscard]] OpcUa_StatusCode copyTo(OpcUa_ExtensionObject* destination) const noexcept
    {
        return m_value.copyTo(destination);
    }

    /// By type and content; a decoded body and its own bytes are different.
    friend bool operator==(const UaExtensionObject& left, const UaExtensionObject& right) noexcept
    {
        return OpcUa_ExtensionObject_Compare(left.get(), right.get()) == 0;
    }

private:
    UaSharedValue<OpcUa_ExtensionObject> m_value;
};
