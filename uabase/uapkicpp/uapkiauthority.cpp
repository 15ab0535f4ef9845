#include <uabase/uapkicpp/uapkiauthority.h>

#include <uabase/uapkicpp/uapki_p.h>
#include <uabase/uapkicpp/uapkicertificateinfo.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

namespace {
constexpr int authorityBits = 3072;
constexpr int mostTries = 8; // of a random number of 63 bits

UaString authorityFile(const UaString& folder, const char* name)
{
    return UaString((folder.toStdString() + '/' + name).c_str());
}
UaString authorityCertificate(const UaString& folder)
{
    return authorityFile(folder, "authority.der");
}
UaString authorityKey(const UaString& folder)
{
    return authorityFile(folder, "authority_key.pem");
}
UaString authorityList(const UaString& folder)
{
    return authorityFile(folder, "authority.crl");
}
UaString authoritySerials(const UaString& folder)
{
    return authorityFile(folder, "serials.txt");
}

bool makePrivateFolder(const UaString& folder, const UaPkiErrors& errors)
{
    std::error_code error;
    std::filesystem::create_directories(folder.toStdString(), error);
    if (!error)
        std::filesystem::permissions(folder.toStdString(), std::filesystem::perms::owner_all, error);
    if (error)
        errors.addError("Folder " + folder.toStdString() + " cannot be made: " + error.message());
    return !error;
}
} // namespace

UaPkiAuthority UaPkiAuthority::create(const UaString& folder, const UaPkiIdentity& name,
                                      OpcUa_Int64 validTime, const UaString& password,
                                      const std::function<bool()>& isCancelled)
{
    UaPkiAuthority made;
    if (password.isEmpty()) {
        made.addError("The key of an authority needs a password");
        return made;
    }
    if (std::filesystem::exists(authorityKey(folder).toStdString())) {
        made.addError("Folder " + folder.toStdString() + " holds an authority already");
        return made;
    }
    if (!makePrivateFolder(folder, made))
        return made;
    const UaPkiRsaKeyPair pair(authorityBits, [&isCancelled] { return isCancelled && isCancelled(); });
    UaPkiCertificateInfo info;
    info.validTime = validTime;
    UaPkiCertificate certificate;
    if (!pair.isNull())
        if (X509* object = UaPki::makeIssuingAuthority(info, name, UaPkiAccess::get(pair), certificate))
            UaPkiAccess::set(certificate, object);
    UaPkiRevocationList list(validTime, name, 1);
    made.m_folder = folder;
    // the certificate last: without it the folder holds no authority
    if (certificate.isNull() || !list.sign(pair.privateKey()) ||
        !made.takeSerial(certificate.serialNumber()) || !list.toDERFile(authorityList(folder)) ||
        !pair.toPEMFile(authorityKey(folder), password) ||
        !certificate.toDERFile(authorityCertificate(folder))) {
        made.addErrors(pair.getErrors());
        made.addErrors(certificate.getErrors());
        made.addErrors(list.getErrors());
        return made;
    }
    made.m_certificate = certificate;
    made.m_revocationList = list;
    made.m_keyPair = pair;
    return made;
}

UaPkiAuthority UaPkiAuthority::open(const UaString& folder, const UaString& password)
{
    UaPkiAuthority opened;
    const UaPkiCertificate certificate = certificateIn(folder);
    const UaPkiRsaKeyPair pair = UaPkiRsaKeyPair::fromPEMFile(authorityKey(folder), password);
    if (certificate.isNull() || pair.isNull() ||
        !UaPkiRsaKeyPair::checkKeyPair(certificate.publicKey(), pair.privateKey())) {
        opened.addErrors(certificate.getErrors());
        opened.addErrors(pair.getErrors());
        opened.addError("The authority cannot be opened: the password is wrong, or its files are damaged");
        return opened;
    }
    opened.m_folder = folder;
    opened.m_certificate = certificate;
    opened.m_revocationList = revocationListIn(folder);
    opened.m_keyPair = pair;
    return opened;
}

UaPkiCertificate UaPkiAuthority::certificateIn(const UaString& folder)
{
    return UaPkiCertificate::fromDERFile(authorityCertificate(folder));
}

UaPkiRevocationList UaPkiAuthority::revocationListIn(const UaString& folder)
{
    return UaPkiRevocationList::fromFile(authorityList(folder));
}

// Written down before it is used, so that no crash gives it out again.
bool UaPkiAuthority::takeSerial(const UaString& serial) const
{
    const std::string file = authoritySerials(m_folder).toStdString();
    const std::string wanted = serial.toStdString();
    std::ifstream known(file);
    for (std::string line; std::getline(known, line);)
        if (line == wanted)
            return false;
    std::ofstream more(file, std::ios::app);
    more << wanted << '\n';
    more.flush();
    if (!more)
        addError("File " + file + " cannot be written");
    return static_cast<bool>(more);
}

UaPkiCertificate UaPkiAuthority::issue(const UaPkiCSR& request, OpcUa_Int64 validTime) const
{
    const UaDateTime from = UaDateTime::now();
    const UaDateTime wanted = UaDateTime::fromTime_t(from.toTime_t() + validTime);
    const UaDateTime to = std::min(wanted, m_certificate.validTo());
    for (int attempt = 0; attempt < mostTries; ++attempt) {
        UaPkiCertificate certificate =
            UaPkiCertificate::fromCSR(request, m_certificate, m_keyPair.privateKey(), from, to);
        if (certificate.isNull() || takeSerial(certificate.serialNumber()))
            return certificate;
        if (hasErrors())
            break;
    }
    UaPkiCertificate none;
    none.addError("The serial number cannot be written down");
    return none;
}
