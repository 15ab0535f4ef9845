// The open documents of a plugin that each follow the project's selected server.
#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumconnectionstatus.h>

#include <QHash>
#include <QList>
#include <QPointer>

/// Tells them what the project tells the plugin; the last of it also to a new one. A document has
/// serverSelectionChanged(), sessionStatusChanged() and sessionRemoved(), and may go at any time.
template <typename Document>
class QlumServerDocuments
{
public:
    /// One that was just made; somebody else owns it.
    void add(Document* document)
    {
        for (auto state = m_states.cbegin(); state != m_states.cend(); ++state)
            document->sessionStatusChanged(state.key(), state.value());
        document->serverSelectionChanged(m_selected);
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
            document->serverSelectionChanged(serverId);
    }
    /// Of any server.
    void sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status)
    {
        m_states.insert(serverId, status);
        for (Document* const document : open())
            document->sessionStatusChanged(serverId, status);
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
    QList<QPointer<Document>> m_documents;
    QHash<unsigned int, QlumConnectionStatus> m_states;
    unsigned int m_selected = qlumNoServer;
};
