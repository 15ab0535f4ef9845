#include <uawidgets/qlumturningsplitter.h>

#include <QEvent>
#include <QResizeEvent>
#include <QSizePolicy>
#include <QWidget>

#include <algorithm>
#include <utility>

namespace {
struct Widths
{
    int widest = 0, sum = 0;
};

Widths widthsOf(const QSplitter& splitter)
{
    Widths result;
    int shown = 0;
    for (int i = 0; i < splitter.count(); ++i) {
        const QWidget* part = splitter.widget(i);
        if (part->isHidden() && part->testAttribute(Qt::WA_WState_ExplicitShowHide))
            continue;
        const int width = part->minimumWidth() > 0 ? part->minimumWidth() : part->minimumSizeHint().width();
        result.widest = std::max(result.widest, width);
        result.sum += width;
        ++shown;
    }
    result.sum += std::max(0, shown - 1) * splitter.handleWidth();
    return result;
}
} // namespace

QlumTurningSplitter::QlumTurningSplitter(QWidget* parent) : QSplitter(Qt::Horizontal, parent) {}

QSize QlumTurningSplitter::minimumSizeHint() const
{
    const int frame = 2 * frameWidth();
    return {widthsOf(*this).widest + frame, QSplitter::minimumSizeHint().height()};
}

bool QlumTurningSplitter::event(QEvent* event)
{
    const bool isDone = QSplitter::event(event);
    if (event->type() == QEvent::LayoutRequest)
        turn();
    return isDone;
}

void QlumTurningSplitter::resizeEvent(QResizeEvent* event)
{
    QSplitter::resizeEvent(event);
    turn();
}

// Those that are to grow get twice as much as the others.
QList<int> QlumTurningSplitter::shares() const
{
    const bool isVertical = orientation() == Qt::Vertical;
    QList<int> result;
    int sum = 0;
    for (int i = 0; i < count(); ++i) {
        const QSizePolicy policy = widget(i)->sizePolicy();
        result.append((isVertical ? policy.verticalStretch() : policy.horizontalStretch()) > 0 ? 2 : 1);
        sum += result.last();
    }
    for (int& share : result)
        share = std::max(1, share * (isVertical ? height() : width()) / sum);
    return result;
}

void QlumTurningSplitter::turn()
{
    // parts that have just the least they need show next to nothing
    const int comfortable = widthsOf(*this).sum * 5 / 4;
    const bool hasRoom = contentsRect().width() >= comfortable;
    const Qt::Orientation wanted = hasRoom ? Qt::Horizontal : Qt::Vertical;
    if (wanted == orientation())
        return;
    QList<int> before = std::exchange(m_otherSizes, sizes());
    setOrientation(wanted);
    if (before.size() != count()) // what they had of the other way would leave the last ones next to nothing
        before = shares();
    setSizes(before);
    emit turned(wanted);
}
