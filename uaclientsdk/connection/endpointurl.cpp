#include <uaclientsdk/connection/endpointurl.h>

#include <opcua/opcua_channel.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <system_error>

namespace UaClientSdk {

namespace {

constexpr std::size_t maxUrlLength = 4096;

char lower(char c)
{
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

// scheme in lower case
bool hasScheme(std::string_view url, std::string_view scheme)
{
    return url.size() >= scheme.size() &&
           std::equal(
               scheme.begin(), scheme.end(), url.begin(), [](char a, char b) { return a == lower(b); });
}

// Takes "[v6]" or everything up to ':' or '/' off the front of rest; false for a bracket that does not close.
bool takeHost(std::string_view& rest, std::string& host)
{
    if (rest.starts_with('[')) {
        const auto close = rest.find(']');
        if (close == std::string_view::npos)
            return false;
        host = rest.substr(1, close - 1);
        rest.remove_prefix(close + 1);
        return true;
    }
    const auto end = std::min(rest.find_first_of(":/?"), rest.size());
    host = rest.substr(0, end);
    rest.remove_prefix(end);
    return true;
}

// Takes ":port" off the front of rest, if there is one; false for what is no port.
bool takePort(std::string_view& rest, OpcUa_UInt16& port)
{
    port = defaultOpcUaPort;
    if (!rest.starts_with(':'))
        return true;
    rest.remove_prefix(1);
    const auto end = std::min(rest.find_first_of("/?"), rest.size());
    const std::string_view digits = rest.substr(0, end);
    rest.remove_prefix(end);
    const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), port);
    return parsed.ec == std::errc() && parsed.ptr == digits.data() + digits.size() && port != 0;
}

} // namespace

const char* transportProfileOf(std::string_view url)
{
    if (hasScheme(url, "opc.tcp"))
        return OpcUa_TransportProfile_UaTcp;
    return isHttpsUrl(url) ? OpcUa_TransportProfile_HttpsBinary : nullptr;
}

bool isHttpsUrl(std::string_view url)
{
    return hasScheme(url, "http");
}

EndpointUrl parseEndpointUrl(std::string_view url)
{
    EndpointUrl result;
    const auto separator = url.find("://");
    if (url.size() > maxUrlLength || separator == std::string_view::npos || separator == 0)
        return result;
    result.scheme = url.substr(0, separator);
    std::transform(result.scheme.begin(), result.scheme.end(), result.scheme.begin(), lower);
    std::string_view rest = url.substr(separator + 3);
    if (!takeHost(rest, result.host) || result.host.empty() || !takePort(rest, result.port))
        return {};
    result.path = rest;
    result.valid = true;
    return result;
}

} // namespace UaClientSdk
