#pragma once
#include <app/api/qlumsecret.h>
#include <uawidgets/qlumbasewidget.h>

#include <QWidget>

class QLineEdit;

/// Asks for the password of a private key.
class QlumPasswordDlg : public QlumBaseWidget
{
    Q_OBJECT
public:
    /// With an empty field.
    explicit QlumPasswordDlg(QWidget* parent = nullptr);
    ~QlumPasswordDlg() override;

    /// What the field holds, which is empty afterwards.
    [[nodiscard]] QlumSecretText takePassword();

private:
    QLineEdit* m_password;
};
