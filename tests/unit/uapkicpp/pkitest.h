// Keys and certificates for the tests; the keys are made once, because that is what takes time.
#pragma once

#include <tests/support/temporaryfolder.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkicertificateinfo.h>
#include <uabase/uapkicpp/uapkiidentity.h>
#include <uabase/uapkicpp/uapkirsakeypair.h>
#include <uabase/values/uastring.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace PkiTest {

inline const UaPkiRsaKeyPair& applicationKey()
{
    static const UaPkiRsaKeyPair key(2048);
    return key;
}

inline const UaPkiRsaKeyPair& authorityKey()
{
    static const UaPkiRsaKeyPair key(2048);
    return key;
}

inline UaPkiIdentity identity(const char* commonName)
{
    UaPkiIdentity identity;
    identity.commonName = commonName;
    identity.organization = "Korvanda";
    identity.organizationUnit = "Tools";
    identity.locality = "Delft";
    identity.state = "South";
    identity.country = "NL";
    identity.domainComponent = "plant";
    return identity;
}

inline UaPkiCertificateInfo info()
{
    UaPkiCertificateInfo info;
    info.URI = "urn:host:Korvanda, Inc:Tavelin@host";
    for (const char* name : {"host", "host.example"})
        EXPECT_TRUE(info.DNSNames.append(*UaString(name).get()));
    for (const char* address : {"192.0.2.17", "2001:db8::17"})
        EXPECT_TRUE(info.IPAddresses.append(*UaString(address).get()));
    info.eMail = "service@host.example";
    info.validTime = 157680000;
    info.serialNumber = 0x1122334455667788;
    return info;
}

inline UaPkiCertificate application()
{
    return UaPkiCertificate(info(), identity("Tavelin@host"), applicationKey());
}

inline UaPkiCertificate authority()
{
    UaPkiCertificateInfo about;
    about.validTime = 3600;
    return UaPkiCertificate(about, identity("Plant Authority"), authorityKey(), true);
}

inline std::vector<std::string> texts(const UaStringArray& array)
{
    std::vector<std::string> result;
    for (const OpcUa_String& text : array)
        result.push_back(UaString(text).toStdString());
    return result;
}

inline std::string joined(const std::vector<UaString>& errors)
{
    std::string result;
    for (const UaString& error : errors)
        result += error.toStdString() + '\n';
    return result;
}

} // namespace PkiTest
