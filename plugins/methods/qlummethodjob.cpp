#include <plugins/methods/qlummethodjob.h>

#include <app/api/qlumjob.h>
#include <app/api/qlumservertypes.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/browsecontext.h>
#include <uaclientsdk/methodcall.h>
#include <uawidgets/editors/qlumcontextreader.h>
#include <uawidgets/editors/qlummethodarguments.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluefacts.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QString>

#include <algorithm>
#include <utility>
#include <vector>

namespace {
using Settings = QlumSessionServices::Settings;

constexpr OpcUa_UInt32 maximumOwners = 1000; // of a type, in a list to choose from

// In the order of the results.
enum Result {
    MethodClass,
    MethodName,
    MethodDescription,
    Executable,
    UserExecutable,
    OwnerClass,
    OwnerName,
    ResultCount
};

QString jobText(const char* text)
{
    return QCoreApplication::translate("QlumMethodJob", text);
}

UaReadValueIds nodesToRead(const UaNodeId& objectId, const UaNodeId& methodId)
{
    constexpr OpcUa_UInt32 attributes[ResultCount] = {
        OpcUa_Attributes_NodeClass,  OpcUa_Attributes_DisplayName,    OpcUa_Attributes_Description,
        OpcUa_Attributes_Executable, OpcUa_Attributes_UserExecutable, OpcUa_Attributes_NodeClass,
        OpcUa_Attributes_DisplayName};
    UaReadValueIds nodes(ResultCount);
    for (OpcUa_UInt32 i = 0; i < nodes.length(); ++i) {
        static_cast<void>((i < OwnerClass ? methodId : objectId).copyTo(&nodes[i].NodeId));
        nodes[i].AttributeId = attributes[i];
    }
    return nodes;
}

UaVariant valueOf(const UaDataValues& values, Result result)
{
    const OpcUa_DataValue& value = values[result];
    return OpcUa_IsBad(value.StatusCode) ? UaVariant() : UaVariant(value.Value);
}

QString textOf(const UaDataValues& values, Result result)
{
    return toQString(valueOf(values, result).toLocalizedText().text());
}

// A server that does not say so lets everybody call it.
bool isYes(const UaDataValues& values, Result result)
{
    const UaVariant value = valueOf(values, result);
    return value.type() != OpcUaType_Boolean || value.toBool();
}

std::vector<QlumMethodOwner> objectsOfType(QlumSessionServices& session, Settings settings,
                                           const UaNodeId& typeId)
{
    UaClientSdk::BrowseContext context;
    context.browseDirection = OpcUa_BrowseDirection_Inverse;
    context.referenceTypeId = UaNodeId(OpcUaId_HasTypeDefinition);
    context.resultMask = OpcUa_BrowseResultMask_DisplayName;
    UaByteString point;
    UaReferenceDescriptions found;
    std::vector<QlumMethodOwner> owners;
    UaStatus status = session.browse(settings, typeId, context, point, found);
    while (status.isGood()) {
        for (const OpcUa_ReferenceDescription& reference : found)
            owners.push_back({UaExpandedNodeId(reference.NodeId).nodeId(),
                              toQString(UaLocalizedText(reference.DisplayName).text())});
        if (point.length() <= 0)
            break;
        const bool isEnough = owners.size() >= maximumOwners;
        status = session.browseNext(settings, isEnough, point, found);
        if (isEnough)
            break;
    }
    return owners;
}

void readArguments(const std::shared_ptr<QlumSessionServices>& session, const QlumJob& job,
                   const UaNodeId& methodId, QlumMethodInfo& info, const QlumContextReader::Waiting& waiting)
{
    const UaStatus status = qlumReadArguments(session, job, methodId, info.inputs, info.outputs, waiting);
    if (status.isBad()) {
        const QString name = toQString(status.toString());
        info.argumentsFault = jobText("%1 (%2)").arg(qlumStatusWords(name), name);
    }
}
} // namespace

