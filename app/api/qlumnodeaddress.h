// Nodes as text that other programs and other servers understand.
#pragma once
#include <uabase/values/uanodeid.h>

#include <QString>
#include <QStringList>

#include <vector>

/// A browse name whose namespace may be known by index or by URI.
struct QlumPathStep
{
    OpcUa_UInt16 namespaceIndex = 0; ///< counts while there is no URI
    QString namespaceUri;            ///< empty: by index
    QString name;                    ///< never empty

    /// Equal in all.
    bool operator==(const QlumPathStep&) const = default;
};

/// What a line of a list names.
struct QlumNodeAddress
{
    UaNodeId nodeId;                ///< the node; of a path, where it begins
    QString namespaceUri;           ///< of the node id; empty: its index counts
    std::vector<QlumPathStep> path; ///< from there downward; empty for a node id
    QString fault;                  ///< for the user: why the text names nothing; empty when it does
};

/// "ns=2;s=Pump", "nsu=urn:plant;s=Pump", or a path: "/Objects/2:Plant/nsu=urn:plant;Pump" from the root,
/// "ns=2;i=5/2:Pump" from a node. In names what means something in relative paths of OPC 10000-4, A.2 has a
/// '&' before it, of which '/' and '&' cannot do without; in URIs '/', ';' and '&' have one. Behind the
/// colon of the index a colon needs none.
[[nodiscard]] QlumNodeAddress qlumReadAddress(const QString& text);
/// Puts the indexes of the server's namespaces in the place of URIs. What the server has not got is told for
/// the user; then the address is half done.
[[nodiscard]] QString qlumPlaceAddress(QlumNodeAddress& address, const QStringList& namespaces);

/// Which names of namespaces a text has.
enum class QlumNamespaceForm {
    Index, ///< "ns=2;s=Pump", for this server as it is now
    Uri    ///< "nsu=urn:plant;s=Pump", for every server that has it
};
/// By index where the table has no such URI.
[[nodiscard]] QString qlumNodeIdText(const UaNodeId& nodeId, const QStringList& namespaces,
                                     QlumNamespaceForm form);
/// A name as a step of a path, without the slash before it: "2:Pump".
[[nodiscard]] QString qlumPathStep(OpcUa_UInt16 namespaceIndex, const QString& name);
/// The path without its last step; empty when there is one only.
[[nodiscard]] QString qlumPathAbove(const QString& path);
/// A path that qlumReadAddress() reads back. A start of null stands for the root.
[[nodiscard]] QString qlumPathText(const UaNodeId& start, const std::vector<QlumPathStep>& path,
                                   const QStringList& namespaces, QlumNamespaceForm form);
