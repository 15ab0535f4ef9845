#include <uawidgets/qlumscrollable.h>

#include <QFrame>
#include <QScrollArea>
#include <QWidget>

QScrollArea* qlumScrollable(QWidget* widget, QWidget* parent)
{
    auto* area = new QScrollArea(parent);
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus); // its contents have it
    area->setWidgetResizable(true);
    area->setWidget(widget);
    return area;
}
