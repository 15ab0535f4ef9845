#include <app/api/qlumstructuretree.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumsecretfields.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_types.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>

#include <QCoreApplication>
#include <QLatin1String>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>
#include <utility>

namespace {
constexpr int maximumDepth = 20;
constexpr int maximumElements = 500;
constexpr int maximumFields = 20000;

const void* at(const void* object, std::size_t offset)
{
    return static_cast<const std::byte*>(object) + offset;
}

template <typename T>
const T& as(const void* object)
{
    return *static_cast<const T*>(object);
}

// Bytes of one element of a built-in type in an array.
std::size_t sizeOf(OpcUa_Byte kind)
{
    switch (kind) {
    case OpcUaType_Boolean:
    case OpcUaType_SByte:
    case OpcUaType_Byte:
        return 1;
    case OpcUaType_Int16:
    case OpcUaType_UInt16:
        return 2;
    case OpcUaType_Int32:
    case OpcUaType_UInt32:
    case OpcUaType_Float:
    case OpcUaType_StatusCode:
    case OpcUa_FieldKind_Enumeration:
        return 4;
    case OpcUaType_Int64:
    case OpcUaType_UInt64:
    case OpcUaType_Double:
    case OpcUaType_DateTime:
        return 8;
    case OpcUaType_Guid:
        return sizeof(OpcUa_Guid);
    case OpcUaType_String:
    case OpcUaType_ByteString:
    case OpcUaType_XmlElement:
        return sizeof(OpcUa_String);
    case OpcUaType_NodeId:
        return sizeof(OpcUa_NodeId);
    case OpcUaType_ExpandedNodeId:
        return sizeof(OpcUa_ExpandedNodeId);
    case OpcUaType_QualifiedName:
        return sizeof(OpcUa_QualifiedName);
    case OpcUaType_LocalizedText:
        return sizeof(OpcUa_LocalizedText);
    case OpcUaType_ExtensionObject:
        return sizeof(OpcUa_ExtensionObject);
    case OpcUaType_DataValue:
        return sizeof(OpcUa_DataValue);
    case OpcUaType_Variant:
        return sizeof(OpcUa_Variant);
    case OpcUaType_DiagnosticInfo:
        return sizeof(OpcUa_DiagnosticInfo);
    default:
        return 0;
    }
}

// The text of a scalar that lies somewhere, by way of a variant that borrows it.
QString builtInText(OpcUa_Byte kind, const void* value)
{
    OpcUa_Variant borrowed{};
    borrowed.Datatype = kind;
    switch (kind) {
    case OpcUaType_NodeId:
    case OpcUaType_ExpandedNodeId:
    case OpcUaType_QualifiedName:
    case OpcUaType_LocalizedText:
    case OpcUaType_ExtensionObject:
    case OpcUaType_DataValue:
    case OpcUaType_DiagnosticInfo:
        borrowed.Value.NodeId = const_cast<OpcUa_NodeId*>(static_cast<const OpcUa_NodeId*>(value));
        break;
    default:
        std::memcpy(&borrowed.Value, value, sizeOf(kind));
    }
    return qlumBlankedText(borrowed);
}

class Walk
{
public:
    explicit Walk(const QlumFieldContext& context) : m_context(context) {}

    QlumFieldText structure(const QString& name, const OpcUa_EncodeableType& type, const void* object,
                            int depth)
    {
        QlumFieldText node{name, QLatin1String(type.TypeName), {}, {}};
        if (!object || depth > maximumDepth || m_fields > maximumFields) {
            node.value = object ? QStringLiteral("...") : QString();
            return node;
        }
        if (&type == &OpcUa_CallMethodRequest_EncodeableType)
            return method(node, as<OpcUa_CallMethodRequest>(object), depth);
        const bool isSecretWrite = &type == &OpcUa_WriteValue_EncodeableType &&
                                   qlumIsSecretNode(as<OpcUa_WriteValue>(object).NodeId, m_context.note);
        for (OpcUa_UInt32 i = 0; i < type.FieldCount; ++i) {
            if (!isPresent(type, object, i))
                continue;
            const OpcUa_FieldDescriptor& field = type.Fields[i];
            const bool isSecret = isSecretWrite && std::string_view(field.Name) == "Value";
            node.children.push_back(this->field(field, object, isSecret, depth + 1));
        }
        return node;
    }

private:
    static bool isPresent(const OpcUa_EncodeableType& type, const void* object, OpcUa_UInt32 index)
    {
        if (type.IsUnion)
            return as<OpcUa_UInt32>(object) == index + 1;
        const OpcUa_UInt32 bit = OpcUa_UInt32{1} << (index % 32);
        if (!type.HasOptionalFields || !(type.OptionalMask & bit))
            return true;
        OpcUa_UInt32 place = 0;
        for (OpcUa_UInt32 i = 0; i < index; ++i)
            place += (type.OptionalMask >> (i % 32)) & 1u;
        return as<OpcUa_UInt32>(object) & (OpcUa_UInt32{1} << place);
    }

