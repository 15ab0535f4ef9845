#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <opcua/opcua_types.h>
#include <uaclientsdk/servicesettings.h>

#include <QString>

/// How long service calls made for the user may take, in milliseconds: the setting "General.CallTimeout" of
/// the application; the default when it is not set or there is no application. Any thread.
[[nodiscard]] OpcUa_UInt32
qlumCallTimeout(const QlumApplicationInterface* application = QlumApplicationInterface::instance());

/// For a service call that is made for the user: with that time-out, and what the call is for.
[[nodiscard]] UaClientSdk::ServiceSettings qlumServiceSettings(const QString& purpose);
