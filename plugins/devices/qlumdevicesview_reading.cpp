// What the view reads: the tree, one device, and how the devices are.
#include <plugins/devices/qlumdevicesview.h>

#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <monitoring/watch.h>
#include <opcua/opcua_attributes.h>
#include <plugins/devices/qlumdevicebrowser.h>
#include <plugins/devices/qlumdevicepages.h>
#include <plugins/devices/qlumdevicereader.h>
#include <plugins/devices/qlumdevicetreemodel.h>
#include <plugins/devices/qlumparametermodel.h>
#include <plugins/devices/qlumparameterpage.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/qlumviewheading.h>
#include <uawidgets/table/qlumtablefilter.h>

#include <QItemSelectionModel>
#include <QModelIndex>
#include <QPointer>
#include <QTreeView>

#include <algorithm>
#include <iterator>
#include <ranges>
#include <utility>

namespace {
const QString devicesTopic = QStringLiteral("devices");
const QString devicesReadTopic = QStringLiteral("devicesRead");
constexpr quint64 keysPerDevice = 8;
constexpr double stateInterval = 1000;
constexpr double valueInterval = 500;
} // namespace

// ---- jobs

QlumJobPool::Ticket QlumDevicesView::run(QlumServerPools& pools, const QString& text, const Work& work,
                                         const Finish& ended)
{
    const auto finish = std::make_shared<Finish>();
    const QPointer<QlumDevicesView> view = this;
    return pools.of(m_serverId)
        .add(
            {text, m_serverId},
            [work, finish, provider = m_services, id = m_serverId](QlumJob& job) {
                if (const Services services = provider(id))
                    *finish = work(services, job);
            },
            [view, finish, ended](QlumWorkEnd) {
                if (!view)
                    return;
                ended();
                if (view && *finish)
                    (*finish)();
            });
}

void QlumDevicesView::read(const QString& text, const Work& work)
{
    giveUpReading();
    if (!isUp())
        return;
    m_reading = run(m_pools->work, text, work, [this] {
        m_reading = 0;
        updateState();
    });
    updateState();
}

bool QlumDevicesView::work(const QString& text, const Work& work)
{
    if (!isUp() || m_working != 0)
        return false;
    m_working = run(m_pools->work, text, work, [this] {
        m_working = 0;
        m_isTransferring = false;
        updateState();
    });
    updateState();
    return true;
}

void QlumDevicesView::giveUpReading()
{
    if (m_reading != 0)
        m_pools->work.of(m_serverId).giveUp(std::exchange(m_reading, 0));
}

void QlumDevicesView::tell(const QString& what, const QString& why)
{
    m_messages->tell({QlumMessage::Error, devicesTopic, what, why, {}, nullptr});
}

// ---- the tree

void QlumDevicesView::sltRefresh()
{
    read(
        tr("Reading devices"),
        [this](const Services& services, QlumJob& job) -> Finish {
            QlumDeviceReader reader(
                services, job.serviceSettings(), [&job] { return job.isCancelled(); },
                [&job](int done) { job.setProgress(done, 0); });
            auto space = std::make_shared<QlumDeviceSpace>(reader.readSpace());
            return [this, space] { takeSpace(std::move(*space)); };
        });
}

void QlumDevicesView::takeSpace(QlumDeviceSpace space)
{
    const QString wanted = current() ? current()->pathNames : m_wantedDevice;
    keepChanges();
    m_space = std::make_shared<QlumDeviceSpace>(std::move(space));
    m_isRead = true;
    m_current = -1;
    m_treeModel->setSpace(m_space);
    m_nameplates->setSpace(*m_space);
    m_heading->touch();
    m_tree->expandAll();
    for (int column = 0; column < QlumDeviceTreeModel::ColumnCount; ++column)
        m_tree->resizeColumnToContents(column);
    if (m_space->status.isBad())
        m_messages->tell({QlumMessage::Error,
                          devicesReadTopic,
                          tr("The devices could not be read."),
                          qlumResultInWords(m_space->status),
                          {},
                          nullptr});
    else
        m_messages->dismiss(devicesReadTopic);
    m_wantedDevice = wanted;
    int place = -1;
    int first = -1;
    for (int i = 0; i < static_cast<int>(m_space->devices.size()); ++i) {
        const QlumDevice& device = m_space->devices[static_cast<std::size_t>(i)];
        if (device.pathNames == wanted)
            place = i;
        if (first < 0 && device.kind == QlumDeviceKind::Device)
            first = i;
    }
    place = place < 0 ? first : place;
    // of devices that are no more, nothing can be written
    std::erase_if(m_kept, [this](const auto& kept) {
        return std::ranges::none_of(m_space->devices,
                                    [&](const QlumDevice& device) { return device.id == kept.first; });
    });
    watchStates();
    updateState();
    const QModelIndex index = m_treeFilter->mapFromSource(m_treeModel->indexOfDevice(place));
    m_tree->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect |
                                                         QItemSelectionModel::Rows);
    if (!index.isValid())
        selectDevice(-1);
}

const QlumDevice* QlumDevicesView::current() const
{
    return m_current >= 0 && m_current < static_cast<int>(m_space->devices.size())
               ? &m_space->devices[static_cast<std::size_t>(m_current)]
               : nullptr;
}

void QlumDevicesView::selectDevice(int device)
{
    if (device == m_current && device >= 0)
        return;
    keepChanges();
    m_current = device;
    m_valueWatch.end();
    m_parameters->clear();
    m_methods->setMethods(m_serverId, {});
    m_documents->setDocuments({});
    m_transfer->clear();
    updateState();
    if (current())
        readDetails(false);
}

