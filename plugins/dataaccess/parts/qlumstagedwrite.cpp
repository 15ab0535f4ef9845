#include <plugins/dataaccess/parts/qlumstagedwrite.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumserverrole.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <monitoring/callfaults.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uastring.h>
#include <uawidgets/editors/qlumdatafield.h>

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

QlumPartAccess::Place placeOf(const QlumStagedWrite& write)
{
    return {write.nodeId, write.attributeId, write.indexRange, write.fieldPath, write.name};
}

// Where it ends in; its status is the write's.
QlumStagedState writeOnce(QlumPartAccess& access, const UaVariant& value, const UaVariant& shown,
                          UaStatus& status)
{
    status = access.write(value, shown);
    if (!access.isSent())
        return QlumStagedState::NotSent;
    if (access.hasCallFailed()) {
        if (status.isBad() && isUnsent(status))
            return QlumStagedState::NotSent;
        return isLost(status) || status.code() == OpcUa_BadUnknownResponse ? QlumStagedState::Unknown
                                                                           : QlumStagedState::Refused;
    }
    return status.isBad() ? QlumStagedState::Refused : QlumStagedState::Written;
}

void apply(QlumPartAccess& access, const QlumApplyOptions& options, QlumStagedWrite& write)
{
    write.status = access.read(write.old);
    write.hasOld = write.status.isNotBad();
    if (!access.isAnswered()) {
        write.state = QlumStagedState::NotSent;
        return;
    }
    write.state = writeOnce(access, write.value, write.old, write.status);
    const bool mayBeThere =
        write.state == QlumStagedState::Written || write.state == QlumStagedState::Unknown;
    if (!options.readsBack || !mayBeThere)
        return;
    write.hasBack = access.read(write.back).isNotBad();
    // an answer that was lost is found again by its effect
    if (write.state == QlumStagedState::Unknown && write.hasBack && write.back == write.value &&
        !(write.hasOld && write.old == write.value)) {
        write.state = QlumStagedState::Written;
        write.status = UaStatus();
    }
}

void revert(QlumPartAccess& access, QlumStagedWrite& write)
{
    UaVariant now;
    const UaVariant expected = write.hasBack ? write.back : write.value;
    write.state = QlumStagedState::NotReverted;
    write.status = access.read(now);
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
    const QlumStagedState state = writeOnce(access, write.old, now, write.status);
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
        else {
            const QlumPartAccess::Place place = placeOf(write);
            QlumPartAccess access(job, services(write.serverId), place);
            apply(access, options, write);
        }
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
        const QlumPartAccess::Place place = placeOf(*write);
        QlumPartAccess access(job, services(write->serverId), place);
        revert(access, *write);
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
