#include <recording/recordlock.h>

#include <QCoreApplication>
#include <QLockFile>
#include <QString>
#include <QSysInfo>

#include <cerrno>
#include <csignal>
#include <memory>
#include <sys/types.h>

namespace recording {

namespace {

struct RecordLockText
{
    Q_DECLARE_TR_FUNCTIONS(recording::SqliteRecord)
};

} // namespace

std::unique_ptr<QLockFile> lockRecording(const QString& path, QString& why)
{
    auto file = std::make_unique<QLockFile>(path + QStringLiteral(".lock"));
    file->setStaleLockTime(0);
    if (file->tryLock(0))
        return file;
    if (file->error() != QLockFile::LockFailedError) {
        why = RecordLockText::tr("The folder of %1 cannot be written to.").arg(path);
        return nullptr;
    }
    qint64 process = 0;
    QString computer, program;
    static_cast<void>(file->getLockInfo(&process, &computer, &program)); // else it is not named
    why = RecordLockText::tr("%1 is being recorded to already, by process %2 on %3.")
              .arg(path, QString::number(process), computer);
    return nullptr;
}

// Trying the lock instead could refuse it to a program that begins at that moment.
bool isBeingRecorded(const QString& path)
{
    const QLockFile file(path + QStringLiteral(".lock"));
    qint64 process = 0;
    QString computer, program;
    if (!file.getLockInfo(&process, &computer, &program))
        return false;
    return computer != QSysInfo::machineHostName() || kill(static_cast<pid_t>(process), 0) == 0 ||
           errno == EPERM;
}

} // namespace recording
