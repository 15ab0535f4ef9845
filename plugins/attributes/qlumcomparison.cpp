#include <plugins/attributes/qlumcomparison.h>

#include <plugins/attributes/qlumattributecopy.h>
#include <plugins/attributes/qlumattributemodel.h>

#include <map>

namespace {
std::map<QString, QString> byPath(const QlumShownRows& rows)
{
    return {rows.begin(), rows.end()};
}
} // namespace

QlumShownRows qlumShownRows(const QlumAttributeModel& model)
{
    QlumShownRows rows;
    qlumForEachRow(model,
                   [&rows](const QString& path, const QString& value) { rows.emplace_back(path, value); });
    return rows;
}

std::deque<QlumComparedRow> qlumCompareRows(const QlumShownRows& left, const QlumShownRows& right)
{
    const std::map<QString, QString> ofLeft = byPath(left);
    const std::map<QString, QString> ofRight = byPath(right);
    std::deque<QlumComparedRow> rows;
    auto next = right.begin();
    const auto addOwnOfRight = [&] {
        for (; next != right.end() && !ofLeft.contains(next->first); ++next)
            rows.push_back({next->first, std::nullopt, next->second});
    };
    for (const auto& [path, value] : left) {
        addOwnOfRight();
        const auto other = ofRight.find(path);
        const bool isInBoth = other != ofRight.end();
        rows.push_back({path, value, isInBoth ? std::optional(other->second) : std::nullopt});
        if (isInBoth && next != right.end())
            ++next; // one of those in both, in whichever order they come
    }
    addOwnOfRight();
    return rows;
}
