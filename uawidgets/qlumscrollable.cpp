#include <uawidgets/qlumscrollable.h>

#include <QEvent>
#include <QFrame>
#include <QLayout>
#include <QResizeEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QSize>
#include <QStackedWidget>
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

int leastHeight(const QWidget& widget)
{
    if (const auto* tabs = qobject_cast<const QTabWidget*>(&widget); tabs && tabs->currentWidget())
        return tabs->tabBar()->sizeHint().height() + leastHeight(*tabs->currentWidget());
    if (const auto* stack = qobject_cast<const QStackedWidget*>(&widget); stack && stack->currentWidget())
        return leastHeight(*stack->currentWidget());
    return std::max(widget.minimumSizeHint().height(), widget.minimumHeight());
}

// Of a widget whose height depends on its width a scroll area asks what it would like to have, and scrolls as
// soon as that is not there. This one says what the widget can do with.
class Holder : public QWidget
{
public:
    explicit Holder(QWidget* held) : m_held(held) { held->setParent(this); }

    QSize sizeHint() const override { return m_held->sizeHint(); }
    QSize minimumSizeHint() const override { return {leastWidth(*m_held), leastHeight(*m_held)}; }

protected:
    bool event(QEvent* event) override
    {
        if (event->type() == QEvent::LayoutRequest)
            updateGeometry();
        return QWidget::event(event);
    }
    void resizeEvent(QResizeEvent*) override { m_held->setGeometry(rect()); }
    [[nodiscard]] const QWidget& held() const { return *m_held; }

private:
    QWidget* m_held;
};

// Counts the lines of texts for the width beside a bar, whether that is there or not: what changed with the
// bar would have it come and go for ever.
class PageHolder final : public Holder
{
public:
    PageHolder(QWidget* held, const QScrollArea* area) : Holder(held), m_area(area) {}

    QSize minimumSizeHint() const override
    {
        const QSize least = Holder::minimumSizeHint();
        const int room =
            m_area->maximumViewportSize().width() - m_area->verticalScrollBar()->sizeHint().width();
        const QLayout* layout = held().layout();
        const bool hasLines = layout && layout->hasHeightForWidth();
        return least.expandedTo(
            {0, hasLines ? layout->minimumHeightForWidth(std::max(least.width(), room)) : 0});
    }

private:
    const QScrollArea* m_area;
};

QScrollArea* makeArea(QWidget* parent)
{
    auto* area = new QScrollArea(parent);
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus); // its contents have it
    area->setWidgetResizable(true);
    return area;
}
} // namespace

QScrollArea* qlumScrollable(QWidget* widget, QWidget* parent)
{
    QScrollArea* area = makeArea(parent);
    area->setWidget(new Holder(widget));
    return area;
}

QScrollArea* qlumScrollablePage(QWidget* page, QWidget* parent)
{
    QScrollArea* area = makeArea(parent);
    area->setWidget(new PageHolder(page, area));
    return area;
}
