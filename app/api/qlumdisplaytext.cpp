#include <app/api/qlumdisplaytext.h>

#include <QChar>
#include <QTextDocument>

#include <algorithm>

namespace {
bool isUnfitForOneLine(QChar character)
{
    switch (character.category()) {
    case QChar::Other_Control:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        break;
    }
    const ushort code = character.unicode();
    return (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069); // direction overrides
}
} // namespace

QString qlumCutText(const QString& text, int maxLength)
{
    if (text.size() <= maxLength)
        return text;
    int length = maxLength;
    if (length > 0 && text.at(length - 1).isHighSurrogate())
        --length;
    return text.left(length) + QLatin1String("...");
}

QString qlumSingleLine(const QString& text)
{
    if (std::none_of(text.cbegin(), text.cend(), isUnfitForOneLine))
        return text;
    QString line = text;
    std::replace_if(line.begin(), line.end(), isUnfitForOneLine, QLatin1Char(' '));
    return line;
}

QString qlumPlainToolTip(const QString& text)
{
    if (!Qt::mightBeRichText(text))
        return text;
    return QLatin1String("<qt>") + text.toHtmlEscaped().replace(QLatin1Char('\n'), QLatin1String("<br>")) +
           QLatin1String("</qt>");
}
