#include <tests/support/nodetable.h>

#include <opcua/opcua_attributes.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastring.h>

#include <algorithm>
#include <cstdlib>
#include <span>

namespace {
const UaNodeId organizes(35);
const UaNodeId hasSubtype(45);
const UaNodeId hasProperty(46);
const UaNodeId hasComponent(47);
const UaNodeId hierarchical(33);
const UaNodeId hasHistoricalConfiguration(56);

// A table that has no memory is of no use to anybody.
void require(bool done)
{
    if (!done)
        std::abort();
}

void require(OpcUa_StatusCode status)
{
    require(OpcUa_IsGood(status) != 0);
}

bool isOfType(const UaNodeId& type, const OpcUa_NodeId& wanted, bool withSubtypes)
{
    const UaNodeId id(wanted);
    return id.isNull() || id == type ||
           (withSubtypes && (id == UaNodeId(31) || id == hierarchical) &&
            (type == organizes || type == hasProperty || type == hasComponent || type == hasSubtype ||
             type == hasHistoricalConfiguration));
}

UaByteString bytesOf(const std::string& text)
{
    return UaByteString(std::span(reinterpret_cast<const OpcUa_Byte*>(text.data()), text.size()));
}

std::string textOf(const OpcUa_ByteString& bytes)
{
    return std::string(UaByteString(bytes).view());
}

} // namespace

// ---- what there is

NodeTable::Node& NodeTable::addNode(const UaNodeId& id, const char* name, OpcUa_NodeClass nodeClass,
                                    const UaNodeId& parent)
{
    Node& node = m_nodes[id];
    node.attributes[OpcUa_Attributes_NodeId] = UaDataValue(UaVariant(id));
    node.attributes[OpcUa_Attributes_NodeClass] = UaDataValue(UaVariant(static_cast<OpcUa_Int32>(nodeClass)));
    node.attributes[OpcUa_Attributes_BrowseName] =
        UaDataValue(UaVariant(UaQualifiedName(UaString(name), id.namespaceIndex())));
    node.attributes[OpcUa_Attributes_DisplayName] =
        UaDataValue(UaVariant(UaLocalizedText(UaString("en"), UaString(name))));
    if (!parent.isNull())
        addReference(parent, nodeClass == OpcUa_NodeClass_Object ? organizes : hasComponent, id);
    return node;
}

void NodeTable::object(const UaNodeId& id, const char* name, const UaNodeId& parent,
                       const UaNodeId& typeDefinition)
{
    const std::lock_guard lock(m_mutex);
    addNode(id, name, OpcUa_NodeClass_Object, parent).typeDefinition = typeDefinition;
}

void NodeTable::variable(const UaNodeId& id, const char* name, const UaVariant& value, const UaNodeId& parent)
{
    const std::lock_guard lock(m_mutex);
    Node& node = addNode(id, name, OpcUa_NodeClass_Variable, parent);
    constexpr OpcUa_Byte readAndWrite = 3;
    node.typeDefinition = UaNodeId(63);
    node.attributes[OpcUa_Attributes_Value] = UaDataValue(value);
    node.attributes[OpcUa_Attributes_DataType] =
        UaDataValue(UaVariant(UaNodeId(static_cast<OpcUa_UInt32>(value.type()))));
    node.attributes[OpcUa_Attributes_ValueRank] =
        UaDataValue(UaVariant(OpcUa_Int32{value.isScalar() ? -1 : 1}));
    node.attributes[OpcUa_Attributes_AccessLevel] = UaDataValue(UaVariant(readAndWrite));
    node.attributes[OpcUa_Attributes_UserAccessLevel] = UaDataValue(UaVariant(readAndWrite));
}

void NodeTable::method(const UaNodeId& id, const char* name, const UaNodeId& object, Method method)
{
    const std::lock_guard lock(m_mutex);
    Node& node = addNode(id, name, OpcUa_NodeClass_Method, object);
    node.attributes[OpcUa_Attributes_Executable] = UaDataValue(UaVariant(true));
    node.attributes[OpcUa_Attributes_UserExecutable] = UaDataValue(UaVariant(true));
    node.method = std::move(method);
    const Method declared = node.method; // nodes may move
    addArguments(id, "InputArguments", declared.inputs);
    addArguments(id, "OutputArguments", declared.outputs);
}

