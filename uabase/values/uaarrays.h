// Names for the typed arrays of the stack's structures.
#pragma once

#include <opcua/opcua_types.h>
#include <uabase/values/uaarray.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uaelement.h>

// ---- built-in types
using UaUInt16Array = UaArray<OpcUa_UInt16>;
using UaInt32Array = UaArray<OpcUa_Int32>;
using UaUInt32Array = UaArray<OpcUa_UInt32>;
using UaDoubleArray = UaArray<OpcUa_Double>;
using UaStringArray = UaArray<OpcUa_String>;
using UaDateTimeArray = UaArray<OpcUa_DateTime>;
using UaByteStringArray = UaArray<OpcUa_ByteString>;
using UaNodeIdArray = UaArray<OpcUa_NodeId>;
using UaStatusCodeArray = UaArray<OpcUa_StatusCode>;
using UaQualifiedNameArray = UaArray<OpcUa_QualifiedName>;
using UaExtensionObjectArray = UaArray<OpcUa_ExtensionObject>;
using UaDataValues = UaArray<OpcUa_DataValue>;
using UaVariantArray = UaArray<OpcUa_Variant>;
using UaDiagnosticInfoArray = UaArray<OpcUa_DiagnosticInfo>;

// ---- structures of the standard

// Ua<plural> becomes the array of OpcUa_<Type>.
#define UA_STRUCTURE_ARRAY(Type, Plural)                                                                     \
    template <>                                                                                              \
    struct UaElement<OpcUa_##Type> : UaEncodeableElement<OpcUa_##Type, OpcUa_##Type##_EncodeableType>        \
    {                                                                                                        \
    };                                                                                                       \
    using Ua##Plural = UaArray<OpcUa_##Type>;

// discovery and endpoints
UA_STRUCTURE_ARRAY(ApplicationDescription, ApplicationDescriptions)
UA_STRUCTURE_ARRAY(EndpointDescription, EndpointDescriptions)
UA_STRUCTURE_ARRAY(ServerOnNetwork, ServerOnNetworks)
UA_STRUCTURE_ARRAY(UserTokenPolicy, UserTokenPolicys)

// attributes and methods
UA_STRUCTURE_ARRAY(ReadValueId, ReadValueIds)
UA_STRUCTURE_ARRAY(WriteValue, WriteValues)
UA_STRUCTURE_ARRAY(CallMethodRequest, CallMethodRequests)
UA_STRUCTURE_ARRAY(CallMethodResult, CallMethodResults)
UA_STRUCTURE_ARRAY(Argument, Arguments)

// view
UA_STRUCTURE_ARRAY(ReferenceDescription, ReferenceDescriptions)
UA_STRUCTURE_ARRAY(BrowseDescription, BrowseDescriptions)
UA_STRUCTURE_ARRAY(BrowseResult, BrowseResults)
UA_STRUCTURE_ARRAY(BrowsePath, BrowsePaths)
UA_STRUCTURE_ARRAY(BrowsePathTarget, BrowsePathTargets)
UA_STRUCTURE_ARRAY(BrowsePathResult, BrowsePathResults)
UA_STRUCTURE_ARRAY(RelativePathElement, RelativePathElements)

// node management
UA_STRUCTURE_ARRAY(AddNodesItem, AddNodesItems)
UA_STRUCTURE_ARRAY(AddNodesResult, AddNodesResults)
UA_STRUCTURE_ARRAY(AddReferencesItem, AddReferencesItems)
UA_STRUCTURE_ARRAY(DeleteNodesItem, DeleteNodesItems)
UA_STRUCTURE_ARRAY(DeleteReferencesItem, DeleteReferencesItems)

// query
UA_STRUCTURE_ARRAY(NodeTypeDescription, NodeTypeDescriptions)
UA_STRUCTURE_ARRAY(QueryDataSet, QueryDataSets)
UA_STRUCTURE_ARRAY(ParsingResult, ParsingResults)

// filters and events
UA_STRUCTURE_ARRAY(SimpleAttributeOperand, SimpleAttributeOperands)
UA_STRUCTURE_ARRAY(ContentFilterElement, ContentFilterElements)
UA_STRUCTURE_ARRAY(ContentFilterElementResult, ContentFilterElementResults)
UA_STRUCTURE_ARRAY(EventFieldList, EventFieldLists)
UA_STRUCTURE_ARRAY(HistoryEventFieldList, HistoryEventFieldLists)

// history
UA_STRUCTURE_ARRAY(HistoryReadValueId, HistoryReadValueIds)
UA_STRUCTURE_ARRAY(HistoryReadResult, HistoryReadResults)
UA_STRUCTURE_ARRAY(HistoryUpdateResult, HistoryUpdateResults)
UA_STRUCTURE_ARRAY(ModificationInfo, ModificationInfos)
UA_STRUCTURE_ARRAY(UpdateDataDetails, UpdateDataDetailsArray)
UA_STRUCTURE_ARRAY(UpdateEventDetails, UpdateEventDetailsArray)
UA_STRUCTURE_ARRAY(DeleteRawModifiedDetails, DeleteRawModifiedDetailsArray)
UA_STRUCTURE_ARRAY(DeleteAtTimeDetails, DeleteAtTimeDetailsArray)
UA_STRUCTURE_ARRAY(DeleteEventDetails, DeleteEventDetailsArray)

// subscriptions
UA_STRUCTURE_ARRAY(MonitoredItemCreateRequest, MonitoredItemCreateRequests)
UA_STRUCTURE_ARRAY(MonitoredItemCreateResult, MonitoredItemCreateResults)
UA_STRUCTURE_ARRAY(MonitoredItemModifyRequest, MonitoredItemModifyRequests)
UA_STRUCTURE_ARRAY(MonitoredItemModifyResult, MonitoredItemModifyResults)
UA_STRUCTURE_ARRAY(MonitoredItemNotification, MonitoredItemNotifications)
UA_STRUCTURE_ARRAY(TransferResult, TransferResults)

// type definitions
UA_STRUCTURE_ARRAY(StructureField, StructureFieldRecords)
UA_STRUCTURE_ARRAY(EnumField, EnumFieldRecords)

// diagnostics and common data types
UA_STRUCTURE_ARRAY(OptionSet, OptionSets)
UA_STRUCTURE_ARRAY(StructureDefinition, StructureDefinitionRecords)
UA_STRUCTURE_ARRAY(EnumDefinition, EnumDefinitionRecords)

#undef UA_STRUCTURE_ARRAY
