// What the view reads and sends: the server's facts, trust lists and rejected certificates.
#include <plugins/gds/qlumpushview.h>

#include <app/api/qlumcalltimeout.h>
#include <app/api/qlumtext.h>
#include <app/api/qlumtoolservices.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/gds/qlumpushcertificatepage.h>
#include <plugins/gds/qlumpushlistpage.h>
#include <plugins/gds/qlumpushlisttable.h>
#include <plugins/gds/qlumpushlogindialog.h>
#include <plugins/gds/qlumpushrecordpage.h>
#include <plugins/gds/qlumpushserverpage.h>
#include <plugins/gds/qlumpushwords.h>
#include <uaclientsdk/uasession.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/qlumviewheading.h>

#include <QByteArray>
#include <QDateTime>
#include <QDialog>
#include <QDir>
#include <QPointer>

#include <algorithm>
#include <iterator>
#include <ranges>
#include <utility>

namespace {
const QString pushRightsTopic = QStringLiteral("rights");
const QString pushCallTopic = QStringLiteral("pushCall");

// Who sits at this computer.
QString qlumPushUser()
{
    const QByteArray user = qgetenv("USER");
    return user.isEmpty() ? QDir::home().dirName() : QString::fromLocal8Bit(user);
}

QString titleOf(const UaByteString& der)
{
    return toQString(UaPkiCertificate::fromDER(der).commonName());
}
} // namespace

UaPkiCertificate qlumPresentedBy(const QlumSessionServices& services)
{
    const auto session = services.session();
    return session ? UaPkiCertificate::fromDER(session->serverCertificate()) : UaPkiCertificate();
}

// ---- jobs

bool QlumPushView::start(const QString& text, const Work& work)
{
    if (!m_followed.isUp() || isBusy())
        return false;
    m_heading->setActivity(tr("working..."));
    m_ticket = m_pools->of(m_followed.id())
                   .add(
                       {text, m_followed.id()},
                       [this, work, provider = m_services, id = m_followed.id()](QlumJob& job) {
                           const std::shared_ptr<QlumSessionServices> services = provider(id);
                           if (!services)
                               return;
                           QlumPushClient client(*services, {job.serviceSettings().callTimeout,
                                                             [&job] { return job.isCancelled(); }});
                           const std::function<void()> finish = work(client, job);
                           job.post([this, finish, steps = client.takeSteps()] {
                               takeSteps(steps);
                               m_finish = finish;
                           });
                       },
                       [this](QlumWorkEnd) { ended(); });
    updateState();
    return true;
}

// What finishes may begin the next.
void QlumPushView::ended()
{
    m_ticket = 0;
    m_heading->setActivity(QString());
    updateState();
    if (const std::function<void()> finish = std::exchange(m_finish, nullptr))
        finish();
}

void QlumPushView::giveUp()
{
    if (m_ticket != 0)
        m_pools->of(m_followed.id()).giveUp(std::exchange(m_ticket, 0));
    m_finish = nullptr;
    m_heading->setActivity(QString());
}

void QlumPushView::takeSteps(const std::vector<QlumPushStep>& steps)
{
    m_record->add(m_followed.name(), userText(), steps);
    m_failed.clear();
    std::ranges::copy_if(steps, std::back_inserter(m_failed),
                         [](const QlumPushStep& step) { return step.status.isBad(); });
    m_heading->touch();
}

void QlumPushView::writeDown(const QString& text)
{
    m_record->addLine(
        QStringLiteral("%1  %2  %3  %4")
            .arg(qlumShowDateTime(QDateTime::currentDateTime()), m_followed.name(), userText(), text));
}

// Both who has sat here and as whom the server has seen him.
QString QlumPushView::userText() const
{
    const QlumToolServices* const tools = QlumToolServices::instance();
    const QString user = tools ? tools->sessionUser(m_followed.id()) : QString();
    return user.isEmpty() ? tr("%1 (anonymous)").arg(qlumPushUser())
                          : tr("%1 as %2").arg(qlumPushUser(), user);
}

