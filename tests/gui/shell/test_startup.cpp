#include <app/api/qlumsplashscreen.h>
#include <app/mainwindow/qlumtavelin.h>
#include <app/mainwindow/qlumtavelinservices.h>
#include <app/mainwindow/qlumtipwindow.h>
#include <app/recovery/qlumsessionrecord.h>
#include <app/settings/qlumappearance.h>
#include <app/settings/qlumsettingsmodel.h>
#include <app/startup/qlumfolders.h>
#include <app/startup/qlumsettingsfile.h>
#include <app/startup/qlumstartup.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QDir>
#include <QDockWidget>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QLabel>
#include <QPixmap>
#include <QRect>
#include <QScreen>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>
#include <QTimer>
#include <QVariant>
#include <QWidget>
#include <gtest/gtest.h>

#include <algorithm>

namespace {
// A home folder that goes with the test.
class Home : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_old = qgetenv("HOME");
        qputenv("HOME", folder.path().toLocal8Bit());
    }
    void TearDown() override { qputenv("HOME", m_old); }
    [[nodiscard]] QString below(const QString& name) const
    {
        return folder.path() + QStringLiteral("/.config/korvanda/tavelin/") + name;
    }
    void write(const QString& name, const QByteArray& content) const
    {
        ASSERT_TRUE(QDir().mkpath(QFileInfo(below(name)).path()));
        QFile file(below(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    [[nodiscard]] QByteArray read(const QString& name) const
    {
        QFile file(below(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
    }

    QTemporaryDir folder;

private:
    QByteArray m_old;
};
} // namespace

TEST_F(Home, FoldersAreMadeAndTheKeyFolderIsPrivate)
{
    prepareFolders();
    for (const char* name :
         {"PKI/own/certs", "PKI/own/private", "PKI/trusted/crl", "PKI/trusted/certs", "PKI/issuers/crl",
          "PKI/issuers/certs", "PKI/tls_issuers/crl", "PKI/tls_issuers/certs", "PKI/rejected", "trace"})
        EXPECT_TRUE(QDir(below(QLatin1String(name))).exists()) << name;
    EXPECT_EQ(QFile::permissions(below(QStringLiteral("PKI/own/private"))) &
                  (QFile::ReadGroup | QFile::ReadOther | QFile::ExeGroup | QFile::ExeOther),
              QFile::Permissions());
}

TEST_F(Home, OldStoreIsMoved)
{
    write(QStringLiteral("PKI/CA/certs/tavelin.der"), "own");
    write(QStringLiteral("PKI/CA/private/tavelin_key.pem"), "key");
    write(QStringLiteral("PKI/CA/certs/server.der"), "server");
    write(QStringLiteral("PKI/CA/certs/rejected/bad.der"), "bad");
    write(QStringLiteral("PKI/CA/crl/ca.crl"), "list");
    prepareFolders();
    EXPECT_EQ(read(QStringLiteral("PKI/own/certs/tavelin.der")), "own");
    EXPECT_EQ(read(QStringLiteral("PKI/own/private/tavelin_key.pem")), "key");
    EXPECT_EQ(read(QStringLiteral("PKI/trusted/certs/server.der")), "server");
    EXPECT_EQ(read(QStringLiteral("PKI/rejected/bad.der")), "bad");
    EXPECT_EQ(read(QStringLiteral("PKI/trusted/crl/ca.crl")), "list");
    EXPECT_FALSE(QDir(below(QStringLiteral("PKI/CA"))).exists());
}

TEST_F(Home, WhatCannotBeMovedStaysForTheNextStart)
{
    write(QStringLiteral("PKI/CA/private/tavelin_key.pem"), "old");
    write(QStringLiteral("PKI/own/private/tavelin_key.pem"), "new");
    write(QStringLiteral("PKI/CA/crl/ca.crl"), "list");
    prepareFolders();
    EXPECT_EQ(read(QStringLiteral("PKI/own/private/tavelin_key.pem")), "new");
    EXPECT_EQ(read(QStringLiteral("PKI/CA/private/tavelin_key.pem")), "old");
    EXPECT_EQ(read(QStringLiteral("PKI/trusted/crl/ca.crl")), "list");
    EXPECT_TRUE(QFile::remove(below(QStringLiteral("PKI/own/private/tavelin_key.pem"))));
    prepareFolders();
    EXPECT_EQ(read(QStringLiteral("PKI/own/private/tavelin_key.pem")), "old");
    EXPECT_FALSE(QDir(below(QStringLiteral("PKI/CA"))).exists());
}

TEST_F(Home, DamagedSettingsAreCleanedAndKept)
{
    EXPECT_TRUE(qlumCleanSettingsFile().isEmpty()); // there is none yet
    const QByteArray good("[General]\nGeneral.CallTimeout=5\ngeometry=@ByteArray(\\x1\\xd9)\n");
    write(QStringLiteral("tavelin.ini"), good);
    EXPECT_TRUE(qlumCleanSettingsFile().isEmpty());
    EXPECT_EQ(read(QStringLiteral("tavelin.ini")), good);
    const QByteArray bad = good + "RecentFiles=@Variant(\\0\\0\\0\\x7f)\n";
    write(QStringLiteral("tavelin.ini"), bad);
    EXPECT_EQ(qlumCleanSettingsFile().size(), 2);
    EXPECT_EQ(read(QStringLiteral("tavelin.ini")), good);
    EXPECT_EQ(read(QStringLiteral("tavelin.ini.bad")), bad);

    write(QStringLiteral("tavelin.ini"), "a=@DateTime(\\0)\n"); // does not take the place of the first
    EXPECT_FALSE(qlumCleanSettingsFile().isEmpty());
    EXPECT_EQ(read(QStringLiteral("tavelin.ini.bad")), bad);
    EXPECT_EQ(read(QStringLiteral("tavelin.ini.bad2")), "a=@DateTime(\\0)\n");
}

TEST_F(Home, SettingsEditedByHandAreWrittenAnewBeforeTheyAreRead)
{
    write(QStringLiteral("dotfiles.ini"), "; mine\n[General]\nGeneral.CallTimeout = 5\n");
    ASSERT_TRUE(QFile::link(below(QStringLiteral("dotfiles.ini")), below(QStringLiteral("tavelin.ini"))));
    EXPECT_TRUE(qlumCleanSettingsFile().isEmpty());
    EXPECT_EQ(read(QStringLiteral("dotfiles.ini")), "[General]\nGeneral.CallTimeout=5\n");
    EXPECT_EQ(read(QStringLiteral("tavelin.ini.bad")), "(none)");
}

TEST_F(Home, SettingsAreBesideTheCertificatesWhateverTheEnvironmentNames)
{
    const QTemporaryDir other;
    qputenv("XDG_CONFIG_HOME", other.path().toLocal8Bit());
    QlumStartup::setIdentity();
    QSettings().setValue(QStringLiteral("a"), 1);
    EXPECT_EQ(QSettings().fileName(), below(QStringLiteral("tavelin.ini")));
    EXPECT_EQ(read(QStringLiteral("tavelin.ini")), "[General]\na=1\n");
    qunsetenv("XDG_CONFIG_HOME");
    TearDown();
    QlumStartup::setIdentity(); // for the tests behind this one
}

TEST_F(Home, WithoutAPlaceToWriteTheProgramRunsAndSaysSo)
{
    qputenv("HOME", "/dev/null"); // no folder can be made below it, whoever asks
    prepareFolders();
    EXPECT_TRUE(qlumCleanSettingsFile().isEmpty());
    QlumStartup::setIdentity();
    {
        const QlumSessionRecord record(qlumRecoveryFolder(), folder.path());
        EXPECT_FALSE(record.isKept());
        EXPECT_TRUE(QlumStartup::folderProblem(record.isKept()).contains(QLatin1String("/dev/null/.config")));
        EXPECT_TRUE(record.leftovers().isEmpty());
        QlumTavelin window{QlumTavelinServices()};
        window.setSettingsValue(QStringLiteral("General.CallTimeout"), 4711);
        EXPECT_EQ(window.settingsValue(QStringLiteral("General.CallTimeout")).toInt(), 4711);
        EXPECT_TRUE(window.saveProject(folder.filePath(QStringLiteral("plant.uap"))));
        QlumSettingsModel settings;
        settings.setValue(QStringLiteral("General.CallTimeout"), 4712);
        EXPECT_FALSE(settings.flush());
    }
    TearDown();
    QlumStartup::setIdentity(); // for the tests behind this one
}

TEST_F(Home, SaysWhereSettingsAreWhenNobodyHasSetAHome)
{
    EXPECT_TRUE(QlumStartup::folderProblem(true).isEmpty());
    qunsetenv("HOME");
    const QString said = QlumStartup::folderProblem(true);
    EXPECT_TRUE(said.contains(QLatin1String(" /.config")) && said.contains(QLatin1String("HOME")))
        << said.toStdString();
}

TEST_F(Home, SizeOfEverythingIsReadBeforeThereIsAnApplication)
{
    const char* const variable = "QT_SCALE_FACTOR";
    const QByteArray before = qgetenv(variable);
    const bool wasSet = qEnvironmentVariableIsSet(variable);
    qunsetenv(variable);
    const auto scaleFor = [&](const QByteArray& setting) {
        write(QStringLiteral("tavelin.ini"), "[General]\nAppearance.Scale=" + setting + "\n");
        const QlumScaleAsSet scale;
        return qgetenv(variable);
    };
    EXPECT_EQ(scaleFor("200"), "2");
    EXPECT_FALSE(qEnvironmentVariableIsSet(variable)) << "programs that are started from here";
    for (const char* const wrong : {"0", "-100", "100000", "large", ""})
        EXPECT_EQ(scaleFor(wrong), "") << wrong;
    qputenv(variable, "1.25");
    EXPECT_EQ(scaleFor("200"), "1.25") << "the desktop knows its screen";
    EXPECT_EQ(qgetenv(variable), "1.25");
    wasSet ? qputenv(variable, before) : qunsetenv(variable);
}

class LostScreen : public ::testing::Test
{
protected:
    LostScreen() { QSettings().clear(); }
    ~LostScreen() override { QSettings().clear(); }
    static QRect room() { return QGuiApplication::primaryScreen()->availableGeometry(); }
};

TEST_F(LostScreen, WindowComesBackOnOneThatIsThere)
{
    for (const QRect& before :
         {QRect(6000, 5000, 900, 700), QRect(-3000, -2000, 900, 700), // of another screen
          QRect(200, 300, 5000, 4000), QRect(room().right() - 60, 40, 700, 600)}) {
        QWidget closed;
        closed.setGeometry(before);
        QSettings().setValue(QStringLiteral("geometry"), closed.saveGeometry());
        QlumTavelin window{QlumTavelinServices()};
        QlumStartup::keepOnScreen(window);
        EXPECT_TRUE(room().contains(window.pos())) << before.x() << " is now " << window.x();
        EXPECT_LE(window.geometry().right(), std::max(room().right(), window.minimumSizeHint().width()));
        EXPECT_LE(window.geometry().bottom(), std::max(room().bottom(), window.minimumSizeHint().height()));
    }
}

TEST_F(LostScreen, DockThatFloatedThereIsSeen)
{
    QByteArray state;
    const QString name = QStringLiteral("Log Dock Widget");
    {
        QlumTavelin window{QlumTavelinServices()};
        window.show();
        auto* dock = window.findChild<QDockWidget*>(name);
        ASSERT_NE(dock, nullptr);
        dock->setFloating(true);
        dock->move(6000, 5000);
        state = window.saveState();
    }
    QlumTavelin window{QlumTavelinServices()};
    ASSERT_TRUE(window.restoreState(state));
    const auto* dock = window.findChild<QDockWidget*>(name);
    EXPECT_TRUE(dock->isFloating());
    EXPECT_TRUE(room().intersects(dock->geometry().adjusted(50, 0, -50, -100)))
        << dock->x() << ", " << dock->y() << ": its title is reached";
}

TEST(Startup, AWindowClosedBeforeTheEventLoopLeavesNoProcess)
{
    QWidget window;
    window.show();
    QTimer::singleShot(0, &window, &QWidget::close);
    EXPECT_EQ(QlumStartup::runUntilClosed(window), 0);
    bool stuck = false;
    QTimer::singleShot(2000, &window, [&stuck] {
        stuck = true;
        QCoreApplication::exit(1);
    });
    EXPECT_EQ(QlumStartup::runUntilClosed(window), 0);
    EXPECT_FALSE(stuck);
}

TEST(TipWindow, ReadsTipsThatEndWithAnEmptyLine)
{
    QString text = QStringLiteral("\n\nfirst \ntip\n\nsecond\n\n\nthird is cut off\n");
    QTextStream stream(&text);
    EXPECT_EQ(QlumTipWindow::readTips(stream), (QStringList{"first tip", "second"}));
}

TEST(TipWindow, TurnsPagesBothWaysAndKeepsItsFlag)
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("tips.txt")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("a\n\nb\n\nc\n\n");
    file.close();
    {
        QlumTipWindow window(nullptr, file.fileName());
        EXPECT_TRUE(window.fileRead());
        EXPECT_TRUE(window.showAtStart());
        const int start = window.index();
        QStringList seen;
        for (int i = 0; i < 3; ++i) {
            seen.append(window.currentText());
            window.sltNext();
        }
        EXPECT_EQ(window.index(), start);
        window.sltPrevious();
        EXPECT_EQ(window.currentText(), seen.last());
        seen.sort();
        EXPECT_EQ(seen, (QStringList{"a", "b", "c"}));
    }
    EXPECT_TRUE(QSettings().value(QStringLiteral("QlumTipWindow/ShowTip")).isValid());

    QlumTipWindow missing(nullptr, folder.filePath(QStringLiteral("none.txt")));
    EXPECT_FALSE(missing.fileRead());
    missing.sltNext();
    missing.sltPrevious();
    EXPECT_EQ(missing.currentText(), QStringLiteral("Tip file is missing."));
}

TEST(TipWindow, ProgramHasTipsOfItsOwn)
{
    const QlumTipWindow window;
    EXPECT_TRUE(window.fileRead());
    EXPECT_GT(window.currentText().size(), 20);
}

TEST(Startup, PlatformErrorIsShownAsEightDigits)
{
    EXPECT_EQ(QlumStartup::platformErrorText(0x1234),
              QStringLiteral("Could not initialize OPC UA platform layer (error=0x00001234)."));
}

TEST(SplashScreen, PaintsItsTextWithoutTheEventLoop)
{
    QPixmap picture(300, 100);
    picture.fill(Qt::black);
    QlumSplashScreen splash(picture);
    splash.show();
    splash.showMessage(QString());
    const QImage before = splash.grab().toImage();
    splash.showMessage(QStringLiteral("Loading..."), Qt::AlignLeft, Qt::white);
    const QImage after = splash.grab().toImage();
    EXPECT_NE(before, after);
    // text begins below y = 20 and right of x = 5
    EXPECT_EQ(before.copy(0, 0, 300, 20), after.copy(0, 0, 300, 20));
    EXPECT_EQ(before.copy(0, 0, 5, 100), after.copy(0, 0, 5, 100));
    EXPECT_EQ(QlumSplashScreen::message(), QStringLiteral("Loading..."));
}

TEST(SplashScreen, WhoAsksTheUserSomethingWaitsUntilItIsGone)
{
    const auto isGoneAfter = [](auto sendAway) {
        QlumSplashScreen splash(QPixmap(300, 100));
        splash.show();
        QTimer::singleShot(
            0, &splash, [&] { sendAway(splash); });
        splash.waitUntilGone();
        return !splash.isVisible();
    };
    EXPECT_TRUE(isGoneAfter([](QlumSplashScreen& splash) { splash.timedClose(0); }));
    EXPECT_TRUE(isGoneAfter([](QlumSplashScreen& splash) { QTest::mouseClick(&splash, Qt::LeftButton); }));
    QlumSplashScreen hidden(QPixmap(300, 100));
    hidden.waitUntilGone(); // nothing would end it
}

TEST(Settings, DefaultsHaveTheirTypesAndStoredValuesComeBack)
{
    QSettings().clear();
    {
        QlumSettingsModel settings;
        EXPECT_EQ(settings.value(QStringLiteral("General.CallTimeout")), QVariant(10000u));
        EXPECT_EQ(settings.value(QStringLiteral("General.MaxBrowseNextCalls")), QVariant(1000));
        EXPECT_EQ(settings.value(QStringLiteral("Trace.NumBackupFiles")), QVariant(5u));
        EXPECT_EQ(settings.value(QStringLiteral("General.LogLevel")), QVariant(QStringLiteral("ALL")));
        EXPECT_TRUE(settings.value(QStringLiteral("Trace.Filename"))
                        .toString()
                        .endsWith(QStringLiteral("/.config/korvanda/tavelin/trace/trace.log")));
        EXPECT_TRUE(settings.value(QStringLiteral("AutomaticUpdate.CheckForUpdates")).isNull());
        EXPECT_EQ(settings.value(QStringLiteral("AttributePlugin.MaxAge"), 0.0), QVariant(0.0));
        settings.setValue(QStringLiteral("General.CallTimeout"), 1234u);
        settings.setValue(QStringLiteral("AttributePlugin.MaxAge"), 2.5);
        EXPECT_EQ(settings.value(QStringLiteral("General.CallTimeout")), QVariant(1234u));
    }
    QSettings().setValue(QStringLiteral("General.ConnectTimeout"), QStringLiteral("soon")); // edited by hand
    QSettings().sync();
    const QlumSettingsModel settings;
    EXPECT_EQ(settings.value(QStringLiteral("General.CallTimeout")), QVariant(1234u));
    EXPECT_EQ(settings.value(QStringLiteral("AttributePlugin.MaxAge"), 0.0), QVariant(2.5));
    EXPECT_EQ(settings.value(QStringLiteral("General.ConnectTimeout")), QVariant(5000u));
    QSettings().clear();
}
