#include <app/support/qlumsupportreport.h>

#include <app/api/qlumsecretfields.h>
#include <app/ini/qluminicheck.h>
#include <app/ini/qluminitext.h>

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFileInfoList>
#include <QSaveFile>
#include <QStringList>

#include <array>
#include <kzip.h>
#include <string_view>
#include <utility>

namespace {
constexpr qint64 mostOfFile = 1024 * 1024; // bytes of a trace
constexpr int mostTraces = 3;
constexpr int mostCrashes = 3;

class SupportText
{
    Q_DECLARE_TR_FUNCTIONS(QlumSupportReport)
};

bool isCredential(const QString& key)
{
    static constexpr std::array names{"UserName", "PrivateKeyFile", "CertificateFile", "GivenCertificate"};
    const QString last = key.section(QLatin1Char('/'), -1);
    for (const char* name : names)
        if (last.compare(QLatin1String(name), Qt::CaseInsensitive) == 0)
            return true;
    return qlumIsSecretName(last.toStdString());
}

// The end of it, from the beginning of a line on.
QByteArray endOf(const QString& fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    if (file.size() <= mostOfFile)
        return file.readAll();
    file.seek(file.size() - mostOfFile);
    file.readLine();
    return file.readAll();
}

void addFiles(std::vector<QlumReportPart>& parts, const QString& folder, const QStringList& patterns,
              int maximum, const QString& title)
{
    const QFileInfoList files = QDir(folder).entryInfoList(patterns, QDir::Files, QDir::Time);
    for (const QFileInfo& file : files.mid(0, maximum))
        if (const QByteArray content = endOf(file.filePath()); !content.isEmpty())
            parts.push_back({QStringLiteral("%1/%2").arg(QDir(folder).dirName(), file.fileName()),
                             QStringLiteral("%1: %2").arg(title, file.fileName()), content});
}
} // namespace

QByteArray qlumIniWithoutSecrets(const QByteArray& content)
{
    QlumIniText text =
        qlumReadIni(std::string_view(content.constData(), static_cast<std::size_t>(content.size())));
    for (auto entry = text.entries.begin(); entry != text.entries.end(); ++entry)
        if (isCredential(entry.key()) && !entry->join(QString()).isEmpty())
            *entry = QStringList{qlumBlanked()};
    return qlumWriteIni(text.entries);
}

std::vector<QlumReportPart> qlumReportParts(const QlumReportSources& sources)
{
    using T = SupportText;
    std::vector<QlumReportPart> parts;
    const auto add = [&parts](const char* name, const QString& title, const QByteArray& content) {
        if (!content.isEmpty())
            parts.push_back({QLatin1String(name), title, content});
    };
    add("versions.txt", T::tr("Versions"), sources.versions.toUtf8());
    const QlumIniCheck settings = qlumCheckIniFile(sources.settingsFile);
    if (settings.readable)
        add("settings.ini", T::tr("Settings"), qlumIniWithoutSecrets(settings.content));
    if (!sources.project.isEmpty())
        add("project.uap", T::tr("Project"), qlumIniWithoutSecrets(sources.project));
    add("log.txt", T::tr("Log"), sources.log.toUtf8());
    add("connections.txt", T::tr("Diagnosed connections"), sources.connections.toUtf8());
    const QFileInfo trace(sources.traceFile);
    if (!sources.traceFile.isEmpty())
        addFiles(parts, trace.absolutePath(), {trace.fileName(), trace.fileName() + QStringLiteral("_*")},
                 mostTraces, T::tr("Trace"));
    if (!sources.crashFolder.isEmpty())
        addFiles(parts, sources.crashFolder, {QStringLiteral("crash*")}, mostCrashes, T::tr("Crash"));
    return parts;
}

QString qlumWriteReport(const QString& fileName, const std::vector<QlumReportPart>& parts)
{
    QBuffer archive;
    archive.open(QIODevice::ReadWrite);
    KZip zip(&archive);
    if (!zip.open(QIODevice::WriteOnly))
        return zip.errorString();
    for (const QlumReportPart& part : parts)
        if (!zip.writeFile(QStringLiteral("tavelin-report/") + part.name, part.content))
            return zip.errorString();
    if (!zip.close())
        return zip.errorString();
    QSaveFile file(fileName);
    const QByteArray bytes = archive.data();
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        return file.errorString();
    return {};
}
