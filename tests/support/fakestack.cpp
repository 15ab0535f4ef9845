#include <tests/support/fakestack.h>

#include <algorithm>
#include <chrono>
#include <string_view>

namespace {

constexpr OpcUa_UInt32 limitNodes[] = {
    OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerRead,
    OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerWrite,
    OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerMethodCall,
    OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerBrowse,
    OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerTranslateBrowsePathsToNodeIds,
    OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerRegisterNodes,
    OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerNodeManagement,
    OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerHistoryReadData,
    OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerHistoryReadEvents,
    OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerHistoryUpdateData,
    OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerHistoryUpdateEvents,
    OpcUaId_Server_ServerCapabilities_OperationLimits_MaxMonitoredItemsPerCall,
    OpcUaId_Server_ServerCapabilities_MaxBrowseContinuationPoints,
    OpcUaId_Server_ServerCapabilities_MaxHistoryContinuationPoints,
    OpcUaId_Server_ServerCapabilities_MaxQueryContinuationPoints};

void assign(OpcUa_String& target, const std::string& text)
{
    OpcUa_String_Clear(&target);
    // the test compares what arrives
    static_cast<void>(OpcUa_String_Assign(&target, text.c_str(), static_cast<OpcUa_Int32>(text.size())));
}

OpcUa_StatusCode answerCreateSession(const OpcUa_CreateSessionRequest& request, double timeout,
                                     OpcUa_CreateSessionResponse& response)
{
    response.SessionId.Identifier.Numeric = 7;
    response.AuthenticationToken.Identifier.Numeric = 77;
    response.RevisedSessionTimeout = timeout;
    response.ResponseHeader.Timestamp = OpcUa_DateTime_UtcNow();
    response.ServerEndpoints = static_cast<OpcUa_EndpointDescription*>(
        OpcUa_Memory_AllocArray(1, sizeof(OpcUa_EndpointDescription)));
    response.NoOfServerEndpoints = 1;
    OpcUa_EndpointDescription& endpoint = response.ServerEndpoints[0];
    OpcUa_EncodeableObject_Initialize(&OpcUa_EndpointDescription_EncodeableType, &endpoint);
    static_cast<void>(OpcUa_String_Copy(&request.EndpointUrl, &endpoint.EndpointUrl));
    endpoint.SecurityMode = OpcUa_MessageSecurityMode_None;
    assign(endpoint.SecurityPolicyUri, OpcUa_SecurityPolicy_None);
    endpoint.UserIdentityTokens =
        static_cast<OpcUa_UserTokenPolicy*>(OpcUa_Memory_AllocArray(1, sizeof(OpcUa_UserTokenPolicy)));
    endpoint.NoOfUserIdentityTokens = 1;
    OpcUa_EncodeableObject_Initialize(&OpcUa_UserTokenPolicy_EncodeableType, &endpoint.UserIdentityTokens[0]);
    assign(endpoint.UserIdentityTokens[0].PolicyId, "anonymous");
    return OpcUa_Good;
}

} // namespace

FakeStack& FakeStack::instance()
{
    static FakeStack fake;
    return fake;
}

FakeStack::~FakeStack()
{
    endDelivery();
}

void FakeStack::reset()
{
    endDelivery();
    std::lock_guard lock(m_mutex);
    m_held.clear();
    m_released.clear();
    m_otherTypes.clear();
    m_refusals.clear();
    m_handlers.clear();
    m_failures.clear();
    m_journal.clear();
    m_serverCertificates.clear();
    m_distrustedTls.clear();
    m_namespaces = {"http://opcfoundation.org/UA/", "urn:server"};
    m_variables.clear();
    for (const OpcUa_UInt32 id : limitNodes)
        m_variables[id] = UaVariant();
    m_connectResult = OpcUa_Good;
    m_connectHangs = false;
    m_cancelRequested = false;
    m_serverState = 0;
    m_revisedSessionTimeout = 1200000.0;
    ticks = 1;
    installDefaults();
}

