#include <servers/qlumsessionoptions.h>

#include <app/api/qlumsettings.h>
#include <app/api/qlumtext.h>

#include <QSettings>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <algorithm>
#include <array>
#include <limits>

namespace {
using Options = QlumSessionOptions;

constexpr unsigned int sessionHour = 3'600'000; // ms
constexpr unsigned int longest = std::numeric_limits<int>::max();
constexpr int mostLocales = 10;
constexpr int longestLocale = 35; // of a language with everything that may follow it
const QLatin1String reconnectKey("Session.AutomaticReconnect");
const QLatin1String dictionaryKey("Session.TypeDictionaryMode");
const QLatin1String localesKey("Session.LocaleIds");

constexpr std::array optionFields{
    Options::Field{"Session.ConnectTimeout", &Options::connectTimeout, 100, sessionHour,
                   [] { return QlumSettings::connectTimeout.value(); }},
    Options::Field{"Session.SessionTimeout", &Options::sessionTimeout, 1000, longest,
                   [] { return static_cast<unsigned int>(QlumSettings::sessionTimeout.value()); }},
    Options::Field{"Session.PublishTimeout", &Options::publishTimeout, 1000, sessionHour,
                   [] { return QlumSettings::publishTimeout.value(); }},
    Options::Field{"Session.SecureChannelLifetime", &Options::secureChannelLifetime, 1000, longest,
                   [] { return QlumSettings::secureChannelLifetime.value(); }},
    Options::Field{"Session.WatchdogTime", &Options::watchdogTime, 1000, sessionHour,
                   [] { return QlumSettings::watchdogTime.value(); }},
    Options::Field{"Session.WatchdogTimeout", &Options::watchdogTimeout, 100, sessionHour,
                   [] { return QlumSettings::watchdogTimeout.value(); }},
    Options::Field{"Session.InternalCallTimeout", &Options::internalCallTimeout, 100, sessionHour,
                   [] { return QlumSettings::internalCallTimeout.value(); }},
    Options::Field{"Session.MaxOperations", &Options::maxOperations, 0, longest,
                   [] { return QlumSettings::maxOperations.value(); }},
};

Options::Number numberWithin(const QVariant& stored, const Options::Field& field)
{
    bool ok = false;
    const unsigned int value = stored.toUInt(&ok);
    return ok && value >= field.minimum && value <= field.maximum ? Options::Number(value) : std::nullopt;
}

template <typename T>
void storeOrRemove(QSettings& settings, const QString& key, bool isSet, const T& value)
{
    if (isSet)
        settings.setValue(key, value);
    else
        settings.remove(key);
}
} // namespace

std::span<const Options::Field> QlumSessionOptions::fields()
{
    return optionFields;
}

QStringList QlumSessionOptions::localesOf(const QString& text)
{
    QStringList locales;
    for (const QString& part : text.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        const QString locale = part.trimmed();
        if (!locale.isEmpty() && locale.size() <= longestLocale && locales.size() < mostLocales &&
            !locales.contains(locale))
            locales.append(locale);
    }
    return locales;
}

void QlumSessionOptions::applyTo(UaClientSdk::SessionConnectInfo& info) const
{
    info.connectTimeout = connectTimeout.value_or(info.connectTimeout);
    if (sessionTimeout)
        info.sessionTimeout = *sessionTimeout;
    info.publishTimeout = publishTimeout.value_or(info.publishTimeout);
    info.secureChannelLifetime = secureChannelLifetime.value_or(info.secureChannelLifetime);
    info.watchdogTime = watchdogTime.value_or(info.watchdogTime);
    info.watchdogTimeout = watchdogTimeout.value_or(info.watchdogTimeout);
    info.internalServiceCallTimeout = internalCallTimeout.value_or(info.internalServiceCallTimeout);
    info.maxOperationsPerServiceCall = maxOperations.value_or(info.maxOperationsPerServiceCall);
    info.automaticReconnect = automaticReconnect.value_or(info.automaticReconnect);
    if (localeIds.isEmpty())
        return;
    info.localeId = toUaString(localeIds.first());
    info.additionalLocaleIds.clear();
    for (int i = 1; i < localeIds.size(); ++i)
        static_cast<void>(info.additionalLocaleIds.append(*toUaString(localeIds.at(i)).get()));
}

void QlumSessionOptions::store(QSettings& settings) const
{
    for (const Field& field : optionFields) {
        const Number& number = this->*field.value;
        storeOrRemove(settings, QLatin1String(field.key), number.has_value(), number.value_or(0));
    }
    storeOrRemove(settings, reconnectKey, automaticReconnect.has_value(), automaticReconnect.value_or(false));
    storeOrRemove(settings, dictionaryKey, !typeDictionaryMode.isEmpty(), typeDictionaryMode);
    storeOrRemove(settings, localesKey, !localeIds.isEmpty(), localeIds);
}

QlumSessionOptions QlumSessionOptions::fromSettings(const QSettings& settings)
{
    QlumSessionOptions options;
    for (const Field& field : optionFields)
        options.*field.value = numberWithin(settings.value(QLatin1String(field.key)), field);
    if (settings.contains(reconnectKey))
        options.automaticReconnect = settings.value(reconnectKey).toBool();
    const QString mode = settings.value(dictionaryKey).toString();
    for (const char* known : {"FirstUse", "Manual", "Connect", "Reconnect"})
        if (mode == QLatin1String(known))
            options.typeDictionaryMode = mode;
    options.localeIds = localesOf(settings.value(localesKey).toStringList().join(QLatin1Char(',')));
    return options;
}
