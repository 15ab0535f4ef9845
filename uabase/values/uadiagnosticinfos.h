// The diagnostic infos of a response together with the strings that their indexes point to.
#pragma once

#include <uabase/values/uaarray.h>
#include <uabase/values/uadiagnosticinfo.h>
#include <uabase/values/uastring.h>

/// Indexes are those of the operations of the request. One object belongs to one thread.
class UaDiagnosticInfos
{
public:
    OpcUa_UInt32 length() const noexcept { return m_infos.length(); }
    bool isEmpty() const noexcept { return m_infos.isEmpty(); }
    const OpcUa_DiagnosticInfo& operator[](OpcUa_UInt32 index) const noexcept { return m_infos[index]; }
    const UaArray<OpcUa_DiagnosticInfo>& infos() const noexcept { return m_infos; }
    void clear() noexcept;

    /// The strings of one info; null when absent or when the index points nowhere.
    UaString symbolicId(OpcUa_UInt32 index) const noexcept;
    UaString namespaceUri(OpcUa_UInt32 index) const noexcept;
    UaString localizedText(OpcUa_UInt32 index) const noexcept;
    /// All that one info says, its inner infos included, in one line; empty when it says nothing.
    [[nodiscard]] UaString toString(OpcUa_UInt32 index) const;

    /// Takes ownership of the infos and of the string table of the response header.
    void attach(OpcUa_Int32 length, OpcUa_DiagnosticInfo* infos, OpcUa_Int32 stringCount = 0,
                OpcUa_String* strings = nullptr) noexcept;
    /// Adds the infos of another response; their indexes are moved behind our own strings. When out of memory
    /// false, and nothing changed.
    [[nodiscard]] bool append(UaDiagnosticInfos&& other) noexcept;
    /// Adds null infos, for a block that came without. False when out of memory, the infos are then as
    /// before.
    [[nodiscard]] bool resize(OpcUa_UInt32 length) noexcept { return m_infos.resize(length); }

private:
    const OpcUa_String* stringAt(OpcUa_Int32 index) const noexcept;

    UaArray<OpcUa_DiagnosticInfo> m_infos;
    UaArray<OpcUa_String> m_strings;
};
