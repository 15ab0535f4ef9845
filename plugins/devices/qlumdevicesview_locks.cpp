// Locks of devices: held by the session, renewed in time, told when they are gone.
#include <plugins/devices/qlumdevicesview.h>

#include <app/api/qlumtext.h>
#include <plugins/devices/qlumdevicepages.h>
#include <plugins/devices/qlumdevicetreemodel.h>
#include <plugins/devices/qlumdevicewords.h>
#include <plugins/devices/qlumparametermodel.h>
#include <plugins/devices/qlumparameterpage.h>
#include <uawidgets/qlummessagebar.h>

#include <QSysInfo>
#include <QTabWidget>

#include <algorithm>
#include <optional>
#include <ranges>
#include <utility>

namespace {
const QString lockTopic = QStringLiteral("deviceLock");
constexpr double usualInactiveTime = 10'000; // ms, where a server does not tell
constexpr int shortestRenewal = 500;         // ms
constexpr int timeToBeTold = 2500;           // ms, in which a subscription tells of a lock
} // namespace

const QlumDevice* QlumDevicesView::lockHolder() const
{
    const int place = m_space->lockOf(m_current);
    return place >= 0 ? &m_space->devices[static_cast<std::size_t>(place)] : nullptr;
}

// What the lock of the shown device allows.
void QlumDevicesView::updateLock()
{
    const QlumDevice* const holder = lockHolder();
    const bool isOwn = holder && isHeld(holder->id);
    m_lockBar->setVisible(holder != nullptr);
    QString obstacle;
    if (holder) {
        m_lockBar->setLock(holder->name, holder->lock, isOwn, isUp() && m_lockCalls == 0);
        if (holder->lock.isLocked && !isOwn)
            obstacle = tr("%1 is locked by %2.").arg(holder->name, qlumDeviceOwnerText(holder->lock));
    }
    m_parameters->model()->setObstacle(obstacle);
    const QlumDevice* const device = current();
    const bool hasTransfer = device && !device->transferParts.isEmpty();
    QString note;
    if (!hasTransfer)
        note = tr("This device offers no transfer.");
    else if (holder && !isOwn)
        note = tr("Lock the device first: a transfer needs it for itself.");
    m_transfer->setState(hasTransfer && isUp() && m_working == 0 && (isOwn || !holder), m_isTransferring,
                         note);
}

// ---- calls

void QlumDevicesView::callLock(const QlumDevice& device, const QString& text, const LockCall& call,
                               const LockDone& done)
{
    if (!isUp())
        return;
    ++m_lockCalls;
    static_cast<void>(run(
        m_pools->locks, text,
        [this, device, call, done](const Services& services, QlumJob& job) -> Finish {
            QlumDeviceClient client(services, job.serviceSettings(), [&job] { return job.isCancelled(); });
            const QlumDeviceAnswer answer = call(client, device);
            const QlumDeviceLockState state = client.readLock(device);
            return [this, device, done, answer, state] {
                for (std::size_t i = 0; i < m_space->devices.size(); ++i) {
                    if (m_space->devices[i].id != device.id)
                        continue;
                    m_space->devices[i].lock = state;
                    m_treeModel->showState(static_cast<int>(i));
                }
                if (state.isLocked != m_toldLocked.contains(device.id))
                    m_checkTimer.start(timeToBeTold);
                done(device, answer);
                updateState();
            };
        },
        [this] {
            --m_lockCalls;
            updateState();
        }));
    updateLock();
}

void QlumDevicesView::lockDevice()
{
    const QlumDevice* const holder = lockHolder();
    if (!holder || isHeld(holder->id))
        return;
    const QString context = tr("Tavelin on %1").arg(QSysInfo::machineHostName());
    callLock(
        *holder, tr("Locking %1").arg(holder->name),
        [context](QlumDeviceClient& client, const QlumDevice& device) {
            return client.initLock(device, context);
        },
        [this](const QlumDevice& device, const QlumDeviceAnswer& answer) {
            if (!answer.isDone())
                return m_messages->tell({QlumMessage::Error,
                                         lockTopic,
                                         tr("%1 was not locked.").arg(device.name),
                                         answer.words,
                                         {},
                                         nullptr});
            m_messages->dismiss(lockTopic);
            m_held.insert(device.id);
            const double longest =
                m_space->mostInactiveLockTime > 0 ? m_space->mostInactiveLockTime : usualInactiveTime;
            m_renewTimer.start(std::max(shortestRenewal, static_cast<int>(std::min(longest / 2, 1e9))));
        });
}

