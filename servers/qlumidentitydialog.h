#pragma once
#include <servers/qlumconnectprompts.h>
#include <uawidgets/qlumbasewidget.h>

#include <QString>
#include <QWidget>

class QLineEdit;
class QlumIdentityWidget;

/// Asks as whom a session is to go on. The title names the server.
class QlumIdentityDialog : public QlumBaseWidget
{
    Q_OBJECT
public:
    /// The warning stands above a password; empty for none. Plain text.
    QlumIdentityDialog(const QString& server, const QlumUserChoice& proposal, const QString& warning,
                       QWidget* parent = nullptr);

    ~QlumIdentityDialog() override;

    /// What the dialog holds; the password stays in its field until the dialog goes.
    [[nodiscard]] QlumUserChoice choice() const;

private:
    QlumIdentityWidget* m_identity;
    QLineEdit* m_password;
};
