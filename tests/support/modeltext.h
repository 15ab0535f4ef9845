// Item models as text, so that a test compares them with a block of it.
#pragma once
#include <QAbstractItemModel>
#include <QModelIndex>
#include <QString>

#include <ostream>
#include <string>

inline std::ostream& operator<<(std::ostream& stream, const QString& text)
{
    return stream << text.toStdString();
}

/// One line for each row, children indented by two blanks, columns separated by " | ". Only what is loaded.
inline std::string modelText(const QAbstractItemModel& model, const QModelIndex& parent = QModelIndex(),
                             int depth = 0)
{
    std::string text;
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        if (!index.isValid())
            continue;
        text += std::string(static_cast<std::size_t>(depth) * 2, ' ');
        for (int column = 0; column < model.columnCount(parent); ++column) {
            const std::string cell = index.siblingAtColumn(column).data().toString().toStdString();
            if (column > 0 && !cell.empty())
                text += " | ";
            text += cell;
        }
        text += '\n';
        text += modelText(model, index, depth + 1);
    }
    return text;
}
