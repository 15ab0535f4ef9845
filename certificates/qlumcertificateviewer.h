#pragma once
#include <certificates/qlumcertificatechainnode.h>
#include <certificates/qlumcertificatedetailsmodel.h>
#include <uabase/values/uabytestring.h>
#include <uawidgets/qlumbasewidget.h>

#include <QLayout>
#include <QObject>
#include <QWidget>

#include <memory>
#include <vector>

class QListWidget;
class QTreeView;
class QlumToolServices;

/// Shows a certificate, or one with the chain that came with it, without asking anything: what it says, and
/// what is odd about it in itself. Whether it is trusted is not looked up.
class QlumCertificateViewer : public QlumBaseWidget
{
    Q_OBJECT
public:
    /// Bytes that are no certificate are told instead of shown.
    explicit QlumCertificateViewer(const UaByteString& der, QWidget* parent = nullptr);
    ~QlumCertificateViewer() override;

private:
    void read(const UaByteString& der);
    void makeList();
    void makeDetails();
    void showCertificate(int row);

    std::vector<std::unique_ptr<QlumCertificateChainNode>> m_nodes; ///< as they came
    QlumCertificateDetailsModel* m_model;
    QListWidget* m_list;
    QTreeView* m_details;
};

/// Has certificates that tools want to show opened in windows of their own, beside the application's.
void qlumTakeCertificates(QlumToolServices& services, QObject* owner);
