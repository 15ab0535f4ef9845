#include <app/api/qlumappeventadapter.h>
#include <app/api/qlumdocumentwidgetinterface.h>
#include <app/api/qlumservernode.h>
#include <app/ini/qluminicheck.h>
#include <app/project/qlumprojectfile.h>
#include <app/project/qlumprojectmodel.h>
#include <app/project/qlumprojectnodedocument.h>
#include <tests/gui/shell/fakeserver.h>
#include <tests/support/dialogdriver.h>
#include <tests/support/stubapplication.h>
#include <uawidgets/qlumemptydocument.h>

#include <QAbstractItemModel>
#include <QAbstractItemModelTester>
#include <QByteArray>
#include <QChar>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QMap>
#include <QModelIndex>
#include <QObject>
#include <QPoint>
#include <QRect>
#include <QSettings>
#include <QSignalSpy>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariant>
#include <QVariantList>
#include <QVariantMap>
#include <QWidget>
#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

namespace {
using IdMap = QMap<int, int>;

// A document that keeps one text and remembers the ids it was given.
class Sheet : public QWidget, public QlumDocumentWidgetInterface
{
public:
    void* qt_metacast(const char* name) override
    {
        if (qstrcmp(name, QlumDocumentWidgetInterface_iid) == 0)
            return static_cast<QlumDocumentWidgetInterface*>(this);
        return QWidget::qt_metacast(name);
    }
    void saveSettings(QSettings& settings) override { settings.setValue(QStringLiteral("Text"), text); }
    void loadSettings(QSettings& settings, const IdMap& ids) override
    {
        text = settings.value(QStringLiteral("Text")).toString();
        serverIds = ids;
    }
    QString text;
    IdMap serverIds;
};

class OnePlugin : public QlumAppEventAdapter
{
public:
    void saveSettings(QSettings& settings) override { settings.setValue(QStringLiteral("Tool/Key"), 5); }
    void loadSettings(QSettings& settings, const IdMap& ids) override
    {
        value = settings.value(QStringLiteral("Tool/Key")).toInt();
        serverIds = ids;
    }
    int value = 0;
    IdMap serverIds;
};

// A project with all that reading and writing one needs.
struct Project
{
    QlumProjectModel model;
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
    OnePlugin plugin;
    std::vector<std::unique_ptr<QWidget>> widgets;

    QlumProjectNodeDocument* addDocument(const QString& type, const QString& name)
    {
        if (type != QLatin1String("Data Access View"))
            return nullptr;
        widgets.push_back(std::make_unique<Sheet>());
        auto node = std::make_unique<QlumProjectNodeDocument>(name, type);
        node->setWidget(widgets.back().get());
        return model.addDocument(std::move(node));
    }
    QlumProjectFile file()
    {
        QlumProjectFileHooks hooks;
        hooks.createServer = [](const QString& name, QSettings& settings) -> std::unique_ptr<QlumServerNode> {
            return std::make_unique<FakeServer>(name, settings.value(QStringLiteral("ServerUrl")).toString());
        };
        hooks.createDocument = [this](const QString& type, const QString& name) {
            return addDocument(type, name);
        };
        return QlumProjectFile(&model, &plugin, std::move(hooks));
    }
    Sheet* sheet(int row) { return static_cast<Sheet*>(model.documents().at(row)->widget()); }
};

QByteArray content(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

class ProjectFile : public ::testing::Test
{
protected:
    void write(const QByteArray& bytes) const
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }

    StubApplication application;
    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("plant.uap"));
};
} // namespace

