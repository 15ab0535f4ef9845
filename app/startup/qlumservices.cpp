#include <app/startup/qlumservices.h>

QlumTavelinServices qlumServices()
{
    return {};
}
