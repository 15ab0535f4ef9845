#include <uawidgets/qlumelidedlabel.h>

#include <QChar>
#include <QFontMetrics>
#include <QPaintEvent>
#include <QPainter>
#include <QRect>
#include <QSizePolicy>
#include <QStyle>
#include <QWidget>

QlumElidedLabel::QlumElidedLabel(Qt::TextElideMode mode, QWidget* parent) : QLabel(parent), m_mode(mode)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

QSize QlumElidedLabel::minimumSizeHint() const
{
    constexpr ushort dots = 0x2026;
    return {fontMetrics().horizontalAdvance(QChar(dots)) + 2 * margin(), QLabel::minimumSizeHint().height()};
}

QString QlumElidedLabel::shownText() const
{
    return fontMetrics().elidedText(text(), m_mode, contentsRect().width() - 2 * margin());
}

void QlumElidedLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QRect room = contentsRect().adjusted(margin(), margin(), -margin(), -margin());
    const auto alignment =
        static_cast<int>(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft | Qt::AlignVCenter));
    style()->drawItemText(&painter, room, alignment | Qt::TextSingleLine, palette(), isEnabled(), shownText(),
                          foregroundRole());
}
