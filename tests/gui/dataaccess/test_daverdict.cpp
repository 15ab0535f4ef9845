// Where values went, and what would have kept them.
#include <plugins/dataaccess/qlumdataitem.h>
#include <plugins/dataaccess/qlumdaverdict.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <gtest/gtest.h>

namespace {

constexpr OpcUa_DateTime second = 10'000'000;

// Watched every second, looked at every 100 ms with room for 20 values; one came half a second ago.
QlumDaEvidence evidenceOfNoLoss()
{
    QlumDaEvidence evidence;
    evidence.state = QlumDataState::Watched;
    evidence.isConnected = true;
    evidence.asked.samplingInterval = 100;
    evidence.asked.queueSize = 20;
    evidence.revisedPublishing = 1000;
    evidence.revisedSampling = 100;
    evidence.revisedQueue = 20;
    evidence.count = 50;
    evidence.now = 1000 * second;
    evidence.lastValue = evidence.now - second / 2;
    evidence.subscriptionHeard = evidence.lastValue;
    return evidence;
}

TEST(DaVerdict, AllThatTheServerSawHasComeAndSilenceOfALivingSubscriptionIsNoLoss)
{
    QlumDaEvidence evidence = evidenceOfNoLoss();
    EXPECT_EQ(qlumDaJudge(evidence).word, "complete");
    EXPECT_EQ(qlumDaJudge(evidence).remedy, nullptr);
    evidence.lastValue = evidence.now - 130 * second;
    EXPECT_EQ(qlumDaJudge(evidence).word, "complete, unchanged for 2 min 10 s");
    EXPECT_EQ(qlumDaJudge(evidence).level, QlumStatusLevel::Good);
    evidence.subscriptionHeard = evidence.lastValue;
    EXPECT_EQ(qlumDaJudge(evidence).word, "silent for 2 min 10 s");
    EXPECT_EQ(qlumDaJudge(evidence).level, QlumStatusLevel::Bad);
}

TEST(DaVerdict, OverflowIsMendedByTheQueueOrWhereThatIsLimitedBySendingSooner)
{
    QlumDaEvidence evidence = evidenceOfNoLoss();
    evidence.overflows = 3;
    QlumDaVerdict verdict = qlumDaJudge(evidence);
    EXPECT_EQ(verdict.word, "3 overflow(s)");
    ASSERT_TRUE(verdict.remedy);
    EXPECT_EQ(verdict.remedy->queueSize, 40u);
    EXPECT_EQ(verdict.remedy->samplingInterval, 100) << "the rest stays";

    evidence.revisedQueue = 4; // all that this server keeps
    verdict = qlumDaJudge(evidence);
    ASSERT_TRUE(verdict.remedy);
    EXPECT_EQ(verdict.remedy->queueSize, 20u);
    EXPECT_EQ(verdict.remedy->publishingInterval, 200) << "two samples at a time";
    evidence.revisedPublishing = 100; // no sooner than that
    EXPECT_FALSE(qlumDaJudge(evidence).remedy);

    evidence.overflows = 0;
    evidence.gaps = 2;
    EXPECT_EQ(qlumDaJudge(evidence).word, "2 message(s) lost");
}

TEST(DaVerdict, SamplingBetweenIsToldAndAQueueOfOneIsNeverCalledComplete)
{
    QlumDaEvidence evidence = evidenceOfNoLoss();
    evidence.revisedSampling = 500;
    EXPECT_EQ(qlumDaJudge(evidence).word, "sampled");
    EXPECT_FALSE(qlumDaJudge(evidence).remedy) << "the server offers no less";

    evidence = evidenceOfNoLoss();
    evidence.revisedQueue = evidence.asked.queueSize = 1;
    QlumDaVerdict verdict = qlumDaJudge(evidence);
    EXPECT_EQ(verdict.word, "sampled");
    ASSERT_TRUE(verdict.remedy);
    EXPECT_EQ(verdict.remedy->queueSize, 20u);

    evidence.asked.samplingInterval = evidence.revisedSampling = 0;
    verdict = qlumDaJudge(evidence);
    EXPECT_EQ(verdict.word, "cannot be known");
    EXPECT_EQ(verdict.level, QlumStatusLevel::Inactive);
    EXPECT_TRUE(verdict.remedy);

    evidence.asked.samplingInterval = -1; // as often as it is sent: nothing is replaced
    evidence.revisedSampling = 1000;
    EXPECT_EQ(qlumDaJudge(evidence).word, "complete");
}

TEST(DaVerdict, WithoutAConnectionOrAnItemNothingIsClaimed)
{
    QlumDaEvidence evidence = evidenceOfNoLoss();
    evidence.isConnected = false;
    evidence.overflows = 1;
    EXPECT_EQ(qlumDaJudge(evidence).word, "cannot be known");
    evidence.isConnected = true;
    evidence.state = QlumDataState::Refused;
    EXPECT_EQ(qlumDaJudge(evidence).level, QlumStatusLevel::Bad);
    evidence.state = QlumDataState::Read;
    evidence.asked.readInterval = 5000;
    EXPECT_EQ(qlumDaJudge(evidence).word, "sampled here");
    evidence = evidenceOfNoLoss();
    evidence.delay = 4 * second;
    EXPECT_EQ(qlumDaJudge(evidence).word, "late by 4.0 s");
}

} // namespace
