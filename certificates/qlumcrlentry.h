// One revocation list of a store.
#pragma once
#include <certificates/qlumvalidity.h>
#include <uabase/uapkicpp/uapkiidentity.h>
#include <uabase/uapkicpp/uapkirevocationlist.h>
#include <uabase/values/uadatetime.h>

#include <QMetaType>
#include <QString>

/// A revocation list and the file that it is in. May be made on any thread.
class QlumCRLEntry
{
public:
    QlumCRLEntry() = default;
    QlumCRLEntry(const QString& fileName, const UaPkiRevocationList& list);

    /// Without folder.
    [[nodiscard]] const QString& fileName() const { return m_fileName; }
    [[nodiscard]] const UaPkiRevocationList& list() const { return m_list; }
    [[nodiscard]] const UaPkiIdentity& issuer() const { return m_issuer; }
    [[nodiscard]] const UaDateTime& validFrom() const { return m_validFrom; }
    [[nodiscard]] const UaDateTime& nextUpdate() const { return m_nextUpdate; }
    /// A list that names no next update counts as expired.
    [[nodiscard]] QlumValidity validState() const { return qlumValidity(m_validFrom, m_nextUpdate); }

private:
    QString m_fileName;
    UaPkiRevocationList m_list;
    UaPkiIdentity m_issuer;
    UaDateTime m_validFrom;
    UaDateTime m_nextUpdate;
};

Q_DECLARE_METATYPE(QlumCRLEntry)
