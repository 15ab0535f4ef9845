#pragma once
#include <app/api/qlumapplicationinterface.h>

#include <QLatin1String>
#include <QString>
#include <QVariant>

#include <string_view>
#include <type_traits>

/// A setting of the user: its key, its type and its one default. Made once as a constant; who reads it names
/// neither again. Any thread but for store(), which belongs on the GUI thread.
template <typename T>
class QlumSetting
{
public:
    /// How the default is written in a constant.
    using Standard = std::conditional_t<std::is_same_v<T, QString>, std::string_view, T>;

    /// The key must live as long as the program.
    constexpr QlumSetting(const char* key, Standard standard) : m_key(key), m_standard(standard) {}

    /// Dotted, as it stands in the file.
    [[nodiscard]] QString key() const { return QLatin1String(m_key); }
    /// The default.
    [[nodiscard]] T standard() const
    {
        if constexpr (std::is_same_v<T, QString>)
            return QString::fromLatin1(m_standard.data(), static_cast<int>(m_standard.size()));
        else
            return m_standard;
    }
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
// appearance
/// System, Light or Dark.
inline constexpr QlumSetting<QString> palette{"Appearance.Palette", "System"};
/// System, or how many per cent of the system's size everything has.
inline constexpr QlumSetting<QString> scale{"Appearance.Scale", "System"};
/// System, or the name of a translation, such as de.
inline constexpr QlumSetting<QString> language{"Appearance.Language", "System"};
/// System or ISO.
inline constexpr QlumSetting<QString> timeFormat{"Appearance.TimeFormat", "System"};
/// Whether times are shown in UTC, not in local time.
inline constexpr QlumSetting<bool> utcTimes{"Appearance.UtcTimes", false};
/// Whether colours of a status can be told apart without seeing red and green.
inline constexpr QlumSetting<bool> safeStatusColours{"Appearance.SafeStatusColours", false};
// connections
/// For a server to answer when a connection is made.
inline constexpr QlumSetting<unsigned int> connectTimeout{"General.ConnectTimeout", 5000};
/// How long a server keeps a session without a connection.
inline constexpr QlumSetting<double> sessionTimeout{"General.SessionTimeout", 1200000.0};
/// How long a server may hold a request for values back.
inline constexpr QlumSetting<unsigned int> publishTimeout{"General.PublishTimeout", 60000};
/// Of the keys of a connection.
inline constexpr QlumSetting<unsigned int> secureChannelLifetime{"General.SecureChannelLifetime", 3600000};
/// For calls on behalf of the user.
inline constexpr QlumSetting<unsigned int> callTimeout{"General.CallTimeout", 10000};
/// For calls on Tavelin's own account.
inline constexpr QlumSetting<unsigned int> internalCallTimeout{"General.InternalServiceCallTimeout", 5000};
/// Language of the texts of servers.
inline constexpr QlumSetting<QString> localeId{"General.LocaleId", "en"};
/// Whether a lost connection is restored.
inline constexpr QlumSetting<bool> automaticReconnect{"General.AutomaticReconnect", true};
/// Between two looks at the state of a server.
inline constexpr QlumSetting<unsigned int> watchdogTime{"General.WatchdogTime", 5000};
/// For one such look.
inline constexpr QlumSetting<unsigned int> watchdogTimeout{"General.WatchdogTimeout", 5000};
/// Most nodes in a call; 0 leaves it to the server.
inline constexpr QlumSetting<unsigned int> maxOperations{"General.MaxOperationsPerServiceCall", 0};
/// When type definitions are loaded: FirstUse, Manual, Connect or Reconnect.
inline constexpr QlumSetting<QString> typeDictionaryMode{"General.TypeDictionaryMode", "Reconnect"};
/// Whether servers tell of changes of their address space.
inline constexpr QlumSetting<bool> modelChangeEvents{"General.SubscribeForModelChangeEvents", true};
/// What may be done on servers that are new in a project: Look, Operate or Commission.
inline constexpr QlumSetting<QString> newServerRole{"General.NewServerRole", "Operate"};
// findings about server certificates that the user lets pass
/// That they are expired or not yet valid.
inline constexpr QlumSetting<bool> ignoreTime{"General.DisableError.CertificateTimeInvalid", false};
/// That an issuer is expired or not yet valid.
inline constexpr QlumSetting<bool> ignoreIssuerTime{"General.DisableError.CertificateIssuerTimeInvalid",
                                                    false};
/// That there is no revocation list for them.
inline constexpr QlumSetting<bool> ignoreNoRevocation{"General.DisableError.CertificateRevocationUnknown",
                                                      false};
/// That there is none for an issuer.
inline constexpr QlumSetting<bool> ignoreNoIssuerRevocation{
    "General.DisableError.CertificateIssuerRevocationUnknown", false};
// address space
/// For a server to list what is below a node.
inline constexpr QlumSetting<unsigned int> browseTimeout{"General.BrowseTimeout", 10000};
/// In an answer; 0 leaves it to the server.
inline constexpr QlumSetting<unsigned int> maxReferences{"General.MaxReferencesToReturn", 100};
/// For one node; -1 for no limit.
inline constexpr QlumSetting<int> maxBrowseNextCalls{"General.MaxBrowseNextCalls", 1000};
/// Asks the server about each object, so it is for the user to decide.
inline constexpr QlumSetting<bool> retrieveIcons{"General.RetrieveIcons", false};
// program
/// The version that ran before this one; empty at the first start.
inline constexpr QlumSetting<QString> lastVersion{"General.LastVersion", ""};
// project
/// How many projects the menu offers.
inline constexpr QlumSetting<int> recentFiles{"General.NoOfRecentFiles", 5};
/// Whether an unsaved project is given up without a question.
inline constexpr QlumSetting<bool> suppressSaveOnExit{"General.SuppressSaveOnExit", false};
// log and trace
/// The least serious level that is shown.
inline constexpr QlumSetting<QString> logLevel{"General.LogLevel", "ALL"};
/// How many entries the log window keeps.
inline constexpr QlumSetting<int> logMaxEntries{"General.LogMaxEntries", 10000};
/// Whether entries have the date, too.
inline constexpr QlumSetting<bool> logShowDate{"General.LogShowDateWithTimestamps", false};
/// Whether Tavelin and the client layer write a trace.
inline constexpr QlumSetting<bool> sdkTraceEnabled{"Trace.SDKTraceEnabled", false};
/// How much they write.
inline constexpr QlumSetting<QString> sdkTraceLevel{"Trace.SDKTraceLevel", "Info"};
/// Whether the communication stack writes a trace.
inline constexpr QlumSetting<bool> stackTraceEnabled{"Trace.StackTraceEnabled", false};
/// How much it writes.
inline constexpr QlumSetting<QString> stackTraceLevel{"Trace.StackTraceLevel", "INFO"};
/// Lines in a trace file.
inline constexpr QlumSetting<unsigned int> maxTraceEntries{"Trace.MaxTraceEntries", 100000};
/// How many older trace files are kept.
inline constexpr QlumSetting<unsigned int> traceBackupFiles{"Trace.NumBackupFiles", 5};
// updates
/// Days between two looks for a new version.
inline constexpr QlumSetting<int> updateInterval{"AutomaticUpdate.UpdateInterval", 7};
} // namespace QlumSettings
