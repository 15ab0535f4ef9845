// What a certificate says besides names and keys.
#pragma once

#include <uabase/values/uaarrays.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastring.h>

class UaPkiCertificateInfo
{
public:
    UaString URI;              ///< the application URI
    UaStringArray IPAddresses; ///< "192.0.2.1", "2001:db8::1"
    UaStringArray DNSNames;
    UaString eMail;
    OpcUa_Int64 validTime = 0; ///< seconds from now; read back: from validFrom to validTo
    /// 0: the current time; read back: 0 as well when it needs more than 63 bits.
    OpcUa_Int64 serialNumber = 0;

    /// Only when read back from a certificate.
    UaDateTime validFrom;
    UaDateTime validTo;
};
