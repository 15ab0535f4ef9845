#include <plugins/attributes/qlumcomparison.h>

#include <plugins/attributes/qlumattributecopy.h>
#include <plugins/attributes/qlumattributemodel.h>

#include <QModelIndex>

#include <map>

namespace {
std::map<QString, QString> byPath(const QlumShownRows& rows)
{
    return {rows.begin(), rows.end()};
}

// Arrays get their rows when they are opened; here they are compared, opened or not.
void fetchRows(QlumAttributeModel& model, const QModelIndex& parent, int& left)
{
    while (left > 0 && model.canFetchMore(parent)) {
        const int before = model.rowCount(parent);
        model.fetchMore(parent);
        left -= model.rowCount(parent) - before;
    }
    for (int row = 0; left > 0 && row < model.rowCount(parent); ++row)
        fetchRows(model, model.index(row, 0, parent), left);
}
} // namespace

QlumShownRows qlumShownRows(QlumAttributeModel& model)
{
    constexpr int mostElements = 20000;
    int left = mostElements;
    fetchRows(model, {}, left);
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
