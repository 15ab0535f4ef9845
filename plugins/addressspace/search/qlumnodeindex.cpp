#include <plugins/addressspace/search/qlumnodeindex.h>

#include <app/api/qlumlocalid.h>
#include <app/api/qlumnodeaddress.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_identifiers.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uastring.h>

#include <QStringList>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {
constexpr std::size_t blockSize = 0x10000;
constexpr std::size_t maximumText = 1024;      // bytes of a name
constexpr std::size_t maximumShared = 4000000; // a server may repeat itself without end
constexpr std::size_t maximumDepth = 1000;     // of a path
constexpr QlumNodeIndex::Number firstSlots = 1024;

std::string_view viewOf(const OpcUa_String& text)
{
    if (!text.Data || text.Length <= 0)
        return {};
    std::string_view view(text.Data, static_cast<std::size_t>(text.Length));
    if (view.size() <= maximumText)
        return view;
    std::size_t end = maximumText; // before the first byte of a letter
    while (end > 0 && (static_cast<unsigned char>(view[end]) & 0xC0U) == 0x80U)
        --end;
    return view.substr(0, end);
}

// Null for a node that is not of this server.
UaNodeId takeId(OpcUa_ExpandedNodeId& found, const UaStringArray& namespaces)
{
    if (found.ServerIndex != 0 || found.NamespaceUri.Length > 0)
        return qlumLocalId(UaExpandedNodeId(found), namespaces);
    UaNodeId id;
    id.attach(&found.NodeId);
    return id;
}
} // namespace

QString QlumNodeIndex::textOf(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<int>(text.size()));
}

QlumNodeIndex::QlumNodeIndex(const UaNodeId& root, const QString& name, OpcUa_UInt32 nodeClass)
    : m_slots(firstSlots, none)
{
    Entry entry;
    entry.id = root;
    entry.name = entry.browseName = keep(name.toUtf8().left(maximumText).toStdString());
    entry.nodeClass = static_cast<OpcUa_UInt16>(nodeClass);
    insert(std::move(entry), slotOf(root));
}

// ---- adding

void QlumNodeIndex::add(Number parent, OpcUa_Int32 count, OpcUa_ReferenceDescription* references,
                        const UaStringArray& namespaces, std::vector<Number>& fresh)
{
    const std::lock_guard lock(m_mutex);
    for (OpcUa_Int32 i = 0; i < count; ++i) {
        OpcUa_ReferenceDescription& reference = references[i];
        UaNodeId id = takeId(reference.NodeId, namespaces);
        if (id.isNull()) {
            ++m_foreign;
            continue;
        }
        if (2 * m_entries.size() >= m_slots.size())
            grow();
        const std::size_t slot = slotOf(id);
        if (m_slots[slot] != none) {
            const Number known = m_slots[slot];
            if (m_entries[known].parent != parent && m_shared.size() < maximumShared)
                m_shared.emplace_back(parent, known);
            continue;
        }
        Entry entry;
        entry.id = std::move(id);
        entry.parent = parent;
        entry.type = typeNumber(UaNodeId(reference.TypeDefinition.NodeId));
        const std::string_view name = viewOf(reference.DisplayName.Text);
        const std::string_view browseName = viewOf(reference.BrowseName.Name);
        entry.browseName = keep(browseName);
        entry.name = name == browseName ? entry.browseName : keep(name);
        entry.browseNamespace = reference.BrowseName.NamespaceIndex;
        entry.nodeClass = static_cast<OpcUa_UInt16>(reference.NodeClass);
        fresh.push_back(insert(std::move(entry), slot));
    }
}

QlumNodeIndex::Number QlumNodeIndex::insert(Entry entry, std::size_t slot)
{
    const auto number = static_cast<Number>(m_entries.size());
    m_entries.push_back(std::move(entry));
    m_slots[slot] = number;
    return number;
}

// Where the id is, or where it belongs.
std::size_t QlumNodeIndex::slotOf(const UaNodeId& id) const
{
    const std::size_t mask = m_slots.size() - 1;
    std::size_t slot = (id.hash() * 0x9E3779B97F4A7C15U >> 20U) & mask;
    while (m_slots[slot] != none && m_entries[m_slots[slot]].id != id)
        slot = (slot + 1) & mask;
    return slot;
}

void QlumNodeIndex::grow()
{
    m_slots.assign(2 * m_slots.size(), none);
    for (Number number = 0; number < m_entries.size(); ++number)
        m_slots[slotOf(m_entries[number].id)] = number;
}

QlumNodeIndex::Text QlumNodeIndex::keep(std::string_view text)
{
    if (text.empty())
        return {};
    if (m_blocks.empty() || m_used + text.size() > blockSize) {
        m_blocks.push_back(std::make_unique<char[]>(blockSize));
        m_used = 0;
    }
    std::memcpy(m_blocks.back().get() + m_used, text.data(), text.size());
    const Text kept{static_cast<std::uint32_t>((m_blocks.size() - 1) * blockSize + m_used),
                    static_cast<std::uint16_t>(text.size())};
    m_used += text.size();
    return kept;
}

