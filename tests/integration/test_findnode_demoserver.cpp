// The search of nodes, a way to a node by its path and the export of a branch, on a server that is not ours.
#include <app/mainwindow/qlummainactions.h>
#include <plugins/addressspace/qlumnodemimedata.h>
#include <plugins/addressspace/search/qlumexportbranchdialog.h>
#include <plugins/addressspace/search/qlumfindnodeview.h>
#include <tests/integration/clientondemoserver.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>

#include <QAbstractItemModel>
#include <QAction>
#include <QCheckBox>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QJsonValue>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QModelIndex>
#include <QPushButton>
#include <QString>
#include <QStringList>
#include <QTest>
#include <QToolButton>
#include <QTreeView>
#include <gtest/gtest.h>

#include <memory>

namespace {
class FindOnDemoServer : public ClientOnDemoServer
{
protected:
    template <typename Widget>
    Widget* part(const char* name) const
    {
        return window->findChild<Widget*>(QLatin1String(name));
    }
    [[nodiscard]] QAbstractItemModel& found() const { return *part<QTreeView>("foundNodes")->model(); }
    [[nodiscard]] QString row(const char* nodeId) const
    {
        for (int i = 0; i < found().rowCount(); ++i)
            if (found().index(i, 1).data() == QLatin1String(nodeId)) {
                QStringList cells;
                for (int column : {0, 2, 3, 4, 6, 7, 8})
                    cells.append(found().index(i, column).data().toString());
                return cells.join(QLatin1Char('|'));
            }
        return {};
    }
    bool find(const QString& text)
    {
        part<QLineEdit>("findText")->setText(text);
        part<QPushButton>("find")->click();
        return QTest::qWaitFor([this] { return !part<QPushButton>("findCancel")->isEnabled(); }, limit);
    }
};

TEST_F(FindOnDemoServer, FindsReadsAndRevealsANode)
{
    openDemoProject();
    window->actions()[QlumMainActions::FindNode]->trigger();
    ASSERT_TRUE(find("temperature")) << logText();
    EXPECT_EQ(row("ns=2;s=DataAccess.Temperature"),
              "Temperature|Variable|AnalogItemType|Root/Objects/Demo/DataAccess/Temperature|||");
    const QString known = part<QLabel>("findState")->text();
    part<QToolButton>("findMore")->setChecked(true);
    part<QLineEdit>("findUnit")->setText("?C");
    part<QCheckBox>("findReadable")->setChecked(true);
    ASSERT_TRUE(find("")) << logText();
    EXPECT_EQ(row("ns=2;s=DataAccess.Temperature").section('|', 4), QString("Double|\u00b0C|Read and write"));
    EXPECT_EQ(part<QLabel>("findState")->text().section(". ", 1), known.section(". ", 1))
        << "the server was not browsed again";

    const std::unique_ptr<QMimeData> dragged(found().mimeData({found().index(0, 0)}));
    QlumDraggedNodes nodes;
    ASSERT_TRUE(qlumDecodeNodes(dragged->data(qlumNodeMimeType()), nodes));
    EXPECT_EQ(nodes.serverId, serverId);
    ASSERT_EQ(nodes.nodes.size(), 1U);

    const QModelIndex first = found().index(0, 0);
    part<QTreeView>("foundNodes")->setCurrentIndex(first);
    emit part<QTreeView>("foundNodes")->activated(first);
    EXPECT_EQ(tree("Address Space")->currentIndex().data().toString(), first.data().toString());
    part<QLineEdit>("treeFinderText")->setText("/Objects/2:Demo/2:DataAccess/nothing");
    QTest::keyClick(part<QLineEdit>("treeFinderText"), Qt::Key_Return);
    EXPECT_TRUE(QTest::qWaitFor(
        [this] { return part<QLabel>("treeFinderMessage")->text().contains("nothing at"); }, limit));
    part<QLineEdit>("treeFinderText")->setText("/Objects/2:Demo/2:DataAccess");
    QTest::keyClick(part<QLineEdit>("treeFinderText"), Qt::Key_Return);
    EXPECT_TRUE(QTest::qWaitFor(
        [this] { return tree("Address Space")->currentIndex().data() == "DataAccess"; }, limit));
}

TEST_F(FindOnDemoServer, ExportsABranchWithItsValues)
{
    openDemoProject();
    select({"Root", "Objects", "Demo", "DataAccess"});
    window->actions()[QlumMainActions::ExportBranch]->trigger();
    auto* dialog = window->findChild<QlumExportBranchDialog*>();
    ASSERT_NE(dialog, nullptr);
    for (const char* name : {"exportTypes", "exportValues"})
        dialog->findChild<QCheckBox*>(QLatin1String(name))->setChecked(true);
    const QString file = folder.filePath("nodes.json");
    dialog->start(file);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !dialog->isRunning(); }, limit));
    QFile written(file);
    ASSERT_TRUE(written.open(QIODevice::ReadOnly))
        << dialog->findChild<QLabel*>("exportState")->text().toStdString();
    QJsonParseError fault{};
    const QJsonArray nodes = QJsonDocument::fromJson(written.readAll(), &fault).array();
    ASSERT_EQ(fault.error, QJsonParseError::NoError) << fault.errorString().toStdString();
    EXPECT_EQ(nodes.at(0).toObject()["name"], "DataAccess") << "what is above comes first";
    for (const QJsonValue& node : nodes)
        if (node.toObject()["path"] == "DataAccess/Temperature") {
            EXPECT_TRUE(node.toObject()["nodeId"].toString().startsWith("nsu="));
            EXPECT_EQ(node.toObject()["dataType"], "Double");
            EXPECT_EQ(node.toObject()["unit"].toString(), QString("\u00b0C"));
            EXPECT_EQ(node.toObject()["status"], "Good");
            EXPECT_TRUE(node.toObject().contains("value"));
            return;
        }
    FAIL() << "no temperature in " << nodes.size() << " nodes";
}
} // namespace
