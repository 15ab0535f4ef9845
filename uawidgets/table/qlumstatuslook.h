// How a status looks in a table: a colour that can be read on the palette, and never without icon or word.
#pragma once
#include <opcua/opcua_builtintypes.h>

#include <QColor>
#include <QIcon>
#include <QPalette>
#include <QString>
#include <QVariant>

enum class QlumStatusLevel { Good, Uncertain, Bad, Inactive };

/// By the severity of the code; Inactive never comes out.
[[nodiscard]] QlumStatusLevel qlumStatusLevel(OpcUa_StatusCode code);
/// Of texts on the palette's base, so it has to be asked for anew when the palette changes: models give it
/// when they are asked and do not keep it.
[[nodiscard]] QColor qlumStatusColor(QlumStatusLevel level, const QPalette& palette);
/// Colours that are told apart without seeing red and green, or the usual ones. GUI thread.
void qlumSetSafeStatusColours(bool isSafe);
/// Null for Inactive, which the greyed text tells.
[[nodiscard]] QIcon qlumStatusIcon(QlumStatusLevel level);
[[nodiscard]] QString qlumStatusWord(QlumStatusLevel level);
/// What a cell that shows a status answers for the roles of colour, icon and accessible description, by the
/// application's palette; invalid for all other roles.
[[nodiscard]] QVariant qlumStatusCell(QlumStatusLevel level, int role);
