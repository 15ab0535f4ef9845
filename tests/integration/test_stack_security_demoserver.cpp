// Secured channels of the stack against a server that is not ours.
#include <opcua/opcua.h>
#include <opcua/opcua_crypto.h>
#include <tests/support/demoserverinfo.h>
#include <tests/support/testcertificates.h>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace {

namespace certificates = testcertificates;
using certificates::Der;

OpcUa_ByteString viewOf(const Der& bytes)
{
    return {static_cast<OpcUa_Int32>(bytes.size()), const_cast<OpcUa_Byte*>(bytes.data())};
}

struct Endpoint
{
    std::string policy;
    OpcUa_MessageSecurityMode mode;
    Der certificate;
};

struct Events
{
    std::atomic<int> renewed{0};
    std::atomic<int> findings{0};
    OpcUa_StatusCode answer = OpcUa_Bad;
};

OpcUa_StatusCode onEvent(OpcUa_Channel, OpcUa_Channel_Event event, OpcUa_StatusCode, void*, void* context)
{
    auto& events = *static_cast<Events*>(context);
    events.renewed += event == OpcUa_Channel_Event_Renewed;
    events.findings += event == OpcUa_Channel_Event_VerifyCertificate;
    return events.answer;
}

class StackSecurityAgainstDemoServer : public testing::Test
{
protected:
    void SetUp() override
    {
        m_url = demoserver::endpointUrl();
        ASSERT_FALSE(m_url.empty());
        ASSERT_EQ(OpcUa_ProxyStub_Initialize(nullptr), OpcUa_Good);
        ASSERT_EQ(OpcUa_Channel_Create(&m_channel), OpcUa_Good);
        certificates::Recipe recipe;
        recipe.name = "Stack test";
        recipe.pair = certificates::key(2048);
        m_certificate = certificates::make(recipe);
        m_key = certificates::privateDer(recipe.pair);
    }
    void TearDown() override
    {
        OpcUa_Channel_Delete(&m_channel);
        OpcUa_ProxyStub_Clear();
    }

    OpcUa_StatusCode connect(const Endpoint& endpoint, OpcUa_UInt32 lifetime = 3'600'000,
                             const OpcUa_PkiConfiguration* pki = nullptr)
    {
        const OpcUa_ByteString views[] = {viewOf(m_certificate), viewOf(m_key), viewOf(endpoint.certificate)};
        OpcUa_ChannelConnectInfo info{};
        info.Url = m_url.c_str();
        info.SecurityPolicyUri = endpoint.policy.c_str();
        info.SecurityMode = endpoint.mode;
        info.ClientCertificate = &views[0];
        info.ClientPrivateKey = &views[1];
        info.ServerCertificate = &views[2];
        info.PkiConfiguration = pki;
        info.RequestedLifetime = lifetime;
        info.ConnectTimeout = 10'000;
        info.Callback = onEvent;
        info.CallbackContext = &m_events;
        return OpcUa_Channel_Connect(m_channel, &info, nullptr);
    }

    // What the server offers, asked over the channel that is open.
    std::vector<Endpoint> endpoints()
    {
        OpcUa_GetEndpointsRequest request;
        OpcUa_GetEndpointsRequest_Initialize(&request);
        OpcUa_GetEndpointsResponse response;
        EXPECT_EQ(OpcUa_String_Assign(&request.EndpointUrl, m_url.c_str(), -1), OpcUa_Good);
        EXPECT_EQ(OpcUa_ClientApi_GetEndpoints(m_channel, &request, &response), OpcUa_Good);
        std::vector<Endpoint> list;
        for (OpcUa_Int32 n = 0; n < response.NoOfEndpoints; ++n) {
            const OpcUa_EndpointDescription& one = response.Endpoints[n];
            list.push_back(
                {one.SecurityPolicyUri.Data, one.SecurityMode,
                 Der(one.ServerCertificate.Data, one.ServerCertificate.Data + one.ServerCertificate.Length)});
        }
        OpcUa_GetEndpointsResponse_Clear(&response);
        OpcUa_GetEndpointsRequest_Clear(&request);
        return list;
    }
    std::vector<Endpoint> securedEndpoints()
    {
        EXPECT_EQ(connect({OpcUa_SecurityPolicy_None, OpcUa_MessageSecurityMode_None, {}}), OpcUa_Good);
        auto list = endpoints();
        EXPECT_EQ(OpcUa_Channel_Disconnect(m_channel), OpcUa_Good);
        std::erase_if(list, [](const Endpoint& one) { return one.mode == OpcUa_MessageSecurityMode_None; });
        return list;
    }

    std::string m_url;
    OpcUa_Channel m_channel = nullptr;
    Der m_certificate;
    Der m_key;
    Events m_events;
};

