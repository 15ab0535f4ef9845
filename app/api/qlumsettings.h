#pragma once
#include <app/api/qlumapplicationinterface.h>

#include <QLatin1String>
#include <QString>
#include <QVariant>

#include <type_traits>

/// A setting of the user: its key, its type and its one default. Made once as a constant; who reads it names
/// neither again. Any thread but for store(), which belongs on the GUI thread.
template <typename T>
class QlumSetting
{
public:
    using Standard = std::conditional_t<std::is_same_v<T, QString>, QLatin1String, T>;

    constexpr QlumSetting(const char* key, Standard standard) : m_key(key), m_standard(standard) {}

    [[nodiscard]] QString key() const { return QLatin1String(m_key); }
    /// The default.
    [[nodiscard]] T standard() const { return m_standard; }
    /// As the user has it; the default when it is not set, makes no sense as a T, or there is no application.
    [[nodiscard]] T
    value(const QlumApplicationInterface* application = QlumApplicationInterface::instance()) const
    {
        if (!application)
            return standard();
        QVariant stored = application->settingsValue(key(), QVariant::fromValue<T>(standard()));
        return stored.convert(qMetaTypeId<T>()) ? stored.value<T>() : standard();
    }
    /// Keeps a value.
    void store(QlumApplicationInterface& application, const T& value) const
    {
        application.setSettingsValue(key(), QVariant::fromValue<T>(value));
    }

private:
    const char* m_key;
    Standard m_standard;
};

/// The settings of the application itself; tools have theirs beside their plugin. Times are milliseconds.
namespace QlumSettings {
// connections
inline constexpr QlumSetting<unsigned int> connectTimeout{"General.ConnectTimeout", 5000};
inline constexpr QlumSetting<double> sessionTimeout{"General.SessionTimeout", 1200000.0};
inline constexpr QlumSetting<unsigned int> publishTimeout{"General.PublishTimeout", 60000};
inline constexpr QlumSetting<unsigned int> secureChannelLifetime{"General.SecureChannelLifetime", 3600000};
inline constexpr QlumSetting<unsigned int> callTimeout{"General.CallTimeout", 10000};
inline constexpr QlumSetting<unsigned int> internalCallTimeout{"General.InternalServiceCallTimeout", 5000};
inline constexpr QlumSetting<QString> localeId{"General.LocaleId", QLatin1String("en")};
inline constexpr QlumSetting<bool> automaticReconnect{"General.AutomaticReconnect", true};
inline constexpr QlumSetting<unsigned int> watchdogTime{"General.WatchdogTime", 5000};
inline constexpr QlumSetting<unsigned int> watchdogTimeout{"General.WatchdogTimeout", 5000};
inline constexpr QlumSetting<unsigned int> maxOperations{"General.MaxOperationsPerServiceCall", 0};
inline constexpr QlumSetting<QString> typeDictionaryMode{"General.TypeDictionaryMode",
                                                         QLatin1String("Reconnect")};
inline constexpr QlumSetting<bool> modelChangeEvents{"General.SubscribeForModelChangeEvents", true};
// findings about server certificates that the user lets pass
inline constexpr QlumSetting<bool> ignoreTime{"General.DisableError.CertificateTimeInvalid", false};
inline constexpr QlumSetting<bool> ignoreIssuerTime{"General.DisableError.CertificateIssuerTimeInvalid",
                                                    false};
inline constexpr QlumSetting<bool> ignoreNoRevocation{"General.DisableError.CertificateRevocationUnknown",
                                                      false};
inline constexpr QlumSetting<bool> ignoreNoIssuerRevocation{
    "General.DisableError.CertificateIssuerRevocationUnknown", false};
// address space
inline constexpr QlumSetting<unsigned int> browseTimeout{"General.BrowseTimeout", 10000};
inline constexpr QlumSetting<unsigned int> maxReferences{"General.MaxReferencesToReturn", 100};
inline constexpr QlumSetting<int> maxBrowseNextCalls{"General.MaxBrowseNextCalls", 1000};
/// Asks the server about each object, so it is for the user to decide.
inline constexpr QlumSetting<bool> retrieveIcons{"General.RetrieveIcons", false};
// project
inline constexpr QlumSetting<int> recentFiles{"General.NoOfRecentFiles", 5};
inline constexpr QlumSetting<bool> suppressSaveOnExit{"General.SuppressSaveOnExit", false};
// log and trace
inline constexpr QlumSetting<QString> logLevel{"General.LogLevel", QLatin1String("ALL")};
inline constexpr QlumSetting<int> logMaxEntries{"General.LogMaxEntries", 10000};
inline constexpr QlumSetting<bool> logShowDate{"General.LogShowDateWithTimestamps", false};
inline constexpr QlumSetting<bool> sdkTraceEnabled{"Trace.SDKTraceEnabled", false};
inline constexpr QlumSetting<QString> sdkTraceLevel{"Trace.SDKTraceLevel", QLatin1String("Info")};
inline constexpr QlumSetting<bool> stackTraceEnabled{"Trace.StackTraceEnabled", false};
inline constexpr QlumSetting<QString> stackTraceLevel{"Trace.StackTraceLevel", QLatin1String("INFO")};
inline constexpr QlumSetting<unsigned int> maxTraceEntries{"Trace.MaxTraceEntries", 100000};
inline constexpr QlumSetting<unsigned int> traceBackupFiles{"Trace.NumBackupFiles", 5};
// updates
inline constexpr QlumSetting<int> updateInterval{"AutomaticUpdate.UpdateInterval", 7};
} // namespace QlumSettings
