#pragma once
#include <app/api/qlumapplicationinterface.h>

#include <QString>

/// Writes the log entries of one part of the program, which all have the same source and server. A value; may
/// be used on any thread and does nothing while there is no application.
class QlumLog
{
public:
    /// The source is shown to the user, as is the name of the server.
    explicit QlumLog(const QString& source, unsigned int serverId = qlumNoServer);

    /// An entry of one of the levels of QlumLogLevel.
    void write(int level, const QString& text) const;
    /// An entry at level Error.
    void error(const QString& text) const { write(QlumLogLevel::Error, text); }
    /// An entry at level Info.
    void info(const QString& text) const { write(QlumLogLevel::Info, text); }
    /// An entry with %1 in its text replaced by the text of a status code.
    void writeStatus(int level, const QString& text, unsigned int statusCode) const;

private:
    QString m_source;
    unsigned int m_serverId;
};