TEST_F(StackSecurityAgainstDemoServer, SpeaksEveryPolicyThatItOffersThroughARenewal)
{
    const auto offered = securedEndpoints();
    EXPECT_GE(offered.size(), 6u); // three policies with two modes each
    for (const Endpoint& endpoint : offered) {
        m_events.renewed = 0;
        ASSERT_EQ(connect(endpoint, 1500), OpcUa_Good) << endpoint.policy << " " << endpoint.mode;
        const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        while (m_events.renewed < 1 && std::chrono::steady_clock::now() < limit)
            ASSERT_GE(endpoints().size(), offered.size()) << endpoint.policy << " " << endpoint.mode;
        EXPECT_GE(m_events.renewed, 1) << endpoint.policy << " " << endpoint.mode;
        EXPECT_EQ(OpcUa_Channel_Disconnect(m_channel), OpcUa_Good);
    }
}

// ---- users

// A structure of the stack that clears itself.
template <typename T>
class Scoped
{
public:
    explicit Scoped(const OpcUa_EncodeableType& type) : m_type(type)
    {
        OpcUa_EncodeableObject_Initialize(&m_type, &m_value);
    }
    ~Scoped() { OpcUa_EncodeableObject_Clear(&m_type, &m_value); }
    Scoped(const Scoped&) = delete;
    Scoped& operator=(const Scoped&) = delete;
    T* operator->() { return &m_value; }
    T* get() { return &m_value; }

private:
    const OpcUa_EncodeableType& m_type;
    T m_value;
};

class Provider
{
public:
    explicit Provider(const std::string& policy)
    {
        EXPECT_EQ(OpcUa_CryptoProvider_Create(policy.c_str(), &m_handle), OpcUa_Good) << policy;
    }
    ~Provider() { OpcUa_CryptoProvider_Delete(&m_handle); }
    Provider(const Provider&) = delete;
    Provider& operator=(const Provider&) = delete;

    void sign(const Der& key, const Der& data, OpcUa_SignatureData& signature)
    {
        const OpcUa_ByteString views[] = {viewOf(key), viewOf(data)};
        EXPECT_EQ(OpcUa_CryptoProvider_AsymmetricSign(m_handle, &views[0], &views[1], &signature.Signature),
                  OpcUa_Good);
        EXPECT_EQ(OpcUa_String_Assign(&signature.Algorithm, info().AsymmetricSignatureUri, -1), OpcUa_Good);
    }
    void encrypt(const Der& certificate, const Der& plain, OpcUa_ByteString& cipher)
    {
        const OpcUa_ByteString views[] = {viewOf(certificate), viewOf(plain)};
        EXPECT_EQ(OpcUa_CryptoProvider_AsymmetricEncrypt(m_handle, &views[0], &views[1], &cipher),
                  OpcUa_Good);
    }
    OpcUa_CryptoProviderInfo info() const
    {
        OpcUa_CryptoProviderInfo result{};
        EXPECT_EQ(OpcUa_CryptoProvider_GetInfo(m_handle, &result), OpcUa_Good);
        return result;
    }

private:
    OpcUa_CryptoProvider m_handle = nullptr;
};

Der derOf(const OpcUa_ByteString& bytes)
{
    return bytes.Length > 0 ? Der(bytes.Data, bytes.Data + bytes.Length) : Der();
}

// Logs one user in over the channel that is open and answers how ActivateSession ended.
class Login
{
public:
    Login(OpcUa_Channel channel, const std::string& url, const Endpoint& endpoint, const Der& certificate,
          const Der& key)
        : m_channel(channel), m_endpoint(endpoint), m_key(key)
    {
        Scoped<OpcUa_CreateSessionRequest> request(OpcUa_CreateSessionRequest_EncodeableType);
        const OpcUa_ByteString view = viewOf(certificate);
        EXPECT_EQ(OpcUa_String_Assign(&request->ClientDescription.ApplicationUri, "urn:localhost:test", -1),
                  OpcUa_Good);
        EXPECT_EQ(OpcUa_String_Assign(&request->EndpointUrl, url.c_str(), -1), OpcUa_Good);
        EXPECT_EQ(OpcUa_CryptoProvider_GenerateNonce(32, &request->ClientNonce), OpcUa_Good);
        EXPECT_EQ(OpcUa_ByteString_Assign(&request->ClientCertificate, view.Data, view.Length), OpcUa_Good);
        request->ClientDescription.ApplicationType = OpcUa_ApplicationType_Client;
        request->RequestedSessionTimeout = 60'000;
        m_created = OpcUa_ClientApi_CreateSession(channel, request.get(), m_session.get());
    }
    ~Login()
    {
        Scoped<OpcUa_CloseSessionRequest> request(OpcUa_CloseSessionRequest_EncodeableType);
        Scoped<OpcUa_CloseSessionResponse> response(OpcUa_CloseSessionResponse_EncodeableType);
        EXPECT_EQ(
            OpcUa_NodeId_Copy(&m_session->AuthenticationToken, &request->RequestHeader.AuthenticationToken),
            OpcUa_Good);
        EXPECT_EQ(OpcUa_ClientApi_CloseSession(m_channel, request.get(), response.get()), OpcUa_Good);
    }
    Login(const Login&) = delete;
    Login& operator=(const Login&) = delete;

