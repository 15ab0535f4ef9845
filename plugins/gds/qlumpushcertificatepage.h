#pragma once
#include <plugins/gds/qlumpushdata.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uanodeid.h>

#include <QString>
#include <QWidget>

class QComboBox;
class QFormLayout;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QSpinBox;

/// The steps to a new certificate for the server: what it is for, whose key, and who signs it; then the
/// changes that wait to be applied.
class QlumPushCertificatePage : public QWidget
{
    Q_OBJECT
public:
    explicit QlumPushCertificatePage(QWidget* parent = nullptr);

    /// The certificate is the one that the server uses now; null where it is not known.
    void setServer(const QlumPushServer& server, const UaPkiCertificate& current);
    void clear();
    /// Whether the user may do something just now.
    void setReady(bool isReady);
    /// Our authority; null while there is none.
    void setAuthority(const UaPkiCertificate& authority);
    /// Whether changes wait for ApplyChanges, and what is known of them.
    void setPending(bool isPending, const QString& text);

    [[nodiscard]] QlumPushOrder order() const;

signals:
    /// By our authority, all in one go.
    void makeWanted();
    /// A request to be signed by somebody else, and what came of it.
    void requestWanted();
    void answerWanted();
    void authorityWanted();
    /// Files with the authority's certificate and its revocation list.
    void exportAuthorityWanted();
    void showWanted(const UaByteString& der);
    void applyWanted();
    void cancelWanted();
    void resetWanted();

private:
    void makeWhat(QFormLayout* form);
    [[nodiscard]] QGroupBox* makeKeyBox();
    [[nodiscard]] QGroupBox* makeSignerBox();
    [[nodiscard]] QWidget* makeChangesBar();
    [[nodiscard]] QPushButton* button(const QString& name, const QString& text, const QString& toolTip);
    void listTypes();
    void updateButtons();
    [[nodiscard]] const QlumPushGroup* group() const;

    QComboBox* m_group;
    QComboBox* m_type;
    QLabel* m_current;
    QPushButton* m_showCurrent;
    QLineEdit* m_subject;
    QRadioButton* m_newKey;
    QRadioButton* m_oldKey;
    QRadioButton* m_ownKey;
    QComboBox* m_format;
    QLabel* m_authority;
    QSpinBox* m_days;
    QPushButton* m_newAuthority;
    QPushButton* m_exportAuthority;
    QPushButton* m_make;
    QPushButton* m_request;
    QPushButton* m_answer;
    QLabel* m_pendingText;
    QPushButton* m_apply;
    QPushButton* m_cancel;
    QPushButton* m_reset;
    QlumPushServer m_server;
    UaPkiCertificate m_certificate;
    bool m_isReady = false;
    bool m_isPending = false;
    bool m_hasAuthority = false;
};
