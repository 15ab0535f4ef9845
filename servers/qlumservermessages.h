#pragma once
#include <servers/qlumconnectprompts.h>
#include <uabase/values/uastatuscode.h>

#include <QDialog>
#include <QPointer>
#include <QString>

/// What one server's node tells the user beside what he is doing: one message at a time, which holds nothing
/// up and goes with this object. GUI thread.
class QlumServerMessages
{
public:
    QlumServerMessages() = default;
    ~QlumServerMessages();
    QlumServerMessages(const QlumServerMessages&) = delete;
    QlumServerMessages& operator=(const QlumServerMessages&) = delete;

    /// That the server has ended the connection because of the program's own certificate.
    void tellCertificateRefused(const QString& server, const UaStatusCode& status);
    /// That a lost connection cannot be restored without the user's word.
    void tellReconnectError(const QString& server, const QlumConnectError& error);
    void clear();

private:
    void show(QDialog* dialog);

    QPointer<QDialog> m_dialog;
};