    OpcUa_StatusCode anonymous()
    {
        auto* const token = create<OpcUa_AnonymousIdentityToken>(OpcUa_AnonymousIdentityToken_EncodeableType);
        assignPolicy(token->PolicyId, OpcUa_UserTokenType_Anonymous);
        return activate(OpcUa_AnonymousIdentityToken_EncodeableType, token, nullptr);
    }
    OpcUa_StatusCode userName(const std::string& user, const std::string& password)
    {
        auto* const token = create<OpcUa_UserNameIdentityToken>(OpcUa_UserNameIdentityToken_EncodeableType);
        Provider provider(assignPolicy(token->PolicyId, OpcUa_UserTokenType_UserName));
        const Der nonce = derOf(m_session->ServerNonce);
        Der secret(password.begin(), password.end());
        secret.insert(secret.end(), nonce.begin(), nonce.end());
        const auto length = static_cast<unsigned char>(secret.size());
        secret.insert(secret.begin(), {length, 0, 0, 0});
        provider.encrypt(derOf(m_session->ServerCertificate), secret, token->Password);
        EXPECT_EQ(OpcUa_String_Assign(&token->UserName, user.c_str(), -1), OpcUa_Good);
        EXPECT_EQ(
            OpcUa_String_Assign(&token->EncryptionAlgorithm, provider.info().AsymmetricEncryptionUri, -1),
            OpcUa_Good);
        return activate(OpcUa_UserNameIdentityToken_EncodeableType, token, nullptr);
    }
    // signedWith is the certificate's key, or another one
    OpcUa_StatusCode certificate(const Der& own, const Der& signedWith)
    {
        auto* const token = create<OpcUa_X509IdentityToken>(OpcUa_X509IdentityToken_EncodeableType);
        Provider provider(assignPolicy(token->PolicyId, OpcUa_UserTokenType_Certificate));
        const OpcUa_ByteString view = viewOf(own);
        EXPECT_EQ(OpcUa_ByteString_Assign(&token->CertificateData, view.Data, view.Length), OpcUa_Good);
        Scoped<OpcUa_SignatureData> signature(OpcUa_SignatureData_EncodeableType);
        provider.sign(signedWith, proven(), *signature.get());
        return activate(OpcUa_X509IdentityToken_EncodeableType, token, signature.get());
    }

private:
    template <typename T>
    static T* create(const OpcUa_EncodeableType& type)
    {
        return static_cast<T*>(OpcUa_EncodeableObject_Create(&type));
    }
    // The server's word for a kind of token, and the policy that its secret or signature goes by.
    std::string assignPolicy(OpcUa_String& id, OpcUa_UserTokenType type)
    {
        for (OpcUa_Int32 n = 0; n < m_session->NoOfServerEndpoints; ++n) {
            const OpcUa_EndpointDescription& one = m_session->ServerEndpoints[n];
            if (one.SecurityMode != m_endpoint.mode || one.SecurityPolicyUri.Data != m_endpoint.policy)
                continue;
            for (OpcUa_Int32 m = 0; m < one.NoOfUserIdentityTokens; ++m) {
                const OpcUa_UserTokenPolicy& token = one.UserIdentityTokens[m];
                if (token.TokenType != type)
                    continue;
                EXPECT_EQ(OpcUa_String_Copy(&token.PolicyId, &id), OpcUa_Good);
                return token.SecurityPolicyUri.Length > 0 ? token.SecurityPolicyUri.Data : m_endpoint.policy;
            }
        }
        ADD_FAILURE() << "no token of type " << type;
        return {};
    }
    // What signatures of a session cover: the server's certificate and its nonce.
    Der proven()
    {
        Der data = derOf(m_session->ServerCertificate);
        const Der nonce = derOf(m_session->ServerNonce);
        data.insert(data.end(), nonce.begin(), nonce.end());
        return data;
    }
    OpcUa_StatusCode activate(const OpcUa_EncodeableType& type, void* token, const OpcUa_SignatureData* user)
    {
        Scoped<OpcUa_ActivateSessionRequest> request(OpcUa_ActivateSessionRequest_EncodeableType);
        OpcUa_ExtensionObject_AttachEncodeable(&request->UserIdentityToken, &type, token);
        EXPECT_EQ(
            OpcUa_NodeId_Copy(&m_session->AuthenticationToken, &request->RequestHeader.AuthenticationToken),
            OpcUa_Good);
        if (m_endpoint.mode != OpcUa_MessageSecurityMode_None)
            Provider(m_endpoint.policy).sign(m_key, proven(), request->ClientSignature);
        if (user != nullptr) {
            EXPECT_EQ(OpcUa_EncodeableObject_Copy(&OpcUa_SignatureData_EncodeableType, user,
                                                  &request->UserTokenSignature),
                      OpcUa_Good);
        }
        Scoped<OpcUa_ActivateSessionResponse> response(OpcUa_ActivateSessionResponse_EncodeableType);
        EXPECT_EQ(m_created, OpcUa_Good);
        return OpcUa_ClientApi_ActivateSession(m_channel, request.get(), response.get());
    }

