#include <uawidgets/table/qlumtablefilter.h>

#include <app/api/qlumguithread.h>

#include <QAbstractItemModel>
#include <QDateTime>
#include <QMetaType>
#include <QObject>
#include <QVariant>

#include <algorithm>
#include <compare>
#include <numeric>
#include <utility>

namespace {
// What a cell is sorted by. A long double holds every 64 bit number without loss.
struct SortKey
{
    enum Kind { Number, Text, Nothing };
    Kind kind = Nothing;
    long double number = 0;
    QString text;
};

SortKey keyOf(const QVariant& value)
{
    switch (static_cast<QMetaType::Type>(value.userType())) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::Short:
    case QMetaType::SChar:
    case QMetaType::Long:
    case QMetaType::LongLong:
        return {SortKey::Number, static_cast<long double>(value.toLongLong()), {}};
    case QMetaType::UInt:
    case QMetaType::UShort:
    case QMetaType::UChar:
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        return {SortKey::Number, static_cast<long double>(value.toULongLong()), {}};
    case QMetaType::Float:
    case QMetaType::Double:
        return {SortKey::Number, value.toDouble(), {}};
    case QMetaType::QDateTime:
        return {SortKey::Number, static_cast<long double>(value.toDateTime().toMSecsSinceEpoch()), {}};
    default:
        break;
    }
    QString text = value.toString();
    return text.isEmpty() ? SortKey() : SortKey{SortKey::Text, 0, std::move(text)};
}

bool isLess(const SortKey& left, const SortKey& right, Qt::CaseSensitivity sensitivity)
{
    if (left.kind != right.kind)
        return left.kind < right.kind;
    if (left.kind == SortKey::Number) // NaN has a place too, the first, or no order would be one
        return std::strong_order(left.number, right.number) < 0;
    return left.text.compare(right.text, sensitivity) < 0;
}
} // namespace

QlumTableFilter::QlumTableFilter(QObject* parent)
    : QSortFilterProxyModel(parent), m_matcher(QString(), Qt::CaseInsensitive)
{
    setSortCaseSensitivity(Qt::CaseInsensitive);
}

bool QlumTableFilter::setText(const QString& text)
{
    if (text == m_matcher.pattern())
        return false;
    m_matcher.setPattern(text);
    refilter();
    return true;
}

void QlumTableFilter::setSearchedColumns(const QVector<int>& columns)
{
    m_columns = columns;
    refilter();
}

// Taking rows out one run after the other costs the base class the square of their number, so all of it is
// laid out anew.
void QlumTableFilter::refilter()
{
    qlumAssertGuiThread();
    rank(sortColumn());
    invalidate();
}

void QlumTableFilter::sort(int column, Qt::SortOrder order)
{
    qlumAssertGuiThread();
    rank(column);
    QSortFilterProxyModel::sort(column, order);
}

// Connected before the base class is, so that it compares cells again when it places what has changed.
void QlumTableFilter::setSourceModel(QAbstractItemModel* model)
{
    const auto forget = [this] { m_ranking.ranks.clear(); };
    forget();
    if (QAbstractItemModel* before = sourceModel())
        before->disconnect(this);
    connect(model, &QAbstractItemModel::dataChanged, this, forget);
    connect(model, &QAbstractItemModel::rowsInserted, this, forget);
    connect(model, &QAbstractItemModel::rowsRemoved, this, forget);
    connect(model, &QAbstractItemModel::rowsMoved, this, forget);
    connect(model, &QAbstractItemModel::columnsInserted, this, forget);
    connect(model, &QAbstractItemModel::columnsRemoved, this, forget);
    connect(model, &QAbstractItemModel::columnsMoved, this, forget);
    connect(model, &QAbstractItemModel::layoutChanged, this, forget);
    connect(model, &QAbstractItemModel::modelReset, this, forget);
    QSortFilterProxyModel::setSourceModel(model);
}

bool QlumTableFilter::isRanked(int column) const
{
    return !m_ranking.ranks.empty() && m_ranking.column == column && m_ranking.role == sortRole() &&
           m_ranking.sensitivity == sortCaseSensitivity();
}

// Each cell is asked for once, not in each of the many comparisons, and not again while the user types.
void QlumTableFilter::rank(int column)
{
    const QAbstractItemModel* source = sourceModel();
    if (!source || column < 0 || column >= source->columnCount() || isRanked(column))
        return;
    const int count = source->rowCount();
    std::vector<SortKey> keys;
    keys.reserve(static_cast<std::size_t>(count));
    for (int row = 0; row < count; ++row)
        keys.push_back(keyOf(source->index(row, column).data(sortRole())));
    std::vector<std::size_t> order(keys.size());
    std::iota(order.begin(), order.end(), 0);
    const auto less = [&](std::size_t left, std::size_t right) {
        return isLess(keys[left], keys[right], sortCaseSensitivity());
    };
    std::sort(order.begin(), order.end(), less);
    m_ranking = {column, sortRole(), sortCaseSensitivity(), std::vector<int>(keys.size())};
    int shared = 0;
    for (std::size_t place = 0; place < order.size(); ++place) {
        if (place > 0 && less(order[place - 1], order[place])) // equal ones keep the order of the source
            ++shared;
        m_ranking.ranks[order[place]] = shared;
    }
}

bool QlumTableFilter::acceptsRow(int, const QModelIndex&) const
{
    return true;
}

bool QlumTableFilter::filterAcceptsRow(int row, const QModelIndex& parent) const
{
    if (!acceptsRow(row, parent))
        return false;
    if (m_matcher.pattern().isEmpty())
        return true;
    const QAbstractItemModel* source = sourceModel();
    const auto holdsText = [&](int column) {
        return m_matcher.indexIn(source->data(source->index(row, column, parent)).toString()) >= 0;
    };
    if (!m_columns.isEmpty())
        return std::any_of(m_columns.begin(), m_columns.end(), holdsText);
    const int count = source->columnCount(parent);
    for (int column = 0; column < count; ++column)
        if (holdsText(column))
            return true;
    return false;
}

bool QlumTableFilter::lessThan(const QModelIndex& left, const QModelIndex& right) const
{
    if (isRanked(left.column()) && !left.parent().isValid()) {
        const std::vector<int>& ranks = m_ranking.ranks;
        return ranks[static_cast<std::size_t>(left.row())] < ranks[static_cast<std::size_t>(right.row())];
    }
    return isLess(keyOf(left.data(sortRole())), keyOf(right.data(sortRole())), sortCaseSensitivity());
}
