#include <app/api/qlumsecret.h>

#include <QByteArray>
#include <QChar>
#include <QLineEdit>
#include <QSignalBlocker>

#include <cstddef>
#include <string.h> // explicit_bzero is not in std
#include <string_view>

void qlumWipe(QString& text)
{
    if (text.isDetached())
        ::explicit_bzero(text.data(), static_cast<std::size_t>(text.size()) * sizeof(QChar));
    text = QString();
}

UaClientSdk::SecretBytes qlumToSecretBytes(const QlumSecretText& password)
{
    struct Wiped
    {
        ~Wiped() { ::explicit_bzero(bytes.data(), static_cast<std::size_t>(bytes.size())); }
        QByteArray bytes;
    };
    const Wiped utf8{password.text().toUtf8()};
    return UaClientSdk::SecretBytes(
        std::string_view(utf8.bytes.constData(), static_cast<std::size_t>(utf8.bytes.size())));
}

QlumSecretText qlumTakePassword(QLineEdit& field)
{
    QlumSecretText password(field.text());
    const QSignalBlocker quiet(field); // dialogs do this while they go
    field.setText(QString());          // unlike clear(), lets go of the characters as they are
    return password;
}
