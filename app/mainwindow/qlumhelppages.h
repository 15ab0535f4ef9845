// Which page of the manual is about a tool.
#pragma once
#include <QString>
#include <QUrl>

class QWidget;

/// The page about a dock, by its object name, or about a type of document; empty when there is none.
[[nodiscard]] QString qlumHelpPageOfTool(const QString& tool);
/// Says which tool a widget belongs to; needed for documents only, docks have their object name.
void qlumSetHelpTool(QWidget* widget, const QString& tool);
/// The page about the nearest tool that the widget, which may be null, lies in; the contents when there is
/// none.
[[nodiscard]] QUrl qlumHelpPageOf(const QWidget* widget);
/// The address of a page, such as "settings".
[[nodiscard]] QUrl qlumHelpPage(const QString& name);
