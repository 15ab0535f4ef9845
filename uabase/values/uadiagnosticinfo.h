// Vendor-specific diagnosis of one operation, OPC 10000-4, 7.12; the indexes point into a response's string
// table.
#pragma once

#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>

/// Copies share the content.
class UaDiagnosticInfo
{
public:
    UaDiagnosticInfo() noexcept = default;
    explicit UaDiagnosticInfo(const OpcUa_DiagnosticInfo& value) noexcept : m_value(value) {}

    bool isNull() const noexcept;
    /// Indexes into the string table; -1 where absent.
    OpcUa_Int32 symbolicId() const noexcept { return m_value->SymbolicId; }
    OpcUa_Int32 namespaceUri() const noexcept { return m_value->NamespaceUri; }
    OpcUa_Int32 locale() const noexcept { return m_value->Locale; }
    OpcUa_Int32 localizedText() const noexcept { return m_value->LocalizedText; }
    UaString additionalInfo() const noexcept { return UaString(m_value->AdditionalInfo); }
    UaStatusCode innerStatusCode() const noexcept { return m_value->InnerStatusCode; }
    bool hasInner() const noexcept { return m_value->InnerDiagnosticInfo != nullptr; }
    UaDiagnosticInfo inner() const noexcept; ///< null when there is none

    /// As for UaString: get borrows, attach takes over, detach hands over, copyTo copies into raw memory.
    const OpcUa_DiagnosticInfo* get() const noexcept { return m_value.get(); }
    void attach(OpcUa_DiagnosticInfo* value) noexcept { m_value.attach(value); }
    [[nodiscard]] OpcUa_StatusCode detach(OpcUa_DiagnosticInfo* destination) noexcept
    {
        return m_value.detach(destination);
    }
    [[nodiscard]] OpcUa_StatusCode copyTo(OpcUa_DiagnosticInfo* destination) const noexcept
    {
        return m_value.copyTo(destination);
    }

    friend bool operator==(const UaDiagnosticInfo& left, const UaDiagnosticInfo& right) noexcept
    {
        return OpcUa_DiagnosticInfo_Compare(left.get(), right.get()) == 0;
    }

private:
    UaSharedValue<OpcUa_DiagnosticInfo> m_value;
};
