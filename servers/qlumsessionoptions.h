#pragma once
#include <uaclientsdk/sessionconnectinfo.h>

#include <QString>
#include <QStringList>

#include <optional>
#include <span>

class QSettings;

/// What the sessions of one server are asked for instead of what the settings of the program say. Whatever is
/// not set follows those settings, also when they change later.
struct QlumSessionOptions
{
    /// Milliseconds, but for the number of operations.
    using Number = std::optional<unsigned int>;

    Number connectTimeout;
    Number sessionTimeout;
    Number publishTimeout;
    Number secureChannelLifetime;
    Number watchdogTime;
    Number watchdogTimeout;
    Number internalCallTimeout;
    Number maxOperations;
    std::optional<bool> automaticReconnect;
    QString typeDictionaryMode; ///< FirstUse, Manual, Connect or Reconnect; empty: not set
    QStringList localeIds;      ///< the best first; empty: not set

    /// One of the numbers, with what it is stored as and stands for when it is not set.
    struct Field
    {
        const char* key;
        Number QlumSessionOptions::*value;
        unsigned int minimum;
        unsigned int maximum;
        unsigned int (*standard)();
    };
    [[nodiscard]] static std::span<const Field> fields();
    /// "en, de" as a list: trimmed, without empty and endless ones, at most ten.
    [[nodiscard]] static QStringList localesOf(const QString& text);

    /// Overwrites what is set. The type dictionary mode, which is a text here, is the caller's.
    void applyTo(UaClientSdk::SessionConnectInfo& info) const;
    /// Writes what is set into the open group, and removes what is not.
    void store(QSettings& settings) const;
    /// Numbers outside of their range count as not set.
    [[nodiscard]] static QlumSessionOptions fromSettings(const QSettings& settings);

    friend bool operator==(const QlumSessionOptions&, const QlumSessionOptions&) = default;
};
