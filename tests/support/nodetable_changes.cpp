#include <tests/support/nodetable.h>

#include <opcua/opcua_attributes.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastring.h>

#include <algorithm>
#include <cstdlib>
#include <span>

namespace {
using Attributes = std::map<OpcUa_UInt32, UaDataValue>;

void mustCopy(OpcUa_StatusCode status)
{
    if (OpcUa_IsBad(status))
        std::abort();
}

void set(Attributes& attributes, OpcUa_UInt32 id, const UaVariant& value)
{
    attributes[id] = UaDataValue(value);
}

void takeText(const OpcUa_LocalizedText& text, OpcUa_UInt32 id, Attributes& to)
{
    set(to, id, UaVariant(UaLocalizedText(text)));
}

template <typename Given>
void takeCommon(const Given& given, Attributes& to)
{
    const OpcUa_UInt32 mask = given.SpecifiedAttributes;
    if (mask & OpcUa_NodeAttributesMask_DisplayName)
        takeText(given.DisplayName, OpcUa_Attributes_DisplayName, to);
    if (mask & OpcUa_NodeAttributesMask_Description)
        takeText(given.Description, OpcUa_Attributes_Description, to);
    if (mask & OpcUa_NodeAttributesMask_WriteMask)
        set(to, OpcUa_Attributes_WriteMask, UaVariant(given.WriteMask));
    if (mask & OpcUa_NodeAttributesMask_UserWriteMask)
        set(to, OpcUa_Attributes_UserWriteMask, UaVariant(given.UserWriteMask));
}

void takeOwn(const OpcUa_ObjectAttributes& given, Attributes& to)
{
    if (given.SpecifiedAttributes & OpcUa_NodeAttributesMask_EventNotifier)
        set(to, OpcUa_Attributes_EventNotifier, UaVariant(given.EventNotifier));
}

void takeOwn(const OpcUa_VariableAttributes& given, Attributes& to)
{
    const OpcUa_UInt32 mask = given.SpecifiedAttributes;
    const bool hasType = (mask & OpcUa_NodeAttributesMask_DataType) != 0;
    const bool hasRank = (mask & OpcUa_NodeAttributesMask_ValueRank) != 0;
    const OpcUa_Byte readable = 1;
    set(to, OpcUa_Attributes_Value,
        mask & OpcUa_NodeAttributesMask_Value ? UaVariant(given.Value) : UaVariant());
    set(to, OpcUa_Attributes_DataType, UaVariant(hasType ? UaNodeId(given.DataType) : UaNodeId(24)));
    set(to, OpcUa_Attributes_ValueRank, UaVariant(hasRank ? given.ValueRank : OpcUa_Int32{-1}));
    set(to, OpcUa_Attributes_AccessLevel,
        UaVariant(mask & OpcUa_NodeAttributesMask_AccessLevel ? given.AccessLevel : readable));
    set(to, OpcUa_Attributes_UserAccessLevel,
        UaVariant(mask & OpcUa_NodeAttributesMask_UserAccessLevel ? given.UserAccessLevel : readable));
    if (mask & OpcUa_NodeAttributesMask_MinimumSamplingInterval)
        set(to, OpcUa_Attributes_MinimumSamplingInterval, UaVariant(given.MinimumSamplingInterval));
    set(to, OpcUa_Attributes_Historizing,
        UaVariant((mask & OpcUa_NodeAttributesMask_Historizing) != 0 && given.Historizing != 0));
}

void takeOwn(const OpcUa_MethodAttributes& given, Attributes& to)
{
    const OpcUa_UInt32 mask = given.SpecifiedAttributes;
    set(to, OpcUa_Attributes_Executable,
        UaVariant((mask & OpcUa_NodeAttributesMask_Executable) == 0 || given.Executable != 0));
    set(to, OpcUa_Attributes_UserExecutable,
        UaVariant((mask & OpcUa_NodeAttributesMask_UserExecutable) == 0 || given.UserExecutable != 0));
}

template <typename Given>
bool takeAs(const OpcUa_EncodeableType& type, const OpcUa_ExtensionObject& object, Attributes& to)
{
    const UaExtensionObject holder(object);
    const auto* given = static_cast<const Given*>(holder.decoded(type));
    if (!given)
        return false;
    takeCommon(*given, to);
    if constexpr (requires { takeOwn(*given, to); })
        takeOwn(*given, to);
    return true;
}

// False: they are those of another node class.
bool takeAttributes(OpcUa_NodeClass nodeClass, const OpcUa_ExtensionObject& given, Attributes& to)
{
    switch (nodeClass) {
    case OpcUa_NodeClass_Object:
        return takeAs<OpcUa_ObjectAttributes>(OpcUa_ObjectAttributes_EncodeableType, given, to);
    case OpcUa_NodeClass_Variable:
        return takeAs<OpcUa_VariableAttributes>(OpcUa_VariableAttributes_EncodeableType, given, to);
    case OpcUa_NodeClass_Method:
        return takeAs<OpcUa_MethodAttributes>(OpcUa_MethodAttributes_EncodeableType, given, to);
    case OpcUa_NodeClass_ObjectType:
        return takeAs<OpcUa_ObjectTypeAttributes>(OpcUa_ObjectTypeAttributes_EncodeableType, given, to);
    case OpcUa_NodeClass_VariableType:
        return takeAs<OpcUa_VariableTypeAttributes>(OpcUa_VariableTypeAttributes_EncodeableType, given, to);
    case OpcUa_NodeClass_ReferenceType:
        return takeAs<OpcUa_ReferenceTypeAttributes>(OpcUa_ReferenceTypeAttributes_EncodeableType, given, to);
    case OpcUa_NodeClass_DataType:
        return takeAs<OpcUa_DataTypeAttributes>(OpcUa_DataTypeAttributes_EncodeableType, given, to);
    default:
        return takeAs<OpcUa_ViewAttributes>(OpcUa_ViewAttributes_EncodeableType, given, to);
    }
}

bool needsTypeDefinition(OpcUa_NodeClass nodeClass)
{
    return nodeClass == OpcUa_NodeClass_Object || nodeClass == OpcUa_NodeClass_Variable;
}
} // namespace

