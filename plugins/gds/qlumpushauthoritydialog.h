#pragma once
#include <app/api/qlumsecret.h>
#include <uawidgets/qlumbasewidget.h>

#include <QString>
#include <QWidget>

class QLineEdit;
class QPushButton;
class QSpinBox;

/// Asks for the password of the authority of this computer, or for what a new one is made of.
class QlumPushAuthorityDialog : public QlumBaseWidget
{
    Q_OBJECT
public:
    explicit QlumPushAuthorityDialog(bool isNew, QWidget* parent = nullptr);

    /// Takes the password out of its field.
    [[nodiscard]] QlumSecretText takePassword();
    /// Makes what was asked for, under a wait cursor. What failed; empty when nothing did.
    [[nodiscard]] QString create(const QString& folder);

private:
    void updateButtons();

    const bool m_isNew;
    QLineEdit* m_name = nullptr;
    QLineEdit* m_organization = nullptr;
    QSpinBox* m_years = nullptr;
    QLineEdit* m_password;
    QLineEdit* m_again = nullptr;
    QPushButton* m_go;
};
