#include <app/recovery/qlumsessionrecord.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QStringList>

#include <algorithm>
#include <sys/file.h>
#include <utility>

namespace {
const auto recordSuffix = QStringLiteral(".session");
const auto projectSuffix = QStringLiteral(".uap");
constexpr int maximumPath = 64 * 1024;
constexpr int maximumLeftovers = 20;

bool lock(const QFile& file)
{
    return ::flock(file.handle(), LOCK_EX | LOCK_NB) == 0;
}

QDateTime newest(const QStringList& files)
{
    QDateTime time;
    for (const QString& file : files)
        if (const QFileInfo info(file); !file.isEmpty() && info.exists())
            time = time.isValid() ? std::max(time, info.lastModified()) : info.lastModified();
    return time;
}
} // namespace

QlumSessionRecord::QlumSessionRecord(const QString& folder, const QString& traceFolder)
    : m_folder(folder), m_traceFolder(traceFolder),
      m_id(QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd-HHmmss-zzz-")) +
           QString::number(QCoreApplication::applicationPid()))
{
    QDir().mkpath(folder);
    // projects name servers and users: nobody else's business
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    m_file.setFileName(pathOf(m_id, recordSuffix));
    if (m_file.open(QIODevice::ReadWrite) && !lock(m_file))
        m_file.close();
}

QlumSessionRecord::~QlumSessionRecord()
{
    if (!isKept())
        return;
    removeRecoveryFile();
    m_file.remove();
}

QString QlumSessionRecord::pathOf(const QString& id, const QString& suffix) const
{
    return m_folder + QLatin1Char('/') + id + suffix;
}

QString QlumSessionRecord::reportOf(const QString& id) const
{
    return m_traceFolder + QStringLiteral("/crash-") + id + QStringLiteral(".txt");
}

QString QlumSessionRecord::crashReportFile() const
{
    return reportOf(m_id);
}

QString QlumSessionRecord::recoveryFile() const
{
    return pathOf(m_id, projectSuffix);
}

void QlumSessionRecord::setProject(const QString& fileName)
{
    if (!isKept())
        return;
    // short enough for one write
    m_file.resize(0);
    m_file.seek(0);
    m_file.write(fileName.toUtf8());
    m_file.flush();
}

void QlumSessionRecord::removeRecoveryFile()
{
    if (isKept())
        QFile::remove(recoveryFile());
}

QlumSessionRecord::Leftover QlumSessionRecord::leftoverOf(const QString& id,
                                                          std::shared_ptr<QFile> record) const
{
    Leftover leftover;
    leftover.id = id;
    leftover.project = QString::fromUtf8(record->read(maximumPath));
    const auto ifThere = [](const QString& file) { return QFileInfo(file).isFile() ? file : QString(); };
    leftover.recovered = ifThere(pathOf(id, projectSuffix));
    leftover.crashReport = ifThere(reportOf(id));
    leftover.ended = newest({record->fileName(), leftover.recovered, leftover.crashReport});
    leftover.claim = std::move(record);
    return leftover;
}

QList<QlumSessionRecord::Leftover> QlumSessionRecord::leftovers() const
{
    QList<Leftover> found;
    const QDir folder(m_folder);
    const QStringList records =
        folder.entryList({QLatin1Char('*') + recordSuffix}, QDir::Files, QDir::Name | QDir::Reversed);
    for (const QString& name : records) {
        auto record = std::make_shared<QFile>(folder.filePath(name));
        if (!record->open(QIODevice::ReadOnly) || !lock(*record))
            continue; // it still runs, or another program asks its user about it
        const Leftover leftover = leftoverOf(name.chopped(recordSuffix.size()), std::move(record));
        const bool isOfUse = !leftover.recovered.isEmpty() || !leftover.crashReport.isEmpty();
        if (isOfUse && found.size() < maximumLeftovers)
            found.append(leftover);
        else if (!isOfUse)
            discard(leftover);
    }
    forgetOldReports();
    return found;
}

void QlumSessionRecord::forgetOldReports() const
{
    const QDir folder(m_traceFolder);
    QStringList reports = folder.entryList({QStringLiteral("crash-*.txt")}, QDir::Files, QDir::Name);
    for (; reports.size() > maximumLeftovers; reports.removeFirst())
        QFile::remove(folder.filePath(reports.first()));
}

void QlumSessionRecord::discard(const Leftover& leftover) const
{
    QFile::remove(pathOf(leftover.id, projectSuffix));
    QFile::remove(pathOf(leftover.id, recordSuffix));
}
