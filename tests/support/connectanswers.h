// Answers what a connect asks, by a script, instead of a user with dialogs.
#pragma once
#include <certificates/qlumtlstrust.h>
#include <servers/qlumconnectfailure.h>
#include <servers/qlumconnectprompts.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatuscode.h>

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <utility>

/// What is answered, and what was asked. Outlives the answers that read it.
struct ConnectScript
{
    bool isUnsupportedPolicyIgnored = false;
    bool isDialledHostKept = false;
    bool isWeakPolicyAllowed = false;
    std::optional<QlumCredentials> credentials; ///< nothing: cancelled
    std::optional<QlumUserChoice> user;         ///< the same
    bool isChangeAccepted = false;
    bool isTriedAgain = false; ///< once
    QlumCertificateVerdict verdict;
    bool isErrorIgnored = false;
    bool isConnectedAnew = false; ///< once
    bool isTlsTrusted = false;
    bool isSilent = false;              ///< questions stay open
    QString silentAt;                   ///< the question of that name does, once
    std::function<void()> beforeAnswer; ///< whatever the user does instead of answering

    QStringList asked; ///< names of the questions, in order
    QStringList withdrawn;
    QString serverName; ///< of the latest question that has one
    QStringList hosts;  ///< named by the server, and dialled
    QlumPasswordDanger danger = QlumPasswordDanger::Nobody;
    QString problem; ///< of the place where passwords are remembered
    QlumCertificateQuestion certificate;
    QlumConnectError error;
    QlumUserChoice proposal;
    QlumCertificateChange change;
    QlumConnectFailure failure;
};

class ConnectAnswers : public QlumConnectPrompts
{
public:
    explicit ConnectAnswers(ConnectScript& script) : m_script(script) {}

    void askUnsupportedPolicy(Decided answer) override
    {
        if (take("unsupported policy"))
            answer(m_script.isUnsupportedPolicyIgnored);
    }
    void tellFirstCertificate(Answered answer) override
    {
        if (take("first certificate"))
            answer();
    }
    void askDialledHost(const QString& server, const QString& named, const QString& dialled,
                        Decided answer) override
    {
        m_script.serverName = server;
        m_script.hosts = QStringList{named, dialled};
        if (take("dialled host"))
            answer(m_script.isDialledHostKept);
    }
    void askWeakPolicy(const QString& server, Decided answer) override
    {
        m_script.serverName = server;
        if (take("weak policy"))
            answer(m_script.isWeakPolicyAllowed);
    }
    void askPassword(const QlumPasswordQuestion& question, Named answer) override
    {
        takePassword("password", question, answer);
    }
    void askClearPassword(const QlumPasswordQuestion& question, Named answer) override
    {
        takePassword("clear password", question, answer);
    }
    void askUser(const QlumPasswordQuestion& question, const QlumUserChoice& proposal, Chosen answer) override
    {
        m_script.serverName = question.server;
        m_script.danger = question.danger;
        m_script.proposal = proposal;
        if (take("user"))
            answer(m_script.user);
    }
    void askChangedCertificate(const QlumCertificateChange& change, Decided answer) override
    {
        m_script.change = change;
        if (take("changed certificate"))
            answer(m_script.isChangeAccepted);
    }
    void askCertificate(const QlumCertificateQuestion& question, Judged answer) override
    {
        m_script.certificate = question;
        if (take("certificate"))
            answer(m_script.verdict);
    }
    void askConnectError(const QlumConnectError& error, Decided answer) override
    {
        m_script.error = error;
        if (take("connect error"))
            answer(m_script.isErrorIgnored);
    }
    void askConnectAnew(const QlumConnectError& error, Decided answer) override
    {
        m_script.error = error;
        if (take("connect anew"))
            answer(std::exchange(m_script.isConnectedAnew, false));
    }
    void askTlsTrust(const QString& server, const QString&, const UaByteString& certificate,
                     const UaStatusCode&, Decided answer) override
    {
        m_script.serverName = server;
        if (take("tls trust"))
            answer(m_script.isTlsTrusted && qlumTrustTlsCertificate(certificate));
    }
    void tellFailure(const QString& server, const QString&, const QlumConnectFailure& failure,
                     Decided answer) override
    {
        takeFailure("failure", server, failure, answer);
    }
    void tellUserRefused(const QString& server, const QlumConnectFailure& failure, Decided answer) override
    {
        takeFailure("user refused", server, failure, answer);
    }
    void withdraw() override
    {
        if (!m_script.asked.isEmpty())
            m_script.withdrawn.append(m_script.asked.last());
    }

private:
    void takePassword(const char* name, const QlumPasswordQuestion& question, const Named& answer)
    {
        m_script.serverName = question.server;
        m_script.hosts = QStringList{question.host};
        m_script.danger = question.danger;
        m_script.problem = question.problem;
        if (take(name))
            answer(m_script.credentials);
    }
    void takeFailure(const char* name, const QString& server, const QlumConnectFailure& failure,
                     const Decided& answer)
    {
        m_script.serverName = server;
        m_script.failure = failure;
        if (take(name))
            answer(std::exchange(m_script.isTriedAgain, false));
    }
    /// Whether to answer. The user may have removed the server meanwhile, and these answers with it.
    bool take(const char* question)
    {
        ConnectScript& script = m_script;
        script.asked.append(QString::fromLatin1(question));
        const bool isSilent = script.isSilent || script.silentAt == QLatin1String(question);
        if (isSilent)
            script.silentAt.clear();
        if (script.beforeAnswer)
            script.beforeAnswer();
        return !isSilent;
    }

    ConnectScript& m_script;
};
