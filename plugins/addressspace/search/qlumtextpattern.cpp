#include <plugins/addressspace/search/qlumtextpattern.h>

#include <QChar>
#include <QCoreApplication>
#include <QRegularExpressionMatch>

namespace {
constexpr int maximumLength = 1000;
// steps; names take a few hundred, and what takes more than this would take for ever
const QLatin1String matchLimit("(*LIMIT_MATCH=100000)(*LIMIT_DEPTH=10000)");

// Of several stars only the last one ever has to be tried again.
bool matchesWhole(const QString& pattern, const QString& text)
{
    const QChar star = QLatin1Char('*');
    const QChar any = QLatin1Char('?');
    int p = 0;
    int t = 0;
    int starAt = -1;
    int taken = 0; // by that star
    while (t < text.size()) {
        if (p < pattern.size() && pattern.at(p) == star) {
            starAt = p++;
            taken = t;
        } else if (p < pattern.size() && (pattern.at(p) == any || pattern.at(p) == text.at(t))) {
            ++p;
            ++t;
        } else if (starAt >= 0) {
            p = starAt + 1;
            t = ++taken;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern.at(p) == star)
        ++p;
    return p == pattern.size();
}
} // namespace

QlumTextPattern::QlumTextPattern(const QString& pattern, Kind kind, Qt::CaseSensitivity sensitivity)
    : m_pattern(pattern.left(maximumLength)), m_sensitivity(sensitivity)
{
    const bool hasWildcards = m_pattern.contains(QLatin1Char('*')) || m_pattern.contains(QLatin1Char('?'));
    if (kind == Expression) {
        m_way = Way::Expression;
        m_expression.setPattern(matchLimit + m_pattern);
        if (sensitivity == Qt::CaseInsensitive)
            m_expression.setPatternOptions(QRegularExpression::CaseInsensitiveOption);
    } else if (hasWildcards) {
        m_way = Way::Whole;
        if (sensitivity == Qt::CaseInsensitive)
            m_pattern = m_pattern.toCaseFolded();
    } else {
        m_matcher = QStringMatcher(m_pattern, sensitivity);
    }
}

QString QlumTextPattern::error() const
{
    if (m_way != Way::Expression || m_expression.isValid())
        return {};
    return QCoreApplication::translate("QlumTextPattern", "%1 (at letter %2)")
        .arg(m_expression.errorString())
        .arg(m_expression.patternErrorOffset() - matchLimit.size() + 1);
}

QlumTextPattern::Outcome QlumTextPattern::match(const QString& text) const
{
    if (isEmpty())
        return Yes;
    switch (m_way) {
    case Way::Part:
        return m_matcher.indexIn(text) >= 0 ? Yes : No;
    case Way::Whole:
        return matchesWhole(m_pattern, m_sensitivity == Qt::CaseInsensitive ? text.toCaseFolded() : text)
                   ? Yes
                   : No;
    case Way::Expression:
        break;
    }
    const QRegularExpressionMatch match = m_expression.match(text);
    return match.hasMatch() ? Yes : match.isValid() ? No : TooHard;
}
