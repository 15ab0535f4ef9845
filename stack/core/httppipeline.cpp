#include <stack/core/httppipeline.h>

#include <opcua/opcua_statuscodes.h>
#include <stack/core/callmeasure.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

namespace opcua {

namespace {

// A path as it may stand in a request line; what does not belong there travels as %XX.
std::string encodedPath(std::string_view path)
{
    constexpr std::string_view hexDigits = "0123456789ABCDEF";
    constexpr std::string_view denied = "\"<>\\^`{|}";
    std::string result;
    for (const char c : path.substr(0, path.find('#'))) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte > 0x20 && byte < 0x7F && denied.find(c) == std::string_view::npos) {
            result += c;
            continue;
        }
        result += '%';
        result += hexDigits[byte >> 4];
        result += hexDigits[byte & 15];
    }
    return result.starts_with('/') ? result : '/' + result; // an address may have a query and no path
}

} // namespace

std::string httpRequestHead(std::string_view authority, std::string_view path,
                            std::string_view securityPolicyUri)
{
    std::string head = "POST " + encodedPath(path) + " HTTP/1.1\r\nHost: " + std::string(authority) +
                       "\r\nContent-Type: application/octet-stream"
                       "\r\nAccept: application/octet-stream"
                       "\r\nAccept-Encoding: identity";
    if (!securityPolicyUri.empty())
        head += "\r\nOPCUA-SecurityPolicy: " + std::string(securityPolicyUri);
    return head + "\r\nContent-Length: ";
}

OpcUa_StatusCode statusOfHttp(unsigned int httpStatus)
{
    switch (httpStatus) {
    case 200:
        return OpcUa_Good;
    case 401:
    case 403:
    case 407:
        return OpcUa_BadUserAccessDenied;
    case 404:
    case 410:
        return OpcUa_BadTcpEndpointUrlInvalid;
    case 405:
    case 406:
    case 415:
    case 501:
    case 505:
        return OpcUa_BadNotSupported;
    case 408:
    case 504:
        return OpcUa_BadTimeout;
    case 413:
        return OpcUa_BadRequestTooLarge;
    case 429:
    case 503:
        return OpcUa_BadTcpServerTooBusy;
    default: // among them redirects, which nobody has asked the user about
        return OpcUa_BadCommunicationError;
    }
}

OpcUa_UInt32 HttpPipeline::send(ByteView body, TimePoint deadline, TimePoint now)
{
    const std::string length = std::to_string(body.size()) + "\r\n\r\n";
    m_output.insert(m_output.end(), m_head.begin(), m_head.end());
    m_output.insert(m_output.end(), length.begin(), length.end());
    m_output.insert(m_output.end(), body.begin(), body.end());
    if (m_requests.empty())
        m_owedSince = now;
    m_lastUse = now;
    m_requests.push_back({++m_lastId, deadline, paceOf(body)});
    ++m_byPace[static_cast<size_t>(m_requests.back().pace)];
    ++m_waiting;
    m_nextDeadline = std::min(m_nextDeadline, deadline);
    return m_lastId;
}

void HttpPipeline::receive(ByteView bytes, TimePoint now)
{
    HttpAnswer answer;
    while (m_state == State::Open) {
        switch (read(bytes, answer, now)) {
        case HttpAnswerReader::Outcome::Answer:
            takeAnswer(std::move(answer), now);
            break;
        case HttpAnswerReader::Outcome::NeedMore:
            return;
        case HttpAnswerReader::Outcome::Fault:
            if (!m_requests.empty())
                failRequest(takeFirst(), m_reader.fault());
            return end(State::Broken, OpcUa_BadConnectionClosed);
        }
    }
}

// Answers come in the order of the requests, so what comes now is the first one's.
HttpAnswerReader::Outcome HttpPipeline::read(ByteView& bytes, HttpAnswer& answer, TimePoint now)
{
    const size_t before = bytes.size();
    const HttpAnswerReader::Outcome outcome = m_reader.next(bytes, answer);
    if (!m_requests.empty() && m_requests.front().measure != nullptr)
        countAnswer(*m_requests.front().measure, before - bytes.size(), now);
    return outcome;
}

void HttpPipeline::takeAnswer(HttpAnswer&& answer, TimePoint now)
{
    if (m_requests.empty()) // mostly a server's word of farewell on a connection that was idle for too long
        return end(State::Finished, OpcUa_BadConnectionClosed);
    const Request request = takeFirst();
    m_lastUse = m_owedSince = now;
    m_idleLimit = answer.idleLimit;
    m_requestsLeft = answer.requestsLeft;
    OpcUa_StatusCode status = statusOfHttp(answer.status);
    if (OpcUa_IsGood(status) && !answer.binary)
        status = OpcUa_BadUnknownResponse;
    if (OpcUa_IsBad(status)) {
        failRequest(request, status,
                    "HTTP status " + std::to_string(answer.status) + ' ' + answer.reason +
                        (answer.binary ? "" : ", not a binary body"));
    } else if (!request.abandoned) {
        --m_waiting;
        m_listener.onResponse(request.id, std::move(answer.body));
    }
    if (answer.last || (m_requests.empty() && m_requestsLeft == 0u))
        end(State::Finished, OpcUa_BadConnectionClosed);
    endIfForsaken();
}

HttpPipeline::Request HttpPipeline::takeFirst()
{
    const Request request = m_requests.front();
    m_requests.pop_front();
    --m_byPace[static_cast<size_t>(request.pace)];
    return request;
}

// The peer may owe these answers for ever, and nothing else would pass them.
void HttpPipeline::endIfForsaken()
{
    if (m_waiting == 0 && !m_requests.empty())
        end(State::Finished, OpcUa_BadConnectionClosed);
}

void HttpPipeline::failRequest(const Request& request, OpcUa_StatusCode status, const std::string& reason)
{
    if (request.abandoned)
        return;
    --m_waiting;
    m_listener.onRequestFailed(request.id, status, reason);
}

void HttpPipeline::end(State state, OpcUa_StatusCode status)
{
    if (m_state != State::Open)
        return;
    m_state = state;
    m_nextDeadline = never;
    for (const Request& request : std::exchange(m_requests, {}))
        failRequest(request, status);
}

void HttpPipeline::advance(TimePoint now)
{
    if (now < m_nextDeadline)
        return;
    m_nextDeadline = never;
    for (Request& request : m_requests) {
        if (!request.abandoned && request.deadline <= now) {
            failRequest(request, OpcUa_BadTimeout);
            request.abandoned = true;
            request.measure = nullptr;
        }
        if (!request.abandoned)
            m_nextDeadline = std::min(m_nextDeadline, request.deadline);
    }
    endIfForsaken();
}

HttpLaneLoad HttpPipeline::load(TimePoint now) const
{
    HttpLaneLoad result{m_requests.size(), HttpPace::Quick,
                        !m_requests.empty() && now - m_owedSince > httpPatience,
                        m_requestsLeft && m_requests.size() >= *m_requestsLeft};
    for (const HttpPace pace : {HttpPace::Slow, HttpPace::LongPoll})
        if (m_byPace[static_cast<size_t>(pace)] != 0)
            result.slowest = pace;
    return result;
}

TimePoint HttpPipeline::closeIdleAt() const
{
    // three quarters: a request that is on its way when the peer closes would be lost
    return m_idleLimit ? m_lastUse + Milliseconds(*m_idleLimit) * 3 / 4 : never;
}

} // namespace opcua
