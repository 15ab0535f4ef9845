#pragma once
#include <servers/qlumconnectprompts.h>
#include <uawidgets/qlumbasewidget.h>

#include <QWidget>

/// Shows the certificate that was trusted for a server beside the one that it presents now. Accepted: the
/// user wants to go on with the new one.
class QlumChangedCertificateDialog : public QlumBaseWidget
{
    Q_OBJECT
public:
    explicit QlumChangedCertificateDialog(const QlumCertificateChange& change, QWidget* parent = nullptr);
};
