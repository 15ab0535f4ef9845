#include <certificates/qlumcertificatedetailsnode.h>

#include <certificates/qlumcertificatechainnode.h>

#include <algorithm>

QlumCertificateDetailsNode::QlumCertificateDetailsNode(QlumCertificateChainNode& chainNode,
                                                       QlumCertificateDetailsNode* parent, bool group,
                                                       const QString& name, const QString& value)
    : m_chainNode(chainNode), m_parent(parent), m_group(group), m_name(name), m_value(value)
{
}

void QlumCertificateDetailsNode::setFinding(const QString& text, QlumCertificateError severity,
                                            QlumFindingTopic topic)
{
    m_finding = m_finding.isEmpty() ? text : m_finding + QLatin1Char('\n') + text;
    m_severity = std::max(m_severity, severity);
    m_topic = topic;
    m_chainNode.raiseSeverity(severity);
}

QlumCertificateDetailsNode& QlumCertificateDetailsNode::add(const QString& name, const QString& value)
{
    m_children.push_back(std::make_unique<QlumCertificateDetailsNode>(m_chainNode, this, false, name, value));
    return *m_children.back();
}

QlumCertificateDetailsNode* QlumCertificateDetailsNode::child(int index) const
{
    return m_children.at(static_cast<std::size_t>(index)).get();
}

int QlumCertificateDetailsNode::indexOf(const QlumCertificateDetailsNode* child) const
{
    const auto at = std::find_if(m_children.begin(), m_children.end(),
                                 [child](const auto& node) { return node.get() == child; });
    return at == m_children.end() ? 0 : static_cast<int>(at - m_children.begin());
}
