// What a server says about nodes whose history shall be shown.
#pragma once
#include <app/api/qlumjob.h>
#include <app/api/qlumsessionservices.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>

#include <QMap>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

/// A node as it was asked about.
struct QlumTrendNode
{
    UaNodeId nodeId;                                ///< as the server knows it
    QString refused;                                ///< why it has no history to show; empty when it has
    QStringList faults;                             ///< what could not be read of it besides
    QString name;                                   ///< display name
    bool isStepped = false;                         ///< values hold until the next
    QString unit;                                   ///< of its values; may be empty
    std::optional<std::pair<double, double>> range; ///< that its values usually have
    QMap<qint64, QString> valueNames;               ///< of states
};

/// Asks for all of them at once, on a job's thread: access, form of the curve, name, unit, range and states.
class QlumTrendNodesReader
{
public:
    /// Both must outlive the reader.
    QlumTrendNodesReader(QlumSessionServices& services, const QlumJob& job);

    /// One for each id, in their order.
    [[nodiscard]] std::vector<QlumTrendNode> read(const std::vector<UaNodeId>& ids);

private:
    /// A property of a node that has history.
    struct Property
    {
        std::size_t node;
        UaNodeId id;
    };

    void readAccess();
    void readStepped();
    void readDescription();
    void readProperties(const char* name,
                        void (QlumTrendNodesReader::*take)(QlumTrendNode&, const UaVariant&));
    void takeUnit(QlumTrendNode& node, const UaVariant& value);
    void takeRange(QlumTrendNode& node, const UaVariant& value);
    void takeFalseState(QlumTrendNode& node, const UaVariant& value);
    void takeTrueState(QlumTrendNode& node, const UaVariant& value);
    void takeStates(QlumTrendNode& node, const UaVariant& value);
    void takeEnumeration(QlumTrendNode& node, const UaVariant& dataType);
    [[nodiscard]] std::vector<std::size_t> accepted() const;
    [[nodiscard]] UaStatus translate(const std::vector<std::size_t>& nodes, const QStringList& path,
                                     UaBrowsePathResults& results);
    [[nodiscard]] UaStatus readValues(const std::vector<Property>& properties, OpcUa_UInt32 attribute,
                                      UaDataValues& values);

    QlumSessionServices& m_services;
    const QlumJob& m_job;
    std::vector<QlumTrendNode> m_nodes;
};
