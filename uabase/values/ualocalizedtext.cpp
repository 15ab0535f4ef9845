#include <uabase/values/ualocalizedtext.h>

OpcUa_StatusCode UaLocalizedText::copyTo(OpcUa_LocalizedText* destination) const noexcept
{
    OpcUa_LocalizedText_Initialize(destination);
    const OpcUa_StatusCode status = m_locale.copyTo(&destination->Locale);
    return OpcUa_IsGood(status) ? m_text.copyTo(&destination->Text) : status;
}