TEST_F(ProjectFile, RoundTripMapsServerIds)
{
    Project saved;
    QlumServerNode* first = saved.model.addServer(
        std::make_unique<FakeServer>(QStringLiteral("Mill"), QStringLiteral("opc.tcp://mill")));
    QlumServerNode* second =
        saved.model.addServer(std::make_unique<FakeServer>(QStringLiteral("Kiln, \"B\" ä")));
    first->setNamespaceTable({QStringLiteral("http://opcfoundation.org/UA/"), QStringLiteral("urn:mill")});
    second->connectServer();
    saved.addDocument(QStringLiteral("Data Access View"), QStringLiteral("Watch & see"));
    saved.sheet(0)->text = QStringLiteral("@home = 1;2,3\n");
    ASSERT_TRUE(saved.file().save(path));
    const QByteArray written = content(path);
    EXPECT_FALSE(written.contains("test="));

    Project loaded;
    const QlumProjectReading reading = loaded.file().load(path);
    const auto& toConnect = reading.toConnect;
    ASSERT_EQ(loaded.model.servers().size(), 2);
    EXPECT_TRUE(application.texts().isEmpty()) << application.texts().join(QLatin1Char('\n')).toStdString();
    auto* mill = static_cast<FakeServer*>(loaded.model.servers().at(0));
    EXPECT_EQ(mill->displayName(), QStringLiteral("Mill"));
    EXPECT_EQ(mill->url(), QStringLiteral("opc.tcp://mill"));
    EXPECT_EQ(mill->namespaceTable(), first->namespaceTable());
    EXPECT_EQ(loaded.model.servers().at(1)->displayName(), second->displayName());
    ASSERT_EQ(toConnect.size(), 1);
    EXPECT_EQ(toConnect.first(), loaded.model.servers().at(1));
    const IdMap expected{{int(first->serverId()), int(mill->serverId())},
                         {int(second->serverId()), int(toConnect.first()->serverId())}};
    EXPECT_EQ(loaded.plugin.serverIds, expected);
    EXPECT_EQ(loaded.plugin.value, 5);
    EXPECT_EQ(loaded.model.documents().first()->displayName(), QStringLiteral("Watch & see"));
    EXPECT_EQ(loaded.sheet(0)->text, saved.sheet(0)->text);
    EXPECT_EQ(loaded.sheet(0)->serverIds, expected);
}

TEST_F(ProjectFile, OldDocumentTypeIsReadAndUnknownOneSkipped)
{
    write("[Documents]\nOld\\DocumentType=Data Access Classic View\nOld\\DocumentSettings\\Text=kept\n"
          "Odd\\DocumentType=Coffee View\n");
    Project project;
    EXPECT_TRUE(project.file().load(path).toConnect.isEmpty());
    ASSERT_EQ(project.model.documents().size(), 1);
    EXPECT_EQ(project.model.documents().first()->documentType(), QStringLiteral("Data Access View"));
    EXPECT_EQ(project.sheet(0)->text, QStringLiteral("kept"));
}

TEST_F(ProjectFile, WhatANewerVersionHasWrittenIsToldAndItsDocumentsAreNotLost)
{
    QCoreApplication::setApplicationVersion("1.9.3");
    write(
        "[General]\nSavedByVersion=1.10.0\n[Servers]\n3\\Name=Mill\n3\\ProjectServerId=3\n[Documents]\n"
        "Odd\\DocumentType=Coffee View\nOdd\\DocumentSettings\\ServerId=3\nOdd\\DocumentSettings\\Cups=12\n");
    Project project;
    EXPECT_EQ(project.file().load(path).newerVersion, "1.10.0");
    const int id = static_cast<int>(project.model.servers().first()->serverId());
    project.addDocument("Data Access View", "Odd"); // the name seemed to be free
    for (int round = 0; round < 2; ++round) {       // the second time as one's own project
        ASSERT_TRUE(project.file().save(path));
        const QSettings saved(path, QSettings::IniFormat);
        EXPECT_EQ(saved.value("SavedByVersion"), "1.9.3");
        EXPECT_EQ(saved.value("Documents/Odd/DocumentType"), "Data Access View");
        EXPECT_EQ(saved.value("Documents/Odd 2/DocumentType"), "Coffee View");
        EXPECT_EQ(saved.value("Documents/Odd 2/DocumentSettings/Cups"), "12");
        EXPECT_EQ(saved.value("Documents/Odd 2/DocumentSettings/ServerId").toInt(), id);
    }
    Project again;
    EXPECT_EQ(again.file().load(path).newerVersion, QString());
    EXPECT_EQ(again.model.unknownDocuments().size(), 1);
    QCoreApplication::setApplicationVersion({});
}

