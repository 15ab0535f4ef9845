#include <uawidgets/editors/qlumdefaultvalue.h>

#include <opcua/opcua_statuscodes.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uagenericunionvalue.h>
#include <uabase/structures/uanamespacezero.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uaguid.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastatuscode.h>

#include <algorithm>

namespace {
UaStructureDefinition structureOf(const QlumValueContext& context)
{
    return context.dictionary ? context.dictionary->structureDefinition(context.dataType)
                              : uaNamespaceZeroStructure(context.dataType);
}

UaVariant defaultStructure(const QlumValueContext& context)
{
    const UaStructureDefinition definition = structureOf(context);
    UaExtensionObject object;
    UaVariant value;
    if (definition.isNull())
        return value;
    const UaStatusCode status =
        definition.isUnion() ? UaGenericUnionValue(definition).encode(object)
                             : UaGenericStructureValue(definition, context.dictionary.get()).encode(object);
    if (status.isNotBad())
        value.setExtensionObject(object);
    return value;
}

UaVariant defaultNumber(const QlumValueContext& context)
{
    const bool isOptionSet =
        context.dictionary && !context.dictionary->optionSetDefinition(context.dataType).isNull();
    const UaEnumDefinition names = context.dictionary ? context.dictionary->enumDefinition(context.dataType)
                                                      : uaNamespaceZeroEnum(context.dataType);
    UaVariant value(names.valueCount() > 0 && !isOptionSet ? names.valueAt(0).value : OpcUa_Int64{0});
    return value.changeType(context.builtInType, false).isNotBad() ? value : UaVariant();
}

UaVariant defaultScalar(const QlumValueContext& context)
{
    switch (context.builtInType) {
    case OpcUaType_String:
        return UaVariant("");
    case OpcUaType_DateTime:
        return UaVariant(UaDateTime::now());
    case OpcUaType_Guid:
        return UaVariant(UaGuid());
    case OpcUaType_ByteString:
        return UaVariant(UaByteString());
    case OpcUaType_NodeId:
        return UaVariant(UaNodeId());
    case OpcUaType_ExpandedNodeId:
        return UaVariant(UaExpandedNodeId());
    case OpcUaType_StatusCode:
        return UaVariant(UaStatusCode());
    case OpcUaType_QualifiedName:
        return UaVariant(UaQualifiedName());
    case OpcUaType_LocalizedText:
        return UaVariant(UaLocalizedText());
    case OpcUaType_ExtensionObject:
        return defaultStructure(context);
    default:
        return context.builtInType >= OpcUaType_Boolean && context.builtInType <= OpcUaType_Double
                   ? defaultNumber(context)
                   : UaVariant();
    }
}
} // namespace

UaVariant qlumDefaultValue(const QlumValueContext& context)
{
    if (context.valueRank < 0)
        return defaultScalar(context);
    UaVariant value;
    if (context.valueRank <= 1 && context.builtInType != OpcUaType_Null)
        static_cast<void>(
            value.setArray(context.builtInType, 0, nullptr)); // what fails leaves the null value
    return value;
}
