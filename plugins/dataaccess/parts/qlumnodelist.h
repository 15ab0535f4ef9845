// Lists of nodes that a user brings along, and what of them a server has.
#pragma once
#include <app/api/qlumsessionservices.h>
#include <opcua/opcua_types.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uawidgets/table/qlumcsvreader.h>

#include <QByteArray>
#include <QString>

#include <vector>

class QlumJob;

/// A line of a list.
struct QlumNodeLine
{
    int line = 0;          ///< in the text, from 1
    QString server;        ///< name, as given; empty: the server that the user means
    QString text;          ///< node id or browse path, as given
    QString value;         ///< a new value for it, as given
    bool hasValue = false; ///< false: there is no such column, or the line ends before it
};

/// What was read of a text.
struct QlumNodeList
{
    std::vector<QlumNodeLine> lines;
    bool hasValues = false; ///< of one line at least
    QString remark;         ///< for the user; empty when there is nothing to say
    QString fault;          ///< for the user: why there is no list; empty when there is
};

/// Of a file or the clipboard: one node a line, or columns, with titles ("Node Id", "Browse Path", "Server",
/// "Value", "New Value") or without (node, value). Any text is a line; what it names is found out later. What
/// goesOn ends is not complete.
[[nodiscard]] QlumNodeList qlumReadNodeList(const QByteArray& bytes, const QlumReadsOn& goesOn = {});

/// A node that was asked for.
struct QlumFoundNode
{
    UaNodeId nodeId; ///< null when there is none
    OpcUa_NodeClass nodeClass = OpcUa_NodeClass_Unspecified;
    QString displayName;
    QString reason; ///< for the user: why it is no variable of the server; empty when it is
};

/// Finds the nodes that the texts name on one server, in a job, a thousand at a time; one result for each, in
/// their order. Bad when the server cannot be asked, or when the job was cancelled
/// (BadRequestCancelledByClient); what was not found out says so.
[[nodiscard]] UaStatus qlumFindNodes(QlumJob& job, QlumSessionServices& session,
                                     const std::vector<QString>& texts, std::vector<QlumFoundNode>& found);
