#include <plugins/datalogger/qlumloggersession.h>

#include <app/api/qlumjob.h>
#include <app/api/qlumtext.h>
#include <monitoring/monitoredserver.h>
#include <plugins/datalogger/qlumloggermodel.h>
#include <plugins/datalogger/qlumloggersettings.h>
#include <recording/csvrecord.h>
#include <recording/sqliterecord.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>
#include <uaclientsdk/uasession.h>

#include <QDir>
#include <QFileInfo>
#include <QObject>
#include <QString>

#include <algorithm>
#include <cstddef>
#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace {

constexpr double bytesOfMegabyte = 1024.0 * 1024.0;

std::unique_ptr<recording::RecordSink> makeLoggerSink(const QlumLoggerSetup& setup)
{
    if (setup.kind == QlumLoggerSetup::Sqlite)
        return std::make_unique<recording::SqliteRecord>(setup.path);
    constexpr double secondsOfHour = 3600;
    return std::make_unique<recording::CsvRecord>(
        setup.path, recording::Rotation{static_cast<qint64>(setup.rotateBytes * bytesOfMegabyte),
                                        static_cast<qint64>(setup.rotateHours * secondsOfHour)});
}

recording::RecorderSettings recorderSettings(const QlumLoggerSetup& setup)
{
    constexpr double secondsOfDay = 86400;
    recording::RecorderSettings settings;
    settings.freeFloor = static_cast<qint64>(setup.freeFloor * bytesOfMegabyte);
    settings.bounds.bytes = static_cast<qint64>(setup.keepBytes * bytesOfMegabyte);
    settings.bounds.seconds = static_cast<qint64>(setup.keepDays * secondsOfDay);
    settings.queue.capacity = static_cast<std::size_t>(std::max(1000, QlumLoggerSettings::queueSize.value()));
    return settings;
}

} // namespace

QlumLoggerSession::QlumLoggerSession(QlumApplicationInterface& application, QlumLoggerModel& model,
                                     QlumMonitoringProvider monitoring, QlumJobPool& pool, QObject* parent)
    : QObject(parent), m_application(application), m_model(model), m_monitoring(std::move(monitoring)),
      m_pool(pool)
{
}

QlumLoggerSession::~QlumLoggerSession()
{
    std::vector<quint32> keys;
    for (const QlumLoggerItem& item : m_model.rows())
        keys.push_back(item.key);
    end(keys);
    m_recorder.reset(); // waits
}

void QlumLoggerSession::start(const QlumLoggerSetup& setup)
{
    if (m_recorder || m_isStopping)
        return;
    static_cast<void>(QDir().mkpath(QFileInfo(setup.path).absolutePath())); // else opening says why
    m_recorder = std::make_shared<recording::Recorder>(makeLoggerSink(setup), recorderSettings(setup));
    std::vector<quint32> keys;
    m_model.changeItems([&keys](QlumLoggerItem& item) {
        item.number = 0;
        item.figures = {};
        if (item.isOn)
            keys.push_back(item.key);
        return true;
    });
    begin(keys);
    m_recorder->start();
    emit changed();
}

void QlumLoggerSession::stop()
{
    if (!m_recorder)
        return;
    std::vector<quint32> keys;
    for (const QlumLoggerItem& item : m_model.rows())
        keys.push_back(item.key);
    end(keys);
    m_isStopping = true;
    const auto recorder = std::exchange(m_recorder, nullptr);
    m_lastStatus = recorder->status();
    const auto work = [this, recorder](QlumJob& job) {
        recorder->stop();
        job.post([this, recorder] {
            m_lastStatus = recorder->status();
            m_model.takeFigures(recorder->takeFigures());
        });
    };
    m_pool.add({tr("Closing a recording")}, work, [this](QlumWorkEnd) {
        m_isStopping = false;
        emit changed();
    });
    emit changed();
}

recording::RecordedItem QlumLoggerSession::recordedItem(const QlumLoggerItem& item) const
{
    recording::RecordedItem result;
    result.server = m_model.serverName(item.serverId);
    if (UaClientSdk::UaSession* session = m_application.session(item.serverId))
        result.serverUrl = toQString(session->currentlyUsedEndpointUrl());
    UaNodeId bare = item.nodeId;
    if (!item.namespaceUri.isEmpty())
        bare.setNamespaceIndex(0);
    result.nodeId = toQString(bare.toXmlString());
    result.namespaceUri = item.namespaceUri;
    result.name = item.name;
    result.path = item.path;
    result.dataType = item.dataType;
    result.unit = item.unit;
    result.settings = qlumStoredDaSettings(m_model.settingsOf(item));
    return result;
}

