#pragma once
#include <QDateTime>
#include <QFile>
#include <QList>
#include <QString>

#include <memory>

/// What a running program keeps on disk for the case that it does not end well: which project is open, and a
/// copy of the project while it has changes that were not saved. Others see by a lock whether it still runs.
/// All of it goes when the program ends as it should.
class QlumSessionRecord
{
public:
    /// What a program left that ended without saying so.
    struct Leftover
    {
        QString id;                   ///< names its files
        QString project;              ///< the file that was open; empty for a new project
        QString recovered;            ///< copy with changes that were not saved; empty without such changes
        QString crashReport;          ///< empty when it did not crash but was ended
        QDateTime ended;              ///< the time of the newest of its files
        std::shared_ptr<QFile> claim; ///< as long as it is held no other program is offered the same
    };

    /// Creates the folder and the record in it; a folder that cannot be written leaves the record without
    /// effect. Reports of crashes are in the folder of the traces.
    QlumSessionRecord(const QString& folder, const QString& traceFolder);
    ~QlumSessionRecord();
    QlumSessionRecord(const QlumSessionRecord&) = delete;
    QlumSessionRecord& operator=(const QlumSessionRecord&) = delete;

    [[nodiscard]] bool isKept() const { return m_file.isOpen(); }
    [[nodiscard]] QString crashReportFile() const;
    /// Where the copy of the project is to be written.
    [[nodiscard]] QString recoveryFile() const;
    void setProject(const QString& fileName);
    /// Nothing is unsaved any more.
    void removeRecoveryFile();

    /// The newest first, those only that a user can do something with; the rest are cleaned away. At most 20.
    [[nodiscard]] QList<Leftover> leftovers() const;
    [[nodiscard]] bool hasLeftovers() const { return !leftovers().isEmpty(); }
    /// Deletes what is left but for the report of the crash.
    void discard(const Leftover& leftover) const;

private:
    [[nodiscard]] QString pathOf(const QString& id, const QString& suffix) const;
    [[nodiscard]] QString reportOf(const QString& id) const;
    [[nodiscard]] Leftover leftoverOf(const QString& id, std::shared_ptr<QFile> record) const;
    void forgetOldReports() const;

    QString m_folder;
    QString m_traceFolder;
    QString m_id;
    QFile m_file; ///< locked as long as it is open
};
