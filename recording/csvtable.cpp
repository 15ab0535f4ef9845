#include <recording/csvtable.h>

#include <recording/csvrecord.h>
#include <recording/recordtypes.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileDevice>
#include <QFileInfo>
#include <QRegularExpression>
#include <QRegularExpressionMatch>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace recording {

namespace {

struct CsvTableText
{
    Q_DECLARE_TR_FUNCTIONS(recording::CsvTable)
};

constexpr qint64 blockSize = 1 << 20;
constexpr std::size_t largestCell = 1u << 30; // a quote that never ends is no cell
constexpr qint64 tailSize = 1 << 16;
constexpr int timeLength = 28;

const QRegularExpression& partPattern()
{
    static const QRegularExpression pattern(QStringLiteral("^(.*)_(\\d{8}T\\d{6}Z)(?:-(\\d{1,4}))?$"));
    return pattern;
}

QString endingOf(const QFileInfo& info)
{
    return info.suffix().isEmpty() ? QStringLiteral("csv") : info.suffix();
}

} // namespace

// ---- rows

bool CsvTable::open(const QString& path)
{
    m_file.setFileName(path);
    m_block.clear();
    m_place = 0;
    m_isCut = false;
    if (!m_file.open(QIODevice::ReadOnly)) {
        m_error = CsvTableText::tr("%1 cannot be read: %2").arg(path, m_file.errorString());
        return false;
    }
    const QByteArray heading = CsvRows::heading();
    if (m_file.read(heading.size()) == heading)
        return true;
    m_error = CsvTableText::tr("%1 is no recording.").arg(path);
    return false;
}

bool CsvTable::fill()
{
    const QByteArray block = m_file.read(blockSize);
    if (block.isEmpty() && m_file.error() != QFileDevice::NoError)
        m_error = CsvTableText::tr("%1 cannot be read: %2").arg(m_file.fileName(), m_file.errorString());
    m_block.assign(block.constData(), static_cast<std::size_t>(block.size()));
    m_place = 0;
    return !m_block.empty();
}

bool CsvTable::next(std::vector<std::string>& cells)
{
    for (std::string& cell : cells)
        cell.clear();
    cells.resize(std::max<std::size_t>(cells.size(), 1));
    std::size_t column = 0;
    bool isQuoted = false, hasClosed = false, isBegun = false;
    for (;;) {
        if (m_place == m_block.size() && !fill()) {
            m_isCut = isBegun;
            return false;
        }
        isBegun = true;
        const char c = m_block[m_place++];
        if (c == '"') {
            if (hasClosed) // the second of two stands for one
                cells[column].push_back(c);
            hasClosed = isQuoted;
            isQuoted = !isQuoted;
            continue;
        }
        hasClosed = false;
        if (isQuoted) {
            cells[column].push_back(c);
        } else if (c == ',') {
            if (++column == cells.size())
                cells.emplace_back();
        } else if (c == '\n') {
            cells.resize(column + 1);
            return true;
        } else if (c != '\r') {
            cells[column].push_back(c);
        }
        if (cells[column].size() > largestCell) {
            m_error = CsvTableText::tr("%1 is damaged.").arg(m_file.fileName());
            return false;
        }
    }
}

// ---- sets

QString csvPartName(const QString& path, const QString& time, int count)
{
    const QFileInfo info(path);
    return QStringLiteral("%1/%2_%3%4.%5")
        .arg(info.path(), info.completeBaseName(), time,
             count == 1 ? QString() : QStringLiteral("-%1").arg(count), endingOf(info));
}

QString csvChosenName(const QString& part)
{
    const QFileInfo info(part);
    const QRegularExpressionMatch named = partPattern().match(info.completeBaseName());
    return named.hasMatch()
               ? info.path() + QLatin1Char('/') + named.captured(1) + QLatin1Char('.') + endingOf(info)
               : QString();
}

QStringList csvParts(const QString& path)
{
    if (!QFileInfo(path).isFile())
        return csvPartsOf(path);
    const QString chosen = csvChosenName(path);
    return chosen.isEmpty() ? QStringList(path) : csvPartsOf(chosen); // the first is an export
}

QStringList csvPartsOf(const QString& chosen)
{
    const QFileInfo info(chosen);
    std::vector<std::tuple<QString, int, QString>> found;
    const QDir folder(info.path());
    for (const QString& name : folder.entryList(QDir::Files)) {
        const QFileInfo other(name);
        const QRegularExpressionMatch match = partPattern().match(other.completeBaseName());
        if (match.hasMatch() && match.captured(1) == info.completeBaseName() &&
            other.suffix() == endingOf(info))
            found.emplace_back(match.captured(2), match.captured(3).toInt(), folder.filePath(name));
    }
    std::sort(found.begin(), found.end());
    QStringList paths;
    for (const auto& [time, count, file] : found)
        paths.append(file);
    return paths;
}

bool isCsvRecording(const QString& path)
{
    QFile file(path);
    const QByteArray heading = CsvRows::heading();
    return file.open(QIODevice::ReadOnly) && file.read(heading.size()) == heading;
}

OpcUa_DateTime csvLastTime(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    file.seek(std::max<qint64>(file.size() - tailSize, 0));
    const QByteArray tail = file.read(tailSize);
    const int end = tail.lastIndexOf("\r\n");
    for (int at = end; at > 0 && (at = tail.lastIndexOf("\r\n", at - 1)) >= 0;) {
        const OpcUa_DateTime time = timeOfIso(tail.mid(at + 2, timeLength).toStdString());
        if (time != 0 && tail.mid(at + 2 + timeLength, 1) == ",")
            return time;
    }
    constexpr OpcUa_Int64 ticksOfMillisecond = 10'000, secondsTo1970 = 11'644'473'600;
    return QFileInfo(path).lastModified().toMSecsSinceEpoch() * ticksOfMillisecond +
           secondsTo1970 * ticksOfSecond;
}

} // namespace recording
