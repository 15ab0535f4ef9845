// Which TLS certificates a channel takes, and who may overrule what it finds.
#include <tests/protocol/httpsfixture.h>
#include <tests/support/temporaryfolder.h>

#include <filesystem>
#include <future>
#include <string>
#include <utility>
#include <vector>

namespace opcua::test {
namespace {

namespace tc = testcertificates;

// What a channel finds wrong, with a folder of trusted certificates.
class Judged
{
public:
    Judged()
    {
        std::filesystem::create_directories(m_folder.file("certs"));
        std::filesystem::create_directories(m_folder.file("crl"));
    }
    void trust(const tc::Der& certificate)
    {
        TemporaryFolder::write(m_folder.file("certs/" + tc::hashedName(certificate)),
                               tc::pem("CERTIFICATE", certificate));
    }
    void revoke(const tc::Der& list)
    {
        TemporaryFolder::write(m_folder.file("crl/list.crl"), std::string(list.begin(), list.end()));
    }
    OpcUa_StatusCode connect(const HttpsPeer& peer, bool accepting, const std::string& host = "127.0.0.1")
    {
        findings.clear();
        m_accepting = accepting;
        const std::string trusted = m_folder.file("certs");
        const std::string lists = m_folder.file("crl");
        const OpcUa_PkiConfiguration pki{trusted.c_str(), lists.c_str(), nullptr, nullptr};
        HttpsChannel channel;
        channel.info.PkiConfiguration = &pki;
        channel.info.CallbackContext = this;
        channel.info.Callback = [](OpcUa_Channel, OpcUa_Channel_Event event, OpcUa_StatusCode status,
                                   void* details, void* context) -> OpcUa_StatusCode {
            auto& self = *static_cast<Judged*>(context);
            if (event != OpcUa_Channel_Event_VerifyCertificate)
                return OpcUa_Good;
            const auto& finding = *static_cast<OpcUa_CertificateValidation*>(details);
            const OpcUa_ByteString& certificate = finding.Certificate;
            self.findings.push_back(status);
            self.shown.assign(certificate.Data, certificate.Data + certificate.Length);
            self.depth = finding.Depth;
            return self.m_accepting ? OpcUa_StatusCode{OpcUa_Good} : status;
        };
        const OpcUa_StatusCode status = channel.connect(peer.url(host));
        return OpcUa_IsGood(status) ? channel.call() : status;
    }
    std::vector<OpcUa_StatusCode> findings;
    tc::Der shown; // with the last of them
    OpcUa_Int32 depth = 0;

private:
    TemporaryFolder m_folder;
    bool m_accepting = false;
};

TEST_F(StackHttps, EachFaultOfACertificateIsFoundAndMayBeOverruled)
{
    EVP_PKEY* const authorityKey = ellipticKey("authority");
    tc::Recipe authorityRecipe = recipe("Authority", authorityKey);
    authorityRecipe.authority = true;
    const tc::Der authority = tc::make(authorityRecipe);
    tc::Recipe issued = recipe("issued");
    issued.issuer = "Authority";
    issued.issuerPair = authorityKey;
    issued.serial = 7;
    tc::Recipe expired = issued;
    expired.from = -7200;
    expired.to = -3600;
    tc::Recipe elsewhere = issued;
    elsewhere.names = "DNS:elsewhere.example";
    tc::Recipe weak = issued;
    weak.pair = tc::key(1024, "weak");
    tc::Recipe foreignRecipe = authorityRecipe;
    foreignRecipe.pair = ellipticKey("foreign");
    const tc::Der foreign = tc::make(foreignRecipe);

    struct Case
    {
        const char* name;
        tc::Recipe server;
        const tc::Der* trusted; // null: the server's certificate itself
        std::vector<long> revoked;
        OpcUa_StatusCode status;
    };
    const std::vector<Case> cases{
        {"issued by a trusted one", issued, &authority, {}, OpcUa_Good},
        {"trusted itself, its issuer unknown", issued, nullptr, {}, OpcUa_Good},
        {"signed by itself and trusted", recipe("own"), nullptr, {}, OpcUa_Good},
        {"signed by itself", recipe("own"), &authority, {}, OpcUa_BadCertificateUntrusted},
        {"expired", expired, &authority, {}, OpcUa_BadCertificateTimeInvalid},
        {"of another host", elsewhere, &authority, {}, OpcUa_BadCertificateHostNameInvalid},
        {"with a weak key", weak, &authority, {}, OpcUa_BadCertificatePolicyCheckFailed},
        {"revoked", issued, &authority, {7}, OpcUa_BadCertificateRevoked},
        {"another revoked", issued, &authority, {8}, OpcUa_Good},
    };
    for (const Case& c : cases) {
        const TlsIdentity identity = makeIdentity(c.server);
        Judged judged;
        judged.trust(c.trusted != nullptr ? *c.trusted : identity.certificate);
        if (!c.revoked.empty())
            judged.revoke(tc::makeRevocationList("Authority", authorityKey, c.revoked));
        const HttpsPeer peer(serveAll, identity);
        EXPECT_EQ(judged.connect(peer, false), c.status) << c.name;
        EXPECT_EQ(judged.findings.size(), OpcUa_IsGood(c.status) ? 0u : 1u) << c.name;
        EXPECT_EQ(judged.connect(peer, true), OpcUa_Good) << c.name;
    }
    Judged judged;
    judged.trust(foreign);
    const HttpsPeer peer(serveAll, makeIdentity(issued));
    EXPECT_TRUE(OpcUa_IsBad(judged.connect(peer, true))) << "an issuer of that name, but not the one";
}

TEST_F(StackHttps, AFindingAboutAnIssuerShowsWhatTheServerSent)
{
    tc::Recipe expired = recipe("Expired authority", ellipticKey("expired authority"));
    expired.authority = true;
    expired.from = -7200;
    expired.to = -3600;
    tc::Recipe issued = recipe("issued");
    issued.issuer = expired.name;
    issued.issuerPair = expired.pair;
    const TlsIdentity identity = makeIdentity(issued);
    Judged judged;
    judged.trust(tc::make(expired));
    const HttpsPeer peer(serveAll, identity);
    EXPECT_EQ(judged.connect(peer, false), OpcUa_BadCertificateIssuerTimeInvalid);
    EXPECT_EQ(judged.depth, 1);
    EXPECT_EQ(judged.shown, identity.certificate);
}

TEST_F(StackHttps, ACertificateIsMadeForTheNameInTheAddress)
{
    tc::Recipe named = recipe("named");
    named.names = "DNS:localhost,DNS:*.example";
    const TlsIdentity identity{tc::make(named), named.pair};
    Judged judged;
    judged.trust(identity.certificate);
    const HttpsPeer peer(serveAll, identity);
    EXPECT_EQ(judged.connect(peer, false, "localhost"), OpcUa_Good);
    EXPECT_EQ(judged.connect(peer, false, "127.0.0.1"), OpcUa_BadCertificateHostNameInvalid);
}

// ---- an application that asks its user

// Its questions are answered when the test says so, and all with yes.
class Thinking
{
public:
    ~Thinking() { decide(); }
    void decide()
    {
        if (!std::exchange(m_hasDecided, true))
            m_decision.set_value();
    }
    void askedBy(Channel& channel)
    {
        channel.info.PkiConfiguration = &m_pki;
        channel.info.CallbackContext = this;
        channel.info.Callback = [](OpcUa_Channel, OpcUa_Channel_Event event, OpcUa_StatusCode, void* details,
                                   void* context) -> OpcUa_StatusCode {
            if (event == OpcUa_Channel_Event_VerifyCertificate)
                static_cast<Thinking*>(context)->think(*static_cast<OpcUa_CertificateValidation*>(details));
            return OpcUa_Good;
        };
    }
    Mailbox<int> asked;
    Mailbox<std::string> shown; // when the answer is given

private:
    void think(const OpcUa_CertificateValidation& finding)
    {
        asked.put(1);
        m_decided.wait();
        const OpcUa_ByteString& certificate = finding.Certificate;
        shown.put({certificate.Data, certificate.Data + certificate.Length});
    }

