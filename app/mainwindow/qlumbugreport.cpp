#include <app/mainwindow/qlumbugreport.h>

#include <app/mainwindow/qlumupdatecheck.h>
#include <opcua/opcua_channel.h>

#include <QCoreApplication>
#include <QDesktopServices>
#include <QMessageBox>
#include <QStringList>
#include <QSysInfo>
#include <QWidget>

namespace {
class Text
{
    Q_DECLARE_TR_FUNCTIONS(QlumBugReport)
};

// The version strings of the stack hold six fields.
QString versionFields(const char* version)
{
    QStringList fields = QString::fromUtf8(version).split(QLatin1Char('\\'));
    while (fields.size() < 6)
        fields.append(QString());
    return QStringLiteral("   Version:%1\n   Source Timestamp:%2\n   Build Timestamp:%3\n   Vendor Name:%4\n"
                          "   Vendor Info:%5\n   Compiler:%6\n\n")
        .arg(fields.at(0), fields.at(1), fields.at(2), fields.at(3), fields.at(4), fields.at(5));
}

QString configurationLines(const char* configuration)
{
    return QString::fromUtf8(configuration).replace(QLatin1Char('\\'), QLatin1String("\n   ")) +
           QStringLiteral("\n\n");
}
} // namespace

QString QlumBugReport::address()
{
    return QStringLiteral("bugs@korvanda.example");
}

QString QlumBugReport::versions()
{
    QString text = QStringLiteral("Tavelin:\n   Version %1 %2\n\n")
                       .arg(QlumUpdateCheck::currentVersion(), QSysInfo::buildAbi());
    text += QStringLiteral("Stack Version:\n") + versionFields(OpcUa_ProxyStub_GetVersion());
    text += QStringLiteral("Stack Configuration:\n   ") +
            configurationLines(OpcUa_ProxyStub_GetStaticConfigString());
    text += QStringLiteral("Platform Layer Version:\n") + versionFields(OpcUa_P_GetVersion());
    text +=
        QStringLiteral("Platform Layer Configuration:\n   ") + configurationLines(OpcUa_P_GetConfigString());
    text += QStringLiteral("Operating System:\n   Linux\n");
    return text;
}

QString QlumBugReport::body()
{
    QString text = versions();
    for (const char* section : {"Overview", "Steps to Reproduce", "Actual Results", "Expected Results"})
        text += QLatin1String(section) + QStringLiteral(":\n   (Insert Text here)\n\n");
    return text;
}

QUrl QlumBugReport::url()
{
    const auto encoded = [](const QString& text) {
        return QString::fromLatin1(QUrl::toPercentEncoding(text));
    };
    return QUrl(QStringLiteral("mailto:%1?subject=%2&body=%3")
                    .arg(address(), encoded(QStringLiteral("Bug in Tavelin")), encoded(body())),
                QUrl::StrictMode);
}

void QlumBugReport::send(QWidget* parent)
{
    if (QDesktopServices::openUrl(url()))
        return;
    QMessageBox::warning(
        parent, Text::tr("Preparing E-Mail failed"),
        Text::tr("There seems no E-Mail client to be installed on your computer.\nTo report a bug, "
                 "please send an E-Mail with a description to ") +
            address() + QLatin1Char('.'));
}
