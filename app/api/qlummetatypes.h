// Types that travel through queued signals and item model roles.
#pragma once
#include <app/api/qlumconnectionstatus.h>
#include <opcua/opcua_types.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>

#include <QMetaType>

Q_DECLARE_METATYPE(UaNodeId)
Q_DECLARE_METATYPE(UaVariant)
Q_DECLARE_METATYPE(UaDataTypeDictionary*)
Q_DECLARE_METATYPE(OpcUa_NodeClass)
Q_DECLARE_METATYPE(OpcUa_DataValue*)

/// Registers them under the names that signals use. May be called more than once.
void qlumRegisterMetaTypes();
