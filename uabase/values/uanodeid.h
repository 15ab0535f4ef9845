// The identifier of a node, OPC 10000-3, 8.2.
#pragma once

#include <uabase/values/uabytestring.h>
#include <uabase/values/uaguid.h>
#include <uabase/values/uastring.h>

#include <compare>
#include <functional>
#include <string_view>

/// Numeric and GUID identifiers copy without allocation, the others share their identifier.
class UaNodeId
{
public:
    UaNodeId() noexcept = default; ///< the null node id
    explicit UaNodeId(OpcUa_UInt32 identifier, OpcUa_UInt16 namespaceIndex = 0) noexcept;
    UaNodeId(const UaString& identifier, OpcUa_UInt16 namespaceIndex) noexcept;
    UaNodeId(const UaGuid& identifier, OpcUa_UInt16 namespaceIndex) noexcept;
    UaNodeId(const UaByteString& identifier, OpcUa_UInt16 namespaceIndex) noexcept;
    explicit UaNodeId(const OpcUa_NodeId& value) noexcept : m_value(value) {}

    /// "i=84", "ns=2;s=abc", "ns=3;g=<guid>", "ns=4;b=<Base64>". Null on a fault; ok tells that apart from
    /// "i=0".
    [[nodiscard]] static UaNodeId fromString(std::string_view text, bool* ok = nullptr);
    /// "i=84", "ns=2;s=abc": the namespace is left out when it is 0 (OPC 10000-6, 5.3.1.10).
    [[nodiscard]] UaString toXmlString() const;
    [[nodiscard]] UaString toString() const { return toXmlString(); }
    /// "ns=0;i=84": always with the namespace; for log lines.
    [[nodiscard]] UaString toFullString() const;

    bool isNull() const noexcept { return OpcUa_NodeId_IsNull(m_value.get()) != 0; }
    OpcUa_UInt16 namespaceIndex() const noexcept { return m_value->NamespaceIndex; }
    void setNamespaceIndex(OpcUa_UInt16 namespaceIndex) noexcept;
    OpcUa_IdentifierType identifierType() const noexcept
    {
        return static_cast<OpcUa_IdentifierType>(m_value->IdentifierType);
    }
    bool isNumeric() const noexcept { return m_value->IdentifierType == OpcUa_IdentifierType_Numeric; }
    bool isNumeric(OpcUa_UInt32 identifier, OpcUa_UInt16 namespaceIndex = 0) const noexcept
    {
        return isNumeric() && identifierNumeric() == identifier && this->namespaceIndex() == namespaceIndex;
    }
    /// Each gives a null value when the identifier is of another kind.
    OpcUa_UInt32 identifierNumeric() const noexcept;
    UaString identifierString() const noexcept;
    UaGuid identifierGuid() const noexcept;
    UaByteString identifierOpaque() const noexcept;
    /// The identifier alone as text: "84", "abc", a GUID, Base64.
    [[nodiscard]] UaString identifierText() const;
    void clear() noexcept { m_value.clear(); }

    /// As for UaString: get borrows, attach takes over, detach hands over, copyTo copies into raw memory.
    const OpcUa_NodeId* get() const noexcept { return m_value.get(); }
    void attach(OpcUa_NodeId* value) noexcept { m_value.attach(value); }
    [[nodiscard]] OpcUa_StatusCode detach(OpcUa_NodeId* destination) noexcept
    {
        return m_value.detach(destination);
    }
    [[nodiscard]] OpcUa_StatusCode copyTo(OpcUa_NodeId* destination) const noexcept
    {
        return m_value.copyTo(destination);
    }

    friend bool operator==(const UaNodeId& left, const UaNodeId& right) noexcept
    {
        return (left <=> right) == 0;
    }
    /// Namespace index, identifier type, identifier.
    friend std::strong_ordering operator<=>(const UaNodeId& left, const UaNodeId& right) noexcept
    {
        return OpcUa_NodeId_Compare(left.get(), right.get()) <=> 0;
    }
    std::size_t hash() const noexcept;

private:
    UaSharedValue<OpcUa_NodeId> m_value;
};

template <>
struct std::hash<UaNodeId>
{
    std::size_t operator()(const UaNodeId& value) const noexcept { return value.hash(); }
};
