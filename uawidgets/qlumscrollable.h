#pragma once
class QScrollArea;
class QWidget;

/// An area without frame that takes the widget and lets it have less room than it wants: it scrolls then.
[[nodiscard]] QScrollArea* qlumScrollable(QWidget* widget, QWidget* parent = nullptr);
/// The same for a page of texts, which need more lines where they are narrow; not for parts that stand in
/// other ways at other widths.
[[nodiscard]] QScrollArea* qlumScrollablePage(QWidget* page, QWidget* parent = nullptr);
