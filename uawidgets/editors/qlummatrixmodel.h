#pragma once
#include <app/api/qlummetatypes.h>
#include <app/api/qlummodelinterface.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumelementlist.h>
#include <uawidgets/editors/qlumpastereport.h>
#include <uawidgets/editors/qlumvaluecontext.h>

#include <QAbstractTableModel>
#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <vector>

/// A slice of a matrix as a grid: the last two dimensions are rows and columns, the others are fixed. No
/// objects for cells, as in QlumArrayModel. GUI thread.
class QlumMatrixModel : public QAbstractTableModel, public QlumModelInterface
{
    Q_OBJECT
public:
    /// As for all models of values.
    enum Role {
        ValueRole = Qt::UserRole,          ///< UaVariant: the element
        DictionaryRole = Qt::UserRole + 2, ///< UaDataTypeDictionary*; the context keeps it
        DataTypeRole = Qt::UserRole + 4    ///< UaNodeId: of the elements, as declared
    };
    /// Cells of the grid.
    struct Block
    {
        int row;     ///< the first
        int column;  ///< the first
        int rows;    ///< how many
        int columns; ///< how many
    };

    /// What is known of the matrix.
    explicit QlumMatrixModel(const QlumValueContext& context, QObject* parent = nullptr);

    /// Shows the first slice; what is no matrix has one row. A null value gives a matrix of the declared
    /// lengths.
    void setValue(const UaVariant& matrix);
    /// The matrix as it is now. Null when out of memory.
    [[nodiscard]] UaVariant value();
    /// Whether the user has changed anything since setValue().
    [[nodiscard]] bool isModified() const { return m_modified; }
    /// Refuses all edits.
    void setReadOnly(bool readOnly) { m_readOnly = readOnly; }
    /// Whether edits are refused.
    [[nodiscard]] bool isReadOnly() const { return m_readOnly; }
    /// All of them, in row-major order.
    [[nodiscard]] const QlumElementList& elements() const { return m_elements; }
    /// What is known of an element.
    [[nodiscard]] const QlumValueContext& elementContext() const { return m_context; }

    /// Lengths, the last two of them those of the grid.
    [[nodiscard]] const std::vector<int>& dimensions() const { return m_dimensions; }
    /// The indexes before those of row and column.
    [[nodiscard]] const std::vector<int>& slice() const { return m_slice; }
    /// Shows another one; its indexes must be there.
    void setSlice(const std::vector<int>& slice);
    /// "[2,0,1]"
    [[nodiscard]] QString placeOf(const QModelIndex& index) const;

    /// False when the value is none of the type.
    bool fill(const Block& block, const UaVariant& value);
    /// Takes the texts of cells from that one on; what goes beyond the edges is counted.
    QlumPasteReport paste(int row, int column, const QVector<QStringList>& rows);
    /// As qlumCopyText has it, a tab between the columns.
    [[nodiscard]] QString textOf(const Block& block) const;

    /// Of the slice.
    [[nodiscard]] int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    /// Of the slice.
    [[nodiscard]] int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    /// What qlumElementCell() says.
    [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    /// The indexes of rows and columns.
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role = Qt::DisplayRole) const override;
    /// Editable where a cell can edit the element.
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    /// Edit role: a text; ValueRole: a UaVariant.
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

signals:
    /// The user changed elements.
    void edited();

private:
    [[nodiscard]] int elementOf(int row, int column) const;
    void tellChanged(const Block& block);
    void makeNew();

    const QlumValueContext m_context;
    const std::vector<OpcUa_UInt32> m_declared;
    QlumElementList m_elements;
    std::vector<int> m_dimensions{0, 0};
    std::vector<int> m_slice;
    bool m_modified = false;
    bool m_readOnly = false;
};
