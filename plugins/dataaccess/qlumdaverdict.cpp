#include <plugins/dataaccess/qlumdaverdict.h>

#include <QCoreApplication>
#include <QString>

#include <algorithm>
#include <cmath>
#include <memory>

namespace {

struct VerdictText
{
    Q_DECLARE_TR_FUNCTIONS(QlumDaVerdict)
};
using T = VerdictText;

constexpr double ticksOfMillisecond = 1e4;
constexpr double nearly = 0.999; // intervals that a server has rounded are the same
constexpr quint32 mostQueue = 10'000;

double askedSampling(const QlumDaEvidence& evidence)
{
    return evidence.asked.samplingInterval < 0 ? evidence.asked.publishingInterval
                                               : evidence.asked.samplingInterval;
}

double publishing(const QlumDaEvidence& evidence)
{
    return evidence.revisedPublishing > 0 ? evidence.revisedPublishing : evidence.asked.publishingInterval;
}

// Room for twice what can come between two notifications.
quint32 sufficientQueue(const QlumDaEvidence& evidence)
{
    constexpr double onceMore = 2, unknown = 10;
    const double values =
        evidence.revisedSampling > 0 ? std::ceil(publishing(evidence) / evidence.revisedSampling) : unknown;
    const double wanted = std::max(values * onceMore, double(evidence.revisedQueue) * onceMore);
    return static_cast<quint32>(std::min<double>(wanted, mostQueue));
}

std::shared_ptr<const QlumDataSettings> withQueue(const QlumDaEvidence& evidence)
{
    auto settings = std::make_shared<QlumDataSettings>(evidence.asked);
    settings->queueSize = sufficientQueue(evidence);
    return settings;
}

// A server that keeps no more values than now has to send them before they are too many.
std::shared_ptr<const QlumDataSettings> sentSooner(const QlumDaEvidence& evidence)
{
    constexpr double least = 50;
    auto settings = std::make_shared<QlumDataSettings>(evidence.asked);
    settings->samplingInterval = askedSampling(evidence);
    settings->publishingInterval =
        std::max(least, std::max(evidence.revisedSampling, 1.0) * std::max(1.0, evidence.revisedQueue / 2.0));
    return settings->publishingInterval < publishing(evidence) ? settings : nullptr;
}

QlumDaVerdict unknown(const QString& word, const QString& reason)
{
    return {word, reason, QlumStatusLevel::Inactive, nullptr};
}

QlumDaVerdict whileNotWatched(const QlumDaEvidence& evidence)
{
    if (evidence.state == QlumDataState::Refused)
        return {T::tr("refused"), T::tr("The server does not watch this, so none of its values come."),
                QlumStatusLevel::Bad, nullptr};
    if (evidence.state == QlumDataState::Read)
        return {T::tr("sampled here"),
                T::tr("It is read every %1 and not watched: what it was in between, nobody has seen.")
                    .arg(qlumDaInterval(evidence.asked.readInterval)),
                QlumStatusLevel::Uncertain, nullptr};
    if (evidence.state == QlumDataState::Waiting)
        return unknown(T::tr("not known yet"),
                       T::tr("The server has not been asked yet, or has not answered."));
    return unknown(T::tr("not watched"), T::tr("There is nothing on a server that could be watched."));
}

QlumDaVerdict afterLosses(const QlumDaEvidence& evidence)
{
    if (evidence.overflows == 0)
        return {
            T::tr("%n message(s) lost", nullptr, static_cast<int>(evidence.gaps)),
            T::tr("So many notifications of the subscription were lost on the way, and the server did not "
                  "have them any more. Values of this row may have been among them."),
            QlumStatusLevel::Bad, nullptr};
    const bool isLimited = evidence.revisedQueue < evidence.asked.queueSize;
    return {T::tr("%n overflow(s)", nullptr, static_cast<int>(evidence.overflows)),
            isLimited
                ? T::tr("The server's queue was full that often, and older values were dropped. It keeps "
                        "no more than %1 values, so they would have to be sent more often.")
                      .arg(evidence.revisedQueue)
                : T::tr("The server's queue of %1 values was full that often before it was sent, and "
                        "values were dropped. A longer queue would have kept them.")
                      .arg(evidence.revisedQueue),
            QlumStatusLevel::Bad, isLimited ? sentSooner(evidence) : withQueue(evidence)};
}

QlumDaVerdict sampled(const QlumDaEvidence& evidence)
{
    return {T::tr("sampled"),
            T::tr("The server looks every %1 instead of every %2 as it was asked to. What the value was in "
                  "between, it has not seen; it offers no shorter interval.")
                .arg(qlumDaInterval(evidence.revisedSampling), qlumDaInterval(askedSampling(evidence))),
            QlumStatusLevel::Uncertain, nullptr};
}

QlumDaVerdict replaced(const QlumDaEvidence& evidence)
{
    return {T::tr("sampled"),
            T::tr("The server looks every %1, but sends every %2 and keeps one value until then: whatever "
                  "changes more often is replaced before it is sent, and with a queue of one the server does "
                  "not tell.")
                .arg(qlumDaInterval(evidence.revisedSampling), qlumDaInterval(publishing(evidence))),
            QlumStatusLevel::Uncertain, withQueue(evidence)};
}

QlumDaVerdict complete(const QlumDaEvidence& evidence)
{
    QString reason = T::tr("Every value that the server has seen, looking every %1, has come.")
                         .arg(qlumDaInterval(evidence.revisedSampling));
    if (evidence.asked.deadband != QlumDeadband::None)
        reason += QLatin1Char(' ') + T::tr("Changes within the deadband are not reported.");
    if (evidence.asked.trigger == QlumDataTrigger::Status)
        reason +=
            QLatin1Char(' ') + T::tr("Changes of the value alone are not reported, only of its status.");
    constexpr double patience = 10;
    const double silence = static_cast<double>(evidence.now - evidence.lastValue);
    const double usual = std::max(patience * publishing(evidence), 10'000.0) * ticksOfMillisecond;
    if (silence <= usual)
        return {T::tr("complete"), reason, QlumStatusLevel::Good, nullptr};
    return {T::tr("complete, unchanged for %1").arg(qlumDaSpan(evidence.now - evidence.lastValue)),
            reason + QLatin1Char(' ') + T::tr("The subscription is alive; the value has not changed."),
            QlumStatusLevel::Good, nullptr};
}

bool isSilent(const QlumDaEvidence& evidence)
{
    constexpr double usual = 10, times = 3, least = 30'000; // keep-alives that may be missed
    const double patience = times * (evidence.keepAliveCount > 0 ? evidence.keepAliveCount : usual);
    const double silence =
        static_cast<double>(evidence.now - evidence.subscriptionHeard) / ticksOfMillisecond;
    return evidence.subscriptionHeard != 0 && silence > std::max(patience * publishing(evidence), least);
}

bool isLate(const QlumDaEvidence& evidence)
{
    constexpr double grace = 1000;
    return static_cast<double>(evidence.delay) / ticksOfMillisecond >
           publishing(evidence) + std::max(0.0, evidence.revisedSampling) + grace;
}

} // namespace

QlumDaVerdict qlumDaJudge(const QlumDaEvidence& evidence)
{
    if (!evidence.isConnected && evidence.state != QlumDataState::Unresolved)
        return unknown(T::tr("cannot be known"),
                       T::tr("There is no connection: what the value does meanwhile, "
                             "nobody can tell."));
    if (evidence.state != QlumDataState::Watched)
        return whileNotWatched(evidence);
    if (evidence.asked.mode != OpcUa_MonitoringMode_Reporting)
        return unknown(T::tr("not reported"),
                       T::tr("The monitoring mode is one in which the server sends nothing."));
    if (evidence.overflows > 0 || evidence.gaps > 0)
        return afterLosses(evidence);
    if (isSilent(evidence))
        return {T::tr("silent for %1").arg(qlumDaSpan(evidence.now - evidence.subscriptionHeard)),
                T::tr("Neither a value nor a sign of life has come of the subscription for that long."),
                QlumStatusLevel::Bad, nullptr};
    if (evidence.count == 0)
        return unknown(T::tr("no value yet"), T::tr("The server watches it and has not sent a value."));
    if (isLate(evidence))
        return {
            T::tr("late by %1").arg(qlumDaSpan(evidence.delay)),
            T::tr("The newest value took so much longer than others of its server: it or the way to it is "
                  "slower than what was agreed."),
            QlumStatusLevel::Uncertain, nullptr};
    if (evidence.revisedSampling * nearly > askedSampling(evidence))
        return sampled(evidence);
    if (evidence.revisedQueue <= 1 && evidence.revisedSampling == 0)
        return {T::tr("cannot be known"),
                T::tr("The server reports each change, but keeps one value until it is sent: of two changes "
                      "within %1 the first is lost, and with a queue of one it does not tell.")
                    .arg(qlumDaInterval(publishing(evidence))),
                QlumStatusLevel::Inactive, withQueue(evidence)};
    if (evidence.revisedQueue <= 1 && evidence.revisedSampling < publishing(evidence) * nearly)
        return replaced(evidence);
    return complete(evidence);
}
