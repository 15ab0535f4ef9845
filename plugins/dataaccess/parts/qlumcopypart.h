#pragma once
#include <plugins/dataaccess/parts/qlumnodecopier.h>
#include <plugins/dataaccess/qlumdapart.h>

#include <vector>

/// Copies the selected rows, or all that are shown, in the forms that other programs take.
class QlumCopyPart final : public QlumDaPart
{
    Q_OBJECT
public:
    /// Adds its commands to the host, which outlives it.
    explicit QlumCopyPart(QlumDaHost& host);

private:
    [[nodiscard]] std::vector<QlumNodeCopier::Wanted> chosen() const;

    QlumDaHost& m_host;
    QlumNodeCopier m_copier;
};
