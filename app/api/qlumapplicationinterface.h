#pragma once
#include <opcua/opcua_types.h>
#include <uabase/values/uaarrays.h>

#include <QDateTime>
#include <QIcon>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

class QAction;
class QDockWidget;
class QMainWindow;
class QMimeData;
class QTabWidget;
class QlumAddressSpaceModel;
class UaEnumDefinition;
class UaLocalizedText;
class UaNodeId;
template <typename T>
class UaArray;
using UaUInt32Array = UaArray<OpcUa_UInt32>;
namespace UaClientSdk {
class UaSession;
}

/// Server id that stands for no server.
inline constexpr unsigned int qlumNoServer = 0xFFFFFFFFu;

/// Log levels; the higher, the more serious.
namespace QlumLogLevel {
inline constexpr int Error = 100;   ///< something failed
inline constexpr int Warning = 50;  ///< something may be wrong
inline constexpr int Info = 30;     ///< what was done
inline constexpr int Function = 20; ///< which function was called
inline constexpr int Data = 10;     ///< what it worked on
inline constexpr int Paranoid = 1;  ///< every step
inline constexpr int All = 0;       ///< as a limit: everything passes
} // namespace QlumLogLevel

/// What plugins, server nodes and dialogs may ask of the application.
/// Threads: settingsValue, session, serverName, log, errorMessage, builtinTypeName, projectServerIds and the
/// two date conversions may be called from any thread; everything else belongs on the GUI thread.
class QlumApplicationInterface
{
public:
    virtual ~QlumApplicationInterface();

    /// The application; null before the main window stands and after it is gone.
    [[nodiscard]] static QlumApplicationInterface* instance() noexcept;

    /// Stores a value of the user's settings under a dotted key ("General.CallTimeout").
    virtual void setSettingsValue(const QString& key, const QVariant& value) = 0;
    /// The stored value, else defaultValue when that is valid, else the application's own default.
    virtual QVariant settingsValue(const QString& key, const QVariant& defaultValue = QVariant()) const = 0;
    /// The window that takes the docks of plugins and is the parent of their dialogs.
    virtual QMainWindow* mainWindow() = 0;
    /// The tabs that hold the documents.
    virtual QTabWidget* centralTabWidget() = 0;
    /// The dock that shows the address space of the selected server.
    virtual QDockWidget* addressSpaceDockWidget() = 0;
    /// Session of the server; null for an unknown one. The session lives until every plugin's
    /// sessionRemoved() has returned.
    virtual UaClientSdk::UaSession* session(unsigned int serverId) = 0;
    /// The name that the project shows for the server; empty for an unknown one.
    virtual QString serverName(unsigned int serverId) = 0;
    /// Data type, value rank, dimensions and names of a variable; every result pointer may be null.
    /// Good, the status of the read, or BadServerIndexInvalid for an unknown server.
    virtual unsigned int readDataTypeId(unsigned int serverId, const UaNodeId* nodeId, UaNodeId* dataType,
                                        int* valueRank, UaUInt32Array* arrayDimensions, QString* typeName,
                                        UaLocalizedText* displayName) = 0;
    /// Display name of a type, with true its namespace index and a colon before it, where that is not 0;
    /// empty when unreadable. Inverse names of reference types: QlumServerTypes::typeName().
    virtual QString typeName(unsigned int serverId, const UaNodeId* dataType, bool withNamespace) = 0;
    /// Whether the data type is an enumeration.
    virtual bool isEnum(unsigned int serverId, const UaNodeId* dataType) = 0;
    /// Names and values of an enumeration; a null definition when the type is no enumeration.
    virtual UaEnumDefinition getEnumDefinition(unsigned int serverId, const UaNodeId* dataType) = 0;
    /// Whether the server itself offers an icon for the node.
    virtual bool hasIcon(unsigned int serverId, const UaNodeId* nodeId) = 0;
    /// The icon that the server offers for the node; null when it has none.
    virtual QIcon getIcon(unsigned int serverId, const UaNodeId* nodeId) = 0;
    /// Nodes dragged from the address space view. On true the caller owns the array: delete[] *nodeIds.
    virtual bool nodeIdsFromMimeData(const QMimeData* data, unsigned int* serverId, unsigned int* count,
                                     UaNodeId** nodeIds) = 0;
    /// Name of a built-in type ("Int32"); its number in parentheses for an unknown one.
    virtual QString builtinTypeName(unsigned int builtInType) = 0;
    /// Adds an entry to the log window when its level is not below the configured one.
    virtual void log(int level, const QString& text, unsigned int serverId, const QString& source) = 0;
    /// Local time; an invalid QDateTime for null.
    virtual QDateTime dateTimeFromUaDateTime(OpcUa_DateTime* value) = 0;
    /// The other way round; result is 0 for an invalid QDateTime.
    virtual void dateTimeToUaDateTime(const QDateTime& value, OpcUa_DateTime* result) = 0;
    /// Text of a status code for the user.
    virtual QString errorMessage(unsigned int statusCode) = 0;
    /// A model of the nodes below startNode, owned by the caller; null for an unknown server.
    virtual QlumAddressSpaceModel* createAddressSpaceModel(unsigned int serverId,
                                                           const UaNodeId* startNode) = 0;
    /// Puts an action of a plugin into the context menu of all address space views, also of those to come.
    virtual void addAction(QAction* action) = 0;
    /// Takes an action out of these menus again.
    virtual void removeAction(QAction* action) = 0;
    /// A plugin reports a selected node; all plugins are told, without a type definition.
    virtual void selectionChanged(unsigned int serverId, UaNodeId* nodeId, OpcUa_NodeClass nodeClass) = 0;
    /// The project differs from its file now.
    virtual void setModified() = 0;
    /// Index of a namespace on the server; -1 when the server or the namespace is unknown.
    virtual int namespaceIndexFromUri(unsigned int serverId, const QString& uri) = 0;
    /// URI of the namespace with the index; empty when the server or the index is unknown.
    virtual QString namespaceUriFromIndex(unsigned int serverId, int index) = 0;
    /// Ids of the servers of the project, in its order.
    virtual QList<unsigned int> projectServerIds() = 0;
    /// Namespace URIs of the server by index.
    virtual QStringList namespaceTable(unsigned int serverId) = 0;

protected:
    QlumApplicationInterface() = default;
    QlumApplicationInterface(const QlumApplicationInterface&) = delete;
    QlumApplicationInterface& operator=(const QlumApplicationInterface&) = delete;

    /// Called by the one application object when it is ready to be asked, and with null before it goes.
    static void setInstance(QlumApplicationInterface* application) noexcept;
};
