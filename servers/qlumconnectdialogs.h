#pragma once
#include <servers/qlumconnectfailure.h>
#include <servers/qlumconnectprompts.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatuscode.h>

#include <QDialog>
#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <functional>

/// Asks in dialogs above the main window, which they block; they go with this object. Passwords, certificates
/// and reasons of servers are shown as plain text.
class QlumConnectDialogs : public QObject, public QlumConnectPrompts
{
    Q_OBJECT
public:
    /// Above the parent where that is a widget, else above the main window.
    using QObject::QObject;
    ~QlumConnectDialogs() override;

    void askUnsupportedPolicy(Decided answer) override;
    void tellFirstCertificate(Answered answer) override;
    void askDialledHost(const QString& server, const QString& named, const QString& dialled,
                        Decided answer) override;
    void askWeakPolicy(const QString& server, Decided answer) override;
    void askPassword(const QlumPasswordQuestion& question, Named answer) override;
    void askClearPassword(const QlumPasswordQuestion& question, Named answer) override;
    void askUser(const QlumPasswordQuestion& question, const QlumUserChoice& proposal,
                 Chosen answer) override;
    void askChangedCertificate(const QlumCertificateChange& change, Decided answer) override;
    void askCertificate(const QlumCertificateQuestion& question, Judged answer) override;
    void askConnectError(const QlumConnectError& error, Decided answer) override;
    void askConnectAnew(const QlumConnectError& error, Decided answer) override;
    void askTlsTrust(const QString& server, const QString& url, const UaByteString& certificate,
                     const UaStatusCode& status, Decided answer) override;
    void tellFailure(const QString& server, const QString& url, const QlumConnectFailure& failure,
                     Decided answer) override;
    void tellUserRefused(const QString& server, const QlumConnectFailure& failure, Decided answer) override;
    void withdraw() override;

    /// Above which all dialogs of servers are shown; null while there is none.
    [[nodiscard]] static QWidget* parentWindow();

signals:
    /// The user who is told of a failure wants to know where it comes from.
    void diagnoseWanted();

private:
    [[nodiscard]] QWidget* window() const;
    [[nodiscard]] QMessageBox* makeWarning(const QString& title, const QString& text,
                                           QMessageBox::StandardButtons buttons,
                                           QMessageBox::StandardButton defaultButton) const;
    [[nodiscard]] QMessageBox* makeFailure(const QString& title, const QString& text,
                                           const QString& advice) const;
    void showFailure(QMessageBox* box, Decided answer);
    void show(QDialog* dialog, std::function<void(int result)> answer);

    QPointer<QDialog> m_dialog;
};
