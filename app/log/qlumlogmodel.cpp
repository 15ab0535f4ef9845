#include <app/log/qlumlogmodel.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumguithread.h>
#include <app/api/qlumtext.h>

#include <QChar>
#include <QCoreApplication>
#include <QDateTime>
#include <QEvent>
#include <QIcon>
#include <QLocale>
#include <QModelIndex>
#include <QObject>
#include <QRegularExpression>
#include <QString>
#include <QTextStream>
#include <QVariant>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>

namespace {
constexpr int flushMilliseconds = 50;
// More than this between two insertions cannot be read by anybody.
constexpr int maximumUnderWay = 20000;
constexpr int maximumMessage = 10000;

// One record a line, whatever a server puts into its texts.
QString oneLine(const QString& text)
{
    QString result;
    result.reserve(text.size());
    for (const QChar c : text)
        if (c == QLatin1Char('\n'))
            result += QLatin1String("\\n");
        else if (c == QLatin1Char('\r'))
            result += QLatin1String("\\r");
        else if (c < QLatin1Char(' ') && c != QLatin1Char('\t'))
            result += QStringLiteral("\\x%1").arg(c.unicode(), 2, 16, QLatin1Char('0'));
        else
            result += c;
    return result;
}

QString shortened(QString text, const QRegularExpression& longText)
{
    return text.replace(longText, QStringLiteral("\\1..."));
}

QIcon levelIcon(int level)
{
    if (level >= QlumLogLevel::Error)
        return QIcon(QStringLiteral(":/images/error.png"));
    if (level >= QlumLogLevel::Warning)
        return QIcon(QStringLiteral(":/images/warning.png"));
    return QIcon(QStringLiteral(":/images/info.png"));
}
} // namespace

QlumLogModel::QlumLogModel(QObject* parent) : QAbstractTableModel(parent)
{
    setShowDate(false);
    m_flushTimer.setSingleShot(true);
    m_flushTimer.setInterval(flushMilliseconds);
    connect(&m_flushTimer, &QTimer::timeout, this, &QlumLogModel::sltFlush);
    connect(this, &QlumLogModel::newLog, this, &QlumLogModel::internalAddLog);
    qRegisterMetaType<QlumLogEntry*>("QlumLogEntry*");
}

QlumLogModel::~QlumLogModel()
{
    // entries of other threads that are still on their way belong to nobody else
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
}

void QlumLogModel::addLog(std::unique_ptr<QlumLogEntry> entry)
{
    if (m_underWay.fetch_add(1) >= maximumUnderWay) {
        m_underWay.fetch_sub(1);
        m_dropped.fetch_add(1);
        return;
    }
    emit newLog(entry.release());
}

void QlumLogModel::internalAddLog(QlumLogEntry* entry)
{
    qlumAssertGuiThread();
    const std::unique_ptr<QlumLogEntry> owned(entry);
    if (owned->message.size() > maximumMessage)
        owned->message = owned->message.left(maximumMessage) + QStringLiteral("...");
    m_gathered.push_back(std::move(*owned));
    if (!m_flushTimer.isActive())
        m_flushTimer.start();
}

void QlumLogModel::addDroppedNote()
{
    if (const int dropped = m_dropped.exchange(0); dropped > 0)
        m_gathered.push_back({QDateTime::currentDateTime(), QlumLogLevel::Warning, tr("Log"), QString(),
                              tr("%1 log entries came too fast and were dropped.").arg(dropped)});
}

void QlumLogModel::sltFlush()
{
    qlumAssertGuiThread();
    m_flushTimer.stop();
    m_underWay.fetch_sub(static_cast<int>(m_gathered.size()));
    addDroppedNote();
    if (m_gathered.empty())
        return;
    if (m_gathered.size() > m_maxEntries)
        m_gathered.erase(m_gathered.begin(), m_gathered.end() - static_cast<std::ptrdiff_t>(m_maxEntries));
    trimTo(m_maxEntries - m_gathered.size());
    const int first = static_cast<int>(m_entries.size());
    beginInsertRows({}, first, first + static_cast<int>(m_gathered.size()) - 1);
    std::move(m_gathered.begin(), m_gathered.end(), std::back_inserter(m_entries));
    m_gathered.clear();
    endInsertRows();
}

void QlumLogModel::trimTo(std::size_t rows)
{
    if (m_entries.size() <= rows)
        return;
    const auto surplus = m_entries.size() - rows;
    beginRemoveRows({}, 0, static_cast<int>(surplus) - 1);
    m_entries.erase(m_entries.begin(), m_entries.begin() + static_cast<std::ptrdiff_t>(surplus));
    endRemoveRows();
}

void QlumLogModel::setMaxEntries(int count)
{
    qlumAssertGuiThread();
    m_maxEntries = static_cast<std::size_t>(std::max(1, count));
    trimTo(m_maxEntries);
}

void QlumLogModel::setShowDate(bool show)
{
    qlumAssertGuiThread();
    m_timeFormat = show ? qlumDateTimeFormat() : qlumTimeFormat();
    if (!m_entries.empty())
        emit dataChanged(index(0, Timestamp), index(rowCount() - 1, Timestamp), {Qt::DisplayRole});
}

void QlumLogModel::clear()
{
    qlumAssertGuiThread();
    sltFlush();
    beginResetModel();
    m_entries.clear();
    endResetModel();
}

void QlumLogModel::save(QTextStream& stream)
{
    qlumAssertGuiThread();
    static const QRegularExpression longSource(QStringLiteral("(.{15}).*"));
    static const QRegularExpression longServer(QStringLiteral("(.{27}).*"));
    sltFlush();
    for (const QlumLogEntry& entry : m_entries) {
        const QString time = entry.timestamp.toString(QStringLiteral("hh:mm:ss.zzz"));
        stream << QStringLiteral("%1 | %2 | %3 | %4\n")
                      .arg(time.leftJustified(12),
                           shortened(oneLine(entry.source), longSource).leftJustified(18),
                           shortened(oneLine(entry.server), longServer).leftJustified(30),
                           oneLine(entry.message));
    }
}

int QlumLogModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_entries.size());
}

int QlumLogModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant QlumLogModel::data(const QModelIndex& index, int role) const
{
    qlumAssertGuiThread();
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const QlumLogEntry& entry = m_entries[static_cast<std::size_t>(index.row())];
    if (role == levelRole)
        return entry.level;
    if (role == Qt::DecorationRole && index.column() == Timestamp)
        return levelIcon(entry.level);
    if (role == Qt::ToolTipRole && index.column() == Message)
        return qlumPlainToolTip(entry.message.left(1000));
    if (role != Qt::DisplayRole)
        return {};
    switch (index.column()) {
    case Timestamp:
        return QLocale::system().toString(entry.timestamp, m_timeFormat);
    case Source:
        return entry.source;
    case Server:
        return entry.server;
    default:
        return entry.message;
    }
}

QVariant QlumLogModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case Timestamp:
        return tr("Timestamp");
    case Source:
        return tr("Source");
    case Server:
        return tr("Server");
    case Message:
        return tr("Message");
    default:
        return {};
    }
}
