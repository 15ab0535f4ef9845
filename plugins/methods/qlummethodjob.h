// The service calls of the method dialog; each function runs in a job.
#pragma once
#include <app/api/qlumjob.h>
#include <app/api/qlumsessionservices.h>
#include <plugins/methods/qlummethod.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uawidgets/editors/qlumcontextreader.h>
#include <uawidgets/editors/qlummethodarguments.h>

#include <memory>

/// Reads what there is to know before a method is called. Bad when the method itself cannot be read; what is
/// wrong with its arguments alone is told in the info. Data types of the arguments that are just being read
/// are waited for; when that happens, waiting is called once, in the job.
[[nodiscard]] UaStatus qlumReadMethod(const std::shared_ptr<QlumSessionServices>& session, const QlumJob& job,
                                      const UaNodeId& objectId, const UaNodeId& methodId,
                                      QlumMethodInfo& info, const QlumContextReader::Waiting& waiting);
/// Calls the method; declared are the outputs that it should have. Everything from the times on is filled in.
/// Data types of what it answers are waited for in the same way.
void qlumCallMethod(const std::shared_ptr<QlumSessionServices>& session, const QlumJob& job,
                    const QlumMethodArguments& declared, QlumMethodCall& call,
                    const QlumContextReader::Waiting& waiting);