TEST_F(ProjectFile, FailedSaveLeavesTheFile)
{
    Project project;
    EXPECT_FALSE(project.file().save(folder.filePath(QStringLiteral("missing/plant.uap"))));
    EXPECT_FALSE(QFile::exists(folder.filePath(QStringLiteral("missing"))));
    EXPECT_FALSE(project.file().save(folder.path())); // a folder is no file
    EXPECT_FALSE(project.file().save(QStringLiteral("/proc/plant.uap")));
    write("[Servers]\nkept=1\n");
    QFile::setPermissions(path, QFile::ReadOwner);
    if (!QFile(path).open(QIODevice::ReadWrite)) { // the superuser writes to read-only files too
        EXPECT_FALSE(project.file().save(path));
        EXPECT_EQ(content(path), QByteArray("[Servers]\nkept=1\n"));
    }
}

TEST_F(ProjectFile, SaveKeepsAccessRightsAndReplacesOldEntries)
{
    write("[Stale]\nkey=1\n");
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
    Project project;
    ASSERT_TRUE(project.file().save(path));
    EXPECT_EQ(QFile::permissions(path) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    EXPECT_FALSE(content(path).contains("Stale"));
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList{QStringLiteral("plant.uap")});
}

TEST_F(ProjectFile, ObjectsAndRubbishInAFileAreRefused)
{
    write("[Servers]\n1\\Name=Good\n1\\ProjectServerId=1\n1\\Namespaces\\4000000000=urn:far\n"
          "1\\Namespaces\\-1=urn:before\n1\\Namespaces\\1=urn:one\n"
          "2\\Name=@Variant(\\0\\0\\0\\x7f\\0\\0\\0\\xfQPixmap)\n"
          "3\\Name=\"\\x40Variant(\\0\\0\\0\\x10\\0\\0\\0\\0\\xff)\"\n"
          "4\\Name=a, @DateTime(\\0\\0\\0\\x10)\n"
          "no entry at all\n[Documents]\nX\\DocumentType=@@Variant(\n");
    Project project;
    const QlumProjectReading reading = project.file().load(path);
    EXPECT_TRUE(reading.error.isEmpty());
    EXPECT_EQ(reading.leftOut.size(), 4);
    EXPECT_EQ(reading.servers, 1);
    const QStringList log = application.texts();
    EXPECT_EQ(log.filter(QStringLiteral("neither text nor number")).size(), 3);
    EXPECT_EQ(log.filter(QStringLiteral("no entry at all")).size(), 1);
    ASSERT_EQ(project.model.servers().size(), 1);
    EXPECT_EQ(project.model.servers().first()->namespaceTable(),
              (QStringList{QString(), QStringLiteral("urn:one")}));
}

TEST_F(ProjectFile, RubbishIsNoProjectAndAnEmptyFileIs)
{
    write("\x7f"
          "ELF\1\1\n\0\0rubbish\nof some lines");
    Project project;
    EXPECT_FALSE(project.file().load(path).error.isEmpty());
    write("");
    const QlumProjectReading empty = project.file().load(path);
    EXPECT_TRUE(empty.error.isEmpty());
    EXPECT_TRUE(empty.leftOut.isEmpty());
}

