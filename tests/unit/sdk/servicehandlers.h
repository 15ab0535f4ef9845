// Answers of the scripted stack for any service that takes one array and answers with another.
#pragma once

#include <opcua/opcua.h>
#include <tests/support/fakestack.h>
#include <uabase/values/uaarray.h>
#include <uabase/values/uaarrays.h>

#include <string>
#include <vector>

/// Blocks that came, by the number of their items.
using BlockSizes = std::vector<int>;

/// Answers each request with as many initialised results as it has items, or with surplus more (or fewer).
template <typename Request, typename Response, typename Item, typename Result>
FakeStack::Handler resultsFor(OpcUa_Int32 Request::*itemCount, Item* Request::*,
                              OpcUa_Int32 Response::*resultCount, Result* Response::*results, int surplus = 0,
                              BlockSizes* blocks = nullptr)
{
    return [=](const void* request, void* response) {
        const auto& in = *static_cast<const Request*>(request);
        auto& out = *static_cast<Response*>(response);
        if (blocks)
            blocks->push_back(in.*itemCount);
        UaArray<Result> answer(static_cast<OpcUa_UInt32>(in.*itemCount + surplus));
        answer.detach(&(out.*resultCount), &(out.*results));
        return static_cast<OpcUa_StatusCode>(OpcUa_Good);
    };
}

// The same by the names of the standard's fields.
#define RESULTS_FOR(Service, Items, ...)                                                                     \
    resultsFor(&OpcUa_##Service##Request::NoOf##Items, &OpcUa_##Service##Request::Items,                     \
               &OpcUa_##Service##Response::NoOfResults,                                                      \
               &OpcUa_##Service##Response::Results __VA_OPT__(, ) __VA_ARGS__)

/// A handler that gets its arguments typed.
template <typename Request, typename Response, typename Function>
FakeStack::Handler typed(Function function)
{
    return [function](const void* request, void* response) -> OpcUa_StatusCode {
        function(*static_cast<const Request*>(request), *static_cast<Response*>(response));
        return OpcUa_Good;
    };
}

inline UaReadValueIds numberedNodes(OpcUa_UInt32 count)
{
    UaReadValueIds nodes(count);
    for (OpcUa_UInt32 i = 0; i < count; ++i) {
        nodes[i].NodeId.Identifier.Numeric = 100000 + i; // reads as its own number
        nodes[i].AttributeId = OpcUa_Attributes_Value;
    }
    return nodes;
}
