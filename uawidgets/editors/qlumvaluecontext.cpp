#include <uawidgets/editors/qlumvaluecontext.h>

#include <app/api/qlumsettingscbinterface.h>
#include <app/api/qlumtext.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/values/uanodeid.h>

#include <QString>
#include <QVariant>

#include <vector>

namespace {
// the abstract types of numbers, which are sent as one of several built-in types
constexpr OpcUa_UInt32 numberId = 26;
constexpr OpcUa_UInt32 integerId = 27;
constexpr OpcUa_UInt32 unsignedIntegerId = 28;
} // namespace

UaOptionSetDefinition qlumOptionSetDefinition(const QlumValueContext& context)
{
    return context.dictionary && !context.dataType.isNull()
               ? context.dictionary->optionSetDefinition(context.dataType)
               : UaOptionSetDefinition();
}

std::vector<OpcUa_BuiltInType> qlumAllowedTypes(const QlumValueContext& context)
{
    if (context.builtInType != OpcUaType_Null && context.builtInType != OpcUaType_Variant)
        return {context.builtInType};
    if (context.dataType.isNumeric(integerId))
        return {OpcUaType_SByte, OpcUaType_Int16, OpcUaType_Int32, OpcUaType_Int64};
    if (context.dataType.isNumeric(unsignedIntegerId))
        return {OpcUaType_Byte, OpcUaType_UInt16, OpcUaType_UInt32, OpcUaType_UInt64};
    std::vector<OpcUa_BuiltInType> types;
    const bool isNumber = context.dataType.isNumeric(numberId);
    const int first = isNumber ? OpcUaType_SByte : OpcUaType_Boolean;
    const int last = isNumber ? OpcUaType_Double : OpcUaType_DiagnosticInfo;
    for (int type = first; type <= last; ++type)
        if (type != OpcUaType_Variant) // a variant holds no single variant
            types.push_back(static_cast<OpcUa_BuiltInType>(type));
    return types;
}

QString qlumDeclaredTypeName(const QlumValueContext& context)
{
    const QString name =
        context.typeName && !context.dataType.isNull() ? context.typeName(context.dataType) : QString();
    if (!name.isEmpty())
        return name;
    if (context.dataType.isNumeric(OpcUaType_Variant))
        return QStringLiteral("BaseDataType");
    if (context.dataType.isNumeric(numberId))
        return QStringLiteral("Number");
    if (context.dataType.isNumeric(integerId))
        return QStringLiteral("Integer");
    if (context.dataType.isNumeric(unsignedIntegerId))
        return QStringLiteral("UInteger");
    const bool isBuiltIn = context.dataType.isNull() || context.dataType.isNumeric(context.builtInType);
    if (!isBuiltIn)
        return toQString(context.dataType.toXmlString());
    return context.builtInType == OpcUaType_Null ? QString() : qlumBuiltinTypeName(context.builtInType);
}

QVariant qlumEditorSetting(const QlumValueContext& context, const QString& key, const QVariant& standard)
{
    void* store = context.settings ? context.settings->openSettingsStore() : nullptr;
    if (!store)
        return standard;
    QVariant value = context.settings->loadSetting(store, key);
    context.settings->closeSettingsStore(store);
    return value.isValid() && value.convert(standard.userType()) ? value : standard;
}

void qlumKeepEditorSetting(const QlumValueContext& context, const QString& key, const QVariant& value)
{
    void* store = context.settings ? context.settings->openSettingsStore() : nullptr;
    if (!store)
        return;
    context.settings->storeSetting(store, key, value);
    context.settings->closeSettingsStore(store);
}