// ---- nodes

OpcUa_StatusCode NodeTable::checkNew(const OpcUa_AddNodesItem& item, const UaNodeId& id) const
{
    const UaNodeId parent(item.ParentNodeId.NodeId);
    const OpcUa_StatusCode status = statusOf(AddNodes, parent);
    if (OpcUa_IsBad(status))
        return status == OpcUa_BadNodeIdUnknown ? OpcUa_BadParentNodeIdInvalid : status;
    if (OpcUa_NodeId_IsNull(&item.ReferenceTypeId))
        return OpcUa_BadReferenceTypeIdInvalid;
    const auto node = m_nodes.find(id);
    if (node != m_nodes.end() && !node->second.attributes.empty())
        return OpcUa_BadNodeIdExists;
    const UaQualifiedName name(item.BrowseName);
    if (name.name().isEmpty())
        return OpcUa_BadBrowseNameInvalid;
    for (const Reference& reference : find(parent)->references) {
        const Node* sibling = reference.isForward ? find(reference.target) : nullptr;
        if (sibling && attributeOf(*sibling, OpcUa_Attributes_BrowseName).toQualifiedName() == name)
            return OpcUa_BadBrowseNameDuplicated;
    }
    if (needsTypeDefinition(item.NodeClass) && OpcUa_NodeId_IsNull(&item.TypeDefinition.NodeId))
        return OpcUa_BadTypeDefinitionInvalid;
    return OpcUa_Good;
}

UaNodeId NodeTable::freeId()
{
    UaNodeId id;
    do
        id = UaNodeId(++m_lastId, 1);
    while (m_nodes.contains(id) || m_registered.contains(id));
    return id;
}

void NodeTable::add(const OpcUa_AddNodesItem& item, OpcUa_AddNodesResult& result)
{
    const std::lock_guard lock(m_mutex);
    UaNodeId id(item.RequestedNewNodeId.NodeId);
    result.StatusCode = checkNew(item, id);
    Attributes given;
    if (OpcUa_IsGood(result.StatusCode) && !takeAttributes(item.NodeClass, item.NodeAttributes, given))
        result.StatusCode = OpcUa_BadNodeAttributesInvalid;
    if (OpcUa_IsBad(result.StatusCode))
        return;
    if (id.isNull())
        id = freeId();
    const UaQualifiedName name(item.BrowseName);
    Node& node = addNode(id, name.name().toStdString().c_str(), item.NodeClass, UaNodeId());
    set(node.attributes, OpcUa_Attributes_BrowseName, UaVariant(name));
    for (const auto& [attribute, value] : given)
        node.attributes[attribute] = value;
    node.typeDefinition = UaNodeId(item.TypeDefinition.NodeId);
    addReference(actualId(UaNodeId(item.ParentNodeId.NodeId)), UaNodeId(item.ReferenceTypeId), id);
    mustCopy(id.copyTo(&result.AddedNodeId));
}

