// How the role of a server looks, the same wherever it is shown: a colour, and never without its word.
#pragma once
#include <app/api/qlumserverrole.h>

#include <QColor>
#include <QIcon>
#include <QPainter>
#include <QPalette>
#include <QRect>
#include <QSize>

class QFont;

/// Of lines and areas that mean the role; texts on it are white.
[[nodiscard]] QColor qlumRoleColor(QlumServerRole role);
/// A dot of that colour.
[[nodiscard]] QIcon qlumRoleIcon(QlumServerRole role);
/// The room that the word takes on its coloured ground.
[[nodiscard]] QSize qlumRoleBadgeSize(QlumServerRole role, const QFont& font);
/// Paints the word on its ground, in the middle of the rectangle's height at its right end.
void qlumPaintRoleBadge(QPainter& painter, const QRect& place, QlumServerRole role, const QFont& font);
