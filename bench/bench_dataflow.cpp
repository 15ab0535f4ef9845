// What values cost the whole process on their way from the socket into a data access view on the screen, and
// how quickly the view answers to keys meanwhile. The server is another process with canned answers. The
// yardstick reads as many bytes, puts as many numbers into a plain Qt model and has its view painted as
// often.
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtoolservices.h>
#include <bench/budgets.h>
#include <bench/rawloops.h>
#include <bench/responder.h>
#include <bench/subscriptionserver.h>
#include <monitoring/monitoredserver.h>
#include <plugins/dataaccess/qlumdamodel.h>
#include <plugins/dataaccess/qlumdataitem.h>
#include <plugins/dataaccess/qlumdaview.h>
#include <plugins/dataaccess/qlumdawatch.h>
#include <tests/support/nodetable.h>
#include <tests/support/stubapplication.h>
#include <uabase/system/uaplatformlayer.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>

#include <QAbstractTableModel>
#include <QApplication>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QEventLoop>
#include <QKeyEvent>
#include <QModelIndex>
#include <QObject>
#include <QProgressBar>
#include <QString>
#include <QTableView>
#include <QVariant>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <memory>
#include <pthread.h>
#include <string>
#include <thread>
#include <utility>
#include <vector>

using namespace opcua::bench;
using namespace UaClientSdk;

namespace {

constexpr std::size_t valuesOfMessage = 10'000;
constexpr std::size_t bytesOfValue = 28;
constexpr int width = 1200;
constexpr int height = 800;
constexpr qint64 limit = 60'000; // ms
const int warmSeconds = 1;
const int seconds = repetitions(6);

// 1.5 s where rows of a plain model and bare bytes took 6.3 ms
constexpr double maximumAdding = 240.0;
constexpr double maximumTurn = 50.0;     // ms of the event loop
constexpr double maximumInput = 30.0;    // ms from a key to what it changes on the screen, 99th percentile
constexpr double maximumRepaints = 20.0; // a second
constexpr double maximumIdle = 2.0; // of those, without a change of what can be seen; ages rise once a second

struct Load
{
    const char* name;
    OpcUa_UInt32 items;
    double interval; // ms between two values of an item
    double maximumChange;

    [[nodiscard]] std::size_t ofMessage() const { return std::min<std::size_t>(valuesOfMessage, items); }
    [[nodiscard]] std::size_t bytesOfMessage() const { return ofMessage() * bytesOfValue; }
    [[nodiscard]] double perSecond() const { return items * 1000.0 / interval; }
};

[[noreturn]] void give(const char* why)
{
    std::fprintf(stderr, "%s\n", why);
    std::exit(1);
}

// ---- the server, in its own process

// Items send their first value at once, and then one in each interval.
class ValueServer final : public SubscriptionServer
{
public:
    ValueServer(NodeTable& table, const Load& load) : SubscriptionServer(table, load.interval), m_load(load)
    {
    }

private:
    void create(const OpcUa_CreateMonitoredItemsRequest& asked,
                UaMonitoredItemCreateResults& results) override
    {
        for (OpcUa_UInt32 i = 0; i < results.length(); ++i) {
            m_handles.push_back(asked.ItemsToCreate[i].RequestedParameters.ClientHandle);
            results[i].MonitoredItemId = static_cast<OpcUa_UInt32>(m_handles.size());
            results[i].RevisedSamplingInterval = m_load.interval;
            results[i].RevisedQueueSize = 1;
        }
    }

    // The next message in its time; a sign of life while there is nothing to tell.
    std::size_t nextCount()
    {
        const bool isFirst = m_begun < m_handles.size();
        if (!isFirst && m_handles.size() < m_load.items) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            return 0;
        }
        if (!isFirst) {
            const double rest = 1000.0 * static_cast<double>(m_load.ofMessage()) / m_load.perSecond(); // ms
            m_due = std::max(m_due, std::chrono::steady_clock::now() - std::chrono::seconds(1)) +
                    std::chrono::microseconds(static_cast<int>(rest * 1000));
            std::this_thread::sleep_until(m_due);
            m_next = m_next >= m_handles.size() ? 0 : m_next;
        } else {
            m_next = m_begun;
        }
        const std::size_t count = std::min(m_load.ofMessage(), m_handles.size() - m_next);
        m_begun = std::max(m_begun, m_next + count);
        return count;
    }

    bool notify(OpcUa_ExtensionObject& notification) override
    {
        const std::size_t count = nextCount();
        if (count == 0)
            return false;
        auto* change = static_cast<OpcUa_DataChangeNotification*>(
            OpcUa_EncodeableObject_Create(&OpcUa_DataChangeNotification_EncodeableType));
        fill(count).detach(&change->NoOfMonitoredItems, &change->MonitoredItems);
        OpcUa_ExtensionObject_AttachEncodeable(&notification, &OpcUa_DataChangeNotification_EncodeableType,
                                               change);
        return true;
    }

