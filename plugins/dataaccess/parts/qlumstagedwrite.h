// Values that wait until the user has them written, and what came of them.
#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumsessionservices.h>
#include <opcua/opcua_attributes.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>

#include <QString>

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

class QlumJob;

/// Where a staged value is on its way.
enum class QlumStagedState : unsigned char {
    Waiting,    ///< not sent yet
    Written,    ///< the server has taken it
    Refused,    ///< the server has not taken it
    NotSent,    ///< the role of the server forbids it, or there is no connection
    Unknown,    ///< the answer got lost: it may be written or not
    LeftOut,    ///< one before it failed, or the user stopped
    Reverted,   ///< the old value is there again
    NotReverted ///< it is not, and the outcome says why
};

/// What is to be written, and what is known of it.
struct QlumStagedWrite
{
    quint64 key = 0; ///< the caller's
    unsigned int serverId = qlumNoServer;
    UaNodeId nodeId;
    OpcUa_UInt32 attributeId = OpcUa_Attributes_Value;
    QString indexRange; ///< empty for all of it
    QString fieldPath;  ///< of a structure, whose other fields are written as they are then; empty for all
    QString name;       ///< of the node, for the user
    UaVariant value;    ///< to be written

    QlumStagedState state = QlumStagedState::Waiting;
    UaStatus status;      ///< of the last call for it
    bool hasOld = false;  ///< whether the value before could be read
    bool hasBack = false; ///< the same of the value afterwards
    UaVariant old;        ///< before it was written
    UaVariant back;       ///< as it was read back
};

/// How they are written.
struct QlumApplyOptions
{
    bool stopsAtFailure = true;                      ///< what comes behind one that was not taken is left out
    bool readsBack = true;                           ///< what the server has afterwards
    std::shared_ptr<std::atomic<bool>> stopped = {}; ///< set to leave out the rest; may be null
};

/// Hears of each write when it has its outcome; on the job's thread.
using QlumStagedDone = std::function<void(const QlumStagedWrite& write)>;

/// Writes the values in the order given, each when the one before it has its answer, in a job. The old values
/// are read first, for a revert. Whatever happens, every write has an outcome afterwards.
void qlumApplyStaged(QlumJob& job, const QlumSessionServicesProvider& services,
                     std::vector<QlumStagedWrite> writes, const QlumApplyOptions& options,
                     const QlumStagedDone& done);
/// Puts the old values back, the last one first, where the server still has what was written or read back.
/// Others stay, with the reason; so do those that were never written.
void qlumRevertStaged(QlumJob& job, const QlumSessionServicesProvider& services,
                      std::vector<QlumStagedWrite> writes, const QlumApplyOptions& options,
                      const QlumStagedDone& done);

/// Whether there is something to put back.
[[nodiscard]] bool qlumCanRevert(const QlumStagedWrite& write);
/// What became of it, for the user; empty while it waits.
[[nodiscard]] QString qlumStagedText(const QlumStagedWrite& write);
