#pragma once
#include <uaclientsdk/clientsecurityinfo.h>

#include <QString>

/// Names the folders of the application's certificate store, those of opc.tcp and those of HTTPS.
void qlumFillPkiFolders(UaClientSdk::ClientSecurityInfo& security);
/// For discovery calls to an address: these folders, and what the user lets pass of its TLS certificate.
[[nodiscard]] UaClientSdk::ClientSecurityInfo qlumSecurityForDiscovery(const QString& url);
