// Pieces of the channel engine that have rules of their own.
#include <stack/server/engineprobe.h>
#include <tests/protocol/memorypipe.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace opcua::test {
namespace {

Bytes header(std::string_view type, OpcUa_UInt32 size)
{
    Bytes bytes(type.begin(), type.end());
    appendUInt32(bytes, size);
    return bytes;
}

OpcUa_StatusCode faultOf(Bytes bytes)
{
    FrameReader reader(65536);
    MutableByteView input = bytes;
    Frame frame;
    return reader.next(input, frame) == FrameReader::Outcome::Fault ? reader.fault() : OpcUa_Good;
}

TEST(StackFrameReader, RefusesSizesAndTypesBeforeAnyOfTheBody)
{
    for (const OpcUa_UInt32 size : {0u, 1u, 7u, 65537u, 0x7FFFFFFFu, 0xFFFFFFFFu})
        EXPECT_EQ(faultOf(header("MSGF", size)), OpcUa_BadTcpMessageTooLarge) << size;
    for (const auto* const type : {"HTTP", "msgF", "MSGX", "OPNC", "CLOA", "HELC", "RHEF"})
        EXPECT_EQ(faultOf(header(type, 100)), OpcUa_BadTcpMessageTypeInvalid) << type;
    EXPECT_EQ(faultOf(header("MSGA", 65536)), OpcUa_Good);
    EXPECT_EQ(faultOf(header("OPNF", 8)), OpcUa_Good);
}

TEST(StackFrameReader, FindsTheSameFramesHoweverTheyArrive)
{
    Bytes stream;
    for (const size_t size : {0u, 1u, 90u, 8200u, 0u, 3u}) {
        const size_t begin = beginFrame(stream, MessageType::Message, ChunkType::Intermediate);
        const Bytes body = pattern(size);
        stream.insert(stream.end(), body.begin(), body.end());
        finishFrame(stream, begin);
    }
    for (const size_t slice : {size_t{1}, size_t{7}, size_t{8}, size_t{9}, size_t{8191}, stream.size()}) {
        FrameReader reader(65536);
        Bytes copy = stream;
        Bytes seen;
        for (size_t at = 0; at < copy.size(); at += slice) {
            MutableByteView piece = MutableByteView(copy).subspan(at, std::min(slice, copy.size() - at));
            Frame frame;
            while (reader.next(piece, frame) == FrameReader::Outcome::Frame)
                seen.insert(seen.end(), frame.bytes.begin(), frame.bytes.end());
            EXPECT_TRUE(piece.empty());
        }
        EXPECT_EQ(seen, stream) << "pieces of " << slice;
    }
}

TEST(StackSequenceNumbers, FollowByOneAndWrapOnlyInTheirRange)
{
    struct Case
    {
        SequenceRule rule;
        OpcUa_UInt32 last, next;
        bool accepted;
    };
    constexpr Case cases[] = {
        {SequenceRule::Legacy, 51, 52, true},
        {SequenceRule::Legacy, 51, 51, false},
        {SequenceRule::Legacy, 51, 50, false},
        {SequenceRule::Legacy, 51, 53, false},
        {SequenceRule::Legacy, 4'294'966'271u, 1, false},
        {SequenceRule::Legacy, 4'294'966'272u, 1, true},
        {SequenceRule::Legacy, 4'294'966'272u, 1023, true},
        {SequenceRule::Legacy, 4'294'966'272u, 1024, false},
        {SequenceRule::Legacy, 4'294'966'272u, 4'294'966'273u, true},
        {SequenceRule::Legacy, 0xFFFFFFFFu, 0, true},
    };
    for (const Case& c : cases) {
        SequenceVerifier verifier(c.rule);
        ASSERT_TRUE(verifier.accept(c.last));
        EXPECT_EQ(verifier.accept(c.next), c.accepted) << c.last << " then " << c.next;
    }
    SequenceVerifier full(SequenceRule::FullRange);
    EXPECT_FALSE(full.accept(1));
    EXPECT_TRUE(full.accept(0));
    EXPECT_FALSE(full.accept(0));
    EXPECT_TRUE(full.accept(1));
}

TEST(StackSequenceNumbers, SenderSatisfiesTheVerifierAcrossTheWrap)
{
    for (const SequenceRule rule : {SequenceRule::Legacy, SequenceRule::FullRange}) {
        SequenceSender sender(rule);
        SequenceVerifier verifier(rule);
        ASSERT_TRUE(verifier.accept(sender.next()));
        if (rule == SequenceRule::Legacy) {
            EngineProbe::continueFrom(sender, legacyWrapAbove - 3);
            verifier = SequenceVerifier(rule);
        }
        OpcUa_UInt32 least = 0xFFFFFFFFu;
        for (int n = 0; n < 10; ++n) {
            const OpcUa_UInt32 number = sender.next();
            least = std::min(least, number);
            EXPECT_TRUE(verifier.accept(number)) << number;
        }
        EXPECT_LT(least, legacyWrapBelow);
    }
}

TEST(StackMessageAssembler, KeepsMessagesApartAndTheirLimits)
{
    MessageAssembler assembler(100, 4);
    using Outcome = MessageAssembler::Outcome;
    Bytes message;
    EXPECT_EQ(assembler.add(1, false, pattern(60, 1), message), Outcome::Incomplete);
    EXPECT_EQ(assembler.add(2, false, pattern(50, 2), message), Outcome::Incomplete);
    EXPECT_EQ(assembler.add(1, true, pattern(41, 1), message), Outcome::TooLarge);
    EXPECT_EQ(assembler.add(2, true, pattern(50, 3), message), Outcome::Complete);
    Bytes expected = pattern(50, 2);
    const Bytes tail = pattern(50, 3);
    expected.insert(expected.end(), tail.begin(), tail.end());
    EXPECT_EQ(message, expected);
    assembler.drop(1);
    EXPECT_EQ(EngineProbe::bufferedBytes(assembler), 0u);

    for (int n = 0; n < 4; ++n)
        EXPECT_EQ(assembler.add(7, false, {}, message), Outcome::Incomplete);
    EXPECT_EQ(assembler.add(7, false, {}, message), Outcome::TooLarge); // empty chunks count too
}

TEST(StackMessageAssembler, BoundsAllUnfinishedMessagesTogether)
{
    MessageAssembler assembler(1000, 10);
    Bytes message;
    OpcUa_UInt32 id = 0;
    while (assembler.add(++id, false, pattern(900), message) == MessageAssembler::Outcome::Incomplete)
        ASSERT_LT(id, 100u);
    EXPECT_LE(EngineProbe::bufferedBytes(assembler), 4000u);

    MessageAssembler ofEmptyOnes(1000, 10);
    id = 0;
    while (ofEmptyOnes.add(++id, false, {}, message) == MessageAssembler::Outcome::Incomplete)
        ASSERT_LT(id, 1000u);
    EXPECT_EQ(id, 41u);
}

TEST(StackMessageAssembler, WhatIsOverDoesNotCountHoweverManyMessagesThereWere)
{
    using Outcome = MessageAssembler::Outcome;
    using Ending = void (*)(MessageAssembler&, OpcUa_UInt32);
    const std::pair<const char*, Ending> endings[] = {
        {"complete",
         [](MessageAssembler& assembler, OpcUa_UInt32 id) {
             Bytes message;
             EXPECT_EQ(assembler.add(id, true, pattern(100), message), Outcome::Complete);
             EXPECT_EQ(message.size(), 1000u);
         }},
        {"dropped", [](MessageAssembler& assembler, OpcUa_UInt32 id) { assembler.drop(id); }},
        {"given up, and skipped to its end",
         [](MessageAssembler& assembler, OpcUa_UInt32 id) {
             assembler.giveUp(id);
             EXPECT_EQ(assembler.skip(id, false, 50), Outcome::Incomplete);
             EXPECT_EQ(assembler.skip(id, true, 50), Outcome::Complete);
         }},
        {"given up, and aborted",
         [](MessageAssembler& assembler, OpcUa_UInt32 id) {
             assembler.giveUp(id);
             assembler.drop(id);
         }},
        {"cleared", [](MessageAssembler& assembler, OpcUa_UInt32) { assembler.clear(); }},
    };
    for (const auto& [name, end] : endings) {
        MessageAssembler assembler(1000, 4);
        Bytes message;
        for (OpcUa_UInt32 id = 1; id <= 50; ++id) { // four unfinished ones would be the most
            ASSERT_EQ(assembler.add(id, false, pattern(500), message), Outcome::Incomplete) << name << id;
            ASSERT_EQ(assembler.add(id, false, pattern(400), message), Outcome::Incomplete) << name << id;
            end(assembler, id);
            EXPECT_EQ(EngineProbe::bufferedBytes(assembler), 0u) << name;
        }
    }
}

TEST(StackMessageAssembler, WhatIsSkippedKeepsToTheLimitsOfItsMessageAndOfAll)
{
    using Outcome = MessageAssembler::Outcome;
    Bytes message;
    MessageAssembler assembler(1000, 4);
    ASSERT_EQ(assembler.add(1, false, pattern(900), message), Outcome::Incomplete);
    assembler.giveUp(1);
    EXPECT_EQ(assembler.skip(1, true, 101), Outcome::TooLarge) << "what came before it was given up counts";
    EXPECT_EQ(assembler.skip(1, true, 100), Outcome::Complete);
    for (OpcUa_UInt32 id = 2; id < 6; ++id)
        EXPECT_EQ(assembler.skip(id, false, 1000), Outcome::Incomplete);
    EXPECT_EQ(assembler.skip(6, false, 1), Outcome::TooLarge);
    EXPECT_EQ(assembler.skip(6, true, 1000), Outcome::Complete) << "needs no room";
    EXPECT_EQ(assembler.add(7, false, pattern(1000), message), Outcome::Incomplete) << "is counted apart";
}

TEST(StackRequestTable, NumbersThatBeginAgainAreNeitherZeroNorInUse)
{
    RequestTable table;
    for (const OpcUa_UInt32 id : {1u, 2u, 4u})
        table.add(id, never);
    EngineProbe::continueFrom(table, 0xFFFFFFFEu);
    EXPECT_FALSE(table.wasReserved(0xFFFFFFFFu));
    EXPECT_EQ(table.reserveId(), 0xFFFFFFFFu);
    EXPECT_EQ(table.reserveId(), 3u);
    EXPECT_EQ(table.reserveId(), 5u);
    EXPECT_TRUE(table.wasReserved(0xFFFFFFF0u)) << "its answer may still be on its way";
    EXPECT_FALSE(table.wasReserved(0));
}

TEST(StackRequestTable, GivesUpInTimeAndNeverSkipsADeadline)
{
    RequestTable table;
    const TimePoint start{};
    table.add(1, start + Milliseconds{500});
    table.add(2, start + Milliseconds{100});
    table.add(3, start + Milliseconds{900});
    EXPECT_EQ(table.nextDeadline(), start + Milliseconds{100});
    EXPECT_TRUE(table.remove(2));
    EXPECT_FALSE(table.remove(2));
    EXPECT_LE(table.nextDeadline(), start + Milliseconds{500});
    EXPECT_TRUE(table.takeExpired(start + Milliseconds{499}).empty());
    EXPECT_EQ(table.nextDeadline(), start + Milliseconds{500});
    EXPECT_EQ(table.takeExpired(start + Milliseconds{500}), std::vector<OpcUa_UInt32>{1});
    EXPECT_EQ(table.nextDeadline(), start + Milliseconds{900});
    EXPECT_EQ(table.takeAll(), std::vector<OpcUa_UInt32>{3});
    EXPECT_EQ(table.nextDeadline(), never);
    for (const bool rising : {true, false}) { // whatever order a table keeps them in
        RequestTable many;
        for (OpcUa_UInt32 id = 1; id <= 20; ++id)
            many.add(id, start + Milliseconds{rising ? id : 21 - id});
        for (OpcUa_UInt32 time = 1; time <= 20; ++time) {
            EXPECT_EQ(many.nextDeadline(), start + Milliseconds{time});
            EXPECT_EQ(many.takeExpired(start + Milliseconds{time}),
                      std::vector<OpcUa_UInt32>{rising ? time : 21 - time});
        }
    }
}

} // namespace
} // namespace opcua::test
