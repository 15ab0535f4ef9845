#pragma once
#include <app/api/qlumlog.h>
#include <app/api/qlumservertypes.h>
#include <app/api/qlumsessionservices.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>

#include <QCoreApplication>
#include <QImage>
#include <QPixmap>
#include <QString>

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

/// What is known of one type node.
struct QlumTypeInfo
{
    QString name;        ///< text of the display name
    UaNodeId dataTypeId; ///< of a variable or variable type, else null
    int valueRank = -1;
    UaUInt32Array arrayDimensions;
    QString arrayDimensionsText; ///< joined by "|"
    QString browseName;          ///< without namespace
    UaLocalizedText description;
    QString inverseName; ///< of a reference type; the name where it has none
};

/// Names, enumerations and icons of one server's types, read on the first question and kept until clear().
/// Views on the GUI thread and jobs may share one cache; hasIcon() and getIcon() belong on the GUI thread. A
/// question may block for a few service calls. Failures are logged and answered by an empty value.
class QlumTypeCache : public QlumServerTypes
{
    Q_DECLARE_TR_FUNCTIONS(QlumTypeCache)
public:
    /// The provider is asked until it has services.
    explicit QlumTypeCache(unsigned int serverId,
                           QlumSessionServicesProvider provider = qlumApplicationServices());
    ~QlumTypeCache() override;

    [[nodiscard]] QString typeName(const UaNodeId& id, bool useInverseName = false) override;
    [[nodiscard]] std::optional<QString> knownTypeName(const UaNodeId& id) const override;
    /// Reads and keeps the type information; false on failure.
    bool readTypeInfo(const UaNodeId& id);
    [[nodiscard]] UaEnumDefinition getEnumDefinition(const UaNodeId* dataTypeId) override;
    [[nodiscard]] bool isEnum(const UaNodeId* dataTypeId) override;
    [[nodiscard]] OpcUa_BuiltInType builtInType(const UaNodeId& dataTypeId) override;
    [[nodiscard]] std::vector<UaNodeId> concreteTypes(const UaNodeId& dataTypeId) override;
    /// The icon that the server offers for the node or for its type; false and null without a connection.
    [[nodiscard]] bool hasIcon(const UaNodeId* id);
    [[nodiscard]] QPixmap getIcon(const UaNodeId* id);
    /// The same on any thread.
    [[nodiscard]] QImage readIcon(const UaNodeId& id);
    [[nodiscard]] UaStatus readDataTypeId(const UaNodeId& id, UaNodeId* dataType, int* valueRank,
                                          UaUInt32Array* arrayDimensions, QString* typeName,
                                          UaLocalizedText* displayName) override;
    /// Forgets everything; answers under way are not kept.
    void clear();
    /// Forgets what came out of the definitions of data types.
    void clearDefinitions();

private:
    using InfoPtr = std::shared_ptr<const QlumTypeInfo>;

    std::shared_ptr<QlumSessionServices> services();
    std::shared_ptr<QlumSessionServices> connectedServices();
    InfoPtr typeInfo(const UaNodeId& id);
    InfoPtr fetchTypeInfo(const UaNodeId& id);
    void takeNames(const UaDataValues& values, QlumTypeInfo& info) const;
    void takeClassSpecific(const UaDataValues& values, QlumTypeInfo& info) const;
    UaEnumDefinition fetchEnumDefinition(QlumSessionServices& session, const UaNodeId& dataTypeId);
    UaStatus read(QlumSessionServices& session, const UaNodeId& id, std::span<const OpcUa_UInt32> attributes,
                  UaDataValues& values) const;
    [[nodiscard]] unsigned int currentGeneration() const;
    [[nodiscard]] UaClientSdk::ServiceSettings serviceSettings() const;
    UaNodeId superType(QlumSessionServices& session, const UaNodeId& dataTypeId) const;
    std::vector<UaNodeId> fetchConcreteTypes(QlumSessionServices& session, const UaNodeId& dataTypeId);
    std::vector<UaNodeId> subtypes(QlumSessionServices& session, std::span<const UaNodeId> types);
    std::vector<UaNodeId> withoutAbstract(QlumSessionServices& session, const std::vector<UaNodeId>& types);
    QImage icon(const UaNodeId& id, int depth);
    QImage fetchIcon(QlumSessionServices& session, const UaNodeId& id, int depth);
    QImage readIconHelper(QlumSessionServices& session, const UaNodeId& id);
    UaNodeId iconProperty(QlumSessionServices& session, const UaNodeId& id);
    QImage readImage(QlumSessionServices& session, const UaNodeId& property);
    UaNodeId typeDefinition(QlumSessionServices& session, const UaNodeId& id);
    void logBadStatus(const UaDataValues& values, OpcUa_UInt32 index, const QString& text) const;

    std::map<UaNodeId, InfoPtr> m_typeInfos;
    std::map<UaNodeId, UaEnumDefinition> m_enumDefinitions;
    std::map<UaNodeId, OpcUa_BuiltInType> m_builtInTypes;
    std::map<UaNodeId, std::vector<UaNodeId>> m_concreteTypes;
    std::map<UaNodeId, QImage> m_icons;
    std::shared_ptr<QlumSessionServices> m_services;
    const unsigned int m_serverId;
    const QlumLog m_log;
    const QlumSessionServicesProvider m_provider;
    unsigned int m_generation = 0; ///< counts clear() and clearDefinitions()
    mutable std::mutex m_mutex;    ///< guards all but the constants; never held during a service call
};
