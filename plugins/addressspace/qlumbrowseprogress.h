#pragma once
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QPointer>
#include <QProgressDialog>
#include <QString>

/// Tells the user of a browse that goes on and on: after a second a small window counts what was found and
/// offers to stop. It blocks nothing and runs no events.
class QlumBrowseProgress
{
    Q_DECLARE_TR_FUNCTIONS(QlumBrowseProgress)
public:
    explicit QlumBrowseProgress(const QString& nodeName);
    ~QlumBrowseProgress();
    QlumBrowseProgress(const QlumBrowseProgress&) = delete;
    QlumBrowseProgress& operator=(const QlumBrowseProgress&) = delete;

    void update(int found);
    [[nodiscard]] bool wasCancelled() const { return m_dialog && m_dialog->wasCanceled(); }

private:
    void showDialog();

    QString m_nodeName;
    QElapsedTimer m_sinceStart;
    QElapsedTimer m_sinceUpdate;
    QPointer<QProgressDialog> m_dialog;
};
