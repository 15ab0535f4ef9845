#include <app/api/qlumjournal.h>

#include <app/api/qlumlog.h>
#include <app/api/qlummetatypes.h>
#include <app/api/qlumtext.h>
#include <uabase/system/uadir.h>

#include <QByteArray>
#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QLatin1String>
#include <QStringList>

#include <algorithm>
#include <deque>
#include <functional>
#include <iterator>
#include <optional>
#include <utility>

namespace {
const auto namePattern = QStringLiteral("'journal-'yyyy-MM-dd'.jsonl'");
constexpr qint64 maximumLine = 64 * 1024;

struct Field
{
    const char* key;
    QString QlumJournalEntry::*text;
};

constexpr Field fields[] = {
    {"server", &QlumJournalEntry::server},   {"user", &QlumJournalEntry::user},
    {"service", &QlumJournalEntry::service}, {"what", &QlumJournalEntry::what},
    {"before", &QlumJournalEntry::before},   {"after", &QlumJournalEntry::after},
    {"status", &QlumJournalEntry::status},   {"purpose", &QlumJournalEntry::purpose},
};

QByteArray lineOf(const QlumJournalEntry& entry)
{
    QJsonObject object;
    object.insert(QLatin1String("time"), entry.time.toUTC().toString(Qt::ISODateWithMs));
    for (const Field& field : fields)
        if (const QString& text = entry.*field.text; !text.isEmpty())
            object.insert(QLatin1String(field.key), text);
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

std::optional<QlumJournalEntry> entryOf(const QByteArray& line)
{
    const QJsonObject object = QJsonDocument::fromJson(line).object();
    QlumJournalEntry entry;
    entry.time = QDateTime::fromString(object.value(QLatin1String("time")).toString(), Qt::ISODateWithMs)
                     .toLocalTime();
    if (!entry.time.isValid())
        return std::nullopt;
    for (const Field& field : fields)
        entry.*field.text = object.value(QLatin1String(field.key)).toString();
    return entry;
}

QDate dayOf(const QString& fileName)
{
    return QDate::fromString(fileName, namePattern);
}
} // namespace

QlumJournal::QlumJournal(QString folder) : m_folder(std::move(folder))
{
    qRegisterMetaType<std::vector<QlumJournalEntry>>("std::vector<QlumJournalEntry>");
}

QlumJournal::~QlumJournal() = default;

const std::shared_ptr<QlumJournal>& QlumJournal::ofApplication()
{
    static const auto journal = std::make_shared<QlumJournal>(toQString(UaDir::applicationDataPath()) +
                                                              QLatin1String("/korvanda/tavelin/journal"));
    return journal;
}

QString QlumJournal::fileOf(const QDate& day) const
{
    return QDir(m_folder).filePath(day.toString(namePattern));
}

QList<QDate> QlumJournal::days() const
{
    QList<QDate> days;
    for (const QString& name : QDir(m_folder).entryList(QDir::Files))
        if (const QDate day = dayOf(name); day.isValid())
            days.append(day);
    std::sort(days.begin(), days.end(), std::greater<>());
    return days;
}

void QlumJournal::append(const std::vector<QlumJournalEntry>& entries)
{
    QString fault;
    {
        const std::lock_guard lock(m_mutex);
        bool isWritten = true;
        for (const QlumJournalEntry& entry : entries)
            isWritten = isWritten && openFor(entry.time.date()) && m_file.write(lineOf(entry)) > 0;
        isWritten = m_file.isOpen() && m_file.flush() && isWritten;
        if (!isWritten) {
            const bool isFull = m_file.isOpen() && m_file.size() >= maximumSize;
            fault = isFull                     ? tr("the file of the day is full")
                    : !QDir(m_folder).exists() ? tr("the folder cannot be made")
                                               : m_file.errorString();
            m_file.close(); // the next entry tries it anew
        }
    }
    if (!fault.isEmpty() && !m_hasFailed.exchange(true))
        QlumLog(tr("Journal"))
            .error(tr("What is changed on servers cannot be written to %1: %2.")
                       .arg(QDir::toNativeSeparators(m_folder), fault));
    emit appended(entries);
}

bool QlumJournal::openFor(const QDate& day)
{
    if (m_file.isOpen() && m_day == day)
        return m_file.size() < maximumSize;
    m_file.close();
    m_day = day;
    if (!QDir().mkpath(m_folder))
        return false;
    QFile::setPermissions(m_folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    removeOld(day);
    m_file.setFileName(fileOf(day));
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Append))
        return false;
    m_file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    if (m_file.size() > 0)
        m_file.write("\n"); // what was written last may have been cut off
    return m_file.size() < maximumSize;
}

void QlumJournal::removeOld(const QDate& today) const
{
    for (const QDate& day : days())
        if (day.daysTo(today) >= keptDays)
            QFile::remove(fileOf(day));
}

QlumJournalReading QlumJournal::read(const QDate& day, const std::function<bool()>& isCancelled) const
{
    QlumJournalReading reading;
    QFile file(fileOf(day));
    if (!file.open(QIODevice::ReadOnly)) {
        reading.error = file.exists() ? file.errorString() : QString();
        return reading;
    }
    std::deque<QlumJournalEntry> newest;
    while (!file.atEnd() && !(isCancelled && isCancelled())) {
        const QByteArray line = file.readLine(maximumLine).trimmed();
        if (line.isEmpty())
            continue;
        std::optional<QlumJournalEntry> entry = entryOf(line);
        if (!entry) {
            ++reading.unreadable;
            continue;
        }
        newest.push_back(std::move(*entry));
        if (newest.size() > maximumEntries) {
            newest.pop_front();
            ++reading.leftOut;
        }
    }
    reading.entries.assign(std::make_move_iterator(newest.begin()), std::make_move_iterator(newest.end()));
    return reading;
}
