// What of devices is said to the user, and by which names servers have it.
#pragma once
#include <opcua/opcua_types.h>
#include <plugins/devices/qlumdevicedata.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QString>

/// The browse name of a fact of the nameplate.
[[nodiscard]] QString qlumNameplateKey(QlumNameplate field);
/// The place of a fact by its browse name; -1 for another one.
[[nodiscard]] int qlumNameplateField(const QString& browseName);
/// "Serial number"
[[nodiscard]] QString qlumNameplateTitle(QlumNameplate field);

/// "FAILURE"
[[nodiscard]] QString qlumDeviceHealthText(QlumDeviceHealth health);
/// What that means, in a sentence.
[[nodiscard]] QString qlumDeviceHealthWords(QlumDeviceHealth health);
[[nodiscard]] QlumStatusLevel qlumDeviceHealthLevel(QlumDeviceHealth health);
/// "module group"
[[nodiscard]] QString qlumDeviceKindText(QlumDeviceKind kind);

/// What the output of a lock or transfer method means: those report there what they came to, with a call that
/// is good.
[[nodiscard]] QString qlumDeviceOutputWords(const QString& method, OpcUa_Int32 output);
/// Who holds a lock: "operator1 (Tavelin on line 4)".
[[nodiscard]] QString qlumDeviceOwnerText(const QlumDeviceLockState& lock);
