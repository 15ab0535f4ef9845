#include <plugins/gds/qlumtrustlist.h>

#include <app/api/qlumtext.h>
#include <opcua/opcua_encodeable.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/uapkicpp/uapkicertificatecollection.h>
#include <uabase/uapkicpp/uapkirevocationlist.h>
#include <uabase/values/uaarrays.h>

#include <QCoreApplication>

#include <algorithm>
#include <ranges>

namespace {
constexpr int longestChain = 10;

// Holds what the stack has allocated for the structure.
struct RawTrustList
{
    RawTrustList() { OpcUa_EncodeableObject_Initialize(&OpcUa_TrustListDataType_EncodeableType, &value); }
    ~RawTrustList() { OpcUa_EncodeableObject_Clear(&OpcUa_TrustListDataType_EncodeableType, &value); }
    RawTrustList(const RawTrustList&) = delete;
    RawTrustList& operator=(const RawTrustList&) = delete;

    OpcUa_TrustListDataType value;
};

struct RawPart
{
    OpcUa_Int32* count;
    OpcUa_ByteString** elements;
};

RawPart partOf(OpcUa_TrustListDataType& raw, QlumTrustPart part)
{
    switch (part) {
    case QlumTrustPart::Trusted:
        return {&raw.NoOfTrustedCertificates, &raw.TrustedCertificates};
    case QlumTrustPart::TrustedCrls:
        return {&raw.NoOfTrustedCrls, &raw.TrustedCrls};
    case QlumTrustPart::Issuers:
        return {&raw.NoOfIssuerCertificates, &raw.IssuerCertificates};
    case QlumTrustPart::IssuerCrls:
        break;
    }
    return {&raw.NoOfIssuerCrls, &raw.IssuerCrls};
}

UaPkiCertificate certificateOf(const UaByteString& der)
{
    return UaPkiCertificate::fromDER(der);
}

bool isIssuer(const UaPkiCertificate& certificate, const UaPkiCertificate& issuer)
{
    return !issuer.isNull() && certificate.isIssuedBy(issuer) &&
           certificate.verifySignature(issuer.publicKey());
}

// Among the trusted ones first. Null when none of the list has issued it.
UaByteString issuerIn(const QlumTrustList& list, const UaPkiCertificate& certificate)
{
    for (const QlumTrustPart part : {QlumTrustPart::Trusted, QlumTrustPart::Issuers})
        for (const UaByteString& der : list[part])
            if (isIssuer(certificate, certificateOf(der)))
                return der;
    return UaByteString();
}

bool hasCrl(const QlumTrustList& list, const UaPkiCertificate& issuer)
{
    for (const QlumTrustPart part : {QlumTrustPart::TrustedCrls, QlumTrustPart::IssuerCrls})
        for (const UaByteString& der : list[part])
            if (UaPkiRevocationList::fromDER(der.toByteArray()).verify(issuer.publicKey()))
                return true;
    return false;
}
} // namespace

QString qlumTrustPartName(QlumTrustPart part)
{
    switch (part) {
    case QlumTrustPart::Trusted:
        return QCoreApplication::translate("QlumTrustList", "Trusted certificates");
    case QlumTrustPart::TrustedCrls:
        return QCoreApplication::translate("QlumTrustList", "Trusted revocation lists");
    case QlumTrustPart::Issuers:
        return QCoreApplication::translate("QlumTrustList", "Issuer certificates");
    case QlumTrustPart::IssuerCrls:
        break;
    }
    return QCoreApplication::translate("QlumTrustList", "Issuer revocation lists");
}

bool QlumTrustList::contains(QlumTrustPart part, const UaByteString& der) const
{
    return std::ranges::find((*this)[part], der) != (*this)[part].end();
}

// ---- bytes

UaStatus qlumEncodeTrustList(const QlumTrustList& list, UaByteString& bytes)
{
    RawTrustList raw;
    raw.value.SpecifiedLists = list.lists;
    for (const QlumTrustPart part : qlumTrustParts) {
        if (!(list.lists & qlumTrustMask(part)))
            continue;
        UaByteStringArray elements(static_cast<OpcUa_UInt32>(list[part].size()));
        for (OpcUa_UInt32 i = 0; i < elements.length(); ++i)
            if (OpcUa_IsBad(list[part][i].copyTo(&elements[i])))
                return UaStatus(OpcUa_BadOutOfMemory);
        const RawPart target = partOf(raw.value, part);
        elements.detach(target.count, target.elements);
    }
    OpcUa_ByteString encoded;
    OpcUa_ByteString_Initialize(&encoded);
    const OpcUa_StatusCode status =
        OpcUa_EncodeableObject_EncodeBinary(&OpcUa_TrustListDataType_EncodeableType, &raw.value, &encoded);
    bytes.attach(&encoded);
    return UaStatus(status);
}