    TemporaryFolder m_empty;
    const std::string m_folder{m_empty.path()};
    const OpcUa_PkiConfiguration m_pki{m_folder.c_str(), nullptr, nullptr, nullptr};
    std::promise<void> m_decision;
    const std::shared_future<void> m_decided{m_decision.get_future()};
    bool m_hasDecided = false;
};

class StackHttpsQuestions : public StackHttps
{
protected:
    // Runs action on another thread; when it does not end, the question that holds it up is answered.
    template <typename Action>
    OpcUa_StatusCode inTime(Action action)
    {
        auto result = std::async(std::launch::async, action);
        const bool ended = result.wait_for(patience) == std::future_status::ready;
        EXPECT_TRUE(ended);
        if (!ended)
            m_thinking.decide();
        return result.get();
    }
    OpcUa_StatusCode connectBriefly(Channel& channel)
    {
        return inTime([&] { return channel.connect(m_peer.url(), 200); });
    }
    std::future<OpcUa_StatusCode> connectAtLeisure(Channel& channel)
    {
        return std::async(
            std::launch::async, [&] { return channel.connect(m_peer.url(), 60'000); });
    }

    const TlsIdentity m_identity = makeIdentity();
    const HttpsPeer m_peer{serveAll, m_identity};
    Thinking m_thinking;
};

TEST_F(StackHttpsQuestions, OneThatIsOpenHoldsUpNeitherConnectNorDisconnect)
{
    LoopbackPeer plain(serving(answerAtOnce));
    HttpsChannel channel;
    m_thinking.askedBy(channel);
    EXPECT_EQ(connectBriefly(channel), OpcUa_BadCertificateUntrusted);
    EXPECT_TRUE(m_thinking.asked.waitForCount(1));
    EXPECT_EQ(connectBriefly(channel), OpcUa_BadCertificateUntrusted) << "behind the first";
    channel.info.TransportProfileUri = OpcUa_TransportProfile_UaTcp;
    EXPECT_EQ(inTime([&] { return channel.connect(plain.url()); }), OpcUa_Good);
    Mailbox<OpcUa_StatusCode> completed;
    Channel::Completed completion = [&](OpcUa_StatusCode status) { completed.put(status); };
    EXPECT_EQ(channel.begin(completion), OpcUa_Good);
    EXPECT_TRUE(completed.waitForCount(1));
    EXPECT_EQ(inTime([&] { return OpcUa_Channel_Disconnect(channel.handle()); }), OpcUa_Good);
    channel.info.TransportProfileUri = OpcUa_TransportProfile_HttpsBinary;
    auto last = connectAtLeisure(channel);
    EXPECT_EQ(last.wait_for(100ms), std::future_status::timeout);
    EXPECT_EQ(m_thinking.asked.values().size(), 1u);
    m_thinking.decide();
    EXPECT_EQ(last.get(), OpcUa_Good) << "the answer to its own question";
    EXPECT_EQ(m_thinking.asked.values().size(), 2u) << "the second was over before anybody was asked";
    const std::string certificate(m_identity.certificate.begin(), m_identity.certificate.end());
    EXPECT_EQ(m_thinking.shown.values(), (std::vector<std::string>{certificate, certificate}));
    EXPECT_EQ(channel.call(), OpcUa_Good);
}

TEST_F(StackHttpsQuestions, AConnectThatWaitsForOneEndsWhenItIsToldTo)
{
    HttpsChannel channel;
    m_thinking.askedBy(channel);
    auto cancelled = connectAtLeisure(channel);
    EXPECT_TRUE(m_thinking.asked.waitForCount(1));
    OpcUa_Channel_CancelConnect(channel.handle());
    EXPECT_EQ(inTime([&] { return cancelled.get(); }), OpcUa_BadRequestCancelledByClient);
    HttpsChannel other;
    m_thinking.askedBy(other);
    auto disconnected = connectAtLeisure(other);
    EXPECT_TRUE(m_thinking.asked.waitForCount(2));
    EXPECT_EQ(inTime([&] { return OpcUa_Channel_Disconnect(other.handle()); }), OpcUa_BadInvalidState);
    EXPECT_EQ(inTime([&] { return disconnected.get(); }), OpcUa_BadRequestCancelledByClient);
    m_thinking.decide();
}

TEST_F(StackHttpsQuestions, DeleteWaitsForTheAnswer)
{
    OpcUa_Channel handle = nullptr;
    std::future<void> deleted;
    {
        HttpsChannel channel;
        m_thinking.askedBy(channel);
        EXPECT_EQ(connectBriefly(channel), OpcUa_BadCertificateUntrusted);
        EXPECT_TRUE(m_thinking.asked.waitForCount(1));
        handle = channel.release();
    }
    deleted = std::async(std::launch::async, [&] { OpcUa_Channel_Delete(&handle); });
    EXPECT_EQ(deleted.wait_for(100ms), std::future_status::timeout);
    EXPECT_TRUE(m_thinking.shown.values().empty());
    m_thinking.decide();
    deleted.get();
    EXPECT_EQ(m_thinking.shown.values().size(), 1u);
    EXPECT_EQ(handle, nullptr);
}

TEST_F(StackHttps, KeysAreWrittenOnlyForWhomTheEnvironmentNames)
{
    constexpr const char* variable = "OPCUA_KEYLOGFILE";
    const TemporaryFolder folder;
    const std::string file = folder.file("keys");
    const HttpsPeer peer(serveAll);
    ASSERT_EQ(HttpsChannel().connect(peer.url()), OpcUa_Good);
    EXPECT_TRUE(folder.names().empty());
    OpcUa_ProxyStub_Clear();
    ::setenv(variable, file.c_str(), 1);
    const OpcUa_StatusCode started = OpcUa_ProxyStub_Initialize(nullptr);
    ::unsetenv(variable);
    ASSERT_EQ(started, OpcUa_Good);
    ASSERT_EQ(HttpsChannel().connect(peer.url()), OpcUa_Good);
    const std::string keys = TemporaryFolder::read(file);
    EXPECT_NE(keys.find("CLIENT_TRAFFIC_SECRET_0 "), std::string::npos);
    EXPECT_NE(keys.find("SERVER_TRAFFIC_SECRET_0 "), std::string::npos);
}

} // namespace
} // namespace opcua::test
