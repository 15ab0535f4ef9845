// What the view has done: values written, files, transfers, documents.
#include <plugins/devices/qlumdevicesview.h>

#include <app/api/qlumimageformat.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_identifiers.h>
#include <plugins/devices/qlumdevicepages.h>
#include <plugins/devices/qlumparametermodel.h>
#include <plugins/devices/qlumparameterpage.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/qlummessagebar.h>

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QMimeDatabase>
#include <QMimeType>
#include <QRegularExpression>
#include <QStandardPaths>

#include <algorithm>
#include <optional>
#include <ranges>
#include <string_view>
#include <utility>

namespace {
const QString parametersTopic = QStringLiteral("deviceParameters");
constexpr qint64 mostFileBytes = 32 * 1024 * 1024;
constexpr int mostShownText = 1024 * 1024; // bytes; more is for an editor

// What a server calls a thing, as the name of a file and nothing else.
QString fileNameOf(QString name)
{
    name.replace(QRegularExpression(QStringLiteral("[^\\w.-]+")), QStringLiteral("_"));
    while (name.startsWith(QLatin1Char('.')))
        name.remove(0, 1);
    return name.isEmpty() ? QStringLiteral("device") : name.left(100);
}

QUrl webAddress(const QString& text)
{
    const QUrl address(text.trimmed(), QUrl::StrictMode);
    const bool isWeb =
        address.scheme() == QLatin1String("http") || address.scheme() == QLatin1String("https");
    return address.isValid() && isWeb ? address : QUrl();
}

QByteArray bytesOf(const UaVariant& value)
{
    if (value.type() == OpcUaType_ByteString && value.isScalar()) {
        const UaByteString bytes = value.toByteString();
        const std::string_view view = bytes.view();
        return QByteArray(view.data(), static_cast<int>(view.size()));
    }
    return toQString(value.toString()).toUtf8();
}

// Bytes that are a text, as that; others as they are: a document may be written in letters and be none.
UaVariant textOrBytes(const UaVariant& value, const QString& name)
{
    const QByteArray bytes = bytesOf(value);
    const bool hasControls = std::ranges::any_of(
        bytes, [](unsigned char c) { return c < ' ' && c != '\n' && c != '\r' && c != '\t'; });
    if (bytes.isEmpty() || bytes.size() > mostShownText || hasControls)
        return value;
    const QString text = QString::fromUtf8(bytes);
    const bool isText =
        text.toUtf8() == bytes &&
        QMimeDatabase().mimeTypeForFileNameAndData(name, bytes).inherits(QStringLiteral("text/plain"));
    return isText ? UaVariant(toUaString(text)) : value;
}
} // namespace

// ---- writing

void QlumDevicesView::writeParameters()
{
    const std::vector<QlumParameterWrite> wanted = m_parameters->model()->changes();
    const QlumDevice* const device = current();
    if (wanted.empty() || !device)
        return;
    const QlumDevice* const holder = lockHolder();
    const std::optional<QlumDevice> lock = holder ? std::optional(*holder) : std::nullopt;
    const bool isOwn = lock && isHeld(lock->id);
    static_cast<void>(work(
        tr("Writing parameters of %1").arg(device->name),
        [this, wanted, lock, isOwn, id = device->id](const Services& services, QlumJob& job) -> Finish {
            QlumDeviceClient client(services, job.serviceSettings(), [&job] { return job.isCancelled(); });
            auto outcomes =
                std::make_shared<QlumParameterOutcomes>(client.write(lock ? &*lock : nullptr, isOwn, wanted));
            return [this, outcomes, id, lockId = lock ? lock->id : UaNodeId()] {
                takeOutcomes(id, lockId, *outcomes);
            };
        }));
}

void QlumDevicesView::takeOutcomes(const UaNodeId& device, const UaNodeId& lock,
                                   const QlumParameterOutcomes& outcomes)
{
    if (!outcomes.refusal.isEmpty()) {
        if (outcomes.isLockLost)
            loseLock(lock, outcomes.refusal);
        else
            m_messages->tell({QlumMessage::Error,
                              parametersTopic,
                              tr("Nothing was written."),
                              outcomes.refusal,
                              {},
                              nullptr});
        return;
    }
    const auto failed = std::ranges::count_if(
        outcomes.cells, [](const QlumParameterOutcome& cell) { return cell.status.isBad(); });
    if (current() && current()->id == device) {
        m_parameters->model()->setOutcomes(outcomes);
    } else if (const auto kept = m_kept.find(device); kept != m_kept.end()) {
        std::erase_if(kept->second, [&](const QlumParameterWrite& write) {
            return std::ranges::any_of(outcomes.cells, [&](const QlumParameterOutcome& cell) {
                return cell.id == write.id && cell.status.isNotBad();
            });
        });
        if (kept->second.empty())
            m_kept.erase(kept);
    }
    if (failed == 0)
        return m_messages->dismiss(parametersTopic);
    const auto first = std::ranges::find_if(
        outcomes.cells, [](const QlumParameterOutcome& cell) { return cell.status.isBad(); });
    m_messages->tell({QlumMessage::Error,
                      parametersTopic,
                      tr("%1 of %2 values were not written; they stay changed and say why.")
                          .arg(failed)
                          .arg(outcomes.cells.size()),
                      qlumResultInWords(first->status),
                      {},
                      nullptr});
}

