// Who is to log in, at a connect or in the place of somebody else.
#include <servers/qlumconnectflow.h>

#include <app/api/qlumsecret.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_statuscodes.h>
#include <servers/passwords/qlumpasswordkeeper.h>
#include <servers/qlumconnectfailure.h>
#include <servers/qlumconnectinfo.h>
#include <servers/qlumconnectprompts.h>
#include <servers/qlumendpoint.h>
#include <uabase/values/uabytestring.h>

#include <QString>
#include <QUrl>

#include <optional>
#include <utility>

void QlumConnectFlow::identifyUser()
{
    if (!m_changesUser)
        return identify(tr("Used UserTokenType: %1"));
    m_prompts.askUser(passwordQuestion(),
                      {m_setting.userTokenType, m_setting.userName, QlumSecretText(),
                       m_setting.certificateFile, m_setting.privateKeyFile},
                      answer(&QlumConnectFlow::takeUser));
    asking();
}

void QlumConnectFlow::takeUser(const std::optional<QlumUserChoice>& choice)
{
    if (!choice)
        return giveUpByUser();
    m_keepsEntered = m_keepsEntered && choice->tokenType == QlumDiscoverySetting::UserName;
    m_setting.userTokenType = choice->tokenType;
    m_setting.userName = choice->userName;
    m_setting.password = choice->password;
    m_setting.certificateFile = choice->certificateFile;
    m_setting.privateKeyFile = choice->privateKeyFile;
    identify(tr("ChangeUser with UserTokenType: %1"));
}

void QlumConnectFlow::identify(const QString& told)
{
    switch (m_setting.userTokenType) {
    case QlumDiscoverySetting::UserName:
        m_log.info(told.arg(QLatin1String("UserName")));
        if (m_changesUser)
            return takeCredentials(QlumCredentials{m_setting.userName, m_setting.password});
        return identifyByName();
    case QlumDiscoverySetting::Certificate:
        m_log.info(told.arg(QLatin1String("Certificate")));
        return identifyByCertificate();
    default:
        m_log.info(told.arg(QLatin1String("Anonymous")));
        m_attempt.security.setAnonymousUserIdentity();
        return userIsKnown();
    }
}

// A password that was given for a protected connection does not leave in the clear without a question.
bool QlumConnectFlow::isStoredPasswordUsed() const
{
    return m_setting.storePassword && !m_setting.password.isEmpty() &&
           (!qlumSendsUnprotectedPassword(m_attempt.endpoint) || (m_clearPasswordAllowed && !m_identity));
}

QlumPasswordQuestion QlumConnectFlow::passwordQuestion() const
{
    QlumPasswordDanger danger = QlumPasswordDanger::Nobody;
    if (qlumSendsClearPassword(m_attempt.endpoint))
        danger = QlumPasswordDanger::Anyone;
    else if (qlumSendsUnprotectedPassword(m_attempt.endpoint))
        danger = QlumPasswordDanger::FalseServer;
    return {m_setting.displayName, m_setting.userName, QUrl(url()).host(), danger, m_passwordProblem};
}

// In the background, for the service may be slow, hang, or ask the user itself. The connect goes on by asking
// when it has none.
bool QlumConnectFlow::lookUpPassword()
{
    m_passwordKey = qlumPasswordKey(m_setting, m_attempt.endpoint.applicationUri);
    QlumPasswordKeeper* keeper = QlumPasswordKeeper::instance();
    const bool isWanted = keeper && m_setting.storePassword && m_setting.password.isEmpty() && !m_identity &&
                          !qlumSendsUnprotectedPassword(m_attempt.endpoint);
    if (std::exchange(m_isPasswordLookedUp, true) || !isWanted)
        return false;
    m_passwordLookUp = keeper->find(m_passwordKey, answer(&QlumConnectFlow::takeLookedUp));
    return true;
}

void QlumConnectFlow::takeLookedUp(const QlumSecretText& password, const QString& problem)
{
    if (std::exchange(m_passwordLookUp, 0) == 0) // it has answered before it was cancelled
        return;
    m_passwordProblem = problem;
    m_isPasswordFound = !password.isEmpty();
    m_setting.password = password;
    if (m_isPasswordFound)
        m_entered = QlumCredentials{m_setting.userName, password};
    identifyByName();
}

void QlumConnectFlow::leaveLookUp()
{
    const QlumPasswordKeeper::Ticket ticket = std::exchange(m_passwordLookUp, 0);
    if (QlumPasswordKeeper* keeper = QlumPasswordKeeper::instance(); keeper && ticket != 0)
        keeper->giveUp(ticket);
}

void QlumConnectFlow::identifyByName()
{
    if (isStoredPasswordUsed()) {
        m_attempt.security.setUserPasswordUserIdentity(toUaString(m_setting.userName),
                                                       qlumToSecretBytes(m_setting.password));
        m_attempt.security.plainPasswordAccepted = qlumSendsUnprotectedPassword(m_attempt.endpoint);
        return userIsKnown();
    }
    if (lookUpPassword())
        return;
    const auto named = answer(&QlumConnectFlow::takeCredentials);
    const QlumPasswordQuestion question = passwordQuestion();
    if (question.danger == QlumPasswordDanger::Nobody)
        m_prompts.askPassword(question, named);
    else
        m_prompts.askClearPassword(question, named);
    asking();
}

void QlumConnectFlow::takeCredentials(const std::optional<QlumCredentials>& credentials)
{
    if (!credentials)
        return giveUpByUser();
    const bool unprotected = qlumSendsUnprotectedPassword(m_attempt.endpoint);
    m_passwordKey = qlumPasswordKey(m_setting, m_attempt.endpoint.applicationUri);
    m_passwordKey.user = credentials->userName.toStdString();
    if (m_keepsEntered) {
        m_allowedFor.last() = credentials->userName;
        m_clearPasswordAllowed = unprotected;
        m_entered = QlumCredentials{credentials->userName,
                                    m_setting.storePassword ? credentials->password : QlumSecretText()};
    }
    m_attempt.security.setUserPasswordUserIdentity(toUaString(credentials->userName),
                                                   qlumToSecretBytes(credentials->password));
    m_attempt.security.plainPasswordAccepted = unprotected; // the question has said so
    userIsKnown();
}

void QlumConnectFlow::identifyByCertificate()
{
    if (m_identity)
        m_attempt.security.setUserIdentity(m_identity);
    else if (!loadUserCertificate())
        return fail({tr("The user's certificate or its private key could not be read."),
                     tr("Check the files of the identity in the properties of the server.")});
    userIsKnown();
}

bool QlumConnectFlow::loadUserCertificate()
{
    const QString unread = qlumSetUserCertificate(
        m_attempt.security,
        {m_setting.userTokenType, {}, {}, m_setting.certificateFile, m_setting.privateKeyFile});
    if (!unread.isEmpty())
        m_log.info(unread);
    return unread.isEmpty();
}

void QlumConnectFlow::userIsKnown()
{
    enter(m_changesUser ? Step::UserChange : Step::Certificate);
}