UaStatus qlumDecodeTrustList(const UaByteString& bytes, QlumTrustList& list)
{
    RawTrustList raw;
    std::size_t consumed = 0;
    const OpcUa_StatusCode status = OpcUa_EncodeableObject_DecodeBinary(
        &OpcUa_TrustListDataType_EncodeableType, bytes.data(), bytes.bytes().size(), &raw.value, &consumed);
    if (OpcUa_IsBad(status))
        return UaStatus(status);
    if (consumed != bytes.bytes().size())
        return UaStatus(OpcUa_BadDecodingError);
    list = {};
    list.lists = raw.value.SpecifiedLists;
    for (const QlumTrustPart part : qlumTrustParts) {
        const RawPart source = partOf(raw.value, part);
        for (OpcUa_Int32 i = 0; i < *source.count; ++i)
            list[part].emplace_back((*source.elements)[i]);
    }
    return {};
}

// ---- differences

std::vector<UaByteString> qlumMissingIn(const QlumTrustList& other, const QlumTrustList& list,
                                        QlumTrustPart part)
{
    std::vector<UaByteString> missing;
    for (const UaByteString& der : list[part])
        if (!other.contains(part, der))
            missing.push_back(der);
    return missing;
}

QStringList qlumTrustListChanges(const QlumTrustList& before, const QlumTrustList& after)
{
    QStringList changes;
    for (const QlumTrustPart part : qlumTrustParts) {
        if (!(before.lists & after.lists & qlumTrustMask(part)))
            continue;
        const std::size_t added = qlumMissingIn(before, after, part).size();
        const std::size_t removed = qlumMissingIn(after, before, part).size();
        if (added + removed > 0)
            changes.append(QCoreApplication::translate("QlumTrustList", "%1: %2 added, %3 removed")
                               .arg(qlumTrustPartName(part))
                               .arg(added)
                               .arg(removed));
    }
    return changes;
}

void qlumRepeatTrustListChanges(const QlumTrustList& before, const QlumTrustList& after, QlumTrustList& list)
{
    for (const QlumTrustPart part : qlumTrustParts) {
        for (const UaByteString& der : qlumMissingIn(after, before, part))
            std::erase(list[part], der);
        for (const UaByteString& der : qlumMissingIn(before, after, part))
            if (!list.contains(part, der))
                list[part].push_back(der);
    }
}

// ---- judgement

QStringList qlumIssuersWithoutCrl(const QlumTrustList& list)
{
    QStringList names;
    for (const QlumTrustPart part : {QlumTrustPart::Trusted, QlumTrustPart::Issuers})
        for (const UaByteString& der : list[part]) {
            const UaPkiCertificate certificate = certificateOf(der);
            // those that sign themselves may also be applications that call themselves authorities
            if (!certificate.isNull() && certificate.isCA() && !hasCrl(list, certificate))
                names.append(toQString(certificate.commonName()));
        }
    names.removeDuplicates();
    return names;
}

bool qlumIsTrustedBy(const QlumTrustList& list, const UaPkiCertificate& certificate)
{
    UaPkiCertificate link = certificate;
    for (int depth = 0; depth < longestChain && !link.isNull(); ++depth) {
        if (list.contains(QlumTrustPart::Trusted, link.toByteStringDER()))
            return true;
        if (link.isSelfSigned())
            return false;
        const UaByteString issuer = issuerIn(list, link);
        link = issuer.isEmpty() ? UaPkiCertificate() : certificateOf(issuer);
    }
    return false;
}

bool qlumLocksOut(const QlumTrustList& before, const QlumTrustList& after,
                  const UaPkiCertificate& certificate)
{
    return qlumIsTrustedBy(before, certificate) && !qlumIsTrustedBy(after, certificate);
}

// ---- files

QlumTrustFile qlumReadTrustFile(const QString& path)
{
    QlumTrustFile file;
    const UaPkiRevocationList list = UaPkiRevocationList::fromFile(toUaString(path));
    if (!list.isNull()) {
        file.revocationList = UaByteString(list.toDER());
        return file;
    }
    const UaPkiCertificateCollection certificates = UaPkiCertificateCollection::fromFile(toUaString(path));
    for (int i = 0; i < certificates.size(); ++i)
        file.certificates.push_back(certificates[i].toByteStringDER());
    return file;
}
