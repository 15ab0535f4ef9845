// A server that knows no service: what a scripted one builds on.
#pragma once
#include <app/api/qlumservertypes.h>
#include <app/api/qlumsessionservices.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/uasession.h>

#include <memory>

class UnscriptedServices : public QlumSessionServices
{
public:
    bool isConnected() const override { return true; }
    UaClientSdk::OperationLimits operationLimits() const override { return {}; }
    UaStringArray namespaceTable() const override { return {}; }
    UaNodeId sessionId() const override { return {}; }
    QlumServerTypes* types() override { return nullptr; }
    std::shared_ptr<UaClientSdk::UaSession> session() const override { return nullptr; }

    UaStatus read(Settings&, double, OpcUa_TimestampsToReturn, const UaReadValueIds&, UaDataValues&) override
    {
        return unsupported();
    }
    UaStatus write(Settings&, const UaWriteValues&, UaStatusCodeArray&) override { return unsupported(); }
    UaStatus call(Settings&, const UaClientSdk::CallIn&, UaClientSdk::CallOut&) override
    {
        return unsupported();
    }
    UaStatus callList(Settings&, const UaCallMethodRequests&, UaCallMethodResults&) override
    {
        return unsupported();
    }
    UaStatus getMethodArguments(Settings&, const UaNodeId&, UaArguments&, UaArguments&) override
    {
        return unsupported();
    }
    UaStatus browse(Settings&, const UaNodeId&, const UaClientSdk::BrowseContext&, UaByteString&,
                    UaReferenceDescriptions&) override
    {
        return unsupported();
    }
    UaStatus browseNext(Settings&, bool, UaByteString&, UaReferenceDescriptions&) override
    {
        return unsupported();
    }
    UaStatus browseList(Settings&, const UaNodeId&, OpcUa_UInt32, const UaBrowseDescriptions&,
                        UaBrowseResults&) override
    {
        return unsupported();
    }
    UaStatus browseListNext(Settings&, bool, const UaByteStringArray&, UaBrowseResults&) override
    {
        return unsupported();
    }
    UaStatus translateBrowsePathsToNodeIds(Settings&, const UaBrowsePaths&, UaBrowsePathResults&) override
    {
        return unsupported();
    }
    UaStatus registerNodes(Settings&, const UaNodeIdArray&, UaNodeIdArray&) override { return unsupported(); }
    UaStatus unregisterNodes(Settings&, const UaNodeIdArray&) override { return unsupported(); }
    UaStatus addNodes(Settings&, const UaAddNodesItems&, UaAddNodesResults&) override
    {
        return unsupported();
    }
    UaStatus addReferences(Settings&, const UaAddReferencesItems&, UaStatusCodeArray&) override
    {
        return unsupported();
    }
    UaStatus deleteNodes(Settings&, const UaDeleteNodesItems&, UaStatusCodeArray&) override
    {
        return unsupported();
    }
    UaStatus deleteReferences(Settings&, const UaDeleteReferencesItems&, UaStatusCodeArray&) override
    {
        return unsupported();
    }
    UaStatus historyReadRawModified(Settings&, const UaClientSdk::HistoryReadRawModifiedContext&,
                                    const UaHistoryReadValueIds&,
                                    UaClientSdk::HistoryReadDataResults&) override
    {
        return unsupported();
    }
    UaStatus historyReadProcessed(Settings&, const UaClientSdk::HistoryReadProcessedContext&,
                                  const UaHistoryReadValueIds&, UaClientSdk::HistoryReadDataResults&) override
    {
        return unsupported();
    }
    UaStatus historyReadAtTime(Settings&, const UaClientSdk::HistoryReadAtTimeContext&,
                               const UaHistoryReadValueIds&, UaClientSdk::HistoryReadDataResults&) override
    {
        return unsupported();
    }
    UaStatus historyReadEvent(Settings&, const UaClientSdk::HistoryReadEventContext&,
                              const UaHistoryReadValueIds&, UaClientSdk::HistoryReadEventResults&) override
    {
        return unsupported();
    }
    UaStatus historyUpdateData(Settings&, const UaUpdateDataDetailsArray&, UaHistoryUpdateResults&) override
    {
        return unsupported();
    }
    UaStatus historyUpdateEvents(Settings&, const UaUpdateEventDetailsArray&,
                                 UaHistoryUpdateResults&) override
    {
        return unsupported();
    }
    UaStatus historyDeleteRawModified(Settings&, const UaDeleteRawModifiedDetailsArray&,
                                      UaHistoryUpdateResults&) override
    {
        return unsupported();
    }
    UaStatus historyDeleteAtTime(Settings&, const UaDeleteAtTimeDetailsArray&,
                                 UaHistoryUpdateResults&) override
    {
        return unsupported();
    }
    UaStatus historyDeleteEvents(Settings&, const UaDeleteEventDetailsArray&,
                                 UaHistoryUpdateResults&) override
    {
        return unsupported();
    }
    UaStatus queryFirst(Settings&, const UaClientSdk::QueryContext&, const UaNodeTypeDescriptions&,
                        UaQueryDataSets&, UaByteString&, UaClientSdk::QueryFindings&) override
    {
        return unsupported();
    }
    UaStatus queryNext(Settings&, bool, UaByteString&, UaQueryDataSets&) override { return unsupported(); }
    UaStatus cancel(Settings&, OpcUa_UInt32, OpcUa_UInt32&) override { return unsupported(); }

private:
    static UaStatus unsupported() { return UaStatus(OpcUa_BadServiceUnsupported); }
};
