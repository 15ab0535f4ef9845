#include <servers/qlumpkifolders.h>

#include <app/api/qlumtext.h>
#include <certificates/qlumcertificatestore.h>
#include <uaclientsdk/clientsecurityinfo.h>

void qlumFillPkiFolders(UaClientSdk::ClientSecurityInfo& security)
{
    using Store = QlumCertificateStore;
    security.initializePkiProviderOpenSSL(
        toUaString(Store::trustedRevocationLists()), toUaString(Store::trustedCertificates()),
        toUaString(Store::issuerRevocationLists()), toUaString(Store::issuerCertificates()));
    security.initializePkiProviderHttps(toUaString(Store::tlsIssuerCertificates()),
                                        toUaString(Store::tlsIssuerRevocationLists()));
}
