// Events as a server might send them, and an application that has names for servers.
#pragma once
#include <app/api/qlumtext.h>
#include <plugins/events/qlumevent.h>
#include <tests/support/modeltext.h>
#include <tests/support/stubapplication.h>
#include <tests/support/tableservices.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QAbstractItemModelTester>
#include <QString>
#include <QStringList>
#include <QTest>
#include <gtest/gtest.h>

#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

class EventApplication : public StubApplication
{
public:
    QString serverName(unsigned int serverId) override { return QStringLiteral("Plc%1").arg(serverId); }
    void setModified() override { ++modifications; }

    /// What was logged by the view.
    [[nodiscard]] QStringList said(const QString& beginning = QString()) const
    {
        QStringList lines;
        for (const Entry& entry : entries())
            if (entry.source == QLatin1String("Event Plugin") && entry.text.startsWith(beginning))
                lines.append(entry.text);
        return lines;
    }

    int modifications = 0;
};

using EventValues = std::map<QString, UaVariant>;

/// With the fields that a notifier begins with; those that are not named are null.
inline QlumEvent makeEvent(const EventValues& values, unsigned int serverId = 1, quint32 notifier = 1)
{
    static const std::shared_ptr<const QlumFieldNames> names = QlumFieldNames::of(qlumStandardClauses());
    const QStringList list = names->names();
    UaVariantArray fields(static_cast<OpcUa_UInt32>(list.size()));
    for (int i = 0; i < list.size(); ++i)
        if (const auto found = values.find(list.at(i)); found != values.end())
            EXPECT_TRUE(OpcUa_IsGood(found->second.copyTo(&fields[static_cast<OpcUa_UInt32>(i)])));
    QlumEvent event;
    event.serverId = serverId;
    event.monitoredNode = notifier;
    event.notifier = QStringLiteral("Boiler");
    event.fields = QlumEventFields(names, fields.rawData(), static_cast<OpcUa_Int32>(fields.length()));
    return event;
}

inline UaVariant bytesVariant(const char* text)
{
    const std::string_view view(text);
    return UaVariant(UaByteString(static_cast<OpcUa_Int32>(view.size()),
                                  reinterpret_cast<const OpcUa_Byte*>(view.data())));
}

inline UaVariant textVariant(const char* text)
{
    return UaVariant(UaLocalizedText(UaString("en"), UaString(text)));
}

/// The state of a condition, retained and not acknowledged unless something else is said.
inline QlumEvent makeAlarm(OpcUa_UInt32 condition, const EventValues& more = {}, unsigned int serverId = 1,
                           quint32 notifier = 1)
{
    EventValues values{{"EventType", UaVariant(UaNodeId(2915))},
                       {"EventId", bytesVariant("event")},
                       {"ConditionId", UaVariant(UaNodeId(condition, 2))},
                       {"ConditionName", UaVariant(UaString(std::to_string(condition)))},
                       {"Retain", UaVariant(true)},
                       {"Severity", UaVariant(OpcUa_UInt16(500))},
                       {"AckedState/Id", UaVariant(false)}};
    for (const auto& [name, value] : more)
        values[name] = value;
    return makeEvent(values, serverId, notifier);
}

/// One without a condition, by its type alone.
inline QlumEvent makeSimple(OpcUa_UInt32 type, unsigned int serverId = 1, quint32 notifier = 1)
{
    return makeEvent({{"EventType", UaVariant(UaNodeId(type))}}, serverId, notifier);
}

inline constexpr OpcUa_UInt32 refreshStart = 2787;
inline constexpr OpcUa_UInt32 refreshEnd = 2788;
inline constexpr OpcUa_UInt32 refreshRequired = 2789;
