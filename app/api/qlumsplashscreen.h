#pragma once
#include <QColor>
#include <QHideEvent>
#include <QPainter>
#include <QPixmap>
#include <QSplashScreen>
#include <QString>

/// Splash screen whose message is painted at once, before the event loop runs. Message, alignment and colour
/// are shared by all instances.
class QlumSplashScreen : public QSplashScreen
{
    Q_OBJECT
public:
    /// A window with the pixmap and the shared message on it.
    explicit QlumSplashScreen(const QPixmap& pixmap, Qt::WindowFlags flags = Qt::WindowFlags());

    /// Sets the shared message and paints it at once.
    void showMessage(const QString& text, int alignment = Qt::AlignLeft, const QColor& color = Qt::white);
    /// The shared message.
    [[nodiscard]] static QString message();
    /// Closes the splash screen after so many seconds.
    void timedClose(int seconds);
    /// Returns when the splash screen is no longer in the way: closed, or sent away by a click. Runs an event
    /// loop meanwhile.
    void waitUntilGone();

signals:
    /// It is no longer shown.
    void gone();

protected:
    /// Tells of it.
    void hideEvent(QHideEvent* event) override;
    /// The shared message, and in a build with a tag the tag across the picture.
    void drawContents(QPainter* painter) override;
};
