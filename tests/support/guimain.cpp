// Runs tests that need widgets: an application object, a home folder of their own, settings in it.
#include <QApplication>
#include <QCoreApplication>
#include <QSettings>
#include <QString>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <memory>

#ifdef __SANITIZE_ADDRESS__
#    include <sanitizer/lsan_interface.h>
#endif

namespace {
std::unique_ptr<QApplication> makeApplication(int& argc, char** argv)
{
#ifdef __SANITIZE_ADDRESS__
    const __lsan::ScopedDisabler screens; // Qt's offscreen platform never frees its screen
#endif
    return std::make_unique<QApplication>(argc, argv);
}
} // namespace

int main(int argc, char** argv)
{
    const QTemporaryDir home;
    qputenv("HOME", home.path().toLocal8Bit());
    qunsetenv("XDG_CONFIG_HOME");
    ::testing::InitGoogleTest(&argc, argv);
    const auto application = makeApplication(argc, argv);
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QCoreApplication::setOrganizationName(QStringLiteral("korvanda/tavelin/"));
    QCoreApplication::setApplicationName(QStringLiteral("tavelin"));
    return home.isValid() ? RUN_ALL_TESTS() : 1;
}
