#pragma once
#include <plugins/dataaccess/parts/qlumcopyformats.h>
#include <plugins/dataaccess/qlumdapart.h>

#include <vector>

/// Copies the selected rows, or all that are shown, in the forms that other programs take.
class QlumCopyPart final : public QlumDaPart
{
    Q_OBJECT
public:
    /// Adds its commands to the host, which outlives it.
    explicit QlumCopyPart(QlumDaHost& host);

    /// To the clipboard, at once or when the browse paths were read.
    void copy(QlumCopyFormat format);

private:
    [[nodiscard]] std::vector<QlumCopiedNode> chosen(std::vector<unsigned int>& servers) const;

    QlumDaHost& m_host;
};
