#include <app/api/qlumcalltimeout.h>

#include <app/api/qlumapplicationinterface.h>

#include <QString>

OpcUa_UInt32 qlumCallTimeout(const QlumApplicationInterface* application)
{
    return application
               ? application->settingsValue(QStringLiteral("General.CallTimeout"), qlumDefaultCallTimeout)
                     .toUInt()
               : qlumDefaultCallTimeout;
}
