#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumlog.h>
#include <app/api/qlumsessionservices.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/qlumbasewidget.h>

#include <QObject>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <functional>

class QButtonGroup;
class QLabel;
class QPushButton;
class QVBoxLayout;
class QlumMessageBar;

/// Has the user answer a condition that asks something. Not modal: a plant may ask more than one thing.
class QlumConditionDialog : public QlumBaseWidget
{
    Q_OBJECT
public:
    /// Runs the first function where calls may block and then, on the GUI thread, what it returns; the
    /// services are null without a session.
    using Caller =
        std::function<void(const QString& text,
                           const std::function<std::function<void()>(QlumSessionServices* services)>& work)>;

    QlumConditionDialog(unsigned int serverId, QlumApplicationInterface& application,
                        QWidget* parent = nullptr);

    /// Without one it cannot respond.
    void setCaller(const Caller& caller) { m_caller = caller; }
    void setCondition(const UaNodeId& conditionId, const QString& conditionName);
    /// Plain text, as the server sent it.
    void setPrompt(const QString& prompt);
    /// The answers, in the order of their numbers; the dialog cannot be sent without any.
    void setResponseOptionSet(const QStringList& texts);
    /// The number of the answer that is chosen at first; others than those there choose none.
    void setDefaultResponse(int response);
    /// The number that is chosen; -1 for none.
    [[nodiscard]] int response() const;

public slots:
    /// Sends the chosen answer; the dialog closes when the server has taken it.
    void sltRespond();

private:
    void responded(const QString& status, bool isGood);

    const unsigned int m_serverId;
    QlumApplicationInterface& m_application;
    const QlumLog m_log;
    Caller m_caller;
    UaNodeId m_conditionId;
    QlumMessageBar* m_messages;
    QLabel* m_prompt;
    QVBoxLayout* m_choices;
    QButtonGroup* m_group;
    QPushButton* m_respond;
};
