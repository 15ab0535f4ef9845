// Which server a view of diagnostics shows, and what is kept and handed on of it.
#include <plugins/serverdiagnostics/qlumserverdiagnosticwidget.h>

#include <app/api/qlumtext.h>
#include <plugins/serverdiagnostics/qlumdiagnosticactions.h>
#include <plugins/serverdiagnostics/qlumdiagnosticchooser.h>
#include <plugins/serverdiagnostics/qlumdiagnosticendpoints.h>
#include <plugins/serverdiagnostics/qlumdiagnosticpanel.h>
#include <plugins/serverdiagnostics/qlumdiagnosticreport.h>
#include <plugins/serverdiagnostics/qlumdiagnosticserverpage.h>
#include <plugins/serverdiagnostics/qlumsessiontable.h>
#include <plugins/serverdiagnostics/qlumsubscriptiontable.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/qlumviewheading.h>

#include <QAction>
#include <QByteArray>
#include <QClipboard>
#include <QComboBox>
#include <QDateTime>
#include <QDir>
#include <QFileDialog>
#include <QGuiApplication>
#include <QLabel>
#include <QList>
#include <QLocale>
#include <QPointer>
#include <QSaveFile>
#include <QScopedValueRollback>
#include <QTabWidget>

#include <vector>

using namespace QlumDiagnosticActions;

// ---- which server

void QlumServerDiagnosticWidget::listServers()
{
    const QScopedValueRollback listing(m_isListing, true);
    m_server->clear();
    for (const unsigned int id : m_application.projectServerIds())
        m_server->addItem(m_application.serverName(id), id);
    m_server->setCurrentIndex(m_server->findData(m_followed.id()));
}

void QlumServerDiagnosticWidget::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    listServers();
    updateState();
}

void QlumServerDiagnosticWidget::serverSelectionChanged(unsigned int serverId)
{
    m_selected = m_followed.meant(serverId);
    if (!m_actions[KeepServer]->isChecked())
        setServer(m_selected);
    listServers();
}

// Whoever chooses another server than the project's wants the view to stay with it.
void QlumServerDiagnosticWidget::sltServerChosen(int index)
{
    if (m_isListing || index < 0)
        return;
    const unsigned int chosen = m_server->itemData(index).toUInt();
    m_actions[KeepServer]->setChecked(chosen != m_selected);
    m_application.setModified();
    setServer(chosen);
}

void QlumServerDiagnosticWidget::setServer(unsigned int serverId)
{
    if (serverId == m_followed.id())
        return updateState();
    end();
    m_followed.follow(*this, serverId);
    m_faults = std::make_shared<QlumDiagnosticFaults>(serverId);
    clearAll();
    m_serverPage->setServer(serverId);
    m_server->setCurrentIndex(m_server->findData(serverId));
    updateState();
    if (m_followed.isUp())
        begin();
}

void QlumServerDiagnosticWidget::begin()
{
    createSubscription();
    readServer();
    sltGetSessions(true);
    sltGetSubscriptions(true);
    getServersAndEndpoints();
}

void QlumServerDiagnosticWidget::end()
{
    giveUp();
    dropSubscription();
    m_messages->dismiss();
}

void QlumServerDiagnosticWidget::clearAll()
{
    m_serverPage->clearValues();
    m_sessionChooser->update([this] { m_sessions->clear(); });
    m_sessionChooser->choose(QString());
    m_sessionChooser->setNote(QString());
    m_subscriptionChooser->update([this] { m_subscriptions->clear(); });
    m_subscriptionChooser->choose(QString());
    m_subscriptionChooser->setNote(QString());
    clearSessionWidgets();
    clearSubscriptionWidgets();
    m_endpoints->clear();
    m_heading->forget();
}

// What was read stays when a connection ends, with its age in the heading.
void QlumServerDiagnosticWidget::sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status)
{
    const bool isNew = m_followed.setStatus(serverId, status);
    if (serverId != m_followed.id())
        return;
    if (isNew)
        begin();
    else if (!m_followed.isUp())
        giveUp();
    if (status == QlumConnectionStatus::Disconnected)
        dropSubscription();
    updateState();
}

void QlumServerDiagnosticWidget::sessionRemoved(unsigned int serverId)
{
    m_followed.forget(serverId);
    if (serverId == m_followed.id()) {
        end();
        m_endpointPool.endServer(serverId);
        m_actions[KeepServer]->setChecked(false);
        m_followed.follow(*this, qlumNoServer);
        clearAll();
    }
    if (serverId == m_selected)
        m_selected = qlumNoServer;
    listServers();
    if (const int removed = m_server->findData(serverId); removed >= 0)
        m_server->removeItem(removed); // the project may still have it at this moment
    m_server->setCurrentIndex(m_server->findData(m_followed.id()));
    updateState();
}

void QlumServerDiagnosticWidget::updateState()
{
    const bool hasServer = m_followed.isAny();
    const QString name = m_followed.name();
    if (hasServer) {
        m_heading->setServer(name);
        m_heading->setStatus(m_followed.status());
    } else {
        m_heading->clear();
    }
    if (!hasServer)
        m_offline->setText(tr("Select a server in the project to see what it tells of itself."));
    else
        m_offline->setText(
            m_sessions->rowCount() > 0
                ? tr("There is no connection to %1. What is shown is from before.").arg(name)
                : tr("There is no connection to %1. Connect it to see what it tells of itself.").arg(name));
    m_offline->setVisible(!m_followed.isUp());
    m_actions[Refresh]->setEnabled(m_followed.isUp());
    m_sessionChooser->setOnline(m_followed.isUp());
    m_subscriptionChooser->setOnline(m_followed.isUp());
    m_endpoints->setOnline(m_followed.isUp());
    m_actions[KeepServer]->setEnabled(hasServer);
    m_actions[CopyReport]->setEnabled(hasServer);
    m_actions[SaveReport]->setEnabled(hasServer);
}

