// An attribute model with a scripted server behind it.
#pragma once
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <plugins/attributes/qlumattributemodel.h>
#include <plugins/attributes/qlumattributetexts.h>
#include <tests/support/modeltext.h>
#include <tests/support/scriptedservices.h>
#include <tests/support/stubapplication.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QDateTime>
#include <QList>
#include <QModelIndex>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QTest>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

class AttributeApplication : public StubApplication
{
public:
    QString builtinTypeName(unsigned int type) override { return qlumBuiltinTypeName(type); }
    QString errorMessage(unsigned int code) override { return qlumStatusText(code); }
    QDateTime dateTimeFromUaDateTime(OpcUa_DateTime* value) override { return qlumDateTime(*value).toUTC(); }
    QList<unsigned int> projectServerIds() override { return {5}; }
    QString serverName(unsigned int) override { return "Plc"; }
    QString namespaceUriFromIndex(unsigned int, int index) override
    {
        return index == 2 ? "urn:plant" : QString();
    }
    void selectionChanged(unsigned int serverId, UaNodeId* nodeId, OpcUa_NodeClass) override
    {
        selections.append(QString::number(serverId) + " " + toQString(nodeId->toXmlString()));
    }

    UaEnumDefinition enumeration;
    QStringList selections;
};

class AttributeFixture : public testing::Test
{
protected:
    AttributeFixture() : model(application, nullptr, [this](unsigned int) { return services; })
    {
        services->setTypeName(UaNodeId(11), "Double");
        application.enumeration = UaEnumDefinition(UaString("Colors"), UaNodeId(3000, 2));
        application.enumeration.addValue(1, UaString("Red"));
        application.enumeration.addValue(2, UaString("Green"));
        services->enums[application.enumeration.dataTypeId()] = application.enumeration;
    }

    using Results = QList<QPair<int, UaDataValue>>;
    void show(OpcUa_NodeClass nodeClass, const Results& results)
    {
        UaDataValues values(static_cast<OpcUa_UInt32>(results.size()));
        QList<int> ids;
        for (int i = 0; i < results.size(); ++i) {
            ids.append(results.at(i).first);
            OpcUa_DataValue copy;
            EXPECT_TRUE(OpcUa_IsGood(results.at(i).second.copyTo(&copy)));
            std::swap(values[static_cast<OpcUa_UInt32>(i)], copy);
            OpcUa_DataValue_Clear(&copy);
        }
        const int count = static_cast<int>(values.length());
        model.setData(5, UaNodeId(7, 2), nodeClass, count, ids, values.detach());
    }
    void showValue(const UaVariant& value, const UaNodeId& dataType = UaNodeId(), UaStatusCode status = 0)
    {
        show(OpcUa_NodeClass_Variable, {{OpcUa_Attributes_Value, UaDataValue(value, status)},
                                        {OpcUa_Attributes_DataType, UaDataValue(UaVariant(dataType))}});
    }
    /// The row that carries the Value.
    QModelIndex valueRow() const { return model.index(0, 1, model.index(0, 0)); }
    QModelIndex below(const QModelIndex& parent, int row) const
    {
        return model.index(row, 1, parent.siblingAtColumn(0));
    }
    QModelIndex fetched(const QModelIndex& index)
    {
        model.fetchMore(index.siblingAtColumn(0));
        return index;
    }
    /// The value row and what lies below it.
    std::string valueText() const
    {
        const QModelIndex value = valueRow();
        return value.data().toString().toStdString() + '\n' + modelText(model, value.siblingAtColumn(0));
    }

    AttributeApplication application;
    std::shared_ptr<ScriptedServices> services = std::make_shared<ScriptedServices>();
    QlumAttributeModel model;
};
