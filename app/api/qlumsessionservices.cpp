#include <app/api/qlumsessionservices.h>

#include <app/api/qlumbyserver_p.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/uasession.h>

#include <memory>
#include <utility>

namespace {
using namespace UaClientSdk;

// Where a call puts the diagnostics that no tool asks for: alive until the end of the call's statement.
class Unwanted
{
public:
    operator UaDiagnosticInfos&() { return m_diagnostics; }

private:
    UaDiagnosticInfos m_diagnostics;
};

class UaSessionServices final : public QlumSessionServices
{
public:
    UaSessionServices(std::shared_ptr<UaSession> session, std::shared_ptr<QlumServerTypes> types)
        : m_session(std::move(session)), m_types(std::move(types))
    {
    }

    bool isConnected() const override { return m_session->isConnected(); }
    OperationLimits operationLimits() const override { return m_session->operationLimits(); }
    UaStringArray namespaceTable() const override { return m_session->getNamespaceTable(); }
    UaNodeId sessionId() const override { return m_session->sessionId(); }
    UaDataTypeDictionary* dataTypeDictionary() override { return m_session.get(); }
    bool waitForDataTypes(OpcUa_UInt32 timeout) const override
    {
        return m_session->waitForDataTypes(timeout);
    }
    QlumServerTypes* types() override { return m_types.get(); }
    std::shared_ptr<UaSession> session() const override { return m_session; }

