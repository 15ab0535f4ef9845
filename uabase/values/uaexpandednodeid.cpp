#include <uabase/values/uaexpandednodeid.h>

#include <uabase/values/uastring.h>
#include <uabase/values/uatext_p.h>

#include <string>
#include <string_view>

namespace {

std::string escapedUri(std::string_view uri)
{
    std::string text;
    text.reserve(uri.size());
    for (const char c : uri)
        if (c == ';')
            text += "%3B";
        else if (c == '%')
            text += "%25";
        else
            text += c;
    return text;
}

// Only the two escapes that escapedUri writes; another '%' stays.
std::string unescapedUri(std::string_view text)
{
    std::string uri;
    uri.reserve(text.size());
    while (!text.empty()) {
        if (uabase::takePrefix(text, "%3B") || uabase::takePrefix(text, "%3b")) {
            uri += ';';
        } else if (uabase::takePrefix(text, "%25")) {
            uri += '%';
        } else {
            uri += text.front();
            text.remove_prefix(1);
        }
    }
    return uri;
}

// Cuts "prefix<value>;" off the front of text. ok is false when the prefix is there but no semicolon.
bool takeSection(std::string_view& text, std::string_view prefix, std::string_view& value, bool& ok) noexcept
{
    if (!uabase::takePrefix(text, prefix))
        return false;
    const auto end = text.find(';');
    ok = end != std::string_view::npos;
    if (!ok)
        return false;
    value = text.substr(0, end);
    text.remove_prefix(end + 1);
    return true;
}

} // namespace

UaExpandedNodeId UaExpandedNodeId::fromString(std::string_view text, bool* ok)
{
    bool valid = true;
    UaExpandedNodeId result;
    std::string_view section;
    if (takeSection(text, "svr=", section, valid)) {
        const auto number = uabase::parseNumber<OpcUa_UInt32>(section);
        valid = number.has_value();
        result.m_serverIndex = number.value_or(0);
    }
    if (valid && takeSection(text, "nsu=", section, valid)) {
        result.m_namespaceUri = UaString(unescapedUri(section));
        valid = !text.starts_with("ns=");
    }
    if (valid)
        result.m_nodeId = UaNodeId::fromString(text, &valid);
    if (ok)
        *ok = valid;
    return valid ? result : UaExpandedNodeId();
}

UaString UaExpandedNodeId::toString() const
{
    std::string text;
    if (m_serverIndex != 0)
        text += "svr=" + std::to_string(m_serverIndex) + ';';
    if (m_namespaceUri.isEmpty())
        return UaString(text.append(m_nodeId.toXmlString().view()));
    text += "nsu=" + escapedUri(m_namespaceUri.view()) + ';';
    UaNodeId bare = m_nodeId; // the URI stands in place of the index
    bare.setNamespaceIndex(0);
    return UaString(text.append(bare.toXmlString().view()));
}

UaString UaExpandedNodeId::toFullString() const
{
    if (!m_namespaceUri.isEmpty())
        return toString();
    std::string text;
    if (m_serverIndex != 0)
        text += "svr=" + std::to_string(m_serverIndex) + ';';
    return UaString(text.append(m_nodeId.toFullString().view()));
}

OpcUa_StatusCode UaExpandedNodeId::copyTo(OpcUa_ExpandedNodeId* destination) const noexcept
{
    OpcUa_ExpandedNodeId_Initialize(destination);
    destination->ServerIndex = m_serverIndex;
    const OpcUa_StatusCode status = m_nodeId.copyTo(&destination->NodeId);
    return OpcUa_IsGood(status) ? m_namespaceUri.copyTo(&destination->NamespaceUri) : status;
}
