// How a view of server diagnostics follows the counts of sessions and subscriptions, and what becomes of it
// when the server ends their subscription.
#include <plugins/serverdiagnostics/qlumserverdiagnosticwidget.h>

#include <app/api/qlumstatuswords.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/serverdiagnostics/qlumdiagnosticserverpage.h>
#include <plugins/serverdiagnostics/qlumsubscriptiontable.h>
#include <uawidgets/qlummessagebar.h>

#include <QString>

#include <iterator>
#include <utility>

namespace {
const QString countTopic = QStringLiteral("counts");
// Before each attempt to have it back, ms. A server that ends it again and again is left alone after these.
constexpr int pauses[] = {1000, 2000, 5000, 10000, 30000};
constexpr int lastingMilliseconds = 60000; // after which what was opened is taken to last
} // namespace

void QlumServerDiagnosticWidget::createSubscription()
{
    m_countAttempts = 0;
    m_numbers = {};
    openSubscription();
}

void QlumServerDiagnosticWidget::openSubscription()
{
    m_reopenTimer.stop();
    if (!m_counts)
        m_counts = std::make_shared<QlumCountSubscription>(
            m_followed.id(),
            QlumCountSubscription::Listener{[this](QlumCountSubscription::Count count, OpcUa_UInt32 number) {
                                                sltCountChanged(count, number);
                                            },
                                            [this](const UaStatus& status) { countsEnded(status); }});
    QlumJobPool& pool = m_pools->of(m_followed.id());
    pool.giveUp(m_tickets[Counts]);
    m_tickets[Counts] = pool.add(
        {tr("Subscribing to the counts of sessions and subscriptions"), m_followed.id()},
        [this, counts = m_counts, provider = m_services, id = m_followed.id()](QlumJob& job) {
            const UaStatus status = counts->open(provider(id), job);
            job.post([this, number = counts->subscriptionId(), status] { countsOpened(number, status); });
        },
        [this](QlumWorkEnd) { ended(Counts); });
}

// Whoever refreshes wants it tried once more.
void QlumServerDiagnosticWidget::watchCountsAgain()
{
    if (m_counts && m_counts->subscriptionId() == 0 && m_tickets[Counts] == 0)
        createSubscription();
}

void QlumServerDiagnosticWidget::countsOpened(OpcUa_UInt32 subscriptionId, const UaStatus& status)
{
    m_subscriptions->setOwnSubscription(subscriptionId);
    if (status.isGood()) {
        m_countAge.start();
        m_messages->dismiss(countTopic);
        return m_serverPage->setCountNote({});
    }
    if (status.statusCode() == OpcUa_BadServerNotConnected)
        return;
    const bool isAnotherOne = m_countAttempts > 0 && subscriptionId == 0;
    if (!isAnotherOne || !reopenLater(tr("no other subscription could be made, %1"), status))
        countsNotLive(status);
}

void QlumServerDiagnosticWidget::countsEnded(const UaStatus& status)
{
    m_subscriptions->setOwnSubscription(0);
    if (!m_followed.isUp())
        return;
    if (m_countAge.isValid() && m_countAge.hasExpired(lastingMilliseconds))
        m_countAttempts = 0;
    if (!reopenLater(tr("the server ended their subscription, %1"), status))
        countsNotLive(status);
}

// False when that has been tried often enough. The reason has %1 for the status.
bool QlumServerDiagnosticWidget::reopenLater(const QString& reason, const UaStatus& status)
{
    constexpr int second = 1000;
    if (m_countAttempts >= static_cast<int>(std::size(pauses)))
        return false;
    const int pause = pauses[m_countAttempts++];
    m_serverPage->setCountNote(
        tr("The counts are not live for the moment: %1. They are watched again in %2 s.")
            .arg(reason.arg(qlumResultInWords(status)), QString::number(pause / second)));
    m_reopenTimer.start(pause);
    return true;
}

void QlumServerDiagnosticWidget::countsNotLive(const UaStatus& status)
{
    const QString words = qlumResultInWords(status);
    m_serverPage->setCountNote(
        (m_countAttempts > 0 ? tr("The counts are no longer live: %1.") : tr("The counts are not live: %1."))
            .arg(words));
    m_messages->tell(
        {QlumMessage::Note,
         countTopic,
         tr("The lists do not follow the server by themselves."),
         tr("Its counts cannot be watched: %1. Set an interval, or refresh the lists.").arg(words),
         {},
         nullptr});
}

// Its end waits for the server behind what is under way there, not here.
void QlumServerDiagnosticWidget::dropSubscription()
{
    m_reopenTimer.stop();
    m_serverPage->setCountNote({});
    if (!m_counts)
        return;
    m_counts->detach();
    m_pools->of(m_followed.id())
        .add({QString(), m_followed.id()},
             [counts = std::move(m_counts)](QlumJob&) mutable { counts.reset(); });
    m_counts.reset();
}

void QlumServerDiagnosticWidget::sltCountChanged(int count, unsigned int number)
{
    const bool isSessions = count == QlumCountSubscription::Sessions;
    m_serverPage->takeCount(isSessions ? QStringLiteral("CurrentSessionCount")
                                       : QStringLiteral("CurrentSubscriptionCount"),
                            number);
    // the first one may tell already of somebody who came after the list had been read
    const auto listed =
        static_cast<unsigned int>(isSessions ? m_sessions->rowCount() : m_subscriptions->rowCount());
    const std::optional<unsigned int> before = std::exchange(
        m_numbers[isSessions ? QlumCountSubscription::Sessions : QlumCountSubscription::Subscriptions],
        number);
    if (before.value_or(listed) == number)
        return;
    (isSessions ? m_areSessionsOld : m_areSubscriptionsOld) = true;
    if (!m_countTimer.isActive())
        m_countTimer.start();
}

void QlumServerDiagnosticWidget::readChangedLists()
{
    if (m_areSessionsOld)
        sltGetSessions(true);
    if (m_areSubscriptionsOld)
        sltGetSubscriptions(true);
}
