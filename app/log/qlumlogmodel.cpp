#include <app/log/qlumlogmodel.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>

#include <QChar>
#include <QCoreApplication>
#include <QDateTime>
#include <QEvent>
#include <QIcon>
#include <QLocale>
#include <QObject>
#include <QRegularExpression>
#include <QString>
#include <QTextStream>
#include <QVariant>

#include <cstddef>
#include <utility>

namespace {
constexpr int defaultEntries = 10000;
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

QlumLogModel::QlumLogModel(QObject* parent)
    : QlumTableModel({tr("Timestamp"), tr("Source"), tr("Server"), tr("Message")}, parent)
{
    setShowDate(false);
    setMaximumRows(defaultEntries);
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
    const std::unique_ptr<QlumLogEntry> owned(entry);
    if (owned->message.size() > maximumMessage)
        owned->message = owned->message.left(maximumMessage) + QStringLiteral("...");
    gather(std::move(*owned));
}

void QlumLogModel::flush()
{
    m_underWay.fetch_sub(static_cast<int>(gatheredCount()));
    if (const int dropped = m_dropped.exchange(0); dropped > 0)
        gather({QDateTime::currentDateTime(), QlumLogLevel::Warning, tr("Log"), QString(),
                tr("%1 log entries came too fast and were dropped.").arg(dropped)});
    const std::size_t all = rows().size() + gatheredCount();
    QlumTableModel::flush();
    if (all > rows().size())
        tellFirst();
}

void QlumLogModel::setMaxEntries(int count)
{
    setMaximumRows(count);
    tellFirst();
}

// The row that comes first now may have been the repetition of one that has gone.
void QlumLogModel::tellFirst()
{
    if (rowCount() > 0)
        emit dataChanged(index(0, 0), index(0, ColumnCount - 1));
}

void QlumLogModel::setShowDate(bool show)
{
    m_showDate = show;
    tellColumnChanged(Timestamp, {Qt::DisplayRole});
}

bool QlumLogModel::isRepeated(int row) const
{
    if (row <= 0)
        return false;
    const QlumLogEntry& one = rowAt(row);
    const QlumLogEntry& before = rowAt(row - 1);
    return one.level == before.level && one.message == before.message && one.source == before.source &&
           one.server == before.server;
}

void QlumLogModel::clear()
{
    flush();
    reset();
}

void QlumLogModel::save(QTextStream& stream)
{
    static const QRegularExpression longSource(QStringLiteral("(.{15}).*"));
    static const QRegularExpression longServer(QStringLiteral("(.{27}).*"));
    flush();
    for (const QlumLogEntry& entry : rows()) {
        const QString time = entry.timestamp.toString(QStringLiteral("hh:mm:ss.zzz"));
        stream << QStringLiteral("%1 | %2 | %3 | %4\n")
                      .arg(time.leftJustified(12),
                           shortened(oneLine(entry.source), longSource).leftJustified(18),
                           shortened(oneLine(entry.server), longServer).leftJustified(30),
                           oneLine(entry.message));
    }
}

QVariant QlumLogModel::cell(const QlumLogEntry& entry, int column, int role) const
{
    if (role == levelRole)
        return entry.level;
    if (role == Qt::DecorationRole && column == Timestamp)
        return levelIcon(entry.level);
    if (role == Qt::ToolTipRole && column == Message)
        return qlumPlainToolTip(entry.message.left(1000));
    if (role != Qt::DisplayRole)
        return {};
    switch (column) {
    case Timestamp:
        return m_showDate ? qlumShowDateTime(entry.timestamp) : qlumShowTime(entry.timestamp);
    case Source:
        return entry.source;
    case Server:
        return entry.server;
    default:
        return entry.message;
    }
}
