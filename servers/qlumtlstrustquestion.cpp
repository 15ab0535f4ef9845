#include <servers/qlumtlstrustquestion.h>

#include <app/api/qlumtext.h>
#include <certificates/qlumtlsoverrules.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatus.h>
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

void QlumTlsTrustQuestion::begin(const QString& url)
{
    m_declined.clear();
    const std::lock_guard lock(m_mutex);
    m_url = url;
}

bool QlumTlsTrustQuestion::isOverruled(const UaStatus& finding, const UaByteString& certificate) const
{
    const QString url = [this] {
        const std::lock_guard lock(m_mutex);
        return m_url;
    }();
    return qlumIsTlsOverruled(url, certificate, finding.statusCode());
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
    if (failure.certificate == m_declined) {
        m_permit.release();
        return;
    }
    log(m_log, m_serverName, failure.status);
    const UaByteString certificate(failure.certificate.size(),
                                   reinterpret_cast<const OpcUa_Byte*>(failure.certificate.constData()));
    m_isOpen = true;
    m_prompts.askTlsTrust(m_serverName, m_url, certificate, UaStatusCode(failure.status),
                          [this, der = failure.certificate](bool isTrusted) { take(der, isTrusted); });
}

void QlumTlsTrustQuestion::take(const QByteArray& certificate, bool isTrusted)
{
    m_declined = isTrusted ? QByteArray() : certificate;
    m_isOpen = false;
    m_permit.release();
    if (isTrusted)
        emit trusted();
}