    UaStatus read(ServiceSettings& settings, double maxAge, OpcUa_TimestampsToReturn timestampsToReturn,
                  const UaReadValueIds& nodesToRead, UaDataValues& values) override
    {
        return m_session->read(settings, maxAge, timestampsToReturn, nodesToRead, values, Unwanted());
    }
    UaStatus write(ServiceSettings& settings, const UaWriteValues& nodesToWrite,
                   UaStatusCodeArray& results) override
    {
        return m_session->write(settings, nodesToWrite, results, Unwanted());
    }
    UaStatus call(ServiceSettings& settings, const CallIn& callIn, CallOut& callOut) override
    {
        return m_session->call(settings, callIn, callOut);
    }
    UaStatus callList(ServiceSettings& settings, const UaCallMethodRequests& requests,
                      UaCallMethodResults& results) override
    {
        return m_session->callList(settings, requests, results, Unwanted());
    }
    UaStatus getMethodArguments(ServiceSettings& settings, const UaNodeId& methodId,
                                UaArguments& inputArguments, UaArguments& outputArguments) override
    {
        return m_session->getMethodArguments(settings, methodId, inputArguments, outputArguments);
    }
    UaStatus browse(ServiceSettings& settings, const UaNodeId& nodeToBrowse, const BrowseContext& context,
                    UaByteString& continuationPoint, UaReferenceDescriptions& references) override
    {
        return m_session->browse(settings, nodeToBrowse, context, continuationPoint, references);
    }
    UaStatus browseNext(ServiceSettings& settings, bool releaseContinuationPoint,
                        UaByteString& continuationPoint, UaReferenceDescriptions& references) override
    {
        return m_session->browseNext(settings, releaseContinuationPoint, continuationPoint, references);
    }
    UaStatus browseList(ServiceSettings& settings, const UaNodeId& viewId, OpcUa_UInt32 maximumReferences,
                        const UaBrowseDescriptions& nodesToBrowse, UaBrowseResults& results) override
    {
        return m_session->browseList(settings, viewId, maximumReferences, nodesToBrowse, results, Unwanted());
    }
    UaStatus browseListNext(ServiceSettings& settings, bool releaseContinuationPoints,
                            const UaByteStringArray& continuationPoints, UaBrowseResults& results) override
    {
        return m_session->browseListNext(settings, releaseContinuationPoints, continuationPoints, results,
                                         Unwanted());
    }
    UaStatus translateBrowsePathsToNodeIds(ServiceSettings& settings, const UaBrowsePaths& browsePaths,
                                           UaBrowsePathResults& results) override
    {
        return m_session->translateBrowsePathsToNodeIds(settings, browsePaths, results, Unwanted());
    }
    UaStatus registerNodes(ServiceSettings& settings, const UaNodeIdArray& nodesToRegister,
                           UaNodeIdArray& registeredNodes) override
    {
        return m_session->registerNodes(settings, nodesToRegister, registeredNodes);
    }
    UaStatus unregisterNodes(ServiceSettings& settings, const UaNodeIdArray& nodesToUnregister) override
    {
        return m_session->unregisterNodes(settings, nodesToUnregister);
    }
    UaStatus addNodes(ServiceSettings& settings, const UaAddNodesItems& nodesToAdd,
                      UaAddNodesResults& results) override
    {
        return m_session->addNodes(settings, nodesToAdd, results, Unwanted());
    }
    UaStatus addReferences(ServiceSettings& settings, const UaAddReferencesItems& referencesToAdd,
                           UaStatusCodeArray& results) override
    {
        return m_session->addReferences(settings, referencesToAdd, results, Unwanted());
    }
    UaStatus deleteNodes(ServiceSettings& settings, const UaDeleteNodesItems& nodesToDelete,
                         UaStatusCodeArray& results) override
    {
        return m_session->deleteNodes(settings, nodesToDelete, results, Unwanted());
    }
    UaStatus deleteReferences(ServiceSettings& settings, const UaDeleteReferencesItems& referencesToDelete,
                              UaStatusCodeArray& results) override
    {
        return m_session->deleteReferences(settings, referencesToDelete, results, Unwanted());
    }
    UaStatus historyReadRawModified(ServiceSettings& settings, const HistoryReadRawModifiedContext& context,
                                    const UaHistoryReadValueIds& nodesToRead,
                                    HistoryReadDataResults& results) override
    {
        return m_session->historyReadRawModified(settings, context, nodesToRead, results, Unwanted());
    }
    UaStatus historyReadProcessed(ServiceSettings& settings, const HistoryReadProcessedContext& context,
                                  const UaHistoryReadValueIds& nodesToRead,
                                  HistoryReadDataResults& results) override
    {
        return m_session->historyReadProcessed(settings, context, nodesToRead, results, Unwanted());
    }
    UaStatus historyReadAtTime(ServiceSettings& settings, const HistoryReadAtTimeContext& context,
                               const UaHistoryReadValueIds& nodesToRead,
                               HistoryReadDataResults& results) override
    {
        return m_session->historyReadAtTime(settings, context, nodesToRead, results, Unwanted());
    }
    UaStatus historyReadEvent(ServiceSettings& settings, const HistoryReadEventContext& context,
                              const UaHistoryReadValueIds& nodesToRead,
                              HistoryReadEventResults& results) override
    {
        return m_session->historyReadEvent(settings, context, nodesToRead, results, Unwanted());
    }
    UaStatus historyUpdateData(ServiceSettings& settings, const UaUpdateDataDetailsArray& details,
                               UaHistoryUpdateResults& results) override
    {
        return m_session->historyUpdateData(settings, details, results, Unwanted());
    }
    UaStatus historyUpdateEvents(ServiceSettings& settings, const UaUpdateEventDetailsArray& details,
                                 UaHistoryUpdateResults& results) override
    {
        return m_session->historyUpdateEvents(settings, details, results, Unwanted());
    }
    UaStatus historyDeleteRawModified(ServiceSettings& settings,
                                      const UaDeleteRawModifiedDetailsArray& details,
                                      UaHistoryUpdateResults& results) override
    {
        return m_session->historyDeleteRawModified(settings, details, results, Unwanted());
    }
    UaStatus historyDeleteAtTime(ServiceSettings& settings, const UaDeleteAtTimeDetailsArray& details,
                                 UaHistoryUpdateResults& results) override
    {
        return m_session->historyDeleteAtTime(settings, details, results, Unwanted());
    }
    UaStatus historyDeleteEvents(ServiceSettings& settings, const UaDeleteEventDetailsArray& details,
                                 UaHistoryUpdateResults& results) override
    {
        return m_session->historyDeleteEvents(settings, details, results, Unwanted());
    }
    UaStatus queryFirst(ServiceSettings& settings, const QueryContext& context,
                        const UaNodeTypeDescriptions& nodeTypes, UaQueryDataSets& dataSets,
                        UaByteString& continuationPoint, QueryFindings& findings) override
    {
        return m_session->queryFirst(settings, context, nodeTypes, dataSets, continuationPoint, findings);
    }
    UaStatus queryNext(ServiceSettings& settings, bool releaseContinuationPoint,
                       UaByteString& continuationPoint, UaQueryDataSets& dataSets) override
    {
        return m_session->queryNext(settings, releaseContinuationPoint, continuationPoint, dataSets);
    }
    UaStatus cancel(ServiceSettings& settings, OpcUa_UInt32 requestHandle, OpcUa_UInt32& cancelCount) override
    {
        return m_session->cancel(settings, requestHandle, cancelCount);
    }

private:
    const std::shared_ptr<UaSession> m_session;
    const std::shared_ptr<QlumServerTypes> m_types;
};

QlumByServer<QlumSessionServices>& registeredServices()
{
    static QlumByServer<QlumSessionServices> all;
    return all;
}
} // namespace

std::shared_ptr<QlumSessionServices> qlumServicesOf(std::shared_ptr<UaSession> session,
                                                    std::shared_ptr<QlumServerTypes> types)
{
    return session ? std::make_shared<UaSessionServices>(std::move(session), std::move(types)) : nullptr;
}

QlumServicesRegistration::QlumServicesRegistration(unsigned int serverId,
                                                   std::shared_ptr<QlumSessionServices> services)
    : m_serverId(serverId)
{
    registeredServices().put(serverId, std::move(services));
}

QlumServicesRegistration::~QlumServicesRegistration()
{
    registeredServices().remove(m_serverId);
}

QlumSessionServicesProvider qlumApplicationServices()
{
    return [](unsigned int serverId) { return registeredServices().find(serverId); };
}
