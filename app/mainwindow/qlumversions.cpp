#include <app/mainwindow/qlumversions.h>

#include <app/api/qlumtext.h>
#include <app/mainwindow/qlumupdatecheck.h>
#include <app/recovery/qlumcrashhandler.h>
#include <opcua/opcua_channel.h>
#include <uabase/system/uaxmldocument.h>
#include <uabase/uapkicpp/uapkierrors.h>
#include <uabase/values/uastring.h>

#include <QLatin1Char>
#include <QLatin1String>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSysInfo>
#include <QVariant>
#include <qwt_global.h>

namespace {
QString firstField(const char* version)
{
    return QString::fromUtf8(version).section(QLatin1Char('\\'), 0, 0);
}

// The driver knows only which one it was built with.
QString sqliteVersion()
{
    const auto connection = QStringLiteral("versions");
    QString version;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
        database.setDatabaseName(QStringLiteral(":memory:"));
        if (database.open()) {
            QSqlQuery query(QStringLiteral("select sqlite_version()"), database);
            if (query.next())
                version = query.value(0).toString();
        }
    }
    QSqlDatabase::removeDatabase(connection);
    return version.isEmpty() ? QStringLiteral("none") : version;
}
} // namespace

QStringList qlumVersions()
{
    const auto line = [](const char* name, const QString& version) {
        return QStringLiteral("%1 %2").arg(QLatin1String(name), version);
    };
    return {line("Tavelin", QlumUpdateCheck::currentVersion()),
            line("Build id", QString::fromLatin1(QlumCrashHandler::buildId())),
            line("Communication stack", firstField(OpcUa_ProxyStub_GetVersion())),
            line("Platform layer", firstField(OpcUa_P_GetVersion())),
            line("Qt", QLatin1String(qVersion())),
            line("Qwt", QLatin1String(QWT_VERSION_STR)),
            line("OpenSSL", toQString(UaPkiErrors::libraryVersion())),
            line("libxml2", toQString(UaXmlDocument::parserVersion())),
            line("SQLite", sqliteVersion()),
            line("System", QStringLiteral("%1, %2, kernel %3")
                               .arg(QSysInfo::prettyProductName(), QSysInfo::currentCpuArchitecture(),
                                    QSysInfo::kernelVersion()))};
}
