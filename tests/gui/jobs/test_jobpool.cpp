#include <app/api/qlumjob.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlumrunningwork.h>
#include <tests/support/stubapplication.h>
#include <tests/support/testclock.h>
#include <uabase/values/uastring.h>

#include <QCoreApplication>
#include <QList>
#include <QObject>
#include <QSemaphore>
#include <QString>
#include <QStringList>
#include <QTest>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>

namespace {
class JobPool : public testing::Test
{
protected:
    // Work that posts its name as soon as the gate lets it.
    QlumJobPool::Ticket addGated(const QString& name, unsigned int serverId = 5)
    {
        return pool.add(
            {name, serverId},
            [this, name](QlumJob& job) {
                begun.release();
                gate.acquire();
                job.post([this, name] { arrived.append(name); });
            },
            [this, name](QlumWorkEnd end) {
                ends.append(name + ' ' + QString::number(static_cast<int>(end)));
            });
    }
    void settle()
    {
        pool.waitForDone();
        QCoreApplication::processEvents();
    }

    StubApplication application;
    QSemaphore begun;
    QSemaphore gate;
    QStringList arrived;
    QStringList ends;
    QlumJobPool pool;
};

TEST_F(JobPool, ResultsArriveInOrderOnTheOwnThreadAndTheEndComesLast)
{
    const auto own = std::this_thread::get_id();
    QStringList order;
    bool onOwnThread = true;
    pool.add(
        {"numbers", 5},
        [&](QlumJob& job) {
            for (int i = 0; i < 3; ++i)
                job.post([&order, &onOwnThread, own, held = std::make_unique<int>(i)] {
                    order.append(QString::number(*held));
                    onOwnThread = onOwnThread && std::this_thread::get_id() == own;
                });
        },
        [&](QlumWorkEnd end) { order.append(end == QlumWorkEnd::Done ? "done" : "?"); });
    ASSERT_TRUE(QTest::qWaitFor([&] { return order.size() == 4; }));
    EXPECT_EQ(order, (QStringList{"0", "1", "2", "done"}));
    EXPECT_TRUE(onOwnThread);
}

TEST_F(JobPool, PortionsComeOneByOneAndWhoWaitsForThemCanBeGivenUp)
{
    QStringList order;
    pool.add(
        {"portions", 5},
        [&](QlumJob& job) {
            for (int i = 0; i < 3; ++i)
                if (job.postAndWait([&order, i] { order.append(QString::number(i)); }))
                    job.post([&order] { order.append("taken"); });
        });
    ASSERT_TRUE(QTest::qWaitFor([&] { return order.size() == 6; }));
    EXPECT_EQ(order, (QStringList{"0", "taken", "1", "taken", "2", "taken"}));

    bool isTaken = true;
    pool.add({"given up", 5}, [&](QlumJob& job) {
        begun.release();
        isTaken = job.postAndWait([&order] { order.append("late"); });
    });
    begun.acquire();
    pool.endServer(5); // waits on the thread that the job waits for
    QCoreApplication::processEvents();
    EXPECT_FALSE(isTaken);
    EXPECT_EQ(order.size(), 6);
}

TEST_F(JobPool, ResultsOfAnOlderRequestNeverArrive)
{
    addGated("old");
    begun.acquire();
    addGated("waiting");
    pool.cancelAll();
    addGated("new");
    gate.release(3);
    settle();
    EXPECT_EQ(arrived, QStringList{"new"});
    EXPECT_EQ(ends, QStringList{"new 0"});

    const QlumJobPool::Ticket posted = addGated("posted");
    pool.waitForDone(); // its result is on its way
    const QlumJobPool::Ticket kept = addGated("kept");
    EXPECT_NE(posted, kept);
    pool.giveUp(posted);
    gate.release();
    settle();
    EXPECT_EQ(arrived, (QStringList{"new", "kept"}));
}

TEST_F(JobPool, WorkThatWaitsInOneLongCallIsInterruptedInWhicheverWayItIsCancelled)
{
    const auto waitsForIts = [this](const QString& name) {
        pool.add(
            {name, 5},
            [this](QlumJob& job) {
                const auto call = std::make_shared<QSemaphore>();
                job.whenCancelled([call] { call->release(); });
                begun.release();
                call->acquire();
            },
            [this, name](QlumWorkEnd) { ends.append(name); });
        begun.acquire();
    };
    waitsForIts("by the user");
    QlumRunningWork::instance().cancelServer(5);
    settle();
    EXPECT_EQ(ends, QStringList{"by the user"});
    waitsForIts("by its owner");
    pool.cancelAll();
    settle();
    waitsForIts("by its server");
    pool.endServer(5);
    EXPECT_EQ(pool.pending(), 0);
    pool.add({"late", 5}, [&](QlumJob& job) {
        job.cancel();
        bool isCalled = false;
        job.whenCancelled([&isCalled] { isCalled = true; });
        job.post([this, isCalled] { arrived.append(isCalled ? "at once" : "never"); });
    });
    settle();
    EXPECT_EQ(arrived, QStringList{"at once"});
}

TEST_F(JobPool, AnEndedServerHasNoWorkLeftAndOthersGoOn)
{
    addGated("gone", 5);
    begun.acquire();
    addGated("other", 6);
    addGated("gone too", 5);
    std::thread opens([this] {
        while (pool.pending() == 3) // until what waits for the server is dropped
            std::this_thread::yield();
        gate.release(2);
    });
    pool.endServer(5);
    EXPECT_LE(pool.pending(), 1);
    opens.join();
    settle();
    EXPECT_EQ(arrived, QStringList{"other"});
    EXPECT_EQ(ends, QStringList{"other 0"});
}

TEST_F(JobPool, AnExceptionIsLoggedAndTheNextJobRuns)
{
    pool.add(
        {"Reading history", 7}, [](QlumJob&) { throw std::runtime_error("no room"); },
        [this](QlumWorkEnd end) { ends.append(end == QlumWorkEnd::Failed ? "failed" : "?"); });
    pool.add({"odd", 7}, [](QlumJob&) { throw 1; });
    gate.release();
    addGated("next");
    settle();
    EXPECT_EQ(application.texts(),
              (QStringList{"Reading history failed: no room", "odd failed: unknown exception"}));
    EXPECT_EQ(application.entries().first().serverId, 7u);
    EXPECT_EQ(ends, (QStringList{"failed", "next 0"}));
}

TEST_F(JobPool, AnOwnerThatGoesHearsNothingMore)
{
    auto own = std::make_unique<QlumJobPool>(2);
    bool heard = false;
    own->add(
        {"late", 5}, [&](QlumJob& job) { job.post([&] { heard = true; }); },
        [&](QlumWorkEnd) { heard = true; });
    own->waitForDone();
    own.reset();
    QCoreApplication::processEvents();
    EXPECT_FALSE(heard);
}

TEST_F(JobPool, CallsOfAJobCarryItsTextAndTheUsersTimeOut)
{
    application.settings["General.CallTimeout"] = 1234;
    UaClientSdk::ServiceSettings settings;
    pool.add({"Reading history", 5}, [&](QlumJob& job) { settings = job.serviceSettings(); });
    pool.waitForDone();
    EXPECT_EQ(settings.callTimeout, 1234u);
    EXPECT_EQ(settings.purpose.toStdString(), "Reading history");
}

// ---- what the user sees of it

TEST_F(JobPool, TheUserCancelsWithoutLosingWhatWasReadSoFar)
{
    addGated("running");
    begun.acquire();
    addGated("waiting");
    pool.add({"", 5}, [](QlumJob&) {}); // nobody sees it
    QlumRunningWork& all = QlumRunningWork::instance();
    QList<QlumRunningWorkRow> rows;
    ASSERT_TRUE(QTest::qWaitFor([&] { return (rows = all.rows()).size() == 2; }));
    EXPECT_EQ(rows[0].text, "running");
    EXPECT_FALSE(rows[0].isWaiting);
    EXPECT_TRUE(rows[1].isWaiting);
    all.cancel(rows[0].number);
    all.cancel(rows[1].number);
    gate.release();
    settle();
    EXPECT_EQ(arrived, QStringList{"running"}) << "what waits does not begin";
    EXPECT_EQ(ends, (QStringList{"running 1", "waiting 1"}));
    EXPECT_TRUE(all.isIdle());
}

TEST(RunningWork, TimeLeftFollowsFromTheProgressSoFar)
{
    TestClock clock;
    QlumRunningWork all([&clock] { return clock.now(); });
    int begun = 0;
    QObject::connect(&all, &QlumRunningWork::begun, [&begun] { ++begun; });
    const auto progress = std::make_shared<QlumJobProgress>();
    progress->setText("rows");
    all.insert(progress);
    all.insert(std::make_shared<QlumJobProgress>());
    EXPECT_EQ(begun, 1);
    EXPECT_EQ(all.rows().size(), 0) << "not worth a line yet";
    clock.advance(QlumRunningWork::shownAfter);
    ASSERT_EQ(all.rows().size(), 2);
    progress->total = 100;
    progress->done = 10;
    EXPECT_FALSE(all.rows()[0].left) << "nothing to compare with";
    clock.advance(2000);
    progress->done = 30;
    EXPECT_EQ(all.rows()[0].left.value_or(-1), 7000);
    progress->done = 130; // more than was foreseen
    EXPECT_FALSE(all.rows()[0].left);
    progress->ended = true;
    EXPECT_EQ(all.rows().size(), 1);
}

TEST(RunningWork, AServersEndCancelsItsWorkOnly)
{
    QlumRunningWork all([] { return qint64{0}; });
    const auto progress = std::make_shared<QlumJobProgress>();
    const auto other = std::make_shared<QlumJobProgress>();
    progress->serverId = 5;
    other->serverId = 6;
    all.insert(progress);
    all.insert(other);
    all.cancelServer(5);
    EXPECT_TRUE(progress->cancelled);
    EXPECT_FALSE(other->cancelled);
}
} // namespace
