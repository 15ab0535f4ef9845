#include <opcua/opcua_endpointurl.h>
#include <opcua/opcua_statuscodes.h>
#include <stack/core/endpointurl.h>

#include <string_view>

const char* OpcUa_EndpointUrl_GetScheme(const char* text, size_t length)
{
    const std::string_view scheme = text != nullptr ? opcua::schemeOf({text, length}) : std::string_view();
    return scheme.empty() ? "" : scheme.data();
}

OpcUa_StatusCode OpcUa_EndpointUrl_Parse(const char* text, size_t length, OpcUa_EndpointUrl* url)
{
    if (url == nullptr)
        return OpcUa_BadInvalidArgument;
    *url = {};
    if (text == nullptr)
        return OpcUa_BadInvalidArgument;
    opcua::EndpointUrl parts;
    const OpcUa_StatusCode status = opcua::parseEndpointUrl({text, length}, parts);
    if (OpcUa_IsGood(status))
        *url = {parts.scheme.data(), parts.host.data(), parts.host.size(),
                parts.path.data(),   parts.path.size(), parts.port};
    return status;
}
