#include <app/log/qlumlogfilter.h>

#include <app/api/qlumdisplaytext.h>
#include <app/log/qlumlogmeaning.h>
#include <app/log/qlumlogmodel.h>

#include <QAbstractItemModel>
#include <QLocale>
#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

QlumLogFilter::QlumLogFilter(QObject* parent) : QlumTableFilter(parent)
{
    setSearchedColumns({QlumLogModel::Source, QlumLogModel::Server, QlumLogModel::Message});
}

void QlumLogFilter::setFilter(int minimumLevel, const QString& text)
{
    const bool isOtherLevel = minimumLevel != m_minimumLevel;
    m_minimumLevel = minimumLevel;
    if (!setText(text) && isOtherLevel)
        refilter();
}

void QlumLogFilter::setSourceModel(QAbstractItemModel* model)
{
    m_log = qobject_cast<QlumLogModel*>(model);
    QlumTableFilter::setSourceModel(model);
    // after the base class, which has nothing to tell when no row comes through
    connect(model, &QAbstractItemModel::rowsInserted, this,
            [this](const QModelIndex&, int first) { tellRepeated(first); });
}

bool QlumLogFilter::acceptsRow(int row, const QModelIndex&) const
{
    return m_log->rowAt(row).level >= m_minimumLevel && !m_log->isRepeated(row);
}

void QlumLogFilter::tellRepeated(int row)
{
    if (!m_log->isRepeated(row))
        return;
    while (m_log->isRepeated(row))
        --row;
    if (const int own = mapFromSource(m_log->index(row, 0)).row(); own >= 0)
        emit dataChanged(index(own, 0), index(own, columnCount() - 1));
}

int QlumLogFilter::lastOfRun(int row) const
{
    while (row + 1 < m_log->rowCount() && m_log->isRepeated(row + 1))
        ++row;
    return row;
}

QVariant QlumLogFilter::data(const QModelIndex& index, int role) const
{
    const int row = mapToSource(index).row();
    if (row < 0)
        return {};
    if (index.column() == QlumLogModel::Timestamp && role == Qt::DisplayRole)
        return m_log->index(lastOfRun(row), QlumLogModel::Timestamp).data();
    if (index.column() != QlumLogModel::Message)
        return QlumTableFilter::data(index, role);
    switch (role) {
    case Qt::DisplayRole: {
        const int count = lastOfRun(row) - row + 1;
        const QString& message = m_log->rowAt(row).message;
        return count == 1 ? message : tr("%1 times: %2").arg(QLocale().toString(count), message);
    }
    case Qt::DecorationRole:
        return qlumLogMeaningIcon(m_log->rowAt(row).message);
    case Qt::ToolTipRole:
        return qlumPlainToolTip(toolTip(row));
    default:
        return QlumTableFilter::data(index, role);
    }
}

QString QlumLogFilter::toolTip(int row) const
{
    const QString message = m_log->rowAt(row).message.left(1000);
    QStringList lines{message};
    if (const QString words = qlumStatusesInWords(message); !words.isEmpty())
        lines.append(words);
    const auto time = [this](int of) { return m_log->index(of, QlumLogModel::Timestamp).data().toString(); };
    if (const int last = lastOfRun(row); last != row)
        lines.append(
            tr("%1 times, from %2 to %3").arg(QLocale().toString(last - row + 1), time(row), time(last)));
    return lines.join(QLatin1Char('\n'));
}
