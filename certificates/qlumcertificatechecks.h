#pragma once
#include <certificates/qlumcertificatechainnode.h>
#include <certificates/qlumcertificatedetailsnode.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkicertificateinfo.h>
#include <uabase/uapkicpp/uapkiidentity.h>

#include <QCoreApplication>
#include <QString>

/// Fills a certificate's lines and says what is wrong with each. What a chain, a trust list or a revocation
/// list says is not looked at.
class QlumCertificateChecks
{
    Q_DECLARE_TR_FUNCTIONS(QlumCertificateChecks)
public:
    /// What the server is known by.
    QlumCertificateChecks(const QString& applicationUri, const QString& serverUrl);

    /// checkExtensions also looks at what a server's own certificate must have on a secure channel.
    void verifyNode(QlumCertificateChainNode& node, bool checkExtensions) const;

private:
    void addIdentity(QlumCertificateChainNode& node, const QString& group,
                     const UaPkiIdentity& identity) const;
    void addValidity(QlumCertificateChainNode& node) const;
    void addInfo(QlumCertificateChainNode& node) const;
    void addSignature(QlumCertificateDetailsNode& group, const UaPkiCertificate& certificate) const;
    void addKey(QlumCertificateDetailsNode& group, const UaPkiCertificate& certificate) const;
    void addAlternativeNames(QlumCertificateChainNode& node) const;
    void addHosts(QlumCertificateDetailsNode& group, const UaPkiCertificateInfo& info) const;
    void addExtensions(QlumCertificateChainNode& node) const;
    void addKeyIdentifiers(QlumCertificateDetailsNode& group, const UaPkiCertificate& certificate) const;
    void addUsages(QlumCertificateDetailsNode& group, const UaPkiCertificate& certificate) const;

    QString m_applicationUri;
    QString m_host;
};
