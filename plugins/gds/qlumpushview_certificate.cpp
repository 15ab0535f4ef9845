// A new certificate for the server: made, sent, applied, and found again after the reconnect.
#include <plugins/gds/qlumpushview.h>

#include <app/api/qlumtext.h>
#include <certificates/qlumcertificatestoreconfiguration.h>
#include <certificates/qlumthumbprint.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/gds/qlumpushauthoritydialog.h>
#include <plugins/gds/qlumpushcertificatepage.h>
#include <plugins/gds/qlumpushlistpage.h>
#include <plugins/gds/qlumpushrecordpage.h>
#include <plugins/gds/qlumpushwords.h>
#include <uabase/uapkicpp/uapkiauthority.h>
#include <uabase/values/uastring.h>
#include <uawidgets/qlummessagebar.h>

#include <QDialog>
#include <QDir>
#include <QFileDialog>
#include <QPointer>

namespace {
const QString pushApplyTopic = QStringLiteral("apply");
}

// ---- authority

void QlumPushView::showAuthority()
{
    m_certificatePage->setAuthority(UaPkiAuthority::certificateIn(toUaString(m_world.authorityFolder())));
}

void QlumPushView::makeAuthority()
{
    const QPointer<QlumPushView> stillThere = this;
    QlumPushAuthorityDialog dialog(true, this);
    if (dialog.exec() != QDialog::Accepted || !stillThere)
        return;
    const QString fault = dialog.create(m_world.authorityFolder());
    if (!fault.isEmpty())
        tell(tr("The authority was not made."), fault);
    showAuthority();
}

void QlumPushView::exportAuthority()
{
    const QPointer<QlumPushView> stillThere = this;
    const QString folder = QFileDialog::getExistingDirectory(
        this, tr("Folder for the Authority's Certificate and Revocation List"));
    if (!stillThere || folder.isEmpty())
        return;
    if (!qlumWriteAuthority(m_world.authorityFolder(), folder))
        tell(tr("The authority was not exported."), tr("'%1' cannot be written.").arg(folder));
}

// ---- making

void QlumPushView::makeCertificate()
{
    const QlumPushOrder order = m_certificatePage->order();
    const bool isOwnKey = order.key == QlumPushOrder::OurNewKey;
    QlumPushPlan plan{tr("A new certificate for %1").arg(m_followed.name()), {}, {}, {}};
    if (isOwnKey)
        plan.steps = QStringList{
            tr("Make a key here"), tr("Sign it with the authority of this computer"),
            tr("UpdateCertificate with the certificate, its issuer and the key as %1; the key is wiped here")
                .arg(order.keyFormat)};
    else
        plan.steps = QStringList{order.wish.isNewKey ? tr("CreateSigningRequest; the server makes a new key")
                                                     : tr("CreateSigningRequest; the server keeps its key"),
                                 tr("Sign the request with the authority of this computer"),
                                 tr("UpdateCertificate with the certificate and its issuer")};
    plan.steps.append(tr("Put the authority among the issuers that this client knows: it can check the new "
                         "certificate then, and trusts nobody by that"));
    plan.warnings = QStringList{tr("It counts only when the changes are applied.")};
    const QPointer<QlumPushView> stillThere = this;
    if (!agree(plan))
        return;
    QlumPushAuthorityDialog dialog(false, this);
    const unsigned int id = m_followed.id();
    if (dialog.exec() != QDialog::Accepted || !stillThere || id != m_followed.id())
        return;
    start(tr("Making a certificate for a server"),
          [this, order, server = m_server, current = m_current, folder = m_world.authorityFolder(),
           password = dialog.takePassword()](QlumPushClient& client, QlumJob& job) {
              const QlumPushSigned made = qlumSignForServer(client, server, order, current, folder, password,
                                                            [&job] { return job.isCancelled(); });
              return [this, made, folder] {
                  takeSigned(made);
                  if (made.fault.isEmpty() &&
                      !qlumKnowAuthority(folder, QlumCertificateStoreConfiguration::ofApplication()))
                      tell(tr("The authority could not be put among the issuers that this client knows."),
                           tr("Export it, and add it in the certificate manager."));
              };
          });
}

