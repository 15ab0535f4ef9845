#include <uawidgets/qlumscrollable.h>

#include <QEvent>
#include <QFrame>
#include <QResizeEvent>
#include <QScrollArea>
#include <QSize>
#include <QWidget>

namespace {

// Of a widget whose height depends on its width a scroll area asks what it would like to have, and scrolls as
// soon as that is not there. This one says what the widget can do with.
class Holder final : public QWidget
{
public:
    explicit Holder(QWidget* held) : m_held(held) { held->setParent(this); }

    QSize sizeHint() const override { return m_held->sizeHint(); }
    QSize minimumSizeHint() const override
    {
        return m_held->minimumSizeHint().expandedTo(m_held->minimumSize());
    }

protected:
    bool event(QEvent* event) override
    {
        if (event->type() == QEvent::LayoutRequest)
            updateGeometry();
        return QWidget::event(event);
    }
    void resizeEvent(QResizeEvent*) override { m_held->setGeometry(rect()); }

private:
    QWidget* m_held;
};
} // namespace

QScrollArea* qlumScrollable(QWidget* widget, QWidget* parent)
{
    auto* area = new QScrollArea(parent);
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus); // its contents have it
    area->setWidgetResizable(true);
    area->setWidget(new Holder(widget));
    return area;
}
