// How long the window stands still while a list of 100,000 values is staged and written: rows are added, each
// value is looked at against its node, and the lists show it. CPU time of the GUI thread; the server is a
// table of nodes in the same process, which other threads ask.
#include <app/api/qlumconnectionstatus.h>
#include <bench/budgets.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/dataaccess/qlumdamodel.h>
#include <plugins/dataaccess/qlumdaview.h>
#include <tests/support/stubapplication.h>
#include <tests/support/tableservices.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QAbstractItemModel>
#include <QAction>
#include <QApplication>
#include <QCoreApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QLineEdit>
#include <QList>
#include <QMetaObject>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTableView>
#include <QTemporaryDir>
#include <QTimer>
#include <QWidget>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <memory>
#include <string>

namespace {

const int lines = operations(100'000);
constexpr qint64 limit = 120'000; // ms
constexpr double maximumTurn = 50.0;
constexpr unsigned int plant = 5;

class Application : public StubApplication
{
public:
    QList<unsigned int> projectServerIds() override { return {plant}; }
    QStringList namespaceTable(unsigned int) override
    {
        return {QStringLiteral("http://opcfoundation.org/UA/"), QStringLiteral("urn:plant")};
    }
};

class Services : public TableServices
{
public:
    UaStringArray namespaceTable() const override
    {
        UaStringArray uris(2);
        if (OpcUa_IsBad(UaString("http://opcfoundation.org/UA/").copyTo(&uris[0])) ||
            OpcUa_IsBad(UaString("urn:plant").copyTo(&uris[1])))
            uris.clear();
        return uris;
    }
};

[[noreturn]] void give(const char* why)
{
    std::fprintf(stderr, "%s\n", why);
    std::exit(1);
}

double threadCpu()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

void fill(NodeTable& table)
{
    table.object(UaNodeId(1, 1), "Plant");
    for (int i = 0; i < lines; ++i) {
        const UaNodeId node(static_cast<OpcUa_UInt32>(i + 2), 1);
        table.variable(node, ("Setpoint" + std::to_string(i)).c_str(), UaVariant(1.0), UaNodeId(1, 1));
        table.setAttribute(node, OpcUa_Attributes_DataType, UaDataValue(UaVariant(UaNodeId(11))));
        table.setAttribute(node, OpcUa_Attributes_ValueRank, UaDataValue(UaVariant(OpcUa_Int32(-1))));
    }
}

void write(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        give("no file");
    file.write("Node Id;New Value\n");
    for (int i = 0; i < lines; ++i)
        file.write(("ns=1;i=" + std::to_string(i + 2) + ";" + std::to_string(i % 100) + ".5\n").c_str());
}

void trigger(const QlumDaView& view, const char* name)
{
    for (const QWidget* widget : view.findChildren<QWidget*>())
        for (QAction* action : widget->actions())
            if (action->objectName() == QLatin1String(name))
                return action->trigger();
    give("no command");
}

// The user chooses the file.
void load(QlumDaView& view, const QString& path)
{
    QTimer answer;
    QObject::connect(&answer, &QTimer::timeout, [&path] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        for (QLineEdit* line : dialog->findChildren<QLineEdit*>())
            line->setText(path);
        QMetaObject::invokeMethod(dialog, "accept");
    });
    answer.start(1);
    trigger(view, "loadNewValues");
}

struct Figures
{
    double longest = 0; // ms of one turn
    double all = 0;     // ms of the GUI thread
    int turns = 0;
};

Figures runUntil(const std::function<bool()>& isDone)
{
    Figures figures;
    QElapsedTimer clock;
    clock.start();
    while (!isDone()) {
        if (clock.elapsed() > limit)
            give("it does not come");
        const double begun = threadCpu();
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
        const double turn = threadCpu() - begun;
        figures.longest = std::max(figures.longest, turn);
        figures.all += turn;
        ++figures.turns;
    }
    return figures;
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication qt(argc, argv);
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("values.csv"));
    write(path);
    const auto services = std::make_shared<Services>();
    fill(services->table);
    Application application;
    QlumDaView view(application, [&services](unsigned int) { return services; }, {});
    view.resize(1200, 800);
    view.show();
    view.sessionStatusChanged(plant, QlumConnectionStatus::Connected);
    QApplication::processEvents();
    load(view, path);
    const QAbstractItemModel& staged = *view.findChild<QTableView*>(QStringLiteral("stagedValues"))->model();
    constexpr int check = 5; // empty once the node says nothing against the value
    const Figures figures = runUntil([&] {
        return staged.rowCount() == lines && view.pool().pending() == 0 &&
               staged.index(0, check).data().toString().isEmpty() &&
               staged.index(lines - 1, check).data().toString().isEmpty();
    });
    std::printf(
        "%d values staged and looked at: %.0f ms of the GUI thread in %d turns, the longest %.1f ms\n", lines,
        figures.all, figures.turns, figures.longest);
    printBudget("staging_longest_turn_ms", figures.longest, maximumTurn, figures.longest > 0);
    // the first one fails, and all behind it are left out at once; then they are written
    constexpr int result = 6;
    double longest = 0;
    for (const OpcUa_StatusCode first :
         {OpcUa_StatusCode(OpcUa_BadNotWritable), OpcUa_StatusCode(OpcUa_Good)}) {
        services->table.fail(NodeTable::Write, UaNodeId(2, 1), first);
        const QString last = first == OpcUa_Good ? QStringLiteral("Written") : QStringLiteral("Left out");
        trigger(view, "writeStaged");
        const auto* write = view.findChild<QAction*>(QStringLiteral("writeStaged"));
        const Figures outcomes = runUntil([&] {
            return write->isEnabled() && staged.index(lines - 1, result).data().toString().startsWith(last);
        });
        std::printf("their outcomes (%s): %.0f ms of the GUI thread in %d turns, the longest %.1f ms\n",
                    qPrintable(last), outcomes.all, outcomes.turns, outcomes.longest);
        longest = std::max(longest, outcomes.longest);
    }
    printBudget("staged_outcomes_longest_turn_ms", longest, maximumTurn, longest > 0);
    return 0;
}
