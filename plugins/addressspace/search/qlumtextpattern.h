#pragma once
#include <QRegularExpression>
#include <QString>
#include <QStringMatcher>

/// What a text is searched for: a part of it; the whole of it with * for anything and ? for one letter; or a
/// regular expression. A copy may be used on another thread.
class QlumTextPattern
{
public:
    /// How the pattern is meant.
    enum Kind {
        Wildcards, ///< a part of the text, unless * or ? stand in it
        Expression ///< a regular expression
    };
    /// What came of a match.
    enum Outcome {
        No,
        Yes,
        TooHard ///< the expression would have taken too long on this text
    };

    /// Matches everything.
    QlumTextPattern() = default;
    /// The pattern is cut where it is long.
    QlumTextPattern(const QString& pattern, Kind kind, Qt::CaseSensitivity sensitivity);

    /// Matches everything.
    [[nodiscard]] bool isEmpty() const { return m_pattern.isEmpty(); }
    /// Why the expression is none, in words; empty when it is one.
    [[nodiscard]] QString error() const;
    /// Takes time by the length of the text, and of an expression not more than a bounded one.
    [[nodiscard]] Outcome match(const QString& text) const;

private:
    enum class Way { Part, Whole, Expression };

    QString m_pattern;
    Way m_way = Way::Part;
    Qt::CaseSensitivity m_sensitivity = Qt::CaseInsensitive;
    QStringMatcher m_matcher;
    QRegularExpression m_expression;
};