void QlumPushView::saveRequest()
{
    const QlumPushOrder order = m_certificatePage->order();
    const QPointer<QlumPushView> stillThere = this;
    const QString path = QFileDialog::getSaveFileName(this, tr("Save Request"),
                                                      QDir::home().filePath(QStringLiteral("server.csr")),
                                                      tr("Certificate requests (*.csr);;All files (*)"));
    const QlumPushPlan plan{tr("A request for a certificate of %1").arg(m_followed.name()),
                            {tr("CreateSigningRequest"), tr("Write it to %1").arg(path)},
                            {},
                            {}};
    if (path.isEmpty() || !stillThere || !agree(plan))
        return;
    start(tr("Asking for a signing request"),
          [this, order, path, server = m_server](QlumPushClient& client, QlumJob&) {
              UaByteString request;
              const UaStatus status = client.createSigningRequest(server, order.wish, request);
              return [this, status, request, path] {
                  if (status.isBad())
                      return tellFault(tr("The server has made no request."),
                                       QStringLiteral("CreateSigningRequest"), status);
                  m_request = request;
                  if (!qlumWriteDer(path, request))
                      tell(tr("The request was not saved."), tr("'%1' cannot be written.").arg(path));
              };
          });
}

void QlumPushView::importAnswer()
{
    const QlumPushOrder order = m_certificatePage->order();
    const QPointer<QlumPushView> stillThere = this;
    const QString path = QFileDialog::getOpenFileName(
        this, tr("Import Answer"), QString(), tr("Certificates (*.der *.pem *.crt *.cer);;All files (*)"));
    const QlumPushPlan plan{tr("A new certificate for %1").arg(m_followed.name()),
                            {tr("UpdateCertificate with what %1 holds").arg(path)},
                            {tr("It counts only when the changes are applied.")},
                            stillThere ? qlumAnswerDoubt(path, m_request, m_current) : QString()};
    if (path.isEmpty() || !stillThere || !agree(plan))
        return;
    start(tr("Sending a certificate to a server"),
          [this, order, path, server = m_server](QlumPushClient& client, QlumJob&) {
              const QlumPushSigned sent = qlumSendAnswer(client, server, order, path);
              return [this, sent] { takeSigned(sent); };
          });
}

void QlumPushView::takeSigned(const QlumPushSigned& signedOne)
{
    if (!signedOne.fault.isEmpty())
        return tell(tr("The server did not get a new certificate."), signedOne.fault);
    m_messages->dismiss(QStringLiteral("pushCall"));
    m_returnTimer.stop(); // whatever came of an earlier one
    m_expected.clear();
    m_sent = signedOne.certificate;
    const QString name = tr("certificate %1").arg(toQString(UaPkiCertificate::fromDER(m_sent).commonName()));
    if (signedOne.isApplyRequired)
        return setPending(name);
    m_messages->tell({QlumMessage::Note,
                      pushApplyTopic,
                      tr("The server has taken the %1.").arg(name),
                      tr("It does not ask for the changes to be applied."),
                      {},
                      nullptr});
}

// ---- applying

void QlumPushView::setPending(const QString& what)
{
    if (!m_pending.contains(what))
        m_pending.append(what);
    showPending();
}

void QlumPushView::showPending()
{
    const QString what = m_pending.join(QStringLiteral(", "));
    m_certificatePage->setPending(!m_pending.isEmpty(), what);
    m_pendingText->setText(tr("Not applied yet: %1.").arg(what));
    m_pendingRow->setVisible(!m_pending.isEmpty());
}

// Without a word: either it was applied, or it is gone.
void QlumPushView::dropPending()
{
    m_pending.clear();
    m_sent.clear();
    showPending();
    m_messages->dismiss(pushApplyTopic);
}

