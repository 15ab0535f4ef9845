#include <recording/recordtypes.h>

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <ctime>
#include <string_view>

namespace recording {

namespace {

constexpr OpcUa_Int64 secondsTo1970 = 11'644'473'600;
constexpr OpcUa_Int64 lastSecond = 253'402'300'799; // of 9999

const QStringList& words()
{
    static const QStringList list{QStringLiteral("started"),
                                  QStringLiteral("stopped"),
                                  QStringLiteral("gap"),
                                  QStringLiteral("connection lost"),
                                  QStringLiteral("connection back"),
                                  QStringLiteral("session new"),
                                  QStringLiteral("subscription lost"),
                                  QStringLiteral("notifications missing"),
                                  QStringLiteral("republished"),
                                  QStringLiteral("item watched"),
                                  QStringLiteral("item refused"),
                                  QStringLiteral("item waiting"),
                                  QStringLiteral("queue overflow"),
                                  QStringLiteral("lost here"),
                                  QStringLiteral("paused"),
                                  QStringLiteral("resumed"),
                                  QStringLiteral("clock step"),
                                  QStringLiteral("file trouble"),
                                  QStringLiteral("old dropped"),
                                  QStringLiteral("note"),
                                  QStringLiteral("continued")};
    return list;
}

} // namespace

QString markWord(MarkKind kind)
{
    return words().value(static_cast<int>(kind));
}

MarkKind markKind(const QString& word)
{
    const int place = words().indexOf(word);
    return place < 0 ? MarkKind::Note : static_cast<MarkKind>(place);
}

// Many times of a recording lie in one second, whose text is kept.
QByteArray isoTime(OpcUa_DateTime time)
{
    if (time == 0)
        return QByteArray();
    thread_local OpcUa_Int64 knownSecond = -1;
    thread_local char known[32] = {};
    const OpcUa_Int64 ticks = std::max<OpcUa_Int64>(time, 0);
    const OpcUa_Int64 second = ticks / ticksOfSecond;
    if (second != knownSecond) {
        const std::time_t unixTime = static_cast<std::time_t>(std::min(second - secondsTo1970, lastSecond));
        std::tm parts{};
        gmtime_r(&unixTime, &parts);
        std::strftime(known, sizeof known, "%Y-%m-%dT%H:%M:%S.", &parts);
        knownSecond = second;
    }
    QByteArray text(known);
    char digits[9] = "0000000Z";
    auto rest = static_cast<unsigned int>(ticks % ticksOfSecond);
    for (int place = 6; place >= 0; --place, rest /= 10)
        digits[place] = static_cast<char>('0' + rest % 10);
    return text.append(digits, 8);
}

OpcUa_DateTime timeOfIso(std::string_view text)
{
    constexpr std::string_view form = "0000-00-00T00:00:00.0000000Z";
    if (text.size() != form.size())
        return 0;
    for (std::size_t i = 0; i < form.size(); ++i)
        if (form[i] == '0' ? text[i] < '0' || text[i] > '9' : text[i] != form[i])
            return 0;
    const auto number = [text](std::size_t at, std::size_t length) {
        int value = 0;
        for (const char digit : text.substr(at, length))
            value = value * 10 + (digit - '0');
        return value;
    };
    const std::chrono::year_month_day date{std::chrono::year(number(0, 4)),
                                           std::chrono::month(static_cast<unsigned int>(number(5, 2))),
                                           std::chrono::day(static_cast<unsigned int>(number(8, 2)))};
    if (!date.ok())
        return 0;
    const OpcUa_Int64 days = std::chrono::sys_days(date).time_since_epoch().count();
    const OpcUa_Int64 seconds = days * 86'400 + number(11, 2) * 3600 + number(14, 2) * 60 + number(17, 2);
    return (seconds + secondsTo1970) * ticksOfSecond + number(20, 7);
}

} // namespace recording
