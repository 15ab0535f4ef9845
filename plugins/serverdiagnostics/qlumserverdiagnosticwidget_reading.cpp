// Jobs of a view of server diagnostics, and what they bring.
#include <plugins/serverdiagnostics/qlumserverdiagnosticwidget.h>

#include <app/api/qlumcallnote.h>
#include <app/api/qlumdiscoverysecurity.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <app/api/qlumtoolservices.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/serverdiagnostics/qlumdiagnosticchooser.h>
#include <plugins/serverdiagnostics/qlumdiagnosticendpoints.h>
#include <plugins/serverdiagnostics/qlumdiagnosticmodel.h>
#include <plugins/serverdiagnostics/qlumdiagnosticpanel.h>
#include <plugins/serverdiagnostics/qlumdiagnosticserverpage.h>
#include <plugins/serverdiagnostics/qlumdiagnosticsettings.h>
#include <plugins/serverdiagnostics/qlumsessiontable.h>
#include <plugins/serverdiagnostics/qlumsubscriptiontable.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/uadiscovery.h>
#include <uaclientsdk/uasession.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/qlumviewheading.h>

#include <QHash>
#include <QTabWidget>
#include <QTime>

#include <algorithm>
#include <utility>
#include <vector>

namespace {
const QString listTopic = QStringLiteral("lists");
const QString serverTopic = QStringLiteral("server");
const QString disabledTopic = QStringLiteral("disabled");
const QString enableTopic = QStringLiteral("enable");

QlumEndpointReading askServer(QlumSessionServices& services, QlumJob& job)
{
    QlumEndpointReading reading;
    const std::shared_ptr<UaClientSdk::UaSession> session = services.session();
    if (!session) {
        reading.serversStatus = reading.endpointsStatus = UaStatus(OpcUa_BadServerNotConnected);
        return reading;
    }
    const UaString url = session->currentlyUsedEndpointUrl();
    reading.url = toQString(url);
    const auto discovery = std::make_shared<UaClientSdk::UaDiscovery>();
    job.whenCancelled([discovery] { discovery->cancel(); });
    UaClientSdk::ServiceSettings settings = job.serviceSettings();
    const UaClientSdk::ClientSecurityInfo security = qlumDiscoverySecurity(reading.url);
    reading.serversStatus = discovery->findServers(settings, url, security, reading.servers);
    reading.endpointsStatus = discovery->getEndpoints(settings, url, security, reading.endpoints);
    return reading;
}

// What was read of rows, in their order.
void showDetails(QlumDiagnosticModel& model, const std::vector<UaDataValue>& values,
                 QlumDiagnosticClock::time_point time)
{
    for (int row = 0; row < model.rowCount() && row < static_cast<int>(values.size()); ++row)
        model.setNewValue(model.nodeAt(model.index(row, 0)), values[static_cast<std::size_t>(row)], time);
}
} // namespace

// ---- jobs

// One reading of a kind at a time: a new one takes the place of the one before.
void QlumServerDiagnosticWidget::start(Reading what, const QString& text, const Work& work)
{
    QlumJobPool& pool = m_pools->of(m_followed.id());
    if (m_tickets[what] != 0)
        pool.giveUp(m_tickets[what]);
    m_isDue[what] = false;
    m_tickets[what] = pool.add(
        {text, m_followed.id()},
        [provider = m_services, id = m_followed.id(), faults = m_faults, work](QlumJob& job) {
            const std::shared_ptr<QlumSessionServices> services = provider(id);
            if (!services)
                return;
            QlumDiagnosticReader reader(*services, job, *faults);
            std::function<void()> take = work(reader);
            if (!job.isCancelled())
                job.post(std::move(take));
        },
        [this, what](QlumWorkEnd) { ended(what); });
    showReading(what, true);
}

void QlumServerDiagnosticWidget::giveUp()
{
    for (int what = 0; what < readingCount; ++what)
        if (const QlumJobPool::Ticket ticket = std::exchange(m_tickets[static_cast<std::size_t>(what)], 0);
            ticket != 0) {
            m_pools->of(m_followed.id()).giveUp(ticket);
            m_isDue[static_cast<std::size_t>(what)] = false;
            showReading(static_cast<Reading>(what), false);
        }
    m_endpointPool.cancelAll();
    setAsking(false);
    m_countTimer.stop();
    m_reopenTimer.stop();
}

