// Calling the method, and what comes of it.
#include <plugins/methods/qlummethoddialog.h>

#include <app/api/qlumjob.h>
#include <app/api/qlumlog.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/methods/qlummethodcallmodel.h>
#include <plugins/methods/qlummethodjob.h>
#include <plugins/methods/qlummethodwords.h>
#include <uawidgets/editors/qlumargumentpanel.h>
#include <uawidgets/editors/qlumdefaultvalue.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/qlumviewheading.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QComboBox>
#include <QDateTime>
#include <QIcon>
#include <QLabel>
#include <QModelIndex>
#include <QSpinBox>
#include <QStringList>
#include <QTreeView>

#include <atomic>
#include <memory>
#include <utility>

namespace {
const QString callTopic = QStringLiteral("call");
constexpr OpcUa_UInt32 millisecondsPerSecond = 1000;

// Far from the numbers that sessions count by themselves.
OpcUa_UInt32 nextHandle()
{
    static std::atomic<OpcUa_UInt32> last{0x4D000000u};
    return ++last;
}

void showIcon(QLabel& label, QlumStatusLevel level)
{
    const int size = label.fontMetrics().height();
    label.setPixmap(qlumStatusIcon(level).pixmap(size, size));
    label.setAccessibleName(qlumStatusWord(level));
    label.setVisible(level != QlumStatusLevel::Inactive);
}
} // namespace

UaNodeId QlumMethodDialog::chosenObject() const
{
    const int index = m_owner->currentIndex();
    return m_info.isOfType && index >= 0 ? m_info.owners.at(static_cast<std::size_t>(index)).id : m_objectId;
}

// What cannot be sent is told with its place; what the server will refuse by its own data is told once and
// then sent.
bool QlumMethodDialog::isReadyToSend()
{
    QStringList refusals;
    for (int i = 0; i < m_inputs->count(); ++i) {
        const QString name = m_inputs->argument(i).name;
        if (const QString fault = m_inputs->fault(i); !fault.isEmpty()) {
            m_inputs->setNote(i, fault);
            m_inputs->focusArgument(i);
            m_messages->tell({QlumMessage::Error,
                              callTopic,
                              tr("The method was not called."),
                              tr("%1: %2").arg(name, fault),
                              {},
                              {}});
            return false;
        }
        if (const QString refusal = m_inputs->refusal(i); !refusal.isEmpty())
            refusals.append(tr("%1: %2").arg(name, refusal));
    }
    if (!refusals.isEmpty() && !std::exchange(m_mayRepeat, true)) {
        m_messages->tell({QlumMessage::Warning,
                          callTopic,
                          tr("The method was not called yet. Press Call again to call it all the same."),
                          refusals.join(QLatin1Char('\n')),
                          {},
                          {}});
        return false;
    }
    return true;
}

void QlumMethodDialog::sltCall()
{
    if (!canCall() || !isReadyToSend())
        return;
    m_messages->dismiss(callTopic);
    QlumMethodCall call;
    call.objectId = chosenObject();
    call.methodId = m_methodId;
    call.inputs = m_inputs->values();
    for (int i = 0; i < m_inputs->count(); ++i)
        call.inputArguments.push_back(m_inputs->argument(i));
    call.timeout = static_cast<OpcUa_UInt32>(m_timeout->value()) * millisecondsPerSecond;
    call.requestHandle = nextHandle();
    remember(call);
    begin(std::move(call));
}

void QlumMethodDialog::begin(QlumMethodCall call)
{
    call.begun = QDateTime::currentDateTime();
    m_call = call;
    const auto function = [this, call, serverId = m_serverId, declared = m_info.outputs,
                           services = m_world.services](QlumJob& job) mutable {
        // the list of running work can cancel it, too
        job.whenCancelled([this, &job] { job.post([this] { sltCancel(); }); });
        if (const std::shared_ptr<QlumSessionServices> session = services(serverId))
            qlumCallMethod(
                session, job, declared, call,
                [this, &job, &call] {
                    job.post([this, answered = call] {
                        m_call = answered;
                        awaitTypes();
                    });
                });
        else
            call.service = UaStatus(OpcUa_BadServerNotConnected);
        job.post([this, call] { ended(call); });
    };
    m_calling =
        m_world.pool.add({tr("Call %1").arg(m_info.name), m_serverId}, function, [this](QlumWorkEnd end) {
            if (end == QlumWorkEnd::Failed)
                callFailed(tr("The call failed; the log says more."));
        });
    m_outputs->setArguments({}, {}, true);
    m_outputs->setEmptyText({});
    m_elapsed.start();
    m_tick.start();
    tellElapsed();
    showState();
}

void QlumMethodDialog::tellElapsed()
{
    showIcon(*m_outcomeIcon, QlumStatusLevel::Inactive);
    m_outcome->setText(
        m_awaitsTypes
            ? tr("The method has answered. The data types of the server are being read, by which its "
                 "results are shown...")
            : tr("The method has been running for %1...").arg(qlumDurationText(m_elapsed.elapsed())));
}

void QlumMethodDialog::ended(QlumMethodCall call)
{
    m_calling = 0;
    m_awaitsTypes = false;
    m_tick.stop();
    m_calls->add(call);
    m_heading->touch();
    const QlumLog log(tr("Method Plugin"), m_serverId);
    const QString text = tr("Call of method '%1' on '%2': %3")
                             .arg(toQString(call.methodId.toFullString()),
                                  toQString(call.objectId.toFullString()), qlumShortOutcome(call));
    log.write(qlumIsDone(call) ? QlumLogLevel::Info : QlumLogLevel::Error, text);
    showOutcome(call);
    showState();
}

