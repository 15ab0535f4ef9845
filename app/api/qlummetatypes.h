// Types that travel through queued signals.
#pragma once
#include <QMetaType>
#include <app/api/qlumconnectionstatus.h>
#include <opcua/opcua_types.h>
#include <uabase/uanodeid.h>

Q_DECLARE_METATYPE(UaNodeId)
Q_DECLARE_METATYPE(OpcUa_NodeClass)

/// Registers them under the names that signals use. May be called more than once.
void qlumRegisterMetaTypes();