    QlumFieldText field(const OpcUa_FieldDescriptor& field, const void* object, bool isSecret, int depth)
    {
        const QString name = QLatin1String(field.Name);
        if (isSecret || qlumIsSecretName(field.Name)) {
            ++m_fields;
            return {name, typeName(field), qlumBlanked(), {}};
        }
        const void* place = at(object, field.Offset);
        if (!field.IsArray)
            return element(field, name, field.IsPointer ? as<const void*>(place) : place, depth);
        const auto count = as<OpcUa_Int32>(at(object, field.LengthOffset));
        QlumFieldText node{
            name, QStringLiteral("%1[%2]").arg(typeName(field)).arg(std::max(count, 0)), {}, {}};
        const void* elements = as<const void*>(place);
        for (OpcUa_Int32 i = 0; elements && i < count; ++i) {
            if (i >= maximumElements || m_fields > maximumFields) {
                node.children.push_back({QStringLiteral("..."), {}, {}, {}});
                break;
            }
            node.children.push_back(element(field, QStringLiteral("[%1]").arg(i),
                                            at(elements, static_cast<std::size_t>(i) * stride(field)),
                                            depth + 1));
        }
        return node;
    }

    static std::size_t stride(const OpcUa_FieldDescriptor& field)
    {
        return field.Kind == OpcUa_FieldKind_Structure ? field.StructureType->AllocationSize
                                                       : sizeOf(field.Kind);
    }

    static QString typeName(const OpcUa_FieldDescriptor& field)
    {
        if (field.Kind == OpcUa_FieldKind_Structure)
            return QLatin1String(field.StructureType->TypeName);
        if (const OpcUa_EnumeratedType* type = OpcUa_EnumeratedType_Find(field.DataTypeId))
            return QLatin1String(type->TypeName);
        return qlumBuiltinTypeName(field.Kind);
    }

    QlumFieldText element(const OpcUa_FieldDescriptor& field, const QString& name, const void* value,
                          int depth)
    {
        ++m_fields;
        QlumFieldText node{name, typeName(field), {}, {}};
        if (field.Kind == OpcUa_FieldKind_Structure)
            return structure(name, *field.StructureType, value, depth);
        if (!value)
            return node;
        if (field.Kind == OpcUaType_ExtensionObject)
            return extension(name, as<OpcUa_ExtensionObject>(value), depth);
        if (field.Kind == OpcUaType_Variant)
            return variant(name, as<OpcUa_Variant>(value), depth);
        if (field.Kind == OpcUaType_DataValue)
            return dataValue(name, as<OpcUa_DataValue>(value), depth);
        if (field.Kind == OpcUa_FieldKind_Enumeration || OpcUa_EnumeratedType_Find(field.DataTypeId))
            node.value = enumerated(field, value);
        else if (std::string_view(field.Name) == "AttributeId" && field.Kind == OpcUaType_UInt32)
            node.value = QStringLiteral("%1 (%2)")
                             .arg(QLatin1String(OpcUa_AttributeId_Name(as<OpcUa_UInt32>(value))))
                             .arg(as<OpcUa_UInt32>(value));
        else
            node.value = builtInText(field.Kind, value);
        return node;
    }

    static QString enumerated(const OpcUa_FieldDescriptor& field, const void* value)
    {
        if (field.Kind != OpcUa_FieldKind_Enumeration)
            return builtInText(field.Kind, value); // a mask
        const auto number = as<OpcUa_Int32>(value);
        const char* name = OpcUa_EnumValue_Name(field.DataTypeId, number);
        return name ? QStringLiteral("%1 (%2)").arg(QLatin1String(name)).arg(number)
                    : QString::number(number);
    }

