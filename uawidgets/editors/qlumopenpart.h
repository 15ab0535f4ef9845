// Parts of a value that need more room than a cell.
#pragma once
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluedialog.h>

#include <QString>

class QWidget;

/// Opens a window over the page that shows the whole: an element, a field, an array within a structure.
/// Returns at once; with OK the taker puts the part into its place, or says in words why that is not
/// possible. Without a taker the part is only shown.
void qlumOpenPart(QWidget* page, const QlumValueContext& context, const QString& place, const UaVariant& part,
                  const QlumValueDialog::Taker& take);
