// A table of numbers whose changes a test may make, and which costs next to nothing.
#pragma once
#include <tests/support/modeltext.h>
#include <uawidgets/models/qlumtablemodel.h>

#include <QString>
#include <QVariant>

class Numbers : public QlumTableModel<int>
{
public:
    Numbers() : QlumTableModel({"Name", "Value"}) {}
    using QlumTableModel::append;
    using QlumTableModel::change;
    using QlumTableModel::flush;
    using QlumTableModel::gather;
    using QlumTableModel::insert;
    using QlumTableModel::move;
    using QlumTableModel::remove;
    using QlumTableModel::reset;
    using QlumTableModel::setMaximumRows;

    [[nodiscard]] QString text() const
    {
        return QString::fromStdString(modelText(*this)).replace('\n', ' ').trimmed();
    }

protected:
    [[nodiscard]] QVariant cell(const int& row, int column, int role) const override
    {
        if (role != Qt::DisplayRole)
            return {};
        return column == 0 ? QString::number(row) : QString();
    }
};
