#include <app/startup/qlumstartup.h>

#include <app/api/qlumlog.h>
#include <app/api/qlumsettings.h>
#include <app/api/qlumsplashscreen.h>
#include <app/api/qlumtext.h>
#include <app/api/qlumuatrace.h>
#include <app/mainwindow/qlumtavelin.h>
#include <app/mainwindow/qlumtipwindow.h>
#include <app/recovery/qlumcrashhandler.h>
#include <app/recovery/qlumsessionrecord.h>
#include <app/settings/qlumappearance.h>
#include <app/startup/qlumfolders.h>
#include <app/startup/qlumqtmessages.h>
#include <app/startup/qlumservices.h>
#include <app/startup/qlumsettingsfile.h>
#include <app/startup/qlumtranslations.h>
#include <certificates/qlumcertificates.h>
#include <certificates/qlumcertificatestore.h>
#include <servers/passwords/qlumpasswordkeeper.h>
#include <servers/passwords/qlumsecretservice.h>
#include <uabase/system/uadir.h>
#include <uabase/system/uaplatformlayer.h>
#include <uabase/system/uaxmldocument.h>

#include <QApplication>
#include <QCoreApplication>
#include <QDir>
#include <QGuiApplication>
#include <QIcon>
#include <QMessageBox>
#include <QPixmap>
#include <QRect>
#include <QScreen>
#include <QSettings>
#include <QString>

#include <algorithm>
#include <csignal>
#include <memory>

namespace {
class Text
{
    Q_DECLARE_TR_FUNCTIONS(QlumStartup)
};

// Writing to a connection that the peer closed must not end the program.
void ignoreBrokenPipes()
{
    struct sigaction action = {};
    action.sa_handler = SIG_IGN;
    sigemptyset(&action.sa_mask);
    sigaction(SIGPIPE, &action, nullptr);
}

// For Qt's own plugins.
void addLibraryPaths()
{
    QDir folder(QCoreApplication::applicationDirPath());
    if (folder.cd(QStringLiteral("plugins")))
        QCoreApplication::addLibraryPath(folder.path());
    QCoreApplication::addLibraryPath(QStringLiteral("/opt/korvanda/qt-4.8.2/plugins"));
}

void show(QlumSplashScreen& splash, const QString& text)
{
    if (!text.isEmpty()) // there is no log yet
        QlumCrashHandler::note(text);
    splash.showMessage(text, Qt::AlignLeft, Qt::white);
}

// Under a sanitizer its own report says more.
void watchForCrashes([[maybe_unused]] const QlumSessionRecord& record)
{
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    QlumCrashHandler::install(record.crashReportFile(), TAVELIN_VERSION);
#endif
}

void showTip(QlumSplashScreen& splash, const QWidget& window)
{
    QlumTipWindow tips;
    if (!tips.showAtStart() || !tips.fileRead())
        return;
    splash.waitUntilGone(); // it stays on top
    if (window.isVisible())
        tips.exec();
}
} // namespace

void QlumStartup::loadResources()
{
    Q_INIT_RESOURCE(uawidgets);
    Q_INIT_RESOURCE(devicesplugin);
    Q_INIT_RESOURCE(attributeplugin);
    Q_INIT_RESOURCE(eventplugin);
    Q_INIT_RESOURCE(methodplugin);
    Q_INIT_RESOURCE(gdsplugin);
}

void QlumStartup::unloadResources()
{
    Q_CLEANUP_RESOURCE(uawidgets);
    Q_CLEANUP_RESOURCE(devicesplugin);
    Q_CLEANUP_RESOURCE(attributeplugin);
    Q_CLEANUP_RESOURCE(eventplugin);
    Q_CLEANUP_RESOURCE(methodplugin);
    Q_CLEANUP_RESOURCE(gdsplugin);
}

void QlumStartup::setIdentity()
{
    QSettings::setDefaultFormat(QSettings::IniFormat);
    // beside certificates and traces, whatever the environment names as the folder of settings
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, toQString(UaDir::applicationDataPath()));
    QCoreApplication::setOrganizationName(Text::tr("korvanda/tavelin/"));
    QCoreApplication::setApplicationName(Text::tr("tavelin"));
}

QString QlumStartup::platformErrorText(int error)
{
    return Text::tr("Could not initialize OPC UA platform layer (error=0x%1).")
        .arg(static_cast<qlonglong>(error), 8, 16, QLatin1Char('0'));
}

QString QlumStartup::folderProblem(bool canWrite)
{
    const QString folder = QDir::toNativeSeparators(toQString(UaDir::applicationDataPath()));
    if (!canWrite)
        return Text::tr(
                   "Nothing can be written to %1. Settings hold until Tavelin ends, and unsaved changes of "
                   "a project are not kept for the case of a crash.")
            .arg(folder);
    if (qEnvironmentVariableIsEmpty("HOME"))
        return Text::tr("The environment variable HOME is not set: settings and certificates are kept in %1.")
            .arg(folder);
    return {};
}

