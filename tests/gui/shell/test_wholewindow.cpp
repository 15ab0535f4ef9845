#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumservernode.h>
#include <app/mainwindow/qlumdocumentarea.h>
#include <app/mainwindow/qlummainactions.h>
#include <app/mainwindow/qlumprojectdrop.h>
#include <app/mainwindow/qlumshortcutsdialog.h>
#include <app/mainwindow/qlumtavelin.h>
#include <app/mainwindow/qlumtavelinservices.h>
#include <app/project/qlumprojectmodel.h>
#include <app/settings/qlumsettingsdialog.h>
#include <app/settings/qlumsettingsmodel.h>
#include <app/support/qlumsupportdialog.h>
#include <app/support/qlumsupportreport.h>
#include <plugins/addressspace/qlumnodemimedata.h>
#include <servers/qlumdiscoverysetting.h>
#include <servers/qlumserversettingsdialog.h>
#include <tests/gui/shell/fakeserver.h>
#include <tests/gui/shell/faketree.h>
#include <tests/support/dialogdriver.h>
#include <tests/support/keyboard.h>
#include <uabase/values/uanodeid.h>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QAccessibleInterface>
#include <QApplication>
#include <QByteArray>
#include <QComboBox>
#include <QCoreApplication>
#include <QDialog>
#include <QDir>
#include <QDockWidget>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QList>
#include <QListWidget>
#include <QMessageBox>
#include <QMimeData>
#include <QObject>
#include <QPlainTextEdit>
#include <QPoint>
#include <QPointF>
#include <QSettings>
#include <QSignalSpy>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>
#include <QWidget>
#include <gtest/gtest.h>

#include <algorithm>
#include <kzip.h>
#include <memory>
#include <string>
#include <utility>

namespace {
class WholeWindow : public ::testing::Test
{
protected:
    WholeWindow()
    {
        QSettings().clear();
        QlumTavelinServices services;
        services.createServer = [](const QString& name, QSettings&) {
            return std::make_unique<FakeServer>(name);
        };
        services.askForServer = [](QWidget*) { return std::make_unique<FakeServer>("Press"); };
        services.createPageModel = [](QlumServerNode*, QComboBox*, QObject* parent) {
            return new FakeTree(parent);
        };
        window = std::make_unique<QlumTavelin>(std::move(services));
        window->show();
    }
    void openAll()
    {
        for (const QlumDocumentType& type : window->documents()->types())
            window->documents()->add(type.type, window->documents()->freeName(type.type));
    }

