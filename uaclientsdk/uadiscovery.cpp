#include <uaclientsdk/uadiscovery.h>

#include <opcua/opcua_statuscodes.h>
#include <uabase/system/uatrace.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatetime.h>
#include <uaclientsdk/calls/requestheader.h>
#include <uaclientsdk/calls/stackcall.h>
#include <uaclientsdk/calls/tracescope.h>
#include <uaclientsdk/connection/channelconnectinfo.h>
#include <uaclientsdk/connection/observedcall.h>
#include <uaclientsdk/discovery/discoverycalls.h>
#include <uaclientsdk/discovery/uadiscovery_p.h>
#include <uaclientsdk/generated/servicetraits.h>

#include <functional>
#include <memory>
#include <utility>

namespace UaClientSdk {

namespace {

constexpr OpcUa_UInt32 channelLifetime = 3600000; // far longer than any discovery call lasts

OpcUa_StatusCode channelEvent(OpcUa_Channel, OpcUa_Channel_Event event, OpcUa_StatusCode status,
                              void* details, void* context)
{
    if (event != OpcUa_Channel_Event_VerifyCertificate)
        return OpcUa_Good;
    // a call that is over in a moment cannot wait for a user, who may have decided before though
    const auto& security = *static_cast<const ClientSecurityInfo*>(context);
    if (!security.tlsCertificateFinding || !details)
        return status;
    const auto& finding = *static_cast<const OpcUa_CertificateValidation*>(details);
    const bool goesOn = security.tlsCertificateFinding(UaStatus(status), UaByteString(finding.Certificate));
    return goesOn ? static_cast<OpcUa_StatusCode>(OpcUa_Good) : status;
}

// One discovery service from connect to disconnect. fill(request) sets the service's own fields,
// take(response) takes the results.
template <typename Service, typename Fill, typename Take>
UaStatus discover(DiscoveryCalls& calls, ServiceSettings& settings, const UaString& url,
                  const ClientSecurityInfo& security, const Fill& fill, const Take& take)
{
    TraceScope trace("UaDiscovery", Service::method);
    UaDiscoveryPrivate discovery;
    UaStatus status = discovery.connect(calls, url, security, settings.callTimeout, settings.auditEntryId);
    if (status.isBad()) {
        UaTrace::tError("<-- UaDiscovery::%s [ret=0x%x] - connect to server failed", Service::method,
                        status.statusCode());
        trace.keepSilent();
        return status;
    }
    OwningRequest<Service> request;
    OwningResponse<Service> response;
    fillRequestHeader(settings, settings.requestHandle, request->RequestHeader);
    settings.requestTime = UaDateTime(request->RequestHeader.Timestamp);
    if constexpr (requires { request->EndpointUrl; })
        static_cast<void>(url.copyTo(&request->EndpointUrl)); // a null URL asks for any
    fill(*request);
    const auto observed = ObservedCall::ofOne(
        calls.observer(), {Service::requestType, &*request, settings.purpose, settings.note.get()});
    status =
        discovery.call(calls, [&] { return callStack<Service>(discovery.channel(), *request, *response); });
    endObserved<Service>(observed, status.statusCode(), *response);
    settings.responseTime = UaDateTime(response->ResponseHeader.Timestamp);
    if (!status.isBad())
        take(*response);
    static_cast<void>(discovery.disconnect()); // the answer is here already
    return trace.ending(status);
}

} // namespace

UaDiscoveryPrivate::~UaDiscoveryPrivate()
{
    if (m_channel)
        static_cast<void>(disconnect()); // nobody is left to tell
}

UaStatus UaDiscoveryPrivate::connect(DiscoveryCalls& calls, const UaString& url,
                                     const ClientSecurityInfo& security, OpcUa_UInt32 timeout,
                                     const UaString& reserved)
{
    if (m_channel) {
        UaTrace::tError("<-- UaDiscovery::connect [ret=OpcUa_BadInternalError] - Server already connected");
        return UaStatus(OpcUa_BadInternalError);
    }
    ChannelConnectInfo info(url, security);
    if (!info.isSupported())
        return UaStatus(OpcUa_BadInvalidArgument);
    info->Callback = channelEvent;
    info->CallbackContext = const_cast<ClientSecurityInfo*>(&security); // outlives the channel
    info->SecurityPolicyUri = OpcUa_SecurityPolicy_None;
    info->RequestedLifetime = channelLifetime;
    info->SecurityMode = OpcUa_MessageSecurityMode_None;
    info->Reserved = reserved.toUtf8();
    info->ConnectTimeout = timeout;
    OpcUa_StatusCode status = OpcUa_Channel_Create(&m_channel);
    if (OpcUa_IsBad(status)) {
        m_channel = nullptr;
        return UaStatus(status);
    }
    {
        const DiscoveryCalls::Scope scope(calls, [this] { OpcUa_Channel_CancelConnect(m_channel); });
        const StackCall call("OpcUa_Channel_Connect");
        status = call.done(scope.mayBegin() ? OpcUa_Channel_Connect(m_channel, info.get(), nullptr)
                                            : OpcUa_BadRequestCancelledByClient);
    }
    if (OpcUa_IsBad(status))
        OpcUa_Channel_Delete(&m_channel);
    return UaStatus(status);
}

UaStatus UaDiscoveryPrivate::call(DiscoveryCalls& calls, const std::function<OpcUa_StatusCode()>& service)
{
    const DiscoveryCalls::Scope scope(calls,
                                      [this] { static_cast<void>(OpcUa_Channel_Disconnect(m_channel)); });
    const OpcUa_StatusCode status = scope.mayBegin() ? service() : OpcUa_BadRequestCancelledByClient;
    return UaStatus(OpcUa_IsBad(status) && calls.isCancelled() ? OpcUa_BadRequestCancelledByClient : status);
}

UaStatus UaDiscoveryPrivate::disconnect()
{
    if (!m_channel) {
        UaTrace::tError("<-- UaDiscovery::disconnect [hr=OpcUa_BadInernalError] - Server not connected");
        return UaStatus(OpcUa_BadInternalError);
    }
    const OpcUa_StatusCode status = OpcUa_Channel_Disconnect(m_channel);
    OpcUa_Channel_Delete(&m_channel);
    return UaStatus(status);
}

UaDiscovery::UaDiscovery() : d(std::make_unique<DiscoveryCalls>()) {}

UaDiscovery::~UaDiscovery() = default;

void UaDiscovery::cancel()
{
    d->cancel();
}

void UaDiscovery::setServiceObservers(std::function<std::shared_ptr<ServiceObserver>()> make)
{
    d->setObservers(std::move(make));
}

UaStatus UaDiscovery::findServers(ServiceSettings& settings, const UaString& discoveryUrl,
                                  const ClientSecurityInfo& security, UaApplicationDescriptions& servers)
{
    UaTrace::tInOut("--> UaDiscovery::findServers simplified");
    return findServers(settings, discoveryUrl, security, UaStringArray(), UaStringArray(), servers);
}

UaStatus UaDiscovery::findServers(ServiceSettings& settings, const UaString& discoveryUrl,
                                  const ClientSecurityInfo& security, const UaStringArray& localeIds,
                                  const UaStringArray& serverUris, UaApplicationDescriptions& servers)
{
    servers.clear();
    return discover<Services::FindServers>(
        *d, settings, discoveryUrl, security,
        [&](OpcUa_FindServersRequest& request) {
            // a filter that there is no memory for is none: more answers than asked for
            static_cast<void>(localeIds.copyTo(&request.NoOfLocaleIds, &request.LocaleIds));
            static_cast<void>(serverUris.copyTo(&request.NoOfServerUris, &request.ServerUris));
        },
        [&](OpcUa_FindServersResponse& response) {
            servers.attachFrom(&response.NoOfServers, &response.Servers);
        });
}

UaStatus UaDiscovery::getEndpoints(ServiceSettings& settings, const UaString& discoveryUrl,
                                   const ClientSecurityInfo& security, UaEndpointDescriptions& endpoints)
{
    UaTrace::tInOut("--> UaDiscovery::getEndpoints simplified");
    return getEndpoints(settings, discoveryUrl, security, UaStringArray(), UaStringArray(), endpoints);
}

UaStatus UaDiscovery::getEndpoints(ServiceSettings& settings, const UaString& discoveryUrl,
                                   const ClientSecurityInfo& security, const UaStringArray& localeIds,
                                   const UaStringArray& profileUris, UaEndpointDescriptions& endpoints)
{
    endpoints.clear();
    return discover<Services::GetEndpoints>(
        *d, settings, discoveryUrl, security,
        [&](OpcUa_GetEndpointsRequest& request) {
            // a filter that there is no memory for is none: more answers than asked for
            static_cast<void>(localeIds.copyTo(&request.NoOfLocaleIds, &request.LocaleIds));
            static_cast<void>(profileUris.copyTo(&request.NoOfProfileUris, &request.ProfileUris));
        },
        [&](OpcUa_GetEndpointsResponse& response) {
            endpoints.attachFrom(&response.NoOfEndpoints, &response.Endpoints);
        });
}

UaStatus UaDiscovery::findServersOnNetwork(ServiceSettings& settings, const UaString& discoveryUrl,
                                           const ClientSecurityInfo& security, OpcUa_UInt32 startingRecordId,
                                           OpcUa_UInt32 maxRecordsToReturn, UaDateTime& lastCounterResetTime,
                                           UaServerOnNetworks& servers)
{
    UaTrace::tInOut("--> UaDiscovery::findServersOnNetwork simplified");
    return findServersOnNetwork(settings, discoveryUrl, security, startingRecordId, maxRecordsToReturn,
                                UaStringArray(), lastCounterResetTime, servers);
}

UaStatus UaDiscovery::findServersOnNetwork(ServiceSettings& settings, const UaString& discoveryUrl,
                                           const ClientSecurityInfo& security, OpcUa_UInt32 startingRecordId,
                                           OpcUa_UInt32 maxRecordsToReturn,
                                           const UaStringArray& serverCapabilityFilter,
                                           UaDateTime& lastCounterResetTime, UaServerOnNetworks& servers)
{
    servers.clear();
    lastCounterResetTime = UaDateTime();
    return discover<Services::FindServersOnNetwork>(
        *d, settings, discoveryUrl, security,
        [&](OpcUa_FindServersOnNetworkRequest& request) {
            request.StartingRecordId = startingRecordId;
            request.MaxRecordsToReturn = maxRecordsToReturn;
            // without memory no filter: more answers than asked for
            static_cast<void>(serverCapabilityFilter.copyTo(&request.NoOfServerCapabilityFilter,
                                                            &request.ServerCapabilityFilter));
        },
        [&](OpcUa_FindServersOnNetworkResponse& response) {
            lastCounterResetTime = UaDateTime(response.LastCounterResetTime);
            servers.attachFrom(&response.NoOfServers, &response.Servers);
        });
}

} // namespace UaClientSdk