void QlumDevicesView::unlockDevice()
{
    const QlumDevice* const holder = lockHolder();
    if (!holder || !isHeld(holder->id))
        return;
    callLock(
        *holder, tr("Unlocking %1").arg(holder->name),
        [](QlumDeviceClient& client, const QlumDevice& device) { return client.exitLock(device); },
        [this](const QlumDevice& device, const QlumDeviceAnswer& answer) {
            // a negative answer says that there is no lock of ours any more, which is what was wanted
            if (answer.status.isNotBad())
                m_held.erase(device.id);
            if (m_held.empty())
                m_renewTimer.stop();
            if (!answer.isDone())
                m_messages->tell({QlumMessage::Warning,
                                  lockTopic,
                                  tr("%1 was not unlocked.").arg(device.name),
                                  answer.words,
                                  {},
                                  nullptr});
        });
}

void QlumDevicesView::breakLock()
{
    const QlumDevice* const found = lockHolder();
    if (!found || isHeld(found->id))
        return;
    const QlumDevice holder = *found;
    const QString question =
        tr("%1 is locked by %2. Whoever that is may be changing the device just now.\n\nBreak the lock?")
            .arg(holder.name, qlumDeviceOwnerText(holder.lock));
    if (!m_world.agree(this, question))
        return;
    callLock(
        holder, tr("Breaking the lock of %1").arg(holder.name),
        [](QlumDeviceClient& client, const QlumDevice& device) { return client.breakLock(device); },
        [this](const QlumDevice& device, const QlumDeviceAnswer& answer) {
            if (answer.isDone())
                return m_messages->dismiss(lockTopic);
            m_messages->tell({QlumMessage::Error,
                              lockTopic,
                              tr("The lock of %1 was not broken.").arg(device.name),
                              answer.words,
                              {},
                              nullptr});
        });
}

void QlumDevicesView::renewLocks()
{
    for (const QlumDevice& device : m_space->devices) {
        if (!isHeld(device.id))
            continue;
        callLock(
            device, QString(),
            [](QlumDeviceClient& client, const QlumDevice& locked) { return client.renewLock(locked); },
            [this](const QlumDevice& locked, const QlumDeviceAnswer& answer) {
                // a call that failed, or was not sent, says nothing of the lock, but what was read then does
                const auto known = std::ranges::find(m_space->devices, locked.id, &QlumDevice::id);
                const bool isFree =
                    known != m_space->devices.end() && known->lock.isKnown && !known->lock.isLocked;
                if (answer.status.isBad() ? isFree : answer.output != 0)
                    loseLock(locked.id, answer.words);
            });
    }
}

// A lock that begins and ends between two samples is none to the subscription, and would be shown for ever.
void QlumDevicesView::checkLocks()
{
    for (const QlumDevice& device : m_space->devices) {
        if (device.lockParts.isEmpty() || device.lock.isLocked == m_toldLocked.contains(device.id))
            continue;
        callLock(
            device, QString(), [](QlumDeviceClient&, const QlumDevice&) { return QlumDeviceAnswer(); },
            [](const QlumDevice&, const QlumDeviceAnswer&) {});
    }
}

// ---- the end of a lock

void QlumDevicesView::loseLock(const UaNodeId& device, const QString& why)
{
    if (m_held.erase(device) == 0)
        return;
    if (m_held.empty())
        m_renewTimer.stop();
    QString name;
    for (QlumDevice& known : m_space->devices)
        if (known.id == device) {
            name = known.name;
            known.lock.isLocked = false; // until the server says whose it is now
        }
    m_messages->tell(
        {QlumMessage::Error, lockTopic, tr("Your lock of %1 is gone.").arg(name), why, {}, nullptr});
    updateState();
}

void QlumDevicesView::loseAllLocks(const QString& why)
{
    for (const UaNodeId& device : std::set<UaNodeId>(m_held))
        loseLock(device, why);
}

// Of a view that is closed; nobody waits for what comes of it.
void QlumDevicesView::giveLocksBack()
{
    if (!isUp())
        return;
    for (const QlumDevice& device : m_space->devices)
        if (isHeld(device.id))
            m_pools->locks.of(m_serverId)
                .add({tr("Unlocking %1").arg(device.name), m_serverId},
                     [device, provider = m_services, id = m_serverId](QlumJob& job) {
                         if (const Services services = provider(id))
                             static_cast<void>(
                                 QlumDeviceClient(services, job.serviceSettings(), {}).exitLock(device));
                     });
}
