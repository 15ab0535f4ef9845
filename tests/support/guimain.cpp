// Runs tests that need widgets: an application object, a home folder of their own, settings in it.
#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    const QTemporaryDir home;
    qputenv("HOME", home.path().toLocal8Bit());
    qunsetenv("XDG_CONFIG_HOME");
    ::testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QCoreApplication::setOrganizationName(QStringLiteral("korvanda/tavelin/"));
    QCoreApplication::setApplicationName(QStringLiteral("tavelin"));
    return home.isValid() ? RUN_ALL_TESTS() : 1;
}
