#pragma once
#include <QObject>
#include <QString>

class QNetworkAccessManager;
class QNetworkReply;
class QWidget;
class QlumSettingsModel;

/// Asks the vendor's server for the newest version and offers to download it.
class QlumUpdateCheck : public QObject
{
    Q_OBJECT
public:
    QlumUpdateCheck(QlumSettingsModel* settings, QNetworkAccessManager* network, QWidget* window);

    /// Version of this program.
    [[nodiscard]] static QString currentVersion();
    /// Whether the user wants a check and the last one is long enough ago (or lies in the future).
    [[nodiscard]] bool isDue() const;

public slots:
    /// Every outcome is shown; an automatic check only shows that there is a newer version and logs the rest.
    void checkNow();
    void checkAutomatically();

private slots:
    void sltUpdateReplyFinished(QNetworkReply* reply);

private:
    void request();
    void evaluate(const QString& body);
    void offer(const QString& version, const QString& url);
    void report(const QString& text);

    QlumSettingsModel* m_settings;
    QNetworkAccessManager* m_network;
    QWidget* m_window;
    bool m_automatic = false;
    bool m_running = false;
};
