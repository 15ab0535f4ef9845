#include <plugins/imageviewer/qlumimagefacts.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumimageformat.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <plugins/imageviewer/qlumimagefeed.h>
#include <plugins/imageviewer/qlumimageheader.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>

#include <QDateTime>
#include <QLocale>
#include <QSize>
#include <QStringList>

#include <deque>
#include <utility>

namespace {

using Model = QlumImageFactsModel;

QString timeText(const QDateTime& time)
{
    return time.isValid() ? qlumShowDateTime(time) : QString();
}

// The server's clock is finer than the one of the screen.
QString timeText(const UaDateTime& time, unsigned int picoseconds)
{
    constexpr unsigned int unit = 10;
    const QString text = timeText(qlumDateTime(time.value()));
    return picoseconds == 0 || text.isEmpty() ? text
                                              : Model::tr("%1 + %2 ps").arg(text).arg(picoseconds * unit);
}

QString formatName(const QlumImageFeed& feed)
{
    return QString::fromLatin1(qlumImageFormatName(feed.shown().decoded.header.format));
}

QString sizeText(const QlumImageFeed& feed)
{
    const QSize size = feed.shown().decoded.header.size;
    return size.isEmpty() ? QString() : QStringLiteral("%1 x %2").arg(size.width()).arg(size.height());
}

QString bytesText(const QlumImageFeed& feed)
{
    const auto bytes = qlumImageBytes(feed.shown().bytes);
    return bytes.empty()
               ? QString()
               : Model::tr("%1 bytes").arg(QLocale().toString(static_cast<qulonglong>(bytes.size())));
}

QString framesText(const QlumImageFeed& feed)
{
    const QlumImageHeader& header = feed.shown().decoded.header;
    if (header.frames == 0 || header.format != QlumImageFormat::Gif)
        return {};
    const QString count = header.hasMoreFrames
                              ? Model::tr("more than %1").arg(QLocale().toString(header.frames))
                              : QLocale().toString(header.frames);
    return feed.frame() == 0 ? count : Model::tr("%1; number %2 is shown").arg(count).arg(feed.frame());
}

QString statusText(const QlumImageFeed& feed)
{
    return feed.hasValue() ? qlumStatusText(feed.value().statusCode().code()) : QString();
}

QString watchText(const QlumImageFeed& feed)
{
    if (feed.source().nodeId.isNull())
        return Model::tr("no: a value that another view has shown");
    if (!feed.source().isWatched)
        return Model::tr("no: read when asked for");
    return feed.revisedInterval() > 0
               ? Model::tr("yes, sampled every %1 ms").arg(QLocale().toString(feed.revisedInterval()))
               : Model::tr("yes");
}

void add(std::deque<QlumImageFact>& facts, const QString& name, const QString& text,
         QlumStatusLevel level = QlumStatusLevel::Inactive)
{
    if (!text.isEmpty())
        facts.push_back({name, text, level});
}

void addImage(std::deque<QlumImageFact>& facts, const QlumImageFeed& feed)
{
    const QlumShownImage& shown = feed.shown();
    add(facts, Model::tr("Element"), qlumSingleLine(shown.element));
    add(facts, Model::tr("Data type"), shown.typeName.isEmpty() ? feed.typeName() : shown.typeName);
    add(facts, Model::tr("Format"), formatName(feed));
    add(facts, Model::tr("Form"), shown.decoded.header.form);
    add(facts, Model::tr("Size"), sizeText(feed));
    add(facts, Model::tr("Length"), bytesText(feed));
    add(facts, Model::tr("Frames"), framesText(feed));
    add(facts, Model::tr("Remark"), shown.decoded.remark, QlumStatusLevel::Uncertain);
    add(facts, Model::tr("Fault"), shown.decoded.fault, QlumStatusLevel::Bad);
}

std::deque<QlumImageFact> factsOf(const QlumImageFeed& feed, const QString& serverName)
{
    std::deque<QlumImageFact> facts;
    const QlumImageSource& source = feed.source();
    const UaDataValue& value = feed.value();
    add(facts, Model::tr("Server"), qlumSingleLine(serverName));
    add(facts, Model::tr("Variable"), qlumSingleLine(source.name));
    add(facts, Model::tr("Node id"),
        source.nodeId.isNull() ? QString() : toQString(source.nodeId.toXmlString()));
    addImage(facts, feed);
    if (feed.hasValue())
        add(facts, Model::tr("Status"), statusText(feed), qlumStatusLevel(value.statusCode().code()));
    add(facts, Model::tr("Source time"), timeText(value.sourceTimestamp(), value.sourcePicoseconds()));
    add(facts, Model::tr("Server time"), timeText(value.serverTimestamp(), value.serverPicoseconds()));
    add(facts, Model::tr("Receive time"), timeText(feed.received()));
    add(facts, Model::tr("Watched"), watchText(feed));
    const QLocale locale;
    if (source.isWatched && !source.nodeId.isNull()) {
        add(facts, Model::tr("Images per second"), locale.toString(feed.rate(), 'f', 1));
        add(facts, Model::tr("Images shown"), locale.toString(feed.shownCount()));
        add(facts, Model::tr("Images dropped"), locale.toString(feed.droppedCount()));
    }
    return facts;
}

} // namespace

