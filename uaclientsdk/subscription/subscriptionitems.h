// The services about the monitored items of a subscription, OPC 10000-4, 5.12.
#pragma once

#include <uaclientsdk/services/blockservice.h>

namespace UaClientSdk {

using CreateItemsService = BlockService<OpcUa_CreateMonitoredItemsRequest, OpcUa_CreateMonitoredItemsResponse,
                                        OpcUa_MonitoredItemCreateRequest, OpcUa_MonitoredItemCreateResult>;
using ModifyItemsService = BlockService<OpcUa_ModifyMonitoredItemsRequest, OpcUa_ModifyMonitoredItemsResponse,
                                        OpcUa_MonitoredItemModifyRequest, OpcUa_MonitoredItemModifyResult>;
using ModeService = BlockService<OpcUa_SetMonitoringModeRequest, OpcUa_SetMonitoringModeResponse,
                                 OpcUa_UInt32, OpcUa_StatusCode>;
using DeleteItemsService = BlockService<OpcUa_DeleteMonitoredItemsRequest, OpcUa_DeleteMonitoredItemsResponse,
                                        OpcUa_UInt32, OpcUa_StatusCode>;

extern const CreateItemsService createItemsService;
extern const ModifyItemsService modifyItemsService;
extern const ModeService monitoringModeService;
extern const DeleteItemsService deleteItemsService;

} // namespace UaClientSdk
