// Makes a picture of every window of the program: tavelin_pictures FOLDER PROJECT WIDTHxHEIGHT.
// The windows are asked for by the names of their actions, so that it works in every language.
#include <app/api/qlumsettings.h>
#include <app/mainwindow/qlumdocumentarea.h>
#include <app/mainwindow/qlummainactions.h>
#include <app/mainwindow/qlumtavelin.h>
#include <app/project/qlumprojectmodel.h>
#include <app/project/qlumprojectnodedocument.h>
#include <app/settings/qlumappearance.h>
#include <app/startup/qlumfolders.h>
#include <app/startup/qlumservices.h>
#include <app/startup/qlumstartup.h>
#include <app/startup/qlumtranslations.h>
#include <certificates/qlumcertificatedialog.h>
#include <certificates/qlumcertificaterefuseddialog.h>
#include <certificates/qlumcertificates.h>
#include <servers/qlumchangedcertificatedialog.h>
#include <tests/support/valuepictures.h>
#include <uabase/system/uaplatformlayer.h>
#include <uabase/system/uaxmldocument.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatuscode.h>

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QDockWidget>
#include <QEventLoop>
#include <QList>
#include <QListWidget>
#include <QPixmap>
#include <QPointer>
#include <QRegularExpression>
#include <QSet>
#include <QStackedWidget>
#include <QString>
#include <QStringList>
#include <QTabBar>
#include <QTabWidget>
#include <QTextStream>
#include <QTimer>
#include <QWidget>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <stdexcept>

