// The smaller pages of the devices view.
#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <plugins/devices/qlumdeviceclient.h>
#include <plugins/devices/qlumdevicedata.h>
#include <uawidgets/qlumwrappingbar.h>

#include <QString>
#include <QWidget>

#include <vector>

class QLabel;
class QPushButton;
class QTableView;
class QlumDeviceListModel;
class QlumViewState;

/// The methods of a device; they are called by the program's method dialog.
class QlumDeviceMethodPage : public QWidget
{
    Q_OBJECT
public:
    explicit QlumDeviceMethodPage(QlumViewState& state, QWidget* parent = nullptr);

    void setMethods(unsigned int serverId, const std::vector<QlumDeviceMethod>& methods);

signals:
    void told(const QString& what, const QString& why);

private:
    void call();

    QlumDeviceListModel* m_model;
    QTableView* m_view;
    QPushButton* m_call;
    unsigned int m_serverId = qlumNoServer;
    std::vector<QlumDeviceMethod> m_methods;
};

/// What a device offers to look at.
class QlumDeviceDocumentPage : public QWidget
{
    Q_OBJECT
public:
    explicit QlumDeviceDocumentPage(QlumViewState& state, QWidget* parent = nullptr);

    void setDocuments(const std::vector<QlumDeviceDocument>& documents);
    void setReady(bool isReady);

signals:
    void openWanted(const QlumDeviceDocument& document);
    void saveWanted(const QlumDeviceDocument& document);

private:
    /// Null while none is chosen.
    [[nodiscard]] const QlumDeviceDocument* chosen() const;
    void updateButtons();

    QlumDeviceListModel* m_model;
    QTableView* m_view;
    QPushButton* m_open;
    QPushButton* m_save;
    std::vector<QlumDeviceDocument> m_documents;
    bool m_isReady = false;
};

/// Transfers the parameters between device and server, and shows what the device says of each.
class QlumDeviceTransferPage : public QWidget
{
    Q_OBJECT
public:
    explicit QlumDeviceTransferPage(QlumViewState& state, QWidget* parent = nullptr);

    /// Whether there are transfers at all, and whether one can begin; the note says why not.
    void setState(bool isReady, bool isRunning, const QString& note);
    void setOutcome(const QlumTransferOutcome& outcome);
    void clear();

signals:
    void transferWanted(bool isToDevice);
    void cancelWanted();

private:
    QlumDeviceListModel* m_model;
    QTableView* m_view;
    QPushButton* m_to;
    QPushButton* m_from;
    QPushButton* m_cancel;
    QLabel* m_note;
    QLabel* m_result;
};

/// Who may change the device just now, and the commands for that.
class QlumDeviceLockBar : public QlumWrappingBar
{
    Q_OBJECT
public:
    explicit QlumDeviceLockBar(QWidget* parent = nullptr);

    /// What is said of a lock and of who has it; held: by this session.
    void setLock(const QString& holder, const QlumDeviceLockState& state, bool isHeld, bool isReady);

signals:
    void lockWanted();
    void unlockWanted();
    void breakWanted();

private:
    QLabel* m_text;
    QPushButton* m_lock;
    QPushButton* m_unlock;
    QPushButton* m_break;
};