int QlumStartup::run(int argc, char** argv)
{
    ignoreBrokenPipes();
    qlumTraceQtMessages();
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    auto scale = std::make_unique<QlumScaleAsSet>();
    QApplication application(argc, argv);
    scale.reset();
    QCoreApplication::setApplicationVersion(QStringLiteral(TAVELIN_VERSION));
    loadResources();
    QlumTranslations translations;
    const QStringList languageProblems = translations.install(qlumEarlySetting(QlumSettings::language.key()));
    setIdentity();
    QApplication::setWindowIcon(
        QIcon(QStringLiteral(":/images/tavelin.png"))); // of the dialogs before the window
    // before anything that might crash; until the window is there its log is what the report has
    QlumUaTrace::setEarlySink(QlumCrashHandler::note);
    QlumSessionRecord record(qlumRecoveryFolder(), QlumCertificateStore::trace());
    watchForCrashes(record);
    const QStringList settingsProblems = qlumCleanSettingsFile() + languageProblems;
    for (const QString& text : settingsProblems)
        QlumCrashHandler::note(text);
    const QPixmap pixmap(QStringLiteral(":/images/tavelin_splash.png"));
    QlumSplashScreen splash(pixmap, Qt::WindowStaysOnTopHint);
    addLibraryPaths();
    splash.show();
    QCoreApplication::processEvents();
    if (const int error = startLayers(splash); error != 0)
        return error;
    return runMainWindow(splash, record, settingsProblems);
}

int QlumStartup::runUntilClosed(const QWidget& window)
{
    // a window that was closed before, while a question was shown, ends no event loop any more
    return window.isVisible() ? QApplication::exec() : 0;
}

// The screen may be another one than when the window was closed, or all on it larger.
void QlumStartup::keepOnScreen(QWidget& window)
{
    if (window.isMaximized() || window.isFullScreen())
        return;
    const QScreen* screen = QGuiApplication::screenAt(window.geometry().center());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (!screen || (QGuiApplication::screenAt(window.geometry().topLeft()) &&
                    QGuiApplication::screenAt(window.geometry().bottomRight())))
        return; // which may also be two, side by side
    const QRect room = screen->availableGeometry();
    QRect place(window.pos(), window.size().boundedTo(room.size()));
    place.moveRight(std::min(place.right(), room.right()));
    place.moveBottom(std::min(place.bottom(), room.bottom()));
    place.moveLeft(std::max(place.left(), room.left()));
    place.moveTop(std::max(place.top(), room.top()));
    window.resize(place.size());
    window.move(place.topLeft());
}

int QlumStartup::startLayers(QlumSplashScreen& splash)
{
    show(splash, QStringLiteral("Loading platform layer..."));
    UaXmlDocument::initParser();
    if (const int error = UaPlatformLayer::init(); error != 0) {
        splash.hide();
        QMessageBox::critical(nullptr, Text::tr("Tavelin initialization error"), platformErrorText(error),
                              QMessageBox::Ok);
        return error;
    }
    prepareFolders();
    show(splash, QStringLiteral("Loading certificates..."));
    if (QlumCertificates::instance(&splash)->failure() != 0) {
        QlumCertificates::cleanup();
        return -1;
    }
    return 0;
}

int QlumStartup::runMainWindow(QlumSplashScreen& splash, QlumSessionRecord& record,
                               const QStringList& settingsProblems)
{
    show(splash, Text::tr("Loading main application..."));
    const QlumPasswordKeeper passwords(std::make_unique<QlumSecretService>()); // outlives what uses it
    auto window = std::make_unique<QlumTavelin>(qlumServices());
    window->keepRecovery(record);
    const QlumLog log(QStringLiteral("Tavelin"));
    for (const auto& [level, text] : QlumCertificates::instance()->takeMessages())
        log.write(level, text);
    for (const QString& text : settingsProblems)
        log.error(text);
    if (const QString text = folderProblem(record.isKept()); !text.isEmpty())
        log.error(text);
    keepOnScreen(*window);
    window->show();
    show(splash, QString());
    splash.timedClose(3);
    if (!window->hasUpdateSettings())
        splash.waitUntilGone();
    if (window->isVisible())
        window->setupUpdateSettings();
    window->parseArguments();
    if (window->isVisible())
        window->offerRecovery([&splash] { splash.waitUntilGone(); }); // it stays on top
    if (window->isVisible() && !window->showNews())
        showTip(splash, *window);
    const int result = runUntilClosed(*window);
    QlumUaTrace::shutdown();
    window.reset();
    QlumCertificates::cleanup();
    UaPlatformLayer::cleanup();
    UaXmlDocument::cleanupParser();
    return result;
}
