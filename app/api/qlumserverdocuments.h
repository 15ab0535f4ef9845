// The open documents of a plugin, and what the project has told of its servers.
#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumconnectionstatus.h>

#include <QHash>
#include <QList>
#include <QPointer>

/// Tells them what the project tells the plugin; the last of it also to a new one. A document has
/// sessionStatusChanged(), with the map of namespaces or without it, sessionRemoved(), and, when it follows
/// the project's selected server, serverSelectionChanged(). It may go at any time.
template <typename Document>
class QlumServerDocuments
{
public:
    /// One that was just made; somebody else owns it.
    void add(Document* document)
    {
        for (auto state = m_states.cbegin(); state != m_states.cend(); ++state)
            tellStatus(*document, state.key(), state.value(), {});
        tellSelection(*document);
        m_documents.append(document);
    }

    /// Those that are still open.
    [[nodiscard]] QList<Document*> open()
    {
        m_documents.removeAll(QPointer<Document>());
        QList<Document*> documents;
        for (const QPointer<Document>& document : qAsConst(m_documents))
            documents.append(document);
        return documents;
    }

    /// For the end of the plugin: whoever has kept one, what it calls ends here.
    void destroy()
    {
        for (Document* const document : open())
            delete document;
    }

    // ---- what the project tells

    /// Another server was selected, or none.
    void serverSelectionChanged(unsigned int serverId)
    {
        m_selected = serverId;
        for (Document* const document : open())
            tellSelection(*document);
    }
    /// Of any server; the map is that of QlumAppEventInterface::sessionStatusChanged().
    void sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status, const NamespaceMap& map)
    {
        // for whoever comes later the session that is new to the others is just the one there is
        m_states.insert(serverId, status == QlumConnectionStatus::NewSessionCreated
                                      ? QlumConnectionStatus::Connected
                                      : status);
        for (Document* const document : open())
            tellStatus(*document, serverId, status, map);
    }
    /// The server is of the project no more.
    void sessionRemoved(unsigned int serverId)
    {
        m_states.remove(serverId);
        if (m_selected == serverId)
            m_selected = qlumNoServer;
        for (Document* const document : open())
            document->sessionRemoved(serverId);
    }

private:
    void tellSelection([[maybe_unused]] Document& document)
    {
        if constexpr (requires { document.serverSelectionChanged(m_selected); })
            document.serverSelectionChanged(m_selected);
    }
    void tellStatus(Document& document, unsigned int serverId, QlumConnectionStatus status,
                    [[maybe_unused]] const NamespaceMap& map)
    {
        if constexpr (requires { document.sessionStatusChanged(serverId, status, map); })
            document.sessionStatusChanged(serverId, status, map);
        else
            document.sessionStatusChanged(serverId, status);
    }

    QList<QPointer<Document>> m_documents;
    QHash<unsigned int, QlumConnectionStatus> m_states;
    unsigned int m_selected = qlumNoServer;
};
