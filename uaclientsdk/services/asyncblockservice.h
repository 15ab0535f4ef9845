// The asynchronous form of the services of blockservice.h.
#pragma once

#include <uabase/system/uatrace.h>
#include <uabase/values/uaarray.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/services/blockservice.h>
#include <uaclientsdk/services/pendingcall.h>
#include <uaclientsdk/uasessioncallback.h>

#include <algorithm>
#include <memory>
#include <new>
#include <span>
#include <utility>

namespace UaClientSdk {

/// A call on its way from block to block. The transaction ends with it, after everything else of it has gone.
template <typename Service, typename Prepare, typename Complete>
struct BlockTransaction
{
    Transaction transaction;
    const Service& service;
    ServiceSettings settings;
    Prepare prepare;
    Complete complete;
    BlockPlan plan;
    OpcUa_UInt32 length = 0;                     ///< items of all blocks
    OpcUa_UInt32 first = 0;                      ///< of the block that is under way
    UaArray<typename Service::ItemType> items{}; ///< all of them, when there may be another block
    UaArray<typename Service::ResultType> results{};
    UaDiagnosticInfos diagnosticInfos{};

    [[nodiscard]] OpcUa_UInt32 blockLength() const { return std::min(plan.limit, length - first); }
};

/// One block's request. The next block is sent from the pool when its predecessor is answered.
template <typename Service, typename Prepare, typename Complete>
class AsyncBlock : public PendingCall
{
public:
    using State = BlockTransaction<Service, Prepare, Complete>;

    AsyncBlock(SessionContext& session, std::unique_ptr<State>&& state)
        : PendingCall(session), m_state(std::move(state))
    {
    }

    /// Sends the block of all items that state names. Good: the call goes on by itself. Bad: state is left to
    /// the caller.
    static UaStatus send(SessionContext& session, std::unique_ptr<State>& state,
                         std::span<const typename Service::ItemType> items)
    {
        for (;;) {
            const OpcUa_UInt32 count = state->blockLength();
            const UaStatus status = sendOnce(session, state, items.subspan(state->first, count));
            if (!state || !state->plan.shrinkAfter(status, count))
                return status;
        }
    }

    void execute() override
    {
        UaTrace::tInOut("--> UaSessionPrivate::%s [Session=%u]", m_state->service.names.handler,
                        session().traceId);
        const OpcUa_UInt32 count = m_state->blockLength();
        UaStatus status = take();
        bool goesOn = false;
        if (!status.isBad()) {
            rememberSize(session(), m_state->plan);
            m_state->first += count;
            goesOn = m_state->first < m_state->length;
        } else {
            goesOn = m_state->plan.shrinkAfter(status, count);
        }
        if (goesOn)
            status = sendNext();
        if (m_state)
            finish(status);
    }

private:
    static UaStatus sendOnce(SessionContext& session, std::unique_ptr<State>& state,
                             std::span<const typename Service::ItemType> block)
    try {
        auto call = std::make_unique<AsyncBlock>(session, std::move(state));
        State& sent = *call->m_state;
        BorrowingRequest<typename Service::Traits> request;
        fillBlock<Service>(sent.first, block, sent.prepare, *request);
        std::unique_ptr<PendingCall> pending = std::move(call);
        const UaStatus status =
            PendingCall::send<typename Service::Traits>(pending, sent.plan.wanted, sent.settings, *request);
        if (pending)
            state = std::move(static_cast<AsyncBlock&>(*pending).m_state);
        return status;
    } catch (const std::bad_alloc&) {
        return UaStatus(OpcUa_BadOutOfMemory);
    }

    UaStatus take()
    {
        if (OpcUa_IsBad(status()))
            return UaStatus(status());
        const Service& service = m_state->service;
        auto* const answer = response<typename Service::Traits>();
        const UaStatus result = answer ? takeBlock(service, m_state->blockLength(), *answer, m_state->results,
                                                   m_state->diagnosticInfos)
                                       : UaStatus(OpcUa_BadUnknownResponse);
        clearResponse();
        return result.isBad() ? result : UaStatus(status());
    }

    /// m_state goes with the block when it is sent.
    UaStatus sendNext()
    {
        Transaction checked; // only to make the check; the call is counted already
        const OpcUa_UInt32 count = m_state->blockLength();
        const UaStatus ready =
            beginTransaction(session(), m_state->service.names, count, m_state->plan.wanted, checked);
        return ready.isBad() ? ready : send(session(), m_state, m_state->items.span());
    }

    void finish(const UaStatus& status)
    {
        finishBlocks(m_state->service, status, m_state->results, m_state->diagnosticInfos);
        if (UaSessionCallback* const receiver = completionReceiver(session(), m_state->service.names)) {
            session().mutex.assertUnlocked();
            m_state->complete(*receiver, status, m_state->results, m_state->diagnosticInfos);
            UaTrace::tIfCall("DONE SessionCallback::%s [Session=%u]", m_state->service.names.completion,
                             session().traceId);
        }
    }

    std::unique_ptr<State> m_state;
};

/// Sends the service, and later calls complete(callback, status, results, diagnosticInfos) on the pool. The
/// result says whether it was sent; when it is bad, complete is never called. prepare must own what it needs.
template <typename Service, typename Prepare, typename Complete>
UaStatus beginInBlocks(SessionContext& context, const Service& service, ServiceSettings& settings,
                       std::span<const typename Service::ItemType> items, const Prepare& prepare,
                       const Complete& complete)
try {
    using State = BlockTransaction<Service, Prepare, Complete>;
    const ServiceNames& names = service.names;
    const auto length = static_cast<OpcUa_UInt32>(items.size());
    TraceScope trace("UaSession", names.beginMethod, context.traceId, length);
    Transaction transaction;
    const BlockPlan plan = planBlocks(context, service.service, service.hasEffects);
    UaStatus status = beginTransaction(context, names, length, plan.wanted, transaction);
    if (!status.isBad()) {
        traceBlockItems(service, items);
        auto state = std::make_unique<State>(
            State{std::move(transaction), service, settings, prepare, complete, plan, length});
        // one may come back as too large, and then the caller's are gone
        const bool copied =
            length == 1 || state->items.assign(static_cast<OpcUa_Int32>(length), items.data());
        settings.requestTime = UaDateTime::now();
        status = copied ? AsyncBlock<Service, Prepare, Complete>::send(
                              context, state, length == 1 ? items : state->items.span())
                        : UaStatus(OpcUa_BadOutOfMemory);
    }
    return trace.ending(status);
} catch (const std::bad_alloc&) {
    return UaStatus(OpcUa_BadOutOfMemory);
}

/// A completion that hands over what the service gave, for beginInBlocks.
template <typename Results>
auto completeWith(OpcUa_UInt32 transactionId,
                  void (UaSessionCallback::*completion)(OpcUa_UInt32, const UaStatus&, Results&,
                                                        UaDiagnosticInfos&))
{
    return [transactionId, completion](UaSessionCallback& callback, const UaStatus& status, Results& results,
                                       UaDiagnosticInfos& diagnosticInfos) {
        (callback.*completion)(transactionId, status, results, diagnosticInfos);
    };
}

} // namespace UaClientSdk
