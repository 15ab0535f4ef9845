#include <plugins/history/qlumhistorycsv.h>

#include <app/api/qlumjob.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/history/qlumhistoryplan.h>
#include <plugins/history/qlumhistoryreader.h>
#include <plugins/history/qlumhistoryvalues.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/historyresults.h>
#include <uawidgets/table/qlumtabletext.h>

#include <QByteArray>
#include <QIODevice>
#include <QMap>
#include <QSaveFile>
#include <QString>

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

namespace {

QByteArray timeText(OpcUa_DateTime time)
{
    return time == 0 ? QByteArray() : QByteArray(UaDateTime(time).toFullString().toUtf8());
}

QByteArray valueText(const OpcUa_Variant& value)
{
    const std::optional<double> number = qlumHistoryNumber(value);
    if (!number)
        return value.Datatype == OpcUaType_Null ? QByteArray()
                                                : qlumCsvField(toQString(UaVariant(value).toString()));
    if (!std::isfinite(*number))
        return {};
    std::array<char, 32> digits{};
    const char* end = std::to_chars(digits.data(), digits.data() + digits.size(), *number).ptr;
    return QByteArray(digits.data(), static_cast<int>(end - digits.data()));
}

const char* qualityText(OpcUa_StatusCode status)
{
    if (OpcUa_IsBad(status))
        return "Bad";
    return OpcUa_IsGood(status) ? "Good" : "Uncertain";
}

QByteArray valueLine(const OpcUa_DataValue& value, const QByteArray& nameAndUnit)
{
    QByteArray line = timeText(value.SourceTimestamp);
    line.append(',').append(nameAndUnit).append(valueText(value.Value)).append(',');
    line.append(qualityText(value.StatusCode)).append(",0x");
    line.append(QByteArray::number(value.StatusCode, 16).rightJustified(8, '0')).append(',');
    return line.append(timeText(value.ServerTimestamp)).append("\r\n");
}

class FileWriter
{
public:
    FileWriter(QlumJob& job, QSaveFile& file, const QMap<int, QlumHistoryName>& names)
        : m_job(job), m_file(file), m_names(names)
    {
    }

    // False: the disk takes no more.
    bool write(int key, const UaClientSdk::HistoryReadDataResult& result)
    {
        const QlumHistoryName name = m_names.value(key);
        const QByteArray nameAndUnit = qlumCsvField(name.name) + ',' + qlumCsvField(name.unit) + ',';
        QByteArray lines;
        for (const OpcUa_DataValue& value : result.values) {
            if (value.StatusCode == OpcUa_BadBoundNotFound)
                continue;
            lines += valueLine(value, nameAndUnit);
            ++m_count;
        }
        m_job.setProgress(static_cast<qint64>(m_count), 0);
        m_isWritten = m_isWritten && m_file.write(lines) == lines.size();
        return m_isWritten;
    }
    [[nodiscard]] bool isWritten() const { return m_isWritten; }
    [[nodiscard]] quint64 count() const { return m_count; }

private:
    QlumJob& m_job;
    QSaveFile& m_file;
    const QMap<int, QlumHistoryName>& m_names;
    quint64 m_count = 0;
    bool m_isWritten = true;
};

} // namespace

QlumHistoryFile qlumWriteHistory(QlumJob& job, const QlumSessionServicesProvider& services,
                                 const std::vector<QlumHistoryPlan>& plans,
                                 const QMap<int, QlumHistoryName>& names, const QString& fileName)
{
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        return {0, 0, file.errorString()};
    file.write("Time,Name,Unit,Value,Quality,Status,Server Time\r\n");
    FileWriter writer(job, file, names);
    int incomplete = 0;
    for (const QlumHistoryPlan& plan : plans) {
        const std::shared_ptr<QlumSessionServices> session = services(plan.serverId);
        if (!session || job.isCancelled() || !writer.isWritten()) {
            incomplete += static_cast<int>(plan.targets.size());
            continue;
        }
        const auto take = [&](std::size_t target, const UaClientSdk::HistoryReadDataResult& result,
                              OpcUa_UInt32) { return writer.write(plan.targets[target].key, result); };
        QlumHistoryReader reader(
            *session, plan,
            {[&job] { return job.isCancelled(); }, [&job] { return job.serviceSettings(); }, take});
        for (const QlumHistoryOutcome& outcome : reader.read())
            incomplete += outcome.hasMore || outcome.status.isBad() ? 1 : 0;
    }
    if (job.isCancelled())
        return {0, incomplete, {}};
    if (!writer.isWritten() || !file.commit())
        return {0, incomplete, file.errorString()};
    return {writer.count(), incomplete, {}};
}
