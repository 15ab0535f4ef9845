#include <stack/core/httpanswerreader.h>

#include <opcua/opcua_statuscodes.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <new>
#include <system_error>
#include <utility>

namespace opcua {

namespace {

constexpr size_t keptText = 128; // of a header's name, its value or a reason
constexpr unsigned int statusOk = 200;
constexpr unsigned int statusNoContent = 204;
constexpr unsigned int statusNotModified = 304;
constexpr std::uint64_t noLength = ~std::uint64_t{0};
constexpr unsigned int maxIdleSeconds = 24 * 3600;

std::string lower(std::string_view text)
{
    std::string result(text);
    for (char& c : result)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    return result;
}

// The value without its parameters.
std::string_view mainPart(std::string_view value)
{
    value = value.substr(0, value.find(';'));
    while (!value.empty() && (value.back() == ' ' || value.back() == '\t'))
        value.remove_suffix(1);
    return value;
}

bool isBinaryType(std::string_view value)
{
    return value.empty() || value == "application/octet-stream" || value == "application/opcua+uabinary";
}

// The number of a parameter such as "timeout=5"; nothing when it is not there, or no number.
std::optional<unsigned int> parameterOf(std::string_view value, std::string_view key)
{
    const size_t at = value.find(key);
    if (at == std::string_view::npos)
        return {};
    const std::string_view digits = value.substr(at + key.size());
    unsigned int number = 0;
    if (std::from_chars(digits.data(), digits.data() + digits.size(), number).ec != std::errc{})
        return {};
    return number;
}

} // namespace

// What the parser calls; nothing may be thrown through it.
struct HttpAnswerReader::Callbacks
{
    template <typename Action>
    static int guarded(http_parser* parser, Action action)
    {
        auto& reader = *static_cast<HttpAnswerReader*>(parser->data);
        try {
            return action(reader);
        } catch (const std::bad_alloc&) {
            return reader.fail(OpcUa_BadOutOfMemory);
        }
    }
    static int onStatus(http_parser* parser, const char* at, size_t length)
    {
        return guarded(
            parser, [=](auto& reader) { return reader.collect(reader.m_answer.reason, at, length); });
    }
    static int onField(http_parser* parser, const char* at, size_t length)
    {
        return guarded(
            parser, [=](auto& reader) { return reader.onField(at, length); });
    }
    static int onValue(http_parser* parser, const char* at, size_t length)
    {
        return guarded(
            parser, [=](auto& reader) { return reader.onValue(at, length); });
    }
    static int onHeadersComplete(http_parser* parser)
    {
        return guarded(
            parser, [](auto& reader) { return reader.onHeadersComplete(); });
    }
    static int onBody(http_parser* parser, const char* at, size_t length)
    {
        return guarded(
            parser, [=](auto& reader) { return reader.onBody(at, length); });
    }
    static int onComplete(http_parser* parser)
    {
        http_parser_pause(parser, 1); // one answer at a time
        return 0;
    }
    static const http_parser_settings& table()
    {
        static const http_parser_settings settings = [] {
            http_parser_settings result;
            http_parser_settings_init(&result);
            result.on_status = onStatus;
            result.on_header_field = onField;
            result.on_header_value = onValue;
            result.on_headers_complete = onHeadersComplete;
            result.on_body = onBody;
            result.on_message_complete = onComplete;
            return result;
        }();
        return settings;
    }
};

HttpAnswerReader::HttpAnswerReader(size_t maxBodySize) : m_maxBodySize(maxBodySize)
{
    http_parser_init(&m_parser, HTTP_RESPONSE);
    m_parser.data = this;
}

HttpAnswerReader::Outcome HttpAnswerReader::next(ByteView& input, HttpAnswer& answer)
{
    while (!input.empty() && m_fault == 0) {
        const size_t taken = http_parser_execute(&m_parser, &Callbacks::table(),
                                                 reinterpret_cast<const char*>(input.data()), input.size());
        const http_errno error = HTTP_PARSER_ERRNO(&m_parser);
        if (m_fault != 0 || m_parser.upgrade != 0 || (error != HPE_OK && error != HPE_PAUSED)) {
            fail(OpcUa_BadDecodingError);
            break;
        }
        input = input.subspan(taken);
        if (error == HPE_OK)
            continue; // all of it is taken
        http_parser_pause(&m_parser, 0);
        takeHeader(); // of the trailers
        answer = std::exchange(m_answer, {});
        m_bodySize = 0;
        if (answer.status / 100 == 1)
            continue;
        m_headerSize = 0;
        return Outcome::Answer;
    }
    return m_fault != 0 ? Outcome::Fault : Outcome::NeedMore;
}

// ---- what the parser finds

int HttpAnswerReader::fail(OpcUa_StatusCode status)
{
    if (m_fault == 0)
        m_fault = status;
    return -1; // 1 and 2 have meanings of their own to the parser
}

// Keeps the beginning of a text, and counts all of it.
int HttpAnswerReader::collect(std::string& text, const char* at, size_t length)
{
    m_headerSize += length;
    if (m_headerSize > maxHttpHeaderSize)
        return fail(OpcUa_BadResponseTooLarge);
    text.append(at, std::min(length, keptText - std::min(keptText, text.size())));
    return 0;
}

int HttpAnswerReader::onField(const char* at, size_t length)
{
    constexpr size_t punctuation = 4; // colon, space and line end of the header before
    if (std::exchange(m_inValue, false)) {
        takeHeader();
        m_headerSize += punctuation;
    }
    return collect(m_field, at, length);
}

int HttpAnswerReader::onValue(const char* at, size_t length)
{
    m_inValue = true;
    return collect(m_value, at, length);
}

// A header is whole when the next begins.
void HttpAnswerReader::takeHeader()
{
    m_inValue = false;
    const std::string field = lower(std::exchange(m_field, {}));
    const std::string value = lower(std::exchange(m_value, {}));
    if (field == "content-type")
        m_answer.binary &= isBinaryType(mainPart(value));
    else if (field == "content-encoding")
        m_answer.binary &= value.empty() || value == "identity";
    else if (field == "keep-alive")
        takeKeepAlive(value);
}

void HttpAnswerReader::takeKeepAlive(std::string_view value)
{
    if (const auto seconds = parameterOf(value, "timeout="))
        m_answer.idleLimit = std::chrono::seconds(std::min(*seconds, maxIdleSeconds));
    m_answer.requestsLeft = parameterOf(value, "max=");
}

int HttpAnswerReader::onHeadersComplete()
{
    constexpr size_t statusLine = 16; // so that endless interim answers have an end as well
    takeHeader();
    m_headerSize += statusLine;
    if (m_headerSize > maxHttpHeaderSize)
        return fail(OpcUa_BadResponseTooLarge);
    const unsigned int status = m_parser.status_code;
    m_answer.status = status;
    m_answer.last = http_should_keep_alive(&m_parser) == 0;
    const bool bare = status / 100 == 1 || status == statusNoContent || status == statusNotModified;
    const bool chunked = (m_parser.flags & F_CHUNKED) != 0;
    if (bare || chunked)
        return 0;
    if (m_parser.content_length == noLength)
        return fail(OpcUa_BadDecodingError); // a body that ends with the stream may have been cut off
    if (m_parser.content_length > m_maxBodySize)
        return fail(OpcUa_BadResponseTooLarge);
    return 0;
}

int HttpAnswerReader::onBody(const char* at, size_t length)
{
    m_bodySize += length;
    if (m_bodySize > m_maxBodySize)
        return fail(OpcUa_BadResponseTooLarge);
    if (m_answer.status == statusOk) {
        const auto* const bytes = reinterpret_cast<const OpcUa_Byte*>(at);
        m_answer.body.insert(m_answer.body.end(), bytes, bytes + length);
    }
    return 0;
}

} // namespace opcua
