#include <uaclientsdk/subscriptionitems.h>

#include <opcua/opcua_clientapi.h>

namespace UaClientSdk {

const CreateItemsService createItemsService{
    {"createMonitoredItems", "CreateMonitoredItems", "Empty monitored item array passed"},
    OpcUa_ClientApi_CreateMonitoredItems,
    OpcUa_CreateMonitoredItemsRequest_EncodeableType,
    OpcUa_CreateMonitoredItemsResponse_EncodeableType,
    &OpcUa_CreateMonitoredItemsRequest::NoOfItemsToCreate,
    &OpcUa_CreateMonitoredItemsRequest::ItemsToCreate,
    &OpcUa_CreateMonitoredItemsResponse::NoOfResults,
    &OpcUa_CreateMonitoredItemsResponse::Results};

const ModifyItemsService modifyItemsService{
    {"modifyMonitoredItems", "ModifyMonitoredItems", "Empty monitored item array passed"},
    OpcUa_ClientApi_ModifyMonitoredItems,
    OpcUa_ModifyMonitoredItemsRequest_EncodeableType,
    OpcUa_ModifyMonitoredItemsResponse_EncodeableType,
    &OpcUa_ModifyMonitoredItemsRequest::NoOfItemsToModify,
    &OpcUa_ModifyMonitoredItemsRequest::ItemsToModify,
    &OpcUa_ModifyMonitoredItemsResponse::NoOfResults,
    &OpcUa_ModifyMonitoredItemsResponse::Results};

const ModeService monitoringModeService{
    {"setMonitoringMode", "SetMonitoringMode", "Empty monitored item id array passed"},
    OpcUa_ClientApi_SetMonitoringMode,
    OpcUa_SetMonitoringModeRequest_EncodeableType,
    OpcUa_SetMonitoringModeResponse_EncodeableType,
    &OpcUa_SetMonitoringModeRequest::NoOfMonitoredItemIds,
    &OpcUa_SetMonitoringModeRequest::MonitoredItemIds,
    &OpcUa_SetMonitoringModeResponse::NoOfResults,
    &OpcUa_SetMonitoringModeResponse::Results};

const DeleteItemsService deleteItemsService{
    {"deleteMonitoredItems", "DeleteMonitoredItems", "Empty monitored item id array passed"},
    OpcUa_ClientApi_DeleteMonitoredItems,
    OpcUa_DeleteMonitoredItemsRequest_EncodeableType,
    OpcUa_DeleteMonitoredItemsResponse_EncodeableType,
    &OpcUa_DeleteMonitoredItemsRequest::NoOfMonitoredItemIds,
    &OpcUa_DeleteMonitoredItemsRequest::MonitoredItemIds,
    &OpcUa_DeleteMonitoredItemsResponse::NoOfResults,
    &OpcUa_DeleteMonitoredItemsResponse::Results};

} // namespace UaClientSdk
