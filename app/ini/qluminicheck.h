#pragma once
#include <QByteArray>
#include <QString>
#include <QStringList>

/// An INI file from somebody else, made safe to be read with QSettings.
struct QlumIniCheck
{
    bool readable = false;
    bool unchanged = false; ///< the content is the file, byte for byte
    QString error;          ///< for the user, when not readable
    QByteArray content;     ///< what was read of the file, written anew
    QStringList refused;    ///< for the log, see QlumIniText
};

/// Reads a regular file of at most maximumSize bytes without ever blocking. A missing file is readable and
/// empty.
[[nodiscard]] QlumIniCheck qlumCheckIniFile(const QString& fileName, qint64 maximumSize = 16 * 1024 * 1024);
