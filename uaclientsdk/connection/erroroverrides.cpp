#include <uaclientsdk/connection/erroroverrides.h>

#include <uabase/system/uatrace.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/connection/sessioncontext.h>

#include <algorithm>

namespace UaClientSdk {

bool ErrorOverrides::overridden(const SessionContext& context, const OverridableError& error,
                                const UaByteString& certificate)
{
    const Accepted finding{error.text, certificate};
    const bool known = std::find(m_accepted.begin(), m_accepted.end(), finding) != m_accepted.end();
    if (!known &&
        !context.reportConnectError(error.step, UaStatus(error.status, UaString(error.text)), true)) {
        UaTrace::tError("%s", error.text.c_str());
        return false;
    }
    UaTrace::tWarning("%s", error.overriddenText.c_str());
    if (!known)
        m_accepted.push_back(finding);
    return true;
}

} // namespace UaClientSdk
