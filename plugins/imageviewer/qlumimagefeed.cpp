#include <plugins/imageviewer/qlumimagefeed.h>

#include <app/api/qlumjob.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <monitoring/latestsink.h>
#include <monitoring/monitoredserver.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumcontextreader.h>
#include <uawidgets/editors/qlumvaluetype.h>

#include <QMetaObject>

#include <algorithm>
#include <cstddef>
#include <span>
#include <utility>

namespace {

constexpr qint64 rateSpan = 5000; // ms

qint64 nowInMilliseconds()
{
    return QDateTime::currentMSecsSinceEpoch();
}

QString displayNameOf(QlumSessionServices& services, QlumSessionServices::Settings settings,
                      const UaNodeId& nodeId)
{
    UaReadValueIds nodes(1);
    UaDataValues values;
    static_cast<void>(nodeId.copyTo(&nodes[0].NodeId)); // else null, which the server refuses
    nodes[0].AttributeId = OpcUa_Attributes_DisplayName;
    const UaStatus status = services.read(settings, 0, OpcUa_TimestampsToReturn_Neither, nodes, values);
    if (status.isBad() || values.length() != 1 || OpcUa_IsBad(values[0].StatusCode))
        return {};
    const UaVariant name(values[0].Value);
    return name.type() == OpcUaType_LocalizedText ? toQString(name.toLocalizedText().text()) : QString();
}

} // namespace

QlumImageFeed::QlumImageFeed(Shared shared, QlumImageSource source, QObject* parent)
    : QObject(parent), m_shared(std::move(shared)), m_source(std::move(source))
{
    m_nextFrame.setSingleShot(true);
    connect(&m_nextFrame, &QTimer::timeout, this, &QlumImageFeed::playNext);
}

QlumImageFeed::~QlumImageFeed()
{
    unwatch();
    m_shared.reads.giveUp(m_reading);
    m_shared.decodes.giveUp(m_decoding);
    m_shared.decodes.giveUp(m_playing);
}

// ---- reading

void QlumImageFeed::begin()
{
    if (!canAsk())
        return;
    if (m_source.isWatched)
        watch();
    read();
}

// The type comes with the value: a structure is taken apart by it.
void QlumImageFeed::read()
{
    if (!canAsk())
        return;
    const auto services = m_shared.services(m_source.serverId);
    if (!services || !services->isConnected())
        return tellTrouble(tr("The server is not connected."));
    m_shared.reads.giveUp(m_reading);
    const auto work = [this, services, nodeId = m_source.nodeId,
                       isNamed = !m_source.name.isEmpty()](QlumJob& job) {
        const QString name = isNamed ? QString() : displayNameOf(*services, job.serviceSettings(), nodeId);
        QlumContextReader reader(services, job);
        std::vector<QlumValueContext> contexts;
        UaDataValues values;
        const UaStatus status = reader.read(std::span(&nodeId, 1), contexts, &values);
        UaDataValue value;
        if (status.isNotBad() && values.length() == 1)
            value = UaDataValue(values[0]);
        reader.learn(value.value());
        const QlumValueContext context = contexts.empty() ? QlumValueContext() : contexts.front();
        job.post([this, status, value, context, name] {
            m_context = context;
            m_typeName = qlumTypeTextOf(value.value(), context);
            takeRead(status, value, name);
        });
    };
    m_reading =
        m_shared.reads.add({tr("Reading an image"), m_source.serverId}, work, [this](QlumWorkEnd end) {
            m_reading = 0;
            if (end == QlumWorkEnd::Cancelled)
                tellTrouble(tr("The reading was cancelled."));
            emit changed();
        });
    emit changed();
}

void QlumImageFeed::takeRead(const UaStatus& status, const UaDataValue& value, const QString& name)
{
    if (!name.isEmpty()) {
        m_source.name = name;
        emit sourceChanged();
    }
    const UaStatus result = status.isBad() ? status : UaStatus(value.statusCode().code());
    if (result.code() == OpcUa_BadAttributeIdInvalid)
        return tellTrouble(tr("This node is no variable: it has no value to show."));
    if (status.isBad())
        return tellTrouble(tr("The value cannot be read: %1.").arg(qlumResultInWords(status)));
    if (m_isFromWatch)
        decodeAgain(); // what was watched is newer, and waits for the type
    else
        take(value);
}

void QlumImageFeed::tellTrouble(const QString& trouble)
{
    m_trouble = trouble;
    emit changed();
}

void QlumImageFeed::setNode(const UaNodeId& nodeId, bool isLost)
{
    if (isLost || !(nodeId == m_source.nodeId))
        unwatch(); // what came would be another node's
    m_source.nodeId = nodeId;
    m_isLost = isLost;
    if (isLost)
        tellTrouble(tr("The server has no namespace %1.").arg(m_source.namespaceUri));
    else if (m_source.isWatched)
        watch();
}

void QlumImageFeed::connectionChanged(bool isConnected)
{
    if (!canAsk())
        return;
    if (!isConnected)
        return tellTrouble(tr("The server is not connected."));
    tellTrouble(QString());
    if (m_source.isWatched)
        watch();
    if (m_typeName.isEmpty())
        read();
}

void QlumImageFeed::setElement(const QString& element)
{
    if (m_source.element == element)
        return;
    m_source.element = element;
    emit sourceChanged();
    if (!hasValue())
        return;
    m_shared.decodes.giveUp(m_decoding); // that of the other element
    m_decoding = 0;
    decodeAgain();
}

// ---- watching

void QlumImageFeed::setWatched(bool isWatched)
{
    if (m_source.isWatched == isWatched)
        return;
    m_source.isWatched = isWatched;
    if (isWatched)
        watch();
    else
        unwatch();
    emit sourceChanged();
    emit changed();
}

