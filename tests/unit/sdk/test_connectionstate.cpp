// The state of a connection: every transition there is, and what each phase allows.
#include <uaclientsdk/connection/connectionstate.h>
#include <uaclientsdk/uaclient.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <deque>
#include <fstream>
#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

using UaClientSdk::CallKind;
using UaClientSdk::ConnectionState;
using UaClientSdk::UaClient;
using Phase = ConnectionState::Phase;
using Event = ConnectionState::Event;

const std::vector<std::pair<std::string, Phase>> phases = {
    {"Closed", Phase::Closed},       {"Opening", Phase::Opening}, {"Active", Phase::Active},
    {"Doubtful", Phase::Doubtful},   {"Broken", Phase::Broken},   {"Waiting", Phase::Waiting},
    {"Reopening", Phase::Reopening}, {"Refused", Phase::Refused}, {"GivenUp", Phase::GivenUp},
    {"Ending", Phase::Ending}};

const std::vector<std::pair<std::string, Event>> events = {{"ConnectCalled", Event::ConnectCalled},
                                                           {"ConnectFailed", Event::ConnectFailed},
                                                           {"ConnectPostponed", Event::ConnectPostponed},
                                                           {"SessionReady", Event::SessionReady},
                                                           {"CheckMissed", Event::CheckMissed},
                                                           {"CheckPassed", Event::CheckPassed},
                                                           {"LinkLost", Event::LinkLost},
                                                           {"SessionLost", Event::SessionLost},
                                                           {"LossTold", Event::LossTold},
                                                           {"ServerShutDown", Event::ServerShutDown},
                                                           {"AttemptBegun", Event::AttemptBegun},
                                                           {"AttemptFailed", Event::AttemptFailed},
                                                           {"UserRefused", Event::UserRefused},
                                                           {"UserChanged", Event::UserChanged},
                                                           {"GaveUp", Event::GaveUp},
                                                           {"DisconnectCalled", Event::DisconnectCalled},
                                                           {"Disconnected", Event::Disconnected}};

template <typename T>
std::optional<T> named(const std::vector<std::pair<std::string, T>>& names, const std::string& name)
{
    const auto found =
        std::find_if(names.begin(), names.end(), [&name](const auto& one) { return one.first == name; });
    return found == names.end() ? std::nullopt : std::make_optional(found->second);
}

std::vector<std::string> cells(const std::string& line)
{
    std::vector<std::string> result;
    std::istringstream stream(line);
    for (std::string cell; std::getline(stream, cell, '|');) {
        const auto first = cell.find_first_not_of(' ');
        result.push_back(first == std::string::npos
                             ? std::string()
                             : cell.substr(first, cell.find_last_not_of(' ') - first + 1));
    }
    return result;
}

// What the handbook says to its readers.
struct Handbook
{
    std::map<std::pair<Phase, Event>, Phase> next;
    std::map<Phase, std::array<bool, 4>> mayCall;

    Handbook()
    {
        std::ifstream file(TAVELIN_TEST_DATA "/../../docs/threads.md");
        for (std::string line; std::getline(file, line);) {
            const std::vector<std::string> row = cells(line);
            const auto from = row.size() > 3 ? named(phases, row[1]) : std::nullopt;
            const auto event = from ? named(events, row[2]) : std::nullopt;
            if (event)
                next[{*from, *event}] = named(phases, row[3]).value();
            else if (from && row.size() > 5)
                mayCall[*from] = {row[2] == "yes", row[3] == "yes", row[4] == "yes", row[5] == "yes"};
        }
    }
};

// A state that has come to that phase by the fewest events.
ConnectionState stateIn(Phase wanted)
{
    std::deque<ConnectionState> open = {ConnectionState()};
    std::set<Phase> seen = {Phase::Closed};
    while (!open.empty()) {
        const ConnectionState state = open.front();
        open.pop_front();
        if (state.phase() == wanted)
            return state;
        for (const auto& [name, event] : events) {
            ConnectionState after = state;
            if (after.apply(event) && seen.insert(after.phase()).second)
                open.push_back(after);
        }
    }
    ADD_FAILURE() << "nothing leads to a phase";
    return {};
}

TEST(ConnectionState, MakesTheTransitionsOfTheHandbookAndNoOthers)
{
    const Handbook handbook;
    ASSERT_EQ(handbook.next.size(), ConnectionState::transitions().size());
    for (const auto& [phaseName, phase] : phases) {
        for (const auto& [eventName, event] : events) {
            ConnectionState state = stateIn(phase);
            const auto epoch = state.epoch();
            const auto status = state.status();
            const auto expected = handbook.next.find({phase, event});
            EXPECT_EQ(state.apply(event), expected != handbook.next.end()) << phaseName << ' ' << eventName;
            if (expected != handbook.next.end()) {
                EXPECT_EQ(state.phase(), expected->second) << phaseName << ' ' << eventName;
                continue;
            }
            EXPECT_EQ(state.phase(), phase) << phaseName << ' ' << eventName;
            EXPECT_EQ(state.status(), status) << phaseName << ' ' << eventName;
            EXPECT_EQ(state.epoch().link, epoch.link) << phaseName << ' ' << eventName;
        }
    }
}

