#include <uawidgets/qlumwrappingbar.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QPoint>
#include <QRect>
#include <QResizeEvent>
#include <QSizePolicy>

#include <algorithm>
#include <cstddef>

namespace {
constexpr int gap = 4;
} // namespace

QlumWrappingBar::QlumWrappingBar(QWidget* parent) : QWidget(parent)
{
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void QlumWrappingBar::add(QLabel* label, QWidget* field)
{
    auto* pair = new QWidget;
    auto* layout = new QHBoxLayout(pair);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(label);
    layout->addWidget(field, 1);
    label->setBuddy(field);
    add(pair);
}

void QlumWrappingBar::add(QWidget* button)
{
    button->setParent(this);
    m_buttons.push_back(button);
    updateGeometry();
}

std::vector<QRect> QlumWrappingBar::places(int width) const
{
    std::vector<QRect> result;
    std::size_t first = 0; // of the row
    int x = gap, y = gap, rowHeight = 0;
    const auto endRow = [&] {
        for (; first < result.size(); ++first)
            result[first].moveTop(y + (rowHeight - result[first].height()) / 2);
    };
    for (const QWidget* button : m_buttons) {
        const QSize size = button->sizeHint();
        if (x > gap && x + size.width() + gap > width) {
            endRow();
            x = gap;
            y += rowHeight + gap;
            rowHeight = 0;
        }
        result.emplace_back(QPoint(x, y), size);
        x += size.width() + gap;
        rowHeight = std::max(rowHeight, size.height());
    }
    endRow();
    return result;
}

int QlumWrappingBar::heightForWidth(int width) const
{
    int height = 0;
    for (const QRect& place : places(width))
        height = std::max(height, place.bottom() + 1);
    return height;
}

QSize QlumWrappingBar::sizeHint() const
{
    int width = gap;
    for (const QWidget* button : m_buttons)
        width += button->sizeHint().width() + gap;
    return {width, heightForWidth(width)};
}

QSize QlumWrappingBar::minimumSizeHint() const
{
    int widest = 0;
    for (const QWidget* button : m_buttons)
        widest = std::max(widest, button->sizeHint().width());
    return {widest + 2 * gap, sizeHint().height()};
}

void QlumWrappingBar::resizeEvent(QResizeEvent*)
{
    const std::vector<QRect> rows = places(width());
    for (std::size_t i = 0; i < rows.size(); ++i)
        m_buttons[i]->setGeometry(rows[i]);
    setMinimumHeight(heightForWidth(width())); // layouts that are short of room would take the lower rows
}