UaStatus qlumReadMethod(const std::shared_ptr<QlumSessionServices>& session, const QlumJob& job,
                        const UaNodeId& objectId, const UaNodeId& methodId, QlumMethodInfo& info,
                        const QlumContextReader::Waiting& waiting)
{
    Settings own = job.serviceSettings();
    UaDataValues values;
    const UaStatus status =
        session->read(own, 0, OpcUa_TimestampsToReturn_Neither, nodesToRead(objectId, methodId), values);
    if (status.isBad() || values.length() != ResultCount)
        return status.isBad() ? status : UaStatus(OpcUa_BadUnknownResponse);
    if (OpcUa_IsBad(values[MethodClass].StatusCode))
        return UaStatus(values[MethodClass].StatusCode);
    if (valueOf(values, MethodClass).toInt32() != OpcUa_NodeClass_Method)
        return UaStatus(OpcUa_BadMethodInvalid);
    info.name = textOf(values, MethodName);
    info.description = textOf(values, MethodDescription);
    info.isExecutable = isYes(values, Executable) && isYes(values, UserExecutable);
    info.isOfType = valueOf(values, OwnerClass).toInt32() == OpcUa_NodeClass_ObjectType;
    if (info.isOfType)
        info.owners = objectsOfType(*session, own, objectId);
    else
        info.owners.push_back({objectId, textOf(values, OwnerName)});
    readArguments(session, job, methodId, info, waiting);
    return status;
}

// ---- calling

namespace {
UaVariantArray variantsOf(const std::vector<UaVariant>& values)
{
    UaVariantArray array(static_cast<OpcUa_UInt32>(values.size()));
    for (OpcUa_UInt32 i = 0; i < array.length(); ++i)
        static_cast<void>(values[i].copyTo(&array[i]));
    return array;
}

// What came is shown, whatever was declared: a value of another type than declared would find no editor.
QlumMethodArguments argumentsFor(const std::vector<UaVariant>& values, const QlumMethodArguments& declared,
                                 QlumContextReader& reader)
{
    QlumMethodArguments arguments;
    for (std::size_t i = 0; i < values.size(); ++i) {
        reader.learn(values[i]);
        QlumValueFacts facts;
        if (i < declared.size())
            facts.dataType = declared[i].context.dataType;
        facts.valueRank =
            values[i].isScalar() ? -1 : static_cast<OpcUa_Int32>(values[i].dimensions().length());
        QlumValueContext context = reader.of(facts);
        if (context.builtInType != values[i].type() && !values[i].isNull()) {
            context.dataType = UaNodeId();
            context.builtInType = values[i].type();
        }
        QlumMethodArgument argument;
        if (i < declared.size())
            argument = declared[i];
        else
            argument.name = jobText("Output %1 (not declared)").arg(i + 1);
        argument.context = context;
        arguments.push_back(std::move(argument));
    }
    return arguments;
}
} // namespace

void qlumCallMethod(const std::shared_ptr<QlumSessionServices>& session, const QlumJob& job,
                    const QlumMethodArguments& declared, QlumMethodCall& call,
                    const QlumContextReader::Waiting& waiting)
{
    Settings own = job.serviceSettings();
    own.callTimeout = call.timeout;
    own.requestHandle = call.requestHandle;
    UaClientSdk::CallIn in;
    in.objectId = call.objectId;
    in.methodId = call.methodId;
    in.inputArguments = variantsOf(call.inputs);
    UaClientSdk::CallOut out;
    call.begun = QDateTime::currentDateTime();
    QElapsedTimer timer;
    timer.start();
    call.service = session->call(own, in, out);
    call.milliseconds = timer.elapsed();
    if (call.service.isBad())
        return;
    call.result = UaStatusCode(out.callResult.code());
    call.inputResults.assign(out.inputArgumentResults.begin(), out.inputArgumentResults.end());
    for (const OpcUa_Variant& output : out.outputArguments)
        call.outputs.emplace_back(output);
    QlumContextReader reader(session, job, waiting);
    call.outputArguments = argumentsFor(call.outputs, declared, reader);
}