    UaMonitoredItemNotifications fill(std::size_t count)
    {
        const OpcUa_DateTime now = OpcUa_DateTime_UtcNow();
        ++m_value;
        UaMonitoredItemNotifications items(static_cast<OpcUa_UInt32>(count));
        for (OpcUa_MonitoredItemNotification& item : items) {
            item.ClientHandle = m_handles[m_next++];
            item.Value.Value.Datatype = OpcUaType_Double;
            item.Value.Value.Value.Double = m_value;
            item.Value.SourceTimestamp = item.Value.ServerTimestamp = now;
        }
        return items;
    }

    const Load m_load;
    std::vector<OpcUa_UInt32> m_handles;
    std::size_t m_begun = 0; // items that have sent their first value
    std::size_t m_next = 0;  // whose value comes next
    std::chrono::steady_clock::time_point m_due;
    double m_value = 0;
};

// ---- the window

double cpuOf(clockid_t clock)
{
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_nsec) / 1e3;
}

// Counts the paintings of a view, and takes the time from a key to the painting of what it changes, in CPU
// time of the GUI thread: what it is busy with when the key is pressed counts, what other programs do not.
class Watcher : public QObject
{
public:
    Watcher(QTableView& table, const QlumDaModel& model) : m_table(table), m_model(model)
    {
        pthread_getcpuclockid(pthread_self(), &m_clock);
        table.viewport()->installEventFilter(this);
    }
    ~Watcher() override
    {
        m_ends = true;
        if (m_keys.joinable())
            m_keys.join();
    }

    // From another thread, as keys come.
    void pressKeys()
    {
        m_keys = std::thread([this] {
            for (int n = 0; !m_ends; ++n) {
                std::this_thread::sleep_for(std::chrono::milliseconds(37));
                if (m_pressed > 0)
                    continue; // one at a time
                m_pressed = cpuOf(m_clock);
                const Qt::Key key = n % 60 < 30 ? Qt::Key_Down : Qt::Key_Up;
                QCoreApplication::postEvent(&m_table, new QKeyEvent(QEvent::KeyPress, key, Qt::NoModifier));
            }
        });
    }
    // Of the event loop.
    void turn()
    {
        const double begun = cpuOf(m_clock);
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
        const double now = cpuOf(m_clock);
        longestTurn = std::max(longestTurn, now - begun);
        if (!std::exchange(m_isPainted, false) || !std::exchange(m_isMoved, false))
            return;
        latencies.push_back((now - m_pressed) / 1e3);
        m_pressed = 0;
    }
    void run(const std::function<bool()>& isDone, const char* what)
    {
        QElapsedTimer clock;
        clock.start();
        while (!isDone()) {
            if (clock.elapsed() > limit)
                give(what);
            turn();
        }
    }
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() != QEvent::Paint)
            return false;
        ++repaints;
        const quint64 shown = changesShown();
        idleRepaints += shown == std::exchange(m_shown, shown) ? 1 : 0;
        const int row = m_table.currentIndex().row();
        m_isMoved = m_isMoved || (row != m_row && m_pressed > 0);
        m_row = row;
        m_isPainted = true;
        return false;
    }

    std::vector<double> latencies; // ms
    double longestTurn = 0;        // us
    int repaints = 0;
    int idleRepaints = 0; // that show what was there already

private:
    // Of the rows that can be seen, all they have had.
    quint64 changesShown() const
    {
        quint64 changes = 0;
        const int end = m_table.rowAt(m_table.viewport()->height() - 1);
        for (int row = std::max(0, m_table.rowAt(0)); row <= end; ++row) {
            const QModelIndex index = m_table.model()->index(row, 0);
            const QlumDataItem* item = m_model.find(index.data(QlumDaModel::KeyRole).toUInt());
            changes += item ? item->changes : 0;
        }
        return changes;
    }

    QTableView& m_table;
    const QlumDaModel& m_model;
    clockid_t m_clock{};
    std::thread m_keys;
    std::atomic<bool> m_ends = false;
    std::atomic<double> m_pressed = 0; // 0: no key is under way
    bool m_isPainted = false;
    bool m_isMoved = false;
    int m_row = -1;
    quint64 m_shown = 0; // changes
};

struct Figures
{
    double adding = 0;    // ms, until all rows have a value
    double addingCpu = 0; // us
    double change = 0;    // us
    double turn = 0;      // ms
    double input = 0;     // ms
    double repaints = 0;  // a second
    double idle = 0;      // of those, in which nothing had changed that could be seen
    bool hasProgress = false;
};

