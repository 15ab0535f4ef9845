// The name of a certificate's subject or issuer.
#pragma once

#include <uabase/values/uastring.h>

/// Empty parts are absent from the name. A part that a foreign name holds several times is joined with ", ";
/// control characters in foreign names are written as `\n`, `\x00` and so on, so that no name hides its end.
class UaPkiIdentity
{
public:
    UaString organization;     ///< O
    UaString organizationUnit; ///< OU
    UaString locality;         ///< L
    UaString state;            ///< ST
    UaString country;          ///< C, two letters
    UaString commonName;       ///< CN
    UaString domainComponent;  ///< DC

    [[nodiscard]] bool isEmpty() const;
    friend bool operator==(const UaPkiIdentity&, const UaPkiIdentity&) = default;
};
