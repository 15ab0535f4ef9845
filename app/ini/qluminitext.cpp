#include <app/ini/qluminitext.h>

#include <QChar>
#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

namespace {
constexpr int maximumReported = 20;
constexpr int maximumValues = 1000000;
constexpr std::size_t maximumShown = 60;
constexpr auto npos = std::string_view::npos;
// as "\a" to "\\": the letter behind the backslash and what it stands for
constexpr std::string_view escapeLetters = "abfnrtv\"?'\\";
constexpr std::string_view escapedCharacters = "\a\b\f\n\r\t\v\"?'\\";

class Text
{
    Q_DECLARE_TR_FUNCTIONS(QlumIniText)
};

bool isLineEnd(char c)
{
    return c == '\n' || c == '\r';
}

// CR LF and LF CR are one line end
bool isPair(char first, char second)
{
    return isLineEnd(first) && isLineEnd(second) && first != second;
}

// Value of a digit of the base, or -1.
int digitValue(char c, int base)
{
    int value = -1;
    if (c >= '0' && c <= '9')
        value = c - '0';
    else if (c >= 'a' && c <= 'f')
        value = c - 'a' + 10;
    else if (c >= 'A' && c <= 'F')
        value = c - 'A' + 10;
    return value < base ? value : -1;
}

QString latin1(std::string_view bytes)
{
    return QString::fromLatin1(bytes.data(), static_cast<int>(bytes.size()));
}

std::string_view trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(" \t");
    return first == npos ? std::string_view() : text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

// ---- lines

struct Line
{
    std::string_view text;
    std::size_t equals = npos; // the '=' behind the key
};

// Cuts the file into lines: they end outside quotes at a line end, or where a comment begins; a backslash
// takes the next character, or line end, with it. A comment ends with its line, whatever stands in it.
class Lines
{
public:
    explicit Lines(std::string_view data) : m_data(data) {}

    bool next(Line& line)
    {
        skipBlanksAndComments();
        const std::size_t begin = m_pos;
        bool quoted = false;
        line.equals = npos;
        for (; m_pos < m_data.size(); ++m_pos) {
            const char c = m_data[m_pos];
            if (c == '\\')
                skipEscaped();
            else if (c == '"')
                quoted = !quoted;
            else if (!quoted && (isLineEnd(c) || c == ';'))
                break;
            else if (c == '=' && !quoted && line.equals == npos)
                line.equals = m_pos - begin;
        }
        m_pos = std::min(m_pos, m_data.size());
        line.text = m_data.substr(begin, m_pos - begin);
        return m_pos > begin;
    }

private:
    void skipBlanksAndComments()
    {
        m_pos = std::min(m_data.find_first_not_of(" \t\r\n", m_pos), m_data.size());
        while (m_pos < m_data.size() && m_data[m_pos] == ';') {
            m_pos = std::min(m_data.find_first_of("\r\n", m_pos), m_data.size());
            m_pos = std::min(m_data.find_first_not_of(" \t\r\n", m_pos), m_data.size());
        }
    }
    void skipEscaped()
    {
        ++m_pos;
        if (m_pos + 1 < m_data.size() && isPair(m_data[m_pos], m_data[m_pos + 1]))
            ++m_pos;
    }

    std::string_view m_data;
    std::size_t m_pos = 0;
};

// ---- keys

// The character that "%4F" or "%U004F" stands for and the length of that; a '%' of another kind is itself.
std::pair<QChar, std::size_t> percentCharacter(std::string_view text)
{
    const bool isLong = text.size() > 1 && text[1] == 'U';
    const std::size_t first = isLong ? 2 : 1;
    const std::size_t digits = isLong ? 4 : 2;
    if (text.size() < first + digits)
        return {QLatin1Char('%'), 1};
    unsigned int code = 0;
    for (const char c : text.substr(first, digits)) {
        const int value = digitValue(c, 16);
        if (value < 0)
            return {QLatin1Char('%'), 1};
        code = code * 16 + static_cast<unsigned int>(value);
    }
    return {QChar(code), first + digits};
}

QString readKey(std::string_view text)
{
    QString key;
    for (std::size_t i = 0; i < text.size();) {
        if (text[i] == '%') {
            const auto [character, length] = percentCharacter(text.substr(i));
            key += character;
            i += length;
        } else {
            key += text[i] == '\\' ? QLatin1Char('/') : QLatin1Char(text[i]);
            ++i;
        }
    }
    return key;
}

// The group of a header line, with the '/' behind it; nothing for the group without a name.
QString readGroup(std::string_view line)
{
    const std::string_view name = trimmed(line.substr(1, line.find(']') - 1));
    const QString shown = latin1(name);
    if (shown.compare(QLatin1String("general"), Qt::CaseInsensitive) == 0)
        return {};
    if (shown.compare(QLatin1String("%general"), Qt::CaseInsensitive) == 0)
        return shown.mid(1) + QLatin1Char('/');
    return readKey(name) + QLatin1Char('/');
}

bool hasEmptyName(const QString& key)
{
    return key.isEmpty() || key.startsWith(QLatin1Char('/')) || key.endsWith(QLatin1Char('/')) ||
           key.contains(QLatin1String("//"));
}

// ---- values

class ElementReader
{
public:
    ElementReader(std::string_view text, bool utf8) : m_text(text), m_utf8(utf8) {}

