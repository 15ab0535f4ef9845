// A data access view with a server behind it that is a table of nodes, and is read.
#pragma once
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumtoolservices.h>
#include <opcua/opcua_attributes.h>
#include <plugins/dataaccess/qlumdamodel.h>
#include <plugins/dataaccess/qlumdataitem.h>
#include <plugins/dataaccess/qlumdaview.h>
#include <plugins/dataaccess/qlumdawatch.h>
#include <tests/support/stubapplication.h>
#include <tests/support/tableservices.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QTest>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

/// Knows servers by their namespaces.
class DaApplication : public StubApplication
{
public:
    QString serverName(unsigned int id) override
    {
        return tables.contains(id) ? QString("Plc %1").arg(id) : QString();
    }
    QStringList namespaceTable(unsigned int id) override { return tables.value(id); }
    int namespaceIndexFromUri(unsigned int id, const QString& uri) override
    {
        return tables.value(id).indexOf(uri);
    }
    QList<unsigned int> projectServerIds() override { return tables.keys(); }
    void setModified() override { ++modified; }

    QMap<unsigned int, QStringList> tables{{5, {"http://opcfoundation.org/UA/", "urn:plc", "urn:line"}}};
    int modified = 0;
};

class DaViewTest : public testing::Test
{
protected:
    DaViewTest()
    {
        NodeTable& table = services->table;
        table.object(node(1), "Line");
        table.variable(node(2), "Speed", UaVariant(12.5), node(1));
        table.variable(node(3), "Counts", counts(), node(1));
        view = makeView();
    }

    static UaNodeId node(OpcUa_UInt32 id) { return UaNodeId(id, 2); }
    static UaVariant counts()
    {
        const std::vector<UaVariant> elements{UaVariant(OpcUa_Int32(7)), UaVariant(OpcUa_Int32(8))};
        UaVariant value;
        EXPECT_EQ(value.setArray(OpcUaType_Int32, elements), OpcUa_Good);
        return value;
    }
    std::unique_ptr<QlumDaView> makeView()
    {
        auto made = std::make_unique<QlumDaView>(
            application, [this](unsigned int) { return services; }, QlumMonitoringProvider());
        QlumDataSettings settings;
        settings.readInterval = 60'000; // read once, and when a test wants it
        made->setSettings({}, settings);
        return made;
    }
    void connectServer() { view->sessionStatusChanged(5, QlumConnectionStatus::Connected); }
    void add(OpcUa_UInt32 id, const char* name = "")
    {
        const QlumToolNode one{5, node(id), OpcUa_NodeClass_Variable, {}, name};
        view->addNodes({&one, 1});
    }
    /// Until the cell says it.
    bool waitFor(int row, int column, const QString& text)
    {
        return QTest::qWaitFor([&] {
            view->watch()->readNow();
            return cell(row, column) == text;
        });
    }
    [[nodiscard]] QString cell(int row, int column, int role = Qt::DisplayRole) const
    {
        return view->model().index(row, column).data(role).toString();
    }
    [[nodiscard]] const QlumDataItem& item(int row) const { return view->model().rowAt(row); }

    DaApplication application;
    std::shared_ptr<TableServices> services = std::make_shared<TableServices>();
    std::unique_ptr<QlumDaView> view;
};
