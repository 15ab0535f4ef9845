// A certificate store in a folder of its own, and certificates to fill it with.
#pragma once
#include <app/api/qlumtext.h>
#include <certificates/qlumcertificatechainmodel.h>
#include <certificates/qlumcertificatechainnode.h>
#include <certificates/qlumcertificatedetailsnode.h>
#include <certificates/qlumthumbprint.h>
#include <tests/support/modeltext.h>
#include <tests/support/stubapplication.h>
#include <tests/support/temporaryfolder.h>
#include <tests/support/testcertificates.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastring.h>

#include <QModelIndex>
#include <QString>
#include <QStringList>
#include <gtest/gtest.h>

#include <filesystem>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

class ValidationFixture : public ::testing::Test
{
protected:
    using Der = testcertificates::Der;
    using Recipe = testcertificates::Recipe;

    ValidationFixture()
    {
        for (const char* name : {"trusted", "issuers", "trusted_crl", "issuers_crl"})
            std::filesystem::create_directory(store.file(name));
        security.initializePkiProviderOpenSSL(
            UaString(store.file("trusted_crl")), UaString(store.file("trusted")),
            UaString(store.file("issuers_crl")), UaString(store.file("issuers")));
        security.securityPolicyUri = "http://opcfoundation.org/UA/SecurityPolicy#Basic256Sha256";
    }

    static EVP_PKEY* key(const std::string& name = "own") { return testcertificates::key(2048, name); }
    /// Nothing is to be found about it but that nobody trusts it.
    static Recipe flawless(const std::string& name = "Plc")
    {
        Recipe recipe;
        recipe.name = name;
        recipe.pair = key();
        recipe.extensions = usual();
        return recipe;
    }
    static std::vector<std::pair<int, std::string>> usual()
    {
        return {{NID_basic_constraints, "critical,CA:FALSE"},
                {NID_subject_key_identifier, "DER:0402ABCD"},
                {NID_authority_key_identifier, "DER:30048002ABCD"},
                {NID_key_usage, "critical,digitalSignature,nonRepudiation,keyEncipherment,dataEncipherment"},
                {NID_ext_key_usage, "serverAuth,clientAuth"},
                {NID_subject_alt_name, "URI:urn:plc,DNS:plc.example,IP:192.0.2.7"}};
    }
    static Recipe authority(const std::string& name, const std::string& issuer = {})
    {
        Recipe recipe;
        recipe.name = name;
        recipe.pair = key(name);
        recipe.authority = true;
        recipe.issuer = issuer;
        recipe.issuerPair = issuer.empty() ? nullptr : key(issuer);
        return recipe;
    }
    /// Signed by an authority; key identifiers that name nobody are left out, they would have to fit.
    static Recipe issuedBy(const std::string& issuer, const std::string& name = "Plc")
    {
        Recipe recipe = flawless(name);
        recipe.issuer = issuer;
        recipe.issuerPair = key(issuer);
        recipe.extensions.reset();
        recipe.names = "URI:urn:plc,DNS:plc.example";
        return recipe;
    }

    static std::string numbered(std::string text, int number, const char* end = "")
    {
        text += std::to_string(number);
        return text += end;
    }
    static UaByteString bytes(const Der& der)
    {
        return UaByteString(static_cast<OpcUa_Int32>(der.size()), der.data());
    }
    static UaByteString bytes(std::initializer_list<Der> chain)
    {
        Der all;
        for (const Der& one : chain)
            all.insert(all.end(), one.begin(), one.end());
        return bytes(all);
    }
    static UaPkiCertificate certificate(const Der& der) { return UaPkiCertificate::fromDER(bytes(der)); }
    void put(const char* folder, const std::string& name, const Der& der) const
    {
        TemporaryFolder::write(store.file(folder) + '/' + name, std::string(der.begin(), der.end()));
    }
    void trust(const Der& der) const
    {
        put("trusted", qlumThumbprint(certificate(der)).toStdString() + ".der", der);
    }

    [[nodiscard]] std::unique_ptr<QlumCertificateChainModel> judge(const UaByteString& sent)
    {
        auto model = std::make_unique<QlumCertificateChainModel>("opc.tcp://plc.example:4840", "urn:plc",
                                                                 sent, &security);
        model->update();
        return model;
    }
    /// "name (trust status)" from the root down.
    static QStringList chainOf(const QlumCertificateChainModel& model)
    {
        QStringList result;
        for (QModelIndex index = model.index(0, 0); index.isValid(); index = model.index(0, 0, index))
            result.append(index.data().toString() + " (" +
                          index.sibling(0, QlumCertificateChainModel::TrustStatusColumn).data().toString() +
                          ")");
        return result;
    }
    /// "Group/Line [1]: finding", the number being the severity.
    static QStringList findingsOf(const QlumCertificateChainNode& node)
    {
        QStringList result;
        for (int g = 0; g < node.detailsCount(); ++g) {
            const QlumCertificateDetailsNode& group = *node.details(g);
            for (int i = 0; i < group.childCount(); ++i)
                if (const QlumCertificateDetailsNode& line = *group.child(i); !line.finding().isEmpty())
                    result.append(QStringLiteral("%1/%2 [%3]: %4")
                                      .arg(group.name(), line.name(),
                                           QString::number(static_cast<int>(line.severity())),
                                           line.finding()));
        }
        return result;
    }
    static QString valueOf(const QlumCertificateChainNode& node, const QString& group, const QString& name)
    {
        for (int g = 0; g < node.detailsCount(); ++g)
            for (int i = 0; node.details(g)->name() == group && i < node.details(g)->childCount(); ++i)
                if (node.details(g)->child(i)->name() == name)
                    return node.details(g)->child(i)->value();
        return QStringLiteral("no such line");
    }

    StubApplication application;
    TemporaryFolder store;
    UaClientSdk::SessionSecurityInfo security;
};
