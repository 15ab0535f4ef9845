// Passwords in the user interface, which must not stay in memory.
#pragma once

#include <uaclientsdk/secretbytes.h>

#include <QString>

#include <concepts>
#include <utility>

class QLineEdit;

/// Empties the text; when nobody shares its characters, they are overwritten before.
void qlumWipe(QString& text);

/// A password. Copies share its characters, which the last of them overwrites when it goes or gets other
/// ones; a plain QString made from it shares them, too, and overwrites nothing.
class QlumSecretText
{
public:
    QlumSecretText() = default; ///< empty
    /// Of whatever makes a QString, and as silently. Only of characters that nobody else keeps can the last
    /// holder be here.
    template <std::convertible_to<QString> Text>
    QlumSecretText(Text&& text) : m_text(std::forward<Text>(text))
    {
    }
    ~QlumSecretText() { qlumWipe(m_text); }
    QlumSecretText(const QlumSecretText& other) = default;     ///< shares
    QlumSecretText(QlumSecretText&& other) noexcept = default; ///< leaves the other empty
    /// Lets go of what it had as if it ended.
    QlumSecretText& operator=(QlumSecretText other) noexcept
    {
        m_text.swap(other.m_text); // which goes at the end of the call
        return *this;
    }

    /// Borrowed; a copy of it delays the wiping, or prevents it when it is the last.
    [[nodiscard]] const QString& text() const { return m_text; }
    [[nodiscard]] bool isEmpty() const { return m_text.isEmpty(); } ///< null counts as empty
    void clear() { qlumWipe(m_text); }                              ///< other copies stay

    /// By their characters.
    friend bool operator==(const QlumSecretText&, const QlumSecretText&) = default;

private:
    QString m_text;
};

/// In UTF-8, as it goes to a server.
[[nodiscard]] UaClientSdk::SecretBytes qlumToSecretBytes(const QlumSecretText& password);

/// What the field holds, which is empty afterwards and says nothing of it.
[[nodiscard]] QlumSecretText qlumTakePassword(QLineEdit& field);
