#include <uawidgets/table/qlumcsvreader.h>

#include <QChar>
#include <QCoreApplication>
#include <QLatin1String>
#include <QRegularExpression>

#include <utility>

namespace {
QString csvWords(const char* text)
{
    return QCoreApplication::translate("QlumCsvReader", text);
}

QString fromUtf16(const QByteArray& bytes, bool isBigEndian)
{
    QString text;
    text.reserve(bytes.size() / 2);
    for (int i = 2; i + 1 < bytes.size(); i += 2) {
        const auto one = static_cast<uchar>(bytes.at(i));
        const auto other = static_cast<uchar>(bytes.at(i + 1));
        text += QChar(isBigEndian ? ushort(one << 8 | other) : ushort(other << 8 | one));
    }
    return text;
}

// Whether the field is the beginning of a node id, which goes on behind a semicolon.
bool endsInNamespace(const QString& field)
{
    static const QRegularExpression form(
        QStringLiteral("^\\s*'?(svr=\\d+|(svr=\\d+;)?(ns=\\d+|nsu=[^;]*))$"));
    return form.match(field).hasMatch();
}

// Goes through a text field by field.
class FieldReader
{
public:
    FieldReader(const QString& text, QChar separator) : m_text(text), m_separator(separator) {}

    [[nodiscard]] bool isAtEnd() const { return m_at >= m_text.size(); }
    [[nodiscard]] int line() const { return m_line; }
    [[nodiscard]] int place() const { return m_at; }

    QStringList takeRow()
    {
        QStringList fields;
        for (bool isLast = false; !isLast;) {
            QString field = isQuote() ? takeQuoted() : takePlain();
            isLast = isAtEnd() || m_text.at(m_at) != m_separator;
            if (!isLast)
                ++m_at;
            fields.append(std::move(field));
        }
        takeLineEnd();
        return fields;
    }

private:
    [[nodiscard]] bool isQuote() const
    {
        return m_isQuotable && !isAtEnd() && m_text.at(m_at) == QLatin1Char('"');
    }
    [[nodiscard]] bool isLineEnd() const
    {
        return m_text.at(m_at) == QLatin1Char('\n') || m_text.at(m_at) == QLatin1Char('\r');
    }

    void takeLineEnd()
    {
        if (!isAtEnd())
            m_at += m_text.mid(m_at, 2) == QLatin1String("\r\n") ? 2 : 1;
        ++m_line;
    }

    QString takePlain()
    {
        QString field;
        for (; !isAtEnd() && !isLineEnd(); ++m_at) {
            if (m_text.at(m_at) == m_separator &&
                !(m_separator == QLatin1Char(';') && endsInNamespace(field)))
                break;
            field += m_text.at(m_at);
        }
        return isKeptText(field) ? field.mid(1) : field;
    }

    QString takeQuoted()
    {
        const int begin = m_at;
        int lines = 0;
        QString field;
        for (++m_at; !isAtEnd(); ++m_at) {
            const QChar c = m_text.at(m_at);
            if (c == QLatin1Char('"')) {
                if (++m_at < m_text.size() && m_text.at(m_at) == c) {
                    field += c;
                    continue;
                }
                m_line += lines;
                return finishQuoted(field);
            }
            lines += c == QLatin1Char('\n') ? 1 : 0;
            field += c;
        }
        m_at = begin; // nobody closes it, nor any that follows
        m_isQuotable = false;
        return takePlain();
    }

    // What stands between the closing quote and the separator belongs to the field all the same.
    QString finishQuoted(const QString& field)
    {
        QString rest;
        for (; !isAtEnd() && !isLineEnd() && m_text.at(m_at) != m_separator; ++m_at)
            rest += m_text.at(m_at);
        const QString whole = field + rest.trimmed();
        return isKeptText(whole) ? whole.mid(1) : whole;
    }

    static bool isKeptText(const QString& field)
    {
        return field.size() > 1 && field.at(0) == QLatin1Char('\'') &&
               QStringLiteral("=+-@\t\r\n").contains(field.at(1));
    }

    const QString& m_text;
    const QChar m_separator;
    int m_at = 0;
    int m_line = 1;
    bool m_isQuotable = true;
};

QChar separatorOf(const QString& text)
{
    QString field;
    QString line;
    bool isQuoted = false;
    bool hasSemicolon = false;
    bool hasComma = false;
    for (const QChar c : text) {
        if (!isQuoted && (c == QLatin1Char('\n') || c == QLatin1Char('\r'))) {
            if (!line.trimmed().isEmpty())
                break;
            continue;
        }
        line += c;
        if (c == QLatin1Char('"'))
            isQuoted = !isQuoted;
        if (isQuoted)
            continue;
        if (c == QLatin1Char('\t'))
            return c;
        const bool separates = c == QLatin1Char(',') || (c == QLatin1Char(';') && !endsInNamespace(field));
        hasComma = hasComma || c == QLatin1Char(',');
        hasSemicolon = hasSemicolon || (separates && c == QLatin1Char(';'));
        field = separates ? QString() : field + c;
    }
    return hasSemicolon && !hasComma ? QLatin1Char(';') : QLatin1Char(',');
}
} // namespace

QlumReadText qlumReadText(const QByteArray& bytes)
{
    QlumReadText read;
    bool isText = true;
    if (bytes.startsWith("\xff\xfe") || bytes.startsWith("\xfe\xff")) {
        read.text = fromUtf16(bytes, bytes.startsWith("\xfe\xff"));
    } else {
        const QByteArray rest = bytes.startsWith("\xef\xbb\xbf") ? bytes.mid(3) : bytes;
        isText = !rest.contains('\0');
        read.text = QString::fromUtf8(rest);
        if (read.text.toUtf8() != rest) {
            read.text = QString::fromLatin1(rest);
            read.remark = csvWords("This is not UTF-8; it was read as Latin-1, so look at accented letters.");
        }
    }
    if (!isText || read.text.contains(QChar(0)))
        read = {{}, {}, csvWords("This is no text: it holds bytes that no text has.")};
    return read;
}

QVector<QlumCsvRow> qlumCsvRows(const QString& text, int maximum, int* rest, const QlumReadsOn& goesOn)
{
    constexpr int linesPerStep = 1000;
    QVector<QlumCsvRow> rows;
    int beyond = 0;
    FieldReader reader(text, separatorOf(text));
    for (int read = 1; !reader.isAtEnd(); ++read) {
        if (goesOn && read % linesPerStep == 0 && !goesOn(reader.place(), text.size()))
            break;
        const int line = reader.line();
        QStringList fields = reader.takeRow();
        if (fields.size() == 1 && fields.at(0).trimmed().isEmpty())
            continue;
        if (rows.size() < maximum)
            rows.append({line, std::move(fields)});
        else
            ++beyond;
    }
    if (rest)
        *rest = beyond;
    return rows;
}