// ---- files of parameters

void QlumDevicesView::saveParameters()
{
    if (!current())
        return;
    const QlumDevice device = *current();
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString path =
        m_world.saveName(this, QDir(folder).filePath(fileNameOf(device.name) + QStringLiteral(".json")),
                         tr("Parameter sets (*.json);;All files (*)"));
    if (path.isEmpty())
        return;
    QStringList leftOut;
    const QByteArray bytes = qlumEncodeParameterSet(device, *m_parameters->model(), leftOut);
    if (const QString why = qlumWriteDeviceFile(path, bytes); !why.isEmpty())
        return tell(tr("%1 was not written.").arg(QDir::toNativeSeparators(path)), why);
    m_messages->tell(
        {QlumMessage::Note,
         parametersTopic,
         tr("The parameters of %1 are saved in %2.").arg(device.name, QDir::toNativeSeparators(path)),
         leftOut.isEmpty()
             ? QString()
             : tr("Left out, because they could not be read: %1").arg(leftOut.join(QStringLiteral(", "))),
         {},
         nullptr});
}

void QlumDevicesView::loadParameters()
{
    const QString path =
        current() ? m_world.openName(this, tr("Parameter sets (*.json);;All files (*)")) : QString();
    if (path.isEmpty() || !current())
        return;
    const QString title = tr("%1 was not read.").arg(QDir::toNativeSeparators(path));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return tell(title, file.errorString());
    if (file.size() > mostFileBytes)
        return tell(title, tr("it is larger than files of this kind are"));
    QlumParameterModel* const model = m_parameters->model();
    UaDataTypeDictionary* dictionary = nullptr;
    for (const QlumParameterRow& row : model->rows())
        if (row.parameter.context && row.parameter.context->dictionary)
            dictionary = row.parameter.context->dictionary.get();
    QlumParameterSet set;
    if (const QString why = qlumDecodeParameterSet(file.readAll(), dictionary, set); !why.isEmpty())
        return tell(title, why);
    QStringList unknown;
    const std::vector<QlumParameterDifference> differences = qlumParameterDifferences(*model, set, unknown);
    QStringList remarks = set.remarks;
    if (!unknown.isEmpty())
        remarks.append(tr("The device does not have: %1").arg(unknown.join(QStringLiteral(", "))));
    if (set.typeName != current()->typeName)
        remarks.append(tr("The file is of a device of another type: %1").arg(set.typeName));
    else if (set.serialNumber != current()->fact(QlumNameplate::SerialNumber))
        remarks.append(tr("The file is of another device of this type: %1, serial number %2")
                           .arg(set.device, set.serialNumber));
    const QString heading =
        tr("%1, as it was saved on %2, and what %3 has now:")
            .arg(set.device, QLocale::system().toString(set.saved.toLocalTime(), QLocale::ShortFormat),
                 current()->name);
    stage(m_world.choose(this, heading, tr("The file has"), differences, remarks));
}

void QlumDevicesView::compareWithType()
{
    if (!current())
        return;
    const auto& rows = m_parameters->model()->rows();
    if (std::ranges::none_of(rows, [](const QlumParameterRow& row) { return row.parameter.hasDefault; }))
        return tell(tr("%1 cannot be compared with its type.").arg(current()->name),
                    tr("The type %1 tells no values of parameters.").arg(current()->typeName));
    stage(m_world.choose(this,
                         tr("Where %1 differs from its type %2:").arg(current()->name, current()->typeName),
                         tr("The type has"), qlumTypeDifferences(*m_parameters->model()), {}));
}

void QlumDevicesView::stage(const std::vector<QlumParameterDifference>& chosen)
{
    QlumParameterModel* const model = m_parameters->model();
    for (const QlumParameterDifference& difference : chosen)
        if (const int row = model->find(difference.id); row >= 0)
            if (const QString why = model->stage(row, difference.value); !why.isEmpty())
                tell(tr("%1 cannot be edited.").arg(difference.name), why);
}

