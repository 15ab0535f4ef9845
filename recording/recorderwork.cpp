#include <recording/recorderwork_p.h>

#include <monitoring/allsink.h>

#include <QString>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace recording {

namespace {

constexpr OpcUa_Int64 lookInterval = 1000; // ms, between looks at the file and its disk
constexpr OpcUa_Int64 firstPause = 250;    // ms, before writing is tried again; it doubles
constexpr OpcUa_Int64 longestPause = 5000; // ms
constexpr std::size_t mostOpen = 20'000;   // records that are committed at the latest
constexpr OpcUa_Int64 ticksOfMillisecond = 10'000;
constexpr OpcUa_Int64 leastStep = 500 * ticksOfMillisecond; // of the clock

} // namespace

RecorderWork::RecorderWork(std::unique_ptr<RecordSink> sink, const RecorderSettings& settings,
                           Surroundings surroundings)
    : m_sink(std::move(sink)), m_settings(settings), m_surroundings(std::move(surroundings))
{
}

RecorderWork::~RecorderWork()
{
    stop();
}

// ---- for all threads

std::shared_ptr<monitoring::AllSink> RecorderWork::source(const QString& server)
{
    const std::lock_guard lock(m_mutex);
    for (const Source& source : m_sources)
        if (source.server == server)
            return source.sink;
    m_sources.push_back(
        {server, std::make_shared<monitoring::AllSink>([this] { wake(); }, m_settings.queue)});
    return m_sources.back().sink;
}

ItemNumber RecorderWork::addItem(const RecordedItem& item)
{
    const std::lock_guard lock(m_mutex);
    m_items.push_back(item);
    const auto number = static_cast<ItemNumber>(m_items.size());
    m_builder.begin(number, m_surroundings.now());
    return number;
}

void RecorderWork::changeItem(ItemNumber number, const RecordedItem& item)
{
    const std::lock_guard lock(m_mutex);
    if (number == 0 || number > m_items.size())
        return;
    m_items[number - 1] = item;
    m_changedItems.insert(number);
}

void RecorderWork::start()
{
    const std::lock_guard lock(m_mutex);
    if (m_thread.joinable() || m_isEnding)
        return;
    m_status.since = m_startedAt = m_surroundings.now();
    m_thread = std::thread([this] { run(); });
}

void RecorderWork::stop()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
        m_wake.notify_all();
    }
    if (m_thread.joinable())
        m_thread.join();
    std::vector<Source> sources;
    {
        const std::lock_guard lock(m_mutex);
        sources.swap(m_sources);
    }
    for (const Source& source : sources)
        source.sink->close();
}

void RecorderWork::mark(const Mark& mark)
{
    const std::lock_guard lock(m_mutex);
    m_wishes.push_back(mark);
    if (m_wishes.back().time == 0)
        m_wishes.back().time = m_surroundings.now();
    m_isWoken = true;
    m_wake.notify_all();
}

bool RecorderWork::flush(int milliseconds)
{
    std::unique_lock lock(m_mutex);
    const OpcUa_UInt64 wanted = ++m_flushWanted;
    m_wake.notify_all();
    return m_told.wait_for(lock, std::chrono::milliseconds(milliseconds),
                           [&] { return m_flushDone >= wanted; });
}

RecorderStatus RecorderWork::status() const
{
    std::vector<Source> sources;
    RecorderStatus status;
    {
        const std::lock_guard lock(m_mutex);
        sources = m_sources;
        status = m_status;
    }
    for (const Source& source : sources)
        status.queued += source.sink->size();
    status.queueSize = m_settings.queue.capacity * std::max<std::size_t>(sources.size(), 1);
    return status;
}

std::vector<ItemFigures> RecorderWork::takeFigures()
{
    const std::lock_guard lock(m_mutex);
    return m_builder.takeFigures();
}

void RecorderWork::wake()
{
    const std::lock_guard lock(m_mutex);
    m_isWoken = true;
    m_wake.notify_all();
}

// ---- the thread

