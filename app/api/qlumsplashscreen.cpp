#include <app/api/qlumsplashscreen.h>

#include <QColor>
#include <QEventLoop>
#include <QFont>
#include <QPainter>
#include <QPixmap>
#include <QPoint>
#include <QRect>
#include <QString>
#include <QTimer>
#include <QWidget>

#ifndef TAVELIN_BUILD_TAG
#    define TAVELIN_BUILD_TAG ""
#endif

namespace {
struct SplashMessage
{
    QString text;
    int alignment = Qt::AlignLeft;
    QColor color = Qt::white;
};

SplashMessage& sharedMessage()
{
    static SplashMessage message;
    return message;
}

// Builds that are no release say so across the picture.
void drawWatermark(QPainter* painter, const QRect& rect, const QString& tag)
{
    painter->setPen(QColor(0, 255, 0, 128));
    painter->setFont(QFont(QStringLiteral("Helvetica"), 55, QFont::Bold));
    painter->translate(rect.width() / 2 + 30, rect.height() / 2 + 90);
    painter->rotate(-35);
    QRect bounds = painter->fontMetrics().boundingRect(tag);
    bounds.moveCenter(QPoint(0, 0));
    painter->drawText(bounds, Qt::AlignCenter, tag);
}
} // namespace

QlumSplashScreen::QlumSplashScreen(const QPixmap& pixmap, Qt::WindowFlags flags)
    : QSplashScreen(pixmap, flags)
{
    setObjectName(QStringLiteral("QlumSplashScreen"));
    setAttribute(Qt::WA_QuitOnClose, false); // it may outlast a main window that is closed at once
}

void QlumSplashScreen::showMessage(const QString& text, int alignment, const QColor& color)
{
    sharedMessage() = {text, alignment, color};
    repaint();
}

QString QlumSplashScreen::message()
{
    return sharedMessage().text;
}

void QlumSplashScreen::timedClose(int seconds)
{
    QTimer::singleShot(seconds * 1000, this, &QWidget::close);
}

void QlumSplashScreen::waitUntilGone()
{
    QEventLoop loop;
    connect(this, &QlumSplashScreen::gone, &loop, &QEventLoop::quit);
    if (isVisible())
        loop.exec();
}

void QlumSplashScreen::hideEvent(QHideEvent* event)
{
    QSplashScreen::hideEvent(event);
    emit gone();
}

void QlumSplashScreen::drawContents(QPainter* painter)
{
    const SplashMessage& message = sharedMessage();
    const QRect area = pixmap().rect();
    painter->save();
    painter->setPen(message.color);
    painter->drawText(QRect(QPoint(5, 20), QPoint(area.width() - 6, area.height() + 9)), message.alignment,
                      message.text);
    const QString tag = QStringLiteral(TAVELIN_BUILD_TAG);
    if (!tag.isEmpty())
        drawWatermark(painter, area, tag);
    painter->restore();
}
