#pragma once
#include <QColor>
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
    explicit QlumSplashScreen(const QPixmap& pixmap, Qt::WindowFlags flags = Qt::WindowFlags());

    void showMessage(const QString& text, int alignment = Qt::AlignLeft, const QColor& color = Qt::white);
    [[nodiscard]] static QString message();
    /// Closes the splash screen after so many seconds.
    void timedClose(int seconds);

protected:
    void drawContents(QPainter* painter) override;
};
