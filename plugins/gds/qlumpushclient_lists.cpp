// Trust lists: files that are read and written in pieces.
#include <plugins/gds/qlumpushclient.h>

#include <app/api/qlumserviceneed.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/methodcall.h>

#include <QCoreApplication>

#include <algorithm>
#include <span>
#include <string>
#include <utility>

namespace {
constexpr OpcUa_Byte openForWriting = 0x06; // write, and erase what is there
constexpr OpcUa_UInt32 usualPiece = 64 * 1024;
constexpr std::size_t mostBytes = 64 * 1024 * 1024; // of a list; a server that sends more sends nonsense

bool putArgument(UaVariantArray& inputs, const UaVariant& value)
{
    return inputs.append(*value.get());
}

QString nameOf(const UaByteString& der)
{
    const UaPkiCertificate certificate = UaPkiCertificate::fromDER(der);
    return certificate.isNull() ? QString() : toQString(certificate.commonName());
}

QString sizeText(std::size_t bytes)
{
    return QCoreApplication::translate("QlumPushClient", "%1 bytes").arg(bytes);
}
} // namespace

// An opened file of a trust list, closed by whichever way it is left.
class QlumPushFile
{
public:
    QlumPushFile(QlumPushClient& client, const QlumPushGroup& group) : m_client(client), m_group(group) {}
    ~QlumPushFile()
    {
        if (m_isOpen)
            static_cast<void>(m_client.call(withHandle("Close", QlumPurpose::fileReading)));
    }
    QlumPushFile(const QlumPushFile&) = delete;
    QlumPushFile& operator=(const QlumPushFile&) = delete;

    UaStatus openForReading(OpcUa_UInt32 mask)
    {
        QlumPushClient::Call call = m_client.listCall(m_group, "OpenWithMasks", m_group.name);
        return putArgument(call.inputs, UaVariant(mask)) ? open(std::move(call))
                                                         : UaStatus(OpcUa_BadOutOfMemory);
    }
    UaStatus openForWriting()
    {
        QlumPushClient::Call call = m_client.listCall(m_group, "Open", m_group.name);
        return putArgument(call.inputs, UaVariant(::openForWriting)) ? open(std::move(call))
                                                                     : UaStatus(OpcUa_BadOutOfMemory);
    }
    UaStatus read(OpcUa_UInt32 length, UaByteString& piece)
    {
        QlumPushClient::Call call = withHandle("Read", QlumPurpose::fileReading);
        if (!putArgument(call.inputs, UaVariant(static_cast<OpcUa_Int32>(length))))
            return UaStatus(OpcUa_BadOutOfMemory);
        UaVariantArray outputs;
        const UaStatus status = m_client.call(std::move(call), outputs);
        if (status.isBad())
            return status;
        bool isThere = false;
        piece = outputs.length() > 0 ? UaVariant(outputs[0]).toByteString(&isThere) : UaByteString();
        return UaStatus(isThere ? OpcUa_Good : OpcUa_BadDecodingError);
    }
    UaStatus write(std::span<const OpcUa_Byte> piece)
    {
        QlumPushClient::Call call = withHandle("Write", QlumPurpose::trustList);
        return putArgument(call.inputs, UaVariant(UaByteString(piece))) ? m_client.call(std::move(call))
                                                                        : UaStatus(OpcUa_BadOutOfMemory);
    }
    UaStatus closeAndUpdate(std::size_t size, bool& isApplyRequired)
    {
        QlumPushClient::Call call = withHandle("CloseAndUpdate", QlumPurpose::trustList);
        call.what = m_group.name + QStringLiteral(", ") + sizeText(size);
        call.isRecorded = true;
        UaVariantArray outputs;
        const UaStatus status = m_client.call(std::move(call), outputs);
        if (status.isBad())
            return status; // a server that keeps the file open then has it closed
        m_isOpen = false;
        bool isThere = false;
        isApplyRequired = outputs.length() > 0 && UaVariant(outputs[0]).toBool(&isThere);
        return UaStatus(isThere ? OpcUa_Good : OpcUa_BadDecodingError);
    }

private:
    UaStatus open(QlumPushClient::Call call)
    {
        UaVariantArray outputs;
        const UaStatus status = m_client.call(std::move(call), outputs);
        if (status.isBad())
            return status;
        m_handle = outputs.length() > 0 ? UaVariant(outputs[0]).toUInt32(&m_isOpen) : 0;
        return UaStatus(m_isOpen ? OpcUa_Good : OpcUa_BadDecodingError);
    }
    QlumPushClient::Call withHandle(const char* method, const char* purpose)
    {
        QlumPushClient::Call call = m_client.listCall(m_group, method, QString());
        call.purpose = purpose;
        call.isRecorded = false; // one of many; what fails is recorded in any case
        static_cast<void>(putArgument(call.inputs, UaVariant(m_handle)));
        return call;
    }