namespace {
constexpr int settleMilliseconds = 600;    // after which nothing moves any more
constexpr int connectMilliseconds = 8'000; // until values of the demo server have drawn a curve

void wait(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

class Pictures
{
public:
    Pictures(const QDir& folder, QlumTavelin& window) : m_folder(folder), m_window(window) {}

    void take(QWidget& widget, const QString& name)
    {
        QString file = name.toLower();
        file.replace(QRegularExpression(QStringLiteral("[^a-z0-9]+")), QStringLiteral("-"));
        if (!widget.grab().save(m_folder.filePath(file + QStringLiteral(".png"))))
            throw std::runtime_error("cannot write " + m_folder.filePath(file).toStdString());
        ++m_count;
    }
    void takeWindow(const QString& name)
    {
        wait(settleMilliseconds);
        take(m_window, name);
    }
    // Dialogs return only when they are closed: another event loop looks at them meanwhile.
    void takeOpened(QAction* action, const QString& name)
    {
        if (!action->isEnabled()) {
            QTextStream(stderr) << name << ": not enabled\n";
            return;
        }
        const int before = m_count;
        QTimer::singleShot(settleMilliseconds, &m_window, [this, name] { takeOthers(name); });
        action->trigger();
        wait(settleMilliseconds * 2);
        if (m_count == before)
            takeOthers(name);
        if (m_count == before)
            throw std::runtime_error("no window came of " + name.toStdString());
    }
    [[nodiscard]] int count() const { return m_count; }

private:
    // All windows but the main one; closed afterwards.
    void takeOthers(const QString& name)
    {
        for (QPointer<QWidget> other : QApplication::topLevelWidgets()) {
            if (!other || other == &m_window || !other->isVisible())
                continue;
            takePages(*other, name);
            if (other)
                other->close();
        }
    }
    static bool choosesPages(const QListWidget& list, const QWidget& dialog)
    {
        const QList<QStackedWidget*> stacks = dialog.findChildren<QStackedWidget*>();
        return std::any_of(stacks.begin(), stacks.end(),
                           [&list](const QStackedWidget* stack) { return stack->count() == list.count(); });
    }
    void takePages(QWidget& dialog, const QString& name)
    {
        if (auto* list = dialog.findChild<QListWidget*>(); list && choosesPages(*list, dialog)) {
            for (int row = 0; row < list->count(); ++row) {
                list->setCurrentRow(row);
                takeSettled(dialog, QStringLiteral("%1 %2").arg(name).arg(row));
            }
        } else if (auto* tabs = dialog.findChild<QTabWidget*>()) {
            for (int tab = 0; tab < tabs->count(); ++tab) {
                tabs->setCurrentIndex(tab);
                takeSettled(dialog, QStringLiteral("%1 %2").arg(name).arg(tab));
            }
        } else
            take(dialog, name);
    }
    void takeSettled(QWidget& dialog, const QString& name)
    {
        wait(settleMilliseconds / 2);
        take(dialog, name);
    }

    QDir m_folder;
    QlumTavelin& m_window;
    int m_count = 0;
};

void takeDocuments(Pictures& pictures, QlumTavelin& window)
{
    QTabWidget* tabs = window.centralTabWidget();
    QSet<QString> seen;
    for (const QlumProjectNodeDocument* document : window.projectModel()->documents()) {
        window.documents()->show(document);
        seen.insert(document->documentType());
        pictures.takeWindow(QStringLiteral("document ") + document->documentType());
    }
    for (const QlumDocumentType& type : window.documents()->types())
        if (!seen.contains(type.type)) {
            window.documents()->add(type.type, type.freeName);
            wait(settleMilliseconds);
            pictures.takeWindow(QStringLiteral("document ") + type.type);
            for (auto* inner : tabs->currentWidget()->findChildren<QTabWidget*>())
                for (int i = 1; inner->isVisible() && i < inner->count(); ++i) {
                    inner->setCurrentIndex(i);
                    pictures.takeWindow(
                        QStringLiteral("document %1 %2 %3").arg(type.type, inner->objectName()).arg(i));
                }
        }
}

void takeDocks(Pictures& pictures, QlumTavelin& window)
{
    for (QDockWidget* dock : window.findChildren<QDockWidget*>()) {
        const bool wasShown = dock->isVisible();
        dock->show();
        dock->raise();
        wait(settleMilliseconds);
        pictures.take(*dock, QStringLiteral("dock ") + dock->objectName());
        dock->setVisible(wasShown);
    }
}

// Those that come only with a server that is not trusted, or that does not trust this client.
void takeCertificateDialogs(Pictures& pictures, QWidget& window)
{
    const QString server = QStringLiteral("Demo server");
    const QString url = QStringLiteral("opc.tcp://demo.example:4840");
    const UaPkiCertificate& own = QlumCertificates::instance()->certificate();
    const UaByteString bytes = own.toByteStringDER();
    const auto take = [&pictures](QWidget& dialog, const QString& name) {
        dialog.show();
        wait(settleMilliseconds);
        pictures.take(dialog, name);
        dialog.hide();
    };
    QlumCertificateDialog untrusted(server, url, bytes, UaStatusCode(OpcUa_BadCertificateUntrusted), &window);
    take(untrusted, QStringLiteral("dialog certificate untrusted"));
    QlumChangedCertificateDialog changed({server, url, bytes, bytes, false}, &window);
    take(changed, QStringLiteral("dialog certificate changed"));
    QlumCertificateRefusedDialog refused(server, UaStatusCode(OpcUa_BadSecurityChecksFailed), own,
                                         QDir::home().filePath(QStringLiteral("tavelin.der")), &window);
    take(refused, QStringLiteral("dialog certificate refused"));
}

void takeAll(Pictures& pictures, QlumTavelin& window, const QString& project)
{
    using A = QlumMainActions;
    pictures.takeWindow(QStringLiteral("start page"));
    window.loadProject(project);
    wait(connectMilliseconds);
    takeDocuments(pictures, window);
    takeDocks(pictures, window);
    takeValues([&pictures](QWidget& widget, const QString& name) { pictures.take(widget, name); }, window);
    for (const A::Id id : {A::AddServer, A::ServerProperties, A::ChangeUser, A::DiagnoseServer, A::Palette,
                           A::Journal, A::AddDocument, A::Configure, A::Plugins, A::Certificates, A::Manual,
                           A::TipOfTheDay, A::SupportReport, A::Shortcuts, A::About})
        pictures.takeOpened(window.actions()[id],
                            QStringLiteral("dialog ") + window.actions()[id]->objectName());
    takeCertificateDialogs(pictures, window);
    window.documents()->add(QStringLiteral("Data Access View"), QStringLiteral("unsaved"));
    pictures.takeOpened(window.actions()[A::NewProject], QStringLiteral("dialog question unsaved"));
    window.documents()->clear();
    pictures.takeWindow(QStringLiteral("start page with project"));
}

int run(const QStringList& arguments)
{
    const QStringList size = arguments.at(3).split(QLatin1Char('x'));
    QDir folder(arguments.at(1));
    if (!folder.mkpath(QStringLiteral(".")))
        throw std::runtime_error("cannot make " + arguments.at(1).toStdString());
    QlumTavelin window(qlumServices());
    window.resize(size.at(0).toInt(), size.at(1).toInt());
    window.show();
    Pictures pictures(folder, window);
    takeAll(pictures, window, arguments.at(2));
    window.clearProject();
    QTextStream(stdout) << pictures.count() << " pictures in " << folder.path() << "\n";
    return 0;
}
} // namespace

int main(int argc, char** argv)
{
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    auto scale = std::make_unique<QlumScaleAsSet>();
    QApplication application(argc, argv);
    scale.reset();
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 4 || !arguments.at(3).contains(QLatin1Char('x'))) {
        std::fputs("usage: tavelin_pictures FOLDER PROJECT WIDTHxHEIGHT\n", stderr);
        return 2;
    }
    QlumStartup::loadResources();
    QlumTranslations translations;
    translations.install(qlumEarlySetting(QlumSettings::language.key()));
    QlumStartup::setIdentity();
    UaXmlDocument::initParser();
    if (UaPlatformLayer::init() != 0)
        return 1;
    prepareFolders();
    if (QlumCertificates::instance()->failure() != 0)
        return 1;
    int result = 1;
    try {
        result = run(arguments);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "tavelin_pictures: %s\n", error.what());
    }
    QlumCertificates::cleanup();
    UaPlatformLayer::cleanup();
    UaXmlDocument::cleanupParser();
    return result;
}
