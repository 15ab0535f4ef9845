#pragma once
#include <certificates/qlumcertificatedetailsnode.h>
#include <certificates/qlumcertificateerror.h>
#include <uabase/uapkicpp/uapkicertificate.h>

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

/// One certificate of a chain with all that is to be said about it.
class QlumCertificateChainNode
{
    Q_DECLARE_TR_FUNCTIONS(QlumCertificateChainNode)
public:
    enum TrustStatus { Trusted = 0, KnownIssuer = 1, Untrusted = 2 };

    QlumCertificateChainNode(const UaPkiCertificate& certificate, TrustStatus trustStatus);
    QlumCertificateChainNode(const QlumCertificateChainNode&) = delete;
    QlumCertificateChainNode& operator=(const QlumCertificateChainNode&) = delete;

    [[nodiscard]] const UaPkiCertificate& certificate() const { return m_certificate; }
    /// By which of the folders the certificate is known.
    [[nodiscard]] TrustStatus trustStatus() const { return m_trustStatus; }
    [[nodiscard]] QString trustStatusText() const;
    /// The common name on one line; a certificate without one shows its organisation or its thumbprint.
    [[nodiscard]] QString displayName() const;
    [[nodiscard]] QlumCertificateError severity() const { return m_severity; }
    /// Never lowers it.
    void raiseSeverity(QlumCertificateError severity);

    /// The certificate that has issued this one; null at the top.
    [[nodiscard]] QlumCertificateChainNode* parent() const { return m_parent; }
    /// The certificate that this one has issued; null for the server's own.
    [[nodiscard]] QlumCertificateChainNode* child() const { return m_child.get(); }
    void setChild(std::unique_ptr<QlumCertificateChainNode> child);

    /// At the end.
    QlumCertificateDetailsNode& addGroup(const QString& name);
    /// The group of the findings that belong to no other line: made when it is first asked for, always first.
    QlumCertificateDetailsNode& otherFindings();
    [[nodiscard]] int detailsCount() const { return static_cast<int>(m_details.size()); }
    /// index must be below detailsCount().
    [[nodiscard]] QlumCertificateDetailsNode* details(int index) const;
    /// 0 for a node that is not at the top.
    [[nodiscard]] int indexOf(const QlumCertificateDetailsNode* node) const;

    /// What a check has found against the certificate.
    struct Finding
    {
        QString text;
        QlumCertificateError severity;
        QlumFindingTopic topic;
    };
    /// All findings about this certificate, the worst first. What the validation says is not said once more
    /// in the words of the check of a line.
    [[nodiscard]] std::vector<Finding> findings() const;

private:
    const UaPkiCertificate m_certificate;
    const TrustStatus m_trustStatus;
    QlumCertificateError m_severity = QlumCertificateError::None;
    QlumCertificateChainNode* m_parent = nullptr;
    std::unique_ptr<QlumCertificateChainNode> m_child;
    QlumCertificateDetailsNode* m_otherFindings = nullptr;
    std::vector<std::unique_ptr<QlumCertificateDetailsNode>> m_details;
};
