#include <uawidgets/plot/qlumplotemptytext.h>

#include <QFontMetricsF>
#include <QPainter>
#include <QPen>
#include <QWidget>
#include <qwt_plot.h>

QlumPlotEmptyText::QlumPlotEmptyText(QwtPlot& plot)
{
    constexpr double aboveAll = 100;
    setZ(aboveAll);
    attach(&plot);
}

void QlumPlotEmptyText::setText(const QString& headline, const QString& hint)
{
    m_text = headline + QStringLiteral("\n\n") + hint;
    plot()->canvas()->setAccessibleDescription(headline + QStringLiteral(". ") + hint);
}

// Qwt's own text item keeps each line as long as it is, and cuts it at both sides.
void QlumPlotEmptyText::draw(QPainter* painter, const QwtScaleMap&, const QwtScaleMap&,
                             const QRectF& canvasRect) const
{
    painter->setFont(plot()->font());
    painter->setPen(QPen(m_color));
    const double edge = QFontMetricsF(painter->font()).averageCharWidth();
    const QRectF room = canvasRect.adjusted(edge, 0, -edge, 0);
    int wrapped = Qt::AlignHCenter | Qt::TextWordWrap;
    if (painter->boundingRect(room, wrapped, m_text).width() > room.width())
        wrapped = Qt::AlignHCenter | Qt::TextWrapAnywhere; // a word is longer than the plot is wide
    const bool isTooHigh = painter->boundingRect(room, wrapped, m_text).height() > room.height();
    painter->drawText(room, wrapped | (isTooHigh ? Qt::AlignTop : Qt::AlignVCenter), m_text);
}
