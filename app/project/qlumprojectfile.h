#pragma once
#include <app/api/qlumservernode.h>

#include <QList>
#include <QMap>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

class QSettings;
class QlumAppEventInterface;
class QlumProjectModel;
class QlumProjectNodeDocument;

/// What reading a project needs of the rest of the application.
struct QlumProjectFileHooks
{
    /// A server node with the connection settings of the open group; null when it cannot be made.
    std::function<std::unique_ptr<QlumServerNode>(const QString& name, QSettings& settings)> createServer;
    /// The node is in the model now.
    std::function<void(QlumServerNode* server)> serverAdded;
    /// Opens a document and adds its node to the model; null for a type that no plugin knows.
    std::function<QlumProjectNodeDocument*(const QString& type, const QString& name)> createDocument;
};

/// What came of reading a project file.
struct QlumProjectReading
{
    QString error;        ///< for the user: why nothing was read; empty when it was
    QStringList leftOut;  ///< for the user, a line each: what could not be read; at most 100 lines
    QString newerVersion; ///< of the program that wrote it, when that is newer than this one
    int servers = 0;      ///< so many were read
    int documents = 0;
    QList<QPointer<QlumServerNode>> toConnect; ///< those that were connected when the file was written
};

/// Writes and reads project files.
class QlumProjectFile
{
public:
    QlumProjectFile(QlumProjectModel* model, QlumAppEventInterface* plugins, QlumProjectFileHooks hooks);

    /// Replaces the file in one step; on false it is as it was.
    [[nodiscard]] bool save(const QString& fileName) const;
    /// Adds what the file holds to the model. What cannot be read is told in the log too.
    QlumProjectReading load(const QString& fileName);

private:
    void write(QSettings& settings) const;
    void writeServers(QSettings& settings) const;
    void writeDocuments(QSettings& settings) const;
    void writeUnknownDocuments(QSettings& settings) const;
    QStringList bounded(QStringList groups, int maximum, const QString& what);
    void leaveOut(const QString& text);
    void readServers(QSettings& settings);
    void readServer(QSettings& settings);
    void readDocuments(QSettings& settings);
    void readDocument(QSettings& settings, const QString& name);

    QlumProjectModel* m_model;
    QlumAppEventInterface* m_plugins;
    QlumProjectFileHooks m_hooks;
    QMap<int, int> m_serverIds;
    QlumProjectReading m_reading;
};
