#include <app/log/qlumtracewords.h>

#include <app/api/qlumtextpatterns.h>

#include <QString>

#include <array>

namespace {
// What an engineer can do something about; the rest is for developers, and those read the trace.
constexpr std::array traceTexts{
    QT_TRANSLATE_NOOP(
        "QlumTraceWords",
        "Error: Number of acknowledgement results (%1) does not match number of acknowledgements (%2)"),
    QT_TRANSLATE_NOOP("QlumTraceWords", "Error: Publish failed [status=%1]"),
    QT_TRANSLATE_NOOP("QlumTraceWords", "Error: SessionCallback - a callback threw '%1'"),
    QT_TRANSLATE_NOOP("QlumTraceWords",
                      "Error: SessionCallback - Stack sent callback with status [status=%1]"),
    QT_TRANSLATE_NOOP(
        "QlumTraceWords",
        "Error: Subscription acknowledgement (SubscriptionId=%1,SequenceNumber=%2) returned status %3"),
    QT_TRANSLATE_NOOP("QlumTraceWords", "Error: SubscriptionCallback - a callback threw '%1'"),
    QT_TRANSLATE_NOOP(
        "QlumTraceWords",
        "Error: UaSession - a request for notifications was not taken [Session=%1] [status=%2]"),
    QT_TRANSLATE_NOOP("QlumTraceWords",
                      "Error: UaSession - a turn of the session thread ended with '%1' [Session=%2]"),
    QT_TRANSLATE_NOOP("QlumTraceWords", "Error: UaSession - cannot create a channel [ret=%1]"),
    QT_TRANSLATE_NOOP("QlumTraceWords", "Error: UaSession - connection lost [Session=%1]"),
    QT_TRANSLATE_NOOP("QlumTraceWords", "Error: UaSession - reading the namespace table failed [status=%1]"),
    QT_TRANSLATE_NOOP("QlumTraceWords",
                      "Error: UaSession - the server refused the user, he is not tried again [Session=%1]"),
    QT_TRANSLATE_NOOP("QlumTraceWords",
                      "Error: UaSession::%1 - number of diagnostic infos does not match number of requests"),
    QT_TRANSLATE_NOOP("QlumTraceWords",
                      "Error: UaSession::%1 - number of results does not match number of requests"),
    QT_TRANSLATE_NOOP("QlumTraceWords", "Error: UaSession::loadDataTypeDictionaries failed [status=%1]"),
    QT_TRANSLATE_NOOP("QlumTraceWords",
                      "Error: UaSessionPrivate::%1 - Server sent invalid extension object for notification"),
    QT_TRANSLATE_NOOP(
        "QlumTraceWords",
        "Error: UaSessionPrivate::%1 - Server sent unknown extension object (ID=%2) for notification"),
    QT_TRANSLATE_NOOP("QlumTraceWords",
                      "Error: UaSessionPrivate::activateSession - can't find %1 in endpoint description"),
    QT_TRANSLATE_NOOP(
        "QlumTraceWords",
        "Error: UaSessionPrivate::activateSession - no endpoint matching the session security settings"),
    QT_TRANSLATE_NOOP("QlumTraceWords", "Error: UaSessionPrivate::doRepublishAfterReconnect - Notification "
                                        "returned unexpected SequenceNumber (expected=%1, received=%2)"),
    QT_TRANSLATE_NOOP("QlumTraceWords", "Error: UaSessionPrivate::publishCallback - KeepAlive SequenceNumber "
                                        "(%1) is contained in AvailableSequenceNumbers"),
    QT_TRANSLATE_NOOP("QlumTraceWords", "Error: UaSessionPrivate::publishCallback - KeepAlive returned "
                                        "unexpected SequenceNumber (expected=%1, received=%2)"),
    QT_TRANSLATE_NOOP("QlumTraceWords", "Error: UaSessionPrivate::publishCallback - Notification returned "
                                        "unexpected SequenceNumber (expected=%1, received=%2)"),
    QT_TRANSLATE_NOOP("QlumTraceWords",
                      "Error: UaSessionPrivate::publishCallback - Server sent invalid SubscriptionId %1"),
    QT_TRANSLATE_NOOP("QlumTraceWords",
                      "Error: UaSessionPrivate::publishCallback - Subscription not longer valid"),
    QT_TRANSLATE_NOOP("QlumTraceWords",
                      "Host name in server certificate does not match hostname the client connected to"),
    QT_TRANSLATE_NOOP("QlumTraceWords", "Nonce returned by server is too short (len=%1)"),
    QT_TRANSLATE_NOOP("QlumTraceWords", "Nonce returned by server is too short (len=%1), closing session"),
    QT_TRANSLATE_NOOP("QlumTraceWords", "Server certificate validation failed with error '%1'"),
    QT_TRANSLATE_NOOP("QlumTraceWords", "Server returned the same nonce as last time, closing session"),
    QT_TRANSLATE_NOOP("QlumTraceWords", "Split server certificate chain failed with error '%1'"),
    QT_TRANSLATE_NOOP("QlumTraceWords", "The server certificate is empty"),
    QT_TRANSLATE_NOOP("QlumTraceWords", "The server certificate public key is empty"),
    QT_TRANSLATE_NOOP("QlumTraceWords", "The server's application signature is invalid"),
    QT_TRANSLATE_NOOP("QlumTraceWords",
                      "UaSessionPrivate::doServerStatusCheck failed [Session=%1] [status=%2]"),
    QT_TRANSLATE_NOOP("QlumTraceWords",
                      "Warning: Could not find suitable SecurityPolicy for assembling X509IdentityToken"),
    QT_TRANSLATE_NOOP("QlumTraceWords",
                      "Warning: Notifications missing, lastSequenceNumber=%1 newSequenceNumber=%2"),
    QT_TRANSLATE_NOOP("QlumTraceWords",
                      "Warning: Server time (%1) is more than 30 Minutes distinct from local system time"),
    QT_TRANSLATE_NOOP("QlumTraceWords",
                      "Warning: The server's endpoints are others than those that discovery returned"),
    QT_TRANSLATE_NOOP(
        "QlumTraceWords",
        "Warning: UaSession - reading the limits of the server failed [Session=%1] [status=%2]"),
    QT_TRANSLATE_NOOP("QlumTraceWords", "Warning: browseBatch - node %1: %2"),
};
} // namespace

QString qlumTraceInWords(const QString& text)
{
    static const QlumTextPatterns patterns("QlumTraceWords", traceTexts);
    return patterns.inWords(text).value_or(text);
}
