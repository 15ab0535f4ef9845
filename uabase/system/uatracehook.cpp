#include <uabase/system/uatracehook.h>

#include <uabase/system/uatrace_p.h>

#include <mutex>

namespace {
thread_local bool t_insideHook = false;
}

void UaTraceHookSlot::set(UaTraceHook* hook)
{
    std::unique_lock lock(m_mutex);
    m_hook = hook;
    // a hook that takes itself away would wait for its own end
    if (!t_insideHook)
        m_left.wait(lock, [this] { return m_inside == 0; });
}

bool UaTraceHookSlot::isSet() const
{
    const std::lock_guard lock(m_mutex);
    return m_hook != nullptr;
}

void UaTraceHookSlot::call(UaTrace::TraceLevel level, const char* text, int moduleId)
{
    if (t_insideHook)
        return; // what a hook traces must not come back to it
    UaTraceHook* hook = nullptr;
    {
        const std::lock_guard lock(m_mutex);
        hook = m_hook;
        if (hook == nullptr)
            return;
        ++m_inside;
    }
    t_insideHook = true;
    hook->traceOutput(level, text, moduleId);
    t_insideHook = false;
    const std::lock_guard lock(m_mutex);
    --m_inside;
    if (m_inside == 0)
        m_left.notify_all();
}