// A server has a few hundred of them, and most in groups.
QlumNodeIndex::Number QlumNodeIndex::typeNumber(const UaNodeId& id)
{
    if (id.isNull())
        return none;
    if (m_lastType != none && m_types[m_lastType] == id)
        return m_lastType;
    const auto found = m_typeNumbers.try_emplace(id, static_cast<Number>(m_types.size()));
    if (found.second) {
        m_types.push_back(id);
        m_typeNames.emplace_back();
    }
    return m_lastType = found.first->second;
}

// ---- looking

QlumNodeIndex::Node QlumNodeIndex::nodeAt(Number number) const
{
    const Entry& entry = m_entries[number];
    return {entry.id,   textAt(entry.name), textAt(entry.browseName), entry.browseNamespace, entry.nodeClass,
            entry.type, entry.parent};
}

std::string_view QlumNodeIndex::textAt(const Text& text) const
{
    if (text.length == 0)
        return {};
    return {m_blocks[text.place / blockSize].get() + text.place % blockSize, text.length};
}

bool QlumNodeIndex::isProperty(Number number) const
{
    const std::lock_guard lock(m_mutex);
    const Number type = m_entries[number].type;
    return type != none && m_types[type].isNumeric(OpcUaId_PropertyType);
}

QlumNodeIndex::Number QlumNodeIndex::size() const
{
    const std::lock_guard lock(m_mutex);
    return static_cast<Number>(m_entries.size());
}

std::size_t QlumNodeIndex::foreignReferences() const
{
    const std::lock_guard lock(m_mutex);
    return m_foreign;
}

QlumNodeIndex::Copy QlumNodeIndex::copy(Number number) const
{
    const std::lock_guard lock(m_mutex);
    const Node node = nodeAt(number);
    Copy copy{
        node.id,        textOf(node.name), UaQualifiedName(UaString(node.browseName), node.browseNamespace),
        node.nodeClass, UaNodeId(),        QString(),
        node.parent};
    if (node.type != none) {
        copy.typeDefinition = m_types[node.type];
        copy.typeName = m_typeNames[node.type];
    }
    return copy;
}

UaNodeId QlumNodeIndex::id(Number number) const
{
    const std::lock_guard lock(m_mutex);
    return m_entries[number].id;
}

QlumNodeIndex::Number QlumNodeIndex::find(const UaNodeId& id) const
{
    const std::lock_guard lock(m_mutex);
    return m_slots[slotOf(id)];
}

QString QlumNodeIndex::path(Number number) const
{
    const std::lock_guard lock(m_mutex);
    QStringList names;
    for (; number != none && static_cast<std::size_t>(names.size()) < maximumDepth;
         number = m_entries[number].parent)
        names.prepend(textOf(textAt(m_entries[number].name)));
    return names.join(QLatin1Char('/'));
}

QString QlumNodeIndex::browsePath(Number number) const
{
    const std::lock_guard lock(m_mutex);
    QString path;
    for (std::size_t depth = 0; number > 0 && number != none && depth < maximumDepth; ++depth) {
        const Node node = nodeAt(number);
        path.prepend(QLatin1Char('/') +
                     qlumPathStep(node.browseNamespace, toQString(UaString(node.browseName))));
        number = node.parent;
    }
    return path;
}

QlumNodeIndex::Number QlumNodeIndex::typeCount() const
{
    const std::lock_guard lock(m_mutex);
    return static_cast<Number>(m_types.size());
}

UaNodeId QlumNodeIndex::typeId(Number type) const
{
    const std::lock_guard lock(m_mutex);
    return m_types.at(type);
}

QString QlumNodeIndex::typeName(Number type) const
{
    const std::lock_guard lock(m_mutex);
    return type == none ? QString() : m_typeNames.at(type);
}

void QlumNodeIndex::setTypeName(Number type, const QString& name)
{
    const std::lock_guard lock(m_mutex);
    m_typeNames.at(type) = name;
}

std::vector<bool> QlumNodeIndex::branch(Number root) const
{
    const std::lock_guard lock(m_mutex);
    std::vector<bool> within(m_entries.size(), false);
    if (root >= m_entries.size())
        return within;
    within[root] = true;
    // parents come before their children, so that one pass does it but for what shared branches bring in
    for (bool hasMore = true; hasMore;) {
        for (Number number = root == 0 ? 1 : 0; number < m_entries.size(); ++number) {
            const Number parent = m_entries[number].parent;
            if (!within[number] && parent != none && within[parent])
                within[number] = true;
        }
        hasMore = false;
        for (const auto& [parent, child] : m_shared)
            if (within[parent] && !within[child])
                within[child] = hasMore = true;
    }
    return within;
}

std::size_t QlumNodeIndex::memory() const
{
    const std::lock_guard lock(m_mutex);
    return m_entries.size() * sizeof(Entry) + m_slots.capacity() * sizeof(Number) +
           m_blocks.size() * blockSize + m_shared.capacity() * sizeof(m_shared.front()) +
           m_types.size() * (sizeof(UaNodeId) + sizeof(QString));
}
