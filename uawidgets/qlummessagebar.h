#pragma once
#include <QFrame>
#include <QKeyEvent>
#include <QResizeEvent>
#include <QSize>
#include <QString>
#include <QWidget>

#include <functional>

class QBoxLayout;
class QLabel;
class QPushButton;
class QToolButton;

/// What a message bar says; plain texts, which may come from a server.
struct QlumMessage
{
    /// How bad it is.
    enum Severity {
        Note,    ///< good to know
        Warning, ///< something may be wrong
        Error    ///< something failed
    };

    Severity severity = Error;  ///< shown by a word and an icon
    QString topic;              ///< what it is about, for QlumMessageBar::dismiss(); not shown
    QString what;               ///< what failed
    QString why;                ///< and why, or what to do; may be empty
    QString button;             ///< text of the button that helps; empty for none
    std::function<void()> help; ///< what that does; the bar is closed before
};

/// Tells inside a view what failed there, with a word and an icon for how bad it is and a button that helps.
/// It holds nobody up, and the user closes it, by its button or with Escape. Hidden while there is nothing to
/// say; a new message replaces the one that is there. GUI thread.
class QlumMessageBar : public QFrame
{
    Q_OBJECT
public:
    /// Hidden.
    explicit QlumMessageBar(QWidget* parent = nullptr);

    /// Shows the message and has screen readers say it.
    void tell(const QlumMessage& message);
    /// The matter has settled itself: closes the bar when its message is about the topic.
    void dismiss(const QString& topic);
    /// Closes the bar.
    void dismiss();

    QSize minimumSizeHint() const override; ///< where it is narrow the button stands below the text

protected:
    /// Escape closes the bar.
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override; ///< moves the button beside the text or below it

private:
    int widthBesideTexts() const;
    void showSeverity(QlumMessage::Severity severity);
    void sltHelp();

    QLabel* m_icon;
    QLabel* m_severity;
    QLabel* m_what;
    QLabel* m_why;
    QPushButton* m_button;
    QToolButton* m_close;
    QBoxLayout* m_body; ///< the texts and the button
    QlumMessage m_message;
};
