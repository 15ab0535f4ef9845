// What all certificate classes share: a list of what went wrong.
#pragma once

#include <uabase/values/uastring.h>

#include <string_view>
#include <vector>

/// No operation of the certificate classes throws. One that fails answers false or a null object, and the
/// object (the new one of a constructor or static function) says why here. Objects may be copied to other
/// threads; one object belongs to one thread at a time.
class UaPkiErrors
{
public:
    void addError(std::string_view text) const;
    /// Adds what was tried and then the crypto library's own texts, which are consumed.
    void addOpenSSLError(std::string_view text) const;
    void addErrors(const std::vector<UaString>& errors) const;
    [[nodiscard]] bool hasErrors() const { return !m_errors.empty(); }
    /// The texts, oldest first; the list is empty afterwards.
    std::vector<UaString> getErrors() const;
    /// The crypto library's words for an error that it found with a certificate.
    [[nodiscard]] static UaString verificationErrorText(int error);
    /// Of the crypto library that is used, as "3.0.11".
    [[nodiscard]] static UaString libraryVersion();

protected:
    UaPkiErrors() = default;
    ~UaPkiErrors() = default;
    UaPkiErrors(const UaPkiErrors&) = default;
    UaPkiErrors& operator=(const UaPkiErrors&) = default;
    UaPkiErrors(UaPkiErrors&&) = default;
    UaPkiErrors& operator=(UaPkiErrors&&) = default;

private:
    mutable std::vector<UaString> m_errors;
};