void NodeTable::addArguments(const UaNodeId& method, const char* name, const std::vector<Argument>& arguments)
{
    if (arguments.empty())
        return;
    UaExtensionObjectArray objects(static_cast<OpcUa_UInt32>(arguments.size()));
    for (OpcUa_UInt32 i = 0; i < objects.length(); ++i) {
        UaArguments one(1);
        require(UaString(arguments[i].name).copyTo(&one[0].Name));
        require(arguments[i].dataType.copyTo(&one[0].DataType));
        one[0].ValueRank = -1;
        UaExtensionObject object;
        require(object.setDecoded(OpcUa_Argument_EncodeableType, &one[0]));
        require(object.copyTo(&objects[i]));
    }
    const std::string text = UaString(method.toXmlString()).toStdString() + '.' + name;
    const UaNodeId id(UaString(text.c_str()), method.namespaceIndex());
    Node& node = addNode(id, name, OpcUa_NodeClass_Variable, UaNodeId());
    node.attributes[OpcUa_Attributes_BrowseName] = UaDataValue(UaVariant(UaQualifiedName(UaString(name), 0)));
    UaVariant value;
    value.setExtensionObjectArray(objects);
    node.attributes[OpcUa_Attributes_Value] = UaDataValue(value);
    node.typeDefinition = UaNodeId(68);
    addReference(method, hasProperty, id);
}

void NodeTable::addReference(const UaNodeId& from, const UaNodeId& referenceType, const UaNodeId& to)
{
    m_nodes[from].references.push_back({referenceType, to, true});
    m_nodes[to].references.push_back({referenceType, from, false});
}

void NodeTable::reference(const UaNodeId& from, const UaNodeId& referenceType, const UaNodeId& to)
{
    const std::lock_guard lock(m_mutex);
    addReference(from, referenceType, to);
}

void NodeTable::setAttribute(const UaNodeId& id, OpcUa_UInt32 attributeId, const UaDataValue& value)
{
    const std::lock_guard lock(m_mutex);
    m_nodes[id].attributes[attributeId] = value;
}

void NodeTable::setValue(const UaNodeId& id, const UaVariant& value)
{
    setAttribute(id, OpcUa_Attributes_Value, UaDataValue(value));
}

UaVariant NodeTable::value(const UaNodeId& id) const
{
    const std::lock_guard lock(m_mutex);
    const Node* node = find(id);
    return node ? attributeOf(*node, OpcUa_Attributes_Value) : UaVariant();
}

void NodeTable::history(const UaNodeId& id, std::vector<UaDataValue> values)
{
    const std::lock_guard lock(m_mutex);
    m_nodes[id].history = std::move(values);
}

void NodeTable::processed(const UaNodeId& id, const UaNodeId& aggregate, std::vector<UaDataValue> values)
{
    const std::lock_guard lock(m_mutex);
    m_nodes[id].processed[aggregate] = std::move(values);
}

void NodeTable::event(const UaNodeId& notifier, const UaDateTime& time, EventFields fields)
{
    const std::lock_guard lock(m_mutex);
    m_nodes[notifier].events.push_back({time, std::move(fields)});
}

void NodeTable::fail(Service service, const UaNodeId& id, OpcUa_StatusCode status)
{
    const std::lock_guard lock(m_mutex);
    m_failures[{service, id}] = status;
}

const UaNodeId& NodeTable::actualId(const UaNodeId& id) const
{
    const auto registered = m_registered.find(id);
    return registered == m_registered.end() ? id : registered->second;
}

const NodeTable::Node* NodeTable::find(const UaNodeId& id) const
{
    const auto found = m_nodes.find(actualId(id));
    return found == m_nodes.end() ? nullptr : &found->second;
}

NodeTable::Node* NodeTable::find(const UaNodeId& id)
{
    return const_cast<Node*>(std::as_const(*this).find(id));
}

UaVariant NodeTable::attributeOf(const Node& node, OpcUa_UInt32 attributeId)
{
    const auto found = node.attributes.find(attributeId);
    return found == node.attributes.end() ? UaVariant() : found->second.value();
}