QlumImageFactsModel::QlumImageFactsModel(QObject* parent)
    : QlumTableModel({tr("Property"), tr("Value")}, parent)
{
}

void QlumImageFactsModel::show(const QlumImageFeed* feed, const QString& serverName)
{
    std::deque<QlumImageFact> facts = feed ? factsOf(*feed, serverName) : std::deque<QlumImageFact>();
    bool hasSameRows = facts.size() == rows().size();
    for (std::size_t i = 0; hasSameRows && i < facts.size(); ++i)
        hasSameRows = facts[i].name == rows()[i].name;
    if (!hasSameRows)
        return reset(std::move(facts)); // else what is selected stays
    for (std::size_t i = 0; i < facts.size(); ++i)
        if (facts[i] != rows()[i])
            change(static_cast<int>(i), [&](QlumImageFact& fact) { fact = facts[i]; });
}

QVariant QlumImageFactsModel::cell(const QlumImageFact& fact, int column, int role) const
{
    if (role == Qt::DisplayRole)
        return column == Fact ? fact.name : fact.text;
    if (role == Qt::ToolTipRole)
        return qlumPlainToolTip(fact.text);
    const bool isStatus = column == Value && fact.level != QlumStatusLevel::Inactive;
    return isStatus ? qlumStatusCell(fact.level, role) : QVariant();
}

QString qlumImageRate(const QlumImageFeed& feed)
{
    if (!feed.source().isWatched || feed.source().nodeId.isNull())
        return {};
    const QString rate = Model::tr("%1 images/s").arg(QLocale().toString(feed.rate(), 'f', 1));
    return feed.droppedCount() == 0
               ? rate
               : Model::tr("%1, %2 dropped").arg(rate, QLocale().toString(feed.droppedCount()));
}

QString qlumImageLine(const QlumImageFeed& feed)
{
    if (!feed.hasValue())
        return {};
    const UaDataValue& value = feed.value();
    const UaDateTime time =
        value.sourceTimestamp().isNull() ? value.serverTimestamp() : value.sourceTimestamp();
    QStringList parts{formatName(feed), sizeText(feed), bytesText(feed), statusText(feed)};
    if (const QDateTime local = qlumDateTime(time.value()); local.isValid())
        parts.append(qlumShowTime(local));
    parts.append(qlumImageRate(feed));
    if (const int frames = feed.shown().decoded.header.frames; frames > 1)
        parts.append(Model::tr("frame %1 of %2%3")
                         .arg(feed.frame())
                         .arg(frames)
                         .arg(feed.shown().decoded.header.hasMoreFrames ? QStringLiteral("+") : QString()));
    parts.removeAll(QString());
    return parts.join(QStringLiteral("  |  "));
}

QString qlumImageEnding(const QlumImageFeed& feed)
{
    const QString format = formatName(feed);
    return format.isEmpty() ? QStringLiteral("bin") : format.toLower();
}
