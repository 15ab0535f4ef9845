#pragma once

namespace UaClientSdk {
class ClientSecurityInfo;
}

/// Names the folders of the application's certificate store, those of opc.tcp and those of HTTPS.
void qlumFillPkiFolders(UaClientSdk::ClientSecurityInfo& security);
