// What whoever is asked for help wants to know, in one file, without passwords and keys.
#pragma once
#include <QByteArray>
#include <QString>

#include <vector>

/// A file of the report.
struct QlumReportPart
{
    QString name;  ///< in the report
    QString title; ///< for the user, who chooses
    QByteArray content;
};

/// What a report is made from.
struct QlumReportSources
{
    QString versions;
    QString settingsFile;
    QByteArray project; ///< as it would be saved
    QString log;
    QString traceFile;   ///< the newest; older ones stand beside it
    QString crashFolder; ///< with reports of crashes; may be empty
    QString connections; ///< what diagnoses of connections have found
};

/// The parts that there is something of. Traces and crash reports are cut to their ends.
[[nodiscard]] std::vector<QlumReportPart> qlumReportParts(const QlumReportSources& sources);

/// An INI file without the values that are, or lead to, passwords, keys and users.
[[nodiscard]] QByteArray qlumIniWithoutSecrets(const QByteArray& content);

/// Writes the parts as a zip archive, in place of what was there; why not, for the user, or an empty text.
[[nodiscard]] QString qlumWriteReport(const QString& fileName, const std::vector<QlumReportPart>& parts);
