// What our own functions return: a status code and, where there is more to say, a text.
#pragma once

#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>

/// As UaStatusCode, of which it is one.
class [[nodiscard]] UaStatus : public UaStatusCode
{
public:
    UaStatus() noexcept = default;
    UaStatus(OpcUa_StatusCode code) noexcept : UaStatusCode(code) {}
    UaStatus(const UaStatusCode& code) noexcept : UaStatusCode(code) {}
    UaStatus(OpcUa_StatusCode code, const UaString& diagnosticText) noexcept
        : UaStatusCode(code), m_diagnosticText(diagnosticText)
    {
    }

    OpcUa_StatusCode statusCode() const noexcept { return code(); }
    /// What failed, in words; often empty.
    const UaString& diagnosticText() const noexcept { return m_diagnosticText; }
    void setStatus(OpcUa_StatusCode code, const UaString& diagnosticText = UaString()) noexcept
    {
        m_code = code;
        m_diagnosticText = diagnosticText;
    }

private:
    UaString m_diagnosticText;
};