OpcUa_StatusCode NodeTable::remove(const OpcUa_DeleteNodesItem& item)
{
    const std::lock_guard lock(m_mutex);
    const UaNodeId id = actualId(UaNodeId(item.NodeId));
    const OpcUa_StatusCode status = statusOf(DeleteNodes, id);
    if (OpcUa_IsBad(status))
        return status;
    m_nodes.erase(id);
    std::erase_if(m_registered, [&](const auto& registered) { return registered.second == id; });
    if (item.DeleteTargetReferences)
        for (auto& other : m_nodes)
            std::erase_if(other.second.references,
                          [&](const Reference& reference) { return reference.target == id; });
    return OpcUa_Good;
}

// ---- references

OpcUa_StatusCode NodeTable::add(const OpcUa_AddReferencesItem& item)
{
    const std::lock_guard lock(m_mutex);
    const UaNodeId source = actualId(UaNodeId(item.SourceNodeId));
    const UaNodeId target = actualId(UaNodeId(item.TargetNodeId.NodeId));
    const UaNodeId type(item.ReferenceTypeId);
    const OpcUa_StatusCode status = statusOf(AddReferences, source);
    if (OpcUa_IsBad(status))
        return status == OpcUa_BadNodeIdUnknown ? OpcUa_BadSourceNodeIdInvalid : status;
    if (!UaString(item.TargetServerUri).isEmpty())
        return OpcUa_BadServerUriInvalid;
    if (type.isNull())
        return OpcUa_BadReferenceTypeIdInvalid;
    if (!find(target))
        return OpcUa_BadTargetNodeIdInvalid;
    for (const Reference& reference : find(source)->references)
        if (reference.type == type && reference.target == target &&
            reference.isForward == (item.IsForward != 0))
            return OpcUa_BadDuplicateReferenceNotAllowed;
    if (item.IsForward)
        addReference(source, type, target);
    else
        addReference(target, type, source);
    return OpcUa_Good;
}

OpcUa_StatusCode NodeTable::remove(const OpcUa_DeleteReferencesItem& item)
{
    const std::lock_guard lock(m_mutex);
    const UaNodeId source = actualId(UaNodeId(item.SourceNodeId));
    const UaNodeId target = actualId(UaNodeId(item.TargetNodeId.NodeId));
    const UaNodeId type(item.ReferenceTypeId);
    const OpcUa_StatusCode status = statusOf(DeleteReferences, source);
    if (OpcUa_IsBad(status))
        return status == OpcUa_BadNodeIdUnknown ? OpcUa_BadSourceNodeIdInvalid : status;
    const auto erase = [&](Node& node, const UaNodeId& other, bool isForward) {
        return std::erase_if(node.references, [&](const Reference& reference) {
            return reference.type == type && reference.target == other && reference.isForward == isForward;
        });
    };
    if (erase(*find(source), target, item.IsForward != 0) == 0)
        return OpcUa_BadTargetNodeIdInvalid;
    if (Node* other = find(target); other && item.DeleteBidirectional)
        erase(*other, source, item.IsForward == 0);
    return OpcUa_Good;
}

// ---- registered nodes

UaNodeId NodeTable::registerNode(const UaNodeId& id)
{
    const std::lock_guard lock(m_mutex);
    if (!find(id))
        return id;
    const UaNodeId other = freeId();
    m_registered[other] = UaNodeId(actualId(id));
    return other;
}

void NodeTable::unregisterNode(const UaNodeId& id)
{
    const std::lock_guard lock(m_mutex);
    m_registered.erase(id);
}

int NodeTable::registeredNodes() const
{
    const std::lock_guard lock(m_mutex);
    return static_cast<int>(m_registered.size());
}
