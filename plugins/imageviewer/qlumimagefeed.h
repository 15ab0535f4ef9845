#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlummonitoring.h>
#include <app/api/qlumsessionservices.h>
#include <monitoring/watch.h>
#include <plugins/imageviewer/qlumimagevalue.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uawidgets/editors/qlumvaluecontext.h>

#include <QDateTime>
#include <QImage>
#include <QObject>
#include <QString>
#include <QTimer>

#include <deque>
#include <functional>
#include <memory>
#include <vector>

namespace monitoring {
class LatestSink;
}

/// Where an image comes from.
struct QlumImageSource
{
    unsigned int serverId = qlumNoServer; ///< that has it
    UaNodeId nodeId;                      ///< of the variable; null for a value that another view has shown
    QString name;                         ///< for the user
    QString namespaceUri;                 ///< of the node, as far as it is known
    QString element;                      ///< path of a part of the value; empty: the first image in it
    bool isWatched = true;                ///< else it is read when somebody asks
};

/// Gets the values of one variable, read or watched, and has the image in them decoded, one at a time: of
/// values that come faster the newest wins and the others are counted. GUI thread.
class QlumImageFeed : public QObject
{
    Q_OBJECT
public:
    /// What feeds of a view share; all must outlive them. The pools are different ones, so that a server
    /// that does not answer holds up no decoding.
    struct Shared
    {
        QlumSessionServicesProvider services;
        QlumMonitoringProvider monitoring;
        QlumJobPool& reads;
        QlumJobPool& decodes;
        /// Bytes that an image may take besides those of the other feeds; empty for the usual limit.
        std::function<qint64(const QlumImageFeed& feed)> memoryLeft = {};
    };

    /// Asks nothing until begin().
    QlumImageFeed(Shared shared, QlumImageSource source, QObject* parent = nullptr);
    ~QlumImageFeed() override;

    /// Reads the value and its type, and watches it where the source says so.
    void begin();
    /// Reads now.
    void read();
    /// What is known of the type of values that are not read.
    void setDataType(const UaNodeId& dataType) { m_context.dataType = dataType; }
    /// From now on watched, or not any more; the image stays.
    void setWatched(bool isWatched);
    /// How often its server reports it, in ms.
    void setInterval(double interval);
    /// Another part of the same value.
    void setElement(const QString& element);
    /// Shows frame after frame, or stays where it is.
    void setPlaying(bool isPlaying);
    /// The node under its new id, or that its namespace is no more: then the id stays until there is one.
    void setNode(const UaNodeId& nodeId, bool isLost);
    /// Its server can be asked from now on, or not any more.
    void connectionChanged(bool isConnected);
    /// A value that came some other way, in place of those before it. So many were passed over for it.
    void take(const UaDataValue& value, quint32 passedOver = 0);

    // ---- what is known
    [[nodiscard]] const QlumImageSource& source() const { return m_source; } ///< where it comes from
    [[nodiscard]] bool isLost() const { return m_isLost; }                   ///< its namespace is not there
    [[nodiscard]] const UaDataValue& newest() const { return m_newest; }     ///< came last
    [[nodiscard]] const UaDataValue& value() const { return m_value; }       ///< whose image is shown
    [[nodiscard]] const QlumShownImage& shown() const { return m_shown; }    ///< what came of it
    [[nodiscard]] const QImage& image() const { return m_image; }            ///< the frame that is seen
    [[nodiscard]] const QString& typeName() const { return m_typeName; }     ///< of the whole value
    [[nodiscard]] bool hasValue() const { return m_received.isValid(); }     ///< any came
    [[nodiscard]] QDateTime received() const { return m_received; }          ///< when it came
    /// Why nothing new comes, in a sentence; empty while there is no reason.
    [[nodiscard]] const QString& trouble() const { return m_trouble; }
    [[nodiscard]] bool isReading() const { return m_reading != 0; }       ///< an answer is waited for
    [[nodiscard]] bool isDecoding() const { return m_decoding != 0; }     ///< a value is on its way
    [[nodiscard]] bool isPlaying() const { return m_isPlaying; }          ///< frame after frame
    [[nodiscard]] int frame() const { return m_frame; }                   ///< from 1; 0 for none
    [[nodiscard]] quint64 shownCount() const { return m_shownCount; }     ///< images since the beginning
    [[nodiscard]] quint64 droppedCount() const { return m_droppedCount; } ///< that a newer one replaced
    [[nodiscard]] double rate() const; ///< images a second over the last seconds
    [[nodiscard]] double revisedInterval() const { return m_revisedInterval; } ///< ms; the server's; 0: none

signals:
    /// Whatever is known is different now.
    void changed();
    /// The source differs from what a project has kept.
    void sourceChanged();
    /// Only the frame is another one.
    void frameChanged();

private:
    void watch();
    void unwatch();
    void takeFromSink();
    [[nodiscard]] bool canAsk() const { return !m_isLost && !m_source.nodeId.isNull(); }
    void decodeAgain();
    void takeRead(const UaStatus& status, const UaDataValue& value, const QString& name);
    void tellTrouble(const QString& trouble);
    void decodeNewest();
    void takeShown(const UaDataValue& value, const QlumShownImage& shown, bool isCurrent);
    void playNext();

    const Shared m_shared;
    QlumImageSource m_source;
    QlumValueContext m_context;
    QString m_typeName;
    bool m_isLost = false;
    double m_interval = 500;
    double m_revisedInterval = 0;

    std::shared_ptr<monitoring::LatestSink> m_sink; ///< null while nothing is watched
    std::vector<monitoring::ItemId> m_items;
    QlumJobPool::Ticket m_reading = 0;
    QlumJobPool::Ticket m_decoding = 0;
    UaDataValue m_newest;   ///< came last
    bool m_isNew = false;   ///< and is not being decoded yet
    bool m_isAgain = false; ///< the same value for another element, which is no frame
    bool m_isFromWatch = false;

    UaDataValue m_value;
    QlumShownImage m_shown;
    QDateTime m_received;
    QString m_trouble;
    QImage m_image;
    std::deque<qint64> m_times; ///< ms, when images were shown
    quint64 m_shownCount = 0;
    quint64 m_droppedCount = 0;

    bool m_isPlaying = false;
    int m_frame = 0;
    std::shared_ptr<QlumImageFrames> m_frames;
    QlumJobPool::Ticket m_playing = 0;
    QTimer m_nextFrame;
};
