#pragma once
#include <servers/qlumconnectprompts.h>
#include <servers/qlumendpoint.h>

#include <QString>
#include <QVector>
#include <QWidget>

class QComboBox;
class QFormLayout;
class QLabel;
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
    /// Leaves the kinds of users that the endpoint advertises; all when it says nothing about them. When the
    /// chosen kind is none of them, the first is chosen and the user is told.
    void setOffered(const QVector<QlumUserTokenPolicy>& tokens);
    /// Below the user name, and shown with it.
    void addUserRow(const QString& label, QWidget* field);
    void addUserRow(QWidget* field);

signals:
    void kindChanged();

private:
    [[nodiscard]] QWidget* createCertificatePage();
    [[nodiscard]] QWidget* createFileRow(QLineEdit*& edit, const QString& name, const QString& filter);
    void showPage();

    void fillKinds(const QVector<int>& kinds);

    QComboBox* m_kind;
    QLabel* m_hint;
    int m_wanted = 0; ///< what the user has chosen, also while it is not offered
    QWidget* m_userPage;
    QFormLayout* m_userForm;
    QLineEdit* m_userName;
    QWidget* m_certificatePage = nullptr;
    QLineEdit* m_certificateFile = nullptr;
    QLineEdit* m_privateKeyFile = nullptr;
};
