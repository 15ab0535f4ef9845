"""One synchronous and one asynchronous call for each service of a client."""

from text import c_header, c_source

SERVICES = [
    "FindServers",
    "FindServersOnNetwork",
    "GetEndpoints",
    "RegisterServer",
    "RegisterServer2",
    "CreateSession",
    "ActivateSession",
    "CloseSession",
    "Cancel",
    "AddNodes",
    "AddReferences",
    "DeleteNodes",
    "DeleteReferences",
    "Browse",
    "BrowseNext",
    "TranslateBrowsePathsToNodeIds",
    "RegisterNodes",
    "UnregisterNodes",
    "QueryFirst",
    "QueryNext",
    "Read",
    "HistoryRead",
    "Write",
    "HistoryUpdate",
    "Call",
    "CreateMonitoredItems",
    "ModifyMonitoredItems",
    "SetMonitoringMode",
    "SetTriggering",
    "DeleteMonitoredItems",
    "CreateSubscription",
    "ModifySubscription",
    "SetPublishingMode",
    "Publish",
    "Republish",
    "TransferSubscriptions",
    "DeleteSubscriptions",
]


def _check(schema):
    for service in SERVICES:
        for suffix in ("Request", "Response"):
            if service + suffix not in schema.structures:
                raise ValueError(f"the schema has no {service}{suffix}")


def services_header(schema):
    _check(schema)
    lines = ["/* Results and threads are those of OpcUa_Channel_InvokeService and BeginInvokeService. */"]
    for service in SERVICES:
        lines += [
            f"OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_ClientApi_{service}(OpcUa_Channel channel, "
            f"const OpcUa_{service}Request* request,",
            f"    OpcUa_{service}Response* response);",
            f"OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_ClientApi_Begin{service}("
            f"OpcUa_Channel channel, const OpcUa_{service}Request* request,",
            "    OpcUa_Channel_PfnRequestComplete callback, void* callbackData);",
        ]
    return c_header("OPCUA_CLIENTAPI_H", ["opcua_channel.h"], lines)


_SOURCE = """
#define SERVICE(Name) \\
    OpcUa_StatusCode OpcUa_ClientApi_##Name(OpcUa_Channel channel, const OpcUa_##Name##Request* request, \\
        OpcUa_##Name##Response* response) \\
    { \\
        return OpcUa_Channel_InvokeService(channel, &OpcUa_##Name##Request_EncodeableType, request, \\
            &OpcUa_##Name##Response_EncodeableType, response); \\
    } \\
    OpcUa_StatusCode OpcUa_ClientApi_Begin##Name(OpcUa_Channel channel, const OpcUa_##Name##Request* request, \\
        OpcUa_Channel_PfnRequestComplete callback, void* callbackData) \\
    { \\
        return OpcUa_Channel_BeginInvokeService(channel, &OpcUa_##Name##Request_EncodeableType, request, \\
            &OpcUa_##Name##Response_EncodeableType, callback, callbackData); \\
    }
"""  # noqa: E501


def services_source(schema):
    _check(schema)
    return c_source(
        ["opcua/opcua_clientapi.h"],
        _SOURCE.strip().splitlines() + [""] + [f"SERVICE({service})" for service in SERVICES],
    )
