// Members of UaSession about methods; declared in uasession.h, which has too many for one source.
#include <uaclientsdk/session/uasession_p.h>

#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/generated/servicetraits.h>
#include <uaclientsdk/services/asyncblockservice.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>

#include <array>
#include <span>

namespace UaClientSdk {

namespace {

// Both forms are completed alike.
constexpr BlockService<Services::Call> callService(const char* method)
{
    BlockService<Services::Call> service =
        keepingService<Services::Call>(SplitService::Call, "Empty call array passed");
    service.names.method = method;
    return service;
}

const auto singleCallService = callService("call");
const auto listCallService = callService("callList");

// Borrowed from callIn.
OpcUa_CallMethodRequest requestOf(const CallIn& callIn)
{
    return {*callIn.objectId.get(), *callIn.methodId.get(),
            static_cast<OpcUa_Int32>(callIn.inputArguments.length()),
            const_cast<OpcUa_Variant*>(callIn.inputArguments.rawData())};
}

CallOut takeResult(UaCallMethodResults& results)
{
    CallOut callOut;
    if (!results.isEmpty()) {
        OpcUa_CallMethodResult& result = results[0];
        callOut.callResult = UaStatus(result.StatusCode);
        callOut.inputArgumentResults.attachFrom(&result.NoOfInputArgumentResults,
                                                &result.InputArgumentResults);
        callOut.inputArgumentDiagnosticInfos.attachFrom(&result.NoOfInputArgumentDiagnosticInfos,
                                                        &result.InputArgumentDiagnosticInfos);
        callOut.outputArguments.attachFrom(&result.NoOfOutputArguments, &result.OutputArguments);
    }
    return callOut;
}

// ---- getMethodArguments

constexpr std::array<const char*, 2> argumentProperties = {"InputArguments", "OutputArguments"};

UaBrowsePaths pathsToArguments(const UaNodeId& methodId)
{
    UaBrowsePaths paths(static_cast<OpcUa_UInt32>(argumentProperties.size()));
    for (OpcUa_UInt32 i = 0; i < paths.length(); ++i) {
        UaRelativePathElements elements(1u);
        elements[0].ReferenceTypeId.Identifier.Numeric = OpcUaId_HasProperty;
        elements[0].IncludeSubtypes = OpcUa_True;
        // what there is no memory for stays null, and the server refuses the path
        static_cast<void>(UaString(argumentProperties[i]).copyTo(&elements[0].TargetName.Name));
        static_cast<void>(methodId.copyTo(&paths[i].StartingNode));
        elements.detach(&paths[i].RelativePath.NoOfElements, &paths[i].RelativePath.Elements);
    }
    return paths;
}

// The node that a path led to; null without a match.
UaStatus targetOf(const OpcUa_BrowsePathResult& result, UaNodeId& target)
{
    if (result.StatusCode == OpcUa_BadNoMatch)
        return UaStatus(); // a method without such arguments
    if (OpcUa_IsBad(result.StatusCode))
        return UaStatus(result.StatusCode);
    constexpr OpcUa_UInt32 wholePath = 0xFFFFFFFFu;
    for (OpcUa_Int32 i = 0; i < result.NoOfTargets && target.isNull(); ++i) {
        const OpcUa_BrowsePathTarget& found = result.Targets[i];
        if (found.RemainingPathIndex == wholePath && found.TargetId.ServerIndex == 0)
            target = UaNodeId(found.TargetId.NodeId);
    }
    return UaStatus();
}

// The properties that a method has, and where their values go.
struct ArgumentNodes
{
    UaReadValueIds nodes;
    std::array<UaArguments*, argumentProperties.size()> targets{};

