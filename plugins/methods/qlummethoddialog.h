#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumsettingscbinterface.h>
#include <plugins/methods/qlummethod.h>
#include <plugins/methods/qlummethodmemory.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/qlumbasewidget.h>

#include <QElapsedTimer>
#include <QLayout>
#include <QString>
#include <QTimer>
#include <QVariant>
#include <QWidget>

#include <optional>
#include <vector>

class QComboBox;
class QLabel;
class QPushButton;
class QSpinBox;
class QTreeView;
class QlumArgumentPanel;
class QlumMessageBar;
class QlumMethodCallModel;
class QlumViewHeading;
class QlumViewState;

/// What the windows of all methods have in common; owned by the plugin, which outlives them.
struct QlumMethodWorld
{
    QlumApplicationInterface& application;
    QlumSessionServicesProvider services;
    QlumJobPool& pool;
    QlumMethodMemory& memory;
};

/// A window that calls one method: asks for its inputs, calls it as often as the user likes and shows what
/// comes. Modeless, several may be open.
class QlumMethodDialog : public QlumBaseWidget, public QlumSettingsCBInterface
{
    Q_OBJECT
public:
    /// Begins to read what the method wants.
    QlumMethodDialog(QlumMethodWorld& world, unsigned int serverId, const UaNodeId& objectId,
                     const UaNodeId& methodId, QWidget* parent = nullptr);
    ~QlumMethodDialog() override;

    /// qlumNoServer when it was removed.
    [[nodiscard]] unsigned int serverId() const { return m_serverId; }
    /// The connection to some server has changed.
    void statusChanged(unsigned int serverId, QlumConnectionStatus status, const NamespaceMap& namespaceMap);
    /// A server was removed; results stay to be looked at.
    void serverRemoved(unsigned int serverId);

    void* openSettingsStore() override;
    void closeSettingsStore(void* handle) override;
    QVariant loadSetting(void* handle, const QString& key) override;
    void storeSetting(void* handle, const QString& key, const QVariant& value) override;

public slots:
    /// Reads anew what the method wants; what was entered is gone.
    void sltReload();
    /// Calls the method, unless an input cannot be sent.
    void sltCall();
    /// Gives the call up, and asks the server to end it.
    void sltCancel();

private:
    // ---- widgets
    void build();
    QLayout* makeTop();
    QWidget* makeInputs();
    QWidget* makeOutputs();
    QWidget* makeCalls();
    QLayout* makeButtons();
    void showState();

    // ---- the method
    void awaitTypes();
    void takeInfo(const UaStatus& status, const QlumMethodInfo& info);
    void showInfo();
    [[nodiscard]] QlumMethodArgument undeclaredArgument() const;
    [[nodiscard]] std::vector<UaVariant> rememberedValues();
    void remember(const QlumMethodCall& call);
    void loseMethod(const QString& why);

    // ---- calling
    [[nodiscard]] bool isReadyToSend();
    [[nodiscard]] UaNodeId chosenObject() const;
    void begin(QlumMethodCall call);
    void ended(QlumMethodCall call);
    void endWithoutTypes();
    void callFailed(const QString& why);
    void sendCancel(OpcUa_UInt32 requestHandle);
    void showOutcome(const QlumMethodCall& call);
    void sltUseInputs();
    void sltChooseOwner();
    void sltAddArgument();
    void tellElapsed();
    [[nodiscard]] bool canCall() const;

    QlumMethodWorld& m_world;
    unsigned int m_serverId;
    UaNodeId m_objectId;
    UaNodeId m_methodId;
    QlumMethodMemory::Key m_memoryKey;
    QlumMethodInfo m_info;
    bool m_isKnown = false;     ///< the info was read
    bool m_awaitsTypes = false; ///< what is under way goes on when the server's types are known
    bool m_mayRepeat = false;   ///< the user was told what is unusual about the inputs
    QlumConnectionStatus m_status = QlumConnectionStatus::Connected;
    QlumJobPool::Ticket m_reading = 0;
    QlumJobPool::Ticket m_calling = 0; ///< 0 while no call is under way
    QlumJobPool::Ticket m_cancelling = 0;
    QlumMethodCall m_call; ///< the one under way
    QElapsedTimer m_elapsed;
    QTimer m_tick;

    QlumViewHeading* m_heading = nullptr;
    QlumMessageBar* m_messages = nullptr;
    QLabel* m_description = nullptr;
    QWidget* m_ownerRow = nullptr;
    QComboBox* m_owner = nullptr;
    QPushButton* m_chooseOwner = nullptr;
    QlumArgumentPanel* m_inputs = nullptr;
    QlumArgumentPanel* m_outputs = nullptr;
    QLabel* m_outcomeIcon = nullptr;
    QLabel* m_outcome = nullptr;
    QTreeView* m_table = nullptr;
    QlumMethodCallModel* m_calls = nullptr;
    QSpinBox* m_timeout = nullptr;
    QPushButton* m_removeArgument = nullptr;
    QPushButton* m_addArgument = nullptr;
    QPushButton* m_callButton = nullptr;
    QPushButton* m_cancelButton = nullptr;
    QlumViewState* m_state;
};
