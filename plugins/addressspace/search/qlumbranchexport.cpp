#include <plugins/addressspace/search/qlumbranchexport.h>

#include <app/api/qlumlocalid.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/qlumnodelook.h>
#include <uawidgets/table/qlumtabletext.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QStringList>

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

namespace {
using Number = QlumNodeIndex::Number;

// Each node behind the one above it, with all that is below it before its next neighbour.
std::vector<Number> inTreeOrder(const QlumNodeIndex& index)
{
    std::vector<std::vector<Number>> below(index.size());
    index.visit(1, index.size(), [&](Number number, const QlumNodeIndex::Node& node) {
        below[node.parent].push_back(number);
    });
    std::vector<Number> order;
    std::vector<Number> waiting{0};
    while (!waiting.empty()) {
        const Number number = waiting.back();
        waiting.pop_back();
        order.push_back(number);
        waiting.insert(waiting.end(), below[number].rbegin(), below[number].rend());
    }
    return order;
}

QString portable(const UaNodeId& id, const UaStringArray& namespaces)
{
    return id.isNull() ? QString() : toQString(qlumPortableId(id, namespaces).toString());
}

// One node on its way into the file.
struct Record
{
    QlumNodeIndex::Copy node;
    QString path;
    QString browsePath;
    QlumNodeDetails details;
};

// In the order of the columns; the names are those of JSON, too.
constexpr const char* fieldNames[] = {"path",  "browsePath",     "nodeId",   "name",
                                      "class", "typeDefinition", "dataType", "access",
                                      "unit",  "description",    "value",    "status"};

QStringList fieldsOf(const Record& record, const UaStringArray& namespaces, const QlumDetailsWish& wish)
{
    const QlumNodeDetails& details = record.details;
    const bool hasValue = wish.value && record.node.nodeClass == OpcUa_NodeClass_Variable;
    const QString type = record.node.typeName.isEmpty() ? portable(record.node.typeDefinition, namespaces)
                                                        : record.node.typeName;
    return {record.path,
            record.browsePath,
            portable(record.node.id, namespaces),
            record.node.name,
            qlumNodeClassText(static_cast<OpcUa_Int32>(record.node.nodeClass)),
            type,
            details.dataType,
            details.access,
            details.unit,
            details.description,
            hasValue ? details.valueText : QString(),
            hasValue ? qlumStatusText(details.value.statusCode().code()) : QString()};
}

QByteArray jsonOf(const QStringList& fields, const Record& record)
{
    QJsonObject object;
    for (int i = 0; i < fields.size(); ++i)
        if (!fields.at(i).isEmpty() && qstrcmp(fieldNames[i], "value") != 0)
            object.insert(QLatin1String(fieldNames[i]), fields.at(i));
    QByteArray text = QJsonDocument(object).toJson(QJsonDocument::Compact);
    if (!record.details.valueJson.isEmpty()) { // which is JSON already
        text.chop(1);
        text += ",\"value\":" + record.details.valueJson.toUtf8() + '}';
    }
    return text;
}

class Writer
{
public:
    explicit Writer(const QlumExportWish& wish) : m_wish(wish), m_file(wish.file) {}

    bool open()
    {
        if (!m_file.open(QIODevice::WriteOnly))
            return false;
        QStringList titles;
        for (const char* name : fieldNames)
            titles.append(QLatin1String(name));
        m_bytes = m_wish.isJson() ? QByteArray("[") : qlumCsvRecord(titles);
        return true;
    }
    bool write(const std::vector<Record>& records, const UaStringArray& namespaces)
    {
        for (const Record& record : records) {
            const QStringList fields = fieldsOf(record, namespaces, m_wish.details);
            if (!m_wish.isJson())
                m_bytes += qlumCsvRecord(fields);
            else
                m_bytes += (m_isFirst ? "\n" : ",\n") + jsonOf(fields, record);
            m_isFirst = false;
        }
        return flush();
    }
    bool finish()
    {
        if (m_wish.isJson())
            m_bytes += "\n]\n";
        return flush() && m_file.commit();
    }
    void cancel() { m_file.cancelWriting(); }
    [[nodiscard]] QString error() const { return m_file.errorString(); }

private:
    bool flush()
    {
        const bool isWritten = m_file.write(m_bytes) == m_bytes.size();
        m_bytes.clear();
        return isWritten;
    }

    const QlumExportWish& m_wish;
    QSaveFile m_file;
    QByteArray m_bytes;
    bool m_isFirst = true;
};

// Of nodes that the server does not tell of the rest is written all the same.
std::vector<Record> recordsOf(QlumJob& job, const std::shared_ptr<QlumSessionServices>& session,
                              const QlumNodeIndex& index, std::span<const Number> numbers,
                              const QlumDetailsWish& wish, std::size_t& unread)
{
    std::vector<Record> records;
    std::vector<QlumAskedNode> asked;
    for (const Number number : numbers) {
        records.push_back({index.copy(number), index.path(number), index.browsePath(number), {}});
        asked.push_back({records.back().node.id, records.back().node.nodeClass});
    }
    std::vector<QlumNodeDetails> details;
    if (!wish.any())
        return records;
    if (!session || qlumReadDetails(job, session, asked, wish, details).isBad()) {
        unread += records.size();
        return records;
    }
    for (std::size_t i = 0; i < records.size() && i < details.size(); ++i)
        records[i].details = std::move(details[i]);
    return records;
}
} // namespace

bool QlumExportWish::isJson() const
{
    return file.endsWith(QLatin1String(".json"), Qt::CaseInsensitive);
}

QlumExportOutcome qlumExportNodes(QlumJob& job, const std::shared_ptr<QlumSessionServices>& session,
                                  const QlumNodeIndex& index, const QlumExportWish& wish,
                                  const std::function<void(std::size_t written)>& told)
{
    QlumExportOutcome outcome;
    Writer writer(wish);
    const UaStringArray namespaces = session ? session->namespaceTable() : UaStringArray();
    const std::vector<Number> order = inTreeOrder(index);
    bool isWritten = writer.open();
    while (isWritten && outcome.written < order.size()) {
        const std::size_t count = std::min(qlumDetailsPortion, order.size() - outcome.written);
        const std::vector<Record> records =
            recordsOf(job, session, index, std::span(order).subspan(outcome.written, count), wish.details,
                      outcome.unread);
        if (job.isCancelled()) {
            writer.cancel();
            return outcome;
        }
        isWritten = writer.write(records, namespaces);
        outcome.written += count;
        job.setProgress(static_cast<qint64>(outcome.written), static_cast<qint64>(order.size()));
        told(outcome.written);
    }
    if (!isWritten || !writer.finish())
        outcome.error = writer.error();
    return outcome;
}