// ---- refreshing

void QlumServerDiagnosticWidget::sltRefresh()
{
    if (!m_followed.isUp())
        return;
    m_messages->dismiss();
    watchCountsAgain();
    readServer();
    sltGetSessions(false);
    sltGetSubscriptions(false);
    getServersAndEndpoints();
}

// The page that is seen, unless it is still being read.
void QlumServerDiagnosticWidget::readShown()
{
    if (!m_followed.isUp() || !isVisible())
        return;
    QWidget* const page = m_tabs->currentWidget();
    if (page->isAncestorOf(m_serverPage) && m_tickets[Server] == 0)
        readServer();
    else if (page->isAncestorOf(m_sessionChooser) && m_tickets[Sessions] == 0)
        sltGetSessions(true);
    else if (page->isAncestorOf(m_subscriptionChooser) && m_tickets[Subscriptions] == 0)
        sltGetSubscriptions(true);
}

void QlumServerDiagnosticWidget::sltIntervalChosen()
{
    constexpr int second = 1000;
    const int seconds = m_interval->currentData().toInt();
    if (seconds > 0)
        m_intervalTimer.start(seconds * second);
    else
        m_intervalTimer.stop();
    m_application.setModified();
}

// ---- report

QString QlumServerDiagnosticWidget::report() const
{
    std::vector<QlumReportSection> sections;
    sections.push_back({tr("Server diagnostics of %1").arg(m_followed.name()),
                        tr("Written %1").arg(qlumShowDateTime(QDateTime::currentDateTime())) +
                            QLatin1Char('\n') + (m_followed.isUp() ? QString() : m_offline->text())});
    for (const QlumDiagnosticPanel* const panel : m_serverPage->panels())
        sections.push_back({panel->name(), panel->model()->toText()});
    sections.push_back({tr("Sessions"), qlumTableReport(*m_sessions)});
    if (const QlumSessionRow* const row = m_sessions->find(m_sessionChooser->key())) {
        sections.push_back(
            {tr("Session Diagnostics: %1").arg(qlumSessionTitle(*row)), m_sessionPanel->model()->toText()});
        sections.push_back({m_securityPanel->name(), m_securityPanel->model()->toText()});
    }
    sections.push_back({tr("Subscriptions"), qlumTableReport(*m_subscriptions)});
    if (const QlumSubscriptionRow* const row = m_subscriptions->find(m_subscriptionChooser->key()))
        sections.push_back(
            {tr("Subscription Diagnostics: %1").arg(row->name), m_subscriptionPanel->model()->toText()});
    sections.push_back({tr("Endpoints"), m_endpoints->toText()});
    return qlumReport(sections);
}

void QlumServerDiagnosticWidget::copyReport()
{
    QGuiApplication::clipboard()->setText(report());
}

void QlumServerDiagnosticWidget::saveReport()
{
    const QPointer<QlumServerDiagnosticWidget> stillThere = this;
    const QString text = report();
    const QString path = QFileDialog::getSaveFileName(
        this, tr("Save Report"), QDir::home().filePath(QStringLiteral("serverdiagnostics.txt")),
        tr("Texts (*.txt);;All files (*)"));
    if (path.isEmpty() || !stillThere)
        return;
    QSaveFile file(path);
    const QByteArray bytes = text.toUtf8();
    const bool isWritten =
        file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
    if (!isWritten)
        m_messages->tell({QlumMessage::Error,
                          QStringLiteral("report"),
                          tr("The report was not written to '%1'.").arg(QDir::toNativeSeparators(path)),
                          file.errorString(),
                          {},
                          nullptr});
}

// ---- project

void QlumServerDiagnosticWidget::saveSettings(QSettings& settings)
{
    const bool isKept = m_actions[KeepServer]->isChecked();
    settings.setValue(QStringLiteral("KeepServer"), isKept);
    if (isKept)
        settings.setValue(QStringLiteral("ServerId"), m_followed.id());
    settings.setValue(QStringLiteral("RefreshInterval"), m_interval->currentData());
    settings.setValue(QStringLiteral("Page"), m_tabs->currentIndex());
}

void QlumServerDiagnosticWidget::loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap)
{
    const int stored = settings.value(QStringLiteral("ServerId"), -1).toInt();
    const bool isKept =
        settings.value(QStringLiteral("KeepServer"), false).toBool() && serverIdMap.contains(stored);
    m_actions[KeepServer]->setChecked(isKept);
    listServers();
    if (isKept)
        setServer(static_cast<unsigned int>(serverIdMap.value(stored)));
    const int interval = m_interval->findData(settings.value(QStringLiteral("RefreshInterval"), 0).toInt());
    m_interval->setCurrentIndex(interval < 0 ? 0 : interval);
    m_tabs->setCurrentIndex(settings.value(QStringLiteral("Page"), 0).toInt());
}
