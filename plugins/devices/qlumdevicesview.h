#pragma once
#include <app/api/qlumactiontable.h>
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumdocumentwidgetinterface.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlummonitoring.h>
#include <app/api/qlumserverpools.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtoolservices.h>
#include <plugins/devices/qlumdeviceclient.h>
#include <plugins/devices/qlumdevicedata.h>
#include <plugins/devices/qlumdevicewatch.h>
#include <plugins/devices/qlumparameterset.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>

#include <QHash>
#include <QMap>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QUrl>
#include <QWidget>

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <vector>

class QLabel;
class QLineEdit;
class QTabWidget;
class QTableView;
class QTreeView;
class QlumDeviceDocumentPage;
class QlumDeviceLockBar;
class QlumDeviceMethodPage;
class QlumDeviceTransferPage;
class QlumDeviceTreeModel;
class QlumMessageBar;
class QlumNameplateModel;
class QlumParameterPage;
class QlumTableFilter;
class QlumViewHeading;
class QlumViewState;

/// Jobs of all devices views of the program. Locks have threads of their own, so that nothing that takes long
/// keeps one from being renewed in time.
struct QlumDevicePools
{
    QlumServerPools work;
    QlumServerPools locks;
};

/// What the view has asked of its user; tests answer themselves.
struct QlumDeviceWorld
{
    /// Whether to do what the question says.
    std::function<bool(QWidget* parent, const QString& question)> agree;
    /// Those of the differences that shall be taken over; none when the user gave up.
    std::function<std::vector<QlumParameterDifference>(
        QWidget* parent, const QString& heading, const QString& otherTitle,
        std::vector<QlumParameterDifference> differences, const QStringList& remarks)>
        choose;
    /// The name of a file to write; empty when the user gave up.
    std::function<QString(QWidget* parent, const QString& proposed, const QString& filter)> saveName;
    /// The name of a file to read; empty when the user gave up.
    std::function<QString(QWidget* parent, const QString& filter)> openName;
    /// Shows a page of the web.
    std::function<bool(const QUrl& address)> browse;
};

/// A document with the devices of the server that is selected in the project.
class QlumDevicesView : public QWidget, public QlumDocumentWidgetInterface
{
    Q_OBJECT
    Q_INTERFACES(QlumDocumentWidgetInterface)
public:
    /// The application outlives the view.
    QlumDevicesView(QlumApplicationInterface& application, std::shared_ptr<QlumDevicePools> pools,
                    QlumSessionServicesProvider services, const QlumMonitoringProvider& monitoring,
                    QlumDeviceWorld world, QWidget* parent = nullptr);
    /// Gives the locks back that it holds.
    ~QlumDevicesView() override;

    /// Another server was selected in the project. The view stays where it is while values wait to be written
    /// or a lock is held.
    void serverSelectionChanged(unsigned int serverId);
    void sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status);
    /// Nothing of the server is used any more when this returns.
    void sessionRemoved(unsigned int serverId);

    void saveSettings(QSettings& settings) override;
    void loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap) override;

    // ---- for tests, and whoever looks at what the view has
    [[nodiscard]] bool isBusy() const { return m_reading != 0 || m_working != 0 || m_lockCalls > 0; }
    [[nodiscard]] const QlumDeviceSpace& space() const { return *m_space; }
    [[nodiscard]] QlumParameterPage* parameters() const { return m_parameters; }
    [[nodiscard]] bool isHeld(const UaNodeId& device) const { return m_held.contains(device); }
    void selectDevice(int device);

public slots:
    /// Reads everything anew.
    void sltRefresh();
    void readParameters();
    void writeParameters();
    void watchParameters(bool isWanted);
    void saveParameters();
    void loadParameters();
    void compareWithType();
    void lockDevice();
    void unlockDevice();
    void breakLock();
    /// Renews all locks that are held.
    void renewLocks();
    void transfer(bool isToDevice);