// ---- transfers

void QlumDevicesView::transfer(bool isToDevice)
{
    const QlumDevice* const found = current();
    if (!found || found->transferParts.isEmpty())
        return;
    const QlumDevice device = *found;
    m_isTransferring = work(
        isToDevice ? tr("Transfer to %1").arg(device.name) : tr("Transfer from %1").arg(device.name),
        [this, device, isToDevice](const Services& services, QlumJob& job) -> Finish {
            QlumDeviceClient client(services, job.serviceSettings(), [&job] { return job.isCancelled(); });
            auto outcome = std::make_shared<QlumTransferOutcome>(
                client.transfer(device, isToDevice, [&job](int done) { job.setProgress(done, 0); }));
            return [this, outcome, id = device.id, name = device.name] {
                if (current() && current()->id == id)
                    m_transfer->setOutcome(*outcome);
                if (!outcome->fault.isEmpty())
                    tell(tr("The transfer of %1 was not finished.").arg(name), outcome->fault);
                else if (current() && current()->id == id)
                    readParameters();
            };
        });
    updateState();
}

// ---- documents

void QlumDevicesView::openAddress(const QString& address)
{
    const QUrl page = webAddress(address);
    if (page.isEmpty())
        tell(tr("The document cannot be opened."),
             tr("%1 is no address of the web; it may be a name under which it is found elsewhere.")
                 .arg(address));
    else if (!m_world.browse(page))
        tell(tr("The document cannot be opened."), tr("There is no browser for %1.").arg(address));
}

void QlumDevicesView::openDocument(const QlumDeviceDocument& document)
{
    if (!document.address.isEmpty())
        return openAddress(document.address);
    static_cast<void>(work(
        tr("Reading document %1").arg(document.name),
        [this, document](const Services& services, QlumJob& job) -> Finish {
            QlumDeviceClient client(services, job.serviceSettings(), [&job] { return job.isCancelled(); });
            UaVariant value;
            UaNodeId dataType;
            const UaStatus status = client.readContent(document, value, dataType);
            const bool isBytes = value.type() == OpcUaType_ByteString && !qlumIsImage(value, dataType);
            if (isBytes)
                value = textOrBytes(value, document.name);
            // read again by a viewer it would be bytes
            const bool isMade = document.isFile || (isBytes && value.type() == OpcUaType_String);
            if (isMade)
                dataType = {};
            return [this, document, value, dataType, status, isMade] {
                if (status.isBad())
                    return tell(tr("%1 could not be read.").arg(document.name), qlumResultInWords(status));
                if (value.type() == OpcUaType_String && !webAddress(toQString(value.toString())).isEmpty())
                    return openAddress(toQString(value.toString()));
                // programs of this computer are not given what a server has sent without the user's word
                if (value.type() == OpcUaType_ByteString && !qlumIsImage(value, dataType))
                    return saveDocument(document);
                const QlumToolNode origin{m_serverId,
                                          isMade ? UaNodeId() : document.id,
                                          OpcUa_NodeClass_Variable,
                                          {},
                                          document.name};
                QlumToolServices* const tools = QlumToolServices::instance();
                if (!tools || !tools->showValue(m_serverId, value, dataType, origin))
                    tell(tr("%1 cannot be shown.").arg(document.name), tr("There is no viewer for it."));
            };
        }));
}

void QlumDevicesView::saveDocument(const QlumDeviceDocument& document)
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString path =
        m_world.saveName(this, QDir(folder).filePath(fileNameOf(document.name)), tr("All files (*)"));
    if (path.isEmpty())
        return;
    static_cast<void>(work(
        tr("Reading document %1").arg(document.name),
        [this, document, path](const Services& services, QlumJob& job) -> Finish {
            QlumDeviceClient client(services, job.serviceSettings(), [&job] { return job.isCancelled(); });
            UaVariant value;
            UaNodeId dataType;
            const UaStatus status = client.readContent(document, value, dataType);
            const QString why =
                status.isBad() ? qlumResultInWords(status) : qlumWriteDeviceFile(path, bytesOf(value));
            return [this, document, path, why] {
                if (!why.isEmpty())
                    return tell(tr("%1 was not saved.").arg(document.name), why);
                m_messages->tell({QlumMessage::Note,
                                  parametersTopic,
                                  tr("%1 is saved in %2.").arg(document.name, QDir::toNativeSeparators(path)),
                                  {},
                                  tr("&Open"),
                                  [this, document, path] {
                                      if (!m_world.browse(QUrl::fromLocalFile(path)))
                                          tell(tr("%1 cannot be shown.").arg(document.name),
                                               tr("This computer has no program for it."));
                                  }});
            };
        }));
}
