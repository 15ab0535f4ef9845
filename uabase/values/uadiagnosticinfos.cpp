#include <uabase/values/uadiagnosticinfos.h>

#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace {

constexpr int maxDepth = 100;

// The four members that are indexes into the string table.
std::array<OpcUa_Int32*, 4> indexesOf(OpcUa_DiagnosticInfo& info) noexcept
{
    return {&info.SymbolicId, &info.NamespaceUri, &info.Locale, &info.LocalizedText};
}

void moveIndexes(OpcUa_DiagnosticInfo* info, OpcUa_Int32 offset, OpcUa_Int32 ownCount) noexcept
{
    for (int depth = 0; info && depth < maxDepth; ++depth, info = info->InnerDiagnosticInfo)
        for (OpcUa_Int32* index : indexesOf(*info))
            *index = *index >= 0 && *index < ownCount ? *index + offset : -1;
}

void addPart(std::string& text, std::string_view part)
{
    if (part.empty())
        return;
    if (!text.empty())
        text += ", ";
    text += part;
}

} // namespace

void UaDiagnosticInfos::clear() noexcept
{
    m_infos.clear();
    m_strings.clear();
}

const OpcUa_String* UaDiagnosticInfos::stringAt(OpcUa_Int32 index) const noexcept
{
    if (index < 0 || static_cast<OpcUa_UInt32>(index) >= m_strings.length())
        return nullptr;
    return &m_strings[static_cast<OpcUa_UInt32>(index)];
}

UaString UaDiagnosticInfos::symbolicId(OpcUa_UInt32 index) const noexcept
{
    return index < length() ? UaString(stringAt(m_infos[index].SymbolicId)) : UaString();
}

UaString UaDiagnosticInfos::namespaceUri(OpcUa_UInt32 index) const noexcept
{
    return index < length() ? UaString(stringAt(m_infos[index].NamespaceUri)) : UaString();
}

UaString UaDiagnosticInfos::localizedText(OpcUa_UInt32 index) const noexcept
{
    return index < length() ? UaString(stringAt(m_infos[index].LocalizedText)) : UaString();
}

UaString UaDiagnosticInfos::toString(OpcUa_UInt32 index) const
{
    std::string text;
    const OpcUa_DiagnosticInfo* info = index < length() ? &m_infos[index] : nullptr;
    for (int depth = 0; info && depth < maxDepth; ++depth, info = info->InnerDiagnosticInfo) {
        addPart(text, UaString(stringAt(info->NamespaceUri)).view());
        addPart(text, UaString(stringAt(info->SymbolicId)).view());
        addPart(text, UaString(stringAt(info->LocalizedText)).view());
        addPart(text, UaString(info->AdditionalInfo).view());
        if (info->InnerStatusCode != OpcUa_Good)
            addPart(text, UaStatusCode(info->InnerStatusCode).toString().view());
    }
    return UaString(text);
}

void UaDiagnosticInfos::attach(OpcUa_Int32 length, OpcUa_DiagnosticInfo* infos, OpcUa_Int32 stringCount,
                               OpcUa_String* strings) noexcept
{
    m_infos.attach(length, infos);
    m_strings.attach(stringCount, strings);
}

bool UaDiagnosticInfos::append(UaDiagnosticInfos&& other) noexcept
{
    const OpcUa_UInt32 stringsBefore = m_strings.length();
    const OpcUa_UInt32 infosBefore = m_infos.length();
    const auto theirStrings = static_cast<OpcUa_Int32>(other.m_strings.length());
    if (!m_strings.appendMoved(std::move(other.m_strings)))
        return false;
    if (!m_infos.appendMoved(std::move(other.m_infos))) {
        // strings too many do no harm
        static_cast<void>(m_strings.resize(stringsBefore));
        return false;
    }
    for (OpcUa_UInt32 i = infosBefore; i < m_infos.length(); ++i)
        moveIndexes(&m_infos[i], static_cast<OpcUa_Int32>(stringsBefore), theirStrings);
    return true;
}