void FakeStack::installDefaults()
{
    m_handlers[&OpcUa_CreateSessionRequest_EncodeableType] = [this](const void* request, void* response) {
        return answerCreateSession(*static_cast<const OpcUa_CreateSessionRequest*>(request),
                                   m_revisedSessionTimeout,
                                   *static_cast<OpcUa_CreateSessionResponse*>(response));
    };
    const Handler yes = [](const void*, void*) { return static_cast<OpcUa_StatusCode>(OpcUa_Good); };
    m_handlers[&OpcUa_ActivateSessionRequest_EncodeableType] = yes;
    m_handlers[&OpcUa_CloseSessionRequest_EncodeableType] = yes;
    m_handlers[&OpcUa_ReadRequest_EncodeableType] = [this](const void* request, void* response) {
        return answerRead(*static_cast<const OpcUa_ReadRequest*>(request),
                          *static_cast<OpcUa_ReadResponse*>(response));
    };
}

OpcUa_StatusCode FakeStack::answerRead(const OpcUa_ReadRequest& request, OpcUa_ReadResponse& response)
{
    const auto count = static_cast<size_t>(request.NoOfNodesToRead);
    response.NoOfResults = request.NoOfNodesToRead;
    response.Results = static_cast<OpcUa_DataValue*>(OpcUa_Memory_AllocArray(count, sizeof(OpcUa_DataValue)));
    std::lock_guard lock(m_mutex);
    for (size_t i = 0; i < count; ++i) {
        OpcUa_DataValue_Initialize(&response.Results[i]);
        OpcUa_Variant& value = response.Results[i].Value;
        const OpcUa_UInt32 id = request.NodesToRead[i].NodeId.Identifier.Numeric;
        if (id == OpcUaId_Server_NamespaceArray) {
            value.Datatype = OpcUaType_String;
            value.ArrayType = OpcUa_VariantArrayType_Array;
            value.Value.Array.Length = static_cast<OpcUa_Int32>(m_namespaces.size());
            auto* uris = static_cast<OpcUa_String*>(
                OpcUa_Memory_AllocArray(m_namespaces.size(), sizeof(OpcUa_String)));
            for (size_t n = 0; n < m_namespaces.size(); ++n)
                assign(uris[n], m_namespaces[n]);
            value.Value.Array.Data = uris;
        } else if (const auto found = m_variables.find(id); found != m_variables.end()) {
            if (found->second.isNull())
                response.Results[i].StatusCode = OpcUa_BadNodeIdUnknown;
            else
                static_cast<void>(found->second.copyTo(&value)); // the test compares what arrives
        } else {
            // any other node reads as its own number, which shows whether results keep their order
            value.Datatype = OpcUaType_Int32;
            value.Value.Int32 =
                id == OpcUaId_Server_ServerStatus_State ? m_serverState : static_cast<OpcUa_Int32>(id);
        }
    }
    return OpcUa_Good;
}

void FakeStack::on(const OpcUa_EncodeableType& requestType, Handler handler)
{
    std::lock_guard lock(m_mutex);
    m_handlers[&requestType] = std::move(handler);
}

FakeStack::Handler FakeStack::handler(const OpcUa_EncodeableType& requestType)
{
    std::lock_guard lock(m_mutex);
    return m_handlers[&requestType];
}

void FakeStack::failNext(const OpcUa_EncodeableType& requestType, std::vector<OpcUa_StatusCode> statuses)
{
    std::lock_guard lock(m_mutex);
    m_failures[&requestType].assign(statuses.begin(), statuses.end());
}

void FakeStack::refuseNextBegin(const OpcUa_EncodeableType& requestType,
                                std::vector<OpcUa_StatusCode> statuses)
{
    std::lock_guard lock(m_mutex);
    m_refusals[&requestType].assign(statuses.begin(), statuses.end());
}

void FakeStack::holdAnswers(const OpcUa_EncodeableType& requestType, bool hold)
{
    std::lock_guard lock(m_mutex);
    if (hold)
        m_held.insert(&requestType);
    else
        m_held.erase(&requestType);
    m_pendingChanged.notify_all();
}

void FakeStack::releaseAnswers(const OpcUa_EncodeableType& requestType, int count)
{
    std::lock_guard lock(m_mutex);
    m_released[&requestType] += count;
    m_pendingChanged.notify_all();
}

