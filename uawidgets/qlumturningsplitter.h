#pragma once
#include <QList>
#include <QSize>
#include <QSplitter>
#include <Qt>

class QEvent;
class QResizeEvent;
class QWidget;

/// Its parts stand side by side where the window has room for that, and one below the other where it has not.
class QlumTurningSplitter : public QSplitter
{
    Q_OBJECT
public:
    /// Side by side, until it is too narrow.
    explicit QlumTurningSplitter(QWidget* parent = nullptr);

    QSize minimumSizeHint() const override; ///< as wide as the widest part

signals:
    /// The parts stand another way now.
    void turned(Qt::Orientation orientation);

protected:
    /// Turns when a part needs more or less room than before.
    bool event(QEvent* event) override;
    /// Turns when there is more or less room than before.
    void resizeEvent(QResizeEvent* event) override;

private:
    void turn();
    [[nodiscard]] QList<int> shares() const;

    QList<int> m_otherSizes; // which the user has chosen for the other way
};
