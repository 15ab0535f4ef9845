// The service calls of the reference view; each function runs in a job.
#pragma once
#include <app/api/qlumjob.h>
#include <app/api/qlumsessionservices.h>
#include <plugins/references/qlumreference.h>
#include <uabase/values/uastatus.h>

#include <deque>
#include <vector>

/// How many references are read at a time; the next ones when the user asks for them.
inline constexpr std::size_t qlumReferencePortion = 1000;

/// Reads the first references, or goes on where the rest begins. What is left over is put into the rest; a
/// job that was given up gives it back to the server. On failure the references are those that came before.
/// hasMore: whether there was a rest.
[[nodiscard]] UaStatus qlumReadReferences(const QlumJob& job, QlumSessionServices& session,
                                          const QlumReferenceQuery& query, bool goOn, QlumReferenceRest& rest,
                                          std::deque<QlumReference>& references, bool& hasMore);
/// Tells the server that nobody wants what is left over; does nothing when nothing is.
void qlumReleaseRest(const QlumJob& job, QlumSessionServices& session, QlumReferenceRest& rest);
/// All reference types of the server, each behind the one that it derives from; empty when it does not tell.
[[nodiscard]] std::vector<QlumReferenceType> qlumReadReferenceTypes(const QlumJob& job,
                                                                    QlumSessionServices& session);
