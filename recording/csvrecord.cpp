#include <recording/csvrecord.h>

#include <app/api/qlumtext.h>
#include <recording/recordtypes.h>
#include <recording/recordvalue.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QString>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <sys/stat.h>
#include <utility>

namespace recording {

namespace {

struct CsvRecordText
{
    Q_DECLARE_TR_FUNCTIONS(recording::CsvRecord)
};

constexpr int writtenAtOnce = 1 << 20;

// A field that needs it is quoted, from where it begins in the text.
void quoteFrom(QByteArray& text, int begin)
{
    const char* const data = text.constData();
    const bool needs = std::any_of(data + begin, data + text.size(),
                                   [](char c) { return c == '"' || c == ',' || c == '\r' || c == '\n'; });
    if (!needs)
        return;
    QByteArray field = text.mid(begin);
    field.replace("\"", "\"\"");
    text.truncate(begin);
    text.append('"').append(field).append('"');
}

void appendField(QByteArray& text, const QString& field)
{
    const int begin = text.size();
    text.append(field.toUtf8());
    quoteFrom(text, begin);
    text.append(',');
}

void appendNumber(QByteArray& text, quint64 number)
{
    if (number != 0)
        text.append(QByteArray::number(static_cast<qulonglong>(number)));
    text.append(',');
}

} // namespace

// ---- rows

QByteArray CsvRows::heading()
{
    return QByteArrayLiteral("Received,Server,Node,Namespace,Name,Type,Value,Status,Source Time,"
                             "Source 10 ps,Server Time,Server 10 ps,Sequence Number,Event,Count,From,To,"
                             "Text\r\n");
}

void CsvRows::addItem(ItemNumber number, const RecordedItem& item)
{
    QByteArray cells;
    appendField(cells, item.server);
    appendField(cells, item.indexRange.isEmpty()
                           ? item.nodeId
                           : item.nodeId + QLatin1Char('[') + item.indexRange + QLatin1Char(']'));
    appendField(cells, item.namespaceUri);
    appendField(cells, item.name);
    m_items[number] = cells;
}

void CsvRows::append(QByteArray& text, const Portion& portion) const
{
    std::size_t done = 0;
    for (const Portion::Placed& placed : portion.marks) {
        for (; done < std::min(placed.place, portion.records.size()); ++done)
            append(text, portion.records[done]);
        append(text, placed.mark);
    }
    for (; done < portion.records.size(); ++done)
        append(text, portion.records[done]);
}

void CsvRows::append(QByteArray& text, const Record& record) const
{
    const UaDataValue& value = record.value;
    text.append(isoTime(record.received)).append(',');
    const auto item = m_items.find(record.item);
    text.append(item == m_items.end() ? QByteArrayLiteral(",,,,") : item->second);
    text.append(typeText(value.value())).append(',');
    const int begin = text.size();
    appendValueText(text, value.value());
    quoteFrom(text, begin);
    text.append(',');
    if (value.statusCode().code() == 0)
        text.append("Good,");
    else
        appendField(text, qlumStatusText(value.statusCode().code()));
    text.append(isoTime(value.sourceTimestamp())).append(',');
    appendNumber(text, value.sourcePicoseconds());
    text.append(isoTime(value.serverTimestamp())).append(',');
    appendNumber(text, value.serverPicoseconds());
    appendNumber(text, record.sequenceNumber);
    text.append(",,,,\r\n");
}

void CsvRows::append(QByteArray& text, const Mark& mark) const
{
    text.append(isoTime(mark.time)).append(',');
    const auto item = m_items.find(mark.item);
    if (item != m_items.end()) {
        text.append(item->second);
    } else {
        appendField(text, mark.server);
        text.append(",,,");
    }
    text.append(",,");
    appendField(text, mark.status == 0 ? QString() : qlumStatusText(mark.status));
    text.append(",,,,");
    if (mark.first != 0 || mark.last != 0)
        appendField(text, mark.first == mark.last ? QString::number(mark.first)
                                                  : QStringLiteral("%1-%2").arg(mark.first).arg(mark.last));
    else
        text.append(',');
    appendField(text, markWord(mark.kind));
    appendNumber(text, mark.count);
    text.append(isoTime(mark.from)).append(',');
    text.append(isoTime(mark.to)).append(',');
    const int begin = text.size();
    text.append(mark.text.toUtf8());
    quoteFrom(text, begin);
    text.append("\r\n");
}

// ---- files

CsvRecord::CsvRecord(const QString& path, const Rotation& rotation) : m_path(path), m_rotation(rotation) {}

CsvRecord::~CsvRecord()
{
    CsvRecord::close();
}

bool CsvRecord::open()
{
    return openNext();
}

bool CsvRecord::openNext()
{
    const QFileInfo info(m_path);
    const QString time = QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMddTHHmmssZ"));
    for (int count = 1; count < 10'000; ++count) {
        const QString name = QStringLiteral("%1/%2_%3%4.%5")
                                 .arg(info.path(), info.completeBaseName(), time,
                                      count == 1 ? QString() : QStringLiteral("-%1").arg(count),
                                      info.suffix().isEmpty() ? QStringLiteral("csv") : info.suffix());
        auto file = std::make_unique<QFile>(name);
        if (!file->open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered)) {
            if (QFileInfo::exists(name))
                continue; // another program, or the last second's
            return fail(CsvRecordText::tr("%1 cannot be made: %2").arg(name, file->errorString()));
        }
        struct stat facts
        {
        };
        static_cast<void>(::fstat(file->handle(), &facts)); // else it is not the same as any
        m_inode = facts.st_ino;
        m_file = std::move(file);
        m_committed = m_written = 0;
        m_begun = UaDateTime::now().value();
        m_buffer = CsvRows::heading();
        m_pieces.push_back({name, 0, 0, 0});
        return true;
    }
    return fail(CsvRecordText::tr("There is no free name for %1.").arg(m_path));
}