TEST_F(ProjectFile, ObjectsInDisguiseDoNotReachTheReader)
{
    write("; \"\n[Servers]\n1\\Name=@Variant(\\0)\n;\"\n2\\Name=\\z@Variant(\\0)\n"
          "3\\Name=\\\r\n@Variant(\\0)\n\"4\\Na=me\"=@Variant(\\0)\n5\\Na\\=me=@DateTime(\\0)\n"
          "6\\Name=@mill(@Variant(\\0))\n");
    const QlumIniCheck check = qlumCheckIniFile(path);
    EXPECT_EQ(check.refused.size(), 5) << check.refused.join(QLatin1Char('\n')).toStdString();
    EXPECT_EQ(check.content, "[Servers]\n6\\Name=@@mill(@Variant(\\0))\n");
}

TEST_F(ProjectFile, WhatQSettingsWroteIsNotChanged)
{
    const QVariantMap values{
        {QStringLiteral("text"), QString::fromUtf8("\"\xc3\xa4\" = \xe2\x82\xac"
                                                   "1f; \\ 2,3\n\x01"
                                                   "2")},
        {QStringLiteral("a b/%c/\u20ac"),
         QStringList{QString(), QStringLiteral(" x "), QStringLiteral("@,y")}},
        {QStringLiteral("a b/bytes"), QByteArray("\0\1\xff"
                                                 "ab",
                                                 5)},
        {QStringLiteral("a/rect"), QRect(1, 2, 3, 4)},
        {QStringLiteral("General/mixed"), QVariantList{QPoint(1, 2), QStringLiteral("@"), QSize(3, 4)}},
        {QStringLiteral("null"), QString(QChar(0))},
        {QStringLiteral("nothing"), QVariant()}};
    {
        QSettings settings(path, QSettings::IniFormat);
        for (auto value = values.begin(); value != values.end(); ++value)
            settings.setValue(value.key(), value.value());
    }
    const QlumIniCheck check = qlumCheckIniFile(path);
    EXPECT_TRUE(check.refused.isEmpty());
    EXPECT_TRUE(check.unchanged) << check.content.toStdString();
    EXPECT_GT(check.content.size(), 200);
}

TEST_F(ProjectFile, HugeFilesAndPipesAreRefused)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_TRUE(file.resize(17 * 1024 * 1024));
    file.close();
    Project project;
    EXPECT_TRUE(project.file().load(path).error.contains(QStringLiteral("larger than 16 MB")));
    ASSERT_EQ(application.texts().size(), 1);
    EXPECT_TRUE(application.texts().first().contains(QStringLiteral("larger than 16 MB")));

    QByteArray many("[Servers]\n");
    for (int i = 0; i < 1500; ++i)
        many += QByteArray::number(i) + "\\Name=s\n";
    write(many);
    EXPECT_EQ(project.file().load(path).leftOut.size(), 1);
    EXPECT_EQ(project.model.servers().size(), 1000);
    EXPECT_TRUE(application.texts().last().contains(QStringLiteral("1500")));

    write("[a]\nmany=" + QByteArray(1500000, ',') + "\nx=" + QByteArray(900000, ',') +
          "\nfew=1,2\ny=" + QByteArray(900000, ','));
    const QlumIniCheck commas = qlumCheckIniFile(path);
    EXPECT_EQ(commas.refused.size(), 2); // more elements than anybody stores
    EXPECT_TRUE(commas.content.contains("few=1, 2"));
    EXPECT_FALSE(qlumCheckIniFile(QStringLiteral("/dev/zero")).readable);
    EXPECT_TRUE(qlumCheckIniFile(folder.filePath(QStringLiteral("none.uap"))).readable);
}

