#pragma once
#include <QStackedWidget>

/// The start page, or the tabs with the documents, for an area that scrolls: they are scrolled only when they
/// have less room than they need, not already when they have less than they would like.
class QlumDocumentStack : public QStackedWidget
{
    Q_OBJECT
public:
    using QStackedWidget::QStackedWidget;

    int heightForWidth(int width) const override; ///< the least of what is shown
};