void QlumServerDiagnosticWidget::ended(Reading what)
{
    m_tickets[what] = 0;
    showReading(what, false);
    if (!std::exchange(m_isDue[what], false))
        return;
    if (what == Sessions)
        sltGetSessions(true);
    else if (what == Subscriptions)
        sltGetSubscriptions(true);
}

bool QlumServerDiagnosticWidget::isReading() const
{
    return m_isAsking ||
           std::any_of(
               m_tickets.begin(), m_tickets.end(), [](QlumJobPool::Ticket ticket) { return ticket != 0; });
}

void QlumServerDiagnosticWidget::showReading(Reading what, bool isReading)
{
    switch (what) {
    case Server:
        m_serverPage->setReading(isReading);
        break;
    case Sessions:
        m_sessionChooser->setReading(isReading);
        break;
    case Session:
        m_sessionPanel->setReading(isReading);
        m_securityPanel->setReading(isReading);
        break;
    case Subscriptions:
        m_subscriptionChooser->setReading(isReading);
        break;
    case Subscription:
        m_subscriptionPanel->setReading(isReading);
        break;
    default:
        break;
    }
    m_heading->setActivity(this->isReading() ? tr("reading...") : QString());
}

// ---- the server

void QlumServerDiagnosticWidget::readServer()
{
    start(
        Server, tr("Reading server diagnostics"),
        [this](QlumDiagnosticReader& reader) {
            return [this, reading = reader.readServer()] { takeServer(reading); };
        });
}

void QlumServerDiagnosticWidget::takeServer(const QlumServerReading& reading)
{
    m_serverPage->take(reading);
    if (reading.status.isBad())
        return tellListFault(serverTopic, tr("The values of %1 could not be read."), reading.status);
    m_messages->dismiss(serverTopic);
    if (m_serverPage->isDisabled()) { // which the other pages would not tell
        m_messages->dismiss(listTopic);
        m_messages->tell({QlumMessage::Note,
                          disabledTopic,
                          tr("The diagnostics of %1 are disabled.").arg(m_followed.name()),
                          tr("It counts nothing, and need not tell of its sessions and subscriptions."),
                          {},
                          nullptr});
    } else {
        m_messages->dismiss(disabledTopic);
    }
    m_heading->touch();
}

void QlumServerDiagnosticWidget::getServersAndEndpoints()
{
    if (!m_followed.isUp())
        return;
    m_endpointPool.cancelAll();
    const QlumAskEndpoints ask = m_askEndpoints ? m_askEndpoints : QlumAskEndpoints(askServer);
    m_endpointPool.add(
        {tr("Asking for servers and endpoints"), m_followed.id()},
        [this, provider = m_services, id = m_followed.id(), ask](QlumJob& job) {
            if (const std::shared_ptr<QlumSessionServices> services = provider(id))
                job.post([this, reading = ask(*services, job)] { m_endpoints->take(reading); });
        },
        [this](QlumWorkEnd) { setAsking(false); });
    setAsking(true);
}

void QlumServerDiagnosticWidget::setAsking(bool isAsking)
{
    m_isAsking = isAsking;
    m_endpoints->setReading(isAsking);
    m_heading->setActivity(isReading() ? tr("reading...") : QString());
}

// ---- sessions

void QlumServerDiagnosticWidget::sltGetSessions(bool isAutomatic)
{
    if (!m_followed.isUp())
        return;
    m_areSessionsOld = false;
    if (isAutomatic && m_tickets[Sessions] != 0) {
        m_isDue[Sessions] = true;
        return;
    }
    start(Sessions, tr("Reading the sessions of a server"), [this](QlumDiagnosticReader& reader) {
        auto reading = std::make_shared<QlumSessionReading>(reader.readSessions());
        return [this, reading] { takeSessions(*reading); };
    });
}

void QlumServerDiagnosticWidget::takeSessions(QlumSessionReading& reading)
{
    if (reading.status.isBad()) {
        m_sessionChooser->setNote(
            tr("The sessions could not be read: %1").arg(qlumResultInWords(reading.status)));
        return tellListFault(listTopic, tr("The sessions of %1 could not be read."), reading.status);
    }
    m_messages->dismiss(listTopic);
    m_heading->touch();
    const bool isFirst = m_sessions->rowCount() == 0;
    const bool isThere =
        m_sessionChooser->update([&] { m_sessions->takeRows(std::move(reading.rows), reading.time); });
    if (!isThere)
        clearSessionWidgets();
    m_sessionChooser->setNote(sessionNote(reading));
    nameSessions();
    if (isFirst && m_sessions->rowCount() > 0) {
        const auto& rows = m_sessions->rows();
        const auto own =
            std::find_if(rows.begin(), rows.end(), [](const QlumSessionRow& row) { return row.isOwn; });
        m_sessionChooser->choose(own != rows.end() ? own->key : rows.front().key);
    }
    readSession();
}

