#include <uawidgets/editors/qlummatrixmodel.h>

#include <app/api/qlumguithread.h>
#include <uabase/values/uaarray.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumcelltext.h>
#include <uawidgets/editors/qlumelementcell.h>
#include <uawidgets/editors/qlumvaluetype.h>
#include <uawidgets/table/qlumtabletext.h>

#include <algorithm>
#include <span>

QlumMatrixModel::QlumMatrixModel(const QlumValueContext& context, QObject* parent)
    : QAbstractTableModel(parent), m_context(qlumElementContext(context)), m_declared(context.arrayDimensions)
{
}

void QlumMatrixModel::setValue(const UaVariant& matrix)
{
    qlumAssertGuiThread();
    beginResetModel();
    m_modified = false;
    m_elements = QlumElementList(matrix, m_context.builtInType);
    const UaArray<OpcUa_Int32> lengths = matrix.dimensions();
    m_dimensions.assign(lengths.rawData(), lengths.rawData() + lengths.length());
    if (matrix.isNull())
        makeNew();
    OpcUa_Int64 product = 1;
    for (const int length : m_dimensions)
        product *= std::max(length, 0);
    if (product != m_elements.count()) // shown as it came, whatever it says of itself
        m_dimensions = {m_elements.count()};
    while (m_dimensions.size() < 2)
        m_dimensions.insert(m_dimensions.begin(), m_dimensions.empty() ? 0 : 1);
    m_slice.assign(m_dimensions.size() - 2, 0);
    endResetModel();
}

// A matrix of the declared lengths, where those are lengths that can be meant.
void QlumMatrixModel::makeNew()
{
    constexpr OpcUa_UInt64 mostElements = 1024 * 1024;
    OpcUa_UInt64 product = 1;
    for (const OpcUa_UInt32 length : m_declared) {
        product *= std::min<OpcUa_UInt64>(length, mostElements + 1);
        if (product == 0 || product > mostElements)
            return;
    }
    if (m_declared.size() < 2 || !m_elements.insert(0, static_cast<int>(product), qlumNullValue(m_context)))
        return;
    m_dimensions.assign(m_declared.begin(), m_declared.end());
}

UaVariant QlumMatrixModel::value()
{
    UaVariant matrix = m_elements.whole();
    if (matrix.isNull() || m_elements.isUnchanged() || matrix.isMatrix())
        return matrix;
    std::vector<OpcUa_Int32> lengths(m_dimensions.begin(), m_dimensions.end());
    return OpcUa_IsGood(matrix.setDimensions(lengths)) ? matrix : UaVariant();
}

void QlumMatrixModel::setSlice(const std::vector<int>& slice)
{
    qlumAssertGuiThread();
    if (slice.size() != m_slice.size() || slice == m_slice)
        return;
    for (std::size_t i = 0; i < slice.size(); ++i)
        if (slice[i] < 0 || slice[i] >= m_dimensions[i])
            return;
    beginResetModel(); // editors must not stay open over other cells
    m_slice = slice;
    endResetModel();
}

int QlumMatrixModel::elementOf(int row, int column) const
{
    OpcUa_Int64 index = 0;
    for (std::size_t i = 0; i < m_slice.size(); ++i)
        index = index * m_dimensions[i] + m_slice[i];
    index = index * m_dimensions[m_slice.size()] + row;
    return static_cast<int>(index * m_dimensions.back() + column);
}

QString QlumMatrixModel::placeOf(const QModelIndex& index) const
{
    if (!index.isValid())
        return QString();
    const std::vector<OpcUa_Int32> lengths(m_dimensions.begin(), m_dimensions.end());
    return qlumElementName(elementOf(index.row(), index.column()),
                           UaArray<OpcUa_Int32>(static_cast<OpcUa_Int32>(lengths.size()), lengths.data()));
}

// ---- editing

void QlumMatrixModel::tellChanged(const Block& block)
{
    emit dataChanged(index(block.row, block.column),
                     index(block.row + block.rows - 1, block.column + block.columns - 1));
    m_modified = true;
    emit edited();
}

