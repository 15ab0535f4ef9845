#include <app/log/qlumlogentry.h>
#include <app/log/qlumlogfilter.h>
#include <app/log/qlumlogmodel.h>
#include <app/log/qlumlogview.h>
#include <app/startup/qlumqtmessages.h>
#include <uabase/system/uatrace.h>
#include <uabase/system/uatracehook.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QAbstractItemModel>
#include <QAbstractItemModelTester>
#include <QCoreApplication>
#include <QDate>
#include <QDateTime>
#include <QIcon>
#include <QList>
#include <QScrollBar>
#include <QSignalSpy>
#include <QString>
#include <QStringList>
#include <QTextStream>
#include <QTime>
#include <QTreeView>
#include <QtGlobal>
#include <gtest/gtest.h>

#include <memory>
#include <thread>

namespace {
std::unique_ptr<QlumLogEntry> entry(const QString& message, const QString& source = QStringLiteral("Source"),
                                    const QString& server = QString(), int level = 30)
{
    return std::make_unique<QlumLogEntry>(
        QlumLogEntry{QDateTime(QDate(2026, 11, 21), QTime(7, 8, 9, 10)), level, source, server, message});
}

QStringList messages(const QAbstractItemModel& model)
{
    QStringList result;
    for (int row = 0; row < model.rowCount(); ++row)
        result.append(model.index(row, QlumLogModel::Message).data().toString());
    return result;
}

QString saved(QlumLogModel& model)
{
    QString text;
    QTextStream stream(&text);
    model.save(stream);
    stream.flush();
    return text;
}
} // namespace

TEST(LogModel, GathersEntriesAndDropsTheOldest)
{
    QlumLogModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    model.setMaxEntries(3);
    QSignalSpy insertions(&model, &QAbstractItemModel::rowsInserted);
    for (int i = 1; i <= 2; ++i)
        model.addLog(entry(QString::number(i)));
    ASSERT_TRUE(insertions.wait(5000));
    EXPECT_EQ(insertions.size(), 1);
    for (int i = 3; i <= 5; ++i) {
        model.addLog(entry(QString::number(i)));
        model.sltFlush();
    }
    EXPECT_EQ(messages(model), (QStringList{"3", "4", "5"}));
    for (int i = 6; i <= 20; ++i)
        model.addLog(entry(QString::number(i)));
    model.sltFlush();
    EXPECT_EQ(messages(model), (QStringList{"18", "19", "20"}));
    model.setMaxEntries(1);
    EXPECT_EQ(messages(model), (QStringList{"20"}));
}

TEST(LogModel, SavesOneLineForEachEntry)
{
    QlumLogModel model;
    model.addLog(
        entry(QStringLiteral("short"), QString(14, QLatin1Char('s')), QString(26, QLatin1Char('v'))));
    model.addLog(entry(QStringLiteral("long"), QString(15, QLatin1Char('s')), QString(40, QLatin1Char('v'))));
    model.addLog(entry(QStringLiteral("two\nlines\x01|100% %1")));
    const QStringList lines = saved(model).split(QLatin1Char('\n'));
    ASSERT_EQ(lines.size(), 4); // the last one is empty
    EXPECT_EQ(lines.at(0),
              QStringLiteral("07:08:09.010 | ssssssssssssss     | vvvvvvvvvvvvvvvvvvvvvvvvvv     | short"));
    EXPECT_EQ(lines.at(1),
              QStringLiteral("07:08:09.010 | sssssssssssssss... | vvvvvvvvvvvvvvvvvvvvvvvvvvv... | long"));
    EXPECT_TRUE(lines.at(2).endsWith(QStringLiteral("| two\\nlines\\x01|100% %1")))
        << lines.at(2).toStdString();
}

