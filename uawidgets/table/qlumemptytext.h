#pragma once
#include <QLabel>
#include <QObject>
#include <QPointer>
#include <QString>

class QAbstractItemView;
class QEvent;

/// A text in the middle of a view that has no rows: what to do to get some, or that a filter hides them all.
/// Belongs to the view. GUI thread.
class QlumEmptyText : public QObject
{
    Q_OBJECT
public:
    /// Plain text. The view must have its model, which it keeps.
    QlumEmptyText(QAbstractItemView* view, const QString& text);

    /// Plain text.
    void setText(const QString& text);

protected:
    /// Keeps the text in the middle and in the colours of the view.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void update();
    void applyColor();

    QAbstractItemView* m_view;
    QPointer<QLabel> m_label;
    QString m_text;
};
