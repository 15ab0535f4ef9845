#pragma once
class QScrollArea;
class QWidget;

/// An area without frame that takes the widget and lets it have less room than it wants: it scrolls then.
[[nodiscard]] QScrollArea* qlumScrollable(QWidget* widget, QWidget* parent = nullptr);