void FakeStack::answerAs(const OpcUa_EncodeableType& requestType, const OpcUa_EncodeableType& responseType)
{
    std::lock_guard lock(m_mutex);
    m_otherTypes[&requestType] = &responseType;
}

void FakeStack::setConnectResult(OpcUa_StatusCode status)
{
    std::lock_guard lock(m_mutex);
    m_connectResult = status;
}

void FakeStack::distrustTls(std::string certificate)
{
    std::lock_guard lock(m_mutex);
    m_distrustedTls = std::move(certificate);
}

void FakeStack::setConnectHangs(bool hangs)
{
    std::lock_guard lock(m_mutex);
    m_connectHangs = hangs;
}

OpcUa_StatusCode FakeStack::hang()
{
    std::unique_lock lock(m_mutex);
    const unsigned int before = m_closings;
    ++m_hanging;
    m_called.notify_all();
    const bool closed =
        m_called.wait_for(lock, std::chrono::seconds(30), [&] { return m_closings != before; });
    --m_hanging;
    return closed ? OpcUa_BadConnectionClosed : OpcUa_BadTimeout;
}

bool FakeStack::waitForHang()
{
    std::unique_lock lock(m_mutex);
    return m_called.wait_for(lock, std::chrono::seconds(10), [&] { return m_hanging > 0; });
}

void FakeStack::setServerState(OpcUa_Int32 state)
{
    std::lock_guard lock(m_mutex);
    m_serverState = state;
}

void FakeStack::setNamespaces(std::vector<std::string> uris)
{
    std::lock_guard lock(m_mutex);
    m_namespaces = std::move(uris);
}

void FakeStack::setVariable(OpcUa_UInt32 id, const UaVariant& value)
{
    std::lock_guard lock(m_mutex);
    m_variables[id] = value;
}

void FakeStack::setRevisedSessionTimeout(double milliseconds)
{
    m_revisedSessionTimeout = milliseconds;
}

int FakeStack::calls(const OpcUa_EncodeableType& requestType)
{
    std::lock_guard lock(m_mutex);
    return static_cast<int>(std::count(m_journal.begin(), m_journal.end(), requestType.TypeName));
}

bool FakeStack::waitForCalls(const OpcUa_EncodeableType& requestType, int count)
{
    std::unique_lock lock(m_mutex);
    return m_called.wait_for(lock, std::chrono::seconds(10), [&] {
        return std::count(m_journal.begin(), m_journal.end(), requestType.TypeName) >= count;
    });
}

int FakeStack::connects()
{
    std::lock_guard lock(m_mutex);
    return static_cast<int>(std::count(m_journal.begin(), m_journal.end(), "Connect"));
}

int FakeStack::disconnects()
{
    std::lock_guard lock(m_mutex);
    return static_cast<int>(std::count(m_journal.begin(), m_journal.end(), "Disconnect"));
}

std::vector<std::string> FakeStack::journal()
{
    std::lock_guard lock(m_mutex);
    return m_journal;
}

void FakeStack::loseLink()
{
    OpcUa_Channel_PfnEvent event = nullptr;
    void* context = nullptr;
    {
        std::lock_guard lock(m_mutex);
        event = m_event;
        context = m_eventContext;
    }
    abortPending();
    if (event)
        event(nullptr, OpcUa_Channel_Event_Disconnected, OpcUa_BadConnectionClosed, nullptr, context);
}

std::vector<std::string> FakeStack::serverCertificates()
{
    std::lock_guard lock(m_mutex);
    return m_serverCertificates;
}

