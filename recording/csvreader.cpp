#include <recording/csvreader.h>

#include <recording/recordlock.h>
#include <recording/recordvalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastatuscode.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QString>
#include <QStringList>

#include <cstdlib>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace recording {

namespace {

struct CsvReaderText
{
    Q_DECLARE_TR_FUNCTIONS(recording::CsvReader)
};

constexpr std::size_t csvRowsAtOnce = 5000;

template <typename Number>
Number csvNumber(const std::string& text)
{
    constexpr int decimal = 10;
    return static_cast<Number>(std::strtoull(text.c_str(), nullptr, decimal));
}

Record csvRecordOf(const std::vector<std::string>& cells, ItemNumber item)
{
    Record record;
    record.item = item;
    record.received = timeOfIso(cells[ReceivedColumn]);
    record.sequenceNumber = csvNumber<OpcUa_UInt32>(cells[SequenceColumn]);
    record.value.setValue(restoredText(cells[TypeColumn], cells[ValueColumn]));
    record.value.setStatusCode(UaStatusCode(restoredStatus(cells[StatusColumn])));
    record.value.setSourceTimestamp(UaDateTime(timeOfIso(cells[SourceTimeColumn])),
                                    csvNumber<OpcUa_UInt16>(cells[SourcePicosecondsColumn]));
    record.value.setServerTimestamp(UaDateTime(timeOfIso(cells[ServerTimeColumn])),
                                    csvNumber<OpcUa_UInt16>(cells[ServerPicosecondsColumn]));
    return record;
}

Mark csvMarkOf(const std::vector<std::string>& cells, ItemNumber item)
{
    Mark mark;
    mark.kind = markKind(QString::fromStdString(cells[EventColumn]));
    mark.time = timeOfIso(cells[ReceivedColumn]);
    mark.server = QString::fromStdString(cells[ServerColumn]);
    mark.item = item;
    mark.status = cells[StatusColumn].empty() ? 0 : restoredStatus(cells[StatusColumn]);
    const std::string& numbers = cells[SequenceColumn]; // "5", or "5-7"
    const std::size_t dash = numbers.find('-');
    mark.first = csvNumber<OpcUa_UInt32>(numbers);
    mark.last = dash == std::string::npos ? mark.first : csvNumber<OpcUa_UInt32>(numbers.substr(dash + 1));
    mark.count = csvNumber<OpcUa_UInt64>(cells[CountColumn]);
    mark.from = timeOfIso(cells[FromColumn]);
    mark.to = timeOfIso(cells[ToColumn]);
    mark.text = QString::fromStdString(cells[TextColumn]);
    return mark;
}

} // namespace

bool CsvReader::open(const QString& path)
{
    m_parts.clear();
    m_items.clear();
    m_numbers.clear();
    const QStringList paths = csvParts(path);
    if (paths.isEmpty()) {
        m_error = CsvReaderText::tr("%1 is not there, or may not be read.").arg(path);
        return false;
    }
    return knowParts(paths);
}

// Each file names the one before it, since a clock that is set back spoils the order of names.
bool CsvReader::knowParts(const QStringList& paths)
{
    std::map<QString, std::vector<Part>> followers; // by the name of the one before; empty for a first one
    QStringList names;
    for (const QString& path : paths)
        names.append(QFileInfo(path).fileName());
    for (const QString& path : paths) {
        CsvTable table;
        if (!table.open(path)) {
            m_error = table.error();
            return false;
        }
        Part part{path, {}, {}};
        if (std::vector<std::string> cells; table.next(cells) && cells.size() == CsvColumnCount) {
            part.begun = timeOfIso(cells[ReceivedColumn]);
            if (QString::fromStdString(cells[EventColumn]) == markWord(MarkKind::Continued))
                part.former = QString::fromStdString(cells[TextColumn]);
        }
        const bool isThere = names.contains(part.former) && part.former != QFileInfo(path).fileName();
        followers[isThere ? part.former : QString()].push_back(part);
    }
    std::vector<Part> open = followers[QString()];
    while (!open.empty()) {
        m_parts.push_back(open.front());
        open.erase(open.begin());
        const std::vector<Part> next = followers[QFileInfo(m_parts.back().path).fileName()];
        open.insert(open.begin(), next.begin(), next.end());
    }
    return true;
}

