// Reads recordings that are CSV files.
#pragma once

#include <recording/csvtable.h>
#include <recording/recordtypes.h>

#include <QString>
#include <QStringList>

#include <cstddef>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

namespace recording {

/// A file or all files of a set, in the order in which they were written, whatever the clock did meanwhile.
/// What is missing of a set stands as a gap among the marks. Each call goes through the whole text. Belongs
/// to one thread.
class CsvReader
{
public:
    /// False, with a reason for people in error(), for what is no recording.
    [[nodiscard]] bool open(const QString& path);
    [[nodiscard]] const QString& error() const { return m_error; } ///< of the last call that failed

    /// Everything in its order, in portions. Ends when the visitor answers false.
    [[nodiscard]] bool visit(const std::function<bool(const Portion&)>& visitor);
    /// That visit() has met, by number - 1.
    [[nodiscard]] const std::vector<RecordedItem>& items() const { return m_items; }

private:
    struct Part
    {
        QString path;
        QString former; ///< name of the file that it continues; empty: none
        OpcUa_DateTime begun{};
    };

    [[nodiscard]] bool knowParts(const QStringList& paths);
    void addGap(Portion& portion, const Part& part, OpcUa_DateTime from) const;
    [[nodiscard]] bool visitPart(const Part& part, Portion& portion, OpcUa_DateTime& last,
                                 const std::function<bool(const Portion&)>& visitor, bool& goesOn);
    void take(Portion& portion, const std::vector<std::string>& cells);
    [[nodiscard]] ItemNumber itemOf(const std::vector<std::string>& cells);

    std::vector<Part> m_parts;
    std::vector<RecordedItem> m_items;
    std::unordered_map<std::string, ItemNumber> m_numbers;
    std::string m_key;
    QString m_error;
};

} // namespace recording
