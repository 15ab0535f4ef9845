#include <app/palette/qlumlettermatch.h>

#include <QChar>

#include <algorithm>

namespace {
constexpr int wordStart = 12;
constexpr int inARow = 8;
constexpr int anywhere = 1;
constexpr int longestText = 512; // what is longer is compared by its beginning

bool beginsWord(const QString& text, int at)
{
    if (at == 0 || !text.at(at - 1).isLetterOrNumber())
        return text.at(at).isLetterOrNumber();
    return text.at(at).isUpper() && !text.at(at - 1).isUpper();
}

bool isSame(QChar letter, QChar other)
{
    return letter.toCaseFolded() == other.toCaseFolded();
}

// The next place of the letter: at the beginning of a word rather than inside one, when the rest of the
// letters still follows it.
int nextPlace(const QString& letters, int letter, const QString& text, int from)
{
    const auto restFollows = [&](int at) {
        int wanted = letter;
        for (int i = at; i < text.size() && wanted < letters.size(); ++i)
            if (isSame(letters.at(wanted), text.at(i)))
                ++wanted;
        return wanted == letters.size();
    };
    int first = -1;
    for (int i = from; i < text.size(); ++i) {
        if (!isSame(letters.at(letter), text.at(i)))
            continue;
        if (first < 0)
            first = i;
        if (i == from && from > 0)
            return i; // goes on in the row
        if (beginsWord(text, i) && restFollows(i))
            return i;
    }
    return first;
}
} // namespace

std::optional<int> qlumLetterMatch(const QString& letters, const QString& text)
{
    const QString wanted = QString(letters).remove(QLatin1Char(' '));
    const QString searched = text.left(longestText);
    int score = 0;
    int at = -1;
    for (int i = 0; i < wanted.size(); ++i) {
        const int place = nextPlace(wanted, i, searched, at + 1);
        if (place < 0)
            return std::nullopt;
        score += anywhere;
        if (i > 0 && place == at + 1)
            score += inARow;
        if (beginsWord(searched, place))
            score += wordStart;
        at = place;
    }
    return wanted.isEmpty() ? 0 : score * 16 - std::min(searched.size(), 255) / 16;
}
