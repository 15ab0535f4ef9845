// Constants of the client session layer.
#pragma once

#include <opcua/opcua_platform.h>

namespace UaClientSdk {

struct UaClient
{
    /// Connection status of a session; the values are fixed, applications store and compare them.
    enum ServerStatus {
        Disconnected = 0,
        Connected = 1,
        ConnectionWarningWatchdogTimeout = 2,
        ConnectionErrorApiReconnect = 3,
        ServerShutdown = 4,
        NewSessionCreated = 5
    };

    /// The step of a connect that an error belongs to.
    enum ConnectServiceType {
        CertificateValidation = 0,
        OpenSecureChannel = 1,
        CreateSession = 2,
        ActivateSession = 3
    };

    /// When the data type definitions of a server are loaded.
    enum TypeDictionaryMode {
        FirstUse = 0, ///< on the first look-up that finds nothing loaded
        Manual = 1,   ///< only by loadDataTypeDictionaries
        Connect = 2,  ///< right after connect
        Reconnect = 3 ///< after connect and after every reconnect
    };
};

} // namespace UaClientSdk
