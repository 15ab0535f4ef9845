#include <app/project/qluminicheck.h>

#include <app/api/qlumtext.h>
#include <uabase/system/uadir.h>

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace {
constexpr int maximumReported = 20;

class Text
{
    Q_DECLARE_TR_FUNCTIONS(QlumIniCheck)
};

bool isHexDigit(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

// One entry ends at a line end outside quotes; a backslash takes the next character with it.
std::size_t entryEnd(std::string_view data, std::size_t from)
{
    bool quoted = false;
    for (std::size_t i = from; i < data.size(); ++i) {
        const char c = data[i];
        if (c == '\\')
            ++i;
        else if (c == '"')
            quoted = !quoted;
        else if ((c == '\n' || c == '\r') && !quoted)
            return i;
    }
    return data.size();
}

// Character that an escape sequence behind a backslash stands for; from is moved behind the sequence.
char unescaped(std::string_view value, std::size_t& from)
{
    int base = 0;
    if (value[from] == 'x') {
        base = 16;
        ++from;
    } else if (value[from] >= '0' && value[from] <= '7') {
        base = 8;
    } else {
        return value[from++];
    }
    unsigned int code = 0;
    while (from < value.size() &&
           (base == 16 ? isHexDigit(value[from]) : value[from] >= '0' && value[from] <= '7')) {
        const unsigned int digit = static_cast<unsigned int>(
            std::string_view("0123456789abcdef").find(static_cast<char>(value[from] | 0x20)));
        code = code * static_cast<unsigned int>(base) + digit;
        ++from;
    }
    // anything beyond ASCII only has to differ from what is looked for
    return code < 0x80 ? static_cast<char>(code) : '?';
}

// First characters of each element of a value (a comma outside quotes begins the next one), as QSettings
// reads them.
std::vector<std::string> elementStarts(std::string_view value)
{
    std::vector<std::string> starts(1);
    bool quoted = false;
    for (std::size_t i = 0; i < value.size();) {
        char c = value[i++];
        if (c == '\\' && i < value.size()) {
            c = unescaped(value, i);
        } else if (c == '"') {
            quoted = !quoted;
            continue;
        } else if (!quoted && c == ',') {
            starts.emplace_back();
            continue;
        } else if (!quoted && (c == ' ' || c == '\t') && starts.back().empty()) {
            continue;
        }
        if (starts.back().size() < 16)
            starts.back() += c;
    }
    return starts;
}

bool buildsAnObject(std::string_view value)
{
    static constexpr std::string_view harmless[] = {"@@",     "@ByteArray(", "@String(", "@Rect(",
                                                    "@Size(", "@Point(",     "@Invalid("};
    for (const std::string& start : elementStarts(value)) {
        if (start.empty() || start.front() != '@' || start == "@")
            continue;
        bool known = false;
        for (const std::string_view prefix : harmless)
            known = known || std::string_view(start).starts_with(prefix);
        if (!known)
            return true;
    }
    return false;
}

// Why an entry is refused; empty when it may stay.
QString refusal(std::string_view entry)
{
    const std::size_t first = entry.find_first_not_of(" \t");
    if (first == std::string_view::npos || entry[first] == ';' || entry[first] == '[')
        return {};
    const std::size_t equals = entry.find('=');
    if (equals == std::string_view::npos)
        return Text::tr("it is no entry");
    if (buildsAnObject(entry.substr(equals + 1)))
        return Text::tr("the value is neither text nor number");
    return {};
}

void report(QlumIniCheck& check, std::string_view entry, const QString& why, int count)
{
    if (count >= maximumReported)
        return;
    const QString shown =
        QString::fromUtf8(entry.data(), static_cast<int>(std::min<std::size_t>(entry.size(), 60)))
            .simplified();
    check.refused.append(Text::tr("Skipped '%1': %2.").arg(shown, why));
}

void copyChecked(std::string_view data, QlumIniCheck& check)
{
    int refused = 0;
    for (std::size_t i = 0; i < data.size();) {
        const std::size_t end = entryEnd(data, i);
        const std::string_view entry = data.substr(i, end - i);
        if (const QString why = refusal(entry); why.isEmpty())
            check.content.append(entry.data(), static_cast<int>(entry.size())).append('\n');
        else
            report(check, entry, why, refused++);
        i = end + 1;
    }
    if (refused > maximumReported)
        check.refused.append(Text::tr("%1 more entries were skipped.").arg(refused - maximumReported));
}
} // namespace

QlumIniCheck qlumCheckIniFile(const QString& fileName, qint64 maximumSize)
{
    QlumIniCheck check;
    if (!QFileInfo::exists(fileName)) {
        check.readable = true;
        return check;
    }
    std::vector<unsigned char> bytes;
    const std::error_code error =
        uaReadFile(toUaString(fileName), static_cast<std::uint64_t>(maximumSize), bytes);
    if (error) {
        check.error = error == std::errc::file_too_large
                          ? Text::tr("The file is larger than %1 MB.").arg(maximumSize / 1024 / 1024)
                          : QString::fromStdString(error.message());
        return check;
    }
    check.readable = true;
    check.content.reserve(static_cast<int>(bytes.size()));
    copyChecked({reinterpret_cast<const char*>(bytes.data()), bytes.size()}, check);
    return check;
}
