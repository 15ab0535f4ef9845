#include <app/api/qlumlog.h>
#include <app/api/qlumuatrace.h>
#include <app/mainwindow/qlummainactions.h>
#include <app/mainwindow/qlumprojectsession.h>
#include <app/mainwindow/qlumrecentfiles.h>
#include <app/recovery/qlumcrashhandler.h>
#include <app/recovery/qlumprojectrecovery.h>
#include <app/recovery/qlumsessionrecord.h>
#include <app/settings/qlumsettingsmodel.h>
#include <tests/support/dialogdriver.h>
#include <tests/support/stubapplication.h>

#include <QAbstractButton>
#include <QByteArray>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QMainWindow>
#include <QMessageBox>
#include <QMetaObject>
#include <QObject>
#include <QPlainTextEdit>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <csignal>
#include <memory>

namespace {
const auto lost = QStringLiteral("20260101-000000-000-1");

QByteArray contentOf(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString& fileName, const QByteArray& content)
{
    QFile file(fileName);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
}

// A program with a project, beside what an earlier one left.
class Recovery : public ::testing::Test
{
protected:
    [[nodiscard]] QString path(const QString& name) const { return folder.filePath(name); }
    [[nodiscard]] QStringList files() const { return QDir(folder.path()).entryList(QDir::Files); }
    [[nodiscard]] QStringList filesOf(const QString& id) const
    {
        return QDir(folder.path()).entryList({QLatin1Char('*') + id + QLatin1Char('*')}, QDir::Files);
    }

    // As a program leaves it that was ended at once.
    void leave(bool changes, bool crash)
    {
        write(path(lost + QStringLiteral(".session")), "/plant/line 1.uap");
        if (changes)
            write(path(lost + QStringLiteral(".uap")), "unsaved");
        if (crash)
            write(path(QStringLiteral("crash-") + lost + QStringLiteral(".txt")), "Signal: 11");
    }

    // Each from its start on, in the order in which the program has them.
    struct Program
    {
        explicit Program(Recovery& test)
            : record(test.folder.path(), test.folder.path()),
              session(&window, &actions, &settings, &recent,
                      {[] {}, [&test](const QString& file) { return test.load(file); },
                       [&test](const QString& file) { return test.save(file); }}),
              recovery(record,
                       {[&test](const QString& file) { return test.save(file); },
                        [this](const QString& file) { session.open(file); },
                        [this](const QString& copy, const QString& file) {
                            return session.openRecovered(copy, file);
                        }},
                       &window)
        {
            QObject::connect(&session, &QlumProjectSession::changed, &recovery,
                             &QlumProjectRecovery::sltChanged);
            QObject::connect(&session, &QlumProjectSession::clean, &recovery, &QlumProjectRecovery::sltClean);
            QObject::connect(&session, &QlumProjectSession::currentFileChanged, &recovery,
                             &QlumProjectRecovery::sltProjectFileChanged);
        }

        QlumSessionRecord record;
        QMainWindow window;
        QlumMainActions actions{&window};
        QlumSettingsModel settings;
        QlumRecentFiles recent{&settings, &window};
        QlumProjectSession session;
        QlumProjectRecovery recovery;
    };

    QlumProjectReading load(const QString& file)
    {
        QlumProjectReading reading;
        project = contentOf(file);
        if (project == "damaged")
            reading.error = QStringLiteral("It is no project file.");
        return reading;
    }
    bool save(const QString& file)
    {
        ++saves;
        write(file, project);
        return true;
    }

    QTemporaryDir folder;
    StubApplication application;
    QByteArray project = "project";
    int saves = 0;
};

DialogDriver::Answer pressNamed(const QString& name)
{
    return [name](QDialog& dialog) {
        if (auto* button = dialog.findChild<QAbstractButton*>(name))
            button->click();
        else
            dialog.reject();
    };
}
} // namespace

TEST(CrashHandlerDeathTest, ReportNamesBuildSignalStackAndLastLines)
{
    const QTemporaryDir folder;
    const QString report = folder.filePath(QStringLiteral("crash.txt"));
    EXPECT_EXIT(
        {
            QlumCrashHandler::install(report, "1.2.3");
            for (int i = 0; i < 2 * QlumCrashHandler::keptLines; ++i)
                QlumCrashHandler::note(QStringLiteral("line %1 ").arg(i) + QString(1000, QLatin1Char('x')));
            QlumCrashHandler::note(QStringLiteral("the last one"));
            std::raise(SIGSEGV);
        },
        ::testing::KilledBySignal(SIGSEGV), "");
    const QByteArray text = contentOf(report);
    EXPECT_TRUE(text.startsWith("Tavelin 1.2.3\nBuild id: ")) << text.constData();
    EXPECT_FALSE(text.contains("Build id: none"));
    EXPECT_TRUE(text.contains("\nSignal: 11,"));
    EXPECT_TRUE(text.contains("test_gui_shell") || text.contains("gui_shell")) << "no frame of this program";
    EXPECT_TRUE(text.endsWith("  the last one\n"));
    EXPECT_FALSE(text.contains("line 64 "));
    EXPECT_TRUE(text.contains("line 65 "));
    EXPECT_LT(text.size(), 64 * 1024);
}