    std::unique_ptr<QlumTavelin> window;
};

bool isControl(const QWidget* widget)
{
    return qobject_cast<const QAbstractButton*>(widget) || qobject_cast<const QLineEdit*>(widget) ||
           qobject_cast<const QComboBox*>(widget) || qobject_cast<const QAbstractSpinBox*>(widget) ||
           qobject_cast<const QAbstractItemView*>(widget) || qobject_cast<const QPlainTextEdit*>(widget);
}

// Of another control, which has the name, or one that Qt makes for itself.
bool isPart(const QWidget* widget)
{
    const QWidget* parent = widget->parentWidget();
    return qobject_cast<const QComboBox*>(parent) || qobject_cast<const QAbstractSpinBox*>(parent) ||
           qobject_cast<const QLineEdit*>(parent) || parent->inherits("QTabBar") ||
           parent->inherits("QComboBoxPrivateContainer") || parent->inherits("QAbstractItemView") ||
           parent->inherits("QDockWidget") || parent->inherits("QMenuBar") ||
           parent->inherits("QlumMessageBar") || widget->inherits("QHeaderView");
}

QList<QWidget*> controls(const QWidget& root)
{
    QList<QWidget*> found;
    for (QWidget* widget : root.findChildren<QWidget*>())
        // some have a text only when there is something to say, and are hidden before
        if (isControl(widget) && !isPart(widget) && !widget->isHidden() &&
            (widget->focusPolicy() & Qt::TabFocus))
            found.append(widget);
    return found;
}

QString describe(const QWidget& widget)
{
    return QStringLiteral("%1 '%2' in %3")
        .arg(QLatin1String(widget.metaObject()->className()), widget.objectName(),
             QLatin1String(widget.parentWidget()->metaObject()->className()));
}

// Controls that a screen reader could only call by their kind.
QStringList nameless(const QWidget& root)
{
    QStringList found;
    for (QWidget* widget : controls(root)) {
        QAccessibleInterface* told = QAccessible::queryAccessibleInterface(widget);
        const bool isNamed = qobject_cast<const QComboBox*>(widget) // whose name there is what it shows
                                 ? !widget->accessibleName().isEmpty() || !widget->toolTip().isEmpty() ||
                                       !told->relations(QAccessible::Label).isEmpty()
                                 : !told || !told->text(QAccessible::Name).trimmed().isEmpty();
        if (!isNamed)
            found.append(describe(*widget));
    }
    return found;
}

// Controls for which What's This? has nothing to say, nor for what they are in, and that have no tool tip.
QStringList unexplained(const QWidget& root)
{
    QStringList found;
    for (const QWidget* widget : controls(root)) {
        if (widget->parentWidget()->inherits("QDialogButtonBox"))
            continue; // OK and Cancel need no words
        const QWidget* teller = widget;
        while (teller && teller->whatsThis().isEmpty() && teller->toolTip().isEmpty())
            teller = teller->isWindow() ? nullptr : teller->parentWidget();
        if (!teller)
            found.append(describe(*widget));
    }
    return found;
}
} // namespace

TEST_F(WholeWindow, EveryControlHasANameForScreenReaders)
{
    openAll();
    const QStringList found = nameless(*window);
    EXPECT_TRUE(found.isEmpty()) << found.join(QLatin1Char('\n')).toStdString();
    QlumSettingsModel settings;
    const QStringList ofDialogs = nameless(QlumSettingsDialog(&settings)) +
                                  nameless(QlumShortcutsDialog({})) +
                                  nameless(QlumSupportDialog({{"log.txt", "Log", "text"}}));
    EXPECT_TRUE(ofDialogs.isEmpty()) << ofDialogs.join(QLatin1Char('\n')).toStdString();
}

TEST_F(WholeWindow, EveryControlExplainsItself)
{
    openAll();
    const QString found = unexplained(*window).join(QLatin1Char('\n'));
    EXPECT_TRUE(found.isEmpty()) << found.toStdString();
    QlumSettingsModel settings;
    const QString ofDialogs = (unexplained(QlumSettingsDialog(&settings)) +
                               unexplained(QlumSupportDialog({{"log.txt", "Log", "text"}})) +
                               unexplained(QlumServerSettingsDialog(QlumDiscoverySetting(), nullptr)))
                                  .join(QLatin1Char('\n'));
    EXPECT_TRUE(ofDialogs.isEmpty()) << ofDialogs.toStdString();
}

TEST_F(WholeWindow, ServerIsAddedAndConnectedWithKeysAlone)
{
    QApplication::setActiveWindow(window.get());
    ASSERT_TRUE(keyboard::tabTo("startAddServer")) << "from the start page";
    keyboard::press(Qt::Key_Space);
    ASSERT_EQ(window->projectModel()->servers().size(), 1);
    keyboard::press(Qt::Key_F, Qt::AltModifier);
    keyboard::press(Qt::Key_Right);
    keyboard::press(Qt::Key_Right);
    ASSERT_NE(QApplication::activePopupWidget(), nullptr) << "the menu Server";
    keyboard::press(Qt::Key_C);
    ASSERT_EQ(window->projectModel()->servers().first()->connectionStatus(), QlumConnectionStatus::Connected);
}