OpcUa_StatusCode NodeTable::statusOf(Service service, const UaNodeId& id) const
{
    if (const auto failure = m_failures.find({service, actualId(id)}); failure != m_failures.end())
        return failure->second;
    return find(id) ? OpcUa_Good : OpcUa_BadNodeIdUnknown;
}

// ---- attributes and methods

void NodeTable::read(const OpcUa_ReadValueId& asked, OpcUa_DataValue& result) const
{
    const std::lock_guard lock(m_mutex);
    const UaNodeId id(asked.NodeId);
    result.StatusCode = statusOf(Read, id);
    if (OpcUa_IsBad(result.StatusCode))
        return;
    const Node& node = *find(id);
    const auto found = node.attributes.find(asked.AttributeId);
    if (found == node.attributes.end())
        result.StatusCode = OpcUa_BadAttributeIdInvalid;
    else
        require(found->second.copyTo(&result));
}

OpcUa_StatusCode NodeTable::write(const OpcUa_WriteValue& value)
{
    const std::lock_guard lock(m_mutex);
    const UaNodeId id(value.NodeId);
    const OpcUa_StatusCode status = statusOf(Write, id);
    if (OpcUa_IsBad(status))
        return status;
    Node& node = *find(id);
    const auto found = node.attributes.find(value.AttributeId);
    if (found == node.attributes.end())
        return OpcUa_BadAttributeIdInvalid;
    found->second = UaDataValue(value.Value);
    return OpcUa_Good;
}

void NodeTable::call(const OpcUa_CallMethodRequest& request, OpcUa_CallMethodResult& result)
{
    Method method;
    {
        const std::lock_guard lock(m_mutex);
        const UaNodeId id(request.MethodId);
        result.StatusCode = statusOf(Call, id);
        if (result.StatusCode == OpcUa_BadNodeIdUnknown)
            result.StatusCode = OpcUa_BadMethodInvalid;
        if (OpcUa_IsBad(result.StatusCode))
            return;
        method = find(id)->method;
    }
    const UaVariantArray inputs(request.NoOfInputArguments, request.InputArguments);
    if (inputs.length() != method.inputs.size()) {
        result.StatusCode =
            inputs.length() < method.inputs.size() ? OpcUa_BadArgumentsMissing : OpcUa_BadTooManyArguments;
        return;
    }
    UaVariantArray outputs(static_cast<OpcUa_UInt32>(method.outputs.size()));
    if (method.run)
        result.StatusCode = method.run(inputs, outputs);
    UaStatusCodeArray inputResults(inputs.length());
    inputResults.detach(&result.NoOfInputArgumentResults, &result.InputArgumentResults);
    outputs.detach(&result.NoOfOutputArguments, &result.OutputArguments);
}

// ---- references

void NodeTable::describe(const Reference& reference, OpcUa_ReferenceDescription& description) const
{
    require(reference.type.copyTo(&description.ReferenceTypeId));
    description.IsForward = reference.isForward;
    require(reference.target.copyTo(&description.NodeId.NodeId));
    if (!find(reference.target))
        return; // it was deleted and left this behind
    const Node& target = *find(reference.target);
    const UaVariant name = attributeOf(target, OpcUa_Attributes_BrowseName);
    require(name.toQualifiedName().copyTo(&description.BrowseName));
    const UaVariant shown = attributeOf(target, OpcUa_Attributes_DisplayName);
    require(shown.toLocalizedText().copyTo(&description.DisplayName));
    description.NodeClass =
        static_cast<OpcUa_NodeClass>(attributeOf(target, OpcUa_Attributes_NodeClass).toInt32());
    require(target.typeDefinition.copyTo(&description.TypeDefinition.NodeId));
}

