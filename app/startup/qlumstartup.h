#pragma once
#include <QString>
#include <QStringList>
#include <QWidget>

class QlumSessionRecord;
class QlumSplashScreen;

/// Brings the program from a bare process to its main window and back.
class QlumStartup
{
public:
    QlumStartup() = delete;

    /// The whole life of the program; gives its exit code.
    [[nodiscard]] static int run(int argc, char** argv);

    /// Settings identity; before any settings object is made.
    static void setIdentity();
    /// Runs the event loop until the last window is closed; not at all when the window has been closed
    /// before. Gives the exit code.
    [[nodiscard]] static int runUntilClosed(const QWidget& window);
    /// Moves a window that is not shown yet onto a screen that is there, no larger than that.
    static void keepOnScreen(QWidget& window);
    static void loadResources();
    static void unloadResources();
    /// Text for the user when the platform layer does not start.
    [[nodiscard]] static QString platformErrorText(int error);
    /// What is to be told of the place of settings and certificates, which can be written or not; else empty.
    [[nodiscard]] static QString folderProblem(bool canWrite);

private:
    [[nodiscard]] static int startLayers(QlumSplashScreen& splash);
    [[nodiscard]] static int runMainWindow(QlumSplashScreen& splash, QlumSessionRecord& record,
                                           const QStringList& settingsProblems);
};
