// What the user does with alarms, and what conditions ask of him.
#include <plugins/events/qlumeventwidget.h>

#include <app/api/qlumcalltimeout.h>
#include <app/api/qlumlog.h>
#include <app/api/qlumsettings.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/events/qlumconditioncalls.h>
#include <plugins/events/qlumconditionwords.h>
#include <plugins/events/qlumeventsettings.h>
#include <uabase/values/uaarray.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/qlummessagebar.h>

#include <QDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QModelIndex>
#include <QTreeView>

#include <algorithm>

namespace {
constexpr std::size_t maximumDialogs = 5;
constexpr std::size_t maximumQuestions = 1000;

QStringList textsOf(const UaVariant& value)
{
    UaArray<OpcUa_LocalizedText> texts;
    QStringList list;
    if (value.toLocalizedTextArray(texts))
        for (const OpcUa_LocalizedText& text : texts)
            list.append(toQString(UaString(text.Text)));
    return list;
}
} // namespace

QlumEventWidget::Method QlumEventWidget::methodOf(OpcUa_UInt32 id)
{
    switch (id) {
    case OpcUaId_AcknowledgeableConditionType_Acknowledge:
        return {id,
                tr("Please enter a comment"),
                tr("Comment Acknowledgement"),
                tr("The call of the acknowledge method returned %1"),
                tr("Call Acknowledge Failed"),
                tr("Acknowledging")};
    case OpcUaId_AcknowledgeableConditionType_Confirm:
        return {id,
                tr("Please enter a comment"),
                tr("Comment Confirming"),
                tr("The call of the confirm method returned %1"),
                tr("Call Confirm Failed"),
                tr("Confirming")};
    default:
        return {id,
                tr("Please enter the comment"),
                tr("Add Comment"),
                tr("The call of the AddComment method returned %1"),
                tr("Call AddComment Failed"),
                tr("Adding a comment")};
    }
}

int QlumEventWidget::currentAlarm() const
{
    if (!m_alarmView)
        return -1;
    const QModelIndex row = m_alarmFilter->mapToSource(m_alarmView->currentIndex());
    return row.isValid() ? row.row() : -1;
}

// ---- one alarm

void QlumEventWidget::sltAcknowledge()
{
    callCondition(methodOf(OpcUaId_AcknowledgeableConditionType_Acknowledge));
}

void QlumEventWidget::sltConfirm()
{
    callCondition(methodOf(OpcUaId_AcknowledgeableConditionType_Confirm));
}

void QlumEventWidget::sltAddComment()
{
    callCondition(methodOf(OpcUaId_ConditionType_AddComment));
}

// What is acknowledged is the state that the user saw when he asked for it, whatever comes while he writes.
void QlumEventWidget::callCondition(const Method& method)
{
    const int row = currentAlarm();
    if (row < 0)
        return;
    const Target target{m_alarms->projectServerId(row), m_alarms->conditionNodeId(row),
                        m_alarms->eventId(row)};
    const QPointer<QlumEventWidget> self(this);
    bool isAccepted = false;
    const QString comment =
        QInputDialog::getText(this, method.title, method.prompt, QLineEdit::Normal, QString(), &isAccepted);
    if (!isAccepted || !self)
        return;
    if (target.conditionId.isNull()) {
        QMessageBox::warning(this, tr("Object NodeId Not Found"),
                             tr("Could not get the event sender's NodeId"));
        return;
    }
    m_items->call(target.serverId, method.purpose,
                  [self, method, target, comment](QlumSessionServices* services) -> std::function<void()> {
                      const UaStatus status =
                          qlumCallCondition(services, method.purpose, target.conditionId, method.id,
                                            qlumCommentArguments(target.eventId, comment));
                      if (!status.isBad())
                          return {};
                      return [self, method, status] {
                          if (self)
                              self->callFailed(method, status);
                      };
                  });
}

// ---- alarms that shall be quiet

void QlumEventWidget::sltTimedShelve()
{
    constexpr double standardMinutes = 30;
    constexpr double mostMinutes = 60.0 * 24 * 365;
    constexpr double minute = 60000; // ms
    const int row = currentAlarm();
    if (row < 0)
        return;
    const Target target{m_alarms->projectServerId(row), m_alarms->conditionNodeId(row), {}};
    const QPointer<QlumEventWidget> self(this);
    bool isAccepted = false;
    const double minutes =
        QInputDialog::getDouble(this, tr("Shelve for a Time"), tr("Minutes until the alarm comes back:"),
                                standardMinutes, 0, mostMinutes, 2, &isAccepted);
    if (isAccepted && self)
        shelve(target, QlumShelving::Timed, minutes * minute);
}

