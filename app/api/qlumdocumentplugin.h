// What all plugins with one type of document have in common.
#pragma once
#include <app/api/qlumappeventadapter.h>
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumdocumentinterface.h>
#include <app/api/qlumplugininterface.h>
#include <app/api/qlumserverdocuments.h>
#include <app/api/qlumtoolservices.h>

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <span>
#include <utility>

/// Makes documents of one type and hands on to them what the project tells of its servers. A plugin derives
/// from it, says Q_OBJECT, Q_PLUGIN_METADATA and Q_INTERFACES itself, and overrides what it does besides;
/// what it overrides of the public part calls this one's. Document: see QlumServerDocuments. GUI thread.
template <typename Document>
class QlumDocumentPlugin : public QObject,
                           public QlumPluginInterface,
                           public QlumDocumentInterface,
                           public QlumAppEventAdapter
{
public:
    void init(QlumApplicationInterface* app) override
    {
        m_app = app;
        begin();
    }
    void shutdown() override
    {
        m_documents.destroy();
        end();
        m_app = nullptr;
    }
    QString name() final { return m_name; }

    QStringList documentTypes() final { return {m_documentType}; }
    QWidget* createDocument(const QString& type) final
    {
        if (type != m_documentType || !m_app)
            return nullptr;
        Document* const document = makeDocument(*m_app);
        m_documents.add(document);
        return document;
    }
    QString description(const QString& type) final
    {
        return type == m_documentType ? documentText() : QString();
    }

    void serverSelectionChanged(unsigned int serverId) override
    {
        m_documents.serverSelectionChanged(serverId);
    }
    void sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                              const NamespaceMap& namespaceMap) override
    {
        m_documents.sessionStatusChanged(serverId, status, namespaceMap);
    }
    void sessionRemoved(unsigned int serverId) override { m_documents.sessionRemoved(serverId); }

protected:
    /// The names are those of QObject, QlumPluginInterface::name() and
    /// QlumDocumentInterface::documentTypes().
    QlumDocumentPlugin(const QString& objectName, QString name, QString documentType)
        : m_name(std::move(name)), m_documentType(std::move(documentType))
    {
        setObjectName(objectName);
    }

    /// The application is known: settings and services are registered here, and pools made.
    virtual void begin() {}
    /// The documents are gone; the application is still there.
    virtual void end() {}
    /// A new document; the caller owns it.
    [[nodiscard]] virtual Document* makeDocument(QlumApplicationInterface& app) = 0;
    /// What the type is for, as rich text in the user's language.
    [[nodiscard]] virtual QString documentText() const = 0;

    /// Null before init() and after shutdown().
    [[nodiscard]] QlumApplicationInterface* application() const { return m_app; }
    /// The type's name.
    [[nodiscard]] const QString& documentType() const { return m_documentType; }
    /// Those that are open.
    [[nodiscard]] QList<Document*> documents() { return m_documents.open(); }
    /// Lets other views send nodes to documents of this type; without a condition every node.
    void takeNodes(void (Document::*add)(std::span<const QlumToolNode>),
                   std::function<bool(const QlumToolNode&)> accepts = {})
    {
        if (QlumToolServices* const services = QlumToolServices::instance())
            services->takeNodes(this, {m_documentType, std::move(accepts),
                                       [add](QWidget* document, std::span<const QlumToolNode> nodes) {
                                           if (auto* const one = qobject_cast<Document*>(document))
                                               (one->*add)(nodes);
                                       }});
    }

private:
    const QString m_name;
    const QString m_documentType;
    QlumApplicationInterface* m_app = nullptr;
    QlumServerDocuments<Document> m_documents; ///< owned by the main window
};