TEST(LogModel, FloodFromAThreadIsBoundedAndCounted)
{
    QlumLogModel model;
    model.setMaxEntries(1000000);
    std::thread flood([&model] {
        for (int i = 0; i < 30000; ++i)
            model.addLog(entry(QStringLiteral("x")));
    });
    flood.join(); // nothing was inserted meanwhile: this thread inserts
    EXPECT_EQ(model.rowCount(), 0);
    QCoreApplication::processEvents();
    model.sltFlush();
    EXPECT_EQ(model.rowCount(), 20001);
    EXPECT_EQ(messages(model).last(), QStringLiteral("10000 log entries came too fast and were dropped."));
    model.addLog(entry(QStringLiteral("after")));
    model.sltFlush();
    EXPECT_EQ(messages(model).last(), QStringLiteral("after"));
}

TEST(LogModel, TextOfServersIsShownAsTextAndCut)
{
    QlumLogModel model;
    model.addLog(entry(QStringLiteral("<img src=x>") + QString(1000000, QLatin1Char('y'))));
    model.sltFlush();
    EXPECT_LT(messages(model).first().size(), 10100);
    const QString tip = model.index(0, QlumLogModel::Message).data(Qt::ToolTipRole).toString();
    EXPECT_TRUE(tip.contains(QStringLiteral("&lt;img")));
    EXPECT_FALSE(tip.contains(QStringLiteral("<img")));
}

TEST(LogModel, FilterKeepsSeriousEntriesWithTheText)
{
    QlumLogModel model;
    QlumLogFilter filter;
    filter.setSourceModel(&model);
    model.addLog(
        entry(QStringLiteral("Browse succeeded."), QStringLiteral("AddressSpaceModel"), QString(), 30));
    model.addLog(entry(QStringLiteral("Browse failed"), QStringLiteral("AddressSpaceModel"), QString(), 100));
    model.addLog(entry(QStringLiteral("Connecting failed"), QStringLiteral("Server Node"),
                       QStringLiteral("Mill"), 100));
    model.sltFlush();
    filter.setFilter(50, QString());
    EXPECT_EQ(messages(filter), (QStringList{"Browse failed", "Connecting failed"}));
    filter.setFilter(50, QStringLiteral("mill"));
    EXPECT_EQ(messages(filter), (QStringList{"Connecting failed"}));
    filter.setFilter(0, QStringLiteral("browse"));
    EXPECT_EQ(messages(filter), (QStringList{"Browse succeeded.", "Browse failed"}));
}

TEST(LogFilter, ARunOfEqualEntriesIsOneRowThatSaysHowMany)
{
    QlumLogModel model;
    QlumLogFilter filter;
    filter.setSourceModel(&model);
    const QAbstractItemModelTester tester(&filter, QAbstractItemModelTester::FailureReportingMode::Fatal);
    const auto add = [&model](const char* message, int times, const QString& server = QString()) {
        for (int i = 0; i < times; ++i)
            model.addLog(entry(QString::fromLatin1(message), QStringLiteral("S"), server));
        model.sltFlush();
    };
    add("Browse succeeded.", 1);
    add("BrowseNext succeeded.", 2);
    QSignalSpy changed(&filter, &QAbstractItemModel::dataChanged);
    add("BrowseNext succeeded.", 3);
    EXPECT_EQ(changed.size(), 1) << "the count that is shown has grown";
    add("BrowseNext succeeded.", 1, QStringLiteral("another server"));
    EXPECT_EQ(messages(filter),
              (QStringList{"Browse succeeded.", "5 times: BrowseNext succeeded.", "BrowseNext succeeded."}));
    EXPECT_EQ(messages(model).size(), 7) << "the log itself keeps every entry";
    filter.setFilter(0, QStringLiteral("next"));
    EXPECT_EQ(messages(filter).first(), QStringLiteral("5 times: BrowseNext succeeded."));
    filter.setFilter(0, QString());
    model.setMaxEntries(4);
    EXPECT_EQ(messages(filter), (QStringList{"3 times: BrowseNext succeeded.", "BrowseNext succeeded."}))
        << "of a run whose first entries were dropped the others stay";
}

