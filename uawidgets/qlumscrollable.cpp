#include <uawidgets/qlumscrollable.h>

#include <QEvent>
#include <QFrame>
#include <QLayout>
#include <QResizeEvent>
#include <QScrollArea>
#include <QSize>
#include <QSizePolicy>
#include <QStackedWidget>
#include <QStyle>
#include <QTabBar>
#include <QTabWidget>
#include <QWidget>

#include <algorithm>

namespace {

// Of tabs and stacks what is shown counts: who looks at a small page need not scroll for a large one.
int leastWidth(const QWidget& widget)
{
    if (const auto* tabs = qobject_cast<const QTabWidget*>(&widget); tabs && tabs->currentWidget())
        return std::max(tabs->tabBar()->minimumSizeHint().width(), leastWidth(*tabs->currentWidget()));
    if (const auto* stack = qobject_cast<const QStackedWidget*>(&widget); stack && stack->currentWidget())
        return leastWidth(*stack->currentWidget());
    return std::max(widget.minimumSizeHint().width(), widget.minimumWidth());
}

int frameOf(const QTabWidget& tabs)
{
    return tabs.documentMode() ? 0
                               : 2 * tabs.style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, &tabs);
}

int leastHeight(const QWidget& widget, int width)
{
    if (const auto* tabs = qobject_cast<const QTabWidget*>(&widget); tabs && tabs->currentWidget())
        return tabs->tabBar()->sizeHint().height() + frameOf(*tabs) +
               leastHeight(*tabs->currentWidget(), width - frameOf(*tabs));
    if (const auto* stack = qobject_cast<const QStackedWidget*>(&widget); stack && stack->currentWidget())
        return leastHeight(*stack->currentWidget(), width);
    const QLayout* layout = widget.layout();
    const int height = layout && layout->hasHeightForWidth() ? layout->minimumHeightForWidth(width)
                                                             : widget.minimumSizeHint().height();
    return std::max(height, widget.minimumHeight());
}

// Of a widget whose height depends on its width a scroll area asks what it would like to have, and scrolls as
// soon as that is not there. This one says what the widget can do with.
class Holder final : public QWidget
{
public:
    explicit Holder(QWidget* held) : m_held(held)
    {
        held->setParent(this);
        QSizePolicy policy = sizePolicy();
        policy.setHeightForWidth(true);
        setSizePolicy(policy);
    }

    QSize sizeHint() const override { return m_held->sizeHint(); }
    QSize minimumSizeHint() const override
    {
        const int width = leastWidth(*m_held);
        return {width, leastHeight(*m_held, std::max(width, this->width()))};
    }
    int heightForWidth(int width) const override { return leastHeight(*m_held, width); }

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
