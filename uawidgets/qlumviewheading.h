#pragma once
#include <app/api/qlumconnectionstatus.h>

#include <QDateTime>
#include <QHideEvent>
#include <QShowEvent>
#include <QString>
#include <QWidget>

#include <functional>

class QLabel;
class QlumElidedLabel;
class QTimer;

/// The strip above a view that says what the view shows: of which server and node, what is being done about
/// it, whether the connection stands, and how old the content is. It repaints when one of these changes; the
/// age follows once a second while the strip can be seen, however often something new arrives. GUI thread.
class QlumViewHeading : public QWidget
{
    Q_OBJECT
public:
    /// Tells what time it is.
    using Clock = std::function<QDateTime()>;

    /// The clock is for tests.
    explicit QlumViewHeading(QWidget* parent = nullptr, Clock clock = &QDateTime::currentDateTime);

    /// A plain text, as it comes from the project.
    void setServer(const QString& name);
    /// A plain text, as it comes from the server.
    void setNode(const QString& name);
    /// "reading..."; empty when nothing is being done. Until then no age is shown: it would be that of what
    /// was there before.
    void setActivity(const QString& activity);
    /// Of the connection to that server.
    void setStatus(QlumConnectionStatus status);
    /// What is shown was received now. Cheap: may be called for every value.
    void touch() { m_received = m_clock(); }
    /// What was received is shown no longer, so it has no age.
    void forget();
    /// There is nothing to be said; the strip stays where it is.
    void clear();

protected:
    /// Begins to follow the age.
    void showEvent(QShowEvent* event) override;
    /// Ends it.
    void hideEvent(QHideEvent* event) override;

private:
    void refreshAge();
    [[nodiscard]] QString ageText(const QDateTime& now) const;

    Clock m_clock;
    QlumElidedLabel* m_server;
    QlumElidedLabel* m_node;
    QLabel* m_activity;
    QLabel* m_icon;
    QLabel* m_status;
    QLabel* m_age;
    QDateTime m_received; ///< invalid while nothing was
    QTimer* m_timer;      ///< runs while the strip is seen
};

/// The state of a connection in a word or two, for the user.
[[nodiscard]] QString qlumConnectionText(QlumConnectionStatus status);