TEST_F(WholeWindow, ShortcutsAreListedWithTheirPlaces)
{
    openAll();
    const QList<QlumShortcutRow> rows = qlumShortcutRows(window.get(), window->centralTabWidget());
    const auto placeOf = [&rows](const QString& command) {
        for (const QlumShortcutRow& row : rows)
            if (row.command == command)
                return row.keys + QLatin1Char('|') + row.place;
        return QString();
    };
    EXPECT_EQ(placeOf("Command Palette..."), QStringLiteral("Ctrl+Shift+P|Everywhere"));
    EXPECT_EQ(placeOf("Condition Refresh"), QStringLiteral("F5|Event View"));
}

TEST_F(WholeWindow, DemoProjectIsReadWholeAndBringsItsViews)
{
    const QlumProjectReading reading = window->loadProject(TAVELIN_TEST_DATA "/../../tools/dev/demo.uap.in");
    EXPECT_EQ(reading.error, QString());
    EXPECT_EQ(reading.leftOut, QStringList());
    EXPECT_EQ(reading.servers, 1);
    EXPECT_EQ(reading.documents, 3);
    const QTemporaryDir folder;
    ASSERT_TRUE(window->saveProject(folder.filePath("saved.uap")));
    QSettings saved(folder.filePath("saved.uap"), QSettings::IniFormat);
    saved.beginGroup("Documents");
    EXPECT_EQ(saved.value("Alarms/DocumentSettings/MonitoredNodes/size").toInt(), 1);
    EXPECT_EQ(saved.value("Alarms/DocumentSettings/Page").toInt(), 1);
    EXPECT_EQ(saved.value("History/DocumentSettings/Items/size").toInt(), 2);
    EXPECT_EQ(saved.value("Live values/DocumentSettings/Rows/1/Text").toString().count("Dynamic."), 7);
    EXPECT_EQ(window->loadProject(folder.filePath("saved.uap")).leftOut, QStringList())
        << "what is written can be read";
}

TEST_F(WholeWindow, OneProjectThatIsDroppedIsOpenedAfterTheQuestion)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("plant.uap");
    ASSERT_TRUE(window->saveProject(path));
    const auto drop = [this](const QList<QUrl>& urls) {
        QMimeData data;
        data.setUrls(urls);
        QDropEvent event(QPointF(10, 10), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                         Qt::NoModifier);
        QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                              Qt::NoModifier);
        enter.ignore();
        QCoreApplication::sendEvent(window.get(), &enter);
        event.ignore();
        if (enter.isAccepted())
            QCoreApplication::sendEvent(window.get(), &event);
        return event.isAccepted();
    };
    EXPECT_FALSE(drop({QUrl::fromLocalFile(path), QUrl::fromLocalFile(path)})) << "one at a time";
    EXPECT_FALSE(drop({QUrl::fromLocalFile(folder.filePath("picture.png"))}));
    EXPECT_FALSE(drop({QUrl("http://example.org/plant.uap")}));
    window->setModified();
    {
        const DialogDriver driver(DialogDriver::press(QMessageBox::Cancel));
        EXPECT_TRUE(drop({QUrl::fromLocalFile(path)}));
        ASSERT_TRUE(QTest::qWaitFor([&driver] { return !driver.seen().isEmpty(); }));
        QCoreApplication::processEvents();
        EXPECT_TRUE(window->windowTitle().contains("NewProject"));
    }
    const DialogDriver driver(DialogDriver::press(QMessageBox::No));
    EXPECT_TRUE(drop({QUrl::fromLocalFile(path)}));
    EXPECT_TRUE(QTest::qWaitFor([this] { return window->windowTitle().contains("plant"); }));
}

// As Qt hands over what another program drags; each numbers its servers from one on.
class ForeignData : public QMimeData
{
public:
    void* qt_metacast(const char* name) override
    {
        return std::string(name) == "QInternalMimeData" ? this : QMimeData::qt_metacast(name);
    }
};

