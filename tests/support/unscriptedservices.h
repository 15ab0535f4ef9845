// A server that knows no service but has the types that a test gives it: what a scripted one builds on.
#pragma once
#include <app/api/qlumservertypes.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uanamespacezero.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/uasession.h>

#include <QString>
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

class UnscriptedServices : public QlumSessionServices, public UaDataTypeDictionary, private QlumServerTypes
{
public:
    std::map<UaNodeId, UaEnumDefinition> enums;
    std::map<UaNodeId, UaStructureDefinition> structures;
    std::function<bool()>
        typesHaveCome; ///< whether those maps are filled; unless null, asked by who waits for it

    /// As if somebody had asked for the name of the type already.
    void setTypeName(const UaNodeId& id, const QString& name)
    {
        const std::lock_guard lock(m_namesMutex);
        m_names[id] = name;
    }
    /// As a server's node does for a new session.
    void forgetTypeNames()
    {
        const std::lock_guard lock(m_namesMutex);
        m_names.clear();
    }

    bool isConnected() const override { return true; }
    UaClientSdk::OperationLimits operationLimits() const override { return {}; }
    UaStringArray namespaceTable() const override { return {}; }
    UaNodeId sessionId() const override { return {}; }
    UaDataTypeDictionary* dataTypeDictionary() override { return this; }
    bool waitForDataTypes(OpcUa_UInt32) const override { return !typesHaveCome || typesHaveCome(); }
    QlumServerTypes* types() override { return this; }
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

    DefinitionType definitionType(const UaNodeId&) override { return UndefinedType; }
    UaStructureDefinition structureDefinition(const UaNodeId& id) override { return structures[id]; }
    UaEnumDefinition enumDefinition(const UaNodeId& id) override { return enums[id]; }
    UaOptionSetDefinition optionSetDefinition(const UaNodeId&) override { return {}; }

private:
    QString typeName(const UaNodeId& id, bool) override
    {
        if (const auto known = knownTypeName(id))
            return *known;
        UaReadValueIds nodes(1);
        EXPECT_TRUE(OpcUa_IsGood(id.copyTo(&nodes[0].NodeId)));
        nodes[0].AttributeId = OpcUa_Attributes_DisplayName;
        UaDataValues values;
        Settings settings;
        if (read(settings, 0, OpcUa_TimestampsToReturn_Neither, nodes, values).isBad())
            return {};
        const QString name = toQString(UaVariant(values[0].Value).toLocalizedText().text());
        setTypeName(id, name);
        return name;
    }
    std::optional<QString> knownTypeName(const UaNodeId& id) const override
    {
        const std::lock_guard lock(m_namesMutex);
        const auto found = m_names.find(id);
        return found == m_names.end() ? std::nullopt : std::optional(found->second);
    }
    UaEnumDefinition getEnumDefinition(const UaNodeId* id) override { return enumDefinition(*id); }
    bool isEnum(const UaNodeId* id) override { return !enumDefinition(*id).isNull(); }
    OpcUa_BuiltInType builtInType(const UaNodeId& id) override { return uaNamespaceZeroBuiltInType(id); }
    std::vector<UaNodeId> concreteTypes(const UaNodeId& id) override { return {id}; }
    UaStatus readDataTypeId(const UaNodeId&, UaNodeId*, int*, UaUInt32Array*, QString*,
                            UaLocalizedText*) override
    {
        return unsupported();
    }

    static UaStatus unsupported() { return UaStatus(OpcUa_BadServiceUnsupported); }

    mutable std::mutex m_namesMutex;
    std::map<UaNodeId, QString> m_names;
};
