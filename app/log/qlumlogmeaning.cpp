#include <app/log/qlumlogmeaning.h>

#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QCoreApplication>
#include <QPixmap>
#include <QRegularExpression>
#include <QStringList>

#include <optional>

namespace {
class LogWords
{
    Q_DECLARE_TR_FUNCTIONS(QlumLogMeaning)
};

// Words of the user's language beside those of the trace, which stays English.
bool hasOneOf(const QString& message, const QString& english, const QString& own)
{
    return QRegularExpression(QStringLiteral("\\b(?:%1|%2)\\b").arg(english, own)).match(message).hasMatch();
}

// Names of statuses that are not Good, also of those that stand there as a number.
QStringList statusesIn(const QString& message)
{
    static const QRegularExpression pattern(
        QStringLiteral("\\b(?:(?:Bad|Uncertain)[A-Z][A-Za-z]+|0x[89A-Fa-f4-7][0-9A-Fa-f]{7})\\b"));
    QStringList names;
    for (auto match = pattern.globalMatch(message); match.hasNext();) {
        QString name = match.next().captured();
        if (name.startsWith(QLatin1String("0x")))
            name = qlumStatusText(name.toUInt(nullptr, 16));
        const bool isName =
            name.startsWith(QLatin1String("Bad")) || name.startsWith(QLatin1String("Uncertain"));
        if (isName && !names.contains(name))
            names.append(name);
    }
    return names;
}

std::optional<QlumStatusLevel> levelOf(const QString& message)
{
    const QStringList statuses = statusesIn(message);
    for (const QString& name : statuses)
        if (name.startsWith(QLatin1String("Bad")))
            return QlumStatusLevel::Bad;
    if (!statuses.isEmpty())
        return QlumStatusLevel::Uncertain;
    if (hasOneOf(message, QStringLiteral("failed|ConnectionError\\w*"),
                 LogWords::tr("failed", "words of log texts that tell of a failure, with | between")))
        return QlumStatusLevel::Bad;
    if (message.contains(QLatin1String("'Connected'")) ||
        hasOneOf(message, QStringLiteral("succeeded|Good"),
                 LogWords::tr("succeeded", "words of log texts that tell of success, with | between")))
        return QlumStatusLevel::Good;
    return std::nullopt;
}
} // namespace

QIcon qlumLogMeaningIcon(const QString& message)
{
    if (const auto level = levelOf(message))
        return qlumStatusIcon(*level);
    QPixmap nothing(16, 16);
    nothing.fill(Qt::transparent);
    return nothing;
}

QString qlumStatusesInWords(const QString& message)
{
    QStringList lines;
    for (const QString& name : statusesIn(message))
        lines.append(QStringLiteral("%1: %2").arg(name, qlumStatusWords(name)));
    return lines.join(QLatin1Char('\n'));
}
