#include <app/log/qlumtracesettings.h>

#include <app/api/qlumlog.h>
#include <app/api/qlumtext.h>
#include <app/settings/qlumsettingsmodel.h>
#include <opcua/opcua_channel.h>
#include <uabase/system/uatrace.h>
#include <uabase/values/uastring.h>

#include <QCoreApplication>
#include <QDir>

#include <span>

namespace {
class Text
{
    Q_DECLARE_TR_FUNCTIONS(QlumTraceSettings)
};

struct Level
{
    const char* name;
    unsigned int value;
};

constexpr Level sdkLevels[] = {{"Errors", UaTrace::Errors},     {"Warning", UaTrace::Warning},
                               {"Info", UaTrace::Info},         {"InterfaceCall", UaTrace::InterfaceCall},
                               {"CtorDtor", UaTrace::CtorDtor}, {"ProgramFlow", UaTrace::ProgramFlow},
                               {"Data", UaTrace::Data}};

constexpr Level stackLevels[] = {
    {"ERROR", OPCUA_TRACE_OUTPUT_LEVEL_ERROR},   {"WARNING", OPCUA_TRACE_OUTPUT_LEVEL_WARNING},
    {"SYSTEM", OPCUA_TRACE_OUTPUT_LEVEL_SYSTEM}, {"INFO", OPCUA_TRACE_OUTPUT_LEVEL_INFO},
    {"DEBUG", OPCUA_TRACE_OUTPUT_LEVEL_DEBUG},   {"CONTENT", OPCUA_TRACE_OUTPUT_LEVEL_CONTENT},
    {"ALL", OPCUA_TRACE_OUTPUT_LEVEL_ALL}};

constexpr Level logLevels[] = {{"ERROR", QlumLogLevel::Error}, {"WARNING", QlumLogLevel::Warning},
                               {"INFO", QlumLogLevel::Info},   {"FUNCTION", QlumLogLevel::Function},
                               {"DATA", QlumLogLevel::Data},   {"PARANOID", QlumLogLevel::Paranoid},
                               {"ALL", QlumLogLevel::All}};

QlumLog traceLog()
{
    return QlumLog(Text::tr("TraceSettings"));
}

// A name that is not in the table is told in the log and stands for the fallback.
unsigned int levelOf(const QlumSettingsModel* settings, const char* key, std::span<const Level> levels,
                     const char* fallback)
{
    const QString name = settings->value(QLatin1String(key)).toString();
    unsigned int value = 0;
    for (const Level& level : levels) {
        if (name == QLatin1String(level.name))
            return level.value;
        if (QLatin1String(level.name) == QLatin1String(fallback))
            value = level.value;
    }
    traceLog().error(Text::tr("Invalid %1 value '%2'; defaulting to '%3'")
                         .arg(QLatin1String(key), name, QLatin1String(fallback)));
    return value;
}
} // namespace

int QlumTraceSettings::logLevel() const
{
    return static_cast<int>(levelOf(m_settings, "General.LogLevel", logLevels, "ALL"));
}

int QlumTraceSettings::sdkLevel() const
{
    return static_cast<int>(levelOf(m_settings, "Trace.SDKTraceLevel", sdkLevels, "Info"));
}

unsigned int QlumTraceSettings::stackLevel() const
{
    return levelOf(m_settings, "Trace.StackTraceLevel", stackLevels, "INFO");
}

bool QlumTraceSettings::openTrace(int level) const
{
    const auto traceLevel = static_cast<UaTrace::TraceLevel>(level);
    const unsigned int entries = m_settings->value(QStringLiteral("Trace.MaxTraceEntries")).toUInt();
    const unsigned int backups = m_settings->value(QStringLiteral("Trace.NumBackupFiles")).toUInt();
    const QString name = m_settings->value(QStringLiteral("Trace.Filename")).toString();
    const UaString fileName = toUaString(QDir::fromNativeSeparators(name));
    UaTrace::setProductVersion(toUaString(QCoreApplication::applicationVersion()));
    return UaTrace::changeTrace(traceLevel, entries, backups, fileName) == 0 ||
           UaTrace::initTrace(traceLevel, entries, backups, fileName,
                              toUaString(QCoreApplication::applicationName())) == 0;
}

void QlumTraceSettings::apply() const
{
    const bool sdk = m_settings->value(QStringLiteral("Trace.SDKTraceEnabled")).toBool();
    const bool stack = m_settings->value(QStringLiteral("Trace.StackTraceEnabled")).toBool();
    const int level = sdkLevel();
    const unsigned int stackOutput = stackLevel();
    // errors of the stack reach the log window whether or not it is traced
    static_cast<void>(
        OpcUa_Trace_ChangeTraceLevel(stack ? stackOutput : OPCUA_TRACE_OUTPUT_LEVEL_ERROR)); // any will do
    if (!sdk && !stack) {
        UaTrace::closeTrace();
        return;
    }
    // the stack's records go to the same file, so it is opened for them too
    if (!openTrace(sdk ? level : static_cast<int>(UaTrace::Errors)))
        traceLog().error(Text::tr(
            "Could not init trace. Please recheck trace settings under Settings->Configure Tavelin..."));
}
