#include <uaclientsdk/subscription/subscriptionitems.h>

#include <opcua/opcua_clientapi.h>

namespace UaClientSdk {

const CreateItemsService createItemsService{{"createMonitoredItems", "CreateMonitoredItems",
                                             "Empty monitored item array passed", "beginCreateMonitoredItems",
                                             "createMonitoredItemsCallback", "createMonitoredItemsComplete"},
                                            OpcUa_ClientApi_CreateMonitoredItems,
                                            OpcUa_ClientApi_BeginCreateMonitoredItems,
                                            OpcUa_CreateMonitoredItemsRequest_EncodeableType,
                                            OpcUa_CreateMonitoredItemsResponse_EncodeableType,
                                            &OpcUa_CreateMonitoredItemsRequest::NoOfItemsToCreate,
                                            &OpcUa_CreateMonitoredItemsRequest::ItemsToCreate,
                                            &OpcUa_CreateMonitoredItemsResponse::NoOfResults,
                                            &OpcUa_CreateMonitoredItemsResponse::Results,
                                            true};

const ModifyItemsService modifyItemsService{{"modifyMonitoredItems", "ModifyMonitoredItems",
                                             "Empty monitored item array passed", "beginModifyMonitoredItems",
                                             "modifyMonitoredItemsCallback", "modifyMonitoredItemsComplete"},
                                            OpcUa_ClientApi_ModifyMonitoredItems,
                                            OpcUa_ClientApi_BeginModifyMonitoredItems,
                                            OpcUa_ModifyMonitoredItemsRequest_EncodeableType,
                                            OpcUa_ModifyMonitoredItemsResponse_EncodeableType,
                                            &OpcUa_ModifyMonitoredItemsRequest::NoOfItemsToModify,
                                            &OpcUa_ModifyMonitoredItemsRequest::ItemsToModify,
                                            &OpcUa_ModifyMonitoredItemsResponse::NoOfResults,
                                            &OpcUa_ModifyMonitoredItemsResponse::Results,
                                            true};

const ModeService monitoringModeService{{"setMonitoringMode", "SetMonitoringMode",
                                         "Empty monitored item id array passed", "beginSetMonitoringMode",
                                         "setMonitoringModeCallback", "setMonitoringModeComplete"},
                                        OpcUa_ClientApi_SetMonitoringMode,
                                        OpcUa_ClientApi_BeginSetMonitoringMode,
                                        OpcUa_SetMonitoringModeRequest_EncodeableType,
                                        OpcUa_SetMonitoringModeResponse_EncodeableType,
                                        &OpcUa_SetMonitoringModeRequest::NoOfMonitoredItemIds,
                                        &OpcUa_SetMonitoringModeRequest::MonitoredItemIds,
                                        &OpcUa_SetMonitoringModeResponse::NoOfResults,
                                        &OpcUa_SetMonitoringModeResponse::Results,
                                        true};

const DeleteItemsService deleteItemsService{
    {"deleteMonitoredItems", "DeleteMonitoredItems", "Empty monitored item id array passed",
     "beginDeleteMonitoredItems", "deleteMonitoredItemsCallback", "deleteMonitoredItemsComplete"},
    OpcUa_ClientApi_DeleteMonitoredItems,
    OpcUa_ClientApi_BeginDeleteMonitoredItems,
    OpcUa_DeleteMonitoredItemsRequest_EncodeableType,
    OpcUa_DeleteMonitoredItemsResponse_EncodeableType,
    &OpcUa_DeleteMonitoredItemsRequest::NoOfMonitoredItemIds,
    &OpcUa_DeleteMonitoredItemsRequest::MonitoredItemIds,
    &OpcUa_DeleteMonitoredItemsResponse::NoOfResults,
    &OpcUa_DeleteMonitoredItemsResponse::Results,
    true};

} // namespace UaClientSdk
