#include <app/api/qlumcalltimeout.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumsettings.h>

OpcUa_UInt32 qlumCallTimeout(const QlumApplicationInterface* application)
{
    return QlumSettings::callTimeout.value(application);
}
