// A server's address space as a test or a benchmark states it, and the answers that follow from it: behind
// scripted services, behind a scripted stack, behind a real channel.
#pragma once
#include <opcua/opcua_encodeable.h>
#include <opcua/opcua_types.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// Any thread: the world may change while it is asked. Node ids of the standard's folders need no node.
class NodeTable
{
public:
    struct Argument
    {
        const char* name;
        UaNodeId dataType;
    };
    struct Method
    {
        std::vector<Argument> inputs;
        std::vector<Argument> outputs;
        /// The outputs have the declared number and are null; the result is the method's own.
        std::function<OpcUa_StatusCode(const UaVariantArray& inputs, UaVariantArray& outputs)> run;
    };
    using EventFields = std::map<std::string, UaVariant>; ///< by the last name of the browse path

    /// The services that can be told to fail.
    enum Service {
        Read,
        Write,
        Browse,
        Translate,
        Call,
        HistoryRead,
        HistoryUpdate,
        AddNodes, ///< of the parent
        DeleteNodes,
        AddReferences, ///< of the source
        DeleteReferences,
        RegisterNodes, ///< has no status of its nodes
        Query,         ///< of the type
        Cancel         ///< calls of it only
    };

    // ---- what there is
    /// Each node is organized by its parent; a null one leaves it alone.
    void object(const UaNodeId& id, const char* name, const UaNodeId& parent = UaNodeId(85),
                const UaNodeId& typeDefinition = UaNodeId(58));
    void variable(const UaNodeId& id, const char* name, const UaVariant& value,
                  const UaNodeId& parent = UaNodeId(85));
    void method(const UaNodeId& id, const char* name, const UaNodeId& object, Method method);
    /// Both directions.
    void reference(const UaNodeId& from, const UaNodeId& referenceType, const UaNodeId& to);
    void setAttribute(const UaNodeId& id, OpcUa_UInt32 attributeId, const UaDataValue& value);
    void setValue(const UaNodeId& id, const UaVariant& value);
    [[nodiscard]] UaVariant value(const UaNodeId& id) const;
    /// Raw values in the order of their source times.
    void history(const UaNodeId& id, std::vector<UaDataValue> values);
    /// What an aggregate of a node comes to, whatever the times.
    void processed(const UaNodeId& id, const UaNodeId& aggregate, std::vector<UaDataValue> values);
    void event(const UaNodeId& notifier, const UaDateTime& time, EventFields fields);
    /// What the history says of those who change it from now on.
    void historyIsChangedBy(const char* user, const UaDateTime& time);
    /// The node's own status in that service.
    void fail(Service service, const UaNodeId& id, OpcUa_StatusCode status);

    // ---- answers, one item each; what they are written to is initialized
    void read(const OpcUa_ReadValueId& node, OpcUa_DataValue& result) const;
    [[nodiscard]] OpcUa_StatusCode write(const OpcUa_WriteValue& value);
    /// maximumReferences 0: all.
    void browse(const OpcUa_BrowseDescription& node, OpcUa_UInt32 maximumReferences,
                OpcUa_BrowseResult& result);
    void browseNext(const OpcUa_ByteString& point, bool release, OpcUa_BrowseResult& result);
    void translate(const OpcUa_BrowsePath& path, OpcUa_BrowsePathResult& result) const;
    void call(const OpcUa_CallMethodRequest& request, OpcUa_CallMethodResult& result);
    /// details: a ReadRawModifiedDetails, ReadProcessedDetails, ReadAtTimeDetails or ReadEventDetails; index:
    /// of the node in the request. A continuation point in the node is continued or released.
    void historyRead(const OpcUa_EncodeableType& detailsType, const void* details, OpcUa_UInt32 index,
                     const OpcUa_HistoryReadValueId& node, bool release,
                     OpcUa_HistoryReadResult& result) const;
    /// Every point that was handed out and not given back, of queries too.
    [[nodiscard]] int openContinuationPoints() const;

    // ---- changes; what they change is there for every later answer
    /// Objects, variables and methods get their own attributes, other classes the common ones. Without a
    /// wish the id is one of namespace 1.
    void add(const OpcUa_AddNodesItem& item, OpcUa_AddNodesResult& result);
    [[nodiscard]] OpcUa_StatusCode add(const OpcUa_AddReferencesItem& item);
    [[nodiscard]] OpcUa_StatusCode remove(const OpcUa_DeleteNodesItem& item);
    [[nodiscard]] OpcUa_StatusCode remove(const OpcUa_DeleteReferencesItem& item);
    /// Every service takes the other id for the node until it is given back; an unknown node keeps its own.
    [[nodiscard]] UaNodeId registerNode(const UaNodeId& id);
    void unregisterNode(const UaNodeId& id);
    /// Those that were not given back.
    [[nodiscard]] int registeredNodes() const;

    void updateHistory(const OpcUa_UpdateDataDetails& details, OpcUa_HistoryUpdateResult& result);
    /// Events are told apart by their field "EventId", and stand at the time of "Time".
    void updateHistory(const OpcUa_UpdateEventDetails& details, OpcUa_HistoryUpdateResult& result);
    void updateHistory(const OpcUa_DeleteRawModifiedDetails& details, OpcUa_HistoryUpdateResult& result);
    void updateHistory(const OpcUa_DeleteAtTimeDetails& details, OpcUa_HistoryUpdateResult& result);
    void updateHistory(const OpcUa_DeleteEventDetails& details, OpcUa_HistoryUpdateResult& result);