    QlumFieldText extension(const QString& name, const OpcUa_ExtensionObject& object, int depth)
    {
        if (object.Encoding == OpcUa_ExtensionObjectEncoding_EncodeableObject)
            return structure(name, *object.Body.EncodeableObject.Type, object.Body.EncodeableObject.Object,
                             depth + 1);
        QlumFieldText node{name, QStringLiteral("ExtensionObject"), {}, {}};
        const QString type = toQString(UaExpandedNodeId(object.TypeId).toString());
        if (object.Encoding == OpcUa_ExtensionObjectEncoding_Binary)
            node.value = QCoreApplication::translate("QlumStructureTree", "%1, %n byte(s)", nullptr,
                                                     object.Body.Binary.Length)
                             .arg(type);
        else
            node.value = OpcUa_NodeId_IsNull(&object.TypeId.NodeId) ? QString() : type;
        return node;
    }

    QlumFieldText variant(const QString& name, const OpcUa_Variant& value, int depth)
    {
        const bool isScalar = value.ArrayType == OpcUa_VariantArrayType_Scalar;
        if (isScalar && value.Datatype == OpcUaType_ExtensionObject && value.Value.ExtensionObject)
            return extension(name, *value.Value.ExtensionObject, depth + 1);
        const QString type = qlumBuiltinTypeName(value.Datatype);
        return {name,
                isScalar ? type
                         : QStringLiteral("%1[%2]").arg(type).arg(std::max(value.Value.Array.Length, 0)),
                qlumBlankedText(value),
                {}};
    }

    QlumFieldText dataValue(const QString& name, const OpcUa_DataValue& value, int depth)
    {
        QlumFieldText node{name, QStringLiteral("DataValue"), {}, {}};
        node.children.push_back(variant(QStringLiteral("Value"), value.Value, depth));
        node.children.push_back({QStringLiteral("StatusCode"),
                                 QStringLiteral("StatusCode"),
                                 qlumStatusText(value.StatusCode),
                                 {}});
        node.children.push_back({QStringLiteral("SourceTimestamp"),
                                 QStringLiteral("DateTime"),
                                 builtInText(OpcUaType_DateTime, &value.SourceTimestamp),
                                 {}});
        node.children.push_back({QStringLiteral("ServerTimestamp"),
                                 QStringLiteral("DateTime"),
                                 builtInText(OpcUaType_DateTime, &value.ServerTimestamp),
                                 {}});
        return node;
    }

    QlumFieldText method(QlumFieldText node, const OpcUa_CallMethodRequest& request, int depth)
    {
        const auto id = QStringLiteral("NodeId");
        node.children.push_back(
            {QStringLiteral("ObjectId"), id, builtInText(OpcUaType_NodeId, &request.ObjectId), {}});
        node.children.push_back(
            {QStringLiteral("MethodId"), id, builtInText(OpcUaType_NodeId, &request.MethodId), {}});
        QlumFieldText arguments{QStringLiteral("InputArguments"),
                                QStringLiteral("Variant[%1]").arg(std::max(request.NoOfInputArguments, 0)),
                                {},
                                {}};
        for (OpcUa_Int32 i = 0; i < std::min(request.NoOfInputArguments, maximumElements); ++i) {
            arguments.children.push_back(
                variant(QStringLiteral("[%1]").arg(i), request.InputArguments[i], depth));
            if (qlumIsSecretArgument(request, i, m_context.purpose, m_context.note)) {
                arguments.children.back().children.clear();
                arguments.children.back().value = qlumBlanked();
            }
        }
        m_fields += static_cast<int>(arguments.children.size());
        node.children.push_back(std::move(arguments));
        return node;
    }

    const QlumFieldContext& m_context;
    int m_fields = 0;
};

void appendLeaves(const QlumFieldText& field, int maximumLength, QString& line)
{
    if (line.size() > maximumLength)
        return;
    if (!field.value.isEmpty()) {
        if (!line.isEmpty())
            line += QLatin1String(", ");
        line += field.name + QLatin1String(": ") + field.value;
    }
    for (const QlumFieldText& child : field.children)
        appendLeaves(child, maximumLength, line);
}
} // namespace

QlumFieldText qlumFieldTexts(const OpcUa_EncodeableType& type, const void* object,
                             const QlumFieldContext& context)
{
    return Walk(context).structure(QLatin1String(type.TypeName), type, object, 0);
}

QString qlumFieldLine(const QlumFieldText& field, int maximumLength)
{
    QString line;
    appendLeaves(field, maximumLength, line);
    return qlumCutText(line, maximumLength);
}
