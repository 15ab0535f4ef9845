#include <certificates/qlumcrlentry.h>

QlumCRLEntry::QlumCRLEntry(const QString& fileName, const UaPkiRevocationList& list)
    : m_fileName(fileName), m_list(list), m_issuer(list.issuer()), m_validFrom(list.validFrom()),
      m_nextUpdate(list.nextUpdate())
{
}