OpcUa_StatusCode FakeStack::connect(const OpcUa_ChannelConnectInfo& info, OpcUa_UInt32* revisedLifetime)
{
    std::unique_lock lock(m_mutex);
    if (info.ServerCertificate && info.ServerCertificate->Length > 0) {
        m_serverCertificates.emplace_back(reinterpret_cast<const char*>(info.ServerCertificate->Data),
                                          static_cast<size_t>(info.ServerCertificate->Length));
    }
    m_journal.emplace_back("Connect");
    m_event = info.Callback;
    m_eventContext = info.CallbackContext;
    if (std::string_view(info.SecurityPolicyUri) == OpcUa_SecurityPolicy_Basic128Rsa15 &&
        info.AllowBasic128Rsa15 == OpcUa_False)
        return OpcUa_BadSecurityPolicyRejected; // as the real one
    if (!m_distrustedTls.empty() && std::string_view(info.Url).starts_with("https:")) {
        std::string der = m_distrustedTls;
        lock.unlock();
        OpcUa_CertificateValidation finding{};
        finding.Certificate = {static_cast<OpcUa_Int32>(der.size()),
                               reinterpret_cast<OpcUa_Byte*>(der.data())};
        finding.Status = OpcUa_BadCertificateUntrusted;
        return info.Callback(nullptr, OpcUa_Channel_Event_VerifyCertificate, finding.Status, &finding,
                             info.CallbackContext);
    }
    if (m_connectHangs) {
        m_cancelled.wait_for(lock, std::chrono::seconds(30), [this] { return m_cancelRequested; });
        m_cancelRequested = false;
        return OpcUa_BadRequestCancelledByClient;
    }
    if (revisedLifetime)
        *revisedLifetime = info.RequestedLifetime;
    return m_connectResult;
}

OpcUa_StatusCode FakeStack::disconnect()
{
    abortPending();
    std::lock_guard lock(m_mutex);
    m_journal.emplace_back("Disconnect");
    ++m_closings;
    m_called.notify_all();
    return OpcUa_Good;
}

void FakeStack::cancelConnect()
{
    std::lock_guard lock(m_mutex);
    m_cancelRequested = true;
    m_cancelled.notify_all();
}

OpcUa_StatusCode FakeStack::invoke(const OpcUa_EncodeableType& requestType, const void* request,
                                   void* response)
{
    {
        std::lock_guard lock(m_mutex);
        m_journal.emplace_back(requestType.TypeName);
        m_called.notify_all();
    }
    return answer(requestType, request, response);
}

OpcUa_StatusCode FakeStack::answer(const OpcUa_EncodeableType& requestType, const void* request,
                                   void* response)
{
    Handler handler;
    {
        std::lock_guard lock(m_mutex);
        auto& failures = m_failures[&requestType];
        if (!failures.empty()) {
            const OpcUa_StatusCode status = failures.front();
            failures.pop_front();
            if (OpcUa_IsBad(status))
                return status;
        }
        const auto found = m_handlers.find(&requestType);
        if (found == m_handlers.end())
            return OpcUa_BadServiceUnsupported;
        handler = found->second;
    }
    return handler(request, response);
}

// ---- asynchronous calls

OpcUa_StatusCode FakeStack::beginInvoke(const OpcUa_EncodeableType& requestType, const void* request,
                                        const OpcUa_EncodeableType& responseType,
                                        OpcUa_Channel_PfnRequestComplete callback, void* callbackData)
{
    std::shared_ptr<void> copy(
        OpcUa_EncodeableObject_Create(&requestType),
        [type = &requestType](void* object) { OpcUa_EncodeableObject_Delete(type, &object); });
    if (OpcUa_IsBad(OpcUa_EncodeableObject_Copy(&requestType, request, copy.get())))
        return OpcUa_BadOutOfMemory;
    std::lock_guard lock(m_mutex);
    m_journal.emplace_back(requestType.TypeName);
    m_called.notify_all();
    auto& refusals = m_refusals[&requestType];
    if (!refusals.empty()) {
        const OpcUa_StatusCode status = refusals.front();
        refusals.pop_front();
        if (OpcUa_IsBad(status))
            return status;
    }
    m_pending.push_back({&requestType, std::move(copy), &responseType, callback, callbackData});
    if (!m_delivery.joinable())
        m_delivery = std::thread([this] { deliverAnswers(); });
    m_pendingChanged.notify_all();
    return OpcUa_Good;
}

std::deque<FakeStack::Pending>::iterator FakeStack::nextToDeliver()
{
    return std::find_if(
        m_pending.begin(), m_pending.end(),
        [this](const Pending& call) {
            return m_aborting || !m_held.contains(call.requestType) || m_released[call.requestType] > 0;
        });
}

