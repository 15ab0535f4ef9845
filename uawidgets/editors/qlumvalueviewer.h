// Values that tools want to be seen in full.
#pragma once
#include <app/api/qlumsessionservices.h>

class QObject;
class QlumToolServices;

/// Has them opened in windows of their own, beside the application's, with what their server says of their
/// types: asked in the background, which ends with the owner.
void qlumTakeValues(QlumToolServices& services, QObject* owner,
                    QlumSessionServicesProvider provider = qlumApplicationServices());
