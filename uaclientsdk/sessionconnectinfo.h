// What a session asks for when it connects.
#pragma once

#include <uabase/values/uaarrays.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/uaclient.h>

namespace UaClientSdk {

/// Filled by the caller and copied by UaSession::connect. Times are milliseconds.
struct SessionConnectInfo
{
    UaString applicationUri;
    UaString applicationName;
    UaString productUri;
    UaString sessionName;
    OpcUa_UInt32 applicationType = 1;    ///< Client
    OpcUa_UInt32 clientConnectionId = 0; ///< first argument of every callback
    double sessionTimeout = 1200000.0;   ///< raised to 30000 when smaller
    UaString localeId{"en"};
    UaStringArray additionalLocaleIds;
    OpcUa_UInt32 secureChannelLifetime = 3600000;
    OpcUa_UInt32 connectTimeout = 5000;
    OpcUa_UInt32 publishTimeout = 60000;
    OpcUa_UInt32 watchdogTime = 5000; ///< period of the connection check and of reconnect attempts
    bool automaticReconnect = true;
    bool retryInitialConnect = false;
    UaStringArray alternativeEndpointUrls; ///< tried in order when the main URL does not open
    /// The endpoint's URL as the server names it, which it is told first when a session is created; when it
    /// does not take that, and when this is empty, it is told the URL that is dialled.
    UaString endpointUrl;
    UaString serverUri;
    OpcUa_UInt32 watchdogTimeout = 5000;          ///< of one connection check
    OpcUa_UInt32 maxOperationsPerServiceCall = 0; ///< 0: the platform's maximum array length
    UaClient::TypeDictionaryMode typeDictionaryMode = UaClient::FirstUse;
    OpcUa_UInt32 internalServiceCallTimeout = 5000; ///< of reads the session makes for itself
    UaString reserved;                              ///< handed to the stack with the channel connect
};

} // namespace UaClientSdk
