#include <uabase/values/uadiagnosticinfo.h>

bool UaDiagnosticInfo::isNull() const noexcept
{
    return symbolicId() < 0 && namespaceUri() < 0 && locale() < 0 && localizedText() < 0 &&
           m_value->AdditionalInfo.Length < 0 && m_value->InnerStatusCode == 0 && !hasInner();
}

UaDiagnosticInfo UaDiagnosticInfo::inner() const noexcept
{
    return hasInner() ? UaDiagnosticInfo(*m_value->InnerDiagnosticInfo) : UaDiagnosticInfo();
}
