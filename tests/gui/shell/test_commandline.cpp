#include <app/mainwindow/qlumbugreport.h>
#include <app/mainwindow/qlummainactions.h>
#include <app/mainwindow/qlumprojectsession.h>
#include <app/mainwindow/qlumrecentfiles.h>
#include <app/settings/qlumsettingsmodel.h>
#include <tests/support/dialogdriver.h>
#include <tests/support/stubapplication.h>

#include <QAction>
#include <QDialog>
#include <QFile>
#include <QLineEdit>
#include <QList>
#include <QMainWindow>
#include <QMenu>
#include <QMessageBox>
#include <QMetaObject>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QUrl>
#include <gtest/gtest.h>

namespace {
class Session : public ::testing::Test
{
protected:
    Session() { QSettings().clear(); }

    QString make(const QString& name) const
    {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        return file.fileName();
    }

    QTemporaryDir folder;
    StubApplication application;
    QMainWindow window;
    QlumMainActions actions{&window};
    QlumSettingsModel settings;
    QlumRecentFiles recent{&settings, &window};
    QStringList calls;
    QlumProjectSession session{&window,
                               &actions,
                               &settings,
                               &recent,
                               {[this] { calls << QStringLiteral("clear"); },
                                [this](const QString& file) {
                                    calls << QStringLiteral("load ") + file;
                                    if (changesWhileLoading)
                                        session.setModified();
                                    return reading;
                                },
                                [this](const QString& file) { return saves && !file.isEmpty(); }}};
    bool saves = true;
    bool changesWhileLoading = false;
    QlumProjectReading reading;
};

// Answers the dialog of files by these names, one after the other, and questions by these buttons.
DialogDriver::Answer answerSaveAs(QStringList names, QList<QMessageBox::StandardButton> buttons)
{
    return [names, buttons](QDialog& dialog) mutable {
        if (auto* box = qobject_cast<QMessageBox*>(&dialog)) {
            box->button(buttons.isEmpty() ? QMessageBox::No : buttons.takeFirst())->click();
        } else if (names.isEmpty()) {
            dialog.reject();
        } else {
            dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(names.takeFirst());
            QMetaObject::invokeMethod(&dialog, "accept");
        }
    };
}
} // namespace

TEST_F(Session, ProjectOfTheCommandLineIsLoaded)
{
    const QString file = make(QStringLiteral("plant.v2.uap"));
    session.parseArguments({file});
    EXPECT_EQ(calls, (QStringList{QStringLiteral("clear"), QStringLiteral("load ") + file}));
    EXPECT_EQ(window.windowTitle(),
              QStringLiteral("Korvanda Tavelin - The OPC Unified Architecture Client - plant.v2[*]"));
    EXPECT_FALSE(actions[QlumMainActions::SaveProject]->isEnabled());
    EXPECT_TRUE(actions[QlumMainActions::SaveProjectAs]->isEnabled());
    EXPECT_FALSE(window.isWindowModified());
    EXPECT_TRUE(recent.files().isEmpty());
    EXPECT_TRUE(application.texts().isEmpty());
}

TEST_F(Session, BadCommandLinesAreToldAndLoadNothing)
{
    const QString upper = make(QStringLiteral("plant.UAP"));
    const QString good = make(QStringLiteral("plant.uap"));
    window.setWindowModified(true);
    session.parseArguments({});
    EXPECT_FALSE(window.isWindowModified());
    session.parseArguments({upper});
    session.parseArguments({folder.filePath(QStringLiteral("missing.uap"))});
    session.parseArguments({good, good});
    EXPECT_TRUE(calls.isEmpty());
    const auto entries = application.entries();
    ASSERT_EQ(entries.size(), 3);
    EXPECT_EQ(entries.at(0).text,
              QStringLiteral("Invalid command line argument, project could not be loaded!"));
    EXPECT_EQ(entries.at(1).text, entries.at(0).text);
    EXPECT_EQ(entries.at(2).text,
              QStringLiteral("Too many command line arguments, Tavelin project file expected!"));
    for (const auto& entry : entries) {
        EXPECT_EQ(entry.level, 100);
        EXPECT_EQ(entry.serverId, 0xFFFFFFFFu);
        EXPECT_EQ(entry.source, QStringLiteral("Tavelin"));
    }
}

TEST_F(Session, FailedSaveIsShownAndKeepsTheMark)
{
    const QString file = make(QStringLiteral("plant.uap"));
    session.open(file);
    session.setModified();
    EXPECT_TRUE(actions[QlumMainActions::SaveProject]->isEnabled());
    saves = false;
    {
        const DialogDriver driver;
        EXPECT_FALSE(session.sltSave());
        ASSERT_EQ(driver.seen().size(), 1);
        EXPECT_TRUE(
            driver.seen().first().startsWith(QStringLiteral("Save Project: Could not save the project.\n")));
    }
    EXPECT_TRUE(window.isWindowModified());
    saves = true;
    EXPECT_TRUE(session.sltSave());
    EXPECT_FALSE(window.isWindowModified());
    EXPECT_FALSE(actions[QlumMainActions::SaveProject]->isEnabled());
}

TEST_F(Session, SaveAsDoesNotReplaceAFileUnaskedThroughTheSuffixThatItAdds)
{
    make(QStringLiteral("plant.uap"));
    {
        const DialogDriver driver(
            answerSaveAs({folder.filePath(QStringLiteral("plant")), folder.filePath(QStringLiteral("plant"))},
                         {QMessageBox::No, QMessageBox::Yes}));
        EXPECT_TRUE(session.sltSaveAs());
        EXPECT_EQ(driver.seen().filter(QStringLiteral("already exists")).size(), 2);
    }
    EXPECT_EQ(session.currentFile(), folder.filePath(QStringLiteral("plant.uap")));
    const DialogDriver driver(answerSaveAs({folder.filePath(QStringLiteral("plant.v2"))}, {}));
    EXPECT_TRUE(session.sltSaveAs());
    EXPECT_EQ(session.currentFile(), folder.filePath(QStringLiteral("plant.v2.uap")));
    EXPECT_EQ(driver.seen().size(), 1);
}