TEST(LogFilter, StatusesAreToldInWordsAndAConnectionIsNoWarning)
{
    QlumLogModel model;
    QlumLogFilter filter;
    filter.setSourceModel(&model);
    const char* const texts[] = {"Connection status of server 'A' changed to 'Connected'.",
                                 "Read attributes of node 'B' failed [ret = BadNodeIdUnknown]",
                                 "<-- UaDiscovery::getEndpoints [ret=0x800a0000]",
                                 "Connecting cancelled by user.", "[ret = BadFilterOperandCountMismatch]"};
    for (const char* text : texts)
        model.addLog(entry(QString::fromLatin1(text)));
    model.sltFlush();
    const auto tip = [&filter](int row) {
        return filter.index(row, QlumLogModel::Message).data(Qt::ToolTipRole).toString();
    };
    EXPECT_TRUE(tip(1).contains("no such node")) << tip(1).toStdString();
    EXPECT_TRUE(tip(2).contains("BadTimeout: the server did not answer in time")) << tip(2).toStdString();
    EXPECT_TRUE(tip(4).contains("filter operand count mismatch")) << tip(4).toStdString();
    const auto icon = [&filter](int row) {
        return filter.index(row, QlumLogModel::Message)
            .data(Qt::DecorationRole)
            .value<QIcon>()
            .pixmap(16, 16)
            .toImage();
    };
    const auto iconOf = [](QlumStatusLevel level) { return qlumStatusIcon(level).pixmap(16, 16).toImage(); };
    EXPECT_EQ(icon(0), iconOf(QlumStatusLevel::Good));
    EXPECT_EQ(icon(2), iconOf(QlumStatusLevel::Bad));
    EXPECT_NE(icon(3), iconOf(QlumStatusLevel::Bad));
    EXPECT_EQ(icon(3).pixelColor(8, 8).alpha(), 0) << "neither good nor bad, but in line with the others";
}

TEST(LogView, FollowsTheLogUntilTheUserScrollsUpWhateverTheSizeOfTheWindow)
{
    QlumLogModel model;
    QlumLogView view(&model, {});
    view.resize(600, 400);
    view.show();
    const QScrollBar* bar = view.findChild<QTreeView*>("logView")->verticalScrollBar();
    int number = 0;
    const auto add = [&](int count) {
        for (int i = 0; i < count; ++i)
            model.addLog(entry(QString::number(++number)));
        model.sltFlush();
        QCoreApplication::processEvents();
    };
    add(100);
    EXPECT_EQ(bar->value(), bar->maximum());
    view.resize(600, 150);
    QCoreApplication::processEvents();
    add(5);
    EXPECT_EQ(bar->value(), bar->maximum()) << "a smaller window is no wish of the user";
    view.findChild<QTreeView*>("logView")->verticalScrollBar()->setValue(3);
    add(5);
    EXPECT_EQ(bar->value(), 3);
}

TEST(QtMessages, GoToTheTraceAndNotToTheLog)
{
    struct Hook : UaTraceHook
    {
        void traceOutput(UaTrace::TraceLevel level, const char* text, int) override
        {
            levels.append(level);
            texts.append(QString::fromUtf8(text));
        }
        QList<int> levels;
        QStringList texts;
    } hook;
    UaTrace::setErrorTraceHook(&hook);
    const QtMessageHandler before = qInstallMessageHandler(nullptr);
    qlumTraceQtMessages();
    qWarning("100%% of %s", "it");
    qInstallMessageHandler(before);
    UaTrace::setErrorTraceHook(nullptr);
    ASSERT_EQ(hook.texts.size(), 1);
    EXPECT_TRUE(hook.texts.first().contains("100% of it")) << hook.texts.first().toStdString();
    EXPECT_EQ(hook.levels.first(), UaTrace::Info) << "warnings become errors in the user's log";
}