    OpcUa_Channel m_channel;
    const Endpoint& m_endpoint;
    const Der& m_key;
    OpcUa_StatusCode m_created = OpcUa_Bad;
    Scoped<OpcUa_CreateSessionResponse> m_session{OpcUa_CreateSessionResponse_EncodeableType};
};

TEST_F(StackSecurityAgainstDemoServer, LogsEveryUserInByEveryPolicyAndMode)
{
    auto offered = securedEndpoints();
    offered.push_back({OpcUa_SecurityPolicy_None, OpcUa_MessageSecurityMode_None, {}});
    certificates::Recipe recipe;
    recipe.name = "User";
    recipe.pair = certificates::key(2048, "user");
    const Der user = certificates::make(recipe);
    const Der userKey = certificates::privateDer(recipe.pair);
    for (const Endpoint& endpoint : offered) {
        SCOPED_TRACE(endpoint.policy + " " + std::to_string(endpoint.mode));
        ASSERT_EQ(connect(endpoint), OpcUa_Good);
        const auto login = [&] {
            return std::make_unique<Login>(m_channel, m_url, endpoint, m_certificate, m_key);
        };
        EXPECT_EQ(login()->anonymous(), OpcUa_Good);
        EXPECT_EQ(login()->userName("demo", "demo"), OpcUa_Good);
        EXPECT_TRUE(OpcUa_IsBad(login()->userName("demo", "wrong")));
        EXPECT_EQ(login()->certificate(user, userKey), OpcUa_Good);
        EXPECT_TRUE(OpcUa_IsBad(login()->certificate(user, m_key))) << "signed with another key";
        EXPECT_EQ(OpcUa_Channel_Disconnect(m_channel), OpcUa_Good);
    }
}

TEST_F(StackSecurityAgainstDemoServer, OpensNoChannelToAnotherCertificate)
{
    const auto offered = securedEndpoints();
    ASSERT_FALSE(offered.empty());
    Endpoint endpoint = offered.front();
    certificates::Recipe impostor;
    impostor.name = "Impostor";
    impostor.pair = certificates::key(2048, "impostor");
    endpoint.certificate = certificates::make(impostor);
    EXPECT_TRUE(OpcUa_IsBad(connect(endpoint)));
    endpoint.certificate.clear();
    EXPECT_EQ(connect(endpoint), OpcUa_BadCertificateInvalid);
}

TEST_F(StackSecurityAgainstDemoServer, AsksAboutACertificateThatIsNotTrusted)
{
    const auto offered = securedEndpoints();
    ASSERT_FALSE(offered.empty());
    const auto folder =
        std::filesystem::temp_directory_path() / ("tavelin-channel-pki-" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    const std::string trusted = folder;
    const OpcUa_PkiConfiguration pki{trusted.c_str(), nullptr, nullptr, nullptr};
    EXPECT_EQ(connect(offered.front(), 60'000, &pki), OpcUa_BadCertificateUntrusted);
    EXPECT_GE(m_events.findings, 1);
    m_events.answer = OpcUa_Good;
    EXPECT_EQ(connect(offered.front(), 60'000, &pki), OpcUa_Good);
    EXPECT_EQ(OpcUa_Channel_Disconnect(m_channel), OpcUa_Good);
    m_events.answer = OpcUa_Bad;
    const Der& certificate = offered.front().certificate;
    std::ofstream(folder / "server.der", std::ios::binary)
        .write(reinterpret_cast<const char*>(certificate.data()),
               static_cast<std::streamsize>(certificate.size()));
    EXPECT_EQ(connect(offered.front(), 60'000, &pki), OpcUa_Good);
    std::filesystem::remove_all(folder);
}

} // namespace