TEST_F(Session, UnreadableFileDoesNotBecomeTheProject)
{
    const QString file = make(QStringLiteral("plant.uap"));
    reading.error = QStringLiteral("It is <b>odd</b>.");
    {
        const DialogDriver driver;
        session.open(file);
        ASSERT_EQ(driver.seen().size(), 1);
        EXPECT_TRUE(driver.seen().first().contains(QStringLiteral("could not be read.\nIt is <b>odd</b>.")));
    }
    EXPECT_TRUE(session.currentFile().isEmpty());
    EXPECT_TRUE(window.windowTitle().endsWith(QStringLiteral(" - NewProject[*]")));
    EXPECT_FALSE(actions[QlumMainActions::SaveProject]->isEnabled());
    EXPECT_TRUE(recent.files().isEmpty());

    reading.error.clear();
    reading.leftOut = QStringList{QStringLiteral("Skipped 'x': it is no entry.")};
    const DialogDriver driver;
    session.parseArguments({file});
    EXPECT_EQ(driver.seen().filter(QStringLiteral("Not all of the project")).size(), 1);
    EXPECT_EQ(session.currentFile(), file);
    EXPECT_TRUE(window.isWindowModified()) << "what is left out of it would be lost without a question";
    EXPECT_TRUE(actions[QlumMainActions::SaveProject]->isEnabled());
}

TEST_F(Session, ChangesWhileAProjectIsConnectedAreMarked)
{
    changesWhileLoading = true;
    session.open(make(QStringLiteral("plant.uap")));
    EXPECT_TRUE(window.isWindowModified());
    EXPECT_TRUE(actions[QlumMainActions::SaveProject]->isEnabled());
}

TEST_F(Session, RecentProjectsAreBoundedAndForgetMissingFiles)
{
    QStringList files;
    for (int i = 0; i < 7; ++i) {
        files.prepend(make(QStringLiteral("p%1.uap").arg(i)));
        session.open(files.first());
    }
    session.open(files.at(2));
    files.move(2, 0);
    EXPECT_EQ(recent.files(), files.mid(0, 5));
    EXPECT_EQ(recent.menu()->actions().first()->text(), QStringLiteral("&1 p4.uap"));

    calls.clear();
    QFile::remove(files.at(1));
    const DialogDriver driver;
    recent.menu()->actions().at(1)->trigger();
    EXPECT_TRUE(calls.isEmpty());
    EXPECT_EQ(driver.seen(),
              QStringList{QStringLiteral(
                  "File not found: The selected project file does not exist. It will be removed "
                  "from the list of recent projects.")});
    EXPECT_FALSE(recent.files().contains(files.at(1)));
    recent.menu()->actions().first()->trigger();
    EXPECT_EQ(calls.last(), QStringLiteral("load ") + files.first());
}

// A second process has its own picture of the settings file; a link to it gives the test such a one.
TEST_F(Session, RecentProjectsOfAnotherProcessAreKeptAndShown)
{
    recent.add(QStringLiteral("/plant/first.uap"));
    const QString link = folder.filePath(QStringLiteral("other.ini"));
    ASSERT_TRUE(QFile::link(QSettings().fileName(), link));
    QSettings other(link, QSettings::IniFormat);
    const auto key = QStringLiteral("RecentFiles");
    ASSERT_EQ(other.value(key).toStringList(), QStringList{QStringLiteral("/plant/first.uap")});
    const QSettings held; // so that the program's own picture lives on meanwhile
    other.setValue(key, QStringList{QStringLiteral("/plant/second.uap"), QStringLiteral("/plant/first.uap")});
    other.sync();

    emit recent.menu()->aboutToShow();
    ASSERT_EQ(recent.menu()->actions().size(), 2);
    EXPECT_EQ(recent.menu()->actions().first()->toolTip(), QStringLiteral("/plant/second.uap"));
    recent.add(QStringLiteral("/plant/third.uap"));
    other.sync();
    EXPECT_EQ(other.value(key).toStringList(),
              (QStringList{QStringLiteral("/plant/third.uap"), QStringLiteral("/plant/second.uap"),
                           QStringLiteral("/plant/first.uap")}));
}

TEST(BugReport, CarriesItsBodyThroughTheAddress)
{
    const QString body = QlumBugReport::body();
    EXPECT_TRUE(body.startsWith(QStringLiteral("Tavelin:\n   Version 1.4.2 ")));
    int from = 0;
    for (const char* part :
         {"Stack Version:\n   Version:", "   Source Timestamp:", "   Compiler:", "Stack Configuration:\n   ",
          "Platform Layer Version:\n", "Platform Layer Configuration:\n   ", "Operating System:\n   Linux\n",
          "Overview:\n   (Insert Text here)\n\n", "Steps to Reproduce:\n", "Actual Results:\n",
          "Expected Results:\n"}) {
        const int at = body.indexOf(QLatin1String(part), from);
        EXPECT_GE(at, from) << part;
        from = at;
    }
    const QString address = QString::fromLatin1(QlumBugReport::url().toEncoded());
    EXPECT_TRUE(address.startsWith(QStringLiteral("mailto:")));
    const QString encoded = address.mid(address.indexOf(QStringLiteral("&body=")) + 6);
    EXPECT_EQ(QUrl::fromPercentEncoding(encoded.toLatin1()), body);
}
