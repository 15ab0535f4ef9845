#include <app/api/qlumtextpatterns.h>

#include <QCoreApplication>
#include <QLatin1String>
#include <QRegularExpressionMatch>

QlumTextPatterns::QlumTextPatterns(const char* context, std::span<const char* const> texts)
    : m_context(context)
{
    for (const char* const text : texts) {
        QString expression = QRegularExpression::escape(QLatin1String(text));
        for (const char* const place : {"\\%1", "\\%2", "\\%3"})
            expression.replace(QLatin1String(place), QStringLiteral("(.*)"));
        m_patterns.push_back({text, QRegularExpression(QRegularExpression::anchoredPattern(expression),
                                                       QRegularExpression::DotMatchesEverythingOption)});
    }
}

std::optional<QString> QlumTextPatterns::inWords(const QString& text) const
{
    for (const Pattern& pattern : m_patterns) {
        const QRegularExpressionMatch match = pattern.expression.match(text);
        if (!match.hasMatch())
            continue;
        const QString words = QCoreApplication::translate(m_context, pattern.text);
        switch (match.lastCapturedIndex()) {
        case 0:
            return words;
        case 1:
            return words.arg(match.captured(1));
        case 2:
            return words.arg(match.captured(1), match.captured(2));
        default:
            return words.arg(match.captured(1), match.captured(2), match.captured(3));
        }
    }
    return std::nullopt;
}