    // One more than the maximum when there are more.
    QStringList read(int maximum)
    {
        skipBlanks();
        while (m_pos < m_text.size() && m_elements.size() < maximum)
            readPiece();
        endElement();
        return m_elements;
    }

private:
    void skipBlanks() { m_pos = std::min(m_text.find_first_not_of(" \t", m_pos), m_text.size()); }

    void readPiece()
    {
        const char c = m_text[m_pos];
        if (c == '\\') {
            ++m_pos;
            readEscape();
            m_kept = m_element.size();
        } else if (c == '"') {
            ++m_pos;
            m_quoted = !m_quoted;
            m_wasQuoted = true;
            if (!m_quoted)
                skipBlanks();
        } else if (c == ',' && !m_quoted) {
            ++m_pos;
            endElement();
            skipBlanks();
        } else {
            const std::size_t end = std::min(m_text.find_first_of("\\\",", m_pos + 1), m_text.size());
            const std::string_view plain = m_text.substr(m_pos, end - m_pos);
            m_element +=
                m_utf8 ? QString::fromUtf8(plain.data(), static_cast<int>(plain.size())) : latin1(plain);
            m_pos = end;
        }
    }

    // Behind a backslash; one that is not known goes without a trace.
    void readEscape()
    {
        if (m_pos == m_text.size())
            return;
        const char c = m_text[m_pos++];
        if (const std::size_t known = escapeLetters.find(c); known != npos) {
            m_element += QLatin1Char(escapedCharacters[known]);
        } else if (c == 'x') {
            readCode(16);
        } else if (digitValue(c, 8) >= 0) {
            --m_pos;
            readCode(8);
        } else if (m_pos < m_text.size() && isPair(c, m_text[m_pos])) {
            ++m_pos;
        }
    }
    void readCode(int base)
    {
        const std::size_t begin = m_pos;
        unsigned int code = 0;
        for (; m_pos < m_text.size() && digitValue(m_text[m_pos], base) >= 0; ++m_pos)
            code = code * static_cast<unsigned int>(base) +
                   static_cast<unsigned int>(digitValue(m_text[m_pos], base));
        if (m_pos > begin)
            m_element += QChar(static_cast<std::uint16_t>(code));
    }

    void endElement()
    {
        int size = m_element.size();
        while (!m_wasQuoted && size > m_kept &&
               (m_element.at(size - 1) == QLatin1Char(' ') || m_element.at(size - 1) == QLatin1Char('\t')))
            --size;
        m_elements.append(m_element.left(size));
        m_element.clear();
        m_kept = 0;
        m_wasQuoted = false;
    }

    std::string_view m_text;
    std::size_t m_pos = 0;
    bool m_utf8;
    bool m_quoted = false;
    bool m_wasQuoted = false;
    int m_kept = 0; // so many of the element's characters stay, blanks or not
    QString m_element;
    QStringList m_elements;
};

bool isPlainObject(const QString& text)
{
    static constexpr std::array<const char*, 5> plain = {"@ByteArray(", "@String(", "@Rect(", "@Size(",
                                                         "@Point("};
    if (text == QLatin1String("@Invalid()"))
        return true;
    return text.endsWith(QLatin1Char(')')) && std::any_of(plain.begin(), plain.end(), [&](const char* begin) {
               return text.startsWith(QLatin1String(begin));
           });
}

// False for an object. What only looks like one is written as the text that it is.
bool makePlain(QString& text)
{
    if (!text.startsWith(QLatin1Char('@')) || text.startsWith(QLatin1String("@@")) || isPlainObject(text))
        return true;
    if (text.startsWith(QLatin1String("@Variant(")) || text.startsWith(QLatin1String("@DateTime(")))
        return false;
    text.prepend(QLatin1Char('@'));
    return true;
}

// ---- the file

class Reader
{
public:
    QlumIniText read(std::string_view data)
    {
        static constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";
        m_utf8 = data.starts_with(byteOrderMark);
        Lines lines(m_utf8 ? data.substr(byteOrderMark.size()) : data);
        for (Line line; lines.next(line);)
            if (line.text.front() == '[')
                m_group = readGroup(line.text);
            else if (const QString why = readEntry(line); !why.isEmpty())
                refuse(line.text, why);
        if (m_refused > maximumReported)
            m_result.refused.append(
                Text::tr("%1 more entries were skipped.").arg(m_refused - maximumReported));
        return std::move(m_result);
    }

private:
    // Why the entry is refused; empty when it is taken.
    QString readEntry(const Line& line)
    {
        if (line.equals == npos)
            return Text::tr("it is no entry");
        const QString key = m_group + readKey(trimmed(line.text.substr(0, line.equals)));
        if (hasEmptyName(key))
            return Text::tr("a part of its name is empty");
        QStringList elements = ElementReader(line.text.substr(line.equals + 1), m_utf8).read(m_room);
        if (elements.size() > m_room)
            return Text::tr("there are too many values before it");
        if (!std::all_of(elements.begin(), elements.end(), makePlain))
            return Text::tr("the value is neither text nor number");
        m_room -= elements.size();
        m_result.entries.insert(key, elements);
        return {};
    }

