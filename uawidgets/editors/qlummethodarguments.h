// What a method declares of its arguments.
#pragma once
#include <app/api/qlumjob.h>
#include <app/api/qlumsessionservices.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uawidgets/editors/qlumcontextreader.h>
#include <uawidgets/editors/qlumvaluecontext.h>

#include <QString>

#include <memory>
#include <vector>

/// What is declared of one argument.
struct QlumMethodArgument
{
    QString name;             ///< as declared
    QString description;      ///< may be empty
    QString type;             ///< "Double", "Point[]"
    QlumValueContext context; ///< for its editor
};
using QlumMethodArguments = std::vector<QlumMethodArgument>;

/// Asks the server for the arguments of a method, in that job. Types that are just being read are waited
/// for; when that happens, waiting is called once, in the job.
[[nodiscard]] UaStatus qlumReadArguments(const std::shared_ptr<QlumSessionServices>& session,
                                         const QlumJob& job, const UaNodeId& methodId,
                                         QlumMethodArguments& inputs, QlumMethodArguments& outputs,
                                         const QlumContextReader::Waiting& waiting = {});
