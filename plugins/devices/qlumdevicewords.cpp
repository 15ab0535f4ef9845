#include <plugins/devices/qlumdevicewords.h>

#include <QCoreApplication>

#include <array>
#include <utility>

#define WORDS(text) QT_TRANSLATE_NOOP("QlumDeviceWords", text)

namespace {
constexpr std::array<std::pair<const char*, const char*>, qlumNameplateCount> nameplateRows{{
    {"Manufacturer", WORDS("Manufacturer")},
    {"Model", WORDS("Model")},
    {"SerialNumber", WORDS("Serial number")},
    {"HardwareRevision", WORDS("Hardware revision")},
    {"SoftwareRevision", WORDS("Software revision")},
    {"DeviceRevision", WORDS("Device revision")},
    {"RevisionCounter", WORDS("Revision counter")},
    {"ProductCode", WORDS("Product code")},
    {"DeviceClass", WORDS("Device class")},
    {"ProductInstanceUri", WORDS("Product instance URI")},
    {"ManufacturerUri", WORDS("Manufacturer URI")},
    {"AssetId", WORDS("Asset id")},
    {"ComponentName", WORDS("Component name")},
    {"DeviceManual", WORDS("Device manual")},
}};

struct HealthRow
{
    const char* word;
    const char* meaning;
    QlumStatusLevel level;
};
constexpr HealthRow healthRows[] = {
    {"NORMAL", WORDS("The device works as it should."), QlumStatusLevel::Good},
    {"FAILURE", WORDS("The device has failed: its values are not valid."), QlumStatusLevel::Bad},
    {"CHECK_FUNCTION", WORDS("Somebody works on the device: its values are not valid for the time being."),
     QlumStatusLevel::Uncertain},
    {"OFF_SPEC", WORDS("The device works outside of what it is made for: its values may be wrong."),
     QlumStatusLevel::Uncertain},
    {"MAINTENANCE_REQUIRED", WORDS("The values are valid, but the device has to be looked after soon."),
     QlumStatusLevel::Uncertain},
};

struct OutputRow
{
    const char* method;
    OpcUa_Int32 output;
    const char* words;
};
constexpr OutputRow outputRows[] = {
    {"InitLock", -1, WORDS("the device is locked by somebody else already")},
    {"InitLock", -2, WORDS("the device cannot be locked")},
    {"RenewLock", -1, WORDS("the device is not locked by this session any more")},
    {"ExitLock", -1, WORDS("the device is not locked by this session")},
    {"BreakLock", -1, WORDS("the device is not locked")},
    {"TransferToDevice", -1, WORDS("the device has to be locked first")},
    {"TransferToDevice", -2, WORDS("the device cannot be reached")},
    {"TransferFromDevice", -1, WORDS("the device has to be locked first")},
    {"TransferFromDevice", -2, WORDS("the device cannot be reached")},
    {"FetchTransferResultData", -1, WORDS("the server does not know this transfer any more")},
    {"FetchTransferResultData", -2, WORDS("the transfer was cancelled")},
    {"FetchTransferResultData", -3, WORDS("the device could not be reached to the end")},
    {"FetchTransferResultData", -4, WORDS("the transfer failed for a reason that is not known")},
};

QString deviceWords(const char* text)
{
    return QCoreApplication::translate("QlumDeviceWords", text);
}

const HealthRow* healthRow(QlumDeviceHealth health)
{
    return health == QlumDeviceHealth::Untold ? nullptr : &healthRows[static_cast<int>(health)];
}
} // namespace

QString qlumNameplateKey(QlumNameplate field)
{
    return QLatin1String(nameplateRows.at(static_cast<std::size_t>(field)).first);
}

int qlumNameplateField(const QString& browseName)
{
    for (std::size_t i = 0; i < nameplateRows.size(); ++i)
        if (browseName == QLatin1String(nameplateRows[i].first))
            return static_cast<int>(i);
    return -1;
}

QString qlumNameplateTitle(QlumNameplate field)
{
    return deviceWords(nameplateRows.at(static_cast<std::size_t>(field)).second);
}

QString qlumDeviceHealthText(QlumDeviceHealth health)
{
    const HealthRow* const row = healthRow(health);
    return row ? QLatin1String(row->word) : QString();
}

QString qlumDeviceHealthWords(QlumDeviceHealth health)
{
    const HealthRow* const row = healthRow(health);
    return row ? deviceWords(row->meaning) : deviceWords(WORDS("The device does not tell its health."));
}

QlumStatusLevel qlumDeviceHealthLevel(QlumDeviceHealth health)
{
    const HealthRow* const row = healthRow(health);
    return row ? row->level : QlumStatusLevel::Inactive;
}

QString qlumDeviceKindText(QlumDeviceKind kind)
{
    switch (kind) {
    case QlumDeviceKind::Device:
        return deviceWords(WORDS("device"));
    case QlumDeviceKind::Group:
        return deviceWords(WORDS("group"));
    case QlumDeviceKind::Feature:
        return deviceWords(WORDS("features of devices"));
    case QlumDeviceKind::Network:
        return deviceWords(WORDS("network"));
    case QlumDeviceKind::Point:
        return deviceWords(WORDS("connection point"));
    }
    return {};
}

QString qlumDeviceOutputWords(const QString& method, OpcUa_Int32 output)
{
    for (const OutputRow& row : outputRows)
        if (output == row.output && method == QLatin1String(row.method))
            return deviceWords(row.words);
    return deviceWords(WORDS("the server has refused it with the status %1")).arg(output);
}

QString qlumDeviceOwnerText(const QlumDeviceLockState& lock)
{
    if (lock.user.isEmpty())
        return lock.client.isEmpty() ? deviceWords(WORDS("somebody")) : lock.client;
    return lock.client.isEmpty() ? lock.user
                                 : lock.user + QStringLiteral(" (") + lock.client + QLatin1Char(')');
}
