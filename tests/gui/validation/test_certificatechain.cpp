// Chains, the validation's result and what the settings let pass; and chains that somebody made to do harm.
#include <certificates/qlumcertificatechainmodel.h>
#include <certificates/qlumcertificatechainnode.h>
#include <certificates/qlumcertificateerror.h>
#include <opcua/opcua_statuscodes.h>
#include <tests/gui/validation/validationfixture.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/values/uabytestring.h>

#include <QAbstractItemModelTester>
#include <QElapsedTimer>
#include <QString>
#include <QStringList>

#include <ctime>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace {

class CertificateChain : public ValidationFixture
{
protected:
    // Made once: a second later they would be others.
    static Der root()
    {
        static const Der made = testcertificates::make(authority("Root"));
        return made;
    }
    static Der sub()
    {
        static const Der made = testcertificates::make(authority("Sub", "Root"));
        return made;
    }
    static Der leaf()
    {
        static const Der made = testcertificates::make(issuedBy("Sub"));
        return made;
    }
    // Revocation lists of both authorities, so that nothing is unknown.
    void putLists(const std::vector<long>& revokedBySub = {}) const
    {
        put("trusted_crl", "root.crl", testcertificates::makeRevocationList("Root", key("Root"), {}));
        put("issuers_crl", "sub.crl", testcertificates::makeRevocationList("Sub", key("Sub"), revokedBySub));
    }
    OpcUa_StatusCode resultOf(const UaByteString& sent) { return judge(sent)->validationResult().code(); }
};