// ---- messages

void QlumPushView::tell(const QString& what, const QString& why)
{
    m_messages->tell({QlumMessage::Error, pushCallTopic, what, why, {}, nullptr});
}

// Of several calls in a row, the one that failed says what it means.
void QlumPushView::tellFault(const QString& what, const QString& method, const UaStatus& status)
{
    const auto failed = std::ranges::find(m_failed, status, &QlumPushStep::status);
    const QString why = failed == m_failed.end() ? qlumPushWords(method, status) : failed->words;
    QlumMessage message{QlumMessage::Error, pushCallTopic, what, why, {}, nullptr};
    const bool isRights = status == OpcUa_BadSecurityModeInsufficient || status == OpcUa_BadUserAccessDenied;
    if (isRights && qlumPushIsOfServer(status))
        offerAdministrator(message);
    m_messages->tell(message);
}

void QlumPushView::offerAdministrator(QlumMessage& message)
{
    QlumToolServices* const tools = QlumToolServices::instance();
    if (!tools || !tools->canReconnectWith())
        return;
    message.button = tr("Connect as &Administrator...");
    message.help = [view = QPointer<QlumPushView>(this)] {
        if (view)
            view->connectAsAdministrator();
    };
}

void QlumPushView::connectAsAdministrator()
{
    const QPointer<QlumPushView> stillThere = this;
    QlumPushLoginDialog dialog(m_followed.name(), this);
    const unsigned int id = m_followed.id();
    if (dialog.exec() != QDialog::Accepted || !stillThere)
        return;
    const QlumIdentity identity = dialog.takeIdentity();
    QlumToolServices* const tools = QlumToolServices::instance();
    if (!tools || !tools->reconnectWith(id, OpcUa_MessageSecurityMode_SignAndEncrypt, identity))
        tell(tr("The server cannot be connected anew just now."),
             tr("Another connect is under way. Try again when it has ended."));
}

// As far as the connection goes.
bool QlumPushView::mayConfigure() const
{
    return m_server.mode == OpcUa_MessageSecurityMode_SignAndEncrypt ||
           m_server.mode == OpcUa_MessageSecurityMode_Invalid; // not known
}

void QlumPushView::tellWhatIsMissing()
{
    QlumMessage message{QlumMessage::Warning, pushRightsTopic, {}, {}, {}, nullptr};
    const QString name = m_followed.name();
    if (m_server.status.isBad()) {
        message.what = tr("What %1 tells of its configuration could not be read.").arg(name);
        message.why = qlumPushWords(QString(), m_server.status);
    } else if (!m_server.object.isNull() && !mayConfigure()) {
        // what such a connection does not show counts as missing, which is not what matters
        return tellFault(tr("%1 cannot be configured over this connection.").arg(name), QString(),
                         UaStatus(OpcUa_BadSecurityModeInsufficient));
    } else if (!m_server.missing.isEmpty() && !m_server.object.isNull()) {
        message.what = tr("Not everything can be configured on %1.").arg(name);
        message.why =
            tr("Missing, or not shown to this user: %1").arg(m_server.missing.join(QStringLiteral(", ")));
        offerAdministrator(message);
    }
    if (!message.what.isEmpty())
        m_messages->tell(message);
}

// ---- reading

void QlumPushView::sltRefresh()
{
    m_messages->dismiss();
    start(tr("Reading what a server tells of its configuration"), [this](QlumPushClient& client, QlumJob&) {
        const QlumPushServer server = client.find();
        return [this, server] {
            const auto services = m_services(m_followed.id());
            takeServer(server, services ? m_world.presented(*services) : UaPkiCertificate());
        };
    });
}

void QlumPushView::takeServer(const QlumPushServer& server, const UaPkiCertificate& current)
{
    m_server = server;
    m_current = current;
    m_serverPage->setServer(server);
    m_listPage->setServer(server);
    m_certificatePage->setServer(server, current);
    updateState();
    if (!checkReturned()) // which the user has waited for
        tellWhatIsMissing();
    if (!server.groups.empty() && mayConfigure())
        readList();
}