class PlainModel : public QAbstractTableModel
{
public:
    explicit PlainModel(OpcUa_UInt32 rows) : m_values(rows) {}
    int rowCount(const QModelIndex& = {}) const override { return static_cast<int>(m_values.size()); }
    int columnCount(const QModelIndex& = {}) const override { return QlumDaModel::ColumnCount; }
    QVariant data(const QModelIndex& index, int role) const override
    {
        return role == Qt::DisplayRole ? QVariant(m_values[static_cast<std::size_t>(index.row())])
                                       : QVariant();
    }
    void change(std::size_t first, std::size_t count, double value)
    {
        for (std::size_t i = 0; i < count; ++i)
            m_values[(first + i) % m_values.size()] = value;
        emit dataChanged(index(0, 0), index(40, columnCount() - 1));
    }

private:
    std::vector<double> m_values;
};

// Some seconds of the load: its bytes, its numbers, and as many paintings as the view has made; us a change.
double bareChange(const Responder& responder, const Load& load, double repaints)
{
    PlainModel model(load.items);
    QTableView table;
    table.setModel(&model);
    table.resize(width, height);
    table.show();
    const int messages = static_cast<int>(load.perSecond() / static_cast<double>(load.ofMessage()));
    const int paintings = std::max(1, static_cast<int>(repaints + 0.5));
    const auto second = [&] {
        pingPong(responder.rawPort(), messages, load.bytesOfMessage());
        for (int message = 0; message < messages; ++message) {
            model.change(static_cast<std::size_t>(message) * load.ofMessage(), load.ofMessage(), message);
            if (message * paintings / messages != (message + 1) * paintings / messages)
                QCoreApplication::processEvents();
        }
    };
    second(); // makes fonts and styles
    const double before = processCpu();
    for (int n = 0; n < seconds; ++n)
        second();
    return (processCpu() - before) / load.perSecond() / seconds;
}

// Rows of a plain model and its view, and the bytes of their creation and first values; us.
double bareAdding(const Responder& responder, const Load& load)
{
    const double before = processCpu();
    PlainModel model(load.items);
    QTableView table;
    table.setModel(&model);
    table.resize(width, height);
    table.show();
    QCoreApplication::processEvents();
    constexpr int calls = 2;
    pingPong(responder.rawPort(), calls * static_cast<int>(load.items / load.ofMessage()),
             load.bytesOfMessage());
    return processCpu() - before;
}

class QuietCallback : public UaSessionCallback
{
public:
    void connectionStatusChanged(OpcUa_UInt32, UaClient::ServerStatus) override {}
};

QlumToolNodes nodesOf(const Load& load)
{
    QlumToolNodes nodes;
    for (OpcUa_UInt32 i = 0; i < load.items; ++i)
        nodes.push_back({1,
                         UaNodeId(1'000'000 + i, 1),
                         OpcUa_NodeClass_Variable,
                         {},
                         QStringLiteral("Temperature%1").arg(i)});
    return nodes;
}

bool haveValues(const QlumDaModel& model)
{
    return std::all_of(
        model.rows().rbegin(), model.rows().rend(),
        [](const QlumDataItem& item) { return item.received != 0; });
}

Figures measure(QlumDaView& view, const Load& load)
{
    QlumDataSettings settings;
    settings.publishingInterval = load.interval;
    view.setSettings({}, settings);
    view.sessionStatusChanged(1, QlumConnectionStatus::Connected);
    Watcher watcher(*view.table(), view.model());
    const auto* progress = view.findChild<QProgressBar*>(QStringLiteral("dataProgress"));
    const QlumToolNodes nodes = nodesOf(load);
    Figures figures;
    QElapsedTimer clock;
    clock.start();
    double begun = processCpu();
    view.addNodes(nodes);
    watcher.run(
        [&] {
            figures.hasProgress = figures.hasProgress || progress->isVisible();
            return view.watch()->pending() == 0 && haveValues(view.model());
        },
        "no first values");
    figures.adding = static_cast<double>(clock.elapsed());
    figures.addingCpu = processCpu() - begun;
    const auto runFor = [&](int duration) {
        clock.restart();
        watcher.run([&] { return clock.elapsed() >= duration * 1000; }, "nothing comes");
    };
    static_cast<void>(view.pool().waitForDone()); // names and types
    runFor(warmSeconds);
    static_cast<void>(view.watch()->takeTraffic());
    watcher.repaints = watcher.idleRepaints = 0;
    watcher.longestTurn = 0;
    quint64 changes = view.model().rowAt(0).changes;
    begun = processCpu();
    runFor(seconds);
    const double cpu = processCpu() - begun;
    const double passed = static_cast<double>(clock.elapsed()) / 1000;
    figures.repaints = watcher.repaints / passed;
    figures.idle = watcher.idleRepaints / passed;
    changes = (view.model().rowAt(0).changes - changes) * load.items; // each row has had as many
    figures.change = changes == 0 ? 0 : cpu / static_cast<double>(changes);
    watcher.pressKeys();
    runFor(seconds);
    figures.turn = watcher.longestTurn / 1e3;
    std::sort(watcher.latencies.begin(), watcher.latencies.end());
    if (!watcher.latencies.empty())
        figures.input = watcher.latencies[watcher.latencies.size() * 99 / 100];
    return figures;
}

