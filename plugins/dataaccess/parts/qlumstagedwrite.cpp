#include <plugins/dataaccess/parts/qlumstagedwrite.h>

#include <app/api/qlumcallnote.h>
#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumserverrole.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <monitoring/callfaults.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uastring.h>

#include <QCoreApplication>

#include <iterator>
#include <memory>
#include <utility>

namespace {
QString stagedWords(const char* text)
{
    return QCoreApplication::translate("QlumStagedWrite", text);
}

// Whether the request has not even left.
bool isUnsent(const UaStatus& status)
{
    return status.code() == OpcUa_BadNotConnected || status.code() == OpcUa_BadServerNotConnected ||
           qlumRefusingRole(status).has_value();
}

bool isLost(const UaStatus& status)
{
    return monitoring::isPassingFault(status.code()) || monitoring::isUnreadableAnswer(status.code());
}

// The calls for one staged value; each blocks.
class StagedCalls
{
public:
    StagedCalls(QlumJob& job, const QlumSessionServicesProvider& services, const QlumStagedWrite& write)
        : m_job(job), m_session(services(write.serverId)), m_write(write)
    {
    }

    // What is there now. Bad when the call or the value is.
    UaStatus read(UaVariant& value)
    {
        UaReadValueIds nodes(1);
        nodes[0].AttributeId = m_write.attributeId;
        if (OpcUa_IsBad(m_write.nodeId.copyTo(&nodes[0].NodeId)) || !copyRange(nodes[0].IndexRange))
            return UaStatus(OpcUa_BadOutOfMemory);
        m_isAnswered = false;
        if (!m_session)
            return UaStatus(OpcUa_BadNotConnected);
        UaClientSdk::ServiceSettings settings = m_job.serviceSettings();
        UaDataValues values;
        const UaStatus status = m_session->read(settings, 0, OpcUa_TimestampsToReturn_Neither, nodes, values);
        if (status.isBad() || values.length() != 1)
            return status.isBad() ? status : UaStatus(OpcUa_BadUnknownResponse);
        m_isAnswered = true;
        if (OpcUa_IsBad(values[0].StatusCode))
            return UaStatus(values[0].StatusCode);
        value = UaVariant(values[0].Value);
        return {};
    }
    // Whether the server has answered the latest read, if only that it may not be read.
    [[nodiscard]] bool isAnswered() const { return m_isAnswered; }

    // Where it ends in and with what status.
    QlumStagedState write(const UaVariant& value, const UaVariant& shown, UaStatus& status)
    {
        UaWriteValues nodes(1);
        nodes[0].AttributeId = m_write.attributeId;
        const bool isCopied = OpcUa_IsNotBad(m_write.nodeId.copyTo(&nodes[0].NodeId)) &&
                              OpcUa_IsNotBad(value.copyTo(&nodes[0].Value.Value)) &&
                              copyRange(nodes[0].IndexRange);
        status = UaStatus(OpcUa_BadOutOfMemory); // a null value must not be written instead
        if (!isCopied)
            return QlumStagedState::NotSent;
        UaClientSdk::ServiceSettings settings = m_job.serviceSettings();
        qlumTellShown(settings, {{m_write.nodeId, m_write.attributeId, shown, m_write.name}});
        UaStatusCodeArray results;
        status = m_session ? m_session->write(settings, nodes, results) : UaStatus(OpcUa_BadNotConnected);
        if (status.isBad() && isUnsent(status))
            return QlumStagedState::NotSent;
        if (status.isBad())
            return isLost(status) ? QlumStagedState::Unknown : QlumStagedState::Refused;
        status = UaStatus(results.length() == 1 ? results[0] : OpcUa_StatusCode(OpcUa_BadUnknownResponse));
        if (results.length() != 1)
            return QlumStagedState::Unknown;
        return status.isBad() ? QlumStagedState::Refused : QlumStagedState::Written;
    }

private:
    bool copyRange(OpcUa_String& range) const
    {
        return m_write.indexRange.isEmpty() || OpcUa_IsNotBad(toUaString(m_write.indexRange).copyTo(&range));
    }

