// The parts of the publish engine that know nothing of a session.
#include <uaclientsdk/subscription/formersubscriptions.h>
#include <uaclientsdk/subscription/publishacknowledgements.h>
#include <uaclientsdk/subscription/publishpace.h>
#include <uaclientsdk/subscription/publishsetpoint.h>

#include <gmock/gmock.h>

#include <utility>
#include <vector>

namespace {

using UaClientSdk::FormerSubscriptions;
using UaClientSdk::PublishAcknowledgements;
using UaClientSdk::PublishPace;
using UaClientSdk::PublishSetPoint;

TEST(PublishSetPoint, FollowsTheNumberOfSubscriptions)
{
    PublishSetPoint point;
    const std::vector<std::pair<OpcUa_UInt32, OpcUa_UInt32>> wanted = {
        {0, 0}, {1, 2}, {3, 4}, {4, 5}, {5, 5}, {10, 10}, {11, 10}, {12, 11}, {30, 20}};
    for (const auto& [subscriptions, requests] : wanted) {
        point.calculate(subscriptions);
        EXPECT_EQ(point.value(), requests) << subscriptions;
    }
    point.calculateForHttp(7);
    EXPECT_EQ(point.value(), 1u);
    point.calculateForHttp(0);
    EXPECT_EQ(point.value(), 0u);
}

TEST(PublishSetPoint, FallsWhenRefusedAndProbesUpwards)
{
    PublishSetPoint point;
    point.calculate(3);
    point.lower(3);
    EXPECT_EQ(point.value(), 3u);
    point.lower(3);
    point.lower(3);
    point.lower(3);
    EXPECT_EQ(point.value(), 1u); // never none while somebody waits for news
    point.calculate(3);
    EXPECT_EQ(point.value(), 2u);
    point.calculate(3);
    point.calculate(3);
    EXPECT_EQ(point.value(), 4u);
    point.calculate(3);
    EXPECT_EQ(point.value(), 4u); // no more than wanted
    point.lower(0);
    EXPECT_EQ(point.value(), 3u);
    point.reset();
    point.calculate(12);
    EXPECT_EQ(point.value(), 11u);
}

TEST(PublishPace, IsFreeUntilAnErrorThenStaysBelowThreeHundredASecond)
{
    PublishPace pace;
    for (int i = 0; i < 1000; ++i)
        ASSERT_TRUE(pace.take(5));
    int sent = 0;
    for (OpcUa_UInt64 now = 10; now < 1010; ++now) { // every answer is an error at once
        for (int i = 0; i < 50; ++i) {
            if (pace.take(now)) {
                ++sent;
                pace.failed(now, 0);
            } else if (now == 10) {
                pace.failed(now, 0);
            }
        }
    }
    EXPECT_LE(sent, 300);
    EXPECT_GE(sent, 100); // it goes on, though
}

TEST(PublishPace, PausesAfterAnErrorAndForgetsItAfterASecond)
{
    PublishPace pace;
    pace.failed(1000, 10);
    EXPECT_FALSE(pace.take(1009));
    EXPECT_TRUE(pace.take(1010));
    for (int i = 0; i < 100; ++i)
        static_cast<void>(pace.take(1010));
    EXPECT_FALSE(pace.take(1010));
    EXPECT_TRUE(pace.take(2000));
    EXPECT_TRUE(pace.take(2000));
    pace.failed(5000, 10);
    EXPECT_TRUE(pace.take(10)); // a clock that went back does not stop it for ever
}

TEST(PublishPace, DoublesItsPauseFromOneFaultOfTheLinkToTheNext)
{
    PublishPace pace;
    OpcUa_UInt64 now = 1000;
    for (const OpcUa_UInt64 pause : {10, 20, 40, 80, 160, 320, 640, 1280, 2560, 2560}) {
        const OpcUa_UInt32 sent = pace.linkFaults();
        EXPECT_EQ(pace.linkFailed(now, sent), pause == 20); // the second one in a row, and no other
        EXPECT_FALSE(pace.linkFailed(now, sent));           // of a request that was open at the same time
        EXPECT_FALSE(pace.take(now + pause - 1));
        now += pause;
        EXPECT_TRUE(pace.take(now)) << pause;
    }
    EXPECT_FALSE(pace.linkFailed(now, pace.linkFaults()));
    pace.answered();
    EXPECT_TRUE(pace.take(now)); // the link is there again
    EXPECT_FALSE(pace.linkFailed(now, pace.linkFaults()));
    EXPECT_TRUE(pace.take(now + PublishPace::minimumLinkPause));
}

TEST(FormerSubscriptions, TellAnAnswerThatIsLateFromOneThatNobodyExpects)
{
    FormerSubscriptions former;
    const auto finding = [&former](OpcUa_UInt32 id) {
        const FormerSubscriptions::Finding found = former.find(id);
        return std::make_pair(found.isFirst, found.isUnknown);
    };
    former.add(1);
    EXPECT_EQ(finding(1), std::make_pair(true, false));
    EXPECT_EQ(finding(1), std::make_pair(false, false));
    EXPECT_EQ(finding(2), std::make_pair(true, true));
    EXPECT_EQ(finding(2), std::make_pair(false, false));
    former.forget(2); // what was done about it has come to nothing
    EXPECT_EQ(finding(2), std::make_pair(true, true));
    for (OpcUa_UInt32 id = 10; id < 10 + FormerSubscriptions::maxLength; ++id)
        former.add(id);
    EXPECT_EQ(finding(10), std::make_pair(true, false));
    EXPECT_EQ(finding(1), std::make_pair(true, true)) << "the oldest are forgotten";
}

TEST(PublishAcknowledgements, KeepTheirOrderAndEndAfterAFewAttempts)
{
    PublishAcknowledgements list;
    list.add(1, 10);
    list.add(2, 20);
    PublishAcknowledgements::Batch batch = list.take();
    EXPECT_EQ(list.length(), 0u);
    list.add(1, 11);
    list.restore(batch);
    batch = list.take();
    ASSERT_EQ(batch.items.size(), 3u);
    EXPECT_EQ(batch.items[0].SequenceNumber, 10u);
    EXPECT_EQ(batch.items[1].SequenceNumber, 20u);
    EXPECT_EQ(batch.items[2].SequenceNumber, 11u);
    list.restore(batch);
    batch = list.take(); // the third time for the first two
    list.restore(batch);
    ASSERT_EQ(list.length(), 1u);
    list.add(3, 1);
    list.forget(1);
    batch = list.take();
    ASSERT_EQ(batch.items.size(), 1u);
    EXPECT_EQ(batch.items[0].SubscriptionId, 3u);
}

TEST(PublishAcknowledgements, AreBoundedAndForgetTheOldestFirst)
{
    PublishAcknowledgements list;
    for (OpcUa_UInt32 i = 1; i <= PublishAcknowledgements::maxLength + 5; ++i)
        list.add(1, i);
    const PublishAcknowledgements::Batch batch = list.take();
    ASSERT_EQ(batch.items.size(), PublishAcknowledgements::maxLength);
    EXPECT_EQ(batch.items.front().SequenceNumber, 6u);
    for (OpcUa_UInt32 i = 0; i < PublishAcknowledgements::maxLength; ++i)
        list.add(2, i);
    list.restore(batch);
    EXPECT_EQ(list.length(), PublishAcknowledgements::maxLength);
}

} // namespace
