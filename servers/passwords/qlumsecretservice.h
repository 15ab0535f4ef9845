#pragma once
#include <servers/passwords/qlumkeyring.h>

#include <stop_token>
#include <string>

/// The secret service of the desktop (org.freedesktop.secrets on the session bus). A service that has died
/// and was started again is found again.
class QlumSecretService : public QlumKeyring
{
public:
    QlumKeyringAnswer check(const std::stop_token& stop) override;
    QlumKeyringAnswer find(const QlumKeyringKey& key, UaClientSdk::SecretBytes& password,
                           const std::stop_token& stop) override;
    QlumKeyringAnswer keep(const QlumKeyringKey& key, const UaClientSdk::SecretBytes& password,
                           const std::string& label, const std::stop_token& stop) override;
    QlumKeyringAnswer forget(const QlumKeyringKey& key, const std::stop_token& stop) override;
};
