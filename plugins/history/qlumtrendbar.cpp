#include <plugins/history/qlumtrendbar.h>

#include <QPoint>
#include <QRect>
#include <QResizeEvent>
#include <QSizePolicy>

#include <algorithm>
#include <cstddef>

namespace {
constexpr int gap = 4;
} // namespace

QlumTrendBar::QlumTrendBar(QWidget* parent) : QWidget(parent)
{
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void QlumTrendBar::add(QWidget* button)
{
    button->setParent(this);
    m_buttons.push_back(button);
    updateGeometry();
}

std::vector<QRect> QlumTrendBar::places(int width) const
{
    std::vector<QRect> result;
    int x = gap, y = gap, rowHeight = 0;
    for (const QWidget* button : m_buttons) {
        const QSize size = button->sizeHint();
        if (x > gap && x + size.width() + gap > width) {
            x = gap;
            y += rowHeight + gap;
            rowHeight = 0;
        }
        result.emplace_back(QPoint(x, y), size);
        x += size.width() + gap;
        rowHeight = std::max(rowHeight, size.height());
    }
    return result;
}

int QlumTrendBar::heightForWidth(int width) const
{
    int height = 0;
    for (const QRect& place : places(width))
        height = std::max(height, place.bottom() + 1);
    return height;
}

QSize QlumTrendBar::sizeHint() const
{
    int width = gap;
    for (const QWidget* button : m_buttons)
        width += button->sizeHint().width() + gap;
    return {width, heightForWidth(width)};
}

QSize QlumTrendBar::minimumSizeHint() const
{
    int widest = 0;
    for (const QWidget* button : m_buttons)
        widest = std::max(widest, button->sizeHint().width());
    return {widest + 2 * gap, sizeHint().height()};
}

void QlumTrendBar::resizeEvent(QResizeEvent*)
{
    const std::vector<QRect> rows = places(width());
    for (std::size_t i = 0; i < rows.size(); ++i)
        m_buttons[i]->setGeometry(rows[i]);
}
