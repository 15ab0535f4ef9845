// Methods of conditions. All block for a call or two and belong into jobs; null services are no connection.
#pragma once
#include <app/api/qlumsessionservices.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>

#include <QString>

/// What is done about an alarm that is known and shall be quiet.
enum class QlumShelving {
    Timed,   ///< for a time
    OneShot, ///< until it has gone and come again
    Unshelve
};

/// The method of the type, called on the condition. What the service says, or else the method.
[[nodiscard]] UaStatus qlumCallCondition(QlumSessionServices* services, const QString& purpose,
                                         const UaNodeId& conditionId, OpcUa_UInt32 methodId,
                                         const UaVariantArray& arguments);
/// An event and a comment in the user's language, as Acknowledge and its like take them.
[[nodiscard]] UaVariantArray qlumCommentArguments(const UaByteString& eventId, const QString& comment);
/// By the condition's own method where it can be found below it, else by that of the type.
[[nodiscard]] UaStatus qlumShelve(QlumSessionServices* services, const UaNodeId& conditionId,
                                  QlumShelving how, double milliseconds);
