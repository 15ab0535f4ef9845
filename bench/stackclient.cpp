#include <bench/stackclient.h>

#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>

namespace opcua::bench {

namespace {

void require(OpcUa_StatusCode status, const char* what)
{
    if (OpcUa_IsGood(status))
        return;
    std::fprintf(stderr, "%s: 0x%08x\n", what, status);
    std::_Exit(1);
}

// The bytes stay the caller's.
OpcUa_ByteString viewOf(const Bytes& bytes)
{
    return {static_cast<OpcUa_Int32>(bytes.size()), const_cast<OpcUa_Byte*>(bytes.data())};
}

Bytes joined(const OpcUa_ByteString& left, const OpcUa_ByteString& right)
{
    Bytes bytes(left.Data, left.Data + left.Length);
    bytes.insert(bytes.end(), right.Data, right.Data + right.Length);
    return bytes;
}

using ReadRequest = Owned<OpcUa_ReadRequest, OpcUa_ReadRequest_EncodeableType>;

void fill(OpcUa_ReadRequest& request, int nodes)
{
    request.RequestHeader.TimeoutHint = 10'000;
    request.RequestHeader.AuthenticationToken.Identifier.Numeric = 2;
    request.TimestampsToReturn = OpcUa_TimestampsToReturn_Both;
    request.NoOfNodesToRead = nodes;
    request.NodesToRead = static_cast<OpcUa_ReadValueId*>(
        OpcUa_Memory_AllocArray(static_cast<size_t>(nodes), sizeof(OpcUa_ReadValueId)));
    for (int i = 0; i < nodes; ++i) {
        OpcUa_EncodeableObject_Initialize(&OpcUa_ReadValueId_EncodeableType, &request.NodesToRead[i]);
        request.NodesToRead[i].NodeId.NamespaceIndex = 1;
        request.NodesToRead[i].NodeId.Identifier.Numeric = 1'000'000u + static_cast<OpcUa_UInt32>(i);
        request.NodesToRead[i].AttributeId = OpcUa_Attributes_Value;
    }
}

// Starts a request for each answer until enough have been started, and waits for the last answer.
template <typename Begin>
class Stream
{
public:
    Stream(Begin begin, int calls) : m_begin(begin), m_toStart(calls), m_toAnswer(calls) {}
    void run(int open)
    {
        for (int n = 0; n < open; ++n)
            startNext();
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_toAnswer == 0; });
    }

private:
    void startNext()
    {
        {
            const std::lock_guard lock(m_mutex);
            if (m_toStart == 0)
                return;
            --m_toStart;
        }
        require(m_begin(&Stream::completed, this), "call");
    }
    static void completed(OpcUa_Channel, void* response, const OpcUa_EncodeableType* type, void* data,
                          OpcUa_StatusCode status)
    {
        require(status, "answer");
        static_cast<Stream*>(data)->look(response, type);
        OpcUa_EncodeableObject_Delete(type, &response);
        static_cast<Stream*>(data)->startNext();
        static_cast<Stream*>(data)->answered();
    }
    void look(const void* response, const OpcUa_EncodeableType* type)
    {
        if (type != &OpcUa_PublishResponse_EncodeableType)
            return;
        const auto& message = static_cast<const OpcUa_PublishResponse*>(response)->NotificationMessage;
        const auto* const change = static_cast<const OpcUa_DataChangeNotification*>(
            message.NotificationData[0].Body.EncodeableObject.Object);
        for (OpcUa_Int32 i = 0; i < change->NoOfMonitoredItems; ++i)
            m_sum +=
                change->MonitoredItems[i].ClientHandle * change->MonitoredItems[i].Value.Value.Value.Double;
    }
    void answered()
    {
        const std::lock_guard lock(m_mutex);
        if (--m_toAnswer == 0)
            m_changed.notify_all();
    }

    Begin m_begin;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_toStart;
    int m_toAnswer;
    double m_sum = 0;
};

} // namespace

StackClient::StackClient(const ClientSetup& setup, const Responder& responder, bool secured)
    : m_setup(setup), m_url(responder.url(secured)), m_secured(secured)
{
    require(OpcUa_Channel_Create(&m_channel), "channel");
    require(OpcUa_CryptoProvider_Create(secured ? OpcUa_SecurityPolicy_Basic256Sha256 : nullptr, &m_crypto),
            "crypto provider");
}

StackClient::~StackClient()
{
    OpcUa_Channel_Delete(&m_channel);
    OpcUa_CryptoProvider_Delete(&m_crypto);
}