void RecorderWork::run()
{
    begin();
    for (bool isEnding = false; !isEnding;) {
        OpcUa_UInt64 flushWanted = 0;
        {
            std::unique_lock lock(m_mutex);
            m_wake.wait_for(lock, std::chrono::milliseconds(m_settings.commitInterval),
                            [this] { return m_isWoken || m_isEnding || m_flushWanted > m_flushDone; });
            m_isWoken = false;
            isEnding = m_isEnding;
            flushWanted = m_flushWanted;
        }
        step();
        if (flushWanted > m_flushDone && m_state == RecorderState::Recording && commitAll()) {
            tellStatus();
            const std::lock_guard lock(m_mutex);
            m_flushDone = flushWanted;
            m_told.notify_all();
        } else if (flushWanted > m_flushDone && m_state != RecorderState::Recording) {
            std::this_thread::sleep_for(
                std::chrono::milliseconds(20)); // the wish stands until it can be done
        }
        tellStatus();
    }
    end();
}

void RecorderWork::step()
{
    if (m_surroundings.steady() - m_lastLook >= lookInterval)
        look();
    if (m_state == RecorderState::Failing && m_surroundings.steady() >= m_retryAt)
        recover();
    if (m_state != RecorderState::Recording)
        return;
    takeAll();
    if (!writeNew())
        trouble(m_sink->error());
    else if (isDue())
        static_cast<void>(commitAll()); // it says by itself what failed
}

bool RecorderWork::isDue() const
{
    return m_open.records.size() >= mostOpen ||
           (!m_open.isEmpty() && m_surroundings.steady() - m_lastCommit >= m_settings.commitInterval);
}

void RecorderWork::begin()
{
    m_clockOffset = m_surroundings.now() - m_surroundings.steady() * ticksOfMillisecond;
    m_lastCommit = m_surroundings.steady();
    m_troubleAt = m_startedAt;
    Mark started = markOf(MarkKind::Started);
    started.time = m_startedAt;
    m_open.add(started);
    if (!openFile())
        return trouble(m_sink->error());
    setState(RecorderState::Recording);
    watchSpace();
    tellStatus();
}

bool RecorderWork::openFile()
{
    m_isOpen = m_sink->open();
    m_addedItems = 0;
    m_writtenRecords = m_writtenMarks = 0;
    if (m_isOpen && !std::exchange(m_wasOpen, true) && m_sink->lastTime() != 0) {
        Mark gap = markOf(MarkKind::Gap);
        gap.from = m_sink->lastTime();
        gap.to = m_startedAt;
        m_open.add(gap);
    }
    return m_isOpen;
}

// What cannot be written at the end is lost, and is counted.
void RecorderWork::end()
{
    if (m_state != RecorderState::Recording) {
        if (m_state == RecorderState::NoSpace)
            setState(RecorderState::Failing);
        m_retryAt = 0;
        recover();
    }
    bool isDone = m_state == RecorderState::Recording;
    if (isDone) {
        takeAll();
        m_open.add(markOf(MarkKind::Stopped));
        isDone = writeNew() && m_sink->commit();
    }
    {
        const std::lock_guard lock(m_mutex);
        if (isDone) {
            m_status.records += m_open.records.size();
            m_status.marks += m_open.marks.size();
        } else {
            m_status.lost += m_open.records.size();
            for (const Source& source : m_sources)
                m_status.lost += source.sink->size();
            m_status.error = m_sink->error();
            m_status.errorTime = m_surroundings.now();
        }
        m_status.bytes = m_sink->size();
        m_status.path = m_sink->path();
        m_status.state = RecorderState::Idle;
        m_flushDone = m_flushWanted;
        m_told.notify_all();
    }
    m_sink->close();
}

// ---- taking

void RecorderWork::takeAll()
{
    std::vector<Source> sources;
    {
        const std::lock_guard lock(m_mutex);
        sources = m_sources;
    }
    const std::size_t first = m_open.records.size();
    for (const Source& source : sources) {
        monitoring::AllSink::Batch batch = source.sink->take();
        const std::lock_guard lock(m_mutex);
        m_builder.add(m_open, source.server, batch);
    }
    watchClock(first);
    const std::lock_guard lock(m_mutex);
    for (const Mark& mark : std::exchange(m_wishes, {}))
        m_open.add(mark);
}