void QlumImageFeed::setInterval(double interval)
{
    if (m_interval == interval)
        return;
    m_interval = interval;
    if (m_sink) {
        unwatch();
        watch();
    }
}

void QlumImageFeed::watch()
{
    const auto server = m_shared.monitoring && canAsk() ? m_shared.monitoring(m_source.serverId) : nullptr;
    if (m_sink || !server)
        return;
    m_sink = std::make_shared<monitoring::LatestSink>(
        [this] { QMetaObject::invokeMethod(this, &QlumImageFeed::takeFromSink, Qt::QueuedConnection); });
    monitoring::ItemSettings settings;
    settings.subscription.publishingInterval = m_interval;
    monitoring::ItemWish wish;
    wish.nodeId = m_source.nodeId;
    m_items = server->add(m_sink, settings, std::span(&wish, 1));
    m_times.clear();
}

void QlumImageFeed::unwatch()
{
    if (!m_sink)
        return;
    m_sink->close();
    if (const auto server = m_shared.monitoring(m_source.serverId))
        server->remove(m_items);
    m_sink.reset();
    m_items.clear();
    m_revisedInterval = 0;
    m_isFromWatch = false;
    m_times.clear();
}

void QlumImageFeed::takeFromSink()
{
    if (!m_sink)
        return;
    monitoring::LatestSink::Batch batch = m_sink->take();
    for (const monitoring::ItemChange& change : batch.changes) {
        m_revisedInterval = change.revisedSamplingInterval;
        if (change.state == monitoring::ItemState::Refused)
            tellTrouble(change.status.code() == OpcUa_BadAttributeIdInvalid
                            ? tr("This node is no variable: it has no value to show.")
                            : tr("The server does not watch it: %1.")
                                  .arg(qlumResultInWords(UaStatus(change.status.code()))));
    }
    for (const monitoring::LatestSink::Value& one : batch.values) {
        m_isFromWatch = true;
        take(one.value, one.merged);
    }
    emit changed();
}

// ---- decoding

void QlumImageFeed::take(const UaDataValue& value, quint32 passedOver)
{
    m_droppedCount += passedOver;
    if (m_isNew && !m_isAgain)
        ++m_droppedCount;
    m_newest = value;
    m_isNew = true;
    m_isAgain = false;
    m_trouble.clear();
    m_received = QDateTime::currentDateTime();
    decodeNewest();
}

void QlumImageFeed::decodeAgain()
{
    if (!m_isNew)
        m_isNew = m_isAgain = true;
    decodeNewest();
}

void QlumImageFeed::decodeNewest()
{
    if (m_decoding != 0 || !m_isNew)
        return;
    m_isNew = false;
    const bool isCurrent = !m_isAgain;
    m_isAgain = false;
    const qint64 memory = m_shared.memoryLeft ? m_shared.memoryLeft(*this) : qlumMostImageMemory;
    const auto work = [this, value = m_newest, context = m_context, element = m_source.element, isCurrent,
                       memory](QlumJob& job) {
        const QlumShownImage shown = qlumShowImageOf(
            value, context, element, [&job] { return job.isCancelled(); }, memory);
        if (!job.isCancelled())
            job.post([this, value, shown, isCurrent] { takeShown(value, shown, isCurrent); });
    };
    m_decoding = m_shared.decodes.add({QString(), m_source.serverId}, work, [this](QlumWorkEnd) {
        m_decoding = 0;
        decodeNewest();
        emit changed();
    });
}

void QlumImageFeed::takeShown(const UaDataValue& value, const QlumShownImage& shown, bool isCurrent)
{
    m_value = value;
    m_shown = shown;
    m_image = shown.decoded.image;
    m_frames.reset();
    m_frame = m_image.isNull() ? 0 : 1;
    m_shared.decodes.giveUp(m_playing); // with the frames of the image before
    m_playing = 0;
    m_nextFrame.stop();
    if (isCurrent && !m_image.isNull()) {
        ++m_shownCount;
        m_times.push_back(nowInMilliseconds());
        while (m_times.front() < m_times.back() - rateSpan)
            m_times.pop_front();
    }
    emit changed();
    if (m_isPlaying)
        playNext();
}

double QlumImageFeed::rate() const
{
    constexpr qint64 second = 1000;
    const qint64 now = nowInMilliseconds();
    const auto first =
        std::find_if(m_times.begin(), m_times.end(), [now](qint64 at) { return at >= now - rateSpan; });
    if (first == m_times.end())
        return 0;
    const qint64 span = std::clamp(now - *first, second, rateSpan);
    return double(m_times.end() - first) * double(second) / double(span);
}

// ---- animations

void QlumImageFeed::setPlaying(bool isPlaying)
{
    m_isPlaying = isPlaying;
    if (isPlaying)
        playNext();
    else
        m_nextFrame.stop(); // a frame that is being decoded is shown, and the last
}

// The frames are decoded one by one: all of them together may be more than there is memory.
void QlumImageFeed::playNext()
{
    if (!m_isPlaying || m_playing != 0 || m_image.isNull() || m_shown.decoded.header.frames < 2)
        return;
    if (!m_frames)
        m_frames = std::make_shared<QlumImageFrames>(m_shown.bytes);
    const auto work = [this, frames = m_frames](QlumJob& job) {
        const QlumImageFrames::Frame frame = frames->next([&job] { return job.isCancelled(); });
        job.post([this, frame] {
            if (frame.image.isNull())
                return;
            m_image = frame.image;
            m_frame = frame.number;
            if (m_isPlaying)
                m_nextFrame.start(frame.delay);
            emit frameChanged();
        });
    };
    m_playing =
        m_shared.decodes.add({QString(), m_source.serverId}, work, [this](QlumWorkEnd) { m_playing = 0; });
}