void QlumPushView::applyChanges()
{
    QlumPushPlan plan{tr("Apply the changes on %1").arg(m_followed.name()),
                      {tr("ApplyChanges: %1").arg(m_pending.join(QStringLiteral(", ")))},
                      {},
                      {}};
    if (!m_sent.isEmpty())
        plan.warnings = QStringList{
            tr("The server closes all connections. This client connects again and asks whether to "
               "trust the new certificate; its thumbprint is %1.")
                .arg(qlumThumbprint(UaPkiCertificate::fromDER(m_sent))),
            tr("Clients that check for revocation need the issuer's revocation list in their stores, this "
               "one as well.")};
    if (!agree(plan))
        return;
    // known before the answer, which a connection that breaks may take with it
    m_expected = m_sent;
    start(tr("Applying changes of a server's configuration"),
          [this, server = m_server](QlumPushClient& client, QlumJob&) {
              const UaStatus status = client.applyChanges(server);
              return [this, status] {
                  if (status.isNotBad())
                      return awaitServer();
                  if (status == OpcUa_BadTimeout) // it may still come back with the new certificate
                      return tellFault(tr("It is not known whether the changes were applied."),
                                       QStringLiteral("ApplyChanges"), status);
                  m_expected.clear();
                  tellFault(tr("The changes were not applied."), QStringLiteral("ApplyChanges"), status);
              };
          });
}

void QlumPushView::awaitServer()
{
    dropPending();
    if (m_expected.isEmpty())
        return readList();
    m_returnTimer.start(m_world.returnTime);
    updateState();
}

// After each reading of the server: whether it has come back as it should.
bool QlumPushView::checkReturned()
{
    if (m_expected.isEmpty() || m_current.isNull())
        return false;
    if (m_current.toByteStringDER() != m_expected) {
        if (!m_returnTimer.isActive())
            m_returnTimer.start(m_world.returnTime);
        return false;
    }
    m_returnTimer.stop();
    m_expected.clear();
    dropPending(); // applied even where the server did not say so
    const QString well = tr("All is well: %1 is back with its new certificate.").arg(m_followed.name());
    writeDown(well);
    QlumMessage message{QlumMessage::Note, pushApplyTopic, well, qlumThumbprint(m_current), {}, nullptr};
    if (!m_server.missing.isEmpty())
        offerAdministrator(message);
    m_messages->tell(message);
    return true;
}

void QlumPushView::missServer()
{
    const QString name = m_followed.name();
    const bool isBack = m_followed.isUp();
    // while the user is asked about the certificate or a password, the time is his
    if (m_followed.status() == QlumConnectionStatus::Connecting)
        return m_returnTimer.start(m_world.returnTime);
    if (isBack)
        m_expected.clear();
    const QString what = isBack ? tr("%1 still has its old certificate.").arg(name)
                                : tr("%1 has not come back since the changes were applied.").arg(name);
    writeDown(what);
    m_messages->tell(
        {QlumMessage::Error,
         pushApplyTopic,
         what,
         isBack ? tr("It did not take over what was sent, or uses certificates of that type for other "
                     "endpoints. Its own log should say.")
                : tr("Connect it by hand. If it refuses this client, somebody has to put its "
                     "certificates in order on the server itself."),
         {},
         nullptr});
    updateState();
}

void QlumPushView::cancelChanges()
{
    if (!agree({tr("Discard the changes on %1").arg(m_followed.name()),
                {tr("CancelChanges: %1").arg(m_pending.join(QStringLiteral(", ")))},
                {},
                {}}))
        return;
    start(tr("Discarding changes of a server's configuration"),
          [this, server = m_server](QlumPushClient& client, QlumJob&) {
              const UaStatus status = client.cancelChanges(server);
              return [this, status] {
                  if (status.isBad())
                      return tellFault(tr("The changes were not discarded."), QStringLiteral("CancelChanges"),
                                       status);
                  dropPending();
                  readList();
              };
          });
}

void QlumPushView::resetServer()
{
    if (!agree({tr("Reset %1 to its defaults").arg(m_followed.name()),
                {QStringLiteral("ResetToServerDefaults")},
                {},
                tr("Certificates and trust lists of the server are lost; afterwards it may trust nobody.")}))
        return;
    start(tr("Resetting a server's configuration"), [this, server = m_server](QlumPushClient& client,
                                                                              QlumJob&) {
        const UaStatus status = client.resetToServerDefaults(server);
        return [this, status] {
            if (status.isBad())
                return tellFault(tr("The server was not reset."), QStringLiteral("ResetToServerDefaults"),
                                 status);
            dropPending();
            m_messages->tell({QlumMessage::Note,
                              pushApplyTopic,
                              tr("%1 was reset to its defaults.").arg(m_followed.name()),
                              tr("It may close its connections and come back with the certificate that it "
                                 "had at first."),
                              {},
                              nullptr});
            readList();
        };
    });
}
