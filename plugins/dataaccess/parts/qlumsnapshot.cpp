#include <plugins/dataaccess/parts/qlumsnapshot.h>

#include <app/api/qlumtext.h>
#include <uabase/text/uavaluetext.h>
#include <uabase/values/uastring.h>

#include <QChar>
#include <QCoreApplication>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QJsonValue>
#include <QLatin1String>
#include <QSet>
#include <QStringList>

#include <cstddef>
#include <string_view>
#include <utility>

namespace {
const QLatin1String formatName("Tavelin snapshot");
constexpr int formatVersion = 1;
constexpr int maximumSnapshotRows = 200'000;

QString snapshotWords(const char* text)
{
    return QCoreApplication::translate("QlumSnapshot", text);
}

// ---- text

using TextMember = QString QlumSnapshotRow::*;
constexpr std::pair<const char*, TextMember> textMembers[] = {
    {"server", &QlumSnapshotRow::server},         {"namespace", &QlumSnapshotRow::namespaceUri},
    {"node", &QlumSnapshotRow::nodeId},           {"range", &QlumSnapshotRow::indexRange},
    {"field", &QlumSnapshotRow::fieldPath},       {"name", &QlumSnapshotRow::name},
    {"browsePath", &QlumSnapshotRow::browsePath}, {"unit", &QlumSnapshotRow::unit},
};

QJsonObject objectOf(const QlumSnapshotRow& row)
{
    QJsonObject object;
    for (const auto& [key, member] : textMembers)
        if (!(row.*member).isEmpty())
            object.insert(QLatin1String(key), row.*member);
    // as text of its own, since numbers of JSON objects here would lose digits
    UaString value;
    if (row.hasValue && UaValueText::toJson(row.value, nullptr, value).isNotBad())
        object.insert(QStringLiteral("value"), toQString(value));
    return object;
}

// False for a value that cannot be read.
bool readRow(const QJsonObject& object, QlumSnapshotRow& row)
{
    for (const auto& [key, member] : textMembers)
        row.*member = object.value(QLatin1String(key)).toString();
    if (!object.contains(QStringLiteral("value")))
        return true;
    const QByteArray value = object.value(QStringLiteral("value")).toString().toUtf8();
    const std::string_view text(value.constData(), static_cast<std::size_t>(value.size()));
    row.hasValue = UaValueText::fromJson(text, nullptr, row.value).isNotBad();
    return row.hasValue;
}
} // namespace

QByteArray qlumSnapshotText(const QlumSnapshot& snapshot)
{
    QJsonArray rows;
    for (const QlumSnapshotRow& row : snapshot.rows)
        rows.append(objectOf(row));
    QJsonObject document;
    document.insert(QStringLiteral("format"), formatName);
    document.insert(QStringLiteral("version"), formatVersion);
    document.insert(QStringLiteral("name"), snapshot.name);
    document.insert(QStringLiteral("taken"), snapshot.taken.toUTC().toString(Qt::ISODateWithMs));
    document.insert(QStringLiteral("rows"), rows);
    return QJsonDocument(document).toJson(QJsonDocument::Compact);
}

bool qlumReadSnapshot(const QByteArray& text, QlumSnapshot& snapshot, QString& fault, int& unreadable)
{
    QJsonParseError error{};
    const QJsonObject document = QJsonDocument::fromJson(text, &error).object();
    if (error.error != QJsonParseError::NoError)
        fault = snapshotWords("This is no snapshot: %1.").arg(error.errorString());
    else if (document.value(QStringLiteral("format")).toString() != formatName)
        fault = snapshotWords("This is no snapshot of a data access view.");
    else if (document.value(QStringLiteral("version")).toInt() != formatVersion)
        fault = snapshotWords("The snapshot was written by a newer version of the program.");
    else if (document.value(QStringLiteral("rows")).toArray().size() > maximumSnapshotRows)
        fault = snapshotWords("The snapshot has more than %1 rows.").arg(maximumSnapshotRows);
    if (!fault.isEmpty())
        return false;
    unreadable = 0;
    snapshot = {document.value(QStringLiteral("name")).toString(),
                QDateTime::fromString(document.value(QStringLiteral("taken")).toString(), Qt::ISODateWithMs)
                    .toLocalTime(),
                {}};
    const QJsonArray rows = document.value(QStringLiteral("rows")).toArray();
    for (const QJsonValue& row : rows) {
        snapshot.rows.emplace_back();
        unreadable += readRow(row.toObject(), snapshot.rows.back()) ? 0 : 1;
    }
    return true;
}

