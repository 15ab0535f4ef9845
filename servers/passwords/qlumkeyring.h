// Where passwords outlive the program. No Qt here: the library behind it has names that Qt defines away.
#pragma once
#include <uaclientsdk/secretbytes.h>

#include <stop_token>
#include <string>

/// Whose password it is, UTF-8.
struct QlumKeyringKey
{
    std::string serverUri; ///< by which the server calls itself; empty: any, for forget() alone
    std::string endpoint;  ///< URL and security
    std::string user;
};

/// What a call has come to.
struct QlumKeyringAnswer
{
    enum State {
        Done,
        Missing, ///< there is no such password
        Absent,  ///< there is no service to ask
        Locked,  ///< and nobody has unlocked it
        Failed,
        Cancelled
    };

    State state = Done;
    std::string words; ///< of the service, or of the library that speaks with it; may be empty
};

/// Calls block, for a few seconds or as long as the service shows the user a prompt, and end when a stop is
/// requested. One thread at a time.
class QlumKeyring
{
public:
    QlumKeyring() = default;
    virtual ~QlumKeyring() = default;
    QlumKeyring(const QlumKeyring&) = delete;
    QlumKeyring& operator=(const QlumKeyring&) = delete;

    /// Whether there is a service.
    virtual QlumKeyringAnswer check(const std::stop_token& stop) = 0;
    /// Appends the password, which was empty before.
    virtual QlumKeyringAnswer find(const QlumKeyringKey& key, UaClientSdk::SecretBytes& password,
                                   const std::stop_token& stop) = 0;
    /// Takes the place of one that was kept for the key before. The label is for those who look into the
    /// service with a program of its own.
    virtual QlumKeyringAnswer keep(const QlumKeyringKey& key, const UaClientSdk::SecretBytes& password,
                                   const std::string& label, const std::stop_token& stop) = 0;
    virtual QlumKeyringAnswer forget(const QlumKeyringKey& key, const std::stop_token& stop) = 0;
};
