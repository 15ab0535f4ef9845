// Type dictionaries in XML, by which older servers describe their structures.
#pragma once

#include <uabase/structures/uatypedefinitionstore.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>

#include <map>
#include <memory>
#include <set>
#include <span>
#include <string_view>
#include <vector>

class UaTypeDictionaryPrivate;

/// Takes the documents of a server, is told which data types they describe, and gives their definitions. The
/// standard's own types are known without a document. One object belongs to one thread. Hostile documents are
/// bounded: UaXmlDocument's limits, chains of base types, lengths.
class UaTypeDictionary
{
public:
    /// Namespace of the types that every dictionary may use, and of the standard's own dictionary.
    static constexpr std::string_view schemaNamespace = "http://opcfoundation.org/BinarySchema/";
    static constexpr std::string_view standardNamespace = "http://opcfoundation.org/UA/";

    /// A type by the dictionary that describes it: its namespace and name there.
    struct TypeName
    {
        UaString namespaceUri;
        UaString name;
        friend auto operator<=>(const TypeName&, const TypeName&) noexcept = default;
        friend bool operator==(const TypeName&, const TypeName&) noexcept = default;
    };
    /// What could not be used, for the trace.
    struct Fault
    {
        TypeName type;
        UaString reason;
    };

    UaTypeDictionary();
    ~UaTypeDictionary();
    UaTypeDictionary(const UaTypeDictionary&) = delete;
    UaTypeDictionary& operator=(const UaTypeDictionary&) = delete;

    /// Reads one document; several may share a namespace. False when it is no dictionary: error says why and
    /// nothing of it is kept.
    [[nodiscard]] bool addDocument(std::span<const unsigned char> xml, UaString& error);
    /// The namespace of the document added last.
    [[nodiscard]] UaString targetNamespace() const;
    /// Namespaces that documents import and no document has brought.
    [[nodiscard]] std::set<UaString> missingNamespaces() const;
    [[nodiscard]] bool hasType(const TypeName& type) const;
    [[nodiscard]] std::vector<TypeName> types() const;

    /// The server's ids of a type. Types without get ids that exist nowhere else (namespace 65535).
    void setIds(const TypeName& type, const UaNodeId& dataTypeId, const UaNodeId& binaryEncodingId);
    [[nodiscard]] UaNodeId dataTypeId(const TypeName& type) const;

    /// Adds the definitions of all types that can be used; those of the others are missing, with a fault
    /// each.
    void define(UaTypeDefinitionStore& store, std::vector<Fault>& faults);

private:
    std::unique_ptr<UaTypeDictionaryPrivate> d;
};
