// Certificates judged by the folders of a store.
#include <opcua/opcua_crypto.h>
#include <opcua/opcua_statuscodes.h>
#include <tests/support/testcertificates.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace {

namespace certificates = testcertificates;
using certificates::Der;
using certificates::Recipe;

OpcUa_ByteString viewOf(const Der& bytes)
{
    return {static_cast<OpcUa_Int32>(bytes.size()), const_cast<OpcUa_Byte*>(bytes.data())};
}

Der joined(std::initializer_list<Der> parts)
{
    Der all;
    for (const Der& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

struct Finding
{
    OpcUa_StatusCode status;
    OpcUa_Int32 depth;
    OpcUa_Int32 error;
};

class StackCertificates : public testing::Test
{
protected:
    StackCertificates()
    {
        m_root = std::filesystem::temp_directory_path() / ("tavelin-pki-" + std::to_string(getpid()));
        for (const char* const folder : {"trusted", "trustedcrl", "issuers", "issuerscrl"})
            std::filesystem::create_directories(m_root / folder);
    }
    ~StackCertificates() override { std::filesystem::remove_all(m_root); }

    void put(const std::string& file, const Der& bytes)
    {
        std::ofstream(m_root / file, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    }
    void clear()
    {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(m_root))
            if (!entry.is_directory())
                std::filesystem::remove(entry.path());
    }

    OpcUa_StatusCode verify(const Der& chain, OpcUa_StatusCode answer = OpcUa_Bad,
                            const char* policy = OpcUa_SecurityPolicy_Basic256Sha256)
    {
        struct Call
        {
            std::vector<Finding>& findings;
            OpcUa_StatusCode answer;
        } call{m_findings, answer};
        m_findings.clear();
        const auto note = [](const OpcUa_CertificateValidation* validation, void* context) {
            auto& made = *static_cast<Call*>(context);
            made.findings.push_back({validation->Status, validation->Depth, validation->ProviderError});
            return made.answer;
        };
        const std::string folders[] = {m_root / "trusted", m_root / "trustedcrl", m_root / "issuers",
                                       m_root / "issuerscrl"};
        const OpcUa_PkiConfiguration pki{folders[0].c_str(), folders[1].c_str(), folders[2].c_str(),
                                         folders[3].c_str()};
        const OpcUa_ByteString bytes = viewOf(chain);
        return OpcUa_Certificate_Verify(&bytes, &pki, policy, note, &call);
    }
    bool found(OpcUa_StatusCode status, int depth) const
    {
        return std::any_of(
            m_findings.begin(), m_findings.end(),
            [&](const Finding& finding) { return finding.status == status && finding.depth == depth; });
    }

    static Recipe own(const std::string& name = "Server")
    {
        Recipe recipe;
        recipe.name = name;
        recipe.pair = certificates::key(2048, "leaf");
        return recipe;
    }
    static Recipe issued(long serial = 5)
    {
        Recipe recipe = own();
        recipe.issuer = "Root";
        recipe.issuerPair = certificates::key(2048, "root");
        recipe.serial = serial;
        return recipe;
    }
    static Recipe authority()
    {
        Recipe recipe;
        recipe.name = "Root";
        recipe.pair = certificates::key(2048, "root");
        recipe.authority = true;
        return recipe;
    }
    static Der list(const std::vector<long>& serials, const char* signer = "root", long to = 86400)
    {
        return certificates::makeRevocationList("Root", certificates::key(2048, signer), serials, to);
    }

    std::filesystem::path m_root;
    std::vector<Finding> m_findings;
};

TEST_F(StackCertificates, TrustsWhatLiesInTheFolder)
{
    const Der certificate = certificates::make(own());
    EXPECT_EQ(verify(certificate), OpcUa_BadCertificateUntrusted);
    ASSERT_EQ(m_findings.size(), 1u);
    EXPECT_EQ(m_findings[0].depth, 0);
    EXPECT_EQ(m_findings[0].error, X509_V_ERR_DEPTH_ZERO_SELF_SIGNED_CERT);
    EXPECT_EQ(verify(certificate, OpcUa_Good), OpcUa_Good); // for once

    put("issuers/known.der", certificate);
    EXPECT_EQ(verify(certificate), OpcUa_BadCertificateUntrusted);
    put("trusted/broken.der", Der(100, 0x30));
    ASSERT_EQ(mkfifo((m_root / "trusted/pipe.der").c_str(), 0600), 0); // nobody will ever write to it
    put("trusted/other.txt", certificate);
    EXPECT_EQ(verify(certificate), OpcUa_BadCertificateUntrusted);
    put("trusted/server.DER", certificate);
    EXPECT_EQ(verify(certificate), OpcUa_Good);
    EXPECT_TRUE(m_findings.empty());
    EXPECT_EQ(verify(certificates::make(own("Impostor"))), OpcUa_BadCertificateUntrusted);
}

TEST_F(StackCertificates, NoFileIsTrustedByItsFirstPartNorOverlookedForItsForm)
{
    const Der certificate = certificates::make(own());
    const Der other = certificates::make(own("Other"));
    const auto text = [](const std::string& pem) { return Der(pem.begin(), pem.end()); };
    const std::string block = certificates::pem("CERTIFICATE", certificate);
    const std::string otherBlock = certificates::pem("CERTIFICATE", other);
    const Der key = certificates::privateDer(certificates::key(2048, "leaf"));
    const Der longer = joined({certificate, Der(1, 0)});
    struct Case
    {
        const char* name;
        Der content;
        bool isTrusted;
    };
    const std::vector<Case> cases = {
        {"a.der", joined({other, certificate}), true},
        {"a.Crt", certificate, true},
        {"a.cer", text("subject=Server\n" + otherBlock + block), true},
        {"a.der", text(certificates::pem("RSA PRIVATE KEY", key) + block), true},
        {"a.crt", text(certificates::pem("TRUSTED CERTIFICATE", longer)), true},
        {"a.pem", text(block), false},
        {"\xE4.der", certificate, false},
        {"a.der", longer, false},
        {"a.der", joined({certificate, Der(other.begin(), other.end() - 1)}), false},
        {"a.cer", text(certificates::pem("CERTIFICATE", longer)), false},
        {"a.cer", text(block + otherBlock.substr(0, otherBlock.size() / 2)), false},
        {"a.cer", text(certificates::pem("CERTIFICATE REQUEST", certificate)), false},
    };
    for (const auto& [name, content, isTrusted] : cases) {
        clear();
        put(std::string("trusted/") + name, content);
        EXPECT_EQ(verify(certificate), isTrusted ? OpcUa_Good : OpcUa_BadCertificateUntrusted)
            << name << ' ' << content.size();
    }
    const auto ignore = [](const OpcUa_ByteString*, void*) {};
    EXPECT_EQ(OpcUa_CertificateFile_Read(nullptr, 0, ignore, nullptr), OpcUa_BadDecodingError);
    EXPECT_EQ(OpcUa_CertificateFile_Read(nullptr, 1, ignore, nullptr), OpcUa_BadInvalidArgument);
}

TEST_F(StackCertificates, FollowsTheChainAndItsRevocationLists)
{
    const Der root = certificates::make(authority());
    const Der leaf = certificates::make(issued());
    put("trusted/leaf.der", leaf);
    EXPECT_EQ(verify(leaf), OpcUa_BadCertificateChainIncomplete) << "its issuer is not known";
    clear();
    EXPECT_EQ(verify(joined({leaf, root})), OpcUa_BadCertificateUntrusted);
    put("trusted/root.der", root);
    EXPECT_EQ(verify(leaf), OpcUa_BadCertificateRevocationUnknown);
    put("trustedcrl/root.crl", list({6, 7}));
    EXPECT_EQ(verify(leaf), OpcUa_Good);
    EXPECT_EQ(verify(certificates::make(issued(7))), OpcUa_BadCertificateRevoked);
    put("trustedcrl/root.crl", list({5}, "leaf")); // somebody else's word
    EXPECT_EQ(verify(leaf), OpcUa_BadCertificateRevocationUnknown);
    EXPECT_FALSE(found(OpcUa_BadCertificateRevoked, 0));
    put("trustedcrl/root.crl", list({6}, "root", -60));
    EXPECT_EQ(verify(leaf), OpcUa_BadCertificateRevocationUnknown);
    clear();
    put("issuers/root.der", root);
    put("issuerscrl/root.crl", list({}));
    EXPECT_EQ(verify(leaf), OpcUa_BadCertificateUntrusted) << "a known issuer is not trusted";
    put("trusted/leaf.der", leaf);
    EXPECT_EQ(verify(leaf), OpcUa_Good);
}

TEST_F(StackCertificates, EachLinkOfAChainIsJudgedByTheListOfItsOwnIssuer)
{
    Recipe middle = authority();
    middle.name = "Middle";
    middle.pair = certificates::key(2048, "middle");
    middle.issuer = "Root";
    middle.issuerPair = certificates::key(2048, "root");
    middle.serial = 9;
    Recipe recipe = issued();
    recipe.issuer = "Middle";
    recipe.issuerPair = middle.pair;
    const Der leaf = certificates::make(recipe);
    const auto listOfMiddle = [&](const std::vector<long>& serials) {
        return certificates::makeRevocationList("Middle", middle.pair, serials);
    };
    put("trusted/root.der", certificates::make(authority()));
    put("issuers/middle.der", certificates::make(middle));
    put("trustedcrl/root.crl", list({5}));
    EXPECT_EQ(verify(leaf), OpcUa_BadCertificateRevocationUnknown);
    put("issuerscrl/middle.crl", listOfMiddle({9}));
    EXPECT_EQ(verify(leaf), OpcUa_Good) << "neither number is its issuer's";
    put("trustedcrl/root.crl", list({9}));
    EXPECT_EQ(verify(leaf), OpcUa_BadCertificateIssuerRevoked);
    put("issuerscrl/middle.crl", listOfMiddle({5}));
    put("trustedcrl/root.crl", list({9}, "leaf")); // somebody else's word about the issuer
    EXPECT_EQ(verify(leaf), OpcUa_BadCertificateRevoked) << "a genuine one about the certificate";
    EXPECT_FALSE(found(OpcUa_BadCertificateIssuerRevoked, 1));
    put("trustedcrl/root.crl", list({9}));
    put("issuerscrl/middle.crl", certificates::makeRevocationList("Middle", recipe.pair, {5}));
    EXPECT_EQ(verify(leaf), OpcUa_BadCertificateIssuerRevoked);
    EXPECT_FALSE(found(OpcUa_BadCertificateRevoked, 0));
}

TEST_F(StackCertificates, TellsEveryFindingInTheOrderInWhichTheyDecide)
{
    Recipe recipe = own();
    recipe.from = -7200;
    recipe.to = -3600;
    recipe.usage = "critical,keyAgreement";
    recipe.digest = EVP_sha1();
    const Der certificate = certificates::make(recipe);
    EXPECT_EQ(verify(certificate), OpcUa_BadCertificatePolicyCheckFailed);
    std::vector<OpcUa_StatusCode> told;
    for (const Finding& finding : m_findings)
        told.push_back(finding.status);
    EXPECT_EQ(told, (std::vector<OpcUa_StatusCode>{
                        OpcUa_BadCertificatePolicyCheckFailed, OpcUa_BadCertificateUntrusted,
                        OpcUa_BadCertificateTimeInvalid, OpcUa_BadCertificateUseNotAllowed}));
    EXPECT_EQ(verify(certificate, OpcUa_Good), OpcUa_Good);
    EXPECT_EQ(verify(certificate, OpcUa_Bad, OpcUa_SecurityPolicy_Basic256), OpcUa_BadCertificateUntrusted);

    Recipe old = authority();
    old.to = -60;
    put("trusted/root.der", certificates::make(old));
    put("trustedcrl/root.crl", list({}));
    EXPECT_EQ(verify(certificates::make(issued())), OpcUa_BadCertificateIssuerTimeInvalid);
    Recipe future = own();
    future.from = 3600;
    const Der early = certificates::make(future);
    put("trusted/future.der", early);
    EXPECT_EQ(verify(early), OpcUa_BadCertificateTimeInvalid);
}

TEST_F(StackCertificates, KeysKeepToBothBoundsOfThePolicy)
{
    struct Case
    {
        int bits;
        const char* policy;
        OpcUa_StatusCode status;
    };
    for (const Case& c :
         {Case{1024, OpcUa_SecurityPolicy_Basic256, OpcUa_Good},
          Case{1024, OpcUa_SecurityPolicy_Basic256Sha256, OpcUa_BadCertificatePolicyCheckFailed},
          Case{2048, OpcUa_SecurityPolicy_Basic256, OpcUa_Good},
          Case{3072, OpcUa_SecurityPolicy_Basic256, OpcUa_BadCertificatePolicyCheckFailed},
          Case{3072, OpcUa_SecurityPolicy_Aes256Sha256RsaPss, OpcUa_Good}}) {
        Recipe recipe = own();
        recipe.pair = certificates::key(c.bits, "leaf");
        const Der certificate = certificates::make(recipe);
        put("trusted/server.der", certificate);
        EXPECT_EQ(verify(certificate, OpcUa_Bad, c.policy), c.status) << c.bits << ' ' << c.policy;
    }
}

TEST_F(StackCertificates, NoFindingHidesBehindAnotherOfItsStatus)
{
    put("trusted/root.der", certificates::make(authority()));
    put("trustedcrl/root.crl", list({6}, "leaf", -60)); // out of date, and of somebody else
    EXPECT_EQ(verify(certificates::make(issued())), OpcUa_BadCertificateRevocationUnknown);
    ASSERT_GE(m_findings.size(), 2u);
    EXPECT_EQ(m_findings[1].status, OpcUa_BadCertificateRevocationUnknown);
    EXPECT_EQ(m_findings[1].depth, m_findings[0].depth);
    EXPECT_NE(m_findings[1].error, m_findings[0].error);
}

TEST_F(StackCertificates, NeverLetsAForgeryPass)
{
    Der forged = certificates::make(own());
    forged.back() ^= 1;
    put("trusted/forged.der", forged);
    EXPECT_EQ(verify(forged, OpcUa_Good), OpcUa_BadCertificateInvalid);

    Recipe stranger = issued();
    stranger.issuerPair = certificates::key(2048, "leaf"); // names an issuer that did not sign
    put("trusted/root.der", certificates::make(authority()));
    put("trustedcrl/root.crl", list({}));
    EXPECT_EQ(verify(certificates::make(stranger), OpcUa_Good), OpcUa_BadCertificateInvalid);

    Recipe commoner = authority();
    commoner.authority = false;
    clear();
    put("trusted/root.der", certificates::make(commoner));
    EXPECT_EQ(verify(certificates::make(issued())) & 0x80000000u, 0x80000000u);
    EXPECT_TRUE(found(OpcUa_BadCertificateIssuerUseNotAllowed, 1) ||
                found(OpcUa_BadCertificateChainIncomplete, 0));
}

TEST_F(StackCertificates, RefusesWhatIsNoChain)
{
    const Der certificate = certificates::make(own());
    put("trusted/server.der", certificate);
    EXPECT_EQ(verify({}, OpcUa_Good), OpcUa_BadCertificateInvalid);
    EXPECT_EQ(verify(Der(certificate.begin(), certificate.end() - 1), OpcUa_Good),
              OpcUa_BadCertificateInvalid);
    EXPECT_EQ(verify(joined({certificate, Der(1, 0)}), OpcUa_Good), OpcUa_BadCertificateInvalid);
    EXPECT_EQ(verify({0x30, 0x84, 0xFF, 0xFF, 0xFF, 0xFF, 0x30}, OpcUa_Good), OpcUa_BadCertificateInvalid);
    Der endless;
    for (int n = 0; n < 150; ++n)
        endless.insert(endless.end(), certificate.begin(), certificate.end());
    EXPECT_EQ(verify(endless, OpcUa_Good), OpcUa_BadCertificateInvalid);
    EXPECT_EQ(OpcUa_Certificate_Verify(nullptr, nullptr, nullptr, nullptr, nullptr),
              OpcUa_BadInvalidArgument);
}

TEST(StackCertificateChains, AreCutAfterTheirFirstCertificate)
{
    const auto first = [](const Der& chain) {
        return OpcUa_Certificate_GetFirstLength(chain.data(), chain.size());
    };
    const Der sequences = {0x30, 0x01, 0xAA, 0x30, 0x00};
    EXPECT_EQ(first(sequences), 3u);
    EXPECT_EQ(first({0x30, 0x00}), 2u);
    Der longForm = {0x30, 0x82, 0x01, 0x00};
    longForm.resize(4 + 256 + 7);
    EXPECT_EQ(first(longForm), 4u + 256u);
    longForm.resize(4 + 255);
    EXPECT_EQ(first(longForm), 0u) << "cut short";
    for (const Der& none :
         {Der{}, Der{0x30}, Der{0x30, 0x01}, Der{0x31, 0x00}, Der{0x30, 0x82, 0x01}, Der{0x30, 0x80, 0, 0},
          Der{0x30, 0x84, 0xFF, 0xFF, 0xFF, 0xFF}, Der{0x30, 0x85, 0, 0, 0, 0, 0}})
        EXPECT_EQ(first(none), 0u) << none.size();
    EXPECT_EQ(OpcUa_Certificate_GetFirstLength(nullptr, 0), 0u);
}

// ---- crypto providers

class StackCryptoProvider : public testing::TestWithParam<const char*>
{
protected:
    void SetUp() override { ASSERT_EQ(OpcUa_CryptoProvider_Create(GetParam(), &m_provider), OpcUa_Good); }
    void TearDown() override { OpcUa_CryptoProvider_Delete(&m_provider); }

    OpcUa_CryptoProvider m_provider = nullptr;
};

TEST_P(StackCryptoProvider, EncryptsAndSignsTextsOfEveryLength)
{
    Recipe recipe;
    recipe.pair = certificates::key(2048, "leaf");
    const Der certificate = certificates::make(recipe);
    const Der key = certificates::privateDer(recipe.pair);
    const OpcUa_ByteString certificateBytes = viewOf(certificate);
    const OpcUa_ByteString keyBytes = viewOf(key);
    for (const size_t length : {1, 100, 245, 246, 600}) {
        const Der plain(length, 0x5A);
        const OpcUa_ByteString text = viewOf(plain);
        OpcUa_ByteString cipher;
        OpcUa_ByteString back;
        OpcUa_ByteString signature;
        ASSERT_EQ(OpcUa_CryptoProvider_AsymmetricEncrypt(m_provider, &certificateBytes, &text, &cipher),
                  OpcUa_Good);
        EXPECT_EQ(cipher.Length % 256, 0);
        ASSERT_EQ(OpcUa_CryptoProvider_AsymmetricDecrypt(m_provider, &keyBytes, &cipher, &back), OpcUa_Good);
        EXPECT_EQ(OpcUa_ByteString_Compare(&text, &back), 0);
        ASSERT_EQ(OpcUa_CryptoProvider_AsymmetricSign(m_provider, &keyBytes, &text, &signature), OpcUa_Good);
        EXPECT_EQ(OpcUa_CryptoProvider_AsymmetricVerify(m_provider, &certificateBytes, &text, &signature),
                  OpcUa_Good);
        signature.Data[7] ^= 1;
        EXPECT_EQ(OpcUa_CryptoProvider_AsymmetricVerify(m_provider, &certificateBytes, &text, &signature),
                  OpcUa_BadSecurityChecksFailed);
        for (OpcUa_ByteString* const bytes : {&cipher, &back, &signature})
            OpcUa_ByteString_Clear(bytes);
    }
}

INSTANTIATE_TEST_SUITE_P(Policies, StackCryptoProvider,
                         testing::Values(OpcUa_SecurityPolicy_Basic128Rsa15, OpcUa_SecurityPolicy_Basic256,
                                         OpcUa_SecurityPolicy_Basic256Sha256,
                                         OpcUa_SecurityPolicy_Aes128Sha256RsaOaep,
                                         OpcUa_SecurityPolicy_Aes256Sha256RsaPss));

TEST(StackCryptoProviders, RefuseWhatThePolicyDoesNotAllow)
{
    OpcUa_CryptoProvider provider = nullptr;
    EXPECT_EQ(OpcUa_CryptoProvider_Create("urn:unknown", &provider), OpcUa_BadSecurityPolicyRejected);
    EXPECT_EQ(provider, nullptr);
    Recipe recipe;
    recipe.pair = certificates::key(1024, "small");
    const Der certificate = certificates::make(recipe);
    const OpcUa_ByteString certificateBytes = viewOf(certificate);
    const OpcUa_ByteString text = viewOf(certificate);
    OpcUa_ByteString out;
    OpcUa_UInt32 bits = 0;
    EXPECT_EQ(OpcUa_CryptoProvider_GetPublicKeyLength(&certificateBytes, &bits), OpcUa_Good);
    EXPECT_EQ(bits, 1024u);
    ASSERT_EQ(OpcUa_CryptoProvider_Create(OpcUa_SecurityPolicy_Basic256Sha256, &provider), OpcUa_Good);
    EXPECT_EQ(OpcUa_CryptoProvider_AsymmetricEncrypt(provider, &certificateBytes, &text, &out),
              OpcUa_BadCertificatePolicyCheckFailed);
    EXPECT_EQ(out.Data, nullptr);
    OpcUa_CryptoProvider_Delete(&provider);
    ASSERT_EQ(OpcUa_CryptoProvider_Create(nullptr, &provider), OpcUa_Good);
    EXPECT_EQ(OpcUa_CryptoProvider_AsymmetricEncrypt(provider, &certificateBytes, &text, &out),
              OpcUa_BadNotSupported);
    OpcUa_CryptoProvider_Delete(&provider);
}

} // namespace
