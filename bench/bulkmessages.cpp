#include <bench/bulkmessages.h>

#include <string>

namespace opcua::bench {

namespace {

template <typename T>
T* allocate(int count)
{
    return static_cast<T*>(OpcUa_Memory_AllocArray(static_cast<size_t>(count), sizeof(T)));
}

} // namespace

void fill(OpcUa_DataValue& value, int index)
{
    OpcUa_DataValue_Initialize(&value);
    value.Value.Datatype = OpcUaType_Double;
    value.Value.Value.Double = index * 0.5;
    value.SourceTimestamp = someTime + index;
    value.ServerTimestamp = value.SourceTimestamp + 1;
}

void fill(OpcUa_ReadResponse& response, int values)
{
    response.NoOfResults = values;
    response.Results = allocate<OpcUa_DataValue>(values);
    for (int i = 0; i < values; ++i)
        fill(response.Results[i], i);
}

void fill(OpcUa_BrowseResponse& response, int references)
{
    response.NoOfResults = 1;
    response.Results = allocate<OpcUa_BrowseResult>(1);
    OpcUa_EncodeableObject_Initialize(&OpcUa_BrowseResult_EncodeableType, response.Results);
    OpcUa_BrowseResult& result = response.Results[0];
    result.NoOfReferences = references;
    result.References = allocate<OpcUa_ReferenceDescription>(references);
    for (int i = 0; i < references; ++i) {
        OpcUa_ReferenceDescription& reference = result.References[i];
        OpcUa_EncodeableObject_Initialize(&OpcUa_ReferenceDescription_EncodeableType, &reference);
        const std::string name = "Variable " + std::to_string(100000 + i);
        reference.ReferenceTypeId.Identifier.Numeric = OpcUaId_Organizes;
        reference.IsForward = OpcUa_True;
        reference.NodeId.NodeId.NamespaceIndex = 1;
        reference.NodeId.NodeId.Identifier.Numeric = 100000u + static_cast<OpcUa_UInt32>(i);
        // a name that is missing for want of memory would be the least of the faults
        static_cast<void>(OpcUa_String_Assign(&reference.BrowseName.Name, name.c_str(), -1));
        static_cast<void>(OpcUa_String_Assign(&reference.DisplayName.Text, name.c_str(), -1));
        reference.NodeClass = OpcUa_NodeClass_Variable;
        reference.TypeDefinition.NodeId.Identifier.Numeric = OpcUaId_BaseDataVariableType;
    }
}

void fill(OpcUa_PublishResponse& response, int notifications)
{
    response.SubscriptionId = 1;
    response.NotificationMessage.SequenceNumber = 1;
    response.NotificationMessage.PublishTime = someTime;
    response.NotificationMessage.NoOfNotificationData = 1;
    response.NotificationMessage.NotificationData = allocate<OpcUa_ExtensionObject>(1);
    auto* const change = static_cast<OpcUa_DataChangeNotification*>(
        OpcUa_EncodeableObject_Create(&OpcUa_DataChangeNotification_EncodeableType));
    change->NoOfMonitoredItems = notifications;
    change->MonitoredItems = allocate<OpcUa_MonitoredItemNotification>(notifications);
    for (int i = 0; i < notifications; ++i) {
        change->MonitoredItems[i].ClientHandle = static_cast<OpcUa_UInt32>(i + 1);
        fill(change->MonitoredItems[i].Value, i);
    }
    OpcUa_ExtensionObject& body = response.NotificationMessage.NotificationData[0];
    body.TypeId.NodeId.Identifier.Numeric = OpcUa_DataChangeNotification_EncodeableType.BinaryEncodingTypeId;
    body.Encoding = OpcUa_ExtensionObjectEncoding_EncodeableObject;
    body.Body.EncodeableObject.Object = change;
    body.Body.EncodeableObject.Type = &OpcUa_DataChangeNotification_EncodeableType;
}

} // namespace opcua::bench
