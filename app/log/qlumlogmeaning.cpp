#include <app/log/qlumlogmeaning.h>

#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QPixmap>
#include <QRegularExpression>
#include <QStringList>

#include <optional>

namespace {
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
    static const QRegularExpression bad(QStringLiteral("\\b(?:failed|ConnectionError\\w*)\\b"));
    static const QRegularExpression good(QStringLiteral("\\b(?:succeeded|Good)\\b|'Connected'"));
    const QStringList statuses = statusesIn(message);
    for (const QString& name : statuses)
        if (name.startsWith(QLatin1String("Bad")))
            return QlumStatusLevel::Bad;
    if (!statuses.isEmpty())
        return QlumStatusLevel::Uncertain;
    if (message.contains(bad))
        return QlumStatusLevel::Bad;
    if (message.contains(good))
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
