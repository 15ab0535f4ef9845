#include <servers/qlumnetworkwatch.h>
#include <tests/support/modeltext.h>
#include <tests/support/networkmessages.h>
#include <tests/support/stubapplication.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QString>
#include <QStringList>
#include <QTest>
#include <gtest/gtest.h>
#include <linux/if.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <memory>
#include <span>
#include <sys/socket.h>
#include <unistd.h>

namespace {
using networkmessages::addressMessage;
using networkmessages::Bytes;
using networkmessages::linkMessage;
using networkmessages::message;

class NetworkWatch : public testing::Test
{
protected:
    static constexpr std::chrono::milliseconds noPause{0};

    // How often it tells of a change, its pause being over.
    static int told(QlumNetworkWatch& watch, const Bytes& datagram)
    {
        const QSignalSpy spy(&watch, &QlumNetworkWatch::networkChanged);
        watch.takeMessages(datagram);
        const int count = spy.count();
        QCoreApplication::processEvents();
        return count;
    }

    StubApplication application;
};

TEST_F(NetworkWatch, TellsOfAddressesAndOfLinksThatGoUpOrDown)
{
    QlumNetworkWatch watch(-1, noPause);
    EXPECT_EQ(told(watch, addressMessage(RTM_NEWADDR)), 1);
    EXPECT_EQ(told(watch, addressMessage(RTM_DELADDR)), 1);
    EXPECT_EQ(told(watch, linkMessage(RTM_NEWLINK, 2, IFF_UP)), 1);
    EXPECT_EQ(told(watch, linkMessage(RTM_NEWLINK, 2, IFF_UP | IFF_PROMISC)), 0)
        << "no other way than before";
    EXPECT_EQ(told(watch, linkMessage(RTM_NEWLINK, 2, IFF_UP | IFF_RUNNING)), 1) << "the cable is in";
    EXPECT_EQ(told(watch, linkMessage(RTM_NEWLINK, 3, IFF_UP | IFF_RUNNING)), 1);
    EXPECT_EQ(told(watch, linkMessage(RTM_NEWLINK, 2, IFF_UP | IFF_RUNNING)), 0);
    EXPECT_EQ(told(watch, linkMessage(RTM_NEWLINK, 2, 0, AF_BRIDGE)), 0) << "a port of a bridge";
    EXPECT_EQ(told(watch, linkMessage(RTM_DELLINK, 2, IFF_UP)), 1);
    EXPECT_EQ(told(watch, linkMessage(RTM_NEWLINK, 2, IFF_UP | IFF_RUNNING)), 1)
        << "another one of that number";
    EXPECT_EQ(told(watch, message(RTM_NEWROUTE, Bytes(32))), 0);
    EXPECT_EQ(told(watch, message(NLMSG_ERROR, Bytes(20))), 0);
    Bytes both = linkMessage(RTM_NEWLINK, 2, IFF_UP | IFF_RUNNING);
    const Bytes second = addressMessage(RTM_NEWADDR);
    both.insert(both.end(), second.begin(), second.end());
    EXPECT_EQ(told(watch, both), 1) << "the second message of a datagram";
}

TEST_F(NetworkWatch, AStormIsToldAtItsBeginAndOnceInEachPause)
{
    constexpr std::chrono::milliseconds pause(100);
    QlumNetworkWatch watch(-1, pause);
    const QSignalSpy spy(&watch, &QlumNetworkWatch::networkChanged);
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < 50; ++i)
        watch.takeMessages(addressMessage(RTM_NEWADDR));
    EXPECT_EQ(spy.count(), 1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return spy.count() == 2; }));
    EXPECT_GE(clock.elapsed(), pause.count() * 9 / 10) << "timers may be a little early";
    watch.takeMessages(addressMessage(RTM_NEWADDR));
    EXPECT_EQ(spy.count(), 2);
    ASSERT_TRUE(QTest::qWaitFor([&] { return spy.count() == 3; }));
}

TEST_F(NetworkWatch, LengthsThatCannotBeEndADatagram)
{
    QlumNetworkWatch watch(-1, noPause);
    const Bytes good = addressMessage(RTM_NEWADDR);
    for (const unsigned int length :
         {0u, 1u, 15u, static_cast<unsigned int>(good.size()) + 1, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        Bytes bad = good;
        networkmessages::setLength(bad, length);
        bad.insert(bad.end(), good.begin(), good.end());
        // the length that takes in a part of the next message is one that can be
        EXPECT_EQ(told(watch, bad), length == good.size() + 1 ? 1 : 0) << length;
        Bytes after = good;
        after.insert(after.end(), bad.begin(), bad.begin() + static_cast<std::ptrdiff_t>(good.size()));
        EXPECT_EQ(told(watch, after), 1) << length;
    }
    const Bytes link = linkMessage(RTM_NEWLINK, 9, IFF_UP);
    for (std::size_t size = 0; size < link.size(); ++size) {
        EXPECT_EQ(told(watch, Bytes(link.begin(), link.begin() + static_cast<std::ptrdiff_t>(size))), 0)
            << size;
        EXPECT_EQ(told(watch, message(RTM_NEWLINK, Bytes(size % sizeof(ifinfomsg)))), 0)
            << "without its body";
    }
    EXPECT_EQ(told(watch, link), 1) << "of the pieces nothing was kept";
}

TEST_F(NetworkWatch, HearsWhatComesOnItsSocketAndMissesNothingTooLong)
{
    std::array<int, 2> ends{};
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0, ends.data()), 0);
    QlumNetworkWatch watch(ends[0], noPause);
    const QSignalSpy spy(&watch, &QlumNetworkWatch::networkChanged);
    const auto send = [&](const Bytes& datagram) {
        return ::send(ends[1], datagram.data(), datagram.size(), 0) == static_cast<ssize_t>(datagram.size());
    };
    ASSERT_TRUE(send(addressMessage(RTM_NEWADDR)));
    EXPECT_TRUE(QTest::qWaitFor([&] { return spy.count() == 1; }));
    ASSERT_TRUE(send(message(RTM_NEWROUTE, Bytes(60000))));
    EXPECT_TRUE(QTest::qWaitFor([&] { return spy.count() == 2; })) << "something was cut off";
    ::close(ends[1]);
}

TEST_F(NetworkWatch, WithoutAUsableSocketItSaysSoOnce)
{
    {
        const QlumNetworkWatch watch(-1);
        EXPECT_EQ(application.texts(), QStringList{"Changes of the network cannot be noticed."});
    }
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0); // no socket
    const QlumNetworkWatch watch(ends[0], noPause);
    ASSERT_EQ(::write(ends[1], "xx", 2), 2);
    const QString told = "Changes of the network cannot be noticed any longer.";
    ASSERT_TRUE(QTest::qWaitFor([&] { return application.texts().contains(told); }));
    for (int i = 0; i < 10; ++i)
        QCoreApplication::processEvents(); // it is readable still
    EXPECT_EQ(application.texts().count(told), 1);
    ::close(ends[1]);
}

TEST_F(NetworkWatch, IsSharedAsLongAsSomebodyHoldsIt)
{
    std::shared_ptr<QlumNetworkWatch> first = QlumNetworkWatch::shared();
    EXPECT_EQ(QlumNetworkWatch::shared(), first);
    const std::weak_ptr<QlumNetworkWatch> held = first;
    first.reset();
    EXPECT_TRUE(held.expired());
    EXPECT_NE(QlumNetworkWatch::shared(), nullptr);
}
} // namespace
