// The pages of the application's own settings: texts, ranges, and what each is good for.
#include <app/settings/qlumsettingspages.h>

#include <app/api/qlumserverrole.h>
#include <app/api/qlumsettings.h>
#include <app/api/qlumsettingsregistry.h>
#include <app/api/qlumtext.h>
#include <app/settings/qlumlanguages.h>
#include <app/settings/qlumsettingsdialog.h>
#include <uabase/system/uadir.h>

#include <QCoreApplication>
#include <QDir>
#include <QString>
#include <QStringList>

#include <limits>

namespace {
constexpr double hour = 3600000; // ms
constexpr double noMaximum = std::numeric_limits<int>::max();

class Pages
{
    Q_DECLARE_TR_FUNCTIONS(QlumSettingsDialog)
public:
    using Row = QlumSettingRow;
    static QlumSettingsPage appearance();
    static QlumSettingsPage connections();
    static QlumSettingsPage certificates();
    static QlumSettingsPage addressSpace();
    static QlumSettingsPage log();
    static QlumSettingsPage trace();
    static QlumSettingsPage updates();
};

QlumSettingsPage Pages::appearance()
{
    namespace S = QlumSettings;
    const QString system = QStringLiteral("System");
    QStringList languages{system, QStringLiteral("en")};
    QStringList languageNames{tr("As the system"), QStringLiteral("English")};
    for (const QString& language : qlumLanguages()) {
        languages.append(language);
        languageNames.append(qlumLanguageName(language));
    }
    return {
        QStringLiteral("appearance"),
        tr("A&ppearance"),
        {
            Row::choice(S::palette,
                        {tr("&Colours:"), tr("Dark or bright windows, or as the desktop has them.")},
                        {system, QStringLiteral("Light"), QStringLiteral("Dark")},
                        {tr("As the system"), tr("Light"), tr("Dark")}),
            Row::choice(
                S::scale, {tr("&Size:"), tr("How large texts and pictures are.")},
                {system, QStringLiteral("100"), QStringLiteral("125"), QStringLiteral("150"),
                 QStringLiteral("175"), QStringLiteral("200")},
                {tr("As the system"), tr("100 %"), tr("125 %"), tr("150 %"), tr("175 %"), tr("200 %")})
                .felt(Row::AtStart),
            Row::choice(S::language,
                        {tr("&Language:"), tr("Of menus and messages; each translation that is installed "
                                              "can be chosen.")},
                        languages, languageNames)
                .felt(Row::AtStart),
            Row::choice(S::timeFormat,
                        {tr("&Dates and times:"), tr("As the system has them, or year-month-day with 24 "
                                                     "hours.")},
                        {system, QStringLiteral("ISO")}, {tr("As the system"), tr("2026-01-31 14:05:00")}),
            Row::flag(S::utcTimes,
                      {tr("Show times in &UTC"), tr("Times are those of the time zone otherwise.")}),
            Row::flag(S::safeStatusColours,
                      {tr("Colours for colour &blindness"),
                       tr("Good, uncertain and bad are told by colours that differ without red and green.")}),
        }};
}

QlumSettingsPage Pages::connections()
{
    namespace S = QlumSettings;
    const QString ms = tr(" ms");
    return {
        QStringLiteral("connections"),
        tr("&Connections"),
        {
            Row::number(
                S::connectTimeout,
                {tr("Connect &time-out:"), tr("How long a server may take to answer when a connection "
                                              "is made.")},
                100, hour, ms),
            Row::number(S::callTimeout,
                        {tr("Ca&ll time-out:"), tr("How long a server may take to answer what you ask it.")},
                        100, hour, ms),
            Row::number(S::publishTimeout,
                        {tr("&Publish time-out:"), tr("How long a server may hold a request for new values "
                                                      "back when there are none.")},
                        1000, hour, ms)
                .felt(Row::AtConnect),
            Row::number(S::sessionTimeout,
                        {tr("&Session time-out:"), tr("How long the server shall keep the session, with what "
                                                      "is watched, when the connection is lost.")},
                        1000, noMaximum, ms)
                .felt(Row::AtConnect),
            Row::number(S::secureChannelLifetime,
                        {tr("Secure channel l&ifetime:"), tr("How long the keys of a connection are used "
                                                             "before new ones are agreed on.")},
                        1000, noMaximum, ms)
                .felt(Row::AtConnect),
            Row::number(S::internalCallTimeout,
                        {tr("Time-out of i&nternal calls:"), tr("How long a server may take to answer what "
                                                                "Tavelin asks on its own account.")},
                        100, hour, ms)
                .felt(Row::AtConnect),
            Row::flag(S::automaticReconnect,
                      {tr("&Reconnect automatically"), tr("Tries to restore a lost connection until it is "
                                                          "there again or you disconnect.")})
                .felt(Row::AtConnect),
            Row::number(S::watchdogTime,
                        {tr("Connection c&heck every:"), tr("How often the server's state is read to see "
                                                            "whether the connection still stands.")},
                        1000, hour, ms)
                .felt(Row::AtConnect),
            Row::number(
                S::watchdogTimeout,
                {tr("Time-out of &a check:"), tr("When a check takes longer, the connection counts as "
                                                 "lost.")},
                100, hour, ms)
                .felt(Row::AtConnect),
            Row::number(S::maxOperations,
                        {tr("&Most operations in a call (0: server decides):"),
                         tr("Requests for more nodes than this are split into several calls.")},
                        0, noMaximum)
                .felt(Row::AtConnect),
            Row::choice(S::newServerRole,
                        {tr("R&ole of new servers:"),
                         tr("What may be sent to a server that is new in a project. Look: only what changes "
                            "nothing. Operate: writing values and calling methods, too. Commission: "
                            "everything.")},
                        {QStringLiteral("Look"), QStringLiteral("Operate"), QStringLiteral("Commission")},
                        {qlumRoleName(QlumServerRole::Look), qlumRoleName(QlumServerRole::Operate),
                         qlumRoleName(QlumServerRole::Commission)}),
            Row::choice(
                S::typeDictionaryMode,
                {tr("Load type &dictionaries:"), tr("When the definitions of a server's own data "
                                                    "types are read.")},
                {QStringLiteral("FirstUse"), QStringLiteral("Manual"), QStringLiteral("Connect"),
                 QStringLiteral("Reconnect")},
                {tr("At first use"), tr("By hand only"), tr("When connected"), tr("At each reconnect, too")})
                .felt(Row::AtConnect),
            Row::line(S::localeId,
                      {tr("Lan&guage of server texts:"), tr("The language that servers are asked for, such "
                                                            "as en or de-AT.")})
                .felt(Row::AtConnect),
        }};
}

QlumSettingsPage Pages::certificates()
{
    namespace S = QlumSettings;
    const QString advice =
        tr("Without this check a certificate that should no longer be used is accepted without a question.");
    return {QStringLiteral("certificates"),
            tr("C&ertificates"),
            {
                Row::note(QStringLiteral("certificatesLabel"),
                          tr("Server certificates pass the validation although")),
                Row::flag(S::ignoreTime, {tr("they are &expired or not yet valid"), advice}),
                Row::flag(S::ignoreIssuerTime,
                          {tr("an &issuer's certificate is expired or not yet valid"), advice}),
                Row::flag(S::ignoreNoRevocation, {tr("there is no &revocation list for them"), advice}),
                Row::flag(S::ignoreNoIssuerRevocation,
                          {tr("there is no revocation list for an issuer's &certificate"), advice}),
            }};
}

QlumSettingsPage Pages::addressSpace()
{
    namespace S = QlumSettings;
    return {QStringLiteral("addressSpace"),
            tr("&Address space"),
            {
                Row::number(S::browseTimeout,
                            {tr("Browse &time-out:"), tr("How long a server may take to list what is below a "
                                                         "node.")},
                            100, hour, tr(" ms")),
                Row::number(S::maxReferences,
                            {tr("&References in an answer (0: server decides):"),
                             tr("Longer lists are fetched in several calls.")},
                            0, noMaximum),
                Row::number(S::maxBrowseNextCalls,
                            {tr("&Follow-up calls (-1: no limit):"),
                             tr("After so many calls for one node the rest of a list is left out, and the "
                                "log says so.")},
                            -1, noMaximum),
                Row::flag(S::retrieveIcons, {tr("Show &icons that servers offer"),
                                             tr("Asks the server about each object, which takes time.")}),
                Row::flag(S::modelChangeEvents,
                          {tr("&Notice changes of the address space"),
                           tr("Has servers tell of nodes that come and go, and browses these again.")}),
            }};
}

QlumSettingsPage Pages::log()
{
    namespace S = QlumSettings;
    return {QStringLiteral("log"),
            tr("&Log and project"),
            {
                Row::choice(S::logLevel,
                            {tr("&Least level shown:"), tr("What is less serious does not reach the log "
                                                           "window.")},
                            {QStringLiteral("ERROR"), QStringLiteral("WARNING"), QStringLiteral("INFO"),
                             QStringLiteral("FUNCTION"), QStringLiteral("DATA"), QStringLiteral("PARANOID"),
                             QStringLiteral("ALL")},
                            {tr("Errors"), tr("Warnings"), tr("Information"), tr("Function calls"),
                             tr("Data"), tr("Every step"), tr("All entries")}),
                Row::number(S::logMaxEntries,
                            {tr("&Entries kept:"), tr("Beyond so many the oldest entries of the log window "
                                                      "go.")},
                            1, 1000000),
                Row::flag(S::logShowDate,
                          {tr("Show the &date with the time"), tr("For a log that spans several days.")}),
                Row::number(S::recentFiles,
                            {tr("&Recent projects kept:"), tr("How many projects the menu \"File\" offers.")},
                            0, 50),
                Row::flag(S::suppressSaveOnExit,
                          {tr("End without &asking to save the project"),
                           tr("Changes of the project that were not saved are lost then.")}),
            }};
}

QlumSettingsPage Pages::trace()
{
    namespace S = QlumSettings;
    const QString traceFile = QDir::toNativeSeparators(toQString(UaDir::applicationDataPath()) +
                                                       QStringLiteral("/korvanda/tavelin/trace/trace.log"));
    return {
        QStringLiteral("trace"),
        tr("&Trace"),
        {
            Row::flag(S::sdkTraceEnabled,
                      {tr("Trace Tavelin and the client &layer"), tr("Writes what they do to the file below, "
                                                                     "for the search of faults.")}),
            Row::choice(S::sdkTraceLevel,
                        {tr("L&evel:"), tr("Each level contains those before it; the last ones make Tavelin "
                                           "slow.")},
                        {QStringLiteral("Errors"), QStringLiteral("Warning"), QStringLiteral("Info"),
                         QStringLiteral("InterfaceCall"), QStringLiteral("CtorDtor"),
                         QStringLiteral("ProgramFlow"), QStringLiteral("Data")}),
            Row::flag(S::stackTraceEnabled,
                      {tr("Trace the communication &stack"), tr("Writes what it does to the same file.")}),
            Row::choice(S::stackTraceLevel,
                        {tr("Le&vel of the stack:"), tr("Each level contains those before it.")},
                        {QStringLiteral("ERROR"), QStringLiteral("WARNING"), QStringLiteral("SYSTEM"),
                         QStringLiteral("INFO"), QStringLiteral("DEBUG"), QStringLiteral("CONTENT"),
                         QStringLiteral("ALL")}),
            Row::file(QStringLiteral("Trace.Filename"), traceFile,
                      {tr("&File:"), tr("Where the trace is written to; its folder must be there.")}),
            Row::number(S::maxTraceEntries,
                        {tr("Entries in a f&ile:"), tr("A file with so many lines is kept as an older one, "
                                                       "and a new one begun.")},
                        100, noMaximum),
            Row::number(S::traceBackupFiles,
                        {tr("&Older files kept:"), tr("Beyond so many the oldest goes.")}, 1, 1000),
        }};
}

QlumSettingsPage Pages::updates()
{
    return {QStringLiteral("updates"),
            tr("&Updates"),
            {
                Row::openFlag(QStringLiteral("AutomaticUpdate.CheckForUpdates"),
                              {tr("&Check for updates automatically"),
                               tr("Asks for the number of the newest version when Tavelin starts.")}),
                Row::number(QlumSettings::updateInterval,
                            {tr("&Interval:"), tr("How long to wait before the next question.")}, 1, 365,
                            tr(" days")),
            }};
}
} // namespace

void qlumAddApplicationSettings(QlumSettingsRegistry& registry)
{
    for (const QlumSettingsPage& page :
         {Pages::appearance(), Pages::connections(), Pages::certificates(), Pages::addressSpace(),
          Pages::log(), Pages::trace(), Pages::updates()})
        registry.add(page);
}
