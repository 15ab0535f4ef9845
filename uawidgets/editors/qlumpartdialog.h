#pragma once
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>

#include <QDialog>
#include <QString>
#include <QWidget>

#include <functional>

class QDialogButtonBox;
class QlumMessageBar;
class QlumValueWidget;

/// A part of a value that needs more room than a cell: an element, a field, an array within a structure.
/// Opened over the page that shows the whole, to which the part goes back with OK. GUI thread.
class QlumPartDialog : public QDialog
{
    Q_OBJECT
public:
    /// Puts the part into its place; says in words why that is not possible, and nothing when it was.
    using Taker = std::function<QString(const UaVariant& part)>;

    /// place: which part it is, for the title. Without a taker the part is only shown.
    QlumPartDialog(const QlumValueContext& context, const QString& place, const UaVariant& part, Taker take,
                   QWidget* parent);

    /// Stays open, and says why, while the part is no value or cannot be taken.
    void accept() override;

private:
    const Taker m_take;
    QlumMessageBar* m_messages;
    QlumValueWidget* m_value;
};
