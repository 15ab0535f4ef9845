#include <uawidgets/qlumnodelook.h>

#include <QCoreApplication>
#include <QHash>

namespace {
constexpr OpcUa_UInt32 folderType = 61;
constexpr OpcUa_UInt32 propertyType = 68;

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

QIcon qlumNodeIcon(OpcUa_UInt32 nodeClass, const UaNodeId& typeDefinition)
{
    switch (nodeClass) {
    case OpcUa_NodeClass_Unspecified:
        return sharedIcon(":/images/clearlog.png");
    case OpcUa_NodeClass_Object:
        return sharedIcon(typeDefinition.isNumeric(folderType) ? ":/images/treefolder.png"
                                                               : ":/images/object.png");
    case OpcUa_NodeClass_Variable:
        return sharedIcon(typeDefinition.isNumeric(propertyType) ? ":/images/property.png"
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

QString qlumNodeClassText(OpcUa_Int32 nodeClass)
{
    switch (nodeClass) {
    case OpcUa_NodeClass_Object:
        return QStringLiteral("Object");
    case OpcUa_NodeClass_Variable:
        return QStringLiteral("Variable");
    case OpcUa_NodeClass_Method:
        return QStringLiteral("Method");
    case OpcUa_NodeClass_ObjectType:
        return QStringLiteral("ObjectType");
    case OpcUa_NodeClass_VariableType:
        return QStringLiteral("VariableType");
    case OpcUa_NodeClass_ReferenceType:
        return QStringLiteral("ReferenceType");
    case OpcUa_NodeClass_DataType:
        return QStringLiteral("DataType");
    case OpcUa_NodeClass_View:
        return QStringLiteral("View");
    default:
        return QStringLiteral("Invalid NodeClass");
    }
}
