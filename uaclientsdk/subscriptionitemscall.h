// Services about monitored items that do not wait for their answer.
#pragma once

#include <functional>
#include <memory>

#include <uabase/uarefcounter.h>
#include <uaclientsdk/blockservice.h>
#include <uaclientsdk/pendingcall.h>
#include <uaclientsdk/uasubscription_p.h>

namespace UaClientSdk {

template <class Request>
using BeginFunction = OpcUa_StatusCode (*)(OpcUa_Channel, const Request*, OpcUa_Channel_PfnRequestComplete,
                                           void*);

// One such call: sends a block of its items, and when that is answered the next, and completes with all
// results in order or with the first bad status. It counts as a transaction of the session and as a callback
// of the subscription from its begin, so that neither disconnect nor deleteSubscription overtakes it.
template <class Request, class Response, class Item, class Result>
class SubscriptionItemsCall
{
public:
    using Service = BlockService<Request, Response, Item, Result>;
    using Completion = void (UaSubscriptionCallback::*)(OpcUa_UInt32, const UaStatus&, const UaArray<Result>&,
                                                        const UaDiagnosticInfos&);

    // prepare(request) sets what is the same in each block. Good when the completion will come.
    static UaStatus begin(const UaRefPtr<UaSubscriptionPrivate>& subscription, const Service& service,
                          BeginFunction<Request> function, const ServiceSettings& settings,
                          const UaArray<Item>& items, OpcUa_UInt32 transactionId, Completion completion,
                          std::function<void(Request&)> prepare)
    {
        UaTrace::tInOut("--> UaSession::%s begin count=%u [Session=%u]", service.names.method, items.length(),
                        subscription->context.traceId);
        auto state = std::make_shared<State>(State{subscription, service, function, settings, items,
                                                   transactionId, completion, std::move(prepare)});
        UaStatus status = checkReady(subscription->context, service.names, items.length());
        if (status.isGood()) {
            status = enter(*state);
        }
        if (status.isGood()) {
            status = sendNext(state);
            if (status.isBad()) {
                leave(*state);
            }
        }
        UaTrace::tInOut("<-- UaSession::%s begin [ret=0x%lx]", service.names.method,
                        static_cast<unsigned long>(status.statusCode()));
        return status;
    }

private:
    struct State
    {
        UaRefPtr<UaSubscriptionPrivate> subscription;
        const Service& service;
        BeginFunction<Request> function;
        ServiceSettings settings;
        UaArray<Item> items;
        OpcUa_UInt32 transactionId;
        Completion completion;
        std::function<void(Request&)> prepare;
        UaArray<Result> results = {};
        UaDiagnosticInfos diagnosticInfos = {};
        OpcUa_UInt32 blockLength = 0; // of the block that is under way
    };
    using StatePtr = std::shared_ptr<State>;

    class Call : public PendingCall
    {
    public:
        explicit Call(StatePtr state) : PendingCall(state->subscription->context), m_state(std::move(state))
        {
        }

        void execute() override
        {
            UaStatus result(status());
            if (result.isGood()) {
                auto* const answer = response<Response>(m_state->service.responseType);
                result = answer ? takeBlock(*m_state, *answer) : UaStatus(OpcUa_BadUnknownResponse);
            }
            if (result.isGood() && m_state->results.length() < m_state->items.length()) {
                result = checkReady(session(), m_state->service.names, 1);
                result = result.isGood() ? sendNext(m_state) : result;
                if (result.isGood()) {
                    return; // the next answer goes on
                }
            }
            complete(*m_state, result);
        }

    private:
        StatePtr m_state;
    };

    // What the begin takes and leave gives back.
    static UaStatus enter(State& state)
    {
        SessionContext& context = state.subscription->context;
        SessionLock lock(context.mutex);
        if (!context.connectRequested) {
            return UaStatus(OpcUa_BadConnectionClosed);
        }
        if (!state.subscription->valid) {
            return UaStatus(OpcUa_BadSubscriptionIdInvalid);
        }
        ++state.subscription->callbacksInProgress;
        context.transactions.begin();
        return UaStatus();
    }

    static void leave(State& state)
    {
        {
            const SubscriptionCall call(*state.subscription, SubscriptionCall::Kind::Completion);
        }
        state.subscription->context.transactions.end();
    }

    static UaStatus sendNext(const StatePtr& state)
    {
        SessionContext& context = state->subscription->context;
        BorrowingRequest<Request> request(state->service.requestType);
        const OpcUa_UInt32 done = state->results.length();
        {
            SessionLock lock(context.mutex);
            context.fillRequestHeaderLocked(state->settings, request->RequestHeader);
            const OpcUa_UInt32 most =
                std::max<OpcUa_UInt32>(context.connectInfo.maxOperationsPerServiceCall, 1);
            state->blockLength = std::min(most, state->items.length() - done);
        }
        state->prepare(*request);
        (*request).*state->service.itemCount = static_cast<OpcUa_Int32>(state->blockLength);
        (*request).*state->service.items = state->items.rawData() + done;
        std::unique_ptr<PendingCall> call = std::make_unique<Call>(state);
        return UaStatus(PendingCall::send(call, state->service.names.stackName, state->function,
                                          context.channel, *request));
    }

    static UaStatus takeBlock(State& state, Response& answer)
    {
        const UaStatus result(answer.ResponseHeader.ServiceResult);
        if (result.isBad()) {
            return result;
        }
        const UaStatus counts = checkCounts(state.service.names, state.blockLength,
                                            answer.*state.service.resultCount, answer.NoOfDiagnosticInfos);
        if (counts.isBad()) {
            return counts;
        }
        UaArray<Result> block;
        block.attachFrom(&(answer.*state.service.resultCount), &(answer.*state.service.results));
        const bool merged =
            takeDiagnostics(answer, state.results.length(), state.blockLength, state.diagnosticInfos);
        return merged && state.results.appendMoved(std::move(block)) ? result
                                                                     : UaStatus(OpcUa_BadOutOfMemory);
    }

    static void complete(State& state, const UaStatus& status)
    {
        struct Guard
        {
            ~Guard() { transactions.end(); }
            TransactionCounter& transactions;
        } guard{state.subscription->context.transactions};
        if (status.isBad()) {
            state.results.clear();
            state.diagnosticInfos.clear();
        }
        const SubscriptionCall call(*state.subscription, SubscriptionCall::Kind::Completion);
        UaTrace::tIfCall("CALL SubscriptionCallback::%sComplete [status=0x%lx]", state.service.names.method,
                         static_cast<unsigned long>(status.statusCode()));
        (state.subscription->callback.*state.completion)(state.transactionId, status, state.results,
                                                         state.diagnosticInfos);
    }
};

} // namespace UaClientSdk
