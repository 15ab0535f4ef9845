#include <app/mainwindow/qlumaboutdialog.h>

#include <app/mainwindow/qlumupdatecheck.h>
#include <app/mainwindow/qlumversions.h>
#include <opcua/opcua_channel.h>

#include <QClipboard>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QGuiApplication>
#include <QIcon>
#include <QLabel>
#include <QLatin1Char>
#include <QLatin1String>
#include <QMessageBox>
#include <QPushButton>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVBoxLayout>
#include <QWidget>

namespace {
QString firstField(const char* version)
{
    return QString::fromUtf8(version).section(QLatin1Char('\\'), 0, 0);
}

// What the text above the list does not name.
QLabel* makeOtherVersions(QWidget* parent)
{
    QStringList others;
    for (const QString& line : qlumVersions())
        for (const char* name : {"Build id ", "Qwt ", "OpenSSL ", "libxml2 ", "SQLite "})
            if (line.startsWith(QLatin1String(name)))
                others.append(line);
    auto* label = new QLabel(others.join(QLatin1Char('\n')), parent);
    label->setObjectName(QStringLiteral("otherVersions"));
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    return label;
}
} // namespace

QlumAboutDialog::QlumAboutDialog(QWidget* parent) : QlumBaseWidget(QStringLiteral("QlumAboutDialog"), parent)
{
    setWindowTitle(tr("About Tavelin"));
    auto* picture = new QLabel(this);
    picture->setPixmap(QIcon(QStringLiteral(":/images/tavelin.png")).pixmap(64, 64));
    auto* text =
        new QLabel(tr("Korvanda Tavelin %1\nThe OPC Unified Architecture Client\n\nCommunication stack %2\n"
                      "Platform layer %3\nQt %4")
                       .arg(QlumUpdateCheck::currentVersion(), firstField(OpcUa_ProxyStub_GetVersion()),
                            firstField(OpcUa_P_GetVersion()), QLatin1String(qVersion())),
                   this);
    text->setObjectName(QStringLiteral("versions"));
    text->setTextFormat(Qt::PlainText);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    QPushButton* licenses = buttons->addButton(tr("Open License Folder"), QDialogButtonBox::ActionRole);
    licenses->setObjectName(QStringLiteral("openLicenseFolder"));
    connect(licenses, &QPushButton::clicked, this, &QlumAboutDialog::sltOpenLicenseFolder);
    QPushButton* copy = buttons->addButton(tr("&Copy Versions"), QDialogButtonBox::ActionRole);
    copy->setObjectName(QStringLiteral("copyVersions"));
    copy->setToolTip(tr("Copies the versions of all parts, for whoever is asked for help"));
    connect(copy, &QPushButton::clicked, this, [] {
        QGuiApplication::clipboard()->setText(qlumVersions().join(QLatin1Char('\n')) + QLatin1Char('\n'));
    });
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(picture);
    layout->addWidget(text);
    layout->addWidget(makeOtherVersions(this));
    layout->addWidget(buttons);
}

void QlumAboutDialog::sltOpenLicenseFolder()
{
    const QString folder =
        QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../lic/"));
    if (!QDir(folder).exists() || !QDesktopServices::openUrl(QUrl::fromLocalFile(folder)))
        QMessageBox::information(
            this, windowTitle(),
            tr("The license folder %1 could not be opened.").arg(QDir::toNativeSeparators(folder)));
}
