#include <app/settings/qlumsettingsdefaults.h>

#include <app/api/qlumcalltimeout.h>
#include <app/api/qlumtext.h>
#include <uabase/system/uadir.h>

#include <QDir>
#include <QString>

namespace {
QVariant text(const char* value)
{
    return QString::fromLatin1(value);
}

QVariant number(unsigned int value)
{
    return value;
}

std::vector<QlumSettingDefault> makeDefaults()
{
    const QString traceFile = QDir::toNativeSeparators(toQString(UaDir::applicationDataPath()) +
                                                       QStringLiteral("/korvanda/tavelin/trace/trace.log"));
    return {
        // connections; times are milliseconds
        {"General.ConnectTimeout", number(5000)},
        {"General.SessionTimeout", 1200000.0},
        {"General.PublishTimeout", number(60000)},
        {"General.SecureChannelLifetime", number(3600000)},
        {"General.CallTimeout", number(qlumDefaultCallTimeout)},
        {"General.BrowseTimeout", number(10000)},
        {"General.InternalServiceCallTimeout", number(5000)},
        {"General.LocaleId", text("en")},
        {"General.AutomaticReconnect", true},
        {"General.WatchdogTime", number(5000)},
        {"General.WatchdogTimeout", number(5000)},
        {"General.MaxOperationsPerServiceCall", number(0)},
        {"General.TypeDictionaryMode", text("Reconnect")},
        {"General.SubscribeForModelChangeEvents", true},
        // findings about server certificates that the user lets pass
        {"General.DisableError.CertificateTimeInvalid", false},
        {"General.DisableError.CertificateIssuerTimeInvalid", false},
        {"General.DisableError.CertificateRevocationUnknown", false},
        {"General.DisableError.CertificateIssuerRevocationUnknown", false},
        // address space
        {"General.MaxReferencesToReturn", number(100)},
        {"General.MaxBrowseNextCalls", 1000},
        {"General.RetrieveIcons", false}, // asks the server about each object: the user decides
        // project
        {"General.NoOfRecentFiles", 5},
        {"General.SuppressSaveOnExit", false},
        // log and trace
        {"General.LogLevel", text("ALL")},
        {"General.LogMaxEntries", 10000},
        {"General.LogShowDateWithTimestamps", false},
        {"Trace.SDKTraceEnabled", false},
        {"Trace.SDKTraceLevel", text("Info")},
        {"Trace.StackTraceEnabled", false},
        {"Trace.StackTraceLevel", text("INFO")},
        {"Trace.Filename", traceFile},
        {"Trace.MaxTraceEntries", number(100000)},
        {"Trace.NumBackupFiles", number(5)},
        // whether to look for updates at all is the user's to say, so it has no default
        {"AutomaticUpdate.UpdateInterval", 7},
    };
}
} // namespace

const std::vector<QlumSettingDefault>& qlumSettingsDefaults()
{
    static const std::vector<QlumSettingDefault> defaults = makeDefaults();
    return defaults;
}