void QlumPushView::readList()
{
    const QlumPushGroup* const group = m_server.group(m_listPage->group());
    if (!group)
        return;
    start(tr("Reading a trust list"), [this, group = *group](QlumPushClient& client, QlumJob&) {
        QlumTrustList list;
        UaDateTime time;
        // before the list: a change between the two is then noticed
        static_cast<void>(client.readLastUpdate(group, time));
        const UaStatus status = client.readTrustList(group, OpcUa_TrustListMasks_All, list);
        return [this, list, time, status] { takeList(list, time, status); };
    });
}

void QlumPushView::takeList(const QlumTrustList& list, const UaDateTime& time, const UaStatus& status)
{
    if (status.isBad())
        return tellFault(tr("The trust list could not be read."), QStringLiteral("OpenWithMasks"), status);
    m_messages->dismiss(pushCallTopic);
    m_listPage->setRead(list, time);
    updateState();
    readRejected();
}

void QlumPushView::readRejected()
{
    if (!m_server.has("GetRejectedList"))
        return;
    start(tr("Reading rejected certificates"), [this, server = m_server](QlumPushClient& client, QlumJob&) {
        std::vector<UaByteString> certificates;
        const UaStatus status = client.rejectedList(server, certificates);
        return [this, certificates, status] {
            if (status.isBad())
                return tellFault(tr("The rejected certificates could not be read."),
                                 QStringLiteral("GetRejectedList"), status);
            m_rejected->setRows(certificates, certificates);
        };
    });
}

// ---- changing

void QlumPushView::tellOtherChange(const QString& what)
{
    m_messages->tell({QlumMessage::Warning, pushCallTopic, what,
                      tr("Read it again: what you have changed is kept, and can be written then."),
                      tr("&Read Again"), [this] { readList(); }});
}

bool QlumPushView::agree(const QlumPushPlan& plan)
{
    const QPointer<QlumPushView> stillThere = this;
    const unsigned int id = m_followed.id();
    if (!m_world.agree(this, plan) || !stillThere || id != m_followed.id())
        return false;
    writeDown(tr("Plan: %1").arg(qlumPushPlanText(plan)));
    return true;
}

void QlumPushView::trustRejected()
{
    const UaByteString der = m_rejected->current();
    const QlumPushGroup* const group = m_server.group(m_listPage->group());
    if (der.isEmpty() || !group)
        return;
    start(tr("Adding a certificate to a trust list"),
          [this, group = *group, der](QlumPushClient& client, QlumJob&) {
              const UaStatus status = client.addCertificate(group, der, true);
              return [this, der, status] {
                  if (status.isBad())
                      return tellFault(tr("%1 was not added to the trusted certificates.").arg(titleOf(der)),
                                       QStringLiteral("AddCertificate"), status);
                  readList(); // and what is rejected still
              };
          });
}

