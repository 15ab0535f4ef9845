#pragma once
#include <app/api/qlumguithread.h>
#include <app/api/qlummetatypes.h>
#include <app/api/qlummodelinterface.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumelementlist.h>
#include <uawidgets/editors/qlumpastereport.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/models/qlumtitledmodel.h>

#include <QAbstractTableModel>
#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

/// The elements of an array as rows. There are no objects for rows: an element is looked up when it is shown,
/// so that a million of them cost no more than those on screen. GUI thread.
class QlumArrayModel : public QlumTitledModel<QAbstractTableModel>, public QlumModelInterface
{
    Q_OBJECT
public:
    /// What a row shows.
    enum Column { ValueColumn, TypeColumn, ColumnCount };
    /// As for all models of values.
    enum Role {
        ValueRole = Qt::UserRole,          ///< UaVariant: the element
        DictionaryRole = Qt::UserRole + 2, ///< UaDataTypeDictionary*; the context keeps it
        DataTypeRole = Qt::UserRole + 4    ///< UaNodeId: of the elements, as declared
    };

    /// What is known of the array.
    explicit QlumArrayModel(const QlumValueContext& context, QObject* parent = nullptr);

    /// Shows the array; a null value is an array without elements.
    void setValue(const UaVariant& array);
    /// The array as it is now. Null when out of memory.
    [[nodiscard]] UaVariant value() { return m_elements.whole(); }
    /// Whether it is another than the one that was set.
    [[nodiscard]] bool isModified() const { return !m_elements.isUnchanged(); }
    /// Refuses all edits.
    void setReadOnly(bool readOnly) { m_readOnly = readOnly; }
    /// Whether edits are refused.
    [[nodiscard]] bool isReadOnly() const { return m_readOnly; }
    /// For what the model has no function of its own.
    [[nodiscard]] const QlumElementList& elements() const { return m_elements; }
    /// What is known of an element.
    [[nodiscard]] const QlumValueContext& elementContext() const { return m_context; }
    /// The value of a new element: of its type's null values; the neighbour's where the type is not known.
    [[nodiscard]] UaVariant newElement(int neighbour) const;

    // ---- editing; the value of several elements changes in one step

    /// False when the value is none of the type.
    bool fill(int first, int count, const UaVariant& value);
    /// Takes the texts of cells from that row on, beyond the end as new elements.
    QlumPasteReport paste(int first, const QStringList& cells);
    /// Puts elements in order; false where they have none.
    bool sortElements(int first, int count, Qt::SortOrder order);
    /// Text of the elements as qlumCopyText has it, one in a line.
    [[nodiscard]] QString textOf(int first, int count) const;

    // ---- item model

    /// One for each element.
    [[nodiscard]] int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    /// Without the types where all elements have the same.
    [[nodiscard]] int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    /// What qlumElementCell() says; in the second column the type.
    [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    /// The index beside each row.
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role = Qt::DisplayRole) const override;
    /// Editable where a cell can edit the element.
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    /// Edit role: a text; ValueRole: a UaVariant.
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    /// New elements, as newElement() has them. False where there is no such value.
    bool insertRows(int row, int count, const QModelIndex& parent = QModelIndex()) override;
    /// False when they are not there.
    bool removeRows(int row, int count, const QModelIndex& parent = QModelIndex()) override;
    /// Before another element, counted before the move.
    bool moveRows(const QModelIndex& sourceParent, int sourceRow, int count,
                  const QModelIndex& destinationParent, int destinationChild) override;

signals:
    /// The user changed elements.
    void edited();

private:
    [[nodiscard]] bool hasTypes() const;
    [[nodiscard]] QVariant cell(int row, int column, int role) const;
    void tellChanged(int first, int count);

    const QlumValueContext m_context;
    QlumElementList m_elements;
    bool m_readOnly = false;
};