QString QlumServerDiagnosticWidget::sessionNote(const QlumSessionReading& reading) const
{
    QString note = reading.hint;
    if (m_sessions->rowCount() == 0)
        note = tr("The server tells of no session.") + QLatin1Char(' ') + note;
    const unsigned int limit = QlumDiagnosticSettings::forgottenAfter.value();
    const int forgotten = m_sessions->forgottenCount();
    if (forgotten == 1)
        note += QLatin1Char(' ') +
                tr("A session of this application has had no contact for %1 s or more: it looks "
                   "forgotten, and goes when its time-out is over.")
                    .arg(limit);
    else if (forgotten > 1)
        note += QLatin1Char(' ') +
                tr("%1 sessions of this application have had no contact for %2 s or more: they "
                   "look forgotten, and go when their time-out is over.")
                    .arg(QString::number(forgotten), QString::number(limit));
    return note;
}

void QlumServerDiagnosticWidget::nameSessions()
{
    QHash<QString, QString> names;
    for (const QlumSessionRow& row : m_sessions->rows())
        for (const UaNodeId& id : {row.sessionId, row.objectId})
            if (!id.isNull())
                names.insert(toQString(id.toXmlString()), qlumSessionTitle(row));
    m_subscriptions->setSessionNames(std::move(names));
}

void QlumServerDiagnosticWidget::readSession()
{
    const QlumSessionRow* const row = m_sessions->find(m_sessionChooser->key());
    if (!row || !m_followed.isUp())
        return;
    start(Session, tr("Reading the diagnostics of a session"),
          [this, row = *row](QlumDiagnosticReader& reader) {
              return [this, key = row.key, reading = reader.readSession(row)] { takeSession(key, reading); };
          });
}

void QlumServerDiagnosticWidget::takeSession(const QString& key, const QlumDetailReading& reading)
{
    if (key != m_sessionChooser->key())
        return;
    showDetails(*m_sessionPanel->model(), reading.values, reading.time);
    showDetails(*m_securityPanel->model(), reading.security, reading.time);
}

void QlumServerDiagnosticWidget::clearSessionWidgets()
{
    m_sessionPanel->model()->clearValues();
    m_securityPanel->model()->clearValues();
}

// ---- subscriptions

void QlumServerDiagnosticWidget::sltGetSubscriptions(bool isAutomatic)
{
    if (!m_followed.isUp())
        return;
    m_areSubscriptionsOld = false;
    if (isAutomatic && m_tickets[Subscriptions] != 0) {
        m_isDue[Subscriptions] = true;
        return;
    }
    start(Subscriptions, tr("Reading the subscriptions of a server"), [this](QlumDiagnosticReader& reader) {
        auto reading = std::make_shared<QlumSubscriptionReading>(reader.readSubscriptions());
        return [this, reading] { takeSubscriptions(*reading); };
    });
}

void QlumServerDiagnosticWidget::takeSubscriptions(QlumSubscriptionReading& reading)
{
    if (reading.status.isBad()) {
        m_subscriptionChooser->setNote(
            tr("The subscriptions could not be read: %1").arg(qlumResultInWords(reading.status)));
        return tellListFault(listTopic, tr("The subscriptions of %1 could not be read."), reading.status);
    }
    m_heading->touch();
    m_subscriptions->setOwnSubscription(m_counts ? m_counts->subscriptionId() : 0);
    const bool isFirst = m_subscriptions->rowCount() == 0;
    const bool isThere = m_subscriptionChooser->update(
        [&] { m_subscriptions->takeRows(std::move(reading.rows), reading.time); });
    QString note = reading.hint;
    if (m_subscriptions->rowCount() == 0)
        note = tr("The server tells of no subscription.") + QLatin1Char(' ') + note;
    if (!isThere)
        clearSubscriptionWidgets();
    m_subscriptionChooser->setNote(note);
    if (isFirst && m_subscriptions->rowCount() > 0)
        m_subscriptionChooser->choose(m_subscriptions->rows().front().key);
    readSubscription();
}