// Items of one server with the same settings go together.
void QlumLoggerSession::begin(const std::vector<quint32>& keys)
{
    if (!m_recorder)
        return;
    std::map<std::pair<unsigned int, const QlumDataSettings*>, std::vector<monitoring::ItemWish>> groups;
    std::map<OpcUa_UInt64, quint32> keyOf;
    for (const quint32 key : keys) {
        const QlumLoggerItem* const item = m_model.find(key);
        if (item == nullptr || !item->isOn || item->watched != 0 || item->nodeId.isNull() ||
            item->state == QlumLoggerState::NoServer || item->state == QlumLoggerState::NamespaceGone)
            continue;
        const recording::ItemNumber number =
            item->number != 0 ? item->number : m_recorder->addItem(recordedItem(*item));
        keyOf[number] = key;
        monitoring::ItemWish wish;
        wish.nodeId = item->nodeId;
        wish.key = number;
        groups[{item->serverId, &m_model.settingsOf(*item)}].push_back(wish);
    }
    std::map<quint32, std::pair<recording::ItemNumber, monitoring::ItemId>> begun;
    for (const auto& [group, wishes] : groups) {
        const auto server = m_monitoring ? m_monitoring(group.first) : nullptr;
        if (!server)
            continue;
        const std::vector<monitoring::ItemId> ids =
            server->add(m_recorder->source(m_model.serverName(group.first)),
                        qlumMonitoringSettings(*group.second), wishes);
        for (std::size_t i = 0; i < ids.size(); ++i)
            begun[keyOf[wishes[i].key]] = {static_cast<recording::ItemNumber>(wishes[i].key), ids[i]};
    }
    m_model.changeItems([&begun](QlumLoggerItem& item) {
        const auto found = begun.find(item.key);
        if (found == begun.end())
            return false;
        item.number = found->second.first;
        item.watched = found->second.second;
        item.state = QlumLoggerState::Waiting;
        return true;
    });
}

void QlumLoggerSession::end(const std::vector<quint32>& keys)
{
    std::map<unsigned int, std::vector<monitoring::ItemId>> items;
    for (const quint32 key : keys)
        if (const QlumLoggerItem* item = m_model.find(key); item != nullptr && item->watched != 0) {
            items[item->serverId].push_back(item->watched);
            if (m_recorder && keys.size() < m_model.rows().size()) {
                recording::Mark mark;
                mark.kind = recording::MarkKind::Stopped;
                mark.server = m_model.serverName(item->serverId);
                mark.item = item->number;
                m_recorder->mark(mark);
            }
            m_model.changeItem(key, [](QlumLoggerItem& one) {
                one.watched = 0;
                one.state = one.isOn ? QlumLoggerState::Ready : QlumLoggerState::Off;
            });
        }
    for (const auto& [serverId, ids] : items)
        if (const auto server = m_monitoring ? m_monitoring(serverId) : nullptr)
            server->remove(ids);
}

void QlumLoggerSession::applySettings(const std::vector<quint32>& keys)
{
    std::map<std::pair<unsigned int, const QlumDataSettings*>, std::vector<monitoring::ItemId>> groups;
    for (const quint32 key : keys)
        if (const QlumLoggerItem* item = m_model.find(key); item != nullptr && item->watched != 0)
            groups[{item->serverId, &m_model.settingsOf(*item)}].push_back(item->watched);
    for (const auto& [group, ids] : groups)
        if (const auto server = m_monitoring ? m_monitoring(group.first) : nullptr)
            server->modify(ids, qlumMonitoringSettings(*group.second));
}

void QlumLoggerSession::retry()
{
    std::map<unsigned int, std::vector<monitoring::ItemId>> items;
    for (const QlumLoggerItem& item : m_model.rows())
        if (item.watched != 0)
            items[item.serverId].push_back(item.watched);
    for (const auto& [serverId, ids] : items)
        if (const auto server = m_monitoring ? m_monitoring(serverId) : nullptr)
            server->retry(ids);
}

void QlumLoggerSession::note(const QString& text)
{
    if (!m_recorder)
        return;
    recording::Mark mark;
    mark.kind = recording::MarkKind::Note;
    mark.time = UaDateTime::now().value();
    mark.text = text;
    m_recorder->mark(mark);
}

recording::RecorderStatus QlumLoggerSession::status() const
{
    return m_recorder ? m_recorder->status() : m_lastStatus;
}

void QlumLoggerSession::takeFigures()
{
    if (m_recorder)
        m_model.takeFigures(m_recorder->takeFigures());
}
