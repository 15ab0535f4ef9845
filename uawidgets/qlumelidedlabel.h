#pragma once
#include <QLabel>
#include <QSize>
#include <QString>

class QPaintEvent;
class QWidget;

/// A line of plain text that is cut where its room ends, with dots there; it takes whatever width it gets.
/// The tool tip is the caller's. GUI thread.
class QlumElidedLabel : public QLabel
{
    Q_OBJECT
public:
    /// The dots stand at the end, or in the middle as a path wants them.
    explicit QlumElidedLabel(Qt::TextElideMode mode = Qt::ElideRight, QWidget* parent = nullptr);

    QSize minimumSizeHint() const override;  ///< of no more than the dots
    [[nodiscard]] QString shownText() const; ///< what there is room for

protected:
    void paintEvent(QPaintEvent* event) override; ///< one line

private:
    Qt::TextElideMode m_mode;
};
