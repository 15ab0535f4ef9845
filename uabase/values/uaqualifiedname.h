// A name with its namespace, OPC 10000-3, 8.3.
#pragma once

#include <uabase/values/uastring.h>

#include <compare>
#include <functional>
#include <string_view>

class UaQualifiedName
{
public:
    UaQualifiedName() noexcept = default;
    UaQualifiedName(const UaString& name, OpcUa_UInt16 namespaceIndex) noexcept
        : m_namespaceIndex(namespaceIndex), m_name(name)
    {
    }
    explicit UaQualifiedName(const OpcUa_QualifiedName& value) noexcept
        : m_namespaceIndex(value.NamespaceIndex), m_name(value.Name)
    {
    }
    /// "2:name"; a text without a number before a colon is a name of namespace 0.
    [[nodiscard]] static UaQualifiedName fromString(std::string_view text);
    /// "2:name", or "name" in namespace 0 where that reads back as the same.
    [[nodiscard]] UaString toString() const;

    bool isNull() const noexcept { return m_namespaceIndex == 0 && m_name.isEmpty(); }
    OpcUa_UInt16 namespaceIndex() const noexcept { return m_namespaceIndex; }
    const UaString& name() const noexcept { return m_name; }
    void setNamespaceIndex(OpcUa_UInt16 namespaceIndex) noexcept { m_namespaceIndex = namespaceIndex; }
    void setName(const UaString& name) noexcept { m_name = name; }

    /// Deep copy into raw memory.
    [[nodiscard]] OpcUa_StatusCode copyTo(OpcUa_QualifiedName* destination) const noexcept;

    friend bool operator==(const UaQualifiedName&, const UaQualifiedName&) noexcept = default;
    friend std::strong_ordering operator<=>(const UaQualifiedName&,
                                            const UaQualifiedName&) noexcept = default;

private:
    OpcUa_UInt16 m_namespaceIndex = 0;
    UaString m_name;
};

template <>
struct std::hash<UaQualifiedName>
{
    std::size_t operator()(const UaQualifiedName& value) const noexcept
    {
        return std::hash<UaString>()(value.name()) * 31u + value.namespaceIndex();
    }
};