void QlumEventWidget::sltShelveOnce()
{
    if (const int row = currentAlarm(); row >= 0)
        shelve({m_alarms->projectServerId(row), m_alarms->conditionNodeId(row), {}}, QlumShelving::OneShot,
               0);
}

void QlumEventWidget::sltUnshelve()
{
    if (const int row = currentAlarm(); row >= 0)
        shelve({m_alarms->projectServerId(row), m_alarms->conditionNodeId(row), {}}, QlumShelving::Unshelve,
               0);
}

void QlumEventWidget::shelve(const Target& target, QlumShelving how, double milliseconds)
{
    quietCall(
        target, tr("Shelving an alarm"),
        [=](QlumSessionServices* services) {
            return qlumShelve(services, target.conditionId, how, milliseconds);
        });
}

void QlumEventWidget::changeCondition(OpcUa_UInt32 method, const QString& purpose)
{
    const int row = currentAlarm();
    if (row < 0)
        return;
    const Target target{m_alarms->projectServerId(row), m_alarms->conditionNodeId(row), {}};
    quietCall(target, purpose, [=](QlumSessionServices* services) {
        return qlumCallCondition(services, purpose, target.conditionId, method, {});
    });
}

void QlumEventWidget::quietCall(const Target& target, const QString& purpose,
                                const std::function<UaStatus(QlumSessionServices*)>& work)
{
    const QPointer<QlumEventWidget> self(this);
    const QlumLog log(tr("Event Plugin"), target.serverId);
    const QString condition = toQString(target.conditionId.toFullString());
    m_items->call(target.serverId, purpose, [=](QlumSessionServices* services) -> std::function<void()> {
        const UaStatus status = work(services);
        log.write(status.isBad() ? QlumLogLevel::Error : QlumLogLevel::Info,
                  tr("%1 '%2' returned %3").arg(purpose, condition, qlumResultText(status)));
        if (!status.isBad())
            return {};
        return [self, purpose, condition, status] {
            if (self)
                self->m_messages->tell({QlumMessage::Error,
                                        QStringLiteral("condition"),
                                        tr("%1 failed: %2").arg(purpose, condition),
                                        qlumConditionWords(status),
                                        {},
                                        {}});
        };
    });
}

