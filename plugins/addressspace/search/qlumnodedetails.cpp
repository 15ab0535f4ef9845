#include <plugins/addressspace/search/qlumnodedetails.h>

#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/text/uavaluetext.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumcelltext.h>
#include <uawidgets/editors/qlumcontextreader.h>
#include <uawidgets/editors/qlumvaluecontext.h>

#include <QCoreApplication>

#include <utility>

namespace {
QString accessText(OpcUa_Byte level)
{
    const bool canRead = (level & OpcUa_AccessLevelType_CurrentRead) != 0;
    const bool canWrite = (level & OpcUa_AccessLevelType_CurrentWrite) != 0;
    const char* const words = canRead && canWrite ? QT_TRANSLATE_NOOP("QlumNodeDetails", "Read and write")
                              : canRead           ? QT_TRANSLATE_NOOP("QlumNodeDetails", "Read")
                              : canWrite          ? QT_TRANSLATE_NOOP("QlumNodeDetails", "Write")
                                                  : QT_TRANSLATE_NOOP("QlumNodeDetails", "None");
    return QCoreApplication::translate("QlumNodeDetails", words);
}

void take(OpcUa_UInt32 attributeId, const UaVariant& value, QlumNodeDetails& details)
{
    if (attributeId == OpcUa_Attributes_Description) {
        details.description = toQString(value.toLocalizedText().text());
        return;
    }
    const OpcUa_Byte level = value.toByte();
    details.isReadable = (level & OpcUa_AccessLevelType_CurrentRead) != 0;
    details.isWritable = (level & OpcUa_AccessLevelType_CurrentWrite) != 0;
    details.access = accessText(level);
}

UaStatus readAttributes(QlumJob& job, QlumSessionServices& session, std::span<const QlumAskedNode> nodes,
                        const QlumDetailsWish& wish, std::vector<QlumNodeDetails>& details)
{
    UaReadValueIds asked;
    std::vector<std::size_t> targets;
    const auto ask = [&](std::size_t i, OpcUa_UInt32 attributeId) {
        UaReadValueIds one(1);
        static_cast<void>(nodes[i].id.copyTo(&one[0].NodeId));
        one[0].AttributeId = attributeId;
        if (asked.appendMoved(std::move(one)))
            targets.push_back(i);
    };
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        if (wish.description)
            ask(i, OpcUa_Attributes_Description);
        if (wish.access && nodes[i].nodeClass == OpcUa_NodeClass_Variable)
            ask(i, OpcUa_Attributes_UserAccessLevel);
    }
    if (asked.isEmpty())
        return {};
    QlumSessionServices::Settings settings = job.serviceSettings();
    UaDataValues values;
    const UaStatus status = session.read(settings, 0, OpcUa_TimestampsToReturn_Neither, asked, values);
    if (status.isBad() || values.length() != asked.length())
        return status.isBad() ? status : UaStatus(OpcUa_BadUnknownResponse);
    for (OpcUa_UInt32 i = 0; i < values.length(); ++i)
        if (!OpcUa_IsBad(values[i].StatusCode))
            take(asked[i].AttributeId, UaVariant(values[i].Value), details[targets[i]]);
    return status;
}

void takeValue(const OpcUa_DataValue& value, const QlumValueContext& context, QlumNodeDetails& details)
{
    details.value = UaDataValue(value);
    if (OpcUa_IsBad(value.StatusCode))
        return;
    const UaVariant variant(value.Value);
    details.valueText = qlumCellText(variant, context);
    UaString json;
    if (UaValueText::toJson(variant, context.dictionary.get(), json).isGood())
        details.valueJson = toQString(json);
}
} // namespace

UaStatus qlumReadDetails(QlumJob& job, const std::shared_ptr<QlumSessionServices>& session,
                         std::span<const QlumAskedNode> nodes, const QlumDetailsWish& wish,
                         std::vector<QlumNodeDetails>& details)
{
    details.assign(nodes.size(), {});
    UaStatus status = readAttributes(job, *session, nodes, wish, details);
    if (status.isBad() || !(wish.typeAndUnit || wish.value))
        return status;
    std::vector<UaNodeId> variables;
    std::vector<std::size_t> targets;
    for (std::size_t i = 0; i < nodes.size(); ++i)
        if (nodes[i].nodeClass == OpcUa_NodeClass_Variable) {
            variables.push_back(nodes[i].id);
            targets.push_back(i);
        }
    if (variables.empty())
        return status;
    QlumContextReader reader(session, job);
    std::vector<QlumValueContext> contexts;
    UaDataValues values;
    status = reader.read(variables, contexts, wish.value ? &values : nullptr);
    for (std::size_t i = 0; i < contexts.size() && i < targets.size(); ++i) {
        QlumNodeDetails& target = details[targets[i]];
        target.dataType = qlumDeclaredTypeName(contexts[i]);
        target.unit = contexts[i].unit;
        if (i < values.length())
            takeValue(values[static_cast<OpcUa_UInt32>(i)], contexts[i], target);
    }
    return status;
}