    UaStatus take(const UaBrowsePathResults& found,
                  const std::array<UaArguments*, argumentProperties.size()>& arguments)
    {
        for (OpcUa_UInt32 i = 0; i < found.length(); ++i) {
            UaNodeId property;
            const UaStatus status = targetOf(found[i], property);
            if (status.isBad())
                return status;
            const OpcUa_UInt32 place = nodes.length();
            if (property.isNull())
                continue;
            if (!nodes.resize(place + 1))
                return UaStatus(OpcUa_BadOutOfMemory);
            if (OpcUa_IsBad(property.copyTo(&nodes[place].NodeId)))
                return UaStatus(OpcUa_BadOutOfMemory);
            nodes[place].AttributeId = OpcUa_Attributes_Value;
            targets[place] = arguments[i];
        }
        return UaStatus();
    }
};

UaStatus argumentsOf(const OpcUa_DataValue& value, UaArguments& arguments)
{
    if (OpcUa_IsBad(value.StatusCode))
        return UaStatus(value.StatusCode);
    const OpcUa_Variant& variant = value.Value;
    if (variant.Datatype == OpcUaType_Null)
        return UaStatus();
    if (variant.Datatype != OpcUaType_ExtensionObject || variant.ArrayType != OpcUa_VariantArrayType_Array)
        return UaStatus(OpcUa_BadTypeMismatch);
    const auto* objects = static_cast<const OpcUa_ExtensionObject*>(variant.Value.Array.Data);
    for (OpcUa_Int32 i = 0; i < variant.Value.Array.Length; ++i) {
        const bool decoded = objects[i].Encoding == OpcUa_ExtensionObjectEncoding_EncodeableObject &&
                             objects[i].Body.EncodeableObject.Type == &OpcUa_Argument_EncodeableType;
        if (!decoded)
            return UaStatus(OpcUa_BadTypeMismatch);
        if (!arguments.append(*static_cast<const OpcUa_Argument*>(objects[i].Body.EncodeableObject.Object)))
            return UaStatus(OpcUa_BadOutOfMemory);
    }
    return UaStatus();
}

} // namespace

UaStatus UaSession::call(ServiceSettings& settings, const CallIn& callIn, CallOut& callOut)
{
    const OpcUa_CallMethodRequest request = requestOf(callIn);
    UaCallMethodResults results;
    UaDiagnosticInfos diagnosticInfos;
    const UaStatus status = callInBlocks(d->context, singleCallService, settings, std::span(&request, 1),
                                         results, diagnosticInfos);
    callOut = takeResult(results);
    return status;
}

UaStatus UaSession::beginCall(ServiceSettings& settings, const CallIn& callIn, OpcUa_UInt32 transactionId)
{
    const OpcUa_CallMethodRequest request = requestOf(callIn);
    return beginInBlocks(d->context, singleCallService, settings, std::span(&request, 1), NothingToPrepare(),
                         [transactionId](UaSessionCallback& callback, const UaStatus& status,
                                         UaCallMethodResults& results, UaDiagnosticInfos&) {
                             CallOut callOut = takeResult(results);
                             callback.callComplete(transactionId, status, callOut);
                         });
}

UaStatus UaSession::callList(ServiceSettings& settings, const UaCallMethodRequests& requests,
                             UaCallMethodResults& results, UaDiagnosticInfos& diagnosticInfos)
{
    return callInBlocks(d->context, listCallService, settings, requests.span(), results, diagnosticInfos);
}

UaStatus UaSession::getMethodArguments(ServiceSettings& settings, const UaNodeId& methodId,
                                       UaArguments& inputArguments, UaArguments& outputArguments)
{
    inputArguments.clear();
    outputArguments.clear();
    UaBrowsePathResults found;
    UaDiagnosticInfos diagnosticInfos;
    UaStatus status =
        translateBrowsePathsToNodeIds(settings, pathsToArguments(methodId), found, diagnosticInfos);
    ArgumentNodes wanted;
    if (!status.isBad())
        status = wanted.take(found, {&inputArguments, &outputArguments});
    if (status.isBad() || wanted.nodes.isEmpty())
        return status;
    UaDataValues values;
    status = read(settings, 0.0, OpcUa_TimestampsToReturn_Neither, wanted.nodes, values, diagnosticInfos);
    for (OpcUa_UInt32 i = 0; i < values.length() && !status.isBad(); ++i)
        status = argumentsOf(values[i], *wanted.targets[i]);
    if (status.isBad()) {
        inputArguments.clear();
        outputArguments.clear();
    }
    return status;
}

} // namespace UaClientSdk