void NodeTable::browse(const OpcUa_BrowseDescription& asked, OpcUa_UInt32 maximumReferences,
                       OpcUa_BrowseResult& result)
{
    const std::lock_guard lock(m_mutex);
    const UaNodeId id(asked.NodeId);
    result.StatusCode = statusOf(Browse, id);
    if (OpcUa_IsBad(result.StatusCode))
        return;
    std::vector<const Reference*> found;
    for (const Reference& reference : find(id)->references) {
        const bool isWanted = asked.BrowseDirection == OpcUa_BrowseDirection_Both ||
                              reference.isForward == (asked.BrowseDirection == OpcUa_BrowseDirection_Forward);
        const Node* target = find(reference.target);
        const OpcUa_UInt32 nodeClass =
            target ? static_cast<OpcUa_UInt32>(attributeOf(*target, OpcUa_Attributes_NodeClass).toInt32())
                   : 0;
        if (isWanted && isOfType(reference.type, asked.ReferenceTypeId, asked.IncludeSubtypes) &&
            (asked.NodeClassMask == 0 || (asked.NodeClassMask & nodeClass) != 0))
            found.push_back(&reference);
    }
    Rest rest{UaReferenceDescriptions(static_cast<OpcUa_UInt32>(found.size())), maximumReferences, 0};
    require(rest.references.length() == found.size());
    for (OpcUa_UInt32 i = 0; i < rest.references.length(); ++i)
        describe(*found[i], rest.references[i]);
    handOut(std::move(rest), result);
}

// One page; the others wait for their continuation point.
void NodeTable::handOut(Rest rest, OpcUa_BrowseResult& result)
{
    const OpcUa_UInt32 left = rest.references.length() - rest.given;
    UaReferenceDescriptions page(rest.maximum > 0 ? std::min(rest.maximum, left) : left);
    for (OpcUa_UInt32 i = 0; i < page.length(); ++i)
        std::swap(page[i], rest.references[rest.given + i]);
    if (page.length() < left) {
        const std::string point = "rest " + std::to_string(++m_points);
        rest.given += page.length();
        m_rests[point] = std::move(rest);
        require(bytesOf(point).copyTo(&result.ContinuationPoint));
    }
    page.detach(&result.NoOfReferences, &result.References);
}

void NodeTable::browseNext(const OpcUa_ByteString& point, bool release, OpcUa_BrowseResult& result)
{
    const std::lock_guard lock(m_mutex);
    auto rest = m_rests.extract(textOf(point));
    if (!rest)
        result.StatusCode = OpcUa_BadContinuationPointInvalid;
    else if (!release)
        handOut(std::move(rest.mapped()), result);
}

int NodeTable::openContinuationPoints() const
{
    const std::lock_guard lock(m_mutex);
    return static_cast<int>(m_rests.size() + m_queryRests.size());
}

const NodeTable::Reference* NodeTable::step(const Node& node, const OpcUa_RelativePathElement& element) const
{
    const UaQualifiedName name(element.TargetName);
    for (const Reference& reference : node.references) {
        if (reference.isForward == (element.IsInverse != 0) ||
            !isOfType(reference.type, element.ReferenceTypeId, element.IncludeSubtypes))
            continue;
        const Node* target = find(reference.target);
        if (target && attributeOf(*target, OpcUa_Attributes_BrowseName).toQualifiedName() == name)
            return &reference;
    }
    return nullptr;
}

std::optional<UaNodeId> NodeTable::follow(UaNodeId from, const OpcUa_RelativePath& path) const
{
    for (OpcUa_Int32 i = 0; i < path.NoOfElements; ++i) {
        const Reference* reference = step(*find(from), path.Elements[i]);
        if (!reference)
            return std::nullopt;
        from = reference->target;
    }
    return from;
}

void NodeTable::translate(const OpcUa_BrowsePath& path, OpcUa_BrowsePathResult& result) const
{
    const std::lock_guard lock(m_mutex);
    const UaNodeId start(path.StartingNode);
    result.StatusCode = statusOf(Translate, start);
    if (OpcUa_IsBad(result.StatusCode))
        return;
    const std::optional<UaNodeId> found = follow(start, path.RelativePath);
    if (!found) {
        result.StatusCode = OpcUa_BadNoMatch;
        return;
    }
    UaBrowsePathTargets targets(1);
    require(found->copyTo(&targets[0].TargetId.NodeId));
    targets[0].RemainingPathIndex = 0xFFFFFFFFu;
    targets.detach(&result.NoOfTargets, &result.Targets);
}
