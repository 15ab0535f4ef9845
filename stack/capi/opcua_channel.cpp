#include <opcua/opcua_channel.h>
#include <stack/capi/guard.h>
#include <stack/capi/validation.h>
#include <stack/core/endpointurl.h>
#include <stack/transport/servicecall.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

using opcua::guarded;

// What the handle points to.
struct OpcUa_ChannelImpl
{
    std::shared_ptr<opcua::Channel> channel;
};

namespace {

constexpr OpcUa_UInt32 defaultConnectTimeout = 10'000; // ms
constexpr OpcUa_UInt32 defaultLifetime = 3'600'000;

std::string textOf(const char* text)
{
    return text != nullptr ? std::string(text) : std::string();
}

// Without a profile the address decides; nothing for a profile that is not there.
std::optional<opcua::TransportProfile> profileOf(const std::string& uri, std::string_view url)
{
    if (uri == OpcUa_TransportProfile_UaTcp || (uri.empty() && opcua::schemeOf(url) != opcua::httpsScheme))
        return opcua::TransportProfile::UaTcp;
    if (uri == OpcUa_TransportProfile_HttpsBinary || uri.empty())
        return opcua::TransportProfile::Https;
    return {};
}

bool startsWith(const OpcUa_EncodeableType* type, const OpcUa_EncodeableType& header)
{
    return type != nullptr && type->FieldCount > 0 && type->Fields[0].StructureType == &header &&
           type->Fields[0].Offset == 0;
}

bool isServiceCall(const OpcUa_EncodeableType* requestType, const void* request,
                   const OpcUa_EncodeableType* responseType)
{
    return request != nullptr && startsWith(requestType, OpcUa_RequestHeader_EncodeableType) &&
           startsWith(responseType, OpcUa_ResponseHeader_EncodeableType);
}

opcua::Bytes bytesOf(const OpcUa_ByteString* bytes)
{
    const opcua::ByteView view = bytes != nullptr ? opcua::viewOf(*bytes) : opcua::ByteView{};
    return {view.begin(), view.end()};
}

// A configuration without a folder of trusted certificates asks for no check.
bool asksForCheck(const OpcUa_PkiConfiguration* pki)
{
    return pki != nullptr && pki->TrustedCertificates != nullptr && *pki->TrustedCertificates != '\0';
}

void addSecurity(OpcUa_Channel channel, const OpcUa_ChannelConnectInfo& info,
                 opcua::ConnectParameters& parameters)
{
    parameters.clientCertificate = bytesOf(info.ClientCertificate);
    parameters.clientPrivateKey = opcua::Secret(bytesOf(info.ClientPrivateKey));
    parameters.serverCertificate = bytesOf(info.ServerCertificate);
    parameters.basic128Rsa15Allowed = info.AllowBasic128Rsa15 != OpcUa_False;
    if (asksForCheck(info.PkiConfiguration))
        parameters.pki = opcua::foldersOf(info.PkiConfiguration);
    if (info.Callback == nullptr)
        return;
    parameters.onCertificateFinding = [channel, callback = info.Callback, context = info.CallbackContext](
                                          const opcua::CertificateFinding& finding) {
        OpcUa_CertificateValidation details = opcua::validationOf(finding);
        return callback(channel, OpcUa_Channel_Event_VerifyCertificate, finding.status, &details, context);
    };
}

opcua::ConnectParameters parametersOf(OpcUa_Channel channel, const OpcUa_ChannelConnectInfo& info)
{
    opcua::ConnectParameters parameters;
    parameters.url = info.Url;
    parameters.securityPolicyUri = textOf(info.SecurityPolicyUri);
    if (parameters.securityPolicyUri.empty())
        parameters.securityPolicyUri = OpcUa_SecurityPolicy_None;
    parameters.securityMode = info.SecurityMode;
    parameters.requestedLifetime = info.RequestedLifetime != 0 ? info.RequestedLifetime : defaultLifetime;
    parameters.timeout =
        opcua::Milliseconds{info.ConnectTimeout != 0 ? info.ConnectTimeout : defaultConnectTimeout};
    if (info.Callback != nullptr) {
        parameters.onEvent = [channel, callback = info.Callback, context = info.CallbackContext](
                                 OpcUa_Channel_Event event, OpcUa_StatusCode status) {
            static_cast<void>(callback(channel, event, status, nullptr, context));
        };
    }
    addSecurity(channel, info, parameters);
    return parameters;
}

} // namespace

