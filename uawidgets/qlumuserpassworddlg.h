#pragma once
#include <app/api/qlumsecret.h>
#include <uawidgets/qlumbasewidget.h>

#include <QString>
#include <QWidget>

class QLabel;
class QLineEdit;

/// Asks for user name and password of a server. The title names the server.
class QlumUserPasswordDlg : public QlumBaseWidget
{
    Q_OBJECT
public:
    /// The user name is proposed; with one the password is asked for first.
    explicit QlumUserPasswordDlg(const QString& serverName, const QString& userName = QString(),
                                 QWidget* parent = nullptr);
    ~QlumUserPasswordDlg() override;

    /// What the field holds; meaningful after the dialog was accepted.
    [[nodiscard]] QString userName() const;
    /// What the field holds, until the dialog goes.
    [[nodiscard]] QlumSecretText password() const;

    /// Shows a warning above the fields, for example that the password would leave unencrypted. Plain text.
    void setWarning(const QString& text);

private:
    QLabel* m_warning;
    QLineEdit* m_userName;
    QLineEdit* m_password;
};
