#include <app/mainwindow/qlumupdatecheck.h>

#include <app/api/qlumlog.h>
#include <app/settings/qlumsettingsmodel.h>

#include <QDateTime>
#include <QDesktopServices>
#include <QMessageBox>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QRegularExpression>
#include <QSettings>
#include <QString>
#include <QUrl>
#include <QVersionNumber>
#include <QWidget>

namespace {
const auto updateAddress =
    QStringLiteral("https://update.korvanda.example/tavelin/tavelin-linux32-latest.txt");
const auto lastUpdateKey = QStringLiteral("AutomaticUpdate/LastUpdate");
constexpr int timeoutMilliseconds = 20000;
constexpr qint64 maximumBody = 64 * 1024;

QString captured(const QString& body, const QString& pattern)
{
    const QRegularExpression expression(pattern, QRegularExpression::MultilineOption);
    return expression.match(body).captured(1);
}
} // namespace

QlumUpdateCheck::QlumUpdateCheck(QlumSettingsModel* settings, QNetworkAccessManager* network, QWidget* window)
    : QObject(window), m_settings(settings), m_network(network), m_window(window)
{
}

QString QlumUpdateCheck::currentVersion()
{
    return QStringLiteral(TAVELIN_VERSION);
}

bool QlumUpdateCheck::isDue() const
{
    if (!m_settings->value(QStringLiteral("AutomaticUpdate.CheckForUpdates")).toBool())
        return false;
    const int days = m_settings->value(QStringLiteral("AutomaticUpdate.UpdateInterval")).toInt();
    const QDateTime last = QDateTime::fromString(QSettings().value(lastUpdateKey).toString(), Qt::ISODate);
    const QDateTime now = QDateTime::currentDateTime();
    return !last.isValid() || last > now || last.addDays(days) <= now;
}

void QlumUpdateCheck::checkNow()
{
    m_automatic = false;
    request();
}

void QlumUpdateCheck::checkAutomatically()
{
    if (!isDue())
        return;
    m_automatic = true;
    request();
}

void QlumUpdateCheck::request()
{
    if (m_running)
        return;
    m_running = true;
    connect(m_network, &QNetworkAccessManager::finished, this, &QlumUpdateCheck::sltUpdateReplyFinished);
    QNetworkRequest request{QUrl(updateAddress)};
    request.setTransferTimeout(timeoutMilliseconds);
    m_network->get(request);
}

void QlumUpdateCheck::sltUpdateReplyFinished(QNetworkReply* reply)
{
    disconnect(m_network, &QNetworkAccessManager::finished, this, &QlumUpdateCheck::sltUpdateReplyFinished);
    reply->deleteLater();
    if (reply->error() != QNetworkReply::NoError)
        report(tr("Error retrieving current version information: %1").arg(reply->errorString()));
    else
        evaluate(QString::fromUtf8(reply->read(maximumBody)));
    m_automatic = false;
    m_running = false;
}

void QlumUpdateCheck::evaluate(const QString& body)
{
    QString lines = body;
    lines.remove(QLatin1Char('\r'));
    const QString received = captured(lines, QStringLiteral("^V=(\\d+\\.\\d+\\.\\d+)$"));
    const QString url = captured(lines, QStringLiteral("^URL=(.+)$"));
    if (received.isEmpty() || url.isEmpty()) {
        report(tr("Could not retreive version or URL from server response"));
        return;
    }
    const QRegularExpression format(QStringLiteral("^\\d+\\.\\d+\\.\\d+$"));
    if (!format.match(currentVersion()).hasMatch() || !format.match(received).hasMatch()) {
        report(tr("Version info has invalid format (current: '%1', received: '%2')")
                   .arg(currentVersion(), received));
        return;
    }
    QSettings().setValue(lastUpdateKey, QDateTime::currentDateTime().toString(Qt::ISODate));
    if (QVersionNumber::fromString(received) > QVersionNumber::fromString(currentVersion())) {
        offer(received, url);
        return;
    }
    if (m_automatic)
        QlumLog(tr("Automatic Update")).info(tr("The newest version of Tavelin is already installed"));
    else
        QMessageBox::information(m_window, tr("Already up to date"),
                                 tr("The newest version of Tavelin is already installed."));
}

void QlumUpdateCheck::offer(const QString& version, const QString& url)
{
    const auto answer = QMessageBox::information(
        m_window, tr("Update available"),
        tr("An update of Tavelin is available: Tavelin V%1\nClick OK to download it now.").arg(version),
        QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Ok);
    if (answer != QMessageBox::Ok)
        return;
    const QUrl address(url.trimmed(), QUrl::StrictMode);
    // the answer comes from the network: it must not start anything but a browser
    if (address.scheme() == QLatin1String("https") || address.scheme() == QLatin1String("http"))
        QDesktopServices::openUrl(address);
    else
        report(tr("The download address '%1' is not one of the web.").arg(url));
}

void QlumUpdateCheck::report(const QString& text)
{
    QlumLog(tr("Automatic Update")).error(text);
    if (m_automatic)
        return;
    QMessageBox box(QMessageBox::Warning, tr("Check for Updates"), text, QMessageBox::Ok, m_window);
    box.setTextFormat(Qt::PlainText); // parts of it come from the network
    box.exec();
}