    QlumPushClient& m_client;
    const QlumPushGroup& m_group;
    OpcUa_UInt32 m_handle = 0;
    bool m_isOpen = false;
};

QlumPushClient::Call QlumPushClient::listCall(const QlumPushGroup& group, const char* method,
                                              const QString& what) const
{
    const QString name = QLatin1String(method);
    return {group.trustList, group.methods.value(name), name, what, QlumPurpose::trustList, {}};
}

UaStatus QlumPushClient::readTrustList(const QlumPushGroup& group, OpcUa_UInt32 mask, QlumTrustList& list)
{
    const OpcUa_UInt32 length = group.mostBytes > 0 ? group.mostBytes : usualPiece;
    std::string content;
    {
        QlumPushFile file(*this, group);
        if (const UaStatus status = file.openForReading(mask); status.isBad())
            return status;
        for (;;) {
            if (isCancelled())
                return UaStatus(OpcUa_BadRequestCancelledByClient);
            UaByteString piece;
            if (const UaStatus status = file.read(length, piece); status.isBad())
                return status;
            // the end is a piece that is not full; servers that give less than asked for end with an empty
            // one
            if (piece.isEmpty())
                break;
            content += piece.view();
            if (content.size() > mostBytes)
                return UaStatus(OpcUa_BadEncodingLimitsExceeded);
        }
    }
    return qlumDecodeTrustList(UaByteString(static_cast<OpcUa_Int32>(content.size()),
                                            reinterpret_cast<const OpcUa_Byte*>(content.data())),
                               list);
}

UaStatus QlumPushClient::readLastUpdate(const QlumPushGroup& group, UaDateTime& time)
{
    time = UaDateTime();
    if (group.lastUpdateId.isNull())
        return UaStatus(OpcUa_BadNodeIdUnknown);
    const std::vector<UaVariant> values = readValues({group.lastUpdateId}, OpcUa_Attributes_Value);
    bool isThere = false;
    time = values.front().toDateTime(&isThere);
    return UaStatus(isThere ? OpcUa_Good : OpcUa_BadNotReadable);
}

UaStatus QlumPushClient::writeTrustList(const QlumPushServer& server, const QlumPushGroup& group,
                                        const QlumTrustList& list, bool& isApplyRequired)
{
    UaByteString bytes;
    if (const UaStatus status = qlumEncodeTrustList(list, bytes); status.isBad())
        return status;
    const std::span<const OpcUa_Byte> all = bytes.bytes();
    const OpcUa_UInt32 allowed = server.mostListBytes.value_or(0);
    if (allowed > 0 && all.size() > allowed) {
        const UaStatus tooLarge(OpcUa_BadEncodingLimitsExceeded);
        addStep(listCall(group, "Open", sizeText(all.size())), tooLarge);
        return tooLarge;
    }
    const std::size_t length = group.mostBytes > 0 ? group.mostBytes : usualPiece;
    QlumPushFile file(*this, group);
    if (const UaStatus status = file.openForWriting(); status.isBad())
        return status;
    for (std::size_t at = 0; at < all.size(); at += length) {
        if (isCancelled())
            return UaStatus(OpcUa_BadRequestCancelledByClient);
        const UaStatus status = file.write(all.subspan(at, std::min(length, all.size() - at)));
        if (status.isBad())
            return status;
    }
    return file.closeAndUpdate(all.size(), isApplyRequired);
}

UaStatus QlumPushClient::addCertificate(const QlumPushGroup& group, const UaByteString& der, bool isTrusted)
{
    Call made = listCall(group, "AddCertificate", nameOf(der));
    if (!putArgument(made.inputs, UaVariant(der)) || !putArgument(made.inputs, UaVariant(isTrusted)))
        return UaStatus(OpcUa_BadOutOfMemory);
    return call(std::move(made));
}

UaStatus QlumPushClient::removeCertificate(const QlumPushGroup& group, const UaByteString& der,
                                           bool isTrusted)
{
    const UaPkiCertificate certificate = UaPkiCertificate::fromDER(der);
    Call made = listCall(group, "RemoveCertificate", nameOf(der));
    if (!putArgument(made.inputs, UaVariant(certificate.thumbPrint().toHex())) ||
        !putArgument(made.inputs, UaVariant(isTrusted)))
        return UaStatus(OpcUa_BadOutOfMemory);
    return call(std::move(made));
}