TEST(ProjectModel, HasItsSkeletonAndFollowsItsNodes)
{
    Project project;
    QlumProjectModel& model = project.model;
    const QModelIndex root = model.index(0, 0);
    EXPECT_EQ(root.data().toString(), QStringLiteral("Project"));
    EXPECT_EQ(model.index(0, 0, root).data().toString(), QStringLiteral("Servers"));
    EXPECT_EQ(model.index(1, 0, root).data().toString(), QStringLiteral("Documents"));
    EXPECT_EQ(model.headerData(0, Qt::Horizontal).toString(), QStringLiteral("Item"));

    QlumServerNode* server = model.addServer(std::make_unique<FakeServer>(QStringLiteral("A")));
    EXPECT_EQ(model.findServer(server->serverId()), server);
    EXPECT_EQ(model.registry().name(server->serverId()), QStringLiteral("A"));
    int changes = 0;
    QObject::connect(&model, &QlumProjectModel::serverNodeChanged, [&changes] { ++changes; });
    server->connectServer();
    EXPECT_EQ(changes, 1);
    const unsigned int id = server->serverId();
    model.removeServer(server);
    EXPECT_EQ(model.findServer(id), nullptr);
    EXPECT_EQ(model.registry().name(id), QString());
}

TEST(ProjectModel, RenamedServerIsToldByEveryWay)
{
    Project project;
    QlumProjectModel& model = project.model;
    QlumServerNode* server = model.addServer(std::make_unique<FakeServer>(QStringLiteral("A")));
    const QSignalSpy rows(&model, &QAbstractItemModel::dataChanged);
    const QSignalSpy renamed(&model, &QlumProjectModel::serverRenamed);
    const QSignalSpy states(&model, &QlumProjectModel::serverNodeChanged);
    server->setDisplayName(QStringLiteral("B"));
    server->setDisplayName(QStringLiteral("B"));
    EXPECT_EQ(rows.size(), 1);
    EXPECT_EQ(renamed.size(), 1);
    EXPECT_EQ(states.size(), 0) << "tools would take it for a new session";
    EXPECT_EQ(model.registry().name(server->serverId()), QStringLiteral("B"));
}

TEST(EmptyDocument, KeepsWhatTheProjectHoldsForTheToolThatIsMissing)
{
    const QTemporaryDir folder;
    QSettings file(folder.filePath(QStringLiteral("a.uap")), QSettings::IniFormat);
    const QVariantMap stored{
        {QStringLiteral("Columns"), QStringList{QStringLiteral("a"), QStringLiteral("b")}},
        {QStringLiteral("Items/1/ServerId"), 3},
        {QStringLiteral("Items/1/Depth"), 3},
        {QStringLiteral("Items/2/ServerId"), 99}};
    for (auto entry = stored.begin(); entry != stored.end(); ++entry)
        file.setValue(QStringLiteral("Old/") + entry.key(), entry.value());
    QlumEmptyDocument document{QString(), QString()};
    file.beginGroup(QStringLiteral("Old"));
    document.loadSettings(file, {{3, 7}});
    file.endGroup();
    file.beginGroup(QStringLiteral("New"));
    document.saveSettings(file);
    QVariantMap kept;
    for (const QString& key : file.allKeys())
        kept.insert(key, file.value(key));
    QVariantMap expected = stored;
    expected[QStringLiteral("Items/1/ServerId")] = 7;
    EXPECT_EQ(kept, expected);
}

TEST(ProjectModel, RenamingADocumentRefusesWhatAFileCouldNotKeep)
{
    Project project;
    QlumProjectNodeDocument* a = project.addDocument(QStringLiteral("Data Access View"), QStringLiteral("A"));
    project.addDocument(QStringLiteral("Data Access View"), QStringLiteral("B"));
    const QModelIndex index = project.model.indexOf(a);
    const DialogDriver driver;
    EXPECT_FALSE(project.model.setData(index, QStringLiteral("B")));
    EXPECT_FALSE(project.model.setData(index, QStringLiteral("x/y")));
    EXPECT_FALSE(project.model.setData(index, QString()));
    ASSERT_EQ(driver.seen().size(), 3);
    EXPECT_EQ(
        driver.seen().first(),
        QStringLiteral("Error while renaming a document: A document with the name 'B' already exists."));
    EXPECT_TRUE(project.model.setData(index, QStringLiteral("C")));
    EXPECT_EQ(project.model.findDocument(QStringLiteral("C")), a);
}