void CsvReader::addGap(Portion& portion, const Part& part, OpcUa_DateTime from) const
{
    const bool isFirst = part.path == m_parts.front().path;
    Mark gap;
    gap.kind = MarkKind::Gap;
    gap.time = gap.to = part.begun;
    gap.from = isFirst ? 0 : from;
    gap.text = isFirst ? CsvReaderText::tr("What was recorded before, %1, is not there.").arg(part.former)
                       : CsvReaderText::tr("%1 is not there.").arg(part.former);
    portion.add(gap);
}

bool CsvReader::visit(const std::function<bool(const Portion&)>& visitor)
{
    Portion portion;
    OpcUa_DateTime last{};
    QString former;
    bool goesOn = true;
    for (const Part& part : m_parts) {
        if (!part.former.isEmpty() && part.former != former)
            addGap(portion, part, last);
        former = QFileInfo(part.path).fileName();
        if (!visitPart(part, portion, last, visitor, goesOn))
            return false;
        if (!goesOn)
            return true;
    }
    static_cast<void>(visitor(portion)); // there is nothing more anyway
    return true;
}

bool CsvReader::visitPart(const Part& part, Portion& portion, OpcUa_DateTime& last,
                          const std::function<bool(const Portion&)>& visitor, bool& goesOn)
{
    CsvTable table;
    std::vector<std::string> cells;
    bool isOpen = table.open(part.path);
    OpcUa_UInt64 wrong = 0;
    while (isOpen && goesOn && table.next(cells)) {
        if (cells.size() != CsvColumnCount || timeOfIso(cells[ReceivedColumn]) == 0) {
            ++wrong;
            continue;
        }
        take(portion, cells);
        last = timeOfIso(cells[ReceivedColumn]);
        if (portion.records.size() + portion.marks.size() >= csvRowsAtOnce) {
            goesOn = visitor(portion);
            portion.clear();
        }
    }
    if (!table.error().isEmpty()) {
        m_error = table.error();
        return false;
    }
    // the row that is being written at the moment will be whole the next time
    const bool isGrowing = part.path == m_parts.back().path && isBeingRecorded(csvChosenName(part.path));
    if (table.isCut() && !isGrowing)
        ++wrong;
    if (wrong > 0) {
        Mark trouble;
        trouble.kind = MarkKind::FileTrouble;
        trouble.time = last;
        trouble.count = wrong;
        trouble.text = CsvReaderText::tr("%1 is damaged: rows that are not whole were left out.")
                           .arg(QFileInfo(part.path).fileName());
        portion.add(trouble);
    }
    return true;
}

void CsvReader::take(Portion& portion, const std::vector<std::string>& cells)
{
    const ItemNumber item = itemOf(cells);
    if (cells[EventColumn].empty())
        portion.records.push_back(csvRecordOf(cells, item));
    else
        portion.add(csvMarkOf(cells, item));
}

// By the first row that names it; 0 for what is of no item.
ItemNumber CsvReader::itemOf(const std::vector<std::string>& cells)
{
    if (cells[NodeColumn].empty())
        return 0;
    m_key.assign(cells[ServerColumn]).append(1, '\0');
    m_key.append(cells[NodeColumn]).append(1, '\0').append(cells[NamespaceColumn]);
    const auto [found, isNew] = m_numbers.try_emplace(m_key, static_cast<ItemNumber>(m_items.size() + 1));
    if (isNew) {
        RecordedItem& item = m_items.emplace_back();
        item.server = QString::fromStdString(cells[ServerColumn]);
        item.nodeId = QString::fromStdString(cells[NodeColumn]);
        item.namespaceUri = QString::fromStdString(cells[NamespaceColumn]);
        item.name = QString::fromStdString(cells[NameColumn]);
    }
    RecordedItem& item = m_items[found->second - 1];
    if (item.dataType.isEmpty())
        item.dataType = QString::fromStdString(cells[TypeColumn]);
    return found->second;
}

} // namespace recording
