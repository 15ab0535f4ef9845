#include <uawidgets/editors/qlummethodarguments.h>

#include <app/api/qlumjob.h>
#include <app/api/qlumservertypes.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_types.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uastring.h>
#include <uawidgets/editors/qlumcontextreader.h>
#include <uawidgets/editors/qlumvaluefacts.h>

#include <QCoreApplication>

#include <algorithm>

namespace {
class ArgumentTexts
{
    Q_DECLARE_TR_FUNCTIONS(QlumMethodArguments)
};

QString rankText(OpcUa_Int32 rank)
{
    switch (rank) {
    case -3:
        return ArgumentTexts::tr(" or array");
    case -2:
        return ArgumentTexts::tr(" of any shape");
    case -1:
        return {};
    case 0:
        return ArgumentTexts::tr(" array");
    default: {
        constexpr OpcUa_Int32 mostShown = 10; // the number comes from the server
        QString text;
        for (OpcUa_Int32 i = 0; i < std::min(rank, mostShown); ++i)
            text += QStringLiteral("[]");
        return text;
    }
    }
}

QlumMethodArgument argumentOf(QlumContextReader& reader, const OpcUa_Argument& declared)
{
    QlumValueFacts facts;
    facts.dataType = UaNodeId(declared.DataType);
    facts.valueRank = declared.ValueRank;
    facts.arrayDimensions = UaUInt32Array(declared.NoOfArrayDimensions, declared.ArrayDimensions);
    QlumMethodArgument argument;
    argument.name = toQString(UaString(declared.Name));
    argument.description = toQString(UaLocalizedText(declared.Description).text());
    argument.context = reader.of(facts);
    const QString known = argument.context.typeName(facts.dataType);
    const QString type = known.isEmpty() ? toQString(facts.dataType.toXmlString()) : known;
    argument.type = type + rankText(declared.ValueRank);
    return argument;
}
} // namespace

UaStatus qlumReadArguments(const std::shared_ptr<QlumSessionServices>& session, const QlumJob& job,
                           const UaNodeId& methodId, QlumMethodArguments& inputs,
                           QlumMethodArguments& outputs, const QlumContextReader::Waiting& waiting)
{
    QlumSessionServices::Settings own = job.serviceSettings();
    UaArguments declaredInputs;
    UaArguments declaredOutputs;
    const UaStatus status = session->getMethodArguments(own, methodId, declaredInputs, declaredOutputs);
    if (status.isBad())
        return status;
    QlumContextReader reader(session, job, waiting);
    for (const OpcUa_Argument& argument : declaredInputs)
        inputs.push_back(argumentOf(reader, argument));
    for (const OpcUa_Argument& argument : declaredOutputs)
        outputs.push_back(argumentOf(reader, argument));
    return status;
}
