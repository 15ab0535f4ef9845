#include <app/api/qlumlocalid.h>

#include <uabase/values/uastring.h>

UaNodeId qlumLocalId(const UaExpandedNodeId& id, const UaStringArray& namespaces)
{
    if (id.serverIndex() != 0)
        return {};
    if (id.namespaceUri().isEmpty())
        return id.nodeId();
    for (OpcUa_UInt32 i = 0; i < namespaces.length(); ++i)
        if (UaString(namespaces[i]) == id.namespaceUri()) {
            UaNodeId local = id.nodeId();
            local.setNamespaceIndex(static_cast<OpcUa_UInt16>(i));
            return local;
        }
    return {};
}

UaExpandedNodeId qlumPortableId(const UaNodeId& id, const UaStringArray& namespaces)
{
    const OpcUa_UInt16 index = id.namespaceIndex();
    if (index == 0 || index >= namespaces.length() || UaString(namespaces[index]).isEmpty())
        return UaExpandedNodeId(id);
    UaNodeId bare = id;
    bare.setNamespaceIndex(0); // the URI says it
    return UaExpandedNodeId(bare, UaString(namespaces[index]));
}
