// URLs of discovery servers that the user has entered, as the settings keep them.
#pragma once
#include <QStringList>

class QSettings;

namespace QlumDiscoverySettings {
/// Key of the list of URLs.
inline constexpr char customUrls[] = "Discovery.CustomUrls";
/// So many are kept.
inline constexpr int maximumUrls = 200;

/// The URLs that may be kept, each once and in their order: those of servers, without user names and
/// passwords in them, which no settings file shall hold.
[[nodiscard]] QStringList keepable(const QStringList& urls);

/// Older settings have a group with an entry for each URL, numbered and counted. Adds those URLs to the list
/// and removes the group; settings without it stay untouched.
void convertOlder(QSettings& settings);
} // namespace QlumDiscoverySettings
