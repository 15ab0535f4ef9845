#include <servers/passwords/qlumpasswordkeeper.h>

#include <app/api/qlumjob.h>
#include <uaclientsdk/secretbytes.h>

#include <QPointer>

#include <span>
#include <stop_token>
#include <string>
#include <utility>

namespace {
QPointer<QlumPasswordKeeper>& currentKeeper()
{
    static QPointer<QlumPasswordKeeper> keeper;
    return keeper;
}

std::stop_token stopOf(QlumJob& job)
{
    std::stop_source source;
    job.whenCancelled([source]() mutable { source.request_stop(); });
    return source.get_token();
}

QlumSecretText textOf(const UaClientSdk::SecretBytes& password)
{
    const std::span<const OpcUa_Byte> bytes = password.bytes();
    return QString::fromUtf8(reinterpret_cast<const char*>(bytes.data()), static_cast<int>(bytes.size()));
}
} // namespace

QlumPasswordKeeper::QlumPasswordKeeper(std::unique_ptr<QlumKeyring> keyring, QObject* parent)
    : QObject(parent), m_log(tr("Passwords")), m_keyring(std::move(keyring))
{
    currentKeeper() = this;
    m_pool.add({}, [this, ring = m_keyring](QlumJob& job) {
        const QlumKeyringAnswer answer = ring->check(stopOf(job));
        job.post([this, answer] { take(answer); });
    });
}

QlumPasswordKeeper::~QlumPasswordKeeper()
{
    m_pool.cancelAll();
}

QlumPasswordKeeper* QlumPasswordKeeper::instance()
{
    return currentKeeper();
}

QString QlumPasswordKeeper::rememberText()
{
    return instance() && instance()->isWorking()
               ? tr("&Remember the password in the desktop's password store")
               : tr("&Remember the password until the program ends");
}

QString QlumPasswordKeeper::rememberHelp()
{
    const QString always = tr("<b>Remember the password</b><br>The password is asked for once. It is never "
                              "written to a file of Tavelin.");
    if (instance() && instance()->isWorking())
        return always + QLatin1Char(' ') +
               tr("The desktop's password store keeps it for this server, endpoint and user, and forgets it "
                  "when one of these changes or the server is removed.");
    return always + QLatin1Char(' ') +
           tr("The desktop's password store cannot be reached, so it is forgotten when the program ends.");
}

void QlumPasswordKeeper::take(const QlumKeyringAnswer& answer)
{
    const auto state = answer.state;
    if (state == QlumKeyringAnswer::Cancelled)
        return;
    m_isWorking = state != QlumKeyringAnswer::Absent && state != QlumKeyringAnswer::Failed;
}

QString QlumPasswordKeeper::problemOf(const QlumKeyringAnswer& answer)
{
    switch (answer.state) {
    case QlumKeyringAnswer::Absent:
        return tr("The desktop's password store cannot be reached.");
    case QlumKeyringAnswer::Locked:
        return tr("The desktop's password store is locked.");
    case QlumKeyringAnswer::Failed:
        return tr("The desktop's password store has failed.");
    default:
        return {};
    }
}

void QlumPasswordKeeper::log(const QlumKeyringAnswer& answer, const QString& what)
{
    const QString problem = problemOf(answer);
    if (problem.isEmpty())
        return;
    const QString words = QString::fromStdString(answer.words);
    m_log.write(QlumLogLevel::Warning, words.isEmpty()
                                           ? QStringLiteral("%1 %2").arg(what, problem)
                                           : QStringLiteral("%1 %2 (%3)").arg(what, problem, words));
}

QlumPasswordKeeper::Ticket QlumPasswordKeeper::find(const QlumKeyringKey& key, Found found)
{
    return m_pool.add(
        {tr("Asking the desktop's password store")},
        [this, ring = m_keyring, key, found](QlumJob& job) {
            UaClientSdk::SecretBytes bytes;
            const QlumKeyringAnswer answer = ring->find(key, bytes, stopOf(job));
            job.post([this, answer, found, password = textOf(bytes)] {
                take(answer);
                log(answer, tr("The password was not found."));
                found(password, problemOf(answer));
            });
        },
        [found](QlumWorkEnd end) {
            if (end != QlumWorkEnd::Done)
                found({}, {}); // the user would rather enter it
        });
}

void QlumPasswordKeeper::giveUp(Ticket ticket)
{
    m_pool.giveUp(ticket);
}

void QlumPasswordKeeper::keep(const QlumKeyringKey& key, const QlumSecretText& password,
                              const QString& server)
{
    const std::string label = tr("Tavelin: %1").arg(server).toStdString();
    m_pool.add({tr("Keeping a password in the desktop's password store")}, [this, ring = m_keyring, key,
                                                                            password, label](QlumJob& job) {
        const QlumKeyringAnswer answer = ring->keep(key, qlumToSecretBytes(password), label, stopOf(job));
        job.post([this, answer] {
            take(answer);
            log(answer, tr("The password is kept until the program ends."));
        });
    });
}

void QlumPasswordKeeper::forget(const QlumKeyringKey& key)
{
    m_pool.add(
        {},
        [this, ring = m_keyring, key](QlumJob& job) {
            const QlumKeyringAnswer answer = ring->forget(key, stopOf(job));
            job.post([this, answer] {
                take(answer);
                log(answer, tr("A password may not have been forgotten."));
            });
        });
}