TEST_F(WholeWindow, NodesOfAnotherWindowAreNoNodesOfOurServers)
{
    const QByteArray nodes = qlumEncodeNodes({1, {{UaNodeId(85), "Objects"}}}, 1);
    const auto isTaken = [&](QMimeData& data) {
        data.setData(qlumNodeMimeType(), nodes);
        unsigned int serverId = 0, count = 0;
        UaNodeId* ids = nullptr;
        const bool isRead = window->nodeIdsFromMimeData(&data, &serverId, &count, &ids);
        const std::unique_ptr<UaNodeId[]> owned(ids);
        return isRead && serverId == 1 && count == 1 && ids[0] == UaNodeId(85);
    };
    QMimeData ours;
    EXPECT_TRUE(isTaken(ours));
    ForeignData theirs;
    EXPECT_FALSE(isTaken(theirs));
}

TEST_F(WholeWindow, ReportForSupportHoldsWhatHelpsAndNoSecret)
{
    const QTemporaryDir folder;
    QSettings settings(folder.filePath("settings.ini"), QSettings::IniFormat);
    settings.setValue("General.CallTimeout", 4711);
    settings.setValue("Tool/Password", "s3cret-word");
    settings.sync();
    QFile trace(folder.filePath("trace.log"));
    ASSERT_TRUE(trace.open(QIODevice::WriteOnly));
    trace.write(QByteArray(2 * 1024 * 1024, 'x') + "\nlast line\n");
    trace.close();
    QlumReportSources sources;
    sources.versions = "Version 1.4.2";
    sources.settingsFile = settings.fileName();
    sources.project = "[Servers]\n1\\Name=Press\n1\\UserName=paula\n1\\Password=s3cret-word\n";
    sources.traceFile = trace.fileName();
    QlumSupportDialog dialog(qlumReportParts(sources));
    auto* list = dialog.findChild<QListWidget*>("reportParts");
    ASSERT_EQ(list->count(), 4) << "no log, no diagnosis, no crash";
    list->setCurrentRow(2);
    const QString shown = dialog.findChild<QPlainTextEdit*>("reportText")->toPlainText();
    EXPECT_TRUE(shown.contains("Press")) << "what is shown is what is written";
    list->item(0)->setCheckState(Qt::Unchecked);
    const QString file = folder.filePath("report.zip");
    ASSERT_EQ(qlumWriteReport(file, dialog.chosen()), QString());
    KZip zip(file);
    ASSERT_TRUE(zip.open(QIODevice::ReadOnly));
    const auto* root = dynamic_cast<const KArchiveDirectory*>(zip.directory()->entry("tavelin-report"));
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(root->entry("versions.txt"), nullptr) << "was not checked";
    const auto content = [root](const QString& name) {
        const KArchiveFile* found = root->file(name);
        return found ? found->data() : QByteArray();
    };
    EXPECT_TRUE(content("settings.ini").contains("4711"));
    EXPECT_EQ(QString::fromUtf8(content("project.uap")), shown);
    for (const char* secret : {"s3cret", "paula"})
        EXPECT_FALSE(content("settings.ini").contains(secret) || shown.contains(secret)) << secret;
    const QString traceName = QStringLiteral("%1/trace.log").arg(QDir(folder.path()).dirName());
    EXPECT_EQ(content(traceName), QByteArray("last line\n")) << "its end, from a line's beginning on";
    EXPECT_NE(qlumWriteReport(folder.filePath("none/report.zip"), dialog.chosen()), QString());
}

TEST(TwoInstances, KeepEachOthersSettings)
{
    QSettings().clear();
    QSettings().sync();
    QlumSettingsModel mine;
    const QString file = QSettings().fileName();
    {
        // as another process would
        QSettings other(file, QSettings::IniFormat);
        other.setValue("General.CallTimeout", 20000);
        other.setValue("Tool/Columns", "wide");
        other.sync();
    }
    mine.setValue("General.BrowseTimeout", 2000);
    QSettings().sync();
    QSettings read(file, QSettings::IniFormat);
    EXPECT_EQ(read.value("General.CallTimeout").toInt(), 20000);
    EXPECT_EQ(read.value("Tool/Columns").toString(), QStringLiteral("wide"));
    EXPECT_EQ(read.value("General.BrowseTimeout").toInt(), 2000);
    QSettings().clear();
}
