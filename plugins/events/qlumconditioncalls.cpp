#include <plugins/events/qlumconditioncalls.h>

#include <app/api/qlumcalltimeout.h>
#include <app/api/qlumsettings.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/methodcall.h>

#include <QCoreApplication>

#include <initializer_list>
#include <vector>

namespace {
class CallTexts
{
    Q_DECLARE_TR_FUNCTIONS(QlumConditionCalls)
};

UaStatus callMethod(QlumSessionServices* services, const QString& purpose, const UaClientSdk::CallIn& in)
{
    if (!services)
        return UaStatus(OpcUa_BadServerNotConnected);
    UaClientSdk::ServiceSettings settings = qlumServiceSettings(purpose);
    UaClientSdk::CallOut out;
    const UaStatus status = services->call(settings, in, out);
    return status.isBad() ? status : out.callResult;
}

// The nodes at the ends of paths of the standard's names; null where there is none.
std::vector<UaNodeId> follow(QlumSessionServices& services, const UaNodeId& start,
                             std::initializer_list<std::initializer_list<const char*>> wanted)
{
    UaBrowsePaths paths(static_cast<OpcUa_UInt32>(wanted.size()));
    OpcUa_UInt32 place = 0;
    for (const auto& names : wanted) {
        UaRelativePathElements elements(static_cast<OpcUa_UInt32>(names.size()));
        OpcUa_UInt32 i = 0;
        for (const char* const name : names) {
            static_cast<void>(UaNodeId(OpcUaId_HierarchicalReferences).copyTo(&elements[i].ReferenceTypeId));
            elements[i].IncludeSubtypes = OpcUa_True;
            static_cast<void>(UaQualifiedName(UaString(name), 0).copyTo(&elements[i++].TargetName));
        }
        static_cast<void>(start.copyTo(&paths[place].StartingNode)); // else null, below which nothing is
        elements.detach(&paths[place].RelativePath.NoOfElements, &paths[place].RelativePath.Elements);
        ++place;
    }
    std::vector<UaNodeId> found(wanted.size());
    UaClientSdk::ServiceSettings settings = qlumServiceSettings(CallTexts::tr("Shelving an alarm"));
    UaBrowsePathResults results;
    if (!services.translateBrowsePathsToNodeIds(settings, paths, results).isGood())
        return found;
    for (OpcUa_UInt32 i = 0; i < results.length() && i < found.size(); ++i)
        if (OpcUa_IsGood(results[i].StatusCode) && results[i].NoOfTargets > 0)
            found[i] = UaNodeId(results[i].Targets[0].TargetId.NodeId);
    return found;
}
} // namespace

UaStatus qlumCallCondition(QlumSessionServices* services, const QString& purpose, const UaNodeId& conditionId,
                           OpcUa_UInt32 methodId, const UaVariantArray& arguments)
{
    return callMethod(services, purpose, {conditionId, UaNodeId(methodId), arguments});
}

UaVariantArray qlumCommentArguments(const UaByteString& eventId, const QString& comment)
{
    const UaLocalizedText text(toUaString(QlumSettings::localeId.value()), toUaString(comment));
    UaVariantArray arguments(2u);
    static_cast<void>(UaVariant(eventId).copyTo(&arguments[0])); // else null, which the server refuses
    static_cast<void>(UaVariant(text).copyTo(&arguments[1]));
    return arguments;
}

UaStatus qlumShelve(QlumSessionServices* services, const UaNodeId& conditionId, QlumShelving how,
                    double milliseconds)
{
    const char* name = "Unshelve";
    OpcUa_UInt32 method = OpcUaId_ShelvedStateMachineType_Unshelve;
    UaVariantArray arguments;
    if (how == QlumShelving::Timed) {
        name = "TimedShelve";
        method = OpcUaId_ShelvedStateMachineType_TimedShelve;
        arguments = UaVariantArray(1u);
        static_cast<void>(UaVariant(milliseconds).copyTo(&arguments[0]));
    } else if (how == QlumShelving::OneShot) {
        name = "OneShotShelve";
        method = OpcUaId_ShelvedStateMachineType_OneShotShelve;
    }
    UaClientSdk::CallIn in{conditionId, UaNodeId(method), arguments};
    if (services) {
        const std::vector<UaNodeId> found =
            follow(*services, conditionId, {{"ShelvingState"}, {"ShelvingState", name}});
        if (!found[0].isNull() && !found[1].isNull()) {
            in.objectId = found[0];
            in.methodId = found[1];
        }
    }
    return callMethod(services, CallTexts::tr("Shelving an alarm"), in);
}
