#include <uaclientsdk/connection/hostnames.h>

#include <uabase/values/uastring.h>

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <cctype>
#include <climits>
#include <string>
#include <unistd.h>

namespace UaClientSdk {

namespace {

// Lower case without a final dot; an address of IPv6 with every digit, so that all its forms are one.
std::string normalized(std::string_view name)
{
    if (name.ends_with('.'))
        name.remove_suffix(1);
    std::string text(name.substr(0, name.find('%'))); // a zone is of use to this machine only
    std::array<unsigned char, 16> address{};
    if (inet_pton(AF_INET6, text.c_str(), address.data()) == 1) {
        text.clear();
        for (std::size_t i = 0; i < address.size(); ++i) {
            constexpr const char* digits = "0123456789abcdef";
            text += i > 0 && i % 2 == 0 ? ":" : "";
            text += digits[address[i] >> 4];
            text += digits[address[i] & 0x0F];
        }
        return text;
    }
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

std::string ownName()
{
    std::array<char, HOST_NAME_MAX + 1> name{};
    return gethostname(name.data(), name.size() - 1) == 0 ? normalized(name.data()) : std::string();
}

bool isLoopback(std::string_view name)
{
    return name == "localhost" || name == "127.0.0.1" || name == "0000:0000:0000:0000:0000:0000:0000:0001";
}

// With or without its domain.
bool isOwnName(std::string_view name)
{
    const std::string own = ownName();
    const auto first = [](std::string_view full) { return full.substr(0, full.find('.')); };
    return !own.empty() && !name.empty() && (name == own || (first(name) == first(own) && own == first(own)));
}

bool anyOf(const UaStringArray& names, bool (*wanted)(std::string_view, std::string_view),
           std::string_view host)
{
    return std::any_of(
        names.begin(), names.end(),
        [&](const OpcUa_String& name) { return wanted(normalized(UaString(name).view()), host); });
}

bool isThatHost(std::string_view name, std::string_view host)
{
    if (name.empty())
        return false;
    const bool bothLocal =
        (isLoopback(name) && (isLoopback(host) || isOwnName(host))) || (isLoopback(host) && isOwnName(name));
    return name == host || bothLocal;
}

} // namespace

bool namesHost(const UaPkiCertificateInfo& certificate, std::string_view host)
{
    const std::string wanted = normalized(host);
    return anyOf(certificate.DNSNames, isThatHost, wanted) ||
           anyOf(certificate.IPAddresses, isThatHost, wanted);
}

} // namespace UaClientSdk
