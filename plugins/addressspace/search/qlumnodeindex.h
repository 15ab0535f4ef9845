#pragma once
#include <opcua/opcua_types.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>

#include <QString>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

/// What a browse of a server's hierarchy has found, each node once, in little memory. One thread adds while
/// others look. A node's number never changes; those above it have lower ones, but for shared branches.
class QlumNodeIndex
{
public:
    /// Of a node, counted from 0, which is where the browse began.
    using Number = std::uint32_t;
    /// Stands for no node.
    static constexpr Number none = 0xFFFFFFFFu;

    /// A node as it lies in the index; the texts are UTF-8 as the server sent it, cut where they are long.
    struct Node
    {
        const UaNodeId& id;
        std::string_view name;       ///< display name
        std::string_view browseName; ///< without its namespace
        OpcUa_UInt16 browseNamespace;
        OpcUa_UInt32 nodeClass;
        Number type;   ///< for typeId() and typeName(); none for no type definition
        Number parent; ///< below which it was found first
    };
    /// The same for whoever keeps it.
    struct Copy
    {
        UaNodeId id;
        QString name;
        UaQualifiedName browseName;
        OpcUa_UInt32 nodeClass = 0;
        UaNodeId typeDefinition; ///< null for none
        QString typeName;        ///< empty while it is not known
        Number parent = none;
    };

    /// With one node, below which all others will be.
    QlumNodeIndex(const UaNodeId& root, const QString& name, OpcUa_UInt32 nodeClass);

    /// Takes what a page of references says of the node's children; the numbers of those that are new are
    /// added to fresh. Nodes of other servers are left out, and counted.
    void add(Number parent, OpcUa_Int32 count, OpcUa_ReferenceDescription* references,
             const UaStringArray& namespaces, std::vector<Number>& fresh);
    /// Nobody has to browse what is below it, for properties have nothing there.
    [[nodiscard]] bool isProperty(Number number) const;

    /// A text of a Node as the user sees it.
    [[nodiscard]] static QString textOf(std::string_view text);

    /// How many nodes there are; numbers below it are good.
    [[nodiscard]] Number size() const;
    /// References that led to nodes of other servers.
    [[nodiscard]] std::size_t foreignReferences() const;
    /// Must be below size().
    [[nodiscard]] Copy copy(Number number) const;
    /// Only the id.
    [[nodiscard]] UaNodeId id(Number number) const;
    /// The number of a node; none when it is not there.
    [[nodiscard]] Number find(const UaNodeId& id) const;
    /// Names from the root's down to the node's, a slash before each but the first.
    [[nodiscard]] QString path(Number number) const;
    /// Browse names with their namespaces below the root, "/2:Line/2:Motor"; empty for the root.
    [[nodiscard]] QString browsePath(Number number) const;

    /// How many type definitions nodes have.
    [[nodiscard]] Number typeCount() const;
    /// Must be below typeCount().
    [[nodiscard]] UaNodeId typeId(Number type) const;
    /// Empty while it is not known.
    [[nodiscard]] QString typeName(Number type) const;
    /// As it was found or read.
    void setTypeName(Number type, const QString& name);

    /// Calls the function with the number and the Node of each in [first, last), under the lock: it must not
    /// call the index.
    template <typename Function>
    void visit(Number first, Number last, Function&& function) const
    {
        const std::lock_guard lock(m_mutex);
        for (Number number = first; number < last && number < m_entries.size(); ++number)
            function(number, nodeAt(number));
    }
    /// For each number whether the node is the root of the branch or below it, by whatever way.
    [[nodiscard]] std::vector<bool> branch(Number root) const;
    /// What the index takes, in bytes; texts of ids that are no numbers are not in it.
    [[nodiscard]] std::size_t memory() const;

private:
    struct Text
    {
        std::uint32_t place = 0; ///< block and where it begins there
        std::uint16_t length = 0;
    };
    struct Entry
    {
        UaNodeId id;
        Number parent = none;
        Number type = none;
        Text name;
        Text browseName;
        OpcUa_UInt16 browseNamespace = 0;
        OpcUa_UInt16 nodeClass = 0;
    };

    /// Of callers that hold the lock, as those that follow.
    [[nodiscard]] Node nodeAt(Number number) const;
    [[nodiscard]] std::string_view textAt(const Text& text) const;
    [[nodiscard]] Text keep(std::string_view text);
    [[nodiscard]] std::size_t slotOf(const UaNodeId& id) const;
    void grow();
    Number insert(Entry entry, std::size_t slot);
    [[nodiscard]] Number typeNumber(const UaNodeId& id);

    mutable std::mutex m_mutex;
    std::deque<Entry> m_entries;
    std::vector<Number> m_slots; ///< numbers by the hash of their ids; a power of two, at most half full
    std::vector<std::unique_ptr<char[]>> m_blocks; ///< texts
    std::size_t m_used = 0;                        ///< of the last block
    std::vector<UaNodeId> m_types;
    std::unordered_map<UaNodeId, Number> m_typeNumbers;
    std::vector<QString> m_typeNames;
    Number m_lastType = none;                        ///< neighbours often are of one type
    std::vector<std::pair<Number, Number>> m_shared; ///< further references to nodes that were there
    std::size_t m_foreign = 0;
};
