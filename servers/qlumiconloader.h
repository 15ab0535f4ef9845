#pragma once
#include <app/api/qlumjobpool.h>
#include <servers/qlumtypecache.h>
#include <uabase/values/uanodeid.h>

#include <QIcon>
#include <QImage>
#include <QObject>
#include <QTimer>

#include <map>
#include <memory>

/// Icons that a server offers for its nodes, read in the background. GUI thread.
class QlumIconLoader : public QObject
{
    Q_OBJECT
public:
    /// Icons that are kept; more than that begin anew.
    static constexpr std::size_t maximumIcons = 10000;

    QlumIconLoader(unsigned int serverId, std::shared_ptr<QlumTypeCache> cache, bool isWanted,
                   QObject* parent = nullptr);

    /// Null while it is not known, and when the node has none.
    [[nodiscard]] QIcon icon(const UaNodeId& node);
    /// Whether the user wants them.
    void setWanted(bool isWanted);
    /// Forgets all.
    void clear();

signals:
    /// Some have come, or are not wanted any more.
    void loaded();

private:
    void take(const UaNodeId& node, const QImage& image);

    const unsigned int m_serverId;
    const std::shared_ptr<QlumTypeCache> m_cache;
    bool m_isWanted;
    std::map<UaNodeId, QIcon> m_icons; ///< null ones are being read, or are none
    QTimer m_news;
    QlumJobPool m_pool; ///< last: joined first
};
