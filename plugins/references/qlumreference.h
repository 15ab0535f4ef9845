// References of a node, as they are read and shown.
#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <opcua/opcua_types.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uanodeid.h>

#include <QString>

#include <mutex>
#include <utility>

/// One reference, with what the server tells of its target.
struct QlumReference
{
    UaNodeId typeId;       ///< of the reference
    QString typeName;      ///< its inverse name where the reference is an inverse one
    bool isForward = true; ///< else it comes from the target
    UaNodeId target;       ///< as this server knows it; null when it is on another one
    QString targetText;    ///< its whole id
    QString displayName;   ///< of the target
    QString browseName;    ///< of the target, with the namespace index
    OpcUa_NodeClass nodeClass = OpcUa_NodeClass_Unspecified; ///< Unspecified where the server does not tell
    UaNodeId typeDefinition;                                 ///< of objects and variables
    QString typeDefinitionName;                              ///< may be empty
};

/// A reference type that can be chosen.
struct QlumReferenceType
{
    UaNodeId id;
    QString name;
    int depth = 0; ///< below References
};

/// Which references are wanted.
struct QlumReferenceQuery
{
    unsigned int serverId = qlumNoServer;
    UaNodeId nodeId;
    OpcUa_BrowseDirection direction = OpcUa_BrowseDirection_Both;
    UaNodeId typeId; ///< null: all
    bool includeSubtypes = true;

    friend bool operator==(const QlumReferenceQuery&, const QlumReferenceQuery&) = default;
};

/// The server's continuation point of a list that has not been read to its end. Whoever takes it goes on or
/// gives it back to the server; nobody else has it then. Any thread.
class QlumReferenceRest
{
public:
    /// Takes the place of what was there.
    void put(const UaByteString& point)
    {
        const std::lock_guard lock(m_mutex);
        m_point = point;
    }
    /// Empty when there is none any more.
    [[nodiscard]] UaByteString take()
    {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_point, UaByteString());
    }

private:
    std::mutex m_mutex;
    UaByteString m_point;
};
