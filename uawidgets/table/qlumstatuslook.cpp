#include <uawidgets/table/qlumstatuslook.h>

#include <opcua/opcua_statuscodes.h>

#include <QCoreApplication>
#include <QGuiApplication>

namespace {
constexpr int greyAlpha = 150; // taken from the text colour
constexpr int darkest = 128;   // lightness of a base that calls for dark texts

bool g_isSafe = false;

QColor greyed(QColor color)
{
    color.setAlpha(color.alpha() - greyAlpha);
    return color;
}
} // namespace

QlumStatusLevel qlumStatusLevel(OpcUa_StatusCode code)
{
    if (OpcUa_IsBad(code))
        return QlumStatusLevel::Bad;
    return OpcUa_IsUncertain(code) ? QlumStatusLevel::Uncertain : QlumStatusLevel::Good;
}

QColor qlumStatusColor(QlumStatusLevel level, const QPalette& palette)
{
    const bool isDark = palette.color(QPalette::Base).lightness() < darkest;
    switch (level) {
    case QlumStatusLevel::Bad:
        if (g_isSafe)
            return isDark ? QColor(255, 150, 60) : QColor(178, 76, 0);
        return isDark ? QColor(255, 110, 110) : QColor(Qt::red);
    case QlumStatusLevel::Uncertain:
        if (g_isSafe)
            return isDark ? QColor(100, 190, 245) : QColor(0, 104, 170);
        return isDark ? QColor(255, 190, 90) : QColor(255, 140, 0);
    case QlumStatusLevel::Inactive:
        return greyed(palette.color(QPalette::Text));
    case QlumStatusLevel::Good:
        break;
    }
    return palette.color(QPalette::Text);
}

void qlumSetSafeStatusColours(bool isSafe)
{
    g_isSafe = isSafe;
}

QIcon qlumStatusIcon(QlumStatusLevel level)
{
    switch (level) {
    case QlumStatusLevel::Good:
        return QIcon(QStringLiteral(":/images/ok.png"));
    case QlumStatusLevel::Uncertain:
        return QIcon(QStringLiteral(":/images/warning.png"));
    case QlumStatusLevel::Bad:
        return QIcon(QStringLiteral(":/images/error.png"));
    case QlumStatusLevel::Inactive:
        break;
    }
    return {};
}

QString qlumStatusWord(QlumStatusLevel level)
{
    switch (level) {
    case QlumStatusLevel::Uncertain:
        return QCoreApplication::translate("QlumStatus", "Uncertain");
    case QlumStatusLevel::Bad:
        return QCoreApplication::translate("QlumStatus", "Bad");
    case QlumStatusLevel::Inactive:
        return QCoreApplication::translate("QlumStatus", "Inactive");
    case QlumStatusLevel::Good:
        break;
    }
    return QCoreApplication::translate("QlumStatus", "Good");
}

QVariant qlumStatusCell(QlumStatusLevel level, int role)
{
    switch (role) {
    case Qt::ForegroundRole:
        return qlumStatusColor(level, QGuiApplication::palette());
    case Qt::DecorationRole:
        return level == QlumStatusLevel::Inactive ? QVariant() : QVariant(qlumStatusIcon(level));
    case Qt::AccessibleDescriptionRole:
        return qlumStatusWord(level);
    default:
        return {};
    }
}
