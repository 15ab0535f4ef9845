// The data access view and the search of nodes on a second server, which takes five items a call, keeps a
// hundred values of each and gives five references at a time.
#include <app/api/qlumtoolservices.h>
#include <app/mainwindow/qlummainactions.h>
#include <plugins/dataaccess/qlumdamodel.h>
#include <plugins/dataaccess/qlumdataitem.h>
#include <plugins/dataaccess/qlumdaview.h>
#include <tests/interop/clientonsecondserver.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>

#include <QAbstractItemModel>
#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QString>
#include <QStringList>
#include <QTest>
#include <QToolButton>
#include <QTreeView>
#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

namespace {

using M = QlumDaModel;

class DataAccessOnSecondServer : public ClientOnSecondServer
{
protected:
    void openView(const QlumToolNodes& nodes)
    {
        ASSERT_TRUE(QlumToolServices::instance()->openNodes(QStringLiteral("Data Access View"), nodes));
        view = window->findChild<QlumDaView*>();
        ASSERT_NE(view, nullptr);
        ASSERT_EQ(view->model().rowCount(), static_cast<int>(nodes.size()));
    }
    QlumToolNodes nodesOf(std::initializer_list<const char*> names) const
    {
        QlumToolNodes nodes;
        for (const char* name : names)
            nodes.push_back({serverId, named(name), OpcUa_NodeClass_Variable, {}, {}});
        return nodes;
    }
    [[nodiscard]] QString cell(int row, int column) const
    {
        return view->model().index(row, column).data().toString();
    }
    [[nodiscard]] std::string text(int row, int column) const { return cell(row, column).toStdString(); }
    [[nodiscard]] const QlumDataItem& item(int row) const { return view->model().rowAt(row); }

    QlumDaView* view = nullptr;
};

TEST_F(DataAccessOnSecondServer, ValuesAreWatchedRevisedJudgedAndWritten)
{
    openView(nodesOf({"Dynamic.Counter", "DA.Temperature", "Edge.StatusBad", "the.answer",
                      "the.answer.no.write", "Nowhere"}));
    QlumDataSettings settings;
    settings.publishingInterval = 500;
    settings.samplingInterval = 100;
    settings.queueSize = 1000;
    view->setSettings({}, settings);
    ASSERT_TRUE(waitFor([this] { return item(0).changes >= 5 && item(0).revisedQueue != 0; })) << logText();
    EXPECT_EQ(item(0).revisedQueue, 100U) << "it keeps no more";
    EXPECT_TRUE(waitFor([this] { return cell(0, M::Verdict) == "complete"; })) << text(0, M::Verdict);
    EXPECT_TRUE(waitFor([this] { return cell(0, M::BrowsePath).startsWith("/Objects/"); }))
        << text(0, M::BrowsePath);
    EXPECT_TRUE(waitFor([this] { return cell(1, M::DataType) == "Double" && !cell(1, M::Unit).isEmpty(); }))
        << text(1, M::DataType) << text(1, M::Unit);
    EXPECT_TRUE(waitFor([this] { return cell(2, M::Status).startsWith("Bad"); })) << text(2, M::Status);
    EXPECT_TRUE(waitFor([this] { return cell(5, M::Status).contains("BadNodeIdUnknown"); }))
        << text(5, M::Status);

    ASSERT_TRUE(waitFor([this] { return item(3).received != 0; }));
    const OpcUa_Int32 other = item(3).value.value().toInt32() + 1;
    view->write(item(3).key, UaVariant(other));
    EXPECT_TRUE(waitFor([&] { return cell(3, M::Value) == QString::number(other); })) << text(3, M::Value);
    view->write(item(4).key, UaVariant(other));
    EXPECT_TRUE(waitFor([this] { return view->model().writeFault(item(4)).contains("Bad"); }))
        << view->model().writeFault(item(4)).toStdString();
}

TEST_F(DataAccessOnSecondServer, TwoThousandRowsAllGetTheirValues)
{
    QlumToolNodes nodes{{serverId, numbered(40005), OpcUa_NodeClass_Object, {}, {}}};
    ASSERT_TRUE(QlumToolServices::instance()->openNodes(QStringLiteral("Data Access View"), nodes));
    view = window->findChild<QlumDaView*>();
    ASSERT_NE(view, nullptr);
    const auto answer = [this]() -> QPushButton* {
        for (QPushButton* button : view->findChildren<QPushButton*>())
            if (button->isVisible() && button->text().contains("Add"))
                return button;
        return nullptr;
    };
    ASSERT_TRUE(waitFor([&] { return view->model().rowCount() == 2000 || answer() != nullptr; }))
        << logText();
    if (view->model().rowCount() == 0)
        answer()->click();
    ASSERT_TRUE(waitFor([this] { return view->model().rowCount() == 2000; })) << view->model().rowCount();
    const auto valued = [this] {
        int count = 0;
        for (const QlumDataItem& row : view->model().rows())
            count += row.received != 0 ? 1 : 0;
        return count;
    };
    EXPECT_TRUE(waitFor([&] { return valued() == 2000; })) << valued();
}

class FindOnSecondServer : public ClientOnSecondServer
{
protected:
    template <typename Widget>
    Widget* part(const char* name) const
    {
        return window->findChild<Widget*>(QLatin1String(name));
    }
    [[nodiscard]] std::string found() const
    {
        const QAbstractItemModel& rows = *part<QTreeView>("foundNodes")->model();
        QStringList lines;
        for (int row = 0; row < rows.rowCount(); ++row) {
            QStringList cells;
            for (int column = 0; column < rows.columnCount(); ++column)
                cells.append(rows.index(row, column).data().toString());
            lines.append(cells.join(QLatin1Char('|')));
        }
        return lines.join(QLatin1Char('\n')).toStdString();
    }
    bool find(const QString& wanted)
    {
        part<QLineEdit>("findText")->setText(wanted);
        part<QPushButton>("find")->click();
        return QTest::qWaitFor([this] { return !part<QPushButton>("findCancel")->isEnabled(); }, 3 * limit);
    }
};

TEST_F(FindOnSecondServer, EveryNodeIsFoundInPagesOfFive)
{
    window->actions()[QlumMainActions::FindNode]->trigger();
    ASSERT_TRUE(find("Echo")) << logText();
    EXPECT_NE(found().find("ns=1;i=60013"), std::string::npos) << found();
    const QString known = part<QLabel>("findState")->text();
    part<QToolButton>("findMore")->setChecked(true);
    part<QCheckBox>("findReadable")->setChecked(true);
    ASSERT_TRUE(find("*Temperature*")) << logText();
    EXPECT_NE(found().find("ns=1;s=DA.Temperature"), std::string::npos) << found();
    EXPECT_NE(found().find("|Read and write"), std::string::npos) << found();
    EXPECT_EQ(part<QLabel>("findState")->text().section(". ", 1), known.section(". ", 1))
        << "the server was not browsed again";
}

} // namespace
