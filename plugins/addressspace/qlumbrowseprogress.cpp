#include <plugins/addressspace/qlumbrowseprogress.h>

#include <app/api/qlumdisplaytext.h>

#include <QApplication>
#include <QLabel>
#include <QLocale>

namespace {
constexpr qint64 showAfter = 1000;  // ms
constexpr qint64 updateEvery = 100; // ms
} // namespace

QlumBrowseProgress::QlumBrowseProgress(const QString& nodeName)
    : m_nodeName(qlumCutText(qlumSingleLine(nodeName), 60))
{
    m_sinceStart.start();
    m_sinceUpdate.start();
}

QlumBrowseProgress::~QlumBrowseProgress()
{
    delete m_dialog;
}

void QlumBrowseProgress::update(int found)
{
    if (m_sinceStart.elapsed() < showAfter || wasCancelled())
        return;
    if (!m_dialog)
        showDialog();
    else if (m_sinceUpdate.elapsed() < updateEvery)
        return;
    m_sinceUpdate.start();
    m_dialog->setLabelText(tr("Browsing '%1': %2 nodes so far.").arg(m_nodeName, QLocale().toString(found)));
}

void QlumBrowseProgress::showDialog()
{
    m_dialog = new QProgressDialog(QString(), tr("Cancel"), 0, 0, QApplication::activeWindow());
    m_dialog->setObjectName(QStringLiteral("browseProgress"));
    m_dialog->setWindowTitle(tr("Browsing"));
    m_dialog->setMinimumWidth(360);
    auto* label = new QLabel;
    label->setTextFormat(Qt::PlainText); // the name is the server's
    m_dialog->setLabel(label);
    m_dialog->show();
}
