#include <uabase/system/uaxmldocument.h>

#include <uabase/system/uadir.h>

#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>

#include <cstdlib>
#include <limits>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

class UaXmlDocumentPrivate
{
public:
    explicit UaXmlDocumentPrivate(xmlDoc* document) : m_document(document) {}
    ~UaXmlDocumentPrivate() { xmlFreeDoc(m_document); }
    UaXmlDocumentPrivate(const UaXmlDocumentPrivate&) = delete;
    UaXmlDocumentPrivate& operator=(const UaXmlDocumentPrivate&) = delete;

    xmlNode* root() const { return xmlDocGetRootElement(m_document); }
    xmlDoc* document() const { return m_document; }

private:
    xmlDoc* m_document;
};

namespace {

std::mutex s_mutex;
unsigned int s_users = 0;

const xmlNode* toNode(const void* node)
{
    return static_cast<const xmlNode*>(node);
}

std::string_view view(const xmlChar* text)
{
    return text != nullptr ? std::string_view(reinterpret_cast<const char*>(text)) : std::string_view();
}

UaString takeText(xmlChar* text)
{
    const UaString result(view(text));
    xmlFree(text);
    return result;
}

const xmlNode* firstElement(const xmlNode* node)
{
    while (node != nullptr && node->type != XML_ELEMENT_NODE)
        node = node->next;
    return node;
}

// ---- reading

struct Reading
{
    const UaXmlDocument::Limits* limits;
    startElementNsSAX2Func startElement;
    unsigned int elements = 0;
    std::string error;
};

Reading& readingOf(void* parser)
{
    return *static_cast<Reading*>(static_cast<xmlParserCtxt*>(parser)->_private);
}

void refuse(void* parser, const char* reason)
{
    auto* context = static_cast<xmlParserCtxt*>(parser);
    Reading& reading = readingOf(parser);
    if (reading.error.empty()) {
        const int line = context->input != nullptr ? context->input->line : 0;
        reading.error = "line " + std::to_string(line) + ": " + reason;
    }
    xmlStopParser(context);
}

void startElement(void* parser, const xmlChar* name, const xmlChar* prefix, const xmlChar* uri, int nsCount,
                  const xmlChar** namespaces, int attributeCount, int defaulted, const xmlChar** attributes)
{
    Reading& reading = readingOf(parser);
    const int depth = static_cast<xmlParserCtxt*>(parser)->nodeNr;
    if (depth >= 0 && static_cast<unsigned int>(depth) >= reading.limits->maximumDepth) {
        refuse(parser, "elements are nested too deep");
    } else if (++reading.elements > reading.limits->maximumElements) {
        refuse(parser, "too many elements");
    } else {
        reading.startElement(parser, name, prefix, uri, nsCount, namespaces, attributeCount, defaulted,
                             attributes);
    }
}

// Entities are the way to bombs and to files of this computer; no document of ours needs them.
void declareEntity(void* parser, const xmlChar*, int, const xmlChar*, const xmlChar*, xmlChar*)
{
    refuse(parser, "entity declarations are not allowed");
}

void noteError(void* parser, xmlError* error)
{
    Reading& reading = readingOf(parser);
    if (reading.error.empty() && error != nullptr && error->level >= XML_ERR_ERROR) {
        std::string message = error->message != nullptr ? error->message : "not well-formed";
        while (!message.empty() && message.back() == '\n')
            message.pop_back();
        reading.error = "line " + std::to_string(error->line) + ": " + message;
    }
}

xmlDoc* parse(std::span<const unsigned char> bytes, Reading& reading)
{
    const std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> context(
        xmlCreateMemoryParserCtxt(reinterpret_cast<const char*>(bytes.data()),
                                  static_cast<int>(bytes.size())),
        &xmlFreeParserCtxt);
    if (context == nullptr)
        return nullptr;
    xmlCtxtUseOptions(context.get(),
                      XML_PARSE_NONET | XML_PARSE_NOBLANKS | XML_PARSE_NOCDATA | XML_PARSE_COMPACT);
    context->_private = &reading;
    reading.startElement = context->sax->startElementNs;
    context->sax->startElementNs = &startElement;
    context->sax->entityDecl = &declareEntity;
    context->sax->serror = &noteError;
    xmlParseDocument(context.get());
    xmlDoc* document = std::exchange(context->myDoc, nullptr);
    if (!context->wellFormed || !reading.error.empty()) {
        xmlFreeDoc(document);
        return nullptr;
    }
    return document;
}

} // namespace

void UaXmlDocument::initParser()
{
    const std::lock_guard lock(s_mutex);
    if (s_users++ == 0)
        xmlInitParser();
}

UaString UaXmlDocument::parserVersion()
{
    // 20914 is 2.9.14; letters may follow, which name a working copy
    constexpr int hundred = 100;
    const long number = std::strtol(xmlParserVersion, nullptr, 10);
    return UaString(std::to_string(number / (hundred * hundred)) + '.' +
                    std::to_string(number / hundred % hundred) + '.' + std::to_string(number % hundred));
}

void UaXmlDocument::cleanupParser()
{
    const std::lock_guard lock(s_mutex);
    if (s_users > 0 && --s_users == 0)
        xmlCleanupParser();
}

UaXmlDocument UaXmlDocument::fromBytes(std::span<const unsigned char> bytes)
{
    return fromBytes(bytes, Limits());
}

