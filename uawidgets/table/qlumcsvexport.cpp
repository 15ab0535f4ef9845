#include <uawidgets/table/qlumcsvexport.h>

#include <uawidgets/table/qlumtabletext.h>

#include <QAbstractItemModel>
#include <QByteArray>
#include <QElapsedTimer>
#include <QModelIndex>
#include <QStringList>

#include <utility>

namespace {
constexpr int portionMilliseconds = 20;
constexpr int rowsBetweenLooks = 64; // at the clock

// Whether index is parent's child in these rows, or below one of them.
bool isWithin(QModelIndex index, const QModelIndex& parent, int first, int last)
{
    while (index.isValid() && index.parent() != parent)
        index = index.parent();
    return index.isValid() && index.row() >= first && index.row() <= last;
}
} // namespace

QlumCsvExport::QlumCsvExport(QAbstractItemModel* model, const QVector<int>& columns, const QString& path,
                             QObject* parent)
    : QObject(parent), m_model(model), m_columns(columns), m_file(path)
{
    m_timer.setInterval(0);
    connect(&m_timer, &QTimer::timeout, this, &QlumCsvExport::writePortion);
    connect(model, &QAbstractItemModel::rowsAboutToBeRemoved, this, &QlumCsvExport::sltRowsAboutToBeRemoved);
    const auto rearranged = [this] {
        finish(false, tr("The rows were put into another order while they were written."));
    };
    connect(model, &QAbstractItemModel::modelAboutToBeReset, this, rearranged);
    connect(model, &QAbstractItemModel::layoutAboutToBeChanged, this, rearranged);
    connect(model, &QAbstractItemModel::rowsAboutToBeMoved, this, rearranged);
    connect(model, &QObject::destroyed, this,
            [this] { finish(false, tr("The view was closed while its rows were written.")); });
}

void QlumCsvExport::start()
{
    m_timer.start();
}

void QlumCsvExport::cancel()
{
    finish(false, QString());
}

void QlumCsvExport::writePortion()
{
    QByteArray bytes;
    if (!m_file.isOpen()) {
        if (!m_file.open(QIODevice::WriteOnly))
            return finish(false, m_file.errorString());
        bytes = qlumCsvRecord(qlumColumnTitles(*m_model, m_columns));
    }
    QElapsedTimer time;
    time.start();
    QModelIndex row = nextRow();
    for (; row.isValid(); row = nextRow()) {
        bytes += record(row);
        m_last = row;
        m_skipsChildren = false;
        if (++m_rows % rowsBetweenLooks == 0 && time.elapsed() >= portionMilliseconds)
            break;
    }
    if (m_file.write(bytes) != bytes.size())
        return finish(false, m_file.errorString());
    if (row.isValid()) {
        emit progressed(m_rows);
        return;
    }
    const bool isWritten = m_file.commit();
    finish(isWritten, isWritten ? QString() : m_file.errorString());
}

QModelIndex QlumCsvExport::nextRow() const
{
    QModelIndex index = m_last;
    if (!m_skipsChildren && m_model->rowCount(index) > 0)
        return m_model->index(0, 0, index);
    while (index.isValid()) {
        const QModelIndex parent = index.parent();
        if (index.row() + 1 < m_model->rowCount(parent))
            return m_model->index(index.row() + 1, 0, parent);
        index = parent;
    }
    return {};
}

QByteArray QlumCsvExport::record(const QModelIndex& row) const
{
    QStringList fields;
    fields.reserve(m_columns.size());
    for (const int column : m_columns) {
        QString text = row.siblingAtColumn(column).data().toString();
        for (QModelIndex above = row.parent(); column == 0 && above.isValid(); above = above.parent())
            text.prepend(above.data().toString() + QLatin1Char('/'));
        fields.append(text);
    }
    return qlumCsvRecord(fields);
}

// The place in the order stays when its row goes: it is after the row before, or at the beginning.
void QlumCsvExport::sltRowsAboutToBeRemoved(const QModelIndex& parent, int first, int last)
{
    if (!m_model || !isWithin(m_last, parent, first, last))
        return;
    m_skipsChildren = first > 0;
    m_last = first > 0 ? m_model->index(first - 1, 0, parent) : parent;
}

void QlumCsvExport::finish(bool isWritten, const QString& error)
{
    if (!std::exchange(m_model, nullptr))
        return;
    m_timer.stop();
    if (!isWritten)
        m_file.cancelWriting();
    emit finished(isWritten, error);
}
