#pragma once
#include <uaclientsdk/clientsecurityinfo.h>

#include <QString>

#include <functional>

/// What a discovery call to an address needs: whom it trusts, and what the user lets pass.
using QlumDiscoverySecurity = std::function<UaClientSdk::ClientSecurityInfo(const QString& url)>;

/// Says how the application does it, before tools ask; null for no more.
void qlumSetDiscoverySecurity(QlumDiscoverySecurity security);
/// For a discovery call of a tool; trusts nobody as long as nothing was said. Any thread.
[[nodiscard]] UaClientSdk::ClientSecurityInfo qlumDiscoverySecurity(const QString& url);
