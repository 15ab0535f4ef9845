#pragma once
#include <app/api/qlumjob.h>
#include <app/api/qlumsessionservices.h>
#include <opcua/opcua_types.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>

#include <QString>

#include <memory>
#include <span>
#include <vector>

/// What of a node a browse does not tell, as far as it was asked for and the server told it.
struct QlumNodeDetails
{
    QString description;     ///< text of the attribute
    QString dataType;        ///< name; of variables
    QString unit;            ///< of variables
    bool isReadable = false; ///< the value, by the user who is logged in
    bool isWritable = false; ///< the same
    QString access;          ///< that in words; empty while it is not known
    UaDataValue value;       ///< with its status
    QString valueText;       ///< what a cell shows of it
    QString valueJson;       ///< the whole of it
};

/// Which details to read.
struct QlumDetailsWish
{
    bool description = false; ///< of nodes of all classes
    bool typeAndUnit = false; ///< of variables
    bool access = false;      ///< of variables
    bool value = false;       ///< of variables

    /// Whether there is anything to read.
    [[nodiscard]] bool any() const { return description || typeAndUnit || access || value; }
};

/// A node that is asked about.
struct QlumAskedNode
{
    UaNodeId id;                                          ///< as the server knows it
    OpcUa_UInt32 nodeClass = OpcUa_NodeClass_Unspecified; ///< as browsed
};

/// How many nodes are read at a time, so that the session's other calls come in between.
inline constexpr std::size_t qlumDetailsPortion = 100;

/// Reads the details of a portion of nodes with a few calls, in a job; one entry for each node on success.
[[nodiscard]] UaStatus qlumReadDetails(QlumJob& job, const std::shared_ptr<QlumSessionServices>& session,
                                       std::span<const QlumAskedNode> nodes, const QlumDetailsWish& wish,
                                       std::vector<QlumNodeDetails>& details);
