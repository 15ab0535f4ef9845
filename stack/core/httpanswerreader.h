// Cuts a byte stream into HTTP answers, within limits that hold before memory is taken. No I/O.
#pragma once

#include <stack/core/protocol.h>

#include <http_parser.h>

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace opcua {

inline constexpr size_t maxHttpHeaderSize = 64 * 1024;

struct HttpAnswer
{
    unsigned int status = 0; ///< 200 and so on; never 1xx
    std::string reason;      ///< the peer's words for it, shortened; untrusted text
    bool binary = true;      ///< the body is, or may be, an encoded message as it stands
    bool last = false;       ///< the peer closes behind it
    std::optional<std::chrono::seconds> idleLimit; ///< after which the peer closes an unused connection
    std::optional<unsigned int> requestsLeft;      ///< that the peer takes on this connection behind this one
    Bytes body;                                    ///< of status 200 only
};

class HttpAnswerReader
{
public:
    enum class Outcome { Answer, NeedMore, Fault };

    explicit HttpAnswerReader(size_t maxBodySize);
    /// the parser knows this object's address
    HttpAnswerReader(const HttpAnswerReader&) = delete;
    HttpAnswerReader& operator=(const HttpAnswerReader&) = delete;

    /// Takes bytes off the front of input until an answer is whole; 1xx answers are passed over. After Fault,
    /// fault() says why and nothing more is read: BadResponseTooLarge for a body or a header beyond its
    /// limit, BadDecodingError for what is no HTTP or does not say where its body ends, BadOutOfMemory.
    [[nodiscard]] Outcome next(ByteView& input, HttpAnswer& answer);
    [[nodiscard]] OpcUa_StatusCode fault() const { return m_fault; }

private:
    struct Callbacks;

    int collect(std::string& text, const char* at, size_t length);
    int onField(const char* at, size_t length);
    int onValue(const char* at, size_t length);
    int onHeadersComplete();
    int onBody(const char* at, size_t length);
    void takeHeader();
    void takeKeepAlive(std::string_view value);
    int fail(OpcUa_StatusCode status);

    http_parser m_parser{};
    size_t m_maxBodySize;
    HttpAnswer m_answer;
    size_t m_headerSize = 0; ///< of this answer, with its trailers and the interim answers before it
    size_t m_bodySize = 0;
    std::string m_field;
    std::string m_value;
    bool m_inValue = false;
    OpcUa_StatusCode m_fault = 0;
};

} // namespace opcua