void StackClient::connect()
{
    const OpcUa_ByteString certificate = viewOf(m_setup.client.certificate);
    const OpcUa_ByteString key = viewOf(m_setup.client.key);
    const OpcUa_ByteString server = viewOf(m_setup.server.certificate);
    const OpcUa_PkiConfiguration pki{m_setup.trusted.c_str(), nullptr, nullptr, nullptr};
    OpcUa_ChannelConnectInfo info{};
    info.Url = m_url.c_str();
    info.SecurityPolicyUri = OpcUa_SecurityPolicy_None;
    info.SecurityMode = OpcUa_MessageSecurityMode_None;
    if (m_secured) {
        info.SecurityPolicyUri = OpcUa_SecurityPolicy_Basic256Sha256;
        info.SecurityMode = OpcUa_MessageSecurityMode_SignAndEncrypt;
        info.ClientCertificate = &certificate;
        info.ClientPrivateKey = &key;
        info.ServerCertificate = &server;
        info.PkiConfiguration = &pki;
    }
    require(OpcUa_Channel_Connect(m_channel, &info, nullptr), "connect");
}

// As an application does it: the server proves that it has its key, and the client that it has its own.
void StackClient::openSession()
{
    Owned<OpcUa_CreateSessionRequest, OpcUa_CreateSessionRequest_EncodeableType> create;
    Owned<OpcUa_CreateSessionResponse, OpcUa_CreateSessionResponse_EncodeableType> created;
    const OpcUa_ByteString nonce = viewOf(m_setup.clientNonce);
    const OpcUa_ByteString certificate = viewOf(m_setup.client.certificate);
    const OpcUa_ByteString key = viewOf(m_setup.client.key);
    require(OpcUa_ByteString_Copy(&nonce, &create->ClientNonce), "nonce");
    if (m_secured)
        require(OpcUa_ByteString_Copy(&certificate, &create->ClientCertificate), "certificate");
    require(OpcUa_String_Assign(&create->EndpointUrl, m_url.c_str(), -1), "url");
    require(OpcUa_ClientApi_CreateSession(m_channel, &*create, &*created), "create session");
    Owned<OpcUa_ActivateSessionRequest, OpcUa_ActivateSessionRequest_EncodeableType> activate;
    Owned<OpcUa_ActivateSessionResponse, OpcUa_ActivateSessionResponse_EncodeableType> activated;
    activate->RequestHeader.AuthenticationToken.Identifier.Numeric =
        created->AuthenticationToken.Identifier.Numeric;
    if (m_secured) {
        const Bytes mine = joined(certificate, nonce);
        const Bytes theirs = joined(viewOf(m_setup.server.certificate), created->ServerNonce);
        const OpcUa_ByteString signedByServer = viewOf(mine);
        const OpcUa_ByteString toSign = viewOf(theirs);
        require(OpcUa_CryptoProvider_AsymmetricVerify(m_crypto, &created->ServerCertificate, &signedByServer,
                                                      &created->ServerSignature.Signature),
                "server signature");
        require(OpcUa_CryptoProvider_AsymmetricSign(m_crypto, &key, &toSign,
                                                    &activate->ClientSignature.Signature),
                "client signature");
    }
    require(OpcUa_ClientApi_ActivateSession(m_channel, &*activate, &*activated), "activate session");
}

void StackClient::disconnect()
{
    require(OpcUa_Channel_Disconnect(m_channel), "disconnect");
}

void StackClient::read(int nodes, int calls)
{
    ReadRequest request;
    fill(*request, nodes);
    for (int n = 0; n < calls; ++n) {
        ReadResponse response;
        require(OpcUa_ClientApi_Read(m_channel, &*request, &*response), "read");
        if (response->NoOfResults != nodes)
            require(OpcUa_BadUnexpectedError, "read");
    }
}

void StackClient::readPipelined(int open, int calls)
{
    ReadRequest request;
    fill(*request, 1);
    const auto begin = [&](OpcUa_Channel_PfnRequestComplete completed, void* data) {
        return OpcUa_ClientApi_BeginRead(m_channel, &*request, completed, data);
    };
    Stream(begin, calls).run(open);
}

void StackClient::receiveNotifications(int open, int messages)
{
    Owned<OpcUa_PublishRequest, OpcUa_PublishRequest_EncodeableType> request;
    const auto begin = [&](OpcUa_Channel_PfnRequestComplete completed, void* data) {
        return OpcUa_ClientApi_BeginPublish(m_channel, &*request, completed, data);
    };
    Stream(begin, messages).run(open);
}

} // namespace opcua::bench
