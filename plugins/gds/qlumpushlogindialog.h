#pragma once
#include <app/api/qlumtoolservices.h>
#include <uawidgets/qlumbasewidget.h>

#include <QString>
#include <QWidget>

class QLineEdit;
class QPushButton;

/// Asks for the administrator as whom a server is to be connected anew, encrypted.
class QlumPushLoginDialog : public QlumBaseWidget
{
    Q_OBJECT
public:
    explicit QlumPushLoginDialog(const QString& server, QWidget* parent = nullptr);

    /// Takes the password out of its field.
    [[nodiscard]] QlumIdentity takeIdentity();

private:
    QLineEdit* m_user;
    QLineEdit* m_password;
};