void tell(const Load& load, const Figures& ours, double bareChange, double bareAdding)
{
    const std::string name = std::string("dataflow_") + load.name;
    std::printf(
        "%u items, a value each %.0f ms: added and valued in %.0f ms (%.0f ms of CPU, bare %.1f), a "
        "change %.3f us of the process (bare %.3f), longest turn %.1f ms, key to screen %.1f ms, %.1f "
        "repaints a second, %.1f of them for rows out of sight\n",
        load.items, load.interval, ours.adding, ours.addingCpu / 1e3, bareAdding / 1e3, ours.change,
        bareChange, ours.turn, ours.input, ours.repaints, ours.idle);
    printRatio((name + "_change").c_str(), ours.change, bareChange, load.maximumChange);
    printBudget((name + "_longest_turn_ms").c_str(), ours.turn, maximumTurn, ours.turn > 0);
    printBudget((name + "_key_to_screen_ms").c_str(), ours.input, maximumInput, ours.input > 0);
    printBudget((name + "_repaints").c_str(), ours.repaints, maximumRepaints, ours.repaints > 0);
    printBudget((name + "_idle_repaints").c_str(), ours.idle, maximumIdle, ours.repaints > 0);
    // a tenth of the rows comes at once, without progress to see
    const bool isTold = ours.hasProgress || isQuick();
    printRatio((name + "_added_and_valued").c_str(), isTold ? ours.addingCpu : 0, bareAdding, maximumAdding);
}

void run(const Responder& responder, const Load& load)
{
    StubApplication application;
    QuietCallback callback;
    const auto session = std::make_shared<UaSession>();
    if (session
            ->connect(UaString(responder.url(false).c_str()), SessionConnectInfo(), SessionSecurityInfo(),
                      &callback)
            .isBad())
        give("no connection");
    const std::shared_ptr<QlumSessionServices> services = qlumServicesOf(session);
    const auto watched = std::make_shared<monitoring::MonitoredServer>();
    watched->setSession(session.get());
    watched->statusChanged(UaClient::Connected);
    Figures figures;
    {
        QlumDaView view(
            application, [&](unsigned int) { return services; }, [&](unsigned int) { return watched; });
        view.resize(width, height);
        view.show();
        figures = measure(view, load);
        view.sessionRemoved(1);
    }
    watched->close();
    static_cast<void>(session->disconnect(ServiceSettings(), true));
    // when nothing else is under way
    tell(load, figures, bareChange(responder, load, figures.repaints), bareAdding(responder, load));
}

} // namespace

int main(int argc, char** argv)
{
    // 0.35 us where bytes, a plain model and its painting took 0.104 and 0.25
    const Load many{"50000_at_1_hz", static_cast<OpcUa_UInt32>(operations(50'000)), 1000, 3.4};
    const Load fast{"10000_at_10_hz", static_cast<OpcUa_UInt32>(operations(10'000)), 100, 1.4};
    NodeTable table;
    table.object(UaNodeId(1, 1), "Plant");
    for (OpcUa_UInt32 i = 0; i < many.items; ++i)
        table.variable(UaNodeId(1'000'000 + i, 1), ("Temperature" + std::to_string(i)).c_str(),
                       UaVariant(1.0), UaNodeId(1, 1));
    ValueServer slowly(table, many), quickly(table, fast);
    const Identity server = makeIdentity("server"), client = makeIdentity("client");
    const Responder first(
        server, client, opcua::Bytes(32, 5),
        [&slowly](const opcua::Bytes& body) { return slowly.answer(body); });
    const Responder second(server, client, opcua::Bytes(32, 5),
                           [&quickly](const opcua::Bytes& body) { return quickly.answer(body); });
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication qtApplication(argc, argv);
    if (UaPlatformLayer::init() != 0)
        return 1;
    run(first, many);
    run(second, fast);
    UaPlatformLayer::cleanup();
    return 0;
}
