#include <certificates/qlumcertificatechainnode.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumcertificateerror.h>
#include <certificates/qlumthumbprint.h>
#include <uabase/uapkicpp/uapkiidentity.h>
#include <uabase/values/uastring.h>

#include <QString>

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

QlumCertificateChainNode::QlumCertificateChainNode(const UaPkiCertificate& certificate,
                                                   TrustStatus trustStatus)
    : m_certificate(certificate), m_trustStatus(trustStatus)
{
}

QString QlumCertificateChainNode::trustStatusText() const
{
    switch (m_trustStatus) {
    case Trusted:
        return tr("Trusted");
    case KnownIssuer:
        return tr("Known Issuer");
    case Untrusted:
        break;
    }
    return tr("Untrusted");
}

QString QlumCertificateChainNode::displayName() const
{
    const UaPkiIdentity subject = m_certificate.subject();
    for (const UaString& name : {subject.commonName, subject.organization})
        if (!name.isEmpty())
            return qlumCutText(qlumSingleLine(toQString(name)));
    return qlumThumbprint(m_certificate);
}

void QlumCertificateChainNode::raiseSeverity(QlumCertificateError severity)
{
    m_severity = std::max(m_severity, severity);
}

void QlumCertificateChainNode::setChild(std::unique_ptr<QlumCertificateChainNode> child)
{
    m_child = std::move(child);
    if (m_child)
        m_child->m_parent = this;
}

QlumCertificateDetailsNode& QlumCertificateChainNode::addGroup(const QString& name)
{
    m_details.push_back(std::make_unique<QlumCertificateDetailsNode>(*this, nullptr, true, name));
    return *m_details.back();
}

QlumCertificateDetailsNode& QlumCertificateChainNode::otherFindings()
{
    if (!m_otherFindings) {
        m_otherFindings = &addGroup(tr("Errors"));
        std::rotate(m_details.begin(), m_details.end() - 1, m_details.end());
    }
    return *m_otherFindings;
}

QlumCertificateDetailsNode* QlumCertificateChainNode::details(int index) const
{
    return m_details.at(static_cast<std::size_t>(index)).get();
}

int QlumCertificateChainNode::indexOf(const QlumCertificateDetailsNode* node) const
{
    const auto at = std::find_if(m_details.begin(), m_details.end(),
                                 [node](const auto& one) { return one.get() == node; });
    return at == m_details.end() ? 0 : static_cast<int>(at - m_details.begin());
}

std::vector<QlumCertificateChainNode::Finding> QlumCertificateChainNode::findings() const
{
    std::vector<Finding> result;
    const auto known = [&result](const QlumCertificateDetailsNode& line) {
        return std::any_of(result.begin(), result.end(), [&line](const Finding& one) {
            return one.text == line.finding() ||
                   (one.topic == line.topic() && one.severity > line.severity() &&
                    line.topic() != QlumFindingTopic::Other);
        });
    };
    for (const auto& group : m_details) {
        for (int i = 0; i < group->childCount(); ++i) {
            const QlumCertificateDetailsNode& line = *group->child(i);
            if (!line.finding().isEmpty() && !known(line))
                result.push_back({line.finding(), line.severity(), line.topic()});
        }
    }
    std::stable_sort(result.begin(), result.end(), [](const Finding& left, const Finding& right) {
        return left.severity > right.severity;
    });
    return result;
}
