#pragma once
#include <plugins/imageviewer/qlumimagefeed.h>

#include <QEvent>
#include <QMouseEvent>
#include <QObject>
#include <QPaintEvent>
#include <QString>
#include <QWidget>

#include <memory>

class QComboBox;
class QLabel;
class QPlainTextEdit;
class QStackedWidget;
class QlumImageCanvas;

/// One image with its name, its elements and what is said of it; or, in its place, why there is none. GUI
/// thread.
class QlumImageTile : public QWidget
{
    Q_OBJECT
public:
    /// The feed becomes a part of the tile.
    explicit QlumImageTile(std::unique_ptr<QlumImageFeed> feed, QWidget* parent = nullptr);
    ~QlumImageTile() override;

    [[nodiscard]] QlumImageFeed* feed() const { return m_feed; }       ///< never null
    [[nodiscard]] QlumImageCanvas* canvas() const { return m_canvas; } ///< never null
    /// Whether commands work on this one, which is seen where there are several.
    void setCurrent(bool isCurrent);
    /// Images a second fall while nothing comes.
    void showLine();

signals:
    /// The user turns to it.
    void chosen();

protected:
    /// Whatever part of it is pressed or gets the focus, the tile is meant.
    bool eventFilter(QObject* watched, QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QWidget* makeRefusal();
    void showAll();
    void showImage();
    void showElements();
    void showRefusal();

    QlumImageFeed* m_feed;
    QLabel* m_name;
    QComboBox* m_elements;
    QStackedWidget* m_pages;
    QlumImageCanvas* m_canvas;
    QLabel* m_headline = nullptr;
    QLabel* m_hint = nullptr;
    QPlainTextEdit* m_bytes = nullptr;
    QLabel* m_warning; ///< its icon
    QLabel* m_remark;
    QLabel* m_line;
    QLabel* m_pixel;
    QString m_pixelText;
    bool m_isCurrent = false;
};
