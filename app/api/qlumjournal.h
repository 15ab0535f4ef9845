// What was changed on servers, kept in files.
#pragma once
#include <QDate>
#include <QDateTime>
#include <QFile>
#include <QList>
#include <QObject>
#include <QString>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

/// One change, or one that was not sent. Texts only: no secret is in them.
struct QlumJournalEntry
{
    QDateTime time;  ///< when it was sent
    QString server;  ///< its name in the project
    QString user;    ///< as whom; empty for an anonymous one
    QString service; ///< "Write", "Call" ...
    QString what;    ///< the node and its attribute, the method, or the kind of change
    QString before;  ///< what the tool last showed; empty when that is not known
    QString after;   ///< what was written, or the arguments
    QString status;  ///< what it came to
    QString purpose; ///< the command or view that did it

    /// Text by text.
    friend bool operator==(const QlumJournalEntry&, const QlumJournalEntry&) = default;
};

/// What a file of the journal holds.
struct QlumJournalReading
{
    std::vector<QlumJournalEntry>
        entries;        ///< in the order of the file; the newest ones if there are too many
    int leftOut = 0;    ///< older ones that are in the file, too
    int unreadable = 0; ///< lines that are no entry
    QString error;      ///< why the file could not be read; empty when it could
};

/// The journal: a file a day, a line for each entry, only readable for the user. Files are kept for thirty
/// days. Entries may come from any thread.
class QlumJournal : public QObject
{
    Q_OBJECT
public:
    /// A file that is older is removed.
    static constexpr int keptDays = 30;
    static constexpr qint64 maximumSize = 256 * 1024 * 1024; ///< of a day's file
    static constexpr int maximumEntries = 200000;            ///< that are read of a file

    /// In that folder, which is made with the first entry.
    explicit QlumJournal(QString folder);
    ~QlumJournal() override;

    /// That of the application, in the user's configuration folder.
    [[nodiscard]] static const std::shared_ptr<QlumJournal>& ofApplication();

    /// Writes the entries to the file of the day on which they were made. What cannot be written is said in
    /// the log, once.
    void append(const std::vector<QlumJournalEntry>& entries);
    /// The days of which there is a file, the newest first.
    [[nodiscard]] QList<QDate> days() const;
    /// The file of a day, be it there or not.
    [[nodiscard]] QString fileOf(const QDate& day) const;
    /// Reads the file of a day, with a bound; on any thread. Ends early when the function says so.
    [[nodiscard]] QlumJournalReading read(const QDate& day,
                                          const std::function<bool()>& isCancelled = nullptr) const;

signals:
    /// After they were written; from the thread that did.
    void appended(const std::vector<QlumJournalEntry>& entries);

private:
    [[nodiscard]] bool openFor(const QDate& day); ///< under the mutex
    void removeOld(const QDate& today) const;

    const QString m_folder;
    std::mutex m_mutex;
    QFile m_file; ///< of the day below
    QDate m_day;
    std::atomic<bool> m_hasFailed{false};
};
