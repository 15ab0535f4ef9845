#include <uawidgets/qlumwrappingbar.h>

#include <QEvent>
#include <QFontMetrics>
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
constexpr int leastCharacters = 12; // of a field that takes the room that is left

// Not one that is only not shown yet, together with the bar.
bool isAway(const QWidget& widget)
{
    return widget.isHidden() && widget.testAttribute(Qt::WA_WState_ExplicitShowHide);
}

bool grows(const QWidget& widget)
{
    const auto policy = static_cast<unsigned>(widget.sizePolicy().horizontalPolicy());
    return (policy & (QSizePolicy::ExpandFlag | QSizePolicy::IgnoreFlag)) != 0;
}

const QLabel* wrapped(const QWidget& widget)
{
    const auto* label = qobject_cast<const QLabel*>(&widget);
    return label && label->wordWrap() ? label : nullptr;
}

int fewCharacters(const QWidget& widget)
{
    return widget.fontMetrics().averageCharWidth() * leastCharacters;
}

// Which it has at least, in a bar of that width.
QSize leastSize(const QWidget& widget, int room)
{
    if (const QLabel* label = wrapped(widget)) {
        const QFontMetrics metrics = label->fontMetrics();
        const int line = metrics.size(0, label->text()).width() + metrics.averageCharWidth();
        const int width = std::clamp(line, 1, std::max(1, room));
        return {width, label->heightForWidth(width)};
    }
    const QSize wanted = widget.sizeHint();
    if (!grows(widget))
        return wanted.expandedTo(widget.minimumSize());
    return QSize(fewCharacters(widget), wanted.height())
        .expandedTo(widget.minimumSizeHint())
        .expandedTo(widget.minimumSize());
}
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
    if (grows(*field))
        pair->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
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
        const auto growing = std::count_if(m_buttons.begin() + static_cast<std::ptrdiff_t>(first),
                                           m_buttons.begin() + static_cast<std::ptrdiff_t>(result.size()),
                                           [](const QWidget* one) { return !isAway(*one) && grows(*one); });
        const int more = growing == 0 ? 0 : std::max(0, width - x) / static_cast<int>(growing);
        for (int shift = 0; first < result.size(); ++first) {
            QRect& place = result[first];
            place.moveTopLeft({place.left() + shift, y + (rowHeight - place.height()) / 2});
            if (more > 0 && !isAway(*m_buttons[first]) && grows(*m_buttons[first])) {
                place.setWidth(place.width() + more);
                shift += more;
            }
        }
    };
    for (const QWidget* button : m_buttons) {
        const QSize size = isAway(*button) ? QSize(0, 0) : leastSize(*button, width - 2 * gap);
        if (x > gap && x + size.width() + gap > width) {
            endRow();
            x = gap;
            y += rowHeight + gap;
            rowHeight = 0;
        }
        result.emplace_back(QPoint(x, y), size);
        if (!size.isNull())
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
        if (!isAway(*button))
            width += leastSize(*button, QWIDGETSIZE_MAX).width() + gap;
    return {width, heightForWidth(width)};
}

QSize QlumWrappingBar::minimumSizeHint() const
{
    int widest = 0;
    for (const QWidget* button : m_buttons)
        if (!isAway(*button))
            widest = std::max(widest, leastSize(*button, fewCharacters(*button)).width());
    return {widest + 2 * gap, sizeHint().height()};
}

bool QlumWrappingBar::event(QEvent* event)
{
    if (event->type() == QEvent::LayoutRequest) { // a button came, went, or says something else
        place();
        updateGeometry();
    }
    return QWidget::event(event);
}

void QlumWrappingBar::resizeEvent(QResizeEvent*)
{
    place();
}

void QlumWrappingBar::place()
{
    const std::vector<QRect> rows = places(width());
    for (std::size_t i = 0; i < rows.size(); ++i)
        if (!isAway(*m_buttons[i]))
            m_buttons[i]->setGeometry(rows[i]);
    setMinimumHeight(heightForWidth(width())); // layouts that are short of room would take the lower rows
}
