#pragma once
#include <QSize>
#include <QWidget>

#include <vector>

class QEvent;
class QLabel;
class QRect;
class QResizeEvent;

/// Puts its buttons into as many rows as the window needs, however narrow it is. Fields that want to grow
/// share the room that is left in their row; labels that wrap stay in one line where they can.
class QlumWrappingBar : public QWidget
{
    Q_OBJECT
public:
    /// Without buttons.
    explicit QlumWrappingBar(QWidget* parent = nullptr);

    /// The button becomes the bar's, behind the others.
    void add(QWidget* button);
    /// The same for a field and what it is called; they stay side by side.
    void add(QLabel* label, QWidget* field);

    bool hasHeightForWidth() const override { return true; } ///< always
    int heightForWidth(int width) const override;            ///< of all rows
    QSize sizeHint() const override;                         ///< one row
    QSize minimumSizeHint() const override;                  ///< a row for each button

protected:
    /// Moves the buttons when one of them changes.
    bool event(QEvent* event) override;
    /// Moves the buttons.
    void resizeEvent(QResizeEvent* event) override;

private:
    [[nodiscard]] std::vector<QRect> places(int width) const;
    void place();

    std::vector<QWidget*> m_buttons;
};
