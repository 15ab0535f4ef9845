#pragma once
#include <uawidgets/qlumbasewidget.h>

#include <QString>
#include <QWidget>

class QLineEdit;

/// Asks for the password of a private key.
class QlumPasswordDlg : public QlumBaseWidget
{
    Q_OBJECT
public:
    /// With an empty field.
    explicit QlumPasswordDlg(QWidget* parent = nullptr);

    /// What the field holds, which is empty afterwards; whoever takes it wipes it.
    [[nodiscard]] QString takePassword();

private:
    QLineEdit* m_password;
};