void QlumServerDiagnosticWidget::readSubscription()
{
    const QlumSubscriptionRow* const row = m_subscriptions->find(m_subscriptionChooser->key());
    if (!row || !m_followed.isUp())
        return;
    start(Subscription, tr("Reading the diagnostics of a subscription"),
          [this, row = *row](QlumDiagnosticReader& reader) {
              return [this, key = row.key, reading = reader.readSubscription(row)] {
                  takeSubscription(key, reading);
              };
          });
}

void QlumServerDiagnosticWidget::takeSubscription(const QString& key, const QlumDetailReading& reading)
{
    if (key == m_subscriptionChooser->key())
        showDetails(*m_subscriptionPanel->model(), reading.values, reading.time);
}

void QlumServerDiagnosticWidget::clearSubscriptionWidgets()
{
    m_subscriptionPanel->model()->clearValues();
}

// The text has %1 for the server.
void QlumServerDiagnosticWidget::tellListFault(const QString& topic, const QString& what,
                                               const UaStatus& status)
{
    if (topic == listTopic && m_serverPage->isDisabled())
        return; // that is why, and is said already
    QlumMessage message{QlumMessage::Error,        topic, what.arg(m_followed.name()),
                        qlumResultInWords(status), {},    nullptr};
    QlumToolServices* const tools = QlumToolServices::instance();
    if (status.statusCode() == OpcUa_BadSecurityModeInsufficient && tools && tools->canReconnectWith()) {
        message.button = tr("Connect &Encrypted");
        message.help = [id = m_followed.id()] {
            if (QlumToolServices* const there = QlumToolServices::instance())
                there->reconnectWith(id, OpcUa_MessageSecurityMode_SignAndEncrypt, nullptr);
        };
    }
    m_messages->tell(message);
}

// ---- the server's flag

void QlumServerDiagnosticWidget::sltEnableWanted(bool isWanted)
{
    if (isWanted)
        return writeEnabled(true);
    m_messages->tell({QlumMessage::Warning, enableTopic,
                      tr("%1 is to count no longer.").arg(m_followed.name()),
                      tr("That goes for all its clients: its counters and lists may go."),
                      tr("&Disable Diagnostics"), [this] { writeEnabled(false); }});
}

void QlumServerDiagnosticWidget::writeEnabled(bool isWanted)
{
    if (!m_followed.isUp())
        return;
    m_tickets[Enabling] =
        m_pools->of(m_followed.id())
            .add(
                {isWanted ? tr("Enabling server diagnostics") : tr("Disabling server diagnostics"),
                 m_followed.id()},
                [this, provider = m_services, id = m_followed.id(), isWanted](QlumJob& job) {
                    const std::shared_ptr<QlumSessionServices> services = provider(id);
                    const UaNodeId flag(OpcUaId_Server_ServerDiagnostics_EnabledFlag);
                    UaWriteValues values(1);
                    values[0].AttributeId = OpcUa_Attributes_Value;
                    if (!services || OpcUa_IsBad(flag.copyTo(&values[0].NodeId)) ||
                        OpcUa_IsBad(UaVariant(isWanted).copyTo(&values[0].Value.Value)))
                        return;
                    QlumSessionServices::Settings settings = job.serviceSettings();
                    qlumTellShown(settings, {{flag, OpcUa_Attributes_Value, UaVariant(!isWanted),
                                              QStringLiteral("EnabledFlag")}});
                    UaStatusCodeArray results;
                    UaStatus status = services->write(settings, values, results);
                    if (status.isGood() && !results.isEmpty())
                        status = UaStatus(results[0]);
                    job.post([this, isWanted, status] { takeEnabled(isWanted, status); });
                },
                [this](QlumWorkEnd) { ended(Enabling); });
}

void QlumServerDiagnosticWidget::takeEnabled(bool isWanted, const UaStatus& status)
{
    if (status.isGood()) {
        m_messages->dismiss(enableTopic);
        return sltRefresh();
    }
    const QString name = m_followed.name();
    m_messages->tell({QlumMessage::Error,
                      enableTopic,
                      isWanted ? tr("The diagnostics of %1 could not be enabled.").arg(name)
                               : tr("The diagnostics of %1 could not be disabled.").arg(name),
                      qlumResultInWords(status),
                      {},
                      nullptr});
}
