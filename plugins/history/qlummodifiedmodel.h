#pragma once
#include <plugins/history/qlumhistoryplan.h>
#include <uawidgets/models/qlumtablemodel.h>

#include <QObject>
#include <QString>
#include <QVariant>

#include <vector>

/// A modified value and the variable that had it.
struct QlumModifiedRow
{
    int key = 0;             ///< of the item
    QString name;            ///< of the variable
    QlumModifiedValue value; ///< with who changed it, and when
};

/// Values as they were before somebody changed them.
class QlumModifiedModel : public QlumTableModel<QlumModifiedRow>
{
    Q_OBJECT
public:
    /// Its columns.
    enum Column { Name, Source, Server, Value, Status, Changed, What, User };

    /// Without values.
    explicit QlumModifiedModel(QObject* parent = nullptr);

    /// Adds what one answer holds of an item.
    void add(int key, const QString& name, std::vector<QlumModifiedValue> values);
    /// Removes all.
    void clear() { reset(); }

protected:
    [[nodiscard]] QVariant cell(const QlumModifiedRow& row, int column, int role) const override;
};
