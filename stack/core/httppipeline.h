// The client's side of one HTTP connection as a pure protocol engine: requests go out one behind the other,
// answers come in the same order. Bytes and a time in; bytes, answers and the next deadline out. One thread
// at a time.
#pragma once

#include <opcua/opcua_channel.h>
#include <stack/core/httpanswerreader.h>
#include <stack/core/httppace.h>

#include <array>
#include <chrono>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace opcua {

/// Told from inside the engine's functions; must not call back into the engine.
class HttpPipelineListener
{
public:
    virtual ~HttpPipelineListener() = default;
    /// Exactly one of the two for each request.
    virtual void onResponse(OpcUa_UInt32 requestId, Bytes&& body) = 0;
    /// reason: the peer's words, untrusted text; mostly empty.
    virtual void onRequestFailed(OpcUa_UInt32 requestId, OpcUa_StatusCode status,
                                 const std::string& reason) = 0;
};

class HttpPipeline
{
public:
    enum class State {
        Open,
        Finished, ///< the peer said that it closes, or nobody waits for what it owes
        Broken    ///< the stream ended, or what came cannot be read
    };

    /// head: everything of a request up to the length of its body, see httpRequestHead.
    HttpPipeline(std::string head, size_t maxBodySize, HttpPipelineListener& listener)
        : m_head(std::move(head)), m_reader(maxBodySize), m_listener(listener)
    {
    }

    /// Queues a request; one completion follows, BadTimeout at the deadline. Only while open.
    [[nodiscard]] OpcUa_UInt32 send(ByteView body, TimePoint deadline, TimePoint now);
    /// Notes in the record what comes of the answer to the request that was sent last, until its completion.
    void measureLast(OpcUa_CallMeasure& measure) { m_requests.back().measure = &measure; }
    void receive(ByteView bytes, TimePoint now);
    /// Ends the stream: what waits fails with status. Nothing is ever sent twice, since nobody knows what the
    /// peer has carried out.
    void end(State state, OpcUa_StatusCode status);
    /// To be called when nextDeadline is reached; harmless at other times.
    void advance(TimePoint now);
    [[nodiscard]] TimePoint nextDeadline() const { return m_nextDeadline; }

    [[nodiscard]] State state() const { return m_state; }
    /// Bytes for the peer; the owner takes them away.
    [[nodiscard]] Bytes& output() { return m_output; }
    [[nodiscard]] size_t outstanding() const { return m_requests.size(); }
    /// Requests whose answer somebody still waits for.
    [[nodiscard]] size_t waiting() const { return m_waiting; }
    [[nodiscard]] HttpLaneLoad load(TimePoint now) const;
    /// When an unused connection should go, before the peer closes it under a request; never when the peer
    /// does not say.
    [[nodiscard]] TimePoint closeIdleAt() const;
    /// When the last request was sent or the last answer came.
    [[nodiscard]] TimePoint lastUse() const { return m_lastUse; }

private:
    struct Request
    {
        OpcUa_UInt32 id = 0;
        TimePoint deadline;
        HttpPace pace = HttpPace::Quick;
        bool abandoned = false; ///< told as timed out; its answer is still owed
        OpcUa_CallMeasure* measure = nullptr;
    };

    [[nodiscard]] Request takeFirst();
    [[nodiscard]] HttpAnswerReader::Outcome read(ByteView& bytes, HttpAnswer& answer, TimePoint now);
    void endIfForsaken();
    void takeAnswer(HttpAnswer&& answer, TimePoint now);
    void failRequest(const Request& request, OpcUa_StatusCode status, const std::string& reason = {});

    std::string m_head;
    HttpAnswerReader m_reader;
    HttpPipelineListener& m_listener;
    State m_state = State::Open;
    Bytes m_output;
    std::deque<Request> m_requests;
    std::array<size_t, 3> m_byPace{}; ///< of m_requests
    size_t m_waiting = 0;
    OpcUa_UInt32 m_lastId = 0;
    TimePoint m_nextDeadline = never;
    TimePoint m_lastUse{};
    TimePoint m_owedSince{}; ///< the answer to the first request
    std::optional<std::chrono::seconds> m_idleLimit;
    std::optional<unsigned int> m_requestsLeft; ///< behind the last answer, those outstanding included
};

/// Request line and header fields of every request, OPC 10000-6, 7.4. authority is host and port as in the
/// URL; an empty policy is left out.
[[nodiscard]] std::string httpRequestHead(std::string_view authority, std::string_view path,
                                          std::string_view securityPolicyUri);

/// The status of a call whose answer has this HTTP status; Good for 200.
[[nodiscard]] OpcUa_StatusCode statusOfHttp(unsigned int httpStatus);

} // namespace opcua
