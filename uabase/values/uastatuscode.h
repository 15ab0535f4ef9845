// The outcome of an operation, OPC 10000-4, 7.39.
#pragma once

#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uastring.h>

/// Good, uncertain or bad, with the code that says why. A function that returns one wants it looked at.
class [[nodiscard]] UaStatusCode
{
public:
    constexpr UaStatusCode() noexcept = default; ///< Good
    constexpr UaStatusCode(OpcUa_StatusCode code) noexcept : m_code(code) {}

    constexpr OpcUa_StatusCode code() const noexcept { return m_code; }
    constexpr bool isGood() const noexcept { return OpcUa_IsGood(m_code); }
    constexpr bool isUncertain() const noexcept { return OpcUa_IsUncertain(m_code); }
    constexpr bool isBad() const noexcept { return OpcUa_IsBad(m_code); }
    constexpr bool isNotBad() const noexcept { return OpcUa_IsNotBad(m_code); }

    /// The code's name ("BadTimeout"; info bits do not matter), or "0x80FF0000" for one that has none.
    [[nodiscard]] UaString toString() const;
    /// "0x800A0000"
    [[nodiscard]] UaString toHexString() const;

    friend constexpr bool operator==(const UaStatusCode& left, const UaStatusCode& right) noexcept
    {
        return left.m_code == right.m_code;
    }
    friend constexpr bool operator==(const UaStatusCode& left, OpcUa_StatusCode right) noexcept
    {
        return left.m_code == right;
    }

protected:
    OpcUa_StatusCode m_code = 0;
};
