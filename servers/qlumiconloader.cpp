#include <servers/qlumiconloader.h>

#include <app/api/qlumjob.h>

#include <QImage>
#include <QPixmap>
#include <QString>

#include <utility>

namespace {
constexpr int newsPause = 100; // ms; a tree is painted anew for many icons at once
} // namespace

QlumIconLoader::QlumIconLoader(unsigned int serverId, std::shared_ptr<QlumTypeCache> cache, bool isWanted,
                               QObject* parent)
    : QObject(parent), m_serverId(serverId), m_cache(std::move(cache)), m_isWanted(isWanted)
{
    m_news.setSingleShot(true);
    m_news.setInterval(newsPause);
    connect(&m_news, &QTimer::timeout, this, &QlumIconLoader::loaded);
}

QIcon QlumIconLoader::icon(const UaNodeId& node)
{
    if (!m_isWanted)
        return {};
    if (const auto found = m_icons.find(node); found != m_icons.end())
        return found->second;
    if (m_icons.size() >= maximumIcons)
        clear();
    m_icons[node] = QIcon();
    m_pool.add({QString(), m_serverId}, [this, cache = m_cache, node](QlumJob& job) {
        const QImage image = cache->readIcon(node);
        if (!image.isNull())
            job.post([this, node, image] { take(node, image); });
    });
    return {};
}

void QlumIconLoader::take(const UaNodeId& node, const QImage& image)
{
    m_icons[node] = QIcon(QPixmap::fromImage(image));
    if (!m_news.isActive())
        m_news.start();
}

void QlumIconLoader::setWanted(bool isWanted)
{
    if (m_isWanted == isWanted)
        return;
    m_isWanted = isWanted;
    clear();
    emit loaded();
}

void QlumIconLoader::clear()
{
    m_pool.cancelAll();
    m_icons.clear();
}