    void refuse(std::string_view line, const QString& why)
    {
        if (m_refused++ >= maximumReported)
            return;
        const std::string_view begin = line.substr(0, maximumShown);
        const QString shown = QString::fromUtf8(begin.data(), static_cast<int>(begin.size())).simplified();
        m_result.refused.append(Text::tr("Skipped '%1': %2.").arg(shown, why));
    }

    bool m_utf8 = false;
    int m_room = maximumValues;
    int m_refused = 0;
    QString m_group;
    QlumIniText m_result;
};

// ---- writing

QByteArray writeKey(const QString& key)
{
    QByteArray written;
    for (const QChar character : key) {
        const ushort code = character.unicode();
        const char c = code < 0x80 ? static_cast<char>(code) : '\0';
        if (c == '/')
            written += '\\';
        else if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
                 c == '-' || c == '.')
            written += c;
        else if (code < 0x100)
            written += '%' + QByteArray::number(code, 16).toUpper().rightJustified(2, '0');
        else
            written += "%U" + QByteArray::number(code, 16).toUpper().rightJustified(4, '0');
    }
    return written;
}

QByteArray writeHeader(const QString& group)
{
    if (group.isEmpty())
        return "[General]\n";
    if (group.compare(QLatin1String("general"), Qt::CaseInsensitive) == 0)
        return "[%" + group.toLatin1() + "]\n";
    return '[' + writeKey(group) + "]\n";
}

QByteArray writeElement(const QString& text)
{
    QByteArray written;
    bool wasCode = false; // then a digit would be taken as a part of it
    for (const QChar character : text) {
        const ushort code = character.unicode();
        const char c = code < 0x80 ? static_cast<char>(code) : '\xff';
        const bool isCode = wasCode && digitValue(c, 16) >= 0;
        const std::size_t known = c == '?' || c == '\'' ? npos : escapedCharacters.find(c);
        if (code == 0)
            written += "\\0";
        else if (known != npos)
            written.append('\\').append(escapeLetters[known]);
        else if (isCode || code < 0x20 || code >= 0x7f)
            written += "\\x" + QByteArray::number(code, 16);
        else
            written += c;
        wasCode = known == npos && (isCode || code < 0x20 || code >= 0x7f);
    }
    const bool needsQuotes =
        std::any_of(written.begin(), written.end(), [](char c) { return c == ';' || c == ',' || c == '='; });
    if (needsQuotes || written.startsWith(' ') || written.endsWith(' '))
        return '"' + written + '"';
    return written;
}
} // namespace

QlumIniText qlumReadIni(std::string_view data)
{
    return Reader().read(data);
}

QByteArray qlumWriteIni(const QMap<QString, QStringList>& entries)
{
    QMap<QString, QByteArray> groups; // by their names, as QSettings sorts them
    for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
        const int slash = entry.key().indexOf(QLatin1Char('/'));
        QByteArray& group = groups[entry.key().left(std::max(slash, 0))];
        group += writeKey(entry.key().mid(slash + 1)) + '=';
        for (int i = 0; i < entry.value().size(); ++i)
            group += (i > 0 ? ", " : "") + writeElement(entry.value().at(i));
        group += '\n';
    }
    QByteArray written;
    for (auto group = groups.begin(); group != groups.end(); ++group)
        written += (written.isEmpty() ? "" : "\n") + writeHeader(group.key()) + group.value();
    return written;
}