    /// Instances of the types by their ids, the wanted data of each; what is not there is null. No filters:
    /// BadContentFilterInvalid. response is initialized.
    [[nodiscard]] OpcUa_StatusCode query(const OpcUa_QueryFirstRequest& request,
                                         OpcUa_QueryFirstResponse& response);
    [[nodiscard]] OpcUa_StatusCode queryNext(const OpcUa_QueryNextRequest& request,
                                             OpcUa_QueryNextResponse& response);

    /// What a request of one of the services is answered with; null for other requests.
    [[nodiscard]] static const OpcUa_EncodeableType* responseTypeOf(const OpcUa_EncodeableType& requestType);
    /// A whole request of one of the services; response is initialized. BadServiceUnsupported for others.
    [[nodiscard]] OpcUa_StatusCode answer(const OpcUa_EncodeableType& requestType, const void* request,
                                          void* response);

private:
    struct Reference
    {
        UaNodeId type;
        UaNodeId target;
        bool isForward;
    };
    struct Event
    {
        UaDateTime time;
        EventFields fields;
    };
    struct Modification
    {
        UaDataValue was;
        OpcUa_HistoryUpdateType type;
        UaDateTime time;
        std::string user;
    };
    struct Node
    {
        std::map<OpcUa_UInt32, UaDataValue> attributes;
        std::vector<Reference> references;
        UaNodeId typeDefinition;
        Method method;
        std::vector<UaDataValue> history;
        std::vector<Modification> modifications; ///< in the order of the source times of what was
        std::map<UaNodeId, std::vector<UaDataValue>> processed;
        std::vector<Event> events;
    };
    struct Rest
    {
        UaReferenceDescriptions references;
        OpcUa_UInt32 maximum;
        OpcUa_UInt32 given; ///< so many already
    };
    struct QueryRest
    {
        UaQueryDataSets dataSets;
        OpcUa_UInt32 maximum;
    };

    Node& addNode(const UaNodeId& id, const char* name, OpcUa_NodeClass nodeClass, const UaNodeId& parent);
    void addArguments(const UaNodeId& method, const char* name, const std::vector<Argument>& arguments);
    void addReference(const UaNodeId& from, const UaNodeId& referenceType, const UaNodeId& to);
    [[nodiscard]] OpcUa_StatusCode statusOf(Service service, const UaNodeId& id) const;
    [[nodiscard]] static UaVariant attributeOf(const Node& node, OpcUa_UInt32 attributeId);
    /// Of a registered node the one that it stands for.
    [[nodiscard]] const UaNodeId& actualId(const UaNodeId& id) const;
    [[nodiscard]] const Node* find(const UaNodeId& id) const;
    [[nodiscard]] Node* find(const UaNodeId& id);
    void describe(const Reference& reference, OpcUa_ReferenceDescription& description) const;
    [[nodiscard]] const Reference* step(const Node& node, const OpcUa_RelativePathElement& element) const;
    void handOut(Rest rest, OpcUa_BrowseResult& result);
    static void rawHistory(const Node& node, const OpcUa_ReadRawModifiedDetails& details,
                           const OpcUa_HistoryReadValueId& asked, OpcUa_HistoryReadResult& result);
    [[nodiscard]] static UaDataValues atTimes(const Node& node, const OpcUa_ReadAtTimeDetails& details);
    static void modifiedHistory(const Node& node, const OpcUa_ReadRawModifiedDetails& details,
                                OpcUa_HistoryReadResult& result);
    static void eventHistory(const Node& node, const OpcUa_ReadEventDetails& details,
                             OpcUa_HistoryReadResult& result);
    [[nodiscard]] OpcUa_StatusCode checkNew(const OpcUa_AddNodesItem& item, const UaNodeId& id) const;
    [[nodiscard]] UaNodeId freeId();
    [[nodiscard]] OpcUa_StatusCode change(Node& node, OpcUa_PerformUpdateType how, const UaDataValue& value);
    [[nodiscard]] OpcUa_StatusCode change(Node& node, OpcUa_PerformUpdateType how, Event event);
    void remember(Node& node, const UaDataValue& was, OpcUa_HistoryUpdateType type) const;
    /// The node whose history is to be changed; null where the result says why not.
    [[nodiscard]] Node* changedNode(const OpcUa_NodeId& id, OpcUa_HistoryUpdateResult& result);
    [[nodiscard]] bool isOrDerivesFrom(const UaNodeId& type, const UaNodeId& base) const;
    [[nodiscard]] std::optional<UaNodeId> follow(UaNodeId from, const OpcUa_RelativePath& path) const;
    void queryType(const OpcUa_NodeTypeDescription& type, UaQueryDataSets& found) const;
    void handOut(UaQueryDataSets& dataSets, OpcUa_UInt32 maximum, OpcUa_ByteString& continuationPoint,
                 OpcUa_Int32& count, OpcUa_QueryDataSet*& to);

    mutable std::mutex m_mutex;
    std::map<UaNodeId, Node> m_nodes;
    std::map<std::pair<Service, UaNodeId>, OpcUa_StatusCode> m_failures;
    std::map<std::string, Rest> m_rests; ///< by continuation point
    std::map<std::string, QueryRest> m_queryRests;
    std::map<UaNodeId, UaNodeId> m_registered; ///< what they stand for
    std::string m_historyUser;
    UaDateTime m_historyTime;
    int m_points = 0;
    OpcUa_UInt32 m_lastId = 0;
};