void FakeStack::deliverAnswers()
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_pendingChanged.wait(lock, [this] { return m_endDelivery || nextToDeliver() != m_pending.end(); });
        const auto next = nextToDeliver();
        if (next == m_pending.end())
            return;
        const Pending call = std::move(*next);
        m_pending.erase(next);
        m_delivering = true;
        const bool aborted = m_aborting;
        if (!aborted && m_held.contains(call.requestType))
            --m_released[call.requestType];
        lock.unlock();
        deliver(call, aborted);
        lock.lock();
        m_delivering = false;
        m_pendingChanged.notify_all();
    }
}

void FakeStack::deliver(const Pending& call, bool aborted)
{
    const OpcUa_EncodeableType* type = call.responseType;
    OpcUa_StatusCode status = OpcUa_BadConnectionClosed;
    void* response = nullptr;
    if (!aborted) {
        response = OpcUa_EncodeableObject_Create(type);
        status = answer(*call.requestType, call.request.get(), response);
        std::lock_guard lock(m_mutex);
        const auto other = m_otherTypes.find(call.requestType);
        if (other != m_otherTypes.end()) {
            OpcUa_EncodeableObject_Delete(type, &response);
            type = other->second;
            response = OpcUa_EncodeableObject_Create(type);
        }
    }
    if (OpcUa_IsBad(status) && response)
        OpcUa_EncodeableObject_Delete(type, &response);
    call.callback(nullptr, response, type, call.callbackData, status);
}

void FakeStack::abortPending()
{
    std::unique_lock lock(m_mutex);
    if (std::this_thread::get_id() == m_delivery.get_id())
        return;
    m_aborting = true;
    m_pendingChanged.notify_all();
    m_pendingChanged.wait(lock, [this] { return m_pending.empty() && !m_delivering; });
    m_aborting = false;
}

void FakeStack::endDelivery()
{
    abortPending();
    {
        std::lock_guard lock(m_mutex);
        m_endDelivery = true;
        m_pendingChanged.notify_all();
    }
    if (m_delivery.joinable())
        m_delivery.join();
    m_delivery = std::thread();
    m_endDelivery = false;
}

// ---- the functions that the dynamic linker finds here first

extern "C" {

OpcUa_StatusCode OpcUa_Channel_Create(OpcUa_Channel* channel)
{
    *channel = reinterpret_cast<OpcUa_Channel>(&FakeStack::instance());
    return OpcUa_Good;
}

void OpcUa_Channel_Delete(OpcUa_Channel* channel)
{
    *channel = nullptr;
}

OpcUa_StatusCode OpcUa_Channel_Connect(OpcUa_Channel, const OpcUa_ChannelConnectInfo* info,
                                       OpcUa_UInt32* revisedLifetime)
{
    return FakeStack::instance().connect(*info, revisedLifetime);
}

OpcUa_StatusCode OpcUa_Channel_Disconnect(OpcUa_Channel)
{
    return FakeStack::instance().disconnect();
}

void OpcUa_Channel_CancelConnect(OpcUa_Channel)
{
    FakeStack::instance().cancelConnect();
}

OpcUa_StatusCode OpcUa_Channel_InvokeService(OpcUa_Channel, const OpcUa_EncodeableType* requestType,
                                             const void* request, const OpcUa_EncodeableType* responseType,
                                             void* response)
{
    OpcUa_EncodeableObject_Initialize(responseType, response);
    return FakeStack::instance().invoke(*requestType, request, response);
}

OpcUa_StatusCode OpcUa_Channel_BeginInvokeService(OpcUa_Channel, const OpcUa_EncodeableType* requestType,
                                                  const void* request,
                                                  const OpcUa_EncodeableType* responseType,
                                                  OpcUa_Channel_PfnRequestComplete callback,
                                                  void* callbackData)
{
    return FakeStack::instance().beginInvoke(*requestType, request, *responseType, callback, callbackData);
}

OpcUa_UInt64 OpcUa_GetTickCount(void)
{
    ++FakeStack::instance().tickReads;
    return FakeStack::instance().ticks;
}

} // extern "C"
