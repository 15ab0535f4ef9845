// Asks for what goes into the application's own certificate, and makes it.
#pragma once
#include <app/api/qlumsecret.h>
#include <certificates/qlumowncertificate.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkirsakeypair.h>
#include <uawidgets/qlumbasewidget.h>

#include <QLayout>
#include <QString>
#include <QWidget>

#include <array>
#include <memory>

class QCheckBox;
class QComboBox;
class QDialogButtonBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QlumJobPool;

/// Ends as accepted only with a certificate and its key, which are made on a thread of their own after OK;
/// the window stays alive meanwhile, and Cancel ends the work. Nothing is written to a file here.
class QlumNewCertificateDlg : public QlumBaseWidget
{
    Q_OBJECT
public:
    /// With noCancel there is no way out but OK. canProtectKey offers a password for the key.
    QlumNewCertificateDlg(const QString& commonName, const QString& organization, bool noCancel = false,
                          bool canProtectKey = true, QWidget* parent = nullptr);
    ~QlumNewCertificateDlg() override;

    /// What the fields say; the validity is that of the choice.
    [[nodiscard]] QlumOwnCertificate values() const;
    /// Fills names, addresses, key length and algorithm.
    void setValues(const QlumOwnCertificate& values);

    /// After acceptance.
    [[nodiscard]] const UaPkiCertificate& certificate() const { return m_certificate; }
    [[nodiscard]] const UaPkiRsaKeyPair& keyPair() const { return m_keyPair; }
    /// Empty when the key is not to be protected. Wiped with the dialog.
    [[nodiscard]] const QString& password() const { return m_password.text(); }

    /// As "Add DNS Name" and "Add IP Address" accept them; addresses without brackets and zone.
    [[nodiscard]] static bool isDnsName(const QString& text);
    [[nodiscard]] static QString withoutZone(const QString& text);
    [[nodiscard]] static bool isAddress(const QString& text);

public slots:
    void accept() override;
    /// Ends the making of a key when one is made, else the dialog.
    void reject() override;

private slots:
    void sltValidate();
    void sltValidityChosen(int index);
    void sltAddDnsName();
    void sltAddAddress();

private:
    enum Field { CommonName, Organization, OrganizationUnit, Locality, State, Country, FieldCount };
    struct NameField
    {
        QLineEdit* edit = nullptr;
        QLabel* status = nullptr;
    };
    struct AddressList
    {
        QListWidget* list = nullptr;
        QPushButton* remove = nullptr;
    };

    void selectKeySize(int bits);
    void selectAlgorithm(UaPkiCertificate::SignatureAlgorithm algorithm);
    void createLayout(bool noCancel, bool canProtectKey);
    [[nodiscard]] QWidget* createSubjectGroup();
    [[nodiscard]] QWidget* createInformationGroup();
    [[nodiscard]] QWidget* createSettingsGroup();
    [[nodiscard]] QWidget* createPasswordGroup();
    [[nodiscard]] QWidget* createProgress();
    void connectFields();
    [[nodiscard]] QLayout* createAddressList(AddressList& target, const char* name, const QString& title,
                                             void (QlumNewCertificateDlg::*add)());
    void createField(QFormLayout* form, Field field, const QString& label, const char* name, int maxLength);
    [[nodiscard]] QComboBox* createChoice(const char* name, const QString& toolTip);
    void createButtons(bool noCancel);

    [[nodiscard]] QString problemOf(Field field) const;
    [[nodiscard]] QString passwordProblem() const;
    [[nodiscard]] QlumSecretText takePasswords();
    [[nodiscard]] QString firstProblem();
    [[nodiscard]] QString applicationUri() const;
    void addUnique(QListWidget* list, const QString& text);
    void setBusy(bool busy);
    void finished(const QlumMadeCertificate& made);

    bool m_noCancel;
    bool m_busy = false;
    std::array<NameField, FieldCount> m_fields;
    QLineEdit* m_uri = nullptr;
    AddressList m_addresses;
    AddressList m_dnsNames;
    QLabel* m_addressStatus = nullptr;
    QComboBox* m_keySize = nullptr;
    QComboBox* m_algorithm = nullptr;
    QComboBox* m_validity = nullptr;
    QCheckBox* m_protect = nullptr;
    QLineEdit* m_passwordEdit = nullptr;
    QLineEdit* m_repetition = nullptr;
    QLabel* m_passwordStatus = nullptr;
    QLabel* m_problem = nullptr;
    QWidget* m_inputs = nullptr;
    QWidget* m_progressRow = nullptr;
    QLabel* m_progressText = nullptr;
    QDialogButtonBox* m_buttons = nullptr;

    QlumSecretText m_password;
    UaPkiCertificate m_certificate;
    UaPkiRsaKeyPair m_keyPair;
    std::unique_ptr<QlumJobPool> m_pool; ///< last: it ends before what its job reports to
};
