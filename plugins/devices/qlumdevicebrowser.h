#pragma once
#include <app/api/qlumsessionservices.h>
#include <opcua/opcua_types.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>

#include <QString>

#include <functional>
#include <map>
#include <span>
#include <vector>

/// A node below another one.
struct QlumDeviceChild
{
    UaNodeId id;
    UaNodeId type; ///< definition; null for methods
    UaNodeId reference;
    OpcUa_NodeClass nodeClass = OpcUa_NodeClass_Unspecified;
    OpcUa_UInt16 namespaceIndex = 0; ///< of the browse name
    QString browseName;
    QString name; ///< for the user
};
/// In the order of the server.
using QlumDeviceChildren = std::vector<QlumDeviceChild>;

/// Browses and reads many nodes with few calls, within bounds, and knows types by the names of those they
/// derive from. For one job; blocks.
class QlumDeviceBrowser
{
public:
    /// Looked at between the calls.
    using Cancelled = std::function<bool()>;

    /// The services must live as long; the settings are those of all calls.
    QlumDeviceBrowser(QlumSessionServices& services, QlumSessionServices::Settings settings,
                      Cancelled isCancelled);

    /// What the nodes have below them, node by node. Of a node that cannot be browsed nothing.
    UaStatus children(std::span<const UaNodeId> nodes, std::vector<QlumDeviceChildren>& found);
    /// Of one node.
    [[nodiscard]] QlumDeviceChildren children(const UaNodeId& node);
    /// What a node refers to in any way, not only what is below it.
    [[nodiscard]] QlumDeviceChildren neighbours(const UaNodeId& node);
    /// An attribute of each; values of null nodes are null. Bad values where the call failed.
    [[nodiscard]] std::vector<UaDataValue> read(std::span<const UaNodeId> nodes, OpcUa_UInt32 attribute);
    /// The node of a path of names of one namespace; null when there is none.
    [[nodiscard]] UaNodeId find(const UaNodeId& start, OpcUa_UInt16 namespaceIndex, const char* name);

    /// Asks of which types these derive, before baseOf() and typeName().
    void learnTypes(std::span<const UaNodeId> types);
    /// The nearest of the names, from the type upwards, that is one of that namespace's types; empty when
    /// there is none.
    [[nodiscard]] QString baseOf(const UaNodeId& type, OpcUa_UInt16 namespaceIndex,
                                 std::span<const char* const> names) const;
    /// For the user; empty when it is not known.
    [[nodiscard]] QString typeName(const UaNodeId& type) const;

    [[nodiscard]] bool isCancelled() const { return m_isCancelled && m_isCancelled(); }
    /// The worst that a call came to.
    [[nodiscard]] const UaStatus& worst() const { return m_worst; }

private:
    struct Type
    {
        UaNodeId above; ///< null: none, or not known
        OpcUa_UInt16 namespaceIndex = 0;
        QString browseName;
        QString name;
    };

    UaStatus browse(std::span<const UaNodeId> nodes, OpcUa_BrowseDirection direction,
                    const UaNodeId& referenceType, std::vector<QlumDeviceChildren>& found);
    void note(const UaStatus& status);

    QlumSessionServices& m_services;
    QlumSessionServices::Settings m_settings;
    const Cancelled m_isCancelled;
    std::map<UaNodeId, Type> m_types;
    UaStatus m_worst;
};
