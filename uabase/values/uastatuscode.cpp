#include <uabase/values/uastatuscode.h>

#include <string>

UaString UaStatusCode::toString() const
{
    const char* name = OpcUa_StatusCode_Name(m_code);
    return name ? UaString(name) : toHexString();
}

UaString UaStatusCode::toHexString() const
{
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string text = "0x";
    for (int shift = 28; shift >= 0; shift -= 4)
        text += digits[m_code >> shift & 15u];
    return UaString(text);
}
