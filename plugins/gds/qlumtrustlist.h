// A server's trust list: what it holds, how it travels, and what a change of it would do.
#pragma once
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatus.h>

#include <QString>
#include <QStringList>

#include <array>
#include <cstddef>
#include <vector>

/// The four lists of a trust list, in the order of their bits in its mask.
enum class QlumTrustPart {
    Trusted,     ///< certificates of applications, and of authorities all of whose certificates count
    TrustedCrls, ///< revocation lists of trusted authorities
    Issuers,     ///< authorities that only complete chains
    IssuerCrls   ///< their revocation lists
};
inline constexpr std::array qlumTrustParts{QlumTrustPart::Trusted, QlumTrustPart::TrustedCrls,
                                           QlumTrustPart::Issuers, QlumTrustPart::IssuerCrls};

/// The bit of a part in a mask.
[[nodiscard]] constexpr OpcUa_UInt32 qlumTrustMask(QlumTrustPart part)
{
    return 1U << static_cast<unsigned>(part);
}
/// "Trusted certificates", for the user.
[[nodiscard]] QString qlumTrustPartName(QlumTrustPart part);

/// Certificates and revocation lists in DER form; a part that the mask does not name is not known.
struct QlumTrustList
{
    OpcUa_UInt32 lists = OpcUa_TrustListMasks_All;  ///< mask of those that are there
    std::array<std::vector<UaByteString>, 4> parts; ///< by QlumTrustPart

    [[nodiscard]] std::vector<UaByteString>& operator[](QlumTrustPart part)
    {
        return parts.at(static_cast<std::size_t>(part));
    }
    [[nodiscard]] const std::vector<UaByteString>& operator[](QlumTrustPart part) const
    {
        return parts.at(static_cast<std::size_t>(part));
    }
    [[nodiscard]] bool contains(QlumTrustPart part, const UaByteString& der) const;
};

/// As the file of a trust list holds it.
UaStatus qlumEncodeTrustList(const QlumTrustList& list, UaByteString& bytes);
/// BadDecodingError for other bytes, and for some that follow.
UaStatus qlumDecodeTrustList(const UaByteString& bytes, QlumTrustList& list);

/// What of one part the other list does not have.
[[nodiscard]] std::vector<UaByteString> qlumMissingIn(const QlumTrustList& other, const QlumTrustList& list,
                                                      QlumTrustPart part);
/// A sentence for each part that differs: "Trusted certificates: 1 added, 2 removed". Order does not count.
[[nodiscard]] QStringList qlumTrustListChanges(const QlumTrustList& before, const QlumTrustList& after);
/// Makes the changes that lead from one list to the other in a third one, as far as it does not have them
/// yet.
void qlumRepeatTrustListChanges(const QlumTrustList& before, const QlumTrustList& after, QlumTrustList& list);
/// Authorities without a revocation list: servers refuse what such ones have signed. Their names.
[[nodiscard]] QStringList qlumIssuersWithoutCrl(const QlumTrustList& list);
/// Whether whoever has that certificate may connect: it is trusted, or an authority in its chain is.
[[nodiscard]] bool qlumIsTrustedBy(const QlumTrustList& list, const UaPkiCertificate& certificate);
/// Whether the change would keep somebody out who may connect now.
[[nodiscard]] bool qlumLocksOut(const QlumTrustList& before, const QlumTrustList& after,
                                const UaPkiCertificate& certificate);
/// What a file or a drop holds: certificates of a DER or PEM file, or one revocation list.
struct QlumTrustFile
{
    std::vector<UaByteString> certificates; ///< DER
    UaByteString revocationList;            ///< DER; empty when the file holds none
};
/// Empty for a file that holds neither.
[[nodiscard]] QlumTrustFile qlumReadTrustFile(const QString& path);
