// Two nodes side by side.
#pragma once
#include <QString>

#include <deque>
#include <optional>
#include <utility>
#include <vector>

class QlumAttributeModel;

/// The rows that were shown of a node: the names that lead to each, and its value.
using QlumShownRows = std::vector<std::pair<QString, QString>>;

/// A row of two nodes.
struct QlumComparedRow
{
    QString path;                 ///< the names that lead to it
    std::optional<QString> left;  ///< none where the first node has no such row
    std::optional<QString> right; ///< the same of the second one

    /// Whether the nodes have something else there.
    [[nodiscard]] bool differs() const { return left != right; }
};

/// What the model shows now, with the elements of arrays; of very long ones as many as are worth looking at.
[[nodiscard]] QlumShownRows qlumShownRows(QlumAttributeModel& model);
/// Rows of the same name beside each other, in the order in which they are shown.
[[nodiscard]] std::deque<QlumComparedRow> qlumCompareRows(const QlumShownRows& left,
                                                          const QlumShownRows& right);
