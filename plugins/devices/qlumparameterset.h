// Parameters of a device in a file.
#pragma once
#include <plugins/devices/qlumdevicedata.h>
#include <plugins/devices/qlumparametermodel.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>

#include <vector>

class UaDataTypeDictionary;

/// A parameter of a file, by its name.
struct QlumStoredParameter
{
    QString namespaceUri;
    QString browseName;
    UaVariant value;
};

/// What a file holds.
struct QlumParameterSet
{
    QString device;
    QString typeName;
    QString model;
    QString serialNumber;
    QDateTime saved;
    std::vector<QlumStoredParameter> parameters;
    QStringList remarks; ///< for the user: what of the file could not be read
};

/// A parameter that has one value and could have another.
struct QlumParameterDifference
{
    UaNodeId id;
    QString name;
    QString now;     ///< what the device has
    QString then;    ///< what it would have
    QString remark;  ///< why it cannot be taken over, or what is unusual about it; empty for nothing
    UaVariant value; ///< that it would have
    bool isPossible = true;
    bool isWanted = true; ///< by the user
};

/// The values of the rows that can be written, with what says whose they are. Values that cannot be written
/// as text are left out and named.
[[nodiscard]] QByteArray qlumEncodeParameterSet(const QlumDevice& device, const QlumParameterModel& model,
                                                QStringList& leftOut);
/// Why it is no such file, in words; empty when it is. The dictionary may be null.
[[nodiscard]] QString qlumDecodeParameterSet(const QByteArray& bytes, UaDataTypeDictionary* dictionary,
                                             QlumParameterSet& set);
/// Writes all of it or leaves the file as it was; the reason in words, empty for none.
[[nodiscard]] QString qlumWriteDeviceFile(const QString& path, const QByteArray& bytes);

/// Where the device differs from the file. Parameters that the device does not have are named.
[[nodiscard]] std::vector<QlumParameterDifference>
qlumParameterDifferences(const QlumParameterModel& model, const QlumParameterSet& set, QStringList& unknown);
/// Where the device differs from its type.
[[nodiscard]] std::vector<QlumParameterDifference> qlumTypeDifferences(const QlumParameterModel& model);
