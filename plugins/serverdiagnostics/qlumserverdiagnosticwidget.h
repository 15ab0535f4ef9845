#pragma once
#include <app/api/qlumactiontable.h>
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumdocumentwidgetinterface.h>
#include <app/api/qlumfollowedserver.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlumserverpools.h>
#include <app/api/qlumsessionservices.h>
#include <opcua/opcua_types.h>
#include <plugins/serverdiagnostics/qlumcountsubscription.h>
#include <plugins/serverdiagnostics/qlumdiagnosticdata.h>
#include <plugins/serverdiagnostics/qlumdiagnosticreader.h>
#include <uabase/values/uastatus.h>

#include <QElapsedTimer>
#include <QMap>
#include <QSettings>
#include <QShowEvent>
#include <QString>
#include <QTimer>
#include <QWidget>

#include <array>
#include <functional>
#include <memory>
#include <optional>

class QComboBox;
class QLabel;
class QTabWidget;
class QlumDiagnosticChooser;
class QlumDiagnosticEndpoints;
class QlumDiagnosticPanel;
class QlumDiagnosticServerPage;
class QlumMessageBar;
class QlumSessionTable;
class QlumSubscriptionTable;
class QlumViewHeading;
class QlumViewState;

/// Asks the server behind a session for its description and its endpoints; on a job.
using QlumAskEndpoints = std::function<QlumEndpointReading(QlumSessionServices& services, QlumJob& job)>;

/// A document that shows what a server tells of itself.
class QlumServerDiagnosticWidget : public QWidget, public QlumDocumentWidgetInterface
{
    Q_OBJECT
    Q_INTERFACES(QlumDocumentWidgetInterface)
public:
    /// The application outlives the view. Without endpoints the server is asked.
    QlumServerDiagnosticWidget(QlumApplicationInterface& application, std::shared_ptr<QlumServerPools> pools,
                               QlumSessionServicesProvider services, QlumAskEndpoints endpoints = {},
                               QWidget* parent = nullptr);
    ~QlumServerDiagnosticWidget() override;

    /// Another server was selected in the project, which the view shows unless it keeps to its own.
    void serverSelectionChanged(unsigned int serverId);
    void sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status);
    /// Nothing of the server is used any more when this returns.
    void sessionRemoved(unsigned int serverId);

    void saveSettings(QSettings& settings) override;
    void loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap) override;

    // ---- for tests, and whoever looks at what the view has
    [[nodiscard]] unsigned int serverId() const { return m_followed.id(); }
    [[nodiscard]] QlumDiagnosticServerPage* serverPage() const { return m_serverPage; }
    [[nodiscard]] QlumSessionTable* sessions() const { return m_sessions; }
    [[nodiscard]] QlumDiagnosticChooser* sessionChooser() const { return m_sessionChooser; }
    [[nodiscard]] QlumDiagnosticPanel* sessionPanel() const { return m_sessionPanel; }
    [[nodiscard]] QlumDiagnosticPanel* securityPanel() const { return m_securityPanel; }
    [[nodiscard]] QlumSubscriptionTable* subscriptions() const { return m_subscriptions; }
    [[nodiscard]] QlumDiagnosticChooser* subscriptionChooser() const { return m_subscriptionChooser; }
    [[nodiscard]] QlumDiagnosticPanel* subscriptionPanel() const { return m_subscriptionPanel; }
    /// Whether something is being read.
    [[nodiscard]] bool isReading() const;
    /// All panels as a text.
    [[nodiscard]] QString report() const;

public slots:
    /// Reads everything anew.
    void sltRefresh();
    /// Reads the list of sessions anew; an automatic call waits for one that is under way.
    void sltGetSessions(bool isAutomatic);
    /// The same for subscriptions.
    void sltGetSubscriptions(bool isAutomatic);
    /// One of the counts that are watched.
    void sltCountChanged(int count, unsigned int number);

protected:
    /// Names of servers may have changed meanwhile.
    void showEvent(QShowEvent* event) override;