void QlumPushView::change(const UaByteString& der, bool isTrusted, bool isAdded)
{
    const QlumPushGroup* const group = m_server.group(m_listPage->group());
    if (!group || !m_listPage->onServer())
        return;
    const QlumTrustPart part = isTrusted ? QlumTrustPart::Trusted : QlumTrustPart::Issuers;
    QlumTrustList after = *m_listPage->onServer();
    std::erase(after[part], der);
    if (isAdded)
        after[part].push_back(der);
    QlumPushPlan plan{
        isAdded ? tr("Add a certificate to the trust list of %1").arg(group->name)
                : tr("Remove a certificate from the trust list of %1").arg(group->name),
        {QStringLiteral("%1: %2 (%3)")
             .arg(isAdded ? QStringLiteral("AddCertificate") : QStringLiteral("RemoveCertificate"),
                  titleOf(der), qlumTrustPartName(part))},
        {tr("It counts at once.")},
        {}};
    if (qlumLocksOut(*m_listPage->onServer(), after, m_world.ownCertificate()))
        plan.danger =
            tr("The server then no longer trusts the certificate of this client: you lock yourself out.");
    if (!agree(plan))
        return;
    start(tr("Changing a trust list"), [this, group = *group, der, isTrusted, isAdded, part,
                                        known = m_listPage->lastUpdate()](QlumPushClient& client, QlumJob&) {
        UaDateTime before;
        static_cast<void>(client.readLastUpdate(group, before));
        const UaStatus status = isAdded ? client.addCertificate(group, der, isTrusted)
                                        : client.removeCertificate(group, der, isTrusted);
        UaDateTime time;
        static_cast<void>(client.readLastUpdate(group, time));
        const bool isOther = before != known;
        // the list that is shown stays as old as it is: it must not be written over what somebody else did
        if (isOther)
            time = known;
        return [this, der, isAdded, part, status, time, isOther] {
            if (status.isBad())
                return tellFault(
                    tr("The trust list was not changed."),
                    isAdded ? QStringLiteral("AddCertificate") : QStringLiteral("RemoveCertificate"), status);
            m_messages->dismiss(pushCallTopic);
            m_listPage->changed(part, der, isAdded, time);
            if (isOther)
                tellOtherChange(tr("Somebody else has changed the trust list since it was read."));
        };
    });
}

void QlumPushView::writeList()
{
    const QlumPushGroup* const group = m_server.group(m_listPage->group());
    if (!group || !m_listPage->onServer())
        return;
    QlumPushPlan plan{tr("Replace the trust list of %1").arg(group->name),
                      {tr("Read LastUpdateTime, and stop if somebody else has changed the list"),
                       tr("Open, Write and CloseAndUpdate with: %1")
                           .arg(qlumTrustListChanges(*m_listPage->onServer(), m_listPage->edited())
                                    .join(QStringLiteral("; ")))},
                      {},
                      {}};
    if (const QStringList names = qlumIssuersWithoutCrl(m_listPage->edited()); !names.isEmpty())
        plan.warnings.append(
            tr("There is no revocation list of %1; the server may refuse what it has signed.")
                .arg(names.join(QStringLiteral(", "))));
    if (qlumLocksOut(*m_listPage->onServer(), m_listPage->edited(), m_world.ownCertificate()))
        plan.danger =
            tr("The server then no longer trusts the certificate of this client: you lock yourself out.");
    if (agree(plan))
        sendList(*group);
}

void QlumPushView::sendList(const QlumPushGroup& group)
{
    start(
        tr("Writing a trust list"),
        [this, group, server = m_server, list = m_listPage->edited(), read = m_listPage->onServer()->parts,
         before = m_listPage->lastUpdate()](QlumPushClient& client, QlumJob&) {
            UaDateTime now;
            bool isApplyRequired = false;
            static_cast<void>(client.readLastUpdate(group, now));
            bool isOther = now != before;
            if (now.isNull() && before.isNull()) { // only the list itself can tell
                QlumTrustList there;
                isOther = client.readTrustList(group, OpcUa_TrustListMasks_All, there).isGood() &&
                          there.parts != read;
            }
            if (isOther)
                return std::function<void()>([this] {
                    tellOtherChange(
                        tr("Nothing was written: somebody else has changed the trust list meanwhile."));
                });
            const UaStatus status = client.writeTrustList(server, group, list, isApplyRequired);
            static_cast<void>(client.readLastUpdate(group, now));
            return std::function<void()>([this, status, isApplyRequired, list, now, name = group.name] {
                if (status.isBad())
                    return tellFault(tr("The trust list was not written."), QStringLiteral("CloseAndUpdate"),
                                     status);
                m_messages->dismiss(pushCallTopic);
                m_listPage->setWritten(list, now);
                if (isApplyRequired)
                    setPending(tr("trust list of %1").arg(name));
            });
        });
}
