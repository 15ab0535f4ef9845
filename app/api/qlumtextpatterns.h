// Texts of layers that know no language, where the user reads them.
#pragma once
#include <QRegularExpression>
#include <QString>

#include <optional>
#include <span>
#include <vector>

/// Knows English texts with up to three places (%1 to %3) and says them in the user's language. Immutable;
/// any thread.
class QlumTextPatterns
{
public:
    /// The texts are marked for translation in that context. Both must live as long as this.
    QlumTextPatterns(const char* context, std::span<const char* const> texts);

    /// Nothing for a text that is not among them. What stands in its places is taken over as it is.
    [[nodiscard]] std::optional<QString> inWords(const QString& text) const;

private:
    struct Pattern
    {
        const char* text;
        QRegularExpression expression;
    };

    const char* m_context;
    std::vector<Pattern> m_patterns;
};
