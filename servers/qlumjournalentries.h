// What a call that changes something says to the journal.
#pragma once
#include <app/api/qlumjournal.h>
#include <uaclientsdk/servicewatch.h>

#include <QString>

#include <vector>

/// An entry for each item of the request, without time, server, user and status. Values that are secrets are
/// left out. The request must be one that changes something, or may.
[[nodiscard]] std::vector<QlumJournalEntry> qlumJournalEntries(const UaClientSdk::ServiceCall& call);
/// Gives each entry the status that its item has come to.
void qlumTakeOutcome(std::vector<QlumJournalEntry>& entries, const UaClientSdk::ServiceOutcome& outcome);
/// The user that a request to activate a session names: "anonymous" is empty, a certificate is its
/// thumbprint.
[[nodiscard]] QString qlumUserOf(const OpcUa_ActivateSessionRequest& request);
