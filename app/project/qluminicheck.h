#pragma once
#include <QByteArray>
#include <QString>
#include <QStringList>

/// An INI file from somebody else, made safe to be read with QSettings.
struct QlumIniCheck
{
    bool readable = false;
    QString error;       ///< for the user, when not readable
    QByteArray content;  ///< the file without the refused entries
    QStringList refused; ///< for the log; at most 20 lines, the last of which tells how many more there were
};

/// Reads a regular file of at most maximumSize bytes without ever blocking. Values from which QSettings would
/// build objects ("@Variant(...)", "@DateTime(...)") and lines that are no entries are refused; the rest
/// stays as it is. A missing file is readable and empty.
[[nodiscard]] QlumIniCheck qlumCheckIniFile(const QString& fileName, qint64 maximumSize = 16 * 1024 * 1024);