// The mark stands before the first record that was received afterwards, as far as that can be seen.
void RecorderWork::watchClock(std::size_t firstRecord)
{
    const OpcUa_Int64 steady = m_surroundings.steady() * ticksOfMillisecond;
    const OpcUa_DateTime now = m_surroundings.now();
    const OpcUa_Int64 offset = now - steady;
    const OpcUa_Int64 moved = offset - std::exchange(m_clockOffset, offset);
    if (std::abs(moved) < leastStep)
        return;
    Mark step = markOf(MarkKind::ClockStep);
    step.from = now - moved;
    step.to = now;
    step.text = QStringLiteral("%1 s").arg(static_cast<double>(moved) / 1e7, 0, 'f', 3);
    std::size_t place = firstRecord;
    for (std::size_t i = std::max<std::size_t>(firstRecord, 1); i < m_open.records.size(); ++i) {
        const OpcUa_Int64 jump = m_open.records[i].received - m_open.records[i - 1].received;
        if (moved < 0 ? jump < 0 : jump > moved / 2) {
            place = i;
            break;
        }
    }
    const auto behind =
        std::find_if(m_open.marks.begin() + static_cast<std::ptrdiff_t>(m_writtenMarks), m_open.marks.end(),
                     [place](const Portion::Placed& placed) { return placed.place >= place; });
    m_open.marks.insert(behind, {place, step});
}

Mark RecorderWork::markOf(MarkKind kind) const
{
    Mark mark;
    mark.kind = kind;
    mark.time = m_surroundings.now();
    return mark;
}

// ---- writing

bool RecorderWork::addItems()
{
    std::vector<RecordedItem> items;
    std::vector<std::pair<ItemNumber, RecordedItem>> changed;
    {
        const std::lock_guard lock(m_mutex);
        for (const ItemNumber number : std::exchange(m_changedItems, {}))
            if (number <= m_addedItems)
                changed.emplace_back(number, m_items[number - 1]);
        items.assign(m_items.begin() + static_cast<std::ptrdiff_t>(m_addedItems), m_items.end());
    }
    for (const auto& [number, item] : changed)
        if (!m_sink->addItem(number, item))
            return false; // all are added again then
    for (const RecordedItem& item : items) {
        if (!m_sink->addItem(static_cast<ItemNumber>(m_addedItems + 1), item))
            return false;
        ++m_addedItems;
    }
    return true;
}

bool RecorderWork::writeNew()
{
    if (!addItems())
        return false;
    if (m_writtenRecords == m_open.records.size() && m_writtenMarks == m_open.marks.size())
        return true; // items alone are committed with the next record
    if (m_writtenRecords == 0 && m_writtenMarks == 0) {
        if (!m_sink->write(m_open))
            return false;
    } else {
        Portion rest; // shares what the values have
        const auto first = static_cast<std::ptrdiff_t>(m_writtenRecords);
        rest.records.assign(m_open.records.begin() + first, m_open.records.end());
        rest.marks.assign(m_open.marks.begin() + static_cast<std::ptrdiff_t>(m_writtenMarks),
                          m_open.marks.end());
        for (Portion::Placed& placed : rest.marks)
            placed.place -= std::min(placed.place, m_writtenRecords);
        if (!m_sink->write(rest))
            return false;
    }
    m_writtenRecords = m_open.records.size();
    m_writtenMarks = m_open.marks.size();
    return true;
}

bool RecorderWork::commitAll()
{
    if (!m_sink->commit()) {
        trouble(m_sink->error());
        return false;
    }
    m_lastCommit = m_surroundings.steady();
    {
        const std::lock_guard lock(m_mutex);
        m_status.records += m_open.records.size();
        m_status.marks += m_open.marks.size();
        m_status.lastCommit = m_surroundings.now();
    }
    m_open.clear();
    m_writtenRecords = m_writtenMarks = 0;
    return true;
}

// ---- trouble