TEST(ConnectionState, AllowsInEachPhaseWhatTheHandbookSays)
{
    const Handbook handbook;
    ASSERT_EQ(handbook.mayCall.size(), phases.size());
    for (const auto& [name, phase] : phases) {
        const ConnectionState state = stateIn(phase);
        const auto& allowed = handbook.mayCall.at(phase);
        EXPECT_EQ(state.mayCall(CallKind::Service), allowed[0]) << name;
        EXPECT_EQ(state.mayCall(CallKind::Publish), allowed[0]) << name;
        EXPECT_EQ(state.mayCall(CallKind::Check), allowed[1]) << name;
        EXPECT_EQ(state.mayCall(CallKind::Identity), allowed[2]) << name;
        EXPECT_EQ(state.mayCall(CallKind::Close), allowed[3]) << name;
        EXPECT_EQ(state.isRequested(),
                  phase != Phase::Closed && phase != Phase::Opening && phase != Phase::Ending)
            << name;
    }
}

// Wherever the link goes, what was begun over it is of the past at once.
TEST(ConnectionState, EpochRisesWithTheLossAndNotLater)
{
    for (const Event event : {Event::LinkLost, Event::SessionLost, Event::ServerShutDown}) {
        for (const Phase phase : {Phase::Active, Phase::Doubtful}) {
            ConnectionState state = stateIn(phase);
            const auto before = state.epoch();
            EXPECT_TRUE(state.isCurrent(before));
            ASSERT_TRUE(state.apply(event));
            EXPECT_FALSE(state.isCurrent(before));
            EXPECT_TRUE(state.isSameSession(before));
            const auto lost = state.epoch();
            state.apply(Event::LossTold);
            ASSERT_TRUE(state.apply(Event::AttemptBegun));
            ASSERT_TRUE(state.apply(Event::SessionReady));
            EXPECT_EQ(state.epoch().link, lost.link);
        }
    }
    ConnectionState attempt = stateIn(Phase::Reopening);
    const auto begun = attempt.epoch();
    ASSERT_TRUE(attempt.apply(Event::LinkLost)); // the attempt that began on it sees that
    EXPECT_NE(attempt.epoch().link, begun.link);
    ConnectionState replaced = stateIn(Phase::Active);
    replaced.setServerSession(ConnectionState::ServerSession::Activated);
    const auto old = replaced.epoch();
    replaced.setServerSession(ConnectionState::ServerSession::Unknown);
    EXPECT_FALSE(replaced.isSameSession(old));
}

TEST(ConnectionState, StatusIsWhatTheApplicationWasTold)
{
    const struct
    {
        std::vector<Event> events;
        UaClient::ServerStatus status;
        OpcUa_ServerState server;
    } cases[] = {
        {{Event::ConnectCalled}, UaClient::Disconnected, OpcUa_ServerState_Unknown},
        {{Event::SessionReady}, UaClient::Connected, OpcUa_ServerState_Running},
        {{Event::CheckMissed}, UaClient::ConnectionWarningWatchdogTimeout, OpcUa_ServerState_Running},
        {{Event::LinkLost}, UaClient::ConnectionWarningWatchdogTimeout, OpcUa_ServerState_Running},
        {{Event::LossTold}, UaClient::ConnectionErrorApiReconnect, OpcUa_ServerState_Unknown},
        {{Event::AttemptBegun, Event::SessionReady}, UaClient::Connected, OpcUa_ServerState_Running},
        {{Event::ServerShutDown}, UaClient::ServerShutdown, OpcUa_ServerState_Shutdown},
        {{Event::AttemptBegun}, UaClient::ServerShutdown, OpcUa_ServerState_Shutdown},
        {{Event::AttemptFailed}, UaClient::ServerShutdown, OpcUa_ServerState_Shutdown},
        {{Event::DisconnectCalled}, UaClient::ServerShutdown, OpcUa_ServerState_Shutdown},
        {{Event::Disconnected}, UaClient::Disconnected, OpcUa_ServerState_Unknown},
    };
    ConnectionState state;
    int step = 0;
    for (const auto& one : cases) {
        for (const Event event : one.events)
            ASSERT_TRUE(state.apply(event)) << step;
        EXPECT_EQ(state.status(), one.status) << step;
        EXPECT_EQ(state.serverState(), one.server) << step;
        ++step;
    }
}

} // namespace
