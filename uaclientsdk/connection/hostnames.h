// Whether a certificate is that of the host that somebody connects to.
#pragma once

#include <uabase/uapkicpp/uapkicertificateinfo.h>

#include <string_view>

namespace UaClientSdk {

/// host is that of a URL, without brackets. Names compare without regard to case, addresses by what they
/// mean. The local host goes by "localhost", its loopback addresses and its own name alike.
[[nodiscard]] bool namesHost(const UaPkiCertificateInfo& certificate, std::string_view host);

} // namespace UaClientSdk
