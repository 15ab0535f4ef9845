#pragma once
#include <servers/qlumconnectflow.h>
#include <uawidgets/qlumwaitcursor.h>

#include <QLabel>
#include <QObject>
#include <QPointer>
#include <QProgressDialog>
#include <QString>

#include <memory>
#include <optional>

/// Shows which step of a connect runs, once it takes longer than a moment, and lets the user cancel it. While
/// the user is asked something there is nothing to see of it. GUI thread.
class QlumConnectProgress : public QObject
{
    Q_OBJECT
public:
    /// The flow outlives the progress.
    explicit QlumConnectProgress(QlumConnectFlow& flow, QObject* parent = nullptr);
    ~QlumConnectProgress() override;

    /// What is done in a step, for the user.
    [[nodiscard]] static QString textOf(QlumConnectFlow::Step step);

private:
    void show(QlumConnectFlow::Step step, bool isAsking);
    void hide();
    void makeDialog();
    [[nodiscard]] static bool isWaiting(QlumConnectFlow::Step step);

    QlumConnectFlow& m_flow;
    std::optional<QlumWaitCursor> m_waitCursor;
    QPointer<QProgressDialog> m_dialog; ///< its window may go first
    QLabel* m_label = nullptr;          ///< of the dialog
};
