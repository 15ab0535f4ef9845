// What a project keeps of an image viewer, and how its nodes follow their namespaces.
#include <plugins/imageviewer/qlumimageview.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <monitoring/namespaces.h>
#include <plugins/imageviewer/qlumimagetile.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/qlummessagebar.h>

#include <algorithm>

namespace {
constexpr int mostText = 1000; // of a file; what is longer is none of ours
}

QString QlumImageView::namespaceUriOf(const QlumImageSource& source) const
{
    return m_application.namespaceUriFromIndex(source.serverId, source.nodeId.namespaceIndex());
}

void QlumImageView::saveSettings(QSettings& settings)
{
    settings.setValue(QStringLiteral("Interval"), m_interval);
    settings.beginWriteArray(QStringLiteral("Images"));
    int row = 0;
    for (const QlumImageTile* tile : m_tiles) {
        const QlumImageSource& source = tile->feed()->source();
        if (source.nodeId.isNull())
            continue; // a value of the moment
        settings.setArrayIndex(row++);
        settings.setValue(QStringLiteral("ServerId"), source.serverId);
        settings.setValue(QStringLiteral("NodeId"), toQString(source.nodeId.toXmlString()));
        settings.setValue(QStringLiteral("NamespaceUri"),
                          source.namespaceUri.isEmpty() ? namespaceUriOf(source) : source.namespaceUri);
        settings.setValue(QStringLiteral("Name"), source.name);
        settings.setValue(QStringLiteral("Element"), source.element);
        settings.setValue(QStringLiteral("Watched"), source.isWatched);
    }
    settings.endArray();
}

void QlumImageView::loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap)
{
    m_isLoading = true;
    setInterval(settings.value(QStringLiteral("Interval"), m_interval).toInt());
    int missing = 0;
    const int count = std::min(settings.beginReadArray(QStringLiteral("Images")), mostImages);
    for (int row = 0; row < count; ++row) {
        settings.setArrayIndex(row);
        const auto server = serverIdMap.constFind(settings.value(QStringLiteral("ServerId"), -1).toInt());
        const bool isNode =
            !UaNodeId::fromString(settings.value(QStringLiteral("NodeId")).toString().toStdString()).isNull();
        if (server == serverIdMap.constEnd() || !isNode)
            ++missing;
        else
            restoreImage(settings, static_cast<unsigned int>(*server));
    }
    settings.endArray();
    setCurrent(m_tiles.empty() ? nullptr : m_tiles.front());
    m_isLoading = false;
    if (missing > 0)
        m_messages->tell({QlumMessage::Warning,
                          QStringLiteral("project"),
                          tr("%n image(s) of this view were left out.", nullptr, missing),
                          tr("Their server is not in the project, or their node id cannot be read."),
                          {},
                          {}});
}

void QlumImageView::restoreImage(const QSettings& settings, unsigned int serverId)
{
    const auto text = [&settings](const char* key) {
        return settings.value(QLatin1String(key)).toString().left(mostText);
    };
    QlumImageSource source;
    source.serverId = serverId;
    source.nodeId = UaNodeId::fromString(settings.value(QStringLiteral("NodeId")).toString().toStdString());
    source.namespaceUri = text("NamespaceUri");
    source.name = qlumSingleLine(text("Name"));
    source.element = text("Element");
    source.isWatched = settings.value(QStringLiteral("Watched"), true).toBool();
    QlumImageTile* tile = addTile(source);
    place(*tile->feed(), {});
    tile->feed()->begin();
}

// By the URI where that is known: the indexes of a server that was set up anew are others. A server that was
// never connected has told of none.
void QlumImageView::place(QlumImageFeed& feed, const QMap<quint16, quint16>& map)
{
    const QlumImageSource& source = feed.source();
    UaNodeId nodeId = source.nodeId;
    if (!source.namespaceUri.isEmpty() && !m_application.namespaceTable(source.serverId).isEmpty()) {
        const int index = m_application.namespaceIndexFromUri(source.serverId, source.namespaceUri);
        if (index >= 0)
            nodeId.setNamespaceIndex(static_cast<OpcUa_UInt16>(index));
        if (feed.isLost() != (index < 0) || !(nodeId == source.nodeId))
            feed.setNode(nodeId, index < 0);
        return;
    }
    const bool isThere = monitoring::remapNodeId(nodeId, map.toStdMap());
    if (!map.isEmpty())
        feed.setNode(isThere ? nodeId : source.nodeId, !isThere);
}
