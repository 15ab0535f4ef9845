#include <servers/qlumpkifolders.h>

#include <app/api/qlumtext.h>
#include <certificates/qlumcertificatestore.h>
#include <certificates/qlumtlsoverrules.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatus.h>

void qlumFillPkiFolders(UaClientSdk::ClientSecurityInfo& security)
{
    using Store = QlumCertificateStore;
    security.initializePkiProviderOpenSSL(
        toUaString(Store::trustedRevocationLists()), toUaString(Store::trustedCertificates()),
        toUaString(Store::issuerRevocationLists()), toUaString(Store::issuerCertificates()));
    security.initializePkiProviderHttps(toUaString(Store::tlsIssuerCertificates()),
                                        toUaString(Store::tlsIssuerRevocationLists()));
}

UaClientSdk::ClientSecurityInfo qlumSecurityForDiscovery(const QString& url)
{
    UaClientSdk::ClientSecurityInfo security;
    qlumFillPkiFolders(security);
    security.tlsCertificateFinding = [url](const UaStatus& status, const UaByteString& certificate) {
        return qlumIsTlsOverruled(url, certificate, status.statusCode());
    };
    return security;
}