void QlumMethodDialog::showOutcome(const QlumMethodCall& call)
{
    showIcon(*m_outcomeIcon, qlumIsDone(call) ? qlumStatusLevel(call.result.code()) : QlumStatusLevel::Bad);
    m_outcome->setText(
        tr("%1 Duration: %2.").arg(qlumOutcomeText(call), qlumDurationText(call.milliseconds)));
    m_outputs->setArguments(call.outputArguments, call.outputs, true);
    const bool isShort = qlumIsDone(call) && call.outputs.size() < m_info.outputs.size();
    m_outputs->setEmptyText({});
    if (isShort)
        m_messages->tell(
            {QlumMessage::Warning,
             callTopic,
             tr("The method has returned fewer values than its description says."),
             tr("%1 came, %2 were declared.").arg(call.outputs.size()).arg(m_info.outputs.size()),
             {},
             {}});
    for (int i = m_inputs->count() - 1; i >= 0; --i) {
        const QString fault = qlumInputFault(call, static_cast<std::size_t>(i));
        m_inputs->setNote(i, fault);
        if (!fault.isEmpty())
            m_inputs->focusArgument(i); // the first one in the end
    }
}

void QlumMethodDialog::callFailed(const QString& why)
{
    m_calling = 0;
    m_awaitsTypes = false;
    m_tick.stop();
    showIcon(*m_outcomeIcon, QlumStatusLevel::Bad);
    m_outcome->setText(why);
    showState();
}

// ---- giving up

void QlumMethodDialog::sltCancel()
{
    if (m_calling == 0)
        return;
    if (m_awaitsTypes)
        return endWithoutTypes();
    m_world.pool.giveUp(m_calling);
    QlumMethodCall call = m_call;
    call.milliseconds = m_elapsed.elapsed();
    call.end = QlumMethodCall::GivenUp;
    ended(call);
    sendCancel(call.requestHandle);
}

// The method has answered: its results are shown as far as they can be without the types.
void QlumMethodDialog::endWithoutTypes()
{
    m_world.pool.giveUp(m_calling);
    QlumMethodCall call = m_call;
    for (const UaVariant& output : call.outputs) {
        const std::size_t place = call.outputArguments.size();
        QlumMethodArgument argument;
        if (place < m_info.outputs.size())
            argument = m_info.outputs[place];
        else
            argument.name = tr("Output %1").arg(place + 1);
        argument.context.dataType = UaNodeId();
        argument.context.builtInType = output.type();
        argument.context.valueRank =
            output.isScalar() ? -1 : static_cast<OpcUa_Int32>(output.dimensions().length());
        argument.context.arrayDimensions.clear();
        call.outputArguments.push_back(argument);
    }
    ended(call);
}

void QlumMethodDialog::sendCancel(OpcUa_UInt32 requestHandle)
{
    const auto function = [this, requestHandle, serverId = m_serverId,
                           services = m_world.services](QlumJob& job) {
        const std::shared_ptr<QlumSessionServices> session = services(serverId);
        if (!session)
            return;
        QlumSessionServices::Settings settings = job.serviceSettings();
        OpcUa_UInt32 count = 0;
        const UaStatus status = session->cancel(settings, requestHandle, count);
        job.post([this, status, count] {
            const QString what =
                status.isBad() ? tr("The server does not end it: %1.").arg(qlumStatusWithName(status.code()))
                : count > 0    ? tr("The server says that it has ended the request.")
                               : tr("The server knows of no such request any more.");
            if (m_calling == 0)
                m_outcome->setText(m_outcome->text() + QLatin1Char(' ') + what);
        });
    };
    m_world.pool.giveUp(m_cancelling);
    m_cancelling = m_world.pool.add({tr("Cancel %1").arg(m_info.name), m_serverId}, function);
}

// ---- inputs

QlumMethodArgument QlumMethodDialog::undeclaredArgument() const
{
    QlumMethodArgument argument;
    argument.name = tr("Argument %1").arg(m_inputs->count() + 1);
    argument.type = tr("any type, not declared");
    if (!m_info.inputs.empty()) {
        const QlumValueContext& known = m_info.inputs.front().context;
        argument.context.dictionary = known.dictionary;
        argument.context.typeName = known.typeName;
        argument.context.concreteTypes = known.concreteTypes;
        argument.context.browseNode = known.browseNode;
    }
    return argument;
}

// One that was removed comes back as what it is.
void QlumMethodDialog::sltAddArgument()
{
    const auto next = static_cast<std::size_t>(m_inputs->count());
    if (next < m_info.inputs.size())
        m_inputs->addArgument(m_info.inputs[next], qlumDefaultValue(m_info.inputs[next].context));
    else
        m_inputs->addArgument(undeclaredArgument(), UaVariant());
    m_inputs->focusArgument(m_inputs->count() - 1);
    showState();
}

void QlumMethodDialog::sltUseInputs()
{
    const QModelIndex index = m_table->currentIndex();
    if (!index.isValid() || m_calling != 0)
        return;
    const QlumMethodCall call = m_calls->rowAt(index);
    m_inputs->setArguments(call.inputArguments, call.inputs, false);
    for (std::size_t i = 0; m_info.isOfType && i < m_info.owners.size(); ++i)
        if (m_info.owners[i].id == call.objectId)
            m_owner->setCurrentIndex(static_cast<int>(i));
    showOutcome(call);
    showState();
}
