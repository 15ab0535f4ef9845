// XML documents, read only.
#pragma once

#include <uabase/values/uastring.h>

#include <memory>
#include <span>
#include <string_view>
#include <vector>

class UaXmlDocumentPrivate;

/// An element of a document. A null node answers null texts, no children and a null sibling, so that a path
/// may be walked without a test at each step. Keeps its document alive. Copies are cheap; one document and
/// its nodes belong to one thread at a time.
class UaXmlNode
{
public:
    UaXmlNode() = default;

    bool isNull() const noexcept { return m_node == nullptr; }
    /// Without the prefix.
    UaString name() const;
    UaString namespaceUri() const;
    /// The namespace that a prefix stands for here; empty: the default one. Null when it is not declared.
    UaString namespaceOfPrefix(std::string_view prefix) const;
    bool is(std::string_view name, std::string_view namespaceUri) const;
    /// Null when the element has none of that name; attributes of any namespace count by their local name.
    UaString attribute(std::string_view name) const;
    UaString attribute(std::string_view name, std::string_view namespaceUri) const;
    bool hasAttribute(std::string_view name) const { return !attribute(name).isNull(); }
    /// All text inside, that of children too; empty, not null, when there is none.
    UaString text() const;

    /// Elements only; texts, comments and instructions between them are passed over.
    UaXmlNode parent() const;
    UaXmlNode firstChild() const;
    UaXmlNode nextSibling() const;
    /// The first of that local name.
    UaXmlNode child(std::string_view name) const;
    std::vector<UaXmlNode> children() const;
    std::vector<UaXmlNode> children(std::string_view name) const;
    /// Line in the source, for messages; 0 for a null node.
    unsigned int line() const;
    /// The element with its content as XML text.
    UaString toXml() const;

private:
    friend class UaXmlDocument;
    UaXmlNode(std::shared_ptr<UaXmlDocumentPrivate> document, const void* node);
    UaXmlNode sibling(const void* first) const;

    std::shared_ptr<UaXmlDocumentPrivate> m_document;
    const void* m_node = nullptr;
};

/// A document that was read from bytes or a file. Nothing is loaded from elsewhere: no network, no external
/// entities; a document that declares entities of its own is refused, and so is one that is too large, too
/// deep or has too many elements.
class UaXmlDocument
{
public:
    struct Limits
    {
        std::size_t maximumBytes = 16u * 1024 * 1024;
        unsigned int maximumDepth = 100;
        unsigned int maximumElements = 1000000;
    };

    /// Once before the first document and once after the last, on the main thread; counted.
    static void initParser();
    static void cleanupParser();
    /// Of the parser that is used, as "2.9.14".
    [[nodiscard]] static UaString parserVersion();

    UaXmlDocument() = default; ///< null
    [[nodiscard]] static UaXmlDocument fromBytes(std::span<const unsigned char> bytes);
    [[nodiscard]] static UaXmlDocument fromBytes(std::span<const unsigned char> bytes, const Limits& limits);
    [[nodiscard]] static UaXmlDocument fromFile(const UaString& path);
    [[nodiscard]] static UaXmlDocument fromFile(const UaString& path, const Limits& limits);

    /// Null when reading failed; error() then says why, with the line.
    bool isNull() const noexcept { return m_document == nullptr; }
    const UaString& error() const noexcept { return m_error; }
    UaXmlNode root() const;

private:
    std::shared_ptr<UaXmlDocumentPrivate> m_document;
    UaString m_error;
};