private:
    /// What is read on its own.
    enum Reading { Server, Sessions, Session, Subscriptions, Subscription, Counts, Enabling, readingCount };
    /// Works on a job and gives what is to be done with it here.
    using Work = std::function<std::function<void()>(QlumDiagnosticReader& reader)>;

    // ---- widgets
    void createActions();
    [[nodiscard]] QWidget* makeBar();
    [[nodiscard]] QWidget* makeSessionPage();
    [[nodiscard]] QWidget* makeSubscriptionPage();
    [[nodiscard]] QlumDiagnosticPanel* makeDetails(const QString& object, const QString& title);
    void connectParts();

    // ---- which server
    void listServers();
    void setServer(unsigned int serverId);
    void sltServerChosen(int index);
    void begin();
    void end();
    void clearAll();
    void updateState();

    // ---- reading
    void start(Reading what, const QString& text, const Work& work);
    void giveUp();
    void ended(Reading what);
    void showReading(Reading what, bool isReading);
    void readServer();
    void readSession();
    void readSubscription();
    void getServersAndEndpoints();
    void setAsking(bool isAsking);
    void readShown();

    void takeServer(const QlumServerReading& reading);
    void takeSessions(QlumSessionReading& reading);
    void takeSession(const QString& key, const QlumDetailReading& reading);
    void takeSubscriptions(QlumSubscriptionReading& reading);
    void takeSubscription(const QString& key, const QlumDetailReading& reading);
    void tellListFault(const QString& topic, const QString& what, const UaStatus& status);
    void nameSessions();
    [[nodiscard]] QString sessionNote(const QlumSessionReading& reading) const;
    void clearSessionWidgets();
    void clearSubscriptionWidgets();

    // ---- the counts
    void createSubscription();
    void openSubscription();
    void watchCountsAgain();
    void countsOpened(OpcUa_UInt32 subscriptionId, const UaStatus& status);
    void countsEnded(const UaStatus& status);
    [[nodiscard]] bool reopenLater(const QString& reason, const UaStatus& status);
    void countsNotLive(const UaStatus& status);
    void dropSubscription();
    void readChangedLists();

    // ---- the server's flag
    void sltEnableWanted(bool isWanted);
    void writeEnabled(bool isWanted);
    void takeEnabled(bool isWanted, const UaStatus& status);

    // ---- what is kept
    void sltIntervalChosen();
    void copyReport();
    void saveReport();

    QlumApplicationInterface& m_application;
    const std::shared_ptr<QlumServerPools> m_pools;
    const QlumSessionServicesProvider m_services;
    const QlumAskEndpoints m_askEndpoints;
    QlumViewState* m_state;
    QlumActionTable m_actions;
    QlumViewHeading* m_heading;
    QlumMessageBar* m_messages;
    QComboBox* m_server = nullptr;
    QComboBox* m_interval = nullptr;
    QLabel* m_offline = nullptr;
    QTabWidget* m_tabs = nullptr;
    QlumDiagnosticServerPage* m_serverPage = nullptr;
    QlumSessionTable* m_sessions;
    QlumDiagnosticChooser* m_sessionChooser = nullptr;
    QlumDiagnosticPanel* m_sessionPanel = nullptr;
    QlumDiagnosticPanel* m_securityPanel = nullptr;
    QlumSubscriptionTable* m_subscriptions;
    QlumDiagnosticChooser* m_subscriptionChooser = nullptr;
    QlumDiagnosticPanel* m_subscriptionPanel = nullptr;
    QlumDiagnosticEndpoints* m_endpoints = nullptr;
    QlumFollowedServer m_followed;
    unsigned int m_selected = qlumNoServer; ///< in the project
    std::shared_ptr<QlumDiagnosticFaults> m_faults;
    std::shared_ptr<QlumCountSubscription> m_counts;
    std::array<QlumJobPool::Ticket, readingCount> m_tickets{}; ///< of what is under way; else 0
    std::array<bool, readingCount> m_isDue{};                  ///< is read once more
    std::array<std::optional<unsigned int>, 3> m_numbers;      ///< the counts, as they were told last
    QTimer m_intervalTimer;
    QTimer m_countTimer;
    QTimer m_reopenTimer;     ///< until the counts are watched again
    QElapsedTimer m_countAge; ///< since they are watched
    int m_countAttempts = 0;  ///< to have their subscription back
    bool m_areSessionsOld = false;
    bool m_areSubscriptionsOld = false;
    bool m_isAsking = false;    ///< for servers and endpoints
    bool m_isListing = false;   ///< servers, which the user has not chosen
    QlumJobPool m_endpointPool; ///< of its own, for its connections; last: joined first
};
