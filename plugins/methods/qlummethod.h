// A method, its arguments and its calls.
#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <opcua/opcua_types.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlummethodarguments.h>

#include <QDateTime>
#include <QString>

#include <vector>

/// An object that a method can be called on.
struct QlumMethodOwner
{
    UaNodeId id;
    QString name;
};

/// What the server says of a method.
struct QlumMethodInfo
{
    QString name;
    QString description;                 ///< may be empty
    std::vector<QlumMethodOwner> owners; ///< the object; of a method of a type, the objects of that type
    bool isOfType = false;               ///< it was found on a type, so one of the owners has to be chosen
    bool isExecutable = true;            ///< as far as the server says so, for this user
    QlumMethodArguments inputs;
    QlumMethodArguments outputs;
    QString argumentsFault; ///< why the arguments are not known, in words; empty when they are
};

/// One call and what became of it.
struct QlumMethodCall
{
    /// How it ended.
    enum End {
        Answered, ///< by the server
        GivenUp   ///< by the user; nobody knows what became of it
    };

    UaNodeId objectId;
    UaNodeId methodId;
    std::vector<UaVariant> inputs;
    OpcUa_UInt32 timeout = 0;       ///< milliseconds
    OpcUa_UInt32 requestHandle = 0; ///< by which the server is asked to end it

    QDateTime begun;
    qint64 milliseconds = 0; ///< until it ended
    End end = Answered;
    UaStatus service;                           ///< of the service call
    UaStatusCode result;                        ///< the method's own, when the service is good
    std::vector<OpcUa_StatusCode> inputResults; ///< one for each input, or none
    std::vector<UaVariant> outputs;
    QlumMethodArguments inputArguments;  ///< what was declared of the inputs
    QlumMethodArguments outputArguments; ///< those that were declared, and others that came besides
};
