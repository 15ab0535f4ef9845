#include <certificates/qlumcertificatedetailsmodel.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumguithread.h>
#include <certificates/qlumcertificatechainnode.h>
#include <certificates/qlumcertificatedetailsnode.h>
#include <certificates/qlumcertificateerror.h>

#include <QColor>
#include <QFont>
#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QVariant>

namespace {
constexpr int maximumLines = 12;
constexpr int maximumCharacters = 2000;

// Thousands of names would make a row that no window can show.
QString fitForCell(const QString& value)
{
    int end = 0;
    for (int line = 0; line < maximumLines; ++line) {
        end = value.indexOf(QLatin1Char('\n'), end);
        if (end < 0)
            return qlumCutText(value, maximumCharacters);
        ++end;
    }
    return qlumCutText(value.left(end), maximumCharacters) + QLatin1String("...");
}

QVariant textColor(QlumCertificateError severity)
{
    switch (severity) {
    case QlumCertificateError::Warning:
        return QColor(QStringLiteral("darkorange"));
    case QlumCertificateError::Error:
        return QColor(QStringLiteral("red"));
    case QlumCertificateError::None:
        break;
    }
    return {};
}

QVariant groupFont()
{
    QFont font;
    font.setBold(true);
    return font;
}
} // namespace

QlumCertificateDetailsModel::QlumCertificateDetailsModel(QObject* parent) : QAbstractItemModel(parent) {}

void QlumCertificateDetailsModel::setNode(const QlumCertificateChainNode* node)
{
    qlumAssertGuiThread();
    beginResetModel();
    m_node = node;
    endResetModel();
}

const QlumCertificateDetailsNode* QlumCertificateDetailsModel::nodeOf(const QModelIndex& index)
{
    return static_cast<const QlumCertificateDetailsNode*>(index.internalPointer());
}

QModelIndex QlumCertificateDetailsModel::index(int row, int column, const QModelIndex& parent) const
{
    if (!m_node || row < 0 || row >= rowCount(parent) || column < 0 || column >= ColumnCount)
        return {};
    QlumCertificateDetailsNode* node = parent.isValid() ? nodeOf(parent)->child(row) : m_node->details(row);
    return createIndex(row, column, node);
}

QModelIndex QlumCertificateDetailsModel::parent(const QModelIndex& index) const
{
    if (!index.isValid() || !nodeOf(index)->parent())
        return {};
    QlumCertificateDetailsNode* parent = nodeOf(index)->parent();
    const int row =
        parent->parent() ? parent->parent()->indexOf(parent) : parent->chainNode().indexOf(parent);
    return createIndex(row, 0, parent);
}

int QlumCertificateDetailsModel::rowCount(const QModelIndex& parent) const
{
    if (!m_node || parent.column() > 0)
        return 0;
    return parent.isValid() ? nodeOf(parent)->childCount() : m_node->detailsCount();
}

int QlumCertificateDetailsModel::columnCount(const QModelIndex&) const
{
    return ColumnCount;
}

QVariant QlumCertificateDetailsModel::data(const QModelIndex& index, int role) const
{
    qlumAssertGuiThread();
    if (!index.isValid())
        return {};
    const QlumCertificateDetailsNode& node = *nodeOf(index);
    switch (role) {
    case Qt::DisplayRole:
        return index.column() == NameColumn ? node.name() : fitForCell(node.value());
    case Qt::EditRole:
        return index.column() == NameColumn ? node.name() : node.value();
    case Qt::ToolTipRole:
        return node.finding().isEmpty() ? QVariant() : qlumPlainToolTip(node.finding());
    case Qt::AccessibleDescriptionRole:
        return node.finding();
    case Qt::FontRole:
        return node.isGroup() ? groupFont() : QVariant();
    case Qt::ForegroundRole:
        return textColor(node.severity());
    default:
        return {};
    }
}

QVariant QlumCertificateDetailsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return section == NameColumn ? tr("Name") : tr("Value");
}
