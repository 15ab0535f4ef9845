// Everything of the stack's C interface.
#ifndef OPCUA_H
#define OPCUA_H

#include <opcua/opcua_attributes.h>
#include <opcua/opcua_builtintypes.h>
#include <opcua/opcua_channel.h>
#include <opcua/opcua_clientapi.h>
#include <opcua/opcua_crypto.h>
#include <opcua/opcua_encodeable.h>
#include <opcua/opcua_endpointurl.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_platform.h>
#include <opcua/opcua_probe.h>
#include <opcua/opcua_statuscodes.h>
#include <opcua/opcua_types.h>

#endif
