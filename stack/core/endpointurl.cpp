#include <stack/core/endpointurl.h>

#include <opcua/opcua_statuscodes.h>
#include <stack/core/protocol.h>

#include <algorithm>
#include <charconv>
#include <ranges>
#include <system_error>

namespace opcua {

namespace {

constexpr std::string_view separator = "://";
constexpr size_t maxHostLength = 255;

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool isPlain(char c)
{
    return static_cast<unsigned char>(c) > 0x20 && c != 0x7F;
}

bool parsePort(std::string_view text, std::uint16_t& port)
{
    const auto result = std::from_chars(text.data(), text.data() + text.size(), port);
    return result.ec == std::errc{} && result.ptr == text.data() + text.size() && port != 0;
}

// Splits "host", "host:port", "[v6]" and "[v6]:port".
bool parseAuthority(std::string_view authority, EndpointUrl& url)
{
    std::string_view host = authority;
    std::string_view rest;
    if (authority.starts_with('[')) {
        const size_t end = authority.find(']');
        if (end == std::string_view::npos)
            return false;
        host = authority.substr(1, end - 1);
        rest = authority.substr(end + 1);
        if (host.find(':') == std::string_view::npos)
            return false;
    } else if (const size_t colon = authority.find(':'); colon != std::string_view::npos) {
        host = authority.substr(0, colon);
        rest = authority.substr(colon);
    }
    if (host.empty() || host.size() > maxHostLength || host.find_first_of("@[]\\#") != std::string_view::npos)
        return false;
    url.host = host;
    return rest.empty() || (rest.front() == ':' && parsePort(rest.substr(1), url.port));
}

} // namespace

std::string_view schemeOf(std::string_view text)
{
    const size_t colon = text.find(':');
    if (colon == std::string_view::npos)
        return {};
    const std::string_view scheme = text.substr(0, colon);
    for (const std::string_view known : {opcTcpScheme, httpsScheme, httpScheme})
        if (std::ranges::equal(scheme, known, {}, lower))
            return known;
    return {};
}

OpcUa_StatusCode parseEndpointUrl(std::string_view text, EndpointUrl& url)
{
    url = {};
    const std::string_view scheme = schemeOf(text);
    if (text.size() > maxUrlLength || scheme.empty() || !text.substr(scheme.size()).starts_with(separator) ||
        !std::all_of(text.begin(), text.end(), isPlain))
        return OpcUa_BadTcpEndpointUrlInvalid;
    EndpointUrl parts;
    parts.scheme = scheme;
    const std::string_view rest = text.substr(scheme.size() + separator.size());
    const size_t end = std::min(rest.find_first_of("/?"), rest.size());
    if (!parseAuthority(rest.substr(0, end), parts))
        return OpcUa_BadTcpEndpointUrlInvalid;
    parts.path = rest.substr(end);
    url = parts;
    return OpcUa_Good;
}

} // namespace opcua
