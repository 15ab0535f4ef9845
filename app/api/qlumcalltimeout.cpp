#include <app/api/qlumcalltimeout.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumsettings.h>
#include <app/api/qlumtext.h>

#include <QString>

OpcUa_UInt32 qlumCallTimeout(const QlumApplicationInterface* application)
{
    return QlumSettings::callTimeout.value(application);
}

UaClientSdk::ServiceSettings qlumServiceSettings(const QString& purpose)
{
    UaClientSdk::ServiceSettings settings;
    settings.callTimeout = qlumCallTimeout();
    settings.purpose = toUaString(purpose);
    return settings;
}
