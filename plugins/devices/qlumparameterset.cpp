#include <plugins/devices/qlumparameterset.h>

#include <app/api/qlumtext.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/devices/qlumdevicewords.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/text/uavaluetext.h>
#include <uabase/values/uastring.h>
#include <uawidgets/editors/qlumvaluechecks.h>
#include <uawidgets/editors/qlumvaluecontext.h>

#include <QCoreApplication>
#include <QIODevice>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QJsonValue>
#include <QSaveFile>

#include <map>
#include <utility>

namespace {
constexpr int parameterSetVersion = 1;
constexpr int mostStoredParameters = 20'000; // a file that claims more is none of ours
const QString parameterSetFormat = QStringLiteral("device parameter set");

QString setWords(const char* text)
{
    return QCoreApplication::translate("QlumParameterSet", text);
}

bool storedValue(const UaVariant& value, UaDataTypeDictionary* dictionary, QJsonObject& stored)
{
    UaString text;
    if (UaValueText::toJson(value, dictionary, text).isBad())
        return false;
    const QJsonDocument document = QJsonDocument::fromJson(toQString(text).toUtf8());
    stored = document.object();
    return document.isObject();
}

QlumParameterDifference differenceOf(const QlumParameterModel& model, int row, const UaVariant& value)
{
    const QlumParameterRow& own = model.rowAt(row);
    QlumParameterDifference difference;
    difference.id = own.parameter.id;
    difference.name = own.parameter.name;
    difference.now = QlumParameterModel::valueText(own, own.parameter.value.value());
    difference.then = QlumParameterModel::valueText(own, value);
    difference.value = value;
    difference.remark = model.obstacle(row);
    difference.isPossible = difference.remark.isEmpty();
    if (difference.isPossible && own.parameter.context) {
        const QlumValueCheck check = qlumCheckValue(value, *own.parameter.context);
        difference.remark = check.text();
        difference.isPossible = check.refused.isEmpty();
    }
    difference.isWanted = difference.isPossible;
    return difference;
}
} // namespace

// ---- files

QByteArray qlumEncodeParameterSet(const QlumDevice& device, const QlumParameterModel& model,
                                  QStringList& leftOut)
{
    QJsonArray parameters;
    for (const QlumParameterRow& row : model.rows()) {
        const QlumDeviceParameter& parameter = row.parameter;
        const bool isWritable = parameter.context && parameter.context->accessFault.isEmpty();
        if (!parameter.isInSet || !isWritable)
            continue;
        QJsonObject value;
        if (parameter.value.statusCode().isBad() ||
            !storedValue(parameter.value.value(), parameter.context->dictionary.get(), value)) {
            leftOut.append(parameter.name);
            continue;
        }
        parameters.append(QJsonObject{{QStringLiteral("namespace"), parameter.namespaceUri},
                                      {QStringLiteral("name"), parameter.browseName},
                                      {QStringLiteral("value"), value}});
    }
    const QJsonObject all{{QStringLiteral("format"), parameterSetFormat},
                          {QStringLiteral("version"), parameterSetVersion},
                          {QStringLiteral("saved"), QDateTime::currentDateTimeUtc().toString(Qt::ISODate)},
                          {QStringLiteral("device"), device.name},
                          {QStringLiteral("type"), device.typeName},
                          {QStringLiteral("model"), device.fact(QlumNameplate::Model)},
                          {QStringLiteral("serialNumber"), device.fact(QlumNameplate::SerialNumber)},
                          {QStringLiteral("parameters"), parameters}};
    return QJsonDocument(all).toJson();
}

QString qlumDecodeParameterSet(const QByteArray& bytes, UaDataTypeDictionary* dictionary,
                               QlumParameterSet& set)
{
    QJsonParseError error;
    const QJsonObject all = QJsonDocument::fromJson(bytes, &error).object();
    if (error.error != QJsonParseError::NoError)
        return setWords("it cannot be read: %1").arg(error.errorString());
    if (all.value(QStringLiteral("format")).toString() != parameterSetFormat)
        return setWords("it is no file with parameters of a device");
    if (all.value(QStringLiteral("version")).toInt() != parameterSetVersion)
        return setWords("it was written by a newer version of this program");
    const QJsonArray parameters = all.value(QStringLiteral("parameters")).toArray();
    if (parameters.size() > mostStoredParameters)
        return setWords("it holds more parameters than a device has");
    set = {};
    set.device = all.value(QStringLiteral("device")).toString();
    set.typeName = all.value(QStringLiteral("type")).toString();
    set.model = all.value(QStringLiteral("model")).toString();
    set.serialNumber = all.value(QStringLiteral("serialNumber")).toString();
    set.saved = QDateTime::fromString(all.value(QStringLiteral("saved")).toString(), Qt::ISODate);
    for (const QJsonValue& entry : parameters) {
        const QJsonObject parameter = entry.toObject();
        QlumStoredParameter stored{parameter.value(QStringLiteral("namespace")).toString(),
                                   parameter.value(QStringLiteral("name")).toString(),
                                   {}};
        const QByteArray value =
            QJsonDocument(parameter.value(QStringLiteral("value")).toObject()).toJson(QJsonDocument::Compact);
        if (UaValueText::fromJson({value.constData(), static_cast<std::size_t>(value.size())}, dictionary,
                                  stored.value)
                .isBad())
            set.remarks.append(setWords("%1: its value cannot be read").arg(stored.browseName));
        else
            set.parameters.push_back(std::move(stored));
    }
    return {};
}

QString qlumWriteDeviceFile(const QString& path, const QByteArray& bytes)
{
    QSaveFile file(path);
    const bool isWritten =
        file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
    return isWritten ? QString() : file.errorString();
}

// ---- differences

std::vector<QlumParameterDifference>
qlumParameterDifferences(const QlumParameterModel& model, const QlumParameterSet& set, QStringList& unknown)
{
    std::map<std::pair<QString, QString>, int> places;
    for (int row = 0; row < model.rowCount(); ++row)
        if (const QlumDeviceParameter& parameter = model.rowAt(row).parameter; parameter.isInSet)
            places.emplace(std::pair(parameter.namespaceUri, parameter.browseName), row);
    std::vector<QlumParameterDifference> differences;
    for (const QlumStoredParameter& stored : set.parameters) {
        const auto found = places.find({stored.namespaceUri, stored.browseName});
        if (found == places.end())
            unknown.append(stored.browseName);
        else if (model.rowAt(found->second).parameter.value.value() != stored.value)
            differences.push_back(differenceOf(model, found->second, stored.value));
    }
    return differences;
}

std::vector<QlumParameterDifference> qlumTypeDifferences(const QlumParameterModel& model)
{
    std::vector<QlumParameterDifference> differences;
    for (int row = 0; row < model.rowCount(); ++row) {
        const QlumDeviceParameter& parameter = model.rowAt(row).parameter;
        if (parameter.hasDefault && parameter.byType != parameter.value.value())
            differences.push_back(differenceOf(model, row, parameter.byType));
    }
    return differences;
}
