#include <uawidgets/qlumrolelook.h>

#include <QFont>
#include <QFontMetrics>
#include <QPixmap>
#include <QPoint>
#include <QString>

namespace {
constexpr int margin = 5;

QFont badgeFont(const QFont& font)
{
    QFont smaller(font);
    if (smaller.pointSizeF() > 0)
        smaller.setPointSizeF(smaller.pointSizeF() * 0.85);
    else
        smaller.setPixelSize(smaller.pixelSize() * 85 / 100);
    return smaller;
}
} // namespace

// Each of them carries white text (4.5 to 1 or more), on light and on dark grounds.
QColor qlumRoleColor(QlumServerRole role)
{
    switch (role) {
    case QlumServerRole::Look:
        return QColor(0x2e, 0x7d, 0x32);
    case QlumServerRole::Operate:
        return QColor(0x1c, 0x5f, 0xb8);
    case QlumServerRole::Commission:
        break;
    }
    return QColor(0xb8, 0x3a, 0x10);
}

QIcon qlumRoleIcon(QlumServerRole role)
{
    QIcon icon;
    for (const int side : {12, 16, 24, 32}) {
        QPixmap dot(side, side);
        dot.fill(Qt::transparent);
        QPainter painter(&dot);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(qlumRoleColor(role));
        painter.drawEllipse(dot.rect().adjusted(side / 6, side / 6, -side / 6, -side / 6));
        painter.end();
        icon.addPixmap(dot);
    }
    return icon;
}

QSize qlumRoleBadgeSize(QlumServerRole role, const QFont& font)
{
    const QFontMetrics metrics(badgeFont(font));
    return {metrics.horizontalAdvance(qlumRoleName(role)) + 2 * margin, metrics.height() + 2};
}

void qlumPaintRoleBadge(QPainter& painter, const QRect& place, QlumServerRole role, const QFont& font)
{
    const QSize size = qlumRoleBadgeSize(role, font);
    const QRect badge(QPoint(place.right() - size.width() + 1, place.center().y() - size.height() / 2), size);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(qlumRoleColor(role));
    painter.drawRoundedRect(badge, 3, 3);
    painter.setPen(Qt::white);
    painter.setFont(badgeFont(font));
    painter.drawText(badge, Qt::AlignCenter, qlumRoleName(role));
    painter.restore();
}
