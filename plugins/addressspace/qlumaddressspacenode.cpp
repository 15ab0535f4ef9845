#include <plugins/addressspace/qlumaddressspacenode.h>

#include <QCoreApplication>
#include <QHash>

#include <utility>

namespace {
constexpr OpcUa_UInt32 folderType = 61;
constexpr OpcUa_UInt32 propertyType = 68;

void translate(UaNodeId& id, const NamespaceMap& namespaces)
{
    const auto found = namespaces.constFind(id.namespaceIndex());
    if (found == namespaces.constEnd())
        id = UaNodeId();
    else if (*found != id.namespaceIndex())
        id.setNamespaceIndex(*found);
}

QHash<const char*, QIcon>& iconCache()
{
    static QHash<const char*, QIcon> cache;
    static const bool clearedAtExit = [] {
        qAddPostRoutine([] { iconCache().clear(); }); // icons must not outlive the application
        return true;
    }();
    Q_UNUSED(clearedAtExit)
    return cache;
}

// path is a literal: its address is the key
QIcon sharedIcon(const char* path)
{
    QIcon& icon = iconCache()[path];
    if (icon.isNull())
        icon = QIcon(QLatin1String(path));
    return icon;
}
} // namespace

QlumAddressSpaceNode::QlumAddressSpaceNode(const QString& name, const UaNodeId& nodeId,
                                           const UaNodeId& typeDefinition, OpcUa_UInt32 nodeClass)
    : m_name(name), m_nodeId(nodeId), m_typeDefinition(typeDefinition), m_nodeClass(nodeClass)
{
}

QlumAddressSpaceNode::~QlumAddressSpaceNode() = default;

QIcon QlumAddressSpaceNode::icon() const
{
    switch (m_nodeClass) {
    case OpcUa_NodeClass_Unspecified:
        return sharedIcon(":/images/clearlog.png");
    case OpcUa_NodeClass_Object:
        return sharedIcon(m_typeDefinition.isNumeric(folderType) ? ":/images/treefolder.png"
                                                                 : ":/images/object.png");
    case OpcUa_NodeClass_Variable:
        return sharedIcon(m_typeDefinition.isNumeric(propertyType) ? ":/images/property.png"
                                                                   : ":/images/variable.png");
    case OpcUa_NodeClass_Method:
        return sharedIcon(":/images/method.png");
    case OpcUa_NodeClass_ObjectType:
        return sharedIcon(":/images/objecttype.png");
    case OpcUa_NodeClass_VariableType:
        return sharedIcon(":/images/variabletype.png");
    case OpcUa_NodeClass_ReferenceType:
        return sharedIcon(":/images/reftype.png");
    case OpcUa_NodeClass_DataType:
        return sharedIcon(":/images/datatype.png");
    case OpcUa_NodeClass_View:
        return sharedIcon(":/images/view.png");
    default:
        return {};
    }
}

void QlumAddressSpaceNode::sortChildren()
{
    QlumTreeNode::sortChildren(
        [](const auto& left, const auto& right) { return left.m_name < right.m_name; });
}

void QlumAddressSpaceNode::sortChildren(const QCollator& collator)
{
    QlumTreeNode::sortChildren([&collator](const auto& left, const auto& right) {
        return collator.compare(left.m_name, right.m_name) < 0;
    });
}

QlumAddressSpaceNode* QlumAddressSpaceNode::findChild(const UaNodeId& nodeId) const
{
    if (!m_childMap)
        return nullptr;
    const auto found = m_childMap->find(nodeId);
    return found == m_childMap->end() ? nullptr : *found;
}

void QlumAddressSpaceNode::appendChild(std::unique_ptr<QlumAddressSpaceNode> child)
{
    if (!m_childMap)
        m_childMap = std::make_unique<ChildMap>();
    m_childMap->insert(child.get());
    QlumTreeNode::appendChild(std::move(child));
}

void QlumAddressSpaceNode::reserveChildren(int count)
{
    QlumTreeNode::reserveChildren(count);
    if (!m_childMap)
        m_childMap = std::make_unique<ChildMap>();
    const auto buckets = static_cast<double>(m_childMap->bucket_count());
    if (static_cast<double>(count) > buckets * m_childMap->max_load_factor())
        m_childMap->reserve(children().capacity());
}

void QlumAddressSpaceNode::clearChildren()
{
    m_childMap.reset();
    QlumTreeNode::clearChildren();
    m_browsed = false;
}

void QlumAddressSpaceNode::translateIds(const NamespaceMap& namespaces)
{
    translate(m_nodeId, namespaces);
    translate(m_typeDefinition, namespaces);
}

std::vector<int> QlumAddressSpaceNode::translateChildren(const NamespaceMap& namespaces)
{
    std::vector<int> lost;
    if (!m_childMap)
        return lost;
    m_childMap->clear(); // before the ids change by which it finds them
    for (const auto& child : children()) {
        child->translateIds(namespaces);
        if (child->nodeId().isNull() || !m_childMap->insert(child.get()).second)
            lost.push_back(child->row());
    }
    return lost;
}
