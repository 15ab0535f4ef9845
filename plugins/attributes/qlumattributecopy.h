// What is shown of a node as text for other programs.
#pragma once
#include <QModelIndex>
#include <QString>

#include <functional>

class QlumAttributeModel;

/// Calls visit with the names that lead to a row and its value, for each row that is there.
void qlumForEachRow(const QlumAttributeModel& model,
                    const std::function<void(const QString& path, const QString& value)>& visit);
/// A line for each row: its name, indented as in the tree, a tab, and its value.
[[nodiscard]] QString qlumAllAsText(const QlumAttributeModel& model);
/// A line for each row: the names that lead to it, and its value; with a line of titles.
[[nodiscard]] QString qlumAllAsCsv(const QlumAttributeModel& model);
/// An object with the attributes by their names, in the form by which values can be read back.
[[nodiscard]] QString qlumAllAsJson(const QlumAttributeModel& model);
/// The value of one row in that form; empty for rows that have none.
[[nodiscard]] QString qlumRowAsJson(const QlumAttributeModel& model, const QModelIndex& index);
