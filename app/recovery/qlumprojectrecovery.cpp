#include <app/recovery/qlumprojectrecovery.h>

#include <app/api/qlumlog.h>
#include <app/recovery/qlumrecoverydialog.h>

#include <QDialog>
#include <QDir>
#include <QList>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <utility>

namespace {
constexpr std::chrono::minutes keepInterval(1);
}

QlumProjectRecovery::QlumProjectRecovery(QlumSessionRecord& record, Hooks hooks, QWidget* window)
    : QObject(window), m_record(record), m_hooks(std::move(hooks)), m_window(window)
{
    auto* timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this, &QlumProjectRecovery::keep);
    timer->start(keepInterval);
}

void QlumProjectRecovery::sltChanged()
{
    m_isChanged = true;
}

void QlumProjectRecovery::sltClean()
{
    m_isChanged = false;
    m_record.removeRecoveryFile();
}

void QlumProjectRecovery::sltProjectFileChanged(const QString& fileName)
{
    m_record.setProject(fileName);
}

void QlumProjectRecovery::keep()
{
    if (!m_isChanged || !m_record.isKept())
        return;
    const bool saved = m_hooks.save(m_record.recoveryFile());
    m_isChanged = !saved;
    if (!saved && !std::exchange(m_hasFailed, true)) // said once, not each minute
        QlumLog(QStringLiteral("Tavelin"))
            .error(tr("The unsaved changes could not be kept in %1: after a crash they would be lost.")
                       .arg(QDir::toNativeSeparators(m_record.recoveryFile())));
}

void QlumProjectRecovery::offer(const std::function<void()>& beforeAsking)
{
    const QList<QlumSessionRecord::Leftover> leftovers = m_record.leftovers();
    if (leftovers.isEmpty())
        return;
    if (beforeAsking)
        beforeAsking();
    const QPointer<QlumProjectRecovery> self = this;
    const QPointer<QlumRecoveryDialog> dialog = new QlumRecoveryDialog(m_record, leftovers, m_window);
    const bool isAccepted = dialog->exec() == QDialog::Accepted;
    if (!self || !dialog)
        return;
    const QlumSessionRecord::Leftover chosen = dialog->chosen();
    // what is only a report has been seen now; the file of the report stays with the traces
    for (const QlumSessionRecord::Leftover& leftover : dialog->leftovers())
        if (leftover.recovered.isEmpty())
            m_record.discard(leftover);
    delete dialog;
    if (isAccepted)
        open(chosen);
}

void QlumProjectRecovery::open(const QlumSessionRecord::Leftover& leftover)
{
    if (leftover.recovered.isEmpty()) {
        m_hooks.open(leftover.project);
        return;
    }
    if (!m_hooks.openRecovered(leftover.recovered, leftover.project))
        return; // told, and offered again
    m_isChanged = true;
    keep();
    if (!m_isChanged) // else the only copy is the old one
        m_record.discard(leftover);
}
