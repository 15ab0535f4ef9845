// A small certificate authority in a folder of its own.
#pragma once

#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkicsr.h>
#include <uabase/uapkicpp/uapkierrors.h>
#include <uabase/uapkicpp/uapkiidentity.h>
#include <uabase/uapkicpp/uapkirevocationlist.h>
#include <uabase/uapkicpp/uapkirsakeypair.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastring.h>

#include <functional>

/// An authority that signs certificates of applications but no further authorities (path length 0). Its
/// folder holds certificate, revocation list, key and the serial numbers that were given out, none of them
/// twice; the key is protected by a password and is in memory only while the object lives. The folder must
/// not be one of the stores. Null when something failed, which the errors tell.
class UaPkiAuthority : public UaPkiErrors
{
public:
    UaPkiAuthority() = default;

    /// Makes a new one, with an empty revocation list that is valid as long as the certificate. Makes the
    /// folder, which must hold no authority yet; refuses an empty password. isCancelled as for
    /// UaPkiRsaKeyPair, or null.
    [[nodiscard]] static UaPkiAuthority create(const UaString& folder, const UaPkiIdentity& name,
                                               OpcUa_Int64 validTime, const UaString& password,
                                               const std::function<bool()>& isCancelled);
    /// Reads one; null as well for a wrong password.
    [[nodiscard]] static UaPkiAuthority open(const UaString& folder, const UaString& password);
    /// Its certificate, for which no password is needed; null when the folder holds no authority.
    [[nodiscard]] static UaPkiCertificate certificateIn(const UaString& folder);
    /// The same of its revocation list.
    [[nodiscard]] static UaPkiRevocationList revocationListIn(const UaString& folder);

    [[nodiscard]] bool isNull() const { return m_certificate.isNull(); }
    [[nodiscard]] const UaPkiCertificate& certificate() const { return m_certificate; }
    [[nodiscard]] const UaPkiRevocationList& revocationList() const { return m_revocationList; }
    /// Issues what the request asks for; not for longer than the authority itself is valid. The serial number
    /// stands in the folder before the certificate is handed out. Null on a failure.
    [[nodiscard]] UaPkiCertificate issue(const UaPkiCSR& request, OpcUa_Int64 validTime) const;

private:
    [[nodiscard]] bool takeSerial(const UaString& serial) const;

    UaString m_folder;
    UaPkiCertificate m_certificate;
    UaPkiRevocationList m_revocationList;
    UaPkiRsaKeyPair m_keyPair;
};