TEST_F(CertificateChain, SelfSignedIsUntrustedUntilItLiesInTheFolder)
{
    const Der own = testcertificates::make(flawless());
    auto model = judge(bytes(own));
    const QAbstractItemModelTester tester(model.get(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    EXPECT_EQ(model->validationResult().code(), OpcUa_BadCertificateUntrusted);
    EXPECT_EQ(model->validationError(), QlumCertificateError::Error);
    EXPECT_EQ(chainOf(*model), QStringList("Plc (Untrusted)"));
    EXPECT_EQ(findingsOf(*model->root()), QStringList())
        << "that nobody has signed it is no finding of its own";
    trust(own);
    model->update();
    EXPECT_EQ(model->validationResult().code(), OpcUa_Good);
    EXPECT_EQ(model->validationError(), QlumCertificateError::None);
    EXPECT_EQ(chainOf(*model), QStringList("Plc (Trusted)"));
    EXPECT_TRUE(model->isServerCertificate(model->index(0, 0)));
    EXPECT_EQ(model->index(0, 0).data(33), 0);
    EXPECT_EQ(model->index(0, 0).data(QlumCertificateChainModel::CertificateRole).value<UaPkiCertificate>(),
              certificate(own));
}

TEST_F(CertificateChain, UpdateFindsWhatAFreshValidationWouldFind)
{
    Recipe recipe = flawless();
    recipe.from = -7200;
    recipe.to = -3600;
    for (auto& [nid, value] : *recipe.extensions)
        if (nid == NID_key_usage)
            value = "critical,keyAgreement";
    const Der flawed = testcertificates::make(recipe);
    auto model = judge(bytes(flawed));
    EXPECT_EQ(model->validationResult().code(), OpcUa_BadCertificateUntrusted);
    trust(flawed);
    model->update();
    EXPECT_EQ(model->validationResult().code(), OpcUa_BadCertificateTimeInvalid);
    EXPECT_EQ(resultOf(bytes(flawed)), OpcUa_BadCertificateTimeInvalid);
}

TEST_F(CertificateChain, RunsFromTheRootToTheServer)
{
    const UaByteString sent = bytes({leaf(), sub(), root()});
    auto model = judge(sent);
    EXPECT_EQ(chainOf(*model), (QStringList{"Root (Untrusted)", "Sub (Untrusted)", "Plc (Untrusted)"}));
    EXPECT_TRUE(model->isServerCertificate(model->serverCertificateIndex()));
    EXPECT_FALSE(model->isServerCertificate(model->index(0, 0)));
    EXPECT_EQ(model->validationResult().code(), OpcUa_BadCertificateUntrusted);

    put("issuers", "sub.CER", sub());
    trust(root());
    putLists();
    model->update();
    EXPECT_EQ(chainOf(*model), (QStringList{"Root (Trusted)", "Sub (Known Issuer)", "Plc (Untrusted)"}));
    EXPECT_EQ(model->validationResult().code(), OpcUa_Good)
        << findingsOf(*model->root()).join('\n').toStdString();
    EXPECT_EQ(resultOf(bytes(leaf())), OpcUa_Good) << "the folders complete what the server sent";
    put("trusted_crl", "old.der", Der{1, 2, 3}); // no list, not a certificate: passed over
    EXPECT_EQ(resultOf(bytes(leaf())), OpcUa_Good);
}

TEST_F(CertificateChain, FindingsLieWithTheCertificateThatTheyAreAbout)
{
    trust(root());
    put("issuers", "sub.der", sub());
    putLists({1});
    auto model = judge(bytes(leaf()));
    EXPECT_EQ(model->validationResult().code(), OpcUa_BadCertificateRevoked);
    const QlumCertificateChainNode* server = model->node(model->serverCertificateIndex());
    EXPECT_EQ(server->details(0)->name(), "Errors");
    EXPECT_EQ(server->details(0)->child(0)->finding(), "certificate revoked [BadCertificateRevoked]");
    EXPECT_EQ(server->severity(), QlumCertificateError::Error);
    EXPECT_EQ(model->root()->severity(), QlumCertificateError::None);
}

TEST_F(CertificateChain, SettingsLetTimeAndUnknownRevocationPass)
{
    Recipe recipe = flawless();
    recipe.from = -7200;
    recipe.to = -3600;
    const Der expired = testcertificates::make(recipe);
    trust(expired);
    EXPECT_EQ(resultOf(bytes(expired)), OpcUa_BadCertificateTimeInvalid);
    application.settings["General.DisableError.CertificateTimeInvalid"] = true;
    auto model = judge(bytes(expired));
    EXPECT_EQ(model->validationResult().code(), OpcUa_Good);
    EXPECT_EQ(findingsOf(*model->root()),
              (QStringList{"Errors/Error [2]: certificate has expired [BadCertificateTimeInvalid]",
                           "Validity/Valid To [1]: The certificate has expired"}));

    trust(root());
    put("issuers", "sub.der", sub());
    EXPECT_EQ(resultOf(bytes(leaf())), OpcUa_BadCertificateRevocationUnknown);
    application.settings["General.DisableError.CertificateRevocationUnknown"] = true;
    EXPECT_EQ(resultOf(bytes(leaf())), OpcUa_BadCertificateIssuerRevocationUnknown);
    application.settings["General.DisableError.CertificateIssuerRevocationUnknown"] = true;
    EXPECT_EQ(resultOf(bytes(leaf())), OpcUa_Good);

    Recipe oldRoot = authority("Root");
    oldRoot.to = -60;
    std::filesystem::remove_all(store.file("trusted"));
    std::filesystem::create_directory(store.file("trusted"));
    trust(testcertificates::make(oldRoot));
    EXPECT_EQ(resultOf(bytes(leaf())), OpcUa_BadCertificateIssuerTimeInvalid);
    application.settings["General.DisableError.CertificateIssuerTimeInvalid"] = true;
    EXPECT_EQ(resultOf(bytes(leaf())), OpcUa_Good);
}

TEST_F(CertificateChain, NoSettingHidesThatNobodyTrustsIt)
{
    Recipe recipe = flawless();
    recipe.from = -7200;
    recipe.to = -3600;
    const Der expired = testcertificates::make(recipe);
    EXPECT_EQ(resultOf(bytes(expired)), OpcUa_BadCertificateUntrusted) << "trust comes before time";
    for (const char* name : {"CertificateTimeInvalid", "CertificateIssuerTimeInvalid",
                             "CertificateRevocationUnknown", "CertificateIssuerRevocationUnknown"})
        application.settings[QStringLiteral("General.DisableError.") + name] = true;
    EXPECT_EQ(resultOf(bytes(expired)), OpcUa_BadCertificateUntrusted);

    // signed by somebody who only calls himself Root
    Recipe forged = issuedBy("Root");
    forged.issuerPair = key("other");
    trust(root());
    putLists();
    const Der der = testcertificates::make(forged);
    EXPECT_EQ(resultOf(bytes(der)), OpcUa_BadCertificateInvalid);
    trust(der);
    EXPECT_EQ(resultOf(bytes(der)), OpcUa_BadCertificateInvalid) << "a trusted file makes no signature good";
}

TEST_F(CertificateChain, ThoseThatIssueEachOtherComeToAnEnd)
{
    const auto loop = [](const std::string& name, const std::string& issuer) {
        return testcertificates::make(authority(name, issuer));
    };
    const UaByteString sent = bytes({testcertificates::make(issuedBy("A")), loop("A", "B"), loop("B", "A")});
    auto model = judge(sent);
    EXPECT_EQ(chainOf(*model).size(), 3);
    EXPECT_TRUE(model->validationResult().isBad());

    // a long way up, through the folder
    for (int i = 0; i < 30; ++i)
        put("issuers", numbered("", i, ".der"), testcertificates::make([i] {
                Recipe recipe = authority(numbered("N", i));
                recipe.pair = key();
                recipe.issuer = numbered("N", i + 1);
                recipe.issuerPair = key();
                return recipe;
            }()));
    Recipe first = issuedBy("N0");
    first.issuerPair = key();
    model = judge(bytes(testcertificates::make(first)));
    EXPECT_EQ(chainOf(*model).size(), 10);
    EXPECT_TRUE(model->validationResult().isBad());
}

TEST_F(CertificateChain, WhatIsNoCertificateGivesNothingToTrust)
{
    const Der good = testcertificates::make(flawless());
    Der cut(good.begin(), good.end() - 1);
    Der lying = good;
    lying[1] = 0x84; // a length of four bytes, far beyond the end
    Der fifty;
    for (int i = 0; i < 50; ++i)
        fifty.insert(fifty.end(), good.begin(), good.end());
    const Der trailing = [&] {
        Der der = good;
        der.push_back(0);
        return der;
    }();
    for (const Der& bad : {Der{}, cut, lying, fifty, trailing, Der(1024 * 1024 + 1, 0x30), Der(64, 0)}) {
        auto model = judge(bytes(bad));
        EXPECT_EQ(model->validationResult().code(), OpcUa_BadDecodingError) << bad.size();
        EXPECT_EQ(model->rowCount(), 0) << bad.size();
        EXPECT_EQ(model->validationError(), QlumCertificateError::Error);
        EXPECT_FALSE(model->serverCertificateIndex().isValid());
    }
}

TEST_F(CertificateChain, FolderMayHoldAnything)
{
    const Der own = testcertificates::make(flawless());
    put("trusted", "garbage.der", Der(100, 0x5A));
    put("trusted", "large.der", Der(2 * 1024 * 1024, 0x30));
    put("trusted", "notes.txt", own); // by its name no certificate of the list
    std::filesystem::create_directory(store.file("trusted/folder.der"));
    std::filesystem::create_symlink("self.der", store.file("trusted/self.der"));
    ASSERT_EQ(::mkfifo(store.file("trusted/pipe.der").c_str(), 0600), 0);
    EXPECT_EQ(resultOf(bytes(own)), OpcUa_BadCertificateUntrusted);
    put("trusted", "UPPER.DER", own);
    EXPECT_EQ(resultOf(bytes(own)), OpcUa_Good);
    security.initializePkiProviderOpenSSL("/nowhere", "/nowhere", "/nowhere", "/nowhere");
    EXPECT_EQ(resultOf(bytes(own)), OpcUa_BadCertificateUntrusted);
}

TEST_F(CertificateChain, ThousandsOfTrustedCertificatesTakeLessThanASecond)
{
#ifdef __SANITIZE_ADDRESS__
    constexpr int files = 500;
#elif defined(__SANITIZE_THREAD__)
    constexpr int files = 500;
#else
    constexpr int files = 5000;
#endif
    Recipe recipe = flawless();
    Der own; // the last one: made anew it would be another when a second has passed
    for (int i = 0; i < files; ++i) {
        recipe.name = numbered("Plc ", i);
        recipe.serial = i + 1;
        own = testcertificates::make(recipe);
        put("trusted", numbered("", i, ".der"), own);
    }
    const std::clock_t begin = std::clock();
    EXPECT_EQ(resultOf(bytes(own)), OpcUa_Good);
    EXPECT_LT(double(std::clock() - begin) / CLOCKS_PER_SEC, 1.0) << "processor seconds";
}

TEST_F(CertificateChain, TlsFormShowsWhatItIsGiven)
{
    Recipe recipe = flawless();
    recipe.to = -60;
    QlumCertificateChainModel model(bytes(testcertificates::make(recipe)),
                                    OpcUa_BadCertificateHostNameInvalid);
    model.update();
    EXPECT_EQ(chainOf(model), QStringList("Plc (Untrusted)"));
    EXPECT_EQ(model.validationResult().code(), OpcUa_BadCertificateHostNameInvalid);
    EXPECT_EQ(findingsOf(*model.root()), QStringList("Validity/Valid To [1]: The certificate has expired"));
    QlumCertificateChainModel broken(UaByteString(3, reinterpret_cast<const OpcUa_Byte*>("abc")),
                                     OpcUa_BadCertificateInvalid);
    broken.update();
    EXPECT_EQ(broken.rowCount(), 0);
}
} // namespace
