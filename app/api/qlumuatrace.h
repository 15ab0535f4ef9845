#pragma once
#include <app/api/qlumapplicationinterface.h>

#include <QString>

#include <functional>

/// Writes log entries from code that does not know the main window. Every function may be called from any
/// thread; while there is no application nothing is logged, but what is set for that time is told.
class QlumUaTrace
{
public:
    QlumUaTrace() = delete;

    /// Adds an entry to the log.
    static void log(int level, const QString& text, const QString& source,
                    unsigned int serverId = qlumNoServer);
    /// Adds an entry: text with %1 replaced by the status code's text.
    static void logUaStatusCode(int level, const QString& text, unsigned int statusCode,
                                const QString& source, unsigned int serverId = qlumNoServer);
    /// From now on nothing is logged any more; returns when calls under way are done.
    static void shutdown();

    /// The application is there (or, with null, goes); its log() receives the entries.
    static void setApplication(QlumApplicationInterface* application);
    /// Takes what is logged while there is no application, as before the window is there. Any thread.
    static void setEarlySink(std::function<void(const QString& text)> sink);
};
