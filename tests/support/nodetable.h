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
    enum Service { Read, Write, Browse, Translate, Call, HistoryRead };

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
    /// Every point that was handed out and not given back.
    [[nodiscard]] int openContinuationPoints() const;

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
    struct Node
    {
        std::map<OpcUa_UInt32, UaDataValue> attributes;
        std::vector<Reference> references;
        UaNodeId typeDefinition;
        Method method;
        std::vector<UaDataValue> history;
        std::map<UaNodeId, std::vector<UaDataValue>> processed;
        std::vector<Event> events;
    };
    struct Rest
    {
        UaReferenceDescriptions references;
        OpcUa_UInt32 maximum;
    };

    Node& addNode(const UaNodeId& id, const char* name, OpcUa_NodeClass nodeClass, const UaNodeId& parent);
    void addArguments(const UaNodeId& method, const char* name, const std::vector<Argument>& arguments);
    void addReference(const UaNodeId& from, const UaNodeId& referenceType, const UaNodeId& to);
    [[nodiscard]] OpcUa_StatusCode statusOf(Service service, const UaNodeId& id) const;
    [[nodiscard]] static UaVariant attributeOf(const Node& node, OpcUa_UInt32 attributeId);
    [[nodiscard]] const Node* find(const UaNodeId& id) const;
    void describe(const Reference& reference, OpcUa_ReferenceDescription& description) const;
    [[nodiscard]] const Reference* step(const Node& node, const OpcUa_RelativePathElement& element) const;
    void handOut(UaReferenceDescriptions& references, OpcUa_UInt32 maximum, OpcUa_BrowseResult& result);
    static void rawHistory(const Node& node, const OpcUa_ReadRawModifiedDetails& details,
                           const OpcUa_HistoryReadValueId& asked, OpcUa_HistoryReadResult& result);
    [[nodiscard]] static UaDataValues atTimes(const Node& node, const OpcUa_ReadAtTimeDetails& details);
    static void eventHistory(const Node& node, const OpcUa_ReadEventDetails& details,
                             OpcUa_HistoryReadResult& result);
    [[nodiscard]] OpcUa_StatusCode answerOther(const OpcUa_EncodeableType& type, const void* request,
                                               void* response);

    mutable std::mutex m_mutex;
    std::map<UaNodeId, Node> m_nodes;
    std::map<std::pair<Service, UaNodeId>, OpcUa_StatusCode> m_failures;
    std::map<std::string, Rest> m_rests; ///< by continuation point
    int m_points = 0;
};
