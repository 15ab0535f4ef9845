#include <plugins/events/qlumconditionwords.h>

#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_statuscodes.h>

#include <QCoreApplication>

namespace {
class Words
{
    Q_DECLARE_TR_FUNCTIONS(QlumConditionWords)
};
} // namespace

QString qlumConditionWords(const UaStatus& status)
{
    if (const QString notSent = qlumNotSentText(status); !notSent.isEmpty())
        return notSent;
    switch (status.statusCode()) {
    case OpcUa_BadEventIdUnknown:
        return Words::tr("The server does not know this event any more: the state has changed since. Look at "
                         "the alarm again, or have the conditions refreshed.");
    case OpcUa_BadConditionBranchAlreadyAcked:
        return Words::tr("This alarm has been acknowledged already, perhaps by somebody else.");
    case OpcUa_BadConditionBranchAlreadyConfirmed:
        return Words::tr("This alarm has been confirmed already, perhaps by somebody else.");
    case OpcUa_BadConditionDisabled:
        return Words::tr("The condition is disabled.");
    case OpcUa_BadConditionAlreadyDisabled:
        return Words::tr("The condition is disabled already.");
    case OpcUa_BadConditionAlreadyEnabled:
        return Words::tr("The condition is enabled already.");
    case OpcUa_BadConditionAlreadyShelved:
        return Words::tr("The alarm is shelved already.");
    case OpcUa_BadConditionNotShelved:
        return Words::tr("The alarm is not shelved.");
    case OpcUa_BadShelvingTimeOutOfRange:
        return Words::tr("The server does not shelve alarms for so long.");
    case OpcUa_BadUserAccessDenied:
    case OpcUa_BadNotExecutable:
        return Words::tr("The user of this connection has no right to do that.");
    case OpcUa_BadMethodInvalid:
        return Words::tr("The condition does not have this method.");
    case OpcUa_BadNodeIdUnknown:
        return Words::tr("The server does not know the condition any more.");
    case OpcUa_BadDialogNotActive:
        return Words::tr("The condition does not wait for an answer any more.");
    default:
        return qlumStatusWords(toQString(status.toString()));
    }
}
