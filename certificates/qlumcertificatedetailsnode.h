#pragma once
#include <certificates/qlumcertificateerror.h>

#include <QString>

#include <memory>
#include <vector>

class QlumCertificateChainNode;

/// What a finding is about, where a check of the lines and the validation of the chain come upon the same.
enum class QlumFindingTopic { Other, Time, Host };

/// One line about a certificate: a name and a value, or a group of such lines. Owned by its parent or, at the
/// top, by the chain node.
class QlumCertificateDetailsNode
{
public:
    explicit QlumCertificateDetailsNode(QlumCertificateChainNode& chainNode,
                                        QlumCertificateDetailsNode* parent, bool group, const QString& name,
                                        const QString& value = QString());
    QlumCertificateDetailsNode(const QlumCertificateDetailsNode&) = delete;
    QlumCertificateDetailsNode& operator=(const QlumCertificateDetailsNode&) = delete;

    [[nodiscard]] QlumCertificateChainNode& chainNode() const { return m_chainNode; }
    [[nodiscard]] QlumCertificateDetailsNode* parent() const { return m_parent; }
    [[nodiscard]] bool isGroup() const { return m_group; }
    [[nodiscard]] const QString& name() const { return m_name; }
    [[nodiscard]] const QString& value() const { return m_value; }
    /// What is wrong with it; empty when nothing is.
    [[nodiscard]] const QString& finding() const { return m_finding; }
    [[nodiscard]] QlumCertificateError severity() const { return m_severity; }
    [[nodiscard]] QlumFindingTopic topic() const { return m_topic; }

    /// Also raises the severity of the certificate. Of several texts each has a line.
    void setFinding(const QString& text, QlumCertificateError severity,
                    QlumFindingTopic topic = QlumFindingTopic::Other);
    QlumCertificateDetailsNode& add(const QString& name, const QString& value);

    [[nodiscard]] int childCount() const { return static_cast<int>(m_children.size()); }
    /// index must be below childCount().
    [[nodiscard]] QlumCertificateDetailsNode* child(int index) const;
    /// 0 for a null child.
    [[nodiscard]] int indexOf(const QlumCertificateDetailsNode* child) const;

private:
    QlumCertificateChainNode& m_chainNode;
    QlumCertificateDetailsNode* const m_parent;
    const bool m_group;
    const QString m_name;
    const QString m_value;
    QString m_finding;
    QlumCertificateError m_severity = QlumCertificateError::None;
    QlumFindingTopic m_topic = QlumFindingTopic::Other;
    std::vector<std::unique_ptr<QlumCertificateDetailsNode>> m_children;
};
