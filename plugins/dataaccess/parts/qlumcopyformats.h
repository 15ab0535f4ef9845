// Nodes as text for other programs.
#pragma once
#include <plugins/dataaccess/parts/qlumpathreader.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>

#include <QString>
#include <QStringList>

#include <vector>

/// What is told of a node.
struct QlumCopiedNode
{
    QString server;         ///< name in the project
    QString serverUrl;      ///< of its endpoint; empty where it is not known
    QStringList namespaces; ///< of the server, by index
    UaNodeId nodeId;
    QString indexRange; ///< of an array; empty for all of it
    QString fieldPath;  ///< of a structure; empty for all of it
    QString displayName;
    QString dataType; ///< name
    QString unit;
    QlumNodePath path;
    bool hasValue = false;
    UaDataValue value;
};

/// What they become.
enum class QlumCopyFormat {
    NodeIdsByIndex, ///< a line each: "ns=2;s=Pump"
    NodeIdsByUri,   ///< "nsu=urn:plant;s=Pump"
    PathsByIndex,   ///< "/Objects/2:Plant/2:Pump"
    PathsByUri,     ///< "/Objects/nsu=urn:plant;Plant/nsu=urn:plant;Pump"
    Csv,            ///< with a line of titles; qlumReadNodeList() takes it
    Json,           ///< an array of objects, values in the form by which they can be read back
    Python,         ///< a script for the package asyncua that reads them
    Telegraf        ///< a configuration of its OPC UA input
};

/// Whether the format has browse paths, which must be read first.
[[nodiscard]] bool qlumNeedsPaths(QlumCopyFormat format);
/// The text; users and passwords are places to be filled in.
[[nodiscard]] QString qlumCopyNodes(const std::vector<QlumCopiedNode>& nodes, QlumCopyFormat format);
