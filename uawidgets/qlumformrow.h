// Rows of forms: what every field needs besides its value, in one call.
#pragma once
#include <QLayout>
#include <QString>
#include <QWidget>

class QFormLayout;

/// How a field is named and explained.
struct QlumFormRow
{
    QString name;      ///< object name
    QString label;     ///< with its mnemonic and its colon
    QString whatsThis; ///< rich text; may be empty
    QString toolTip;   ///< empty: the label, bare
};

/// The text without mnemonic and colon, as a screen reader says it.
[[nodiscard]] QString qlumBareLabel(const QString& label);
/// Gives a field its object name, accessible name, tool tip and What's-This.
void qlumDescribeField(QWidget* field, const QlumFormRow& row);
/// Describes the field and adds it behind its label, whose buddy it becomes. A field that stands among others
/// comes with their layout, which goes into the form in its place; the form takes both.
void qlumAddRow(QFormLayout* form, QWidget* field, const QlumFormRow& row, QLayout* layout = nullptr);
/// Describes a field that shows its label itself, a check box for one, and adds it over the whole width.
void qlumAddWideRow(QFormLayout* form, QWidget* field, const QlumFormRow& row);
