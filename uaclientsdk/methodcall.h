// One method to call, and what it answered; OPC 10000-4, 5.11.2.
#pragma once

#include <uabase/values/uaarrays.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>

namespace UaClientSdk {

struct CallIn
{
    UaNodeId objectId;
    UaNodeId methodId;
    UaVariantArray inputArguments;
};

/// callResult is the method's own; the others are filled as far as the server says something.
struct CallOut
{
    UaStatus callResult;
    UaStatusCodeArray inputArgumentResults;
    UaDiagnosticInfoArray inputArgumentDiagnosticInfos;
    UaVariantArray outputArguments;
};

} // namespace UaClientSdk
