#include <recording/recordtypes.h>

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <cstdio>
#include <ctime>

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
                                  QStringLiteral("note")};
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

} // namespace recording