private:
    using Services = std::shared_ptr<QlumSessionServices>;
    /// What is to be done with the result, on the GUI thread.
    using Finish = std::function<void()>;
    using Work = std::function<Finish(const Services& services, QlumJob& job)>;

    // ---- widgets
    void createActions();
    [[nodiscard]] QWidget* makeBar();
    [[nodiscard]] QWidget* makeTree();
    void makePages();
    void connectParts();
    [[nodiscard]] QlumToolNodes selectedNodes(const std::function<UaNodeId()>& current) const;

    // ---- which server
    void setServer(unsigned int serverId);
    [[nodiscard]] bool isUp() const;
    void clearAll();
    void updateState();
    [[nodiscard]] QString noteText() const;
    void updateLock();

    // ---- work
    [[nodiscard]] QlumJobPool::Ticket run(QlumServerPools& pools, const QString& text, const Work& work,
                                          const Finish& ended);
    void read(const QString& text, const Work& work);
    bool work(const QString& text, const Work& work);
    void giveUpReading();
    void takeSpace(QlumDeviceSpace space);
    void readDetails(bool keepsChanges);
    void takeDetails(const QlumDeviceDetails& details, bool keepsChanges);
    void takeValues(const std::vector<UaNodeId>& ids, const std::vector<UaDataValue>& values);
    void takeOutcomes(const UaNodeId& device, const UaNodeId& lock, const QlumParameterOutcomes& outcomes);
    void keepChanges();
    void watchStates();
    void takeState(quint64 key, const UaDataValue& value);
    void tell(const QString& what, const QString& why);
    void stage(const std::vector<QlumParameterDifference>& chosen);
    void openDocument(const QlumDeviceDocument& document);
    void openAddress(const QString& address);
    void saveDocument(const QlumDeviceDocument& document);

    // ---- locks
    using LockCall = std::function<QlumDeviceAnswer(QlumDeviceClient& client, const QlumDevice& device)>;
    using LockDone = std::function<void(const QlumDevice& device, const QlumDeviceAnswer& answer)>;
    void callLock(const QlumDevice& device, const QString& text, const LockCall& call, const LockDone& done);
    void checkLocks();
    void loseLock(const UaNodeId& device, const QString& why);
    void loseAllLocks(const QString& why);
    void giveLocksBack();
    [[nodiscard]] const QlumDevice* current() const;
    /// Null where nothing can be locked.
    [[nodiscard]] const QlumDevice* lockHolder() const;

    QlumApplicationInterface& m_application;
    const std::shared_ptr<QlumDevicePools> m_pools;
    const QlumSessionServicesProvider m_services;
    const QlumDeviceWorld m_world;
    QlumViewState* m_state;
    QlumActionTable m_actions;
    QlumViewHeading* m_heading;
    QlumMessageBar* m_messages;
    QLabel* m_note = nullptr;
    QLineEdit* m_filterText = nullptr;
    QlumDeviceTreeModel* m_treeModel = nullptr;
    QlumTableFilter* m_treeFilter = nullptr;
    QlumTableFilter* m_nameplateFilter = nullptr;
    QTreeView* m_tree = nullptr;
    QTabWidget* m_tabs = nullptr;
    QlumDeviceLockBar* m_lockBar = nullptr;
    QlumParameterPage* m_parameters = nullptr;
    QlumNameplateModel* m_nameplates = nullptr;
    QTableView* m_nameplateView = nullptr;
    QlumDeviceMethodPage* m_methods = nullptr;
    QlumDeviceDocumentPage* m_documents = nullptr;
    QlumDeviceTransferPage* m_transfer = nullptr;
    QlumDeviceWatch m_stateWatch;
    QlumDeviceWatch m_valueWatch;

    QHash<unsigned int, QlumConnectionStatus> m_status;
    unsigned int m_serverId = qlumNoServer;
    std::shared_ptr<QlumDeviceSpace> m_space = std::make_shared<QlumDeviceSpace>();
    bool m_isRead = false;  ///< the space is what the server has told
    int m_current = -1;     ///< place of the device that is shown
    QString m_wantedDevice; ///< path of the one to be shown when it is there
    std::map<UaNodeId, std::vector<QlumParameterWrite>> m_kept; ///< changes of devices that are not shown
    std::set<UaNodeId> m_held;                                  ///< devices that this session has locked
    std::set<UaNodeId> m_toldLocked; ///< devices that are locked by what the subscription has told last
    QTimer m_renewTimer;
    QTimer m_checkTimer; ///< until locks are looked at again
    QlumJobPool::Ticket m_reading = 0;
    QlumJobPool::Ticket m_working = 0;
    bool m_isTransferring = false;
    int m_lockCalls = 0; ///< that are under way
};
