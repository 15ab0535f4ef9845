#pragma once
#include <app/api/qlumactiontable.h>
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumdocumentwidgetinterface.h>
#include <app/api/qlumfollowedserver.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlumsecret.h>
#include <app/api/qlumserverpools.h>
#include <app/api/qlumsessionservices.h>
#include <certificates/qlumcertificatemanagerdialog.h>
#include <plugins/gds/qlumpushclient.h>
#include <plugins/gds/qlumpushdata.h>
#include <plugins/gds/qlumpushplandialog.h>
#include <plugins/gds/qlumpushsigning.h>
#include <plugins/gds/qlumtrustlist.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastatus.h>

#include <QMap>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <memory>
#include <vector>

class QLabel;
class QPushButton;
class QTabWidget;
class QlumMessageBar;
struct QlumMessage;
class QlumPushCertificatePage;
class QlumPushListPage;
class QlumPushListTable;
class QlumPushRecordPage;
class QlumPushServerPage;
class QlumViewHeading;
class QlumViewState;

/// The certificate that the server has presented to its session; null when it has none.
[[nodiscard]] UaPkiCertificate qlumPresentedBy(const QlumSessionServices& services);

/// What the view needs of the program around it, apart from services; tests have their own.
struct QlumPushWorld
{
    /// The certificate of this client.
    std::function<UaPkiCertificate()> ownCertificate;
    /// Where the authority of this computer is.
    std::function<QString()> authorityFolder;
    /// Whether the plan is to be carried out; asks the user.
    std::function<bool(QWidget* parent, const QlumPushPlan& plan)> agree;
    /// What the server has presented to that session.
    std::function<UaPkiCertificate(const QlumSessionServices& services)> presented = &qlumPresentedBy;
    /// For how long a server may stay away that applies its changes, ms.
    int returnTime = 60'000;
    /// Shows this client's own certificates beside the view.
    std::function<void(QWidget* parent)> showManager = &qlumShowCertificateManager;
};

/// A document that puts certificates and trust lists onto the server that is selected in the project.
class QlumPushView : public QWidget, public QlumDocumentWidgetInterface
{
    Q_OBJECT
    Q_INTERFACES(QlumDocumentWidgetInterface)
public:
    /// The application outlives the view.
    QlumPushView(QlumApplicationInterface& application, std::shared_ptr<QlumServerPools> pools,
                 QlumSessionServicesProvider services, QlumPushWorld world, QWidget* parent = nullptr);
    ~QlumPushView() override;

    /// Another server was selected in the project.
    void serverSelectionChanged(unsigned int serverId);
    void sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status);
    /// Nothing of the server is used any more when this returns.
    void sessionRemoved(unsigned int serverId);

    void saveSettings(QSettings& settings) override;
    void loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap) override;

    // ---- for tests, and whoever looks at what the view has
    [[nodiscard]] bool isBusy() const { return m_ticket != 0; }
    [[nodiscard]] QlumPushServerPage* serverPage() const { return m_serverPage; }
    [[nodiscard]] QlumPushListPage* listPage() const { return m_listPage; }
    [[nodiscard]] QlumPushListTable* rejected() const { return m_rejected; }
    [[nodiscard]] QlumPushCertificatePage* certificatePage() const { return m_certificatePage; }
    [[nodiscard]] QlumPushRecordPage* record() const { return m_record; }

public slots:
    /// Reads everything anew.
    void sltRefresh();
    void readList();
    void writeList();
    void readRejected();
    /// The selected one of the rejected certificates becomes a trusted one.
    void trustRejected();
    void applyChanges();
    void cancelChanges();
    void resetServer();

private:
    /// Works on a job and gives what is to be done with it here.
    using Work = std::function<std::function<void()>(QlumPushClient& client, QlumJob& job)>;

    // ---- widgets
    void createActions();
    [[nodiscard]] QWidget* makeBar();
    [[nodiscard]] QWidget* makePendingRow();
    [[nodiscard]] QWidget* makeRejectedPage();
    void connectParts();

    // ---- which server
    void setServer(unsigned int serverId);
    void begin();
    void clearAll();
    void updateState();

    // ---- work
    bool start(const QString& text, const Work& work);
    void ended();
    void giveUp();
    void takeSteps(const std::vector<QlumPushStep>& steps);
    void takeServer(const QlumPushServer& server, const UaPkiCertificate& current);
    void takeList(const QlumTrustList& list, const UaDateTime& time, const UaStatus& status);
    [[nodiscard]] QString userText() const;
    void writeDown(const QString& text);
    void tell(const QString& what, const QString& why);
    void tellFault(const QString& what, const QString& method, const UaStatus& status);
    [[nodiscard]] bool mayConfigure() const;
    void tellWhatIsMissing();
    void offerAdministrator(QlumMessage& message);
    void connectAsAdministrator();
    [[nodiscard]] bool agree(const QlumPushPlan& plan);
    void tellOtherChange(const QString& what);
    void change(const UaByteString& der, bool isTrusted, bool isAdded);
    void sendList(const QlumPushGroup& group);
    void setPending(const QString& what);
    void showPending();
    void dropPending();

    // ---- a new certificate
    void makeCertificate();
    void saveRequest();
    void importAnswer();
    void takeSigned(const QlumPushSigned& signedOne);
    void makeAuthority();
    void exportAuthority();
    void showAuthority();
    void awaitServer();
    bool checkReturned();
    void missServer();

    const std::shared_ptr<QlumServerPools> m_pools;
    const QlumSessionServicesProvider m_services;
    const QlumPushWorld m_world;
    QlumViewState* m_state;
    QlumActionTable m_actions;
    QlumViewHeading* m_heading;
    QlumMessageBar* m_messages;
    QWidget* m_pendingRow;
    QLabel* m_pendingText;
    QPushButton* m_applyNow;
    QLabel* m_note = nullptr;
    QTabWidget* m_tabs = nullptr;
    QlumPushServerPage* m_serverPage = nullptr;
    QlumPushListPage* m_listPage = nullptr;
    QlumPushListTable* m_rejected = nullptr;
    QlumPushCertificatePage* m_certificatePage = nullptr;
    QlumPushRecordPage* m_record = nullptr;
    QlumFollowedServer m_followed;
    QlumPushServer m_server;
    UaPkiCertificate m_current;         ///< that the server uses now
    UaByteString m_request;             ///< that the server has made last
    UaByteString m_sent;                ///< certificate that was sent and waits to be applied
    UaByteString m_expected;            ///< that the server has to come back with
    QStringList m_pending;              ///< what waits to be applied
    std::vector<QlumPushStep> m_failed; ///< calls of the last job that did
    QTimer m_returnTimer;               ///< runs while the server has to come back
    QlumJobPool::Ticket m_ticket = 0;   ///< of what is under way
    std::function<void()> m_finish;     ///< what is to be done when it has ended
};