// ---- comparison

namespace {
const QChar separatorSign(0x1F);

QString joined(const QStringList& parts)
{
    return parts.join(separatorSign);
}

QString idKey(const QlumSnapshotRow& row, const QString& server)
{
    if (row.nodeId.isEmpty()) // it names no node, but is the same row
        return joined({server, row.name});
    return joined({server, row.namespaceUri, row.nodeId, row.indexRange, row.fieldPath});
}

QString pathKey(const QlumSnapshotRow& row, const QString& server)
{
    if (row.browsePath.isEmpty())
        return {};
    return joined({server, row.namespaceUri, row.browsePath, row.indexRange, row.fieldPath});
}

// Finds the rows of before for those of after.
class RowMatcher
{
public:
    RowMatcher(const QlumSnapshot& before, const QlumSnapshot& after)
        : m_before(before), m_after(after), m_isTaken(before.rows.size(), false),
          m_partners(after.rows.size(), -1)
    {
        for (const QlumSnapshotRow& row : after.rows)
            m_servers.insert(row.server);
        for (const QlumSnapshotRow& row : before.rows)
            m_oldServers.insert(row.server);
        match(idKey);
        m_byPathFrom = match(pathKey);
    }

    // -1 for a new row.
    [[nodiscard]] int partnerOf(std::size_t row) const { return m_partners[row]; }
    [[nodiscard]] bool isTaken(std::size_t row) const { return m_isTaken[row]; }
    [[nodiscard]] bool isByPath(std::size_t row) const
    {
        return m_byPathFrom.contains(static_cast<int>(row));
    }

private:
    using Key = QString (*)(const QlumSnapshotRow& row, const QString& server);

    // A server that the other side does not know by its name has another name there.
    [[nodiscard]] static QString known(const QString& server, const QSet<QString>& others)
    {
        return others.contains(server) ? server : QString();
    }

    // The rows of after for which something was found.
    QSet<int> match(Key key)
    {
        QHash<QString, int> places;
        for (int i = static_cast<int>(m_before.rows.size()); i-- > 0;) {
            const QlumSnapshotRow& row = m_before.rows[static_cast<std::size_t>(i)];
            const QString text = key(row, known(row.server, m_servers));
            if (!m_isTaken[static_cast<std::size_t>(i)] && !text.isEmpty())
                places.insert(text, i);
        }
        QSet<int> found;
        for (std::size_t i = 0; i < m_after.rows.size(); ++i) {
            const QlumSnapshotRow& row = m_after.rows[i];
            const QString text = key(row, known(row.server, m_oldServers));
            const auto place = places.constFind(text);
            if (m_partners[i] >= 0 || text.isEmpty() || place == places.constEnd())
                continue;
            m_partners[i] = place.value();
            m_isTaken[static_cast<std::size_t>(place.value())] = true;
            found.insert(static_cast<int>(i));
            places.remove(text);
        }
        return found;
    }

    const QlumSnapshot& m_before;
    const QlumSnapshot& m_after;
    std::vector<bool> m_isTaken;
    std::vector<int> m_partners;
    QSet<QString> m_servers;
    QSet<QString> m_oldServers;
    QSet<int> m_byPathFrom;
};

QlumDifferenceKind kindOf(const QlumSnapshotRow& before, const QlumSnapshotRow& after)
{
    if (before.hasValue != after.hasValue || before.value.value() != after.value.value())
        return QlumDifferenceKind::Changed;
    return before.value.statusCode().code() == after.value.statusCode().code() ? QlumDifferenceKind::Same
                                                                               : QlumDifferenceKind::Status;
}
} // namespace

std::vector<QlumDifferenceRow> qlumCompare(const QlumSnapshot& before, const QlumSnapshot& after)
{
    const RowMatcher matcher(before, after);
    std::vector<QlumDifferenceRow> rows;
    for (std::size_t i = 0; i < after.rows.size(); ++i) {
        const int partner = matcher.partnerOf(i);
        if (partner < 0) {
            rows.push_back({QlumDifferenceKind::New, false, {}, after.rows[i]});
            continue;
        }
        const QlumSnapshotRow& old = before.rows[static_cast<std::size_t>(partner)];
        rows.push_back({kindOf(old, after.rows[i]), matcher.isByPath(i), old, after.rows[i]});
    }
    for (std::size_t i = 0; i < before.rows.size(); ++i)
        if (!matcher.isTaken(i))
            rows.push_back({QlumDifferenceKind::Gone, false, before.rows[i], {}});
    return rows;
}
