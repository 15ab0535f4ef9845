// What is done with devices: locks, writing as a set, transfers, content of documents.
#pragma once
#include <app/api/qlumsessionservices.h>
#include <opcua/opcua_types.h>
#include <plugins/devices/qlumdevicedata.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>

#include <QString>

#include <functional>
#include <memory>
#include <span>
#include <vector>

class UaDataTypeDictionary;
class UaGenericStructureValue;

/// What a method of a device came to.
struct QlumDeviceAnswer
{
    UaStatus status;        ///< of the call
    OpcUa_Int32 output = 0; ///< what the method says itself: 0 is good, negative is refused
    QString words;          ///< why it was not done; empty when it was

    [[nodiscard]] bool isDone() const { return words.isEmpty(); }
};

/// A value that the user wants a parameter to have.
struct QlumParameterWrite
{
    UaNodeId id;
    QString name;
    UaVariant value;
    UaVariant shown; ///< before
};

/// What became of it.
struct QlumParameterOutcome
{
    UaNodeId id;
    UaStatus status;
    UaDataValue back; ///< as it was read afterwards; bad where that failed
};

/// What became of all.
struct QlumParameterOutcomes
{
    QString refusal;                         ///< why nothing was sent, in words; empty when it was
    bool isLockLost = false;                 ///< because the own lock is no more
    std::vector<QlumParameterOutcome> cells; ///< in the order of what was wanted
};

/// What a device says of one parameter of a transfer.
struct QlumTransferRow
{
    QString path;
    UaStatus status;
};

/// A transfer of the parameters between a device and the server.
struct QlumTransferOutcome
{
    QString fault; ///< why it was not finished, in words; empty when it was
    std::vector<QlumTransferRow> rows;
};

/// Calls the methods of devices, each conversation in its order. For one job; blocks. The statuses that
/// methods report as an output decide, not those of the calls.
class QlumDeviceClient
{
public:
    static constexpr OpcUa_Int32 rowsPerFetch = 100;
    static constexpr std::size_t mostTransferRows = 20'000;
    static constexpr OpcUa_UInt32 mostContentBytes = 64 * 1024 * 1024;

    using Cancelled = std::function<bool()>;
    using Progress = std::function<void(int done)>;

    QlumDeviceClient(std::shared_ptr<QlumSessionServices> session, QlumSessionServices::Settings settings,
                     Cancelled isCancelled);

    // ---- locks
    /// The context is for the others to read.
    [[nodiscard]] QlumDeviceAnswer initLock(const QlumDevice& device, const QString& context);
    [[nodiscard]] QlumDeviceAnswer renewLock(const QlumDevice& device);
    [[nodiscard]] QlumDeviceAnswer exitLock(const QlumDevice& device);
    [[nodiscard]] QlumDeviceAnswer breakLock(const QlumDevice& device);
    [[nodiscard]] QlumDeviceLockState readLock(const QlumDevice& device);

    // ---- parameters
    /// Writes all in one go, and reads them back. Nothing is sent when the device is locked by somebody else,
    /// or its own lock was lost meanwhile; lockDevice is null where nothing can be locked.
    [[nodiscard]] QlumParameterOutcomes write(const QlumDevice* lockDevice, bool isHeld,
                                              std::span<const QlumParameterWrite> writes);

    // ---- transfers
    /// From the server to the device or back; asks for the results until the last has come.
    [[nodiscard]] QlumTransferOutcome transfer(const QlumDevice& device, bool isToDevice,
                                               const Progress& progress);

    // ---- documents
    /// The value of a variable or what is in a file, as a value.
    [[nodiscard]] UaStatus readContent(const QlumDeviceDocument& document, UaVariant& value,
                                       UaNodeId& dataType);

private:
    [[nodiscard]] QlumSessionServices::Settings settingsFor(const QString& purpose) const;
    [[nodiscard]] UaStatus call(const UaNodeId& object, const UaNodeId& method, const QString& purpose,
                                std::span<const UaVariant> inputs, UaVariantArray& outputs);
    [[nodiscard]] QlumDeviceAnswer callLock(const QlumDevice& device, const char* method,
                                            std::span<const UaVariant> inputs);
    void readBack(QlumParameterOutcomes& outcomes);
    [[nodiscard]] bool fetch(const QlumDevice& device, OpcUa_Int32 id, OpcUa_Int32& sequence,
                             QlumTransferOutcome& outcome);
    [[nodiscard]] bool takeRows(const UaGenericStructureValue& result, UaDataTypeDictionary* dictionary,
                                QlumTransferOutcome& outcome) const;
    [[nodiscard]] UaStatus readFile(const UaNodeId& file, UaVariant& value);

    const std::shared_ptr<QlumSessionServices> m_session;
    const QlumSessionServices::Settings m_settings;
    const Cancelled m_isCancelled;
};
