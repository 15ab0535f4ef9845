// A certificate for the soak's secured sessions.
#pragma once

#include <uaclientsdk/sessionsecurityinfo.h>

#include <string>

namespace soak {

/// Fills policy, mode, own certificate with its key and the server's certificate, which is asked for there.
/// False, with the reason on the error stream, when that cannot be done.
bool secure(const std::string& url, UaClientSdk::SessionSecurityInfo& security);

/// The same URL with another port.
std::string withPort(const std::string& url, unsigned int port);

} // namespace soak