void QlumEventWidget::callFailed(const Method& method, const UaStatus& status)
{
    auto* box = new QMessageBox(QMessageBox::Warning, method.failureTitle,
                                method.failure.arg(qlumResultText(status)), QMessageBox::Ok, this);
    box->setInformativeText(qlumConditionWords(status));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

// ---- all alarms

void QlumEventWidget::sltAcknowledgeAll()
{
    callAll(methodOf(OpcUaId_AcknowledgeableConditionType_Acknowledge), QlumField::AckedId,
            tr("Nothing to acknowledge"), QStringLiteral("Acknowledge"));
}

void QlumEventWidget::sltConfirmAll()
{
    callAll(methodOf(OpcUaId_AcknowledgeableConditionType_Confirm), QlumField::ConfirmedId,
            tr("Nothing to confirm"), QStringLiteral("Confirm"));
}

void QlumEventWidget::callAll(const Method& method, QlumField state, const QString& nothing,
                              const QString& name)
{
    std::map<unsigned int, std::vector<Target>> targets;
    for (int row = 0; row < m_alarms->rowCount(); ++row)
        if (m_alarms->rowAt(row).is(state, false))
            targets[m_alarms->projectServerId(row)].push_back(
                {m_alarms->projectServerId(row), m_alarms->conditionNodeId(row), m_alarms->eventId(row)});
    if (targets.empty()) {
        QMessageBox::information(this, tr("Event Plugin"), nothing);
        return;
    }
    const QPointer<QlumEventWidget> self(this);
    bool isAccepted = false;
    const QString comment =
        QInputDialog::getText(this, method.title, method.prompt, QLineEdit::Normal, QString(), &isAccepted);
    if (!isAccepted || !self)
        return;
    for (const auto& [serverId, list] : targets) {
        const QlumLog log(tr("Event Plugin"), serverId);
        m_items->call(
            serverId, method.purpose,
            [log, self, list = list, method, comment,
             name](QlumSessionServices* services) -> std::function<void()> {
                UaCallMethodRequests requests(static_cast<OpcUa_UInt32>(list.size()));
                for (OpcUa_UInt32 i = 0; i < requests.length(); ++i) {
                    static_cast<void>(list[i].conditionId.copyTo(&requests[i].ObjectId));
                    static_cast<void>(UaNodeId(method.id).copyTo(&requests[i].MethodId));
                    qlumCommentArguments(list[i].eventId, comment)
                        .detach(&requests[i].NoOfInputArguments, &requests[i].InputArguments);
                }
                UaClientSdk::ServiceSettings settings = qlumServiceSettings(method.purpose);
                UaCallMethodResults results;
                const UaStatus status = services ? services->callList(settings, requests, results)
                                                 : UaStatus(OpcUa_BadServerNotConnected);
                UaStatus first = status; // of those that were refused
                int refused = status.isBad() ? static_cast<int>(list.size()) : 0;
                for (OpcUa_UInt32 i = 0; i < results.length() && i < list.size(); ++i) {
                    if (OpcUa_IsBad(results[i].StatusCode) && refused++ == 0)
                        first = UaStatus(results[i].StatusCode);
                    log.write(OpcUa_IsBad(results[i].StatusCode) ? QlumLogLevel::Error : QlumLogLevel::Info,
                              tr("Call %1 on Condition '%2' returned %3")
                                  .arg(name, toQString(list[i].conditionId.toFullString()),
                                       qlumStatusText(results[i].StatusCode)));
                }
                log.write(status.isBad() ? QlumLogLevel::Error : QlumLogLevel::Info,
                          tr("Call %1 returned %2").arg(name, qlumResultText(status)));
                if (refused == 0)
                    return {};
                return [self, method, refused, first, count = list.size()] {
                    if (self)
                        self->m_messages->tell(
                            {QlumMessage::Error,
                             QStringLiteral("condition"),
                             tr("%1 failed for %2 of %3 conditions.")
                                 .arg(method.purpose)
                                 .arg(refused)
                                 .arg(count),
                             tr("The first: %1; the log has them all.").arg(qlumConditionWords(first)),
                             {},
                             {}});
                };
            });
    }
}

// ---- conditions that ask

void QlumEventWidget::takeDialogs(const QlumEvents& events)
{
    if (!QlumEventSettings::showDialogs.value())
        return;
    for (const QlumEvent& event : events) {
        const ConditionKey key(event.serverId, event.conditionId());
        if (key.second.isNull())
            continue;
        const auto isSame = [&](const Question& one) {
            return one.serverId == key.first && one.conditionId == key.second;
        };
        if (event.is(QlumField::DialogId, false)) { // somebody else has answered
            std::erase_if(m_questions, isSame);
            closeDialog(key);
        } else if (event.is(QlumField::DialogId, true) && m_dialogs.count(key) == 0) {
            const auto waiting = std::find_if(m_questions.begin(), m_questions.end(), isSame);
            if (waiting != m_questions.end())
                waiting->event = event;
            else if (m_questions.size() < maximumQuestions)
                m_questions.push_back({key.first, key.second, event});
        }
    }
    askNext();
}

void QlumEventWidget::askNext()
{
    while (!m_questions.empty() && m_dialogs.size() < maximumDialogs) {
        const Question question = m_questions.front();
        m_questions.pop_front();
        const QlumEvent& event = question.event;
        auto* dialog = new QlumConditionDialog(question.serverId, m_application, this);
        dialog->setCaller([this, serverId = question.serverId](const QString& text, const auto& work) {
            m_items->call(serverId, text, work);
        });
        dialog->setCondition(question.conditionId, event.text(QlumField::ConditionName));
        const UaVariant& prompt = event.fields.value(QlumField::Prompt);
        dialog->setPrompt(prompt.type() == OpcUaType_LocalizedText
                              ? toQString(prompt.toLocalizedText().text())
                              : toQString(prompt.toString()));
        dialog->setResponseOptionSet(textsOf(event.fields.value(QlumField::ResponseOptionSet)));
        bool isNumber = false;
        const int standard = event.fields.value(QlumField::DefaultResponse).toInt32(&isNumber);
        dialog->setDefaultResponse(isNumber ? standard : -1);
        m_dialogs[{question.serverId, question.conditionId}] = dialog;
        connect(dialog, &QDialog::finished, this, &QlumEventWidget::sltDialogFinished);
        dialog->show();
    }
}

void QlumEventWidget::sltDialogFinished()
{
    std::erase_if(m_dialogs, [this](const auto& one) { return !one.second || one.second == sender(); });
    askNext();
}

void QlumEventWidget::closeDialog(const ConditionKey& key)
{
    const auto found = m_dialogs.find(key);
    if (found == m_dialogs.end())
        return;
    const QPointer<QlumConditionDialog> dialog = found->second;
    m_dialogs.erase(found);
    if (dialog) {
        dialog->disconnect(this);
        dialog->close();
    }
}

QList<QlumConditionDialog*> QlumEventWidget::openDialogs() const
{
    QList<QlumConditionDialog*> list;
    for (const auto& [key, dialog] : m_dialogs)
        if (dialog)
            list.append(dialog);
    return list;
}
