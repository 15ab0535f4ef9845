#pragma once
#include <servers/qlumendpoint.h>

#include <QByteArray>
#include <QHostInfo>
#include <QString>
#include <QWidget>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QlumGivenCertificate;

/// The endpoint with everything about it: as it was chosen, or set by hand where no list of the server says
/// what is to be used; and the host that is dialled where the server names another one.
class QlumAdvancedPage : public QWidget
{
    Q_OBJECT
public:
    explicit QlumAdvancedPage(QWidget* parent = nullptr);

    /// The endpoint that is chosen, as the server names it, and where it would be dialled (the same for no
    /// difference). What was set by hand stays.
    void setEndpoint(const QlumEndpoint& named, const QString& dialledUrl);
    /// As setEndpoint(), with the host that was remembered for it.
    void setDialledHost(const QString& authority);
    /// The certificate (DER) that was given for the server; sets the endpoint by hand, unless it is empty.
    void setGivenCertificate(const QByteArray& der);

    [[nodiscard]] bool isByHand() const;
    /// False while a URL or host that was entered cannot be used.
    [[nodiscard]] bool isComplete() const;
    /// What is to be connected, with the URL that is dialled.
    [[nodiscard]] QlumEndpoint endpoint() const;
    /// Host and port that are dialled instead of those which the server names; empty for none.
    [[nodiscard]] QString dialledHost() const;
    /// The certificate (DER) that the server is known to have; empty when nobody has given one.
    [[nodiscard]] QByteArray givenCertificate() const;

signals:
    void changed();

private slots:
    void sltHostFound(const QHostInfo& info);

private:
    [[nodiscard]] QGroupBox* createEndpointGroup();
    [[nodiscard]] QGroupBox* createHostGroup();
    void showEndpoint();
    void showHost();
    void lookUp(const QString& host);
    void takePolicy();
    void updateControls();

    [[nodiscard]] QString namedUrl() const;

    QlumEndpoint m_named;
    QString m_dialledUrl; ///< of the endpoint that was chosen
    QString m_looked;     ///< the host that was looked up last
    int m_lookUp = 0;     ///< its number
    QGroupBox* m_byHand;
    QLineEdit* m_url;
    QComboBox* m_policy;
    QComboBox* m_mode;
    QLineEdit* m_applicationUri;
    QlumGivenCertificate* m_certificate;
    QLabel* m_transport;
    QCheckBox* m_dials;
    QLineEdit* m_host;
    QLabel* m_hostText;
};