OpcUa_StatusCode OpcUa_Channel_Create(OpcUa_Channel* channel)
{
    if (channel == nullptr)
        return OpcUa_BadInvalidArgument;
    *channel = nullptr;
    return guarded([&] {
        const auto runtime = opcua::Runtime::current();
        if (!runtime)
            return OpcUa_BadInvalidState;
        auto handle = std::make_unique<OpcUa_ChannelImpl>();
        handle->channel = runtime->createChannel();
        *channel = handle.release();
        return OpcUa_Good;
    });
}

OpcUa_StatusCode OpcUa_Channel_Connect(OpcUa_Channel channel, const OpcUa_ChannelConnectInfo* info,
                                       OpcUa_UInt32* revisedLifetime)
{
    if (channel == nullptr || info == nullptr || info->Url == nullptr)
        return OpcUa_BadInvalidArgument;
    return guarded([&]() -> OpcUa_StatusCode {
        const auto profile = profileOf(textOf(info->TransportProfileUri), info->Url);
        if (!profile)
            return OpcUa_BadNotSupported;
        opcua::ConnectParameters parameters = parametersOf(channel, *info);
        parameters.profile = *profile;
        if (parameters.pki && *profile == opcua::TransportProfile::Https)
            parameters.pki->naming = opcua::CertificateNaming::Dotted;
        OpcUa_UInt32 lifetime = 0;
        const OpcUa_StatusCode status = channel->channel->connect(parameters, lifetime);
        if (revisedLifetime != nullptr)
            *revisedLifetime = lifetime;
        return status;
    });
}

OpcUa_StatusCode OpcUa_Channel_Disconnect(OpcUa_Channel channel)
{
    if (channel == nullptr)
        return OpcUa_BadInvalidArgument;
    return guarded([&] { return channel->channel->disconnect(); });
}

void OpcUa_Channel_CancelConnect(OpcUa_Channel channel)
{
    if (channel == nullptr)
        return;
    static_cast<void>(guarded([&] {
        channel->channel->cancelConnect();
        return OpcUa_Good;
    }));
}

void OpcUa_Channel_Delete(OpcUa_Channel* channel)
{
    if (channel == nullptr || *channel == nullptr)
        return;
    static_cast<void>(guarded([&] {
        if (!(*channel)->channel->shutdown()) {
            OpcUa_Trace(OPCUA_TRACE_LEVEL_ERROR, "A channel cannot be deleted from one of its callbacks");
            return OpcUa_BadInvalidState;
        }
        const std::unique_ptr<OpcUa_ChannelImpl> owner(std::exchange(*channel, nullptr));
        return OpcUa_Good;
    }));
}

OpcUa_Boolean OpcUa_Channel_IsConnected(OpcUa_Channel channel)
{
    return channel != nullptr && channel->channel->isConnected() ? OpcUa_True : OpcUa_False;
}

OpcUa_StatusCode OpcUa_Channel_InvokeService(OpcUa_Channel channel, const OpcUa_EncodeableType* requestType,
                                             const void* request, const OpcUa_EncodeableType* responseType,
                                             void* response)
{
    OpcUa_CallMeasure* const measure = opcua::takeNextMeasure();
    if (response != nullptr && responseType != nullptr)
        OpcUa_EncodeableObject_Initialize(responseType, response);
    if (channel == nullptr || response == nullptr || !isServiceCall(requestType, request, responseType))
        return OpcUa_BadInvalidArgument;
    return guarded([&] {
        const auto owner = channel->channel; // lives until the call is over, even when the handle does not
        return opcua::invokeService(*owner, *requestType, request, *responseType, response, measure);
    });
}

OpcUa_StatusCode
OpcUa_Channel_BeginInvokeService(OpcUa_Channel channel, const OpcUa_EncodeableType* requestType,
                                 const void* request, const OpcUa_EncodeableType* responseType,
                                 OpcUa_Channel_PfnRequestComplete callback, void* callbackData)
{
    OpcUa_CallMeasure* const measure = opcua::takeNextMeasure();
    if (channel == nullptr || callback == nullptr || !isServiceCall(requestType, request, responseType))
        return OpcUa_BadInvalidArgument;
    const auto complete = [channel, callback, callbackData](OpcUa_StatusCode status,
                                                            opcua::DecodedMessage&& response) {
        if (OpcUa_IsBad(status))
            return callback(channel, nullptr, nullptr, callbackData, status);
        const OpcUa_EncodeableType* const type = response.type;
        callback(channel, response.release(), type, callbackData, status);
    };
    return guarded([&] {
        return opcua::beginService(channel->channel, *requestType, request, *responseType, complete, measure);
    });
}

void OpcUa_Channel_MeasureNextCall(OpcUa_CallMeasure* measure)
{
    if (measure != nullptr)
        *measure = {};
    opcua::measureNextCall(measure);
}