// ---- one device

void QlumDevicesView::readDetails(bool keepsChanges)
{
    const QlumDevice device = *current();
    read(tr("Reading device %1").arg(device.name),
         [this, device, keepsChanges](const Services& services, QlumJob& job) -> Finish {
             QlumDeviceReader reader(
                 services, job.serviceSettings(), [&job] { return job.isCancelled(); },
                 [&job](int done) { job.setProgress(done, 0); });
             auto details = std::make_shared<QlumDeviceDetails>(reader.readDetails(device));
             return [this, details, keepsChanges] { takeDetails(*details, keepsChanges); };
         });
}

void QlumDevicesView::takeDetails(const QlumDeviceDetails& details, bool keepsChanges)
{
    if (!current() || current()->id != details.device)
        return;
    m_parameters->setDetails(m_serverId, details, keepsChanges);
    m_methods->setMethods(m_serverId, details.methods);
    m_documents->setDocuments(details.documents);
    m_heading->touch();
    if (details.status.isBad())
        m_messages->tell({QlumMessage::Error,
                          devicesReadTopic,
                          tr("%1 could not be read.").arg(current()->name),
                          qlumResultInWords(details.status),
                          {},
                          nullptr});
    else
        m_messages->dismiss(devicesReadTopic);
    updateState();
    if (const auto kept = m_kept.find(details.device); kept != m_kept.end()) {
        const std::vector<QlumParameterWrite> changes = std::move(kept->second);
        m_kept.erase(kept);
        QlumParameterModel* const model = m_parameters->model();
        for (const QlumParameterWrite& change : changes)
            if (const int row = model->find(change.id); row >= 0)
                model->restage(row, change.value);
    }
    watchParameters(m_parameters->isWatching());
}

// Whoever looks at another device meanwhile finds what he has changed when he comes back.
void QlumDevicesView::keepChanges()
{
    if (!current())
        return;
    std::vector<QlumParameterWrite> changes = m_parameters->model()->changes();
    if (!changes.empty())
        m_kept[current()->id] = std::move(changes);
}

void QlumDevicesView::readParameters()
{
    std::vector<UaNodeId> ids;
    for (const QlumParameterRow& row : m_parameters->model()->rows())
        ids.push_back(row.parameter.id);
    read(tr("Reading parameters"), [this, ids](const Services& services, QlumJob& job) -> Finish {
        QlumDeviceBrowser browser(*services, job.serviceSettings(), [&job] { return job.isCancelled(); });
        auto values = std::make_shared<std::vector<UaDataValue>>(browser.read(ids, OpcUa_Attributes_Value));
        return [this, ids, values] { takeValues(ids, *values); };
    });
}

void QlumDevicesView::takeValues(const std::vector<UaNodeId>& ids, const std::vector<UaDataValue>& values)
{
    QlumParameterModel* const model = m_parameters->model();
    for (std::size_t i = 0; i < ids.size() && i < values.size(); ++i)
        model->setValue(model->find(ids[i]), values[i]);
    m_heading->touch();
}

void QlumDevicesView::watchParameters(bool isWanted)
{
    const bool isWatched = isWanted && m_parameters->isVisible(); // what nobody sees is not asked for
    QlumParameterModel* const model = m_parameters->model();
    std::vector<monitoring::ItemWish> wishes;
    for (int row = 0; row < model->rowCount(); ++row) {
        model->setWatched(row, isWatched);
        monitoring::ItemWish wish;
        wish.nodeId = model->rowAt(row).parameter.id;
        wish.key = static_cast<OpcUa_UInt64>(row);
        wishes.push_back(std::move(wish));
    }
    if (isWatched)
        m_valueWatch.begin(m_serverId, wishes, valueInterval);
    else
        m_valueWatch.end();
}

// ---- how the devices are

void QlumDevicesView::watchStates()
{
    std::vector<monitoring::ItemWish> wishes;
    const auto wish = [&](const UaNodeId& id, std::size_t device, std::size_t part) {
        if (id.isNull())
            return;
        monitoring::ItemWish made;
        made.nodeId = id;
        made.key = device * keysPerDevice + part;
        wishes.push_back(std::move(made));
    };
    for (std::size_t i = 0; i < m_space->devices.size(); ++i) {
        const QlumDevice& device = m_space->devices[i];
        wish(device.healthId, i, 0);
        for (std::size_t property = 0; property < std::size(qlumLockProperties); ++property)
            wish(device.lockParts.value(QLatin1String(qlumLockProperties[property])), i, 1 + property);
    }
    m_toldLocked.clear();
    m_stateWatch.begin(m_serverId, wishes, stateInterval);
}

void QlumDevicesView::takeState(quint64 key, const UaDataValue& value)
{
    const auto place = static_cast<std::size_t>(key / keysPerDevice);
    const auto part = static_cast<std::size_t>(key % keysPerDevice);
    if (place >= m_space->devices.size())
        return;
    QlumDevice& device = m_space->devices[place];
    if (part == 0)
        device.health = qlumDeviceHealthOf(value);
    else
        qlumTakeLockValue(device.lock, part - 1, value);
    if (part == 1 && device.lock.isLocked)
        m_toldLocked.insert(device.id);
    else if (part == 1)
        m_toldLocked.erase(device.id);
    m_treeModel->showState(static_cast<int>(place));
    m_nameplates->setHealth(device.id, device.health);
    m_heading->touch();
    if (part == 0)
        return;
    updateLock();
    // the server has ended it: RenewLock says so for sure
    if (part == 1 && isHeld(device.id) && !device.lock.isLocked && m_lockCalls == 0)
        renewLocks();
}