TEST(CrashHandlerDeathTest, LinesFromBeforeTheWindowAreInTheReport)
{
    const QTemporaryDir folder;
    const QString report = folder.filePath(QStringLiteral("crash.txt"));
    EXPECT_EXIT(
        {
            QlumUaTrace::setEarlySink(QlumCrashHandler::note);
            QlumCrashHandler::install(report, "1.2.3");
            QlumLog(QStringLiteral("Certificates")).error(QStringLiteral("the store cannot be read"));
            std::raise(SIGSEGV);
        },
        ::testing::KilledBySignal(SIGSEGV), "");
    EXPECT_TRUE(contentOf(report).endsWith("  Certificates: the store cannot be read\n"))
        << contentOf(report).constData();
}

TEST_F(Recovery, UnsavedChangesAreKeptUntilTheyAreSavedAndGoWithACleanEnd)
{
    auto program = std::make_unique<Program>(*this);
    program->session.setCurrentFile(path(QStringLiteral("plant.uap")), false);
    program->recovery.keep();
    EXPECT_EQ(saves, 0) << "nothing has changed";
    program->session.setModified();
    program->recovery.keep();
    program->recovery.keep();
    EXPECT_EQ(saves, 1) << "it has changed once";
    EXPECT_EQ(contentOf(program->record.recoveryFile()), "project");
    // a second program, started meanwhile, is not offered what belongs to the first
    EXPECT_FALSE(Program(*this).record.hasLeftovers());

    ASSERT_TRUE(program->session.sltSave());
    EXPECT_FALSE(QFile::exists(program->record.recoveryFile()));
    program->session.setModified();
    program->recovery.keep();
    EXPECT_EQ(files().size(), 3); // project, record, copy
    program.reset();
    EXPECT_EQ(files(), QStringList{QStringLiteral("plant.uap")});
}

TEST_F(Recovery, ChangesOfAProgramThatCrashedAreOpenedAsThatProject)
{
    leave(true, true);
    Program program(*this);
    QString report;
    {
        DialogDriver driver([&](QDialog& dialog) {
            report = dialog.findChild<QPlainTextEdit*>(QStringLiteral("report"))->toPlainText();
            pressNamed(QStringLiteral("openProject"))(dialog);
        });
        program.recovery.offer();
        EXPECT_EQ(driver.seen(), QStringList{QStringLiteral("Recover Work")});
    }
    EXPECT_EQ(report, QStringLiteral("Signal: 11"));
    EXPECT_EQ(project, "unsaved");
    EXPECT_EQ(program.session.currentFile(), QStringLiteral("/plant/line 1.uap"));
    EXPECT_TRUE(program.window.isWindowModified());
    EXPECT_EQ(contentOf(program.record.recoveryFile()), "unsaved") << "a second crash would lose it";
    EXPECT_EQ(filesOf(lost).size(), 1) << "the report stays";
    program.recovery.offer(); // nothing is left: no dialog, which would wait here
}

TEST_F(Recovery, CopyThatCannotBeReadIsOfferedAgain)
{
    leave(true, false);
    write(path(lost + QStringLiteral(".uap")), "damaged");
    Program program(*this);
    {
        DialogDriver driver([](QDialog& dialog) {
            if (auto* box = qobject_cast<QMessageBox*>(&dialog))
                box->button(QMessageBox::Ok)->click();
            else
                pressNamed(QStringLiteral("openProject"))(dialog);
        });
        program.recovery.offer();
        EXPECT_EQ(driver.seen().size(), 2);
    }
    EXPECT_TRUE(program.session.currentFile().isEmpty());
    EXPECT_TRUE(program.record.hasLeftovers());
}

TEST_F(Recovery, WhatNobodyCanUseIsCleanedAwayAndChangesAreThrownAwayOnlyAfterAQuestion)
{
    leave(false, false);
    Program program(*this);
    EXPECT_FALSE(program.record.hasLeftovers());
    EXPECT_TRUE(filesOf(lost).isEmpty());

    leave(true, false);
    const auto throwAway = [&](QMessageBox::StandardButton answer) {
        DialogDriver driver([asked = false, answer](QDialog& dialog) mutable {
            if (auto* box = qobject_cast<QMessageBox*>(&dialog))
                box->button(answer)->click();
            else if (asked)
                dialog.reject();
            else if ((asked = true)) // later: its question would wait inside of this answer for the next
                QMetaObject::invokeMethod(dialog.findChild<QAbstractButton*>(QStringLiteral("throwAway")),
                                          "click", Qt::QueuedConnection);
        });
        program.recovery.offer();
    };
    throwAway(QMessageBox::No);
    EXPECT_EQ(filesOf(lost).size(), 2);
    throwAway(QMessageBox::Yes);
    EXPECT_TRUE(filesOf(lost).isEmpty());
}