void RecorderWork::trouble(const QString& why)
{
    if (m_state != RecorderState::Failing) {
        m_troubleAt = m_surroundings.now();
        m_tries = 0;
    }
    m_troubleText = why;
    m_state = RecorderState::Failing;
    m_retryAt = m_surroundings.steady() + std::min(firstPause << std::min(m_tries, 10), longestPause);
    ++m_tries;
    {
        const std::lock_guard lock(m_mutex); // one for all: nobody is to see the state without its reason
        m_status.state = m_state;
        m_status.error = why;
        m_status.errorTime = m_surroundings.now();
    }
    tellStatus();
}

bool RecorderWork::reopen()
{
    if (m_isOpen) {
        m_sink->rollback();
        m_addedItems = 0;
        m_writtenRecords = m_writtenMarks = 0;
        if (m_sink->isIntact())
            return true;
        m_sink->close();
        m_isOpen = false;
        m_sink->leaveFile();
    }
    return openFile();
}

bool RecorderWork::rewrite()
{
    return writeNew() && m_sink->commit();
}

// What was not committed is still here, so nothing of it is lost or there twice.
void RecorderWork::recover()
{
    if (!reopen())
        return trouble(m_sink->error());
    Mark over = markOf(MarkKind::FileTrouble);
    over.from = m_troubleAt;
    over.to = over.time;
    over.text = m_troubleText;
    m_open.add(over);
    if (!rewrite()) {
        m_open.marks.pop_back();
        return trouble(m_sink->error());
    }
    setState(RecorderState::Recording);
    m_pausedAt = 0;
    static_cast<void>(commitAll()); // there is nothing left that could fail
}

void RecorderWork::look()
{
    m_lastLook = m_surroundings.steady();
    watchSpace();
    if (m_state != RecorderState::Recording)
        return;
    if (!m_sink->isIntact())
        return trouble(m_sink->error());
    keepWithin();
}

void RecorderWork::watchSpace()
{
    const qint64 free = m_surroundings.freeBytes(m_sink->path());
    {
        const std::lock_guard lock(m_mutex);
        m_status.freeBytes = free;
    }
    const bool isLow = free >= 0 && free < m_settings.freeFloor;
    if (isLow && m_state == RecorderState::Recording) {
        takeAll();
        m_pausedAt = m_surroundings.now();
        Mark paused = markOf(MarkKind::Paused);
        paused.text = QStringLiteral("%1 bytes free").arg(free);
        m_open.add(paused);
        if (writeNew() && m_sink->commit())
            static_cast<void>(commitAll()); // which has nothing left to do
        else
            m_sink->rollback(); // it is written later
        setState(RecorderState::NoSpace);
    } else if (!isLow && m_state == RecorderState::NoSpace) {
        Mark resumed = markOf(MarkKind::Resumed);
        resumed.from = std::exchange(m_pausedAt, 0);
        resumed.to = resumed.time;
        m_open.add(resumed);
        setState(RecorderState::Recording);
        if (!reopen())
            trouble(m_sink->error());
    }
}

void RecorderWork::keepWithin()
{
    if (m_settings.bounds.bytes <= 0 && m_settings.bounds.seconds <= 0)
        return;
    if (!writeNew() || !commitAll())
        return m_state == RecorderState::Recording ? trouble(m_sink->error()) : void();
    Dropped dropped;
    if (!m_sink->keepWithin(m_settings.bounds, m_surroundings.now(), dropped))
        return trouble(m_sink->error());
    if (dropped.records == 0)
        return;
    Mark mark = markOf(MarkKind::OldDropped);
    mark.count = dropped.records;
    mark.from = dropped.from;
    mark.to = dropped.to;
    m_open.add(mark);
    m_lastLook = 0; // there may be more
    const std::lock_guard lock(m_mutex);
    m_status.dropped += dropped.records;
}

// ---- status

void RecorderWork::setState(RecorderState state)
{
    m_state = state;
    const std::lock_guard lock(m_mutex);
    m_status.state = state;
}

void RecorderWork::tellStatus()
{
    const qint64 bytes = m_isOpen ? m_sink->size() : 0;
    const QString path = m_sink->path();
    const std::lock_guard lock(m_mutex);
    m_status.bytes = bytes;
    m_status.path = path;
    m_status.lost = m_builder.lost();
}

} // namespace recording
