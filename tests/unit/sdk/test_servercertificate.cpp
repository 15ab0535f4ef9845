// The check of a server's certificate: what the callback is told and what it may decide.
#include <tests/support/temporaryfolder.h>
#include <tests/support/testcertificates.h>
#include <tests/unit/sdk/sessiontest.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>

#include <gmock/gmock.h>

#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace {

namespace certificates = testcertificates;
using testing::ElementsAre;
using UaClientSdk::SessionSecurityInfo;

UaByteString bytesOf(const certificates::Der& der)
{
    return UaByteString(std::span<const OpcUa_Byte>(der.data(), der.size()));
}

// Answers alike to everything and notes the status, the library's number and the depth.
class Judge : public UaClientSdk::CertificateValidationCallback
{
public:
    explicit Judge(int given) : m_answer(given) {}

    int verificationError(SessionSecurityInfo* security, void* context, const UaByteString& certificate,
                          unsigned int errorCode, unsigned int depth) override
    {
        UaStatusCode status;
        int error = 0;
        UaString text;
        SessionSecurityInfo::getCurrentErrorInformationOpenSSL(context, status, error, text);
        EXPECT_EQ(static_cast<unsigned int>(error), errorCode);
        EXPECT_FALSE(text.isEmpty());
        EXPECT_FALSE(depth == 0 && !security->serverCertificate.view().starts_with(certificate.view()));
        findings.push_back(status.toString().toStdString() + " " + std::to_string(error) + " " +
                           std::to_string(depth));
        return m_answer;
    }

    std::vector<std::string> findings;

private:
    int m_answer;
};

class ServerCertificate : public SessionTest
{
protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        for (const char* name : {"trusted", "trustedcrl", "issuers", "issuerscrl"})
            std::filesystem::create_directory(m_folder.file(name));
        const auto path = [this](const char* name) { return UaString(m_folder.file(name).c_str()); };
        security.initializePkiProviderOpenSSL(path("trustedcrl"), path("trusted"), path("issuerscrl"),
                                              path("issuers"));
        security.securityPolicyUri = OpcUa_SecurityPolicy_Basic256Sha256;
        security.messageSecurityMode = OpcUa_MessageSecurityMode_Sign;
    }

    static certificates::Recipe recipe(long from = -3600, long to = 86400)
    {
        certificates::Recipe made;
        made.pair = certificates::key(2048);
        made.from = from;
        made.to = to;
        return made;
    }

    void trust(const UaByteString& certificate)
    {
        TemporaryFolder::write(m_folder.file("trusted/server.der"), std::string(certificate.view()));
    }

    SessionSecurityInfo security;

private:
    TemporaryFolder m_folder;
};

TEST_F(ServerCertificate, NobodyOverridesMissingTrust)
{
    security.serverCertificate = bytesOf(certificates::make(recipe()));
    Judge lenient(1);
    EXPECT_TRUE(security.verifyServerCertificate(&lenient) == OpcUa_BadCertificateUntrusted);
    EXPECT_THAT(lenient.findings, ElementsAre("BadCertificateUntrusted 18 0"));
    EXPECT_TRUE(security.verifyServerCertificate(nullptr) == OpcUa_BadCertificateUntrusted);
    trust(security.serverCertificate);
    EXPECT_TRUE(security.verifyServerCertificate(nullptr).isGood());
}

TEST_F(ServerCertificate, TimeMayBeOverriddenAndEveryFindingIsToldUntilTheCallbackEnds)
{
    security.serverCertificate = bytesOf(certificates::make(recipe(-7200, -3600)));
    Judge strict(0);
    EXPECT_TRUE(security.verifyServerCertificate(&strict) == OpcUa_BadCertificateUntrusted);
    EXPECT_EQ(strict.findings.size(), 1u);
    Judge untrusting(1);
    EXPECT_TRUE(security.verifyServerCertificate(&untrusting) == OpcUa_BadCertificateUntrusted);
    EXPECT_THAT(untrusting.findings,
                ElementsAre("BadCertificateUntrusted 18 0", "BadCertificateTimeInvalid 10 0"));
    trust(security.serverCertificate);
    Judge lenient(1);
    EXPECT_TRUE(security.verifyServerCertificate(&lenient).isGood());
    EXPECT_THAT(lenient.findings, ElementsAre("BadCertificateTimeInvalid 10 0"));
    EXPECT_TRUE(security.verifyServerCertificate(nullptr) == OpcUa_BadCertificateTimeInvalid);
}

TEST_F(ServerCertificate, WhatThePolicyAsksForAndWhatIsNoCertificateAreFindings)
{
    certificates::Recipe weak = recipe();
    weak.digest = EVP_sha1();
    weak.usage = "critical,keyEncipherment";
    security.serverCertificate = bytesOf(certificates::make(weak));
    trust(security.serverCertificate);
    Judge judge(1);
    EXPECT_TRUE(security.verifyServerCertificate(&judge) == OpcUa_BadCertificatePolicyCheckFailed);
    EXPECT_THAT(judge.findings,
                ElementsAre("BadCertificatePolicyCheckFailed 0 0", "BadCertificateUseNotAllowed 0 0"));
    security.serverCertificate = UaByteString(std::span<const OpcUa_Byte>());
    Judge garbage(1);
    EXPECT_TRUE(security.verifyServerCertificate(&garbage) == OpcUa_BadCertificateInvalid);
    EXPECT_EQ(garbage.findings.size(), 1u);
}

TEST_F(ServerCertificate, ConnectThatVerifiesEndsBeforeTheNetwork)
{
    security.serverCertificate = bytesOf(certificates::make(recipe()));
    security.verifyServerCertificateOnConnect = true;
    const UaString url("opc.tcp://localhost:4840");
    EXPECT_TRUE(session.connect(url, info, security, &callback) == OpcUa_BadCertificateUntrusted);
    EXPECT_EQ(stack.connects(), 0);
    EXPECT_THAT(callback.errors(), ElementsAre("0 BadCertificateUntrusted"));

    security.serverCertificate = bytesOf(certificates::make(recipe(3600, 7200)));
    trust(security.serverCertificate);
    EXPECT_TRUE(session.connect(url, info, security, &callback) == OpcUa_BadCertificateTimeInvalid);
    EXPECT_EQ(callback.errors().back(), "0 BadCertificateTimeInvalid ours");
    EXPECT_EQ(stack.connects(), 0);
}

} // namespace
