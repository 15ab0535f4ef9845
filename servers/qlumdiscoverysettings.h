// URLs of servers that the user has entered or used, as the settings keep them.
#pragma once
#include <QString>
#include <QStringList>

class QSettings;

namespace QlumDiscoverySettings {
/// Key of the list of URLs.
inline constexpr char customUrls[] = "Discovery.CustomUrls";
/// Key of the list of global discovery servers.
inline constexpr char directoryUrls[] = "Discovery.DirectoryUrls";
/// Key of the list of servers that were used, the latest first.
inline constexpr char recentUrls[] = "Discovery.RecentUrls";
/// So many are kept in each.
inline constexpr int maximumUrls = 200;

/// The URLs that may be kept, each once and in their order: those of servers, without user names and
/// passwords in them, which no settings file shall hold.
[[nodiscard]] QStringList keepable(const QStringList& urls);

/// The list of that key, in the user's settings.
[[nodiscard]] QStringList urls(const char* key);
/// Adds a URL to the list: the recent ones at the front, where it also goes when it was there before. False
/// for one that may not be kept, or for which there is no room.
bool remember(const char* key, const QString& url);
/// Takes it out again.
void forget(const char* key, const QString& url);

/// Older settings have a group with an entry for each URL, numbered and counted. Adds those URLs to the list
/// and removes the group; settings without it stay untouched.
void convertOlder(QSettings& settings);
} // namespace QlumDiscoverySettings
