#include <plugins/methods/qlummethodwords.h>

#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_statuscodes.h>

#include <QCoreApplication>
#include <QLocale>

namespace {
struct Words
{
    Q_DECLARE_TR_FUNCTIONS(QlumMethodWords)
};

// Whether nobody can know what the server has done with the request.
bool mayHaveRun(OpcUa_StatusCode status)
{
    return status == OpcUa_BadTimeout || status == OpcUa_BadConnectionClosed ||
           status == OpcUa_BadCommunicationError || status == OpcUa_BadSecureChannelClosed ||
           status == OpcUa_BadRequestTimeout;
}

// What a status means for a call in particular.
QString callWords(OpcUa_StatusCode status)
{
    switch (status) {
    case OpcUa_BadTypeMismatch:
        return Words::tr("an argument has another type than the method expects");
    case OpcUa_BadOutOfRange:
        return Words::tr("an argument is outside what the method allows");
    case OpcUa_BadInvalidState:
        return Words::tr("the method cannot be called in the present state");
    case OpcUa_BadNotExecutable:
        return Words::tr("the method cannot be executed");
    case OpcUa_BadTooManyArguments:
        return Words::tr("the method was called with too many arguments");
    case OpcUa_BadUserAccessDenied:
        return Words::tr("the user who is logged in may not call it");
    default:
        return {};
    }
}

QString countText(const QlumMethodCall& call)
{
    return Words::tr("%n argument(s) were sent. The server wants another number than its description says: "
                     "add arguments, or remove some, and call again.",
                     nullptr, static_cast<int>(call.inputs.size()));
}
} // namespace

bool qlumIsDone(const QlumMethodCall& call)
{
    return call.end == QlumMethodCall::Answered && !call.service.isBad() && !call.result.isBad();
}

QString qlumStatusWithName(OpcUa_StatusCode status)
{
    const QString name = qlumStatusText(status);
    const QString words = callWords(status);
    return Words::tr("%1 (%2)").arg(words.isEmpty() ? qlumStatusWords(name) : words, name);
}

QString qlumOutcomeText(const QlumMethodCall& call)
{
    if (call.end == QlumMethodCall::GivenUp)
        return Words::tr("The call was given up here. The method may still run on the server.");
    if (const QString notSent = qlumNotSentText(call.service); !notSent.isEmpty())
        return Words::tr("The method was not called. %1.").arg(notSent);
    if (call.service.isBad()) {
        const QString text =
            Words::tr("The call did not succeed: %1.").arg(qlumStatusWithName(call.service.code()));
        return mayHaveRun(call.service.code())
                   ? text + QLatin1Char(' ') +
                         Words::tr("The method may have run, or still run, on the server.")
                   : text;
    }
    if (call.result.isBad()) {
        QString text =
            Words::tr("The method was refused or failed: %1.").arg(qlumStatusWithName(call.result.code()));
        if (call.result.code() == OpcUa_BadArgumentsMissing ||
            call.result.code() == OpcUa_BadTooManyArguments)
            text += QLatin1Char(' ') + countText(call);
        return text;
    }
    const QString done = call.outputs.empty() ? Words::tr("Called, nothing returned.") : Words::tr("Called.");
    return call.result.isUncertain()
               ? Words::tr("%1 The method says: %2.").arg(done, qlumStatusWithName(call.result.code()))
               : done;
}

QString qlumShortOutcome(const QlumMethodCall& call)
{
    if (call.end == QlumMethodCall::GivenUp)
        return Words::tr("given up");
    if (call.service.isBad())
        return Words::tr("service: %1").arg(qlumStatusText(call.service.code()));
    return qlumStatusText(call.result.code());
}

QString qlumInputFault(const QlumMethodCall& call, std::size_t input)
{
    const bool isBad = input < call.inputResults.size() && OpcUa_IsBad(call.inputResults[input]);
    return isBad ? Words::tr("The server refuses this argument: %1.")
                       .arg(qlumStatusWithName(call.inputResults[input]))
                 : QString();
}

QString qlumDurationText(qint64 milliseconds)
{
    constexpr qint64 second = 1000;
    return milliseconds < second ? Words::tr("%1 ms").arg(milliseconds)
                                 : Words::tr("%1 s").arg(QLocale().toString(
                                       static_cast<double>(milliseconds) / second, 'f', 1));
}
