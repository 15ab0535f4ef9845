#include <uaclientsdk/connection/endpointurl.h>

#include <opcua/opcua_channel.h>
#include <opcua/opcua_endpointurl.h>

namespace UaClientSdk {

namespace {

std::string_view schemeOf(std::string_view url)
{
    return OpcUa_EndpointUrl_GetScheme(url.data(), url.size());
}

} // namespace

const char* transportProfileOf(std::string_view url)
{
    if (schemeOf(url) == "opc.tcp")
        return OpcUa_TransportProfile_UaTcp;
    return isHttpsUrl(url) ? OpcUa_TransportProfile_HttpsBinary : nullptr;
}

bool isHttpsUrl(std::string_view url)
{
    const std::string_view scheme = schemeOf(url);
    return scheme == "https" || scheme == "http";
}

EndpointUrl parseEndpointUrl(std::string_view url)
{
    OpcUa_EndpointUrl parts;
    if (OpcUa_IsBad(OpcUa_EndpointUrl_Parse(url.data(), url.size(), &parts)))
        return {};
    return {parts.Scheme, std::string(parts.Host, parts.HostLength), parts.Port,
            std::string(parts.Path, parts.PathLength), true};
}

} // namespace UaClientSdk
