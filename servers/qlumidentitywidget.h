#pragma once
#include <servers/qlumconnectprompts.h>

#include <QString>
#include <QWidget>

class QComboBox;
class QFormLayout;
class QLineEdit;

/// Who to be at a server: the kind of identity, and what belongs to it.
class QlumIdentityWidget : public QWidget
{
    Q_OBJECT
public:
    explicit QlumIdentityWidget(QWidget* parent = nullptr);

    void setChoice(const QlumUserChoice& choice);
    /// Without a password, for which the owner has a row.
    [[nodiscard]] QlumUserChoice choice() const;
    /// Below the user name, and shown with it.
    void addUserRow(const QString& label, QWidget* field);
    void addUserRow(QWidget* field);

signals:
    void kindChanged();

private:
    [[nodiscard]] QWidget* createCertificatePage();
    [[nodiscard]] QWidget* createFileRow(QLineEdit*& edit, const QString& name, const QString& filter);
    void showPage();

    QComboBox* m_kind;
    QWidget* m_userPage;
    QFormLayout* m_userForm;
    QLineEdit* m_userName;
    QWidget* m_certificatePage = nullptr;
    QLineEdit* m_certificateFile = nullptr;
    QLineEdit* m_privateKeyFile = nullptr;
};
