#include <uabase/values/uaqualifiedname.h>

#include <uabase/values/uatext_p.h>

#include <string>
#include <string_view>

UaQualifiedName UaQualifiedName::fromString(std::string_view text)
{
    const auto colon = text.find(':');
    if (colon != std::string_view::npos)
        if (const auto index = uabase::parseNumber<OpcUa_UInt16>(text.substr(0, colon)); index)
            return UaQualifiedName(UaString(text.substr(colon + 1)), *index);
    return UaQualifiedName(UaString(text), 0);
}

UaString UaQualifiedName::toString() const
{
    if (m_namespaceIndex == 0 && fromString(m_name.view()).name().size() == m_name.size())
        return m_name;
    return UaString(std::to_string(m_namespaceIndex) + ':' + m_name.toStdString());
}

OpcUa_StatusCode UaQualifiedName::copyTo(OpcUa_QualifiedName* destination) const noexcept
{
    OpcUa_QualifiedName_Initialize(destination);
    destination->NamespaceIndex = m_namespaceIndex;
    return m_name.copyTo(&destination->Name);
}
