#include <servers/qlumtlstrustquestion.h>

#include <app/api/qlumtext.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatuscode.h>

#include <utility>

QlumTlsTrustQuestion::QlumTlsTrustQuestion(const QlumLog& log, QlumConnectPrompts& prompts, QObject* parent)
    : QObject(parent), m_log(log), m_prompts(prompts)
{
    connect(this, &QlumTlsTrustQuestion::newUntrustedSSLCertificate, this,
            &QlumTlsTrustQuestion::sltUntrustedSSLCertificate, Qt::QueuedConnection);
}

QlumTlsTrustQuestion::~QlumTlsTrustQuestion()
{
    if (m_isOpen)
        m_prompts.withdraw();
}

void QlumTlsTrustQuestion::raise(const QlumTlsFailure& failure)
{
    if (m_permit.tryAcquire())
        emit newUntrustedSSLCertificate(failure.status, failure.certificate);
}

void QlumTlsTrustQuestion::setHeld(bool held)
{
    m_isHeld = held;
    if (held || !m_waiting)
        return;
    const QlumTlsFailure failure = *std::exchange(m_waiting, std::nullopt);
    emit newUntrustedSSLCertificate(failure.status, failure.certificate);
}

void QlumTlsTrustQuestion::sltUntrustedSSLCertificate(unsigned int status, const QByteArray& certificate)
{
    if (m_isHeld)
        m_waiting = QlumTlsFailure{status, certificate};
    else
        ask({status, certificate});
}

void QlumTlsTrustQuestion::log(const QlumLog& log, const QString& serverName, unsigned int status)
{
    log.error(tr("The TLS certificate of server '%1' is not trusted: '%2'")
                  .arg(serverName, qlumStatusText(status)));
}

void QlumTlsTrustQuestion::ask(const QlumTlsFailure& failure)
{
    log(m_log, m_serverName, failure.status);
    const UaByteString certificate(failure.certificate.size(),
                                   reinterpret_cast<const OpcUa_Byte*>(failure.certificate.constData()));
    m_isOpen = true;
    m_prompts.askTlsTrust(m_serverName, certificate, UaStatusCode(failure.status),
                          [this](bool isTrusted) { take(isTrusted); });
}

void QlumTlsTrustQuestion::take(bool isTrusted)
{
    m_isOpen = false;
    m_permit.release();
    if (isTrusted)
        emit trusted();
}