    QlumJob& m_job;
    const std::shared_ptr<QlumSessionServices> m_session;
    const QlumStagedWrite& m_write;
    bool m_isAnswered = false;
};

void apply(StagedCalls calls, const QlumApplyOptions& options, QlumStagedWrite& write)
{
    write.status = calls.read(write.old);
    write.hasOld = write.status.isNotBad();
    if (!calls.isAnswered()) {
        write.state = QlumStagedState::NotSent;
        return;
    }
    write.state = calls.write(write.value, write.old, write.status);
    const bool mayBeThere =
        write.state == QlumStagedState::Written || write.state == QlumStagedState::Unknown;
    if (!options.readsBack || !mayBeThere)
        return;
    write.hasBack = calls.read(write.back).isNotBad();
    // an answer that was lost is found again by its effect
    if (write.state == QlumStagedState::Unknown && write.hasBack && write.back == write.value &&
        !(write.hasOld && write.old == write.value)) {
        write.state = QlumStagedState::Written;
        write.status = UaStatus();
    }
}

void revert(StagedCalls calls, QlumStagedWrite& write)
{
    UaVariant now;
    const UaVariant expected = write.hasBack ? write.back : write.value;
    write.state = QlumStagedState::NotReverted;
    write.status = calls.read(now);
    if (write.status.isBad())
        return;
    if (now == write.old) {
        write.state = QlumStagedState::Reverted;
        return; // it never arrived, or somebody was faster
    }
    if (now != expected) {
        write.back = now;
        write.hasBack = true;
        return; // somebody else's work
    }
    const QlumStagedState state = calls.write(write.old, now, write.status);
    write.state =
        state == QlumStagedState::Written ? QlumStagedState::Reverted : QlumStagedState::NotReverted;
}

bool isStopped(const QlumJob& job, const QlumApplyOptions& options)
{
    return job.isCancelled() || (options.stopped && options.stopped->load());
}

QString shortText(const UaVariant& value)
{
    constexpr int longest = 60;
    return qlumCutText(qlumSingleLine(toQString(value.toString())), longest);
}

QString writtenText(const QlumStagedWrite& write)
{
    QString text = write.status.isUncertain()
                       ? stagedWords("Written, %1").arg(qlumResultInWords(write.status))
                       : stagedWords("Written");
    if (write.hasBack && write.back != write.value)
        text = stagedWords("Written, but %1 was read back").arg(shortText(write.back));
    if (!write.hasOld)
        text += stagedWords("; the old value could not be read");
    return text;
}

QString notRevertedText(const QlumStagedWrite& write)
{
    if (write.status.isBad())
        return stagedWords("Not reverted. %1").arg(qlumResultInWords(write.status));
    return stagedWords("Not reverted: somebody else has changed it to %1").arg(shortText(write.back));
}
} // namespace

void qlumApplyStaged(QlumJob& job, const QlumSessionServicesProvider& services,
                     std::vector<QlumStagedWrite> writes, const QlumApplyOptions& options,
                     const QlumStagedDone& done)
{
    bool hasFailed = false;
    for (std::size_t i = 0; i < writes.size(); ++i) {
        QlumStagedWrite& write = writes[i];
        job.setProgress(static_cast<qint64>(i), static_cast<qint64>(writes.size()));
        if (isStopped(job, options) || (hasFailed && options.stopsAtFailure))
            write.state = QlumStagedState::LeftOut;
        else
            apply(StagedCalls(job, services, write), options, write);
        hasFailed = hasFailed || write.state != QlumStagedState::Written;
        done(write);
    }
}

void qlumRevertStaged(QlumJob& job, const QlumSessionServicesProvider& services,
                      std::vector<QlumStagedWrite> writes, const QlumApplyOptions& options,
                      const QlumStagedDone& done)
{
    for (auto write = writes.rbegin(); write != writes.rend() && !isStopped(job, options); ++write) {
        job.setProgress(std::distance(writes.rbegin(), write), static_cast<qint64>(writes.size()));
        if (!qlumCanRevert(*write))
            continue;
        revert(StagedCalls(job, services, *write), *write);
        done(*write);
    }
}

bool qlumCanRevert(const QlumStagedWrite& write)
{
    const bool canTryAgain = write.state == QlumStagedState::NotReverted && write.status.isBad();
    return write.hasOld && (write.state == QlumStagedState::Written ||
                            write.state == QlumStagedState::Unknown || canTryAgain);
}

QString qlumStagedText(const QlumStagedWrite& write)
{
    switch (write.state) {
    case QlumStagedState::Waiting:
        return {};
    case QlumStagedState::Written:
        return writtenText(write);
    case QlumStagedState::Refused:
        return stagedWords("Refused. %1").arg(qlumResultInWords(write.status));
    case QlumStagedState::NotSent: {
        const QString byRole = qlumNotSentText(write.status);
        return byRole.isEmpty() ? stagedWords("Not sent. %1").arg(qlumResultInWords(write.status)) : byRole;
    }
    case QlumStagedState::Unknown:
        return stagedWords("It is not known whether it was written. %1").arg(qlumResultInWords(write.status));
    case QlumStagedState::LeftOut:
        return stagedWords("Left out: one before it was not written, or you have stopped");
    case QlumStagedState::Reverted:
        return stagedWords("The old value is there again");
    case QlumStagedState::NotReverted:
        return notRevertedText(write);
    }
    return {};
}