UaXmlDocument UaXmlDocument::fromBytes(std::span<const unsigned char> bytes, const Limits& limits)
{
    UaXmlDocument result;
    if (bytes.empty()) {
        result.m_error = "the document is empty";
        return result;
    }
    if (bytes.size() > limits.maximumBytes || bytes.size() > std::numeric_limits<int>::max()) {
        result.m_error = "the document is too large";
        return result;
    }
    Reading reading{&limits, nullptr, 0, {}};
    if (xmlDoc* document = parse(bytes, reading)) {
        result.m_document = std::make_shared<UaXmlDocumentPrivate>(document);
    } else {
        result.m_error =
            UaString(reading.error.empty() ? std::string_view("not well-formed") : reading.error);
    }
    return result;
}

UaXmlDocument UaXmlDocument::fromFile(const UaString& path)
{
    return fromFile(path, Limits());
}

UaXmlDocument UaXmlDocument::fromFile(const UaString& path, const Limits& limits)
{
    std::vector<unsigned char> bytes;
    if (const std::error_code error = uaReadFile(path, limits.maximumBytes, bytes)) {
        UaXmlDocument result;
        result.m_error = UaString(error.message());
        return result;
    }
    return fromBytes(bytes, limits);
}

UaXmlNode UaXmlDocument::root() const
{
    return m_document != nullptr ? UaXmlNode(m_document, m_document->root()) : UaXmlNode();
}

UaXmlNode::UaXmlNode(std::shared_ptr<UaXmlDocumentPrivate> document, const void* node)
    : m_document(std::move(document)), m_node(node)
{
}

UaXmlNode UaXmlNode::sibling(const void* first) const
{
    const xmlNode* element = firstElement(toNode(first));
    return element != nullptr ? UaXmlNode(m_document, element) : UaXmlNode();
}

UaString UaXmlNode::name() const
{
    return m_node != nullptr ? UaString(view(toNode(m_node)->name)) : UaString();
}

UaString UaXmlNode::namespaceUri() const
{
    return m_node != nullptr && toNode(m_node)->ns != nullptr ? UaString(view(toNode(m_node)->ns->href))
                                                              : UaString();
}

UaString UaXmlNode::namespaceOfPrefix(std::string_view prefix) const
{
    if (m_node == nullptr)
        return UaString();
    const std::string name(prefix);
    const xmlNs* found = xmlSearchNs(m_document->document(), const_cast<xmlNode*>(toNode(m_node)),
                                     name.empty() ? nullptr : reinterpret_cast<const xmlChar*>(name.c_str()));
    return found != nullptr ? UaString(view(found->href)) : UaString();
}

bool UaXmlNode::is(std::string_view name, std::string_view namespaceUri) const
{
    const xmlNode* node = toNode(m_node);
    return node != nullptr && view(node->name) == name &&
           (node->ns != nullptr ? view(node->ns->href) : std::string_view()) == namespaceUri;
}

UaString UaXmlNode::attribute(std::string_view name) const
{
    for (const xmlAttr* a = m_node != nullptr ? toNode(m_node)->properties : nullptr; a != nullptr;
         a = a->next)
        if (view(a->name) == name)
            return takeText(xmlNodeListGetString(m_document->document(), a->children, 1));
    return UaString();
}

UaString UaXmlNode::attribute(std::string_view name, std::string_view namespaceUri) const
{
    for (const xmlAttr* a = m_node != nullptr ? toNode(m_node)->properties : nullptr; a != nullptr;
         a = a->next)
        if (view(a->name) == name &&
            (a->ns != nullptr ? view(a->ns->href) : std::string_view()) == namespaceUri)
            return takeText(xmlNodeListGetString(m_document->document(), a->children, 1));
    return UaString();
}

UaString UaXmlNode::text() const
{
    return m_node != nullptr ? takeText(xmlNodeGetContent(toNode(m_node))) : UaString();
}

UaXmlNode UaXmlNode::parent() const
{
    const xmlNode* parent = m_node != nullptr ? toNode(m_node)->parent : nullptr;
    return parent != nullptr && parent->type == XML_ELEMENT_NODE ? UaXmlNode(m_document, parent)
                                                                 : UaXmlNode();
}

UaXmlNode UaXmlNode::firstChild() const
{
    return m_node != nullptr ? sibling(toNode(m_node)->children) : UaXmlNode();
}

UaXmlNode UaXmlNode::nextSibling() const
{
    return m_node != nullptr ? sibling(toNode(m_node)->next) : UaXmlNode();
}

UaXmlNode UaXmlNode::child(std::string_view name) const
{
    UaXmlNode node = firstChild();
    while (!node.isNull() && view(toNode(node.m_node)->name) != name)
        node = node.nextSibling();
    return node;
}

std::vector<UaXmlNode> UaXmlNode::children() const
{
    std::vector<UaXmlNode> nodes;
    for (UaXmlNode node = firstChild(); !node.isNull(); node = node.nextSibling())
        nodes.push_back(node);
    return nodes;
}

std::vector<UaXmlNode> UaXmlNode::children(std::string_view name) const
{
    std::vector<UaXmlNode> nodes;
    for (UaXmlNode node = firstChild(); !node.isNull(); node = node.nextSibling())
        if (view(toNode(node.m_node)->name) == name)
            nodes.push_back(node);
    return nodes;
}

unsigned int UaXmlNode::line() const
{
    const long line = m_node != nullptr ? xmlGetLineNo(toNode(m_node)) : 0;
    return line > 0 ? static_cast<unsigned int>(line) : 0;
}

UaString UaXmlNode::toXml() const
{
    if (m_node == nullptr)
        return UaString();
    const std::unique_ptr<xmlBuffer, decltype(&xmlBufferFree)> buffer(xmlBufferCreate(), &xmlBufferFree);
    if (buffer == nullptr ||
        xmlNodeDump(buffer.get(), m_document->document(), const_cast<xmlNode*>(toNode(m_node)), 0, 0) < 0)
        return UaString();
    return UaString(view(xmlBufferContent(buffer.get())));
}