bool CsvRecord::addItem(ItemNumber number, const RecordedItem& item)
{
    m_rows.addItem(number, item);
    return true;
}

bool CsvRecord::write(const Portion& portion)
{
    if (!m_file)
        return fail(CsvRecordText::tr("No file is open."));
    m_rows.append(m_buffer, portion);
    if (!portion.records.empty()) {
        Piece& piece = m_pieces.back();
        m_uncommitted += portion.records.size();
        if (piece.from == 0)
            piece.from = portion.records.front().received;
        piece.to = portion.records.back().received;
    }
    return m_buffer.size() < writtenAtOnce || writeOut();
}

bool CsvRecord::writeOut()
{
    if (m_buffer.isEmpty())
        return true;
    const qint64 written = m_file->write(m_buffer);
    if (written != m_buffer.size())
        return fail(CsvRecordText::tr("%1 cannot be written: %2").arg(path(), m_file->errorString()));
    m_written += written;
    m_buffer.clear();
    return true;
}

bool CsvRecord::commit()
{
    if (!m_file || !writeOut())
        return false;
    m_committed = m_written;
    m_pieces.back().records += std::exchange(m_uncommitted, 0);
    return !isRotationDue() || openNext();
}

bool CsvRecord::isRotationDue() const
{
    return (m_rotation.bytes > 0 && m_committed >= m_rotation.bytes) ||
           (m_rotation.seconds > 0 &&
            UaDateTime::now().value() - m_begun >= m_rotation.seconds * ticksOfSecond);
}

// What was half written goes, so that every row of the file is whole.
void CsvRecord::rollback()
{
    m_uncommitted = 0;
    m_buffer.clear();
    if (m_file && (!m_file->resize(m_committed) || !m_file->seek(m_committed)))
        m_file.reset();
    m_written = m_committed;
    if (m_committed == 0)
        m_buffer = CsvRows::heading();
}

void CsvRecord::close()
{
    if (m_file)
        rollback();
    if (m_file && m_committed == 0) {
        m_file->remove(); // nothing came into it
        m_pieces.pop_back();
    }
    m_file.reset();
    m_buffer.clear();
}

bool CsvRecord::isIntact()
{
    struct stat facts
    {
    };
    if (!m_file || ::stat(QFile::encodeName(m_file->fileName()).constData(), &facts) != 0)
        return fail(CsvRecordText::tr("%1 was removed while it was recorded to.").arg(path()));
    if (facts.st_ino != m_inode)
        return fail(CsvRecordText::tr("%1 was replaced while it was recorded to.").arg(path()));
    return facts.st_size >= m_committed ||
           fail(CsvRecordText::tr("%1 was cut while it was recorded to.").arg(path()));
}

qint64 CsvRecord::size()
{
    qint64 bytes = 0;
    for (const Piece& piece : m_pieces)
        bytes += QFileInfo(piece.path).size();
    return bytes;
}

// Whole files go, but never the one that is written.
bool CsvRecord::keepWithin(const Bounds& bounds, OpcUa_DateTime now, Dropped& dropped)
{
    if (m_pieces.size() < 2)
        return true;
    const Piece oldest = m_pieces.front();
    const bool isDue =
        (bounds.bytes > 0 && size() > bounds.bytes) ||
        (bounds.seconds > 0 && oldest.to != 0 && oldest.to < now - bounds.seconds * ticksOfSecond);
    if (!isDue)
        return true;
    if (!QFile::remove(oldest.path) && QFileInfo::exists(oldest.path))
        return fail(CsvRecordText::tr("%1 cannot be deleted.").arg(oldest.path));
    m_pieces.erase(m_pieces.begin());
    dropped = {oldest.records, oldest.from, oldest.to};
    return true;
}

} // namespace recording