bool QlumMatrixModel::fill(const Block& block, const UaVariant& value)
{
    qlumAssertGuiThread();
    const bool isThere = block.row >= 0 && block.column >= 0 && block.rows > 0 && block.columns > 0 &&
                         block.row + block.rows <= rowCount() &&
                         block.column + block.columns <= columnCount();
    if (m_readOnly || !isThere)
        return false;
    const bool isWide = block.columns == columnCount(); // whole rows follow one another
    const int runs = isWide ? 1 : block.rows;
    for (int run = 0; run < runs; ++run)
        if (!m_elements.fill(elementOf(block.row + run, block.column),
                             isWide ? block.rows * block.columns : block.columns, value))
            return false;
    tellChanged(block);
    return true;
}

QlumPasteReport QlumMatrixModel::paste(int row, int column, const QVector<QStringList>& rows)
{
    qlumAssertGuiThread();
    QlumPasteReport report;
    if (m_readOnly || row < 0 || column < 0)
        return report;
    int width = 0;
    for (int line = 0; line < rows.size(); ++line) {
        std::vector<UaVariant> values;
        for (int cell = 0; cell < rows.at(line).size(); ++cell) {
            if (row + line >= rowCount() || column + cell >= columnCount()) {
                ++report.beyond;
                continue;
            }
            UaVariant value = m_elements.at(elementOf(row + line, column + cell));
            if (qlumReadElement(rows.at(line).at(cell), m_elements.type(), m_context, value))
                ++report.taken;
            else
                report.refuse(placeOf(index(row + line, column + cell)), rows.at(line).at(cell));
            values.push_back(value);
        }
        UaVariant array;
        if (values.empty() || !OpcUa_IsGood(array.setArray(m_elements.type(), values)))
            continue;
        static_cast<void>(m_elements.overwrite(elementOf(row + line, column), array)); // it fits
        width = std::max(width, static_cast<int>(values.size()));
    }
    if (width > 0)
        tellChanged({row, column, std::min(static_cast<int>(rows.size()), rowCount() - row), width});
    return report;
}

QString QlumMatrixModel::textOf(const Block& block) const
{
    QStringList lines;
    for (int row = block.row; row < block.row + block.rows; ++row) {
        QStringList cells;
        for (int column = block.column; column < block.column + block.columns; ++column)
            cells.append(qlumTabbedCell(qlumCopyText(m_elements.at(elementOf(row, column)), m_context)));
        lines.append(cells.join(QLatin1Char('\t')));
    }
    return lines.join(QLatin1Char('\n'));
}

// ---- item model

int QlumMatrixModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() || m_elements.count() == 0 ? 0 : m_dimensions[m_dimensions.size() - 2];
}

int QlumMatrixModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() || m_elements.count() == 0 ? 0 : m_dimensions.back();
}

QVariant QlumMatrixModel::data(const QModelIndex& index, int role) const
{
    qlumAssertGuiThread();
    return checkIndex(index, CheckIndexOption::IndexIsValid)
               ? qlumElementCell(m_elements, elementOf(index.row(), index.column()), m_context, role)
               : QVariant();
}

QVariant QlumMatrixModel::headerData(int section, Qt::Orientation, int role) const
{
    return role == Qt::DisplayRole ? QVariant(QStringLiteral("[%1]").arg(section)) : QVariant();
}

Qt::ItemFlags QlumMatrixModel::flags(const QModelIndex& index) const
{
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    const bool canEdit = index.isValid() && !m_readOnly &&
                         qlumIsElementEditable(m_elements, elementOf(index.row(), index.column()));
    return canEdit ? flags | Qt::ItemIsEditable : flags;
}

bool QlumMatrixModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (m_readOnly || !checkIndex(index, CheckIndexOption::IndexIsValid))
        return false;
    UaVariant element =
        role == ValueRole ? value.value<UaVariant>() : m_elements.at(elementOf(index.row(), index.column()));
    const bool isText = role == Qt::EditRole;
    if (role != ValueRole &&
        !(isText && qlumReadElement(value.toString(), m_elements.type(), m_context, element)))
        return false;
    return fill({index.row(), index.column(), 1, 1}, element);
}
