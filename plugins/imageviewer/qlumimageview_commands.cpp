// What the user can do with images.
#include <plugins/imageviewer/qlumimageview.h>

#include <app/api/qlumimageformat.h>
#include <plugins/imageviewer/qlumimagecanvas.h>
#include <plugins/imageviewer/qlumimagefacts.h>
#include <plugins/imageviewer/qlumimagetile.h>
#include <uawidgets/qlumformrow.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/qlumnodecommands.h>

#include <QAction>
#include <QByteArray>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QGuiApplication>
#include <QKeySequence>
#include <QLabel>
#include <QMimeData>
#include <QRegularExpression>
#include <QSaveFile>
#include <QToolBar>

#include <algorithm>
#include <array>
#include <span>

#define IMAGE_TEXT(text) QT_TRANSLATE_NOOP("QlumImageView", text)

namespace {

using V = QlumImageView;
constexpr auto inView = Qt::WidgetWithChildrenShortcut;
constexpr std::array<int, 7> imageIntervals{50, 100, 250, 500, 1000, 5000, 10'000}; // ms

constexpr std::array<QlumActionRow, 11> imageCommandRows{{
    {V::ReadAgain, "readImage", IMAGE_TEXT("&Read"), "rebrowse.png", QKeySequence::Refresh,
     IMAGE_TEXT("Read the current image from its server now"), "", inView},
    {V::Watch, "watchImage", IMAGE_TEXT("&Watch"), ":/uawidgets/images/on.png", qlumNoKey,
     IMAGE_TEXT("Show every new image that the server reports; else it is read when asked for"), "", inView},
    {V::Fit, "fitImage", IMAGE_TEXT("&Fit"), "", qlumNoKey, IMAGE_TEXT("Show the whole image (0)"), "",
     inView},
    {V::OneToOne, "imageOneToOne", IMAGE_TEXT("&1:1"), "", qlumNoKey,
     IMAGE_TEXT("Show a pixel of the image as a pixel of the screen (1)"), "", inView},
    {V::ZoomIn, "imageZoomIn", IMAGE_TEXT("Zoom &In"), "", QKeySequence::ZoomIn,
     IMAGE_TEXT("Show the image larger, down to its single pixels"), "", inView},
    {V::ZoomOut, "imageZoomOut", IMAGE_TEXT("Zoom &Out"), "", QKeySequence::ZoomOut,
     IMAGE_TEXT("Show the image smaller"), "", inView},
    {V::Play, "playImage", IMAGE_TEXT("&Play"), "", qlumNoKey,
     IMAGE_TEXT("Show the frames of an animation one after the other"), "", inView},
    {V::CopyImage, "copyImage", IMAGE_TEXT("&Copy Image"), ":/uawidgets/images/copy.png", QKeySequence::Copy,
     IMAGE_TEXT("Copy the image to the clipboard, with its bytes as they were received"), "", inView},
    {V::SaveImage, "saveImage", IMAGE_TEXT("&Save As..."), "filesave.png", qlumNoKey,
     IMAGE_TEXT("Write the bytes to a file as they were received"), "", inView},
    {V::OpenElements, "openImageElements", IMAGE_TEXT("Open &All Elements"), "", qlumNoKey,
     IMAGE_TEXT("Show all images of an array or a structure side by side"), "", inView},
    {V::RemoveImage, "removeImage", IMAGE_TEXT("Re&move"), ":/uawidgets/images/remove.png",
     QKeySequence::Delete, IMAGE_TEXT("Take the current image out of this view"), "", inView},
}};

// A name that a file may have.
QString proposedName(const QlumImageFeed& feed)
{
    QString name = feed.source().name + feed.source().element;
    name.replace(QRegularExpression(QStringLiteral("[^\\w.-]+")), QStringLiteral("_"));
    while (name.startsWith(QLatin1Char('.')))
        name.remove(0, 1);
    constexpr int longest = 100;
    name = name.left(longest);
    return (name.isEmpty() ? QStringLiteral("image") : name) + QLatin1Char('.') + qlumImageEnding(feed);
}

} // namespace

void QlumImageView::makeActions()
{
    m_actions = QlumActionTable(imageCommandRows, "QlumImageView", this);
    for (const QlumActionRow& row : imageCommandRows) {
        QAction* const action = m_actions[row.id];
        connect(action, &QAction::triggered, this, [this, id = row.id] { run(static_cast<Command>(id)); });
    }
    addAction(m_actions[ReadAgain]); // its key works in the whole document, the others where the images are
    for (const Command checked : {Watch, Fit, Play})
        m_actions[checked]->setCheckable(true);
}

QToolBar* QlumImageView::makeBar()
{
    auto* bar = new QToolBar(tr("Image"));
    bar->setObjectName(QStringLiteral("imageBar"));
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    bar->addActions(m_actions.list({ReadAgain, Watch}));
    m_intervals = new QComboBox;
    qlumDescribeField(
        m_intervals,
        {QStringLiteral("imageInterval"),
         tr("Images are asked for every"),
         tr("<b>Interval</b><br>How often the server reports a watched image. Of images that "
            "come faster than they are decoded the newest is shown, and the others are counted."),
         {}});
    for (const int interval : imageIntervals)
        m_intervals->addItem(interval < 1000 ? tr("%1 ms").arg(interval) : tr("%1 s").arg(interval / 1000),
                             interval);
    setInterval(m_interval);
    connect(m_intervals, qOverload<int>(&QComboBox::activated), this, [this](int index) {
        setInterval(m_intervals->itemData(index).toInt());
        markModified();
    });
    bar->addWidget(m_intervals);
    bar->addSeparator();
    bar->addActions(m_actions.list({Fit, OneToOne, ZoomIn, ZoomOut, Play}));
    bar->addSeparator();
    bar->addActions(m_actions.list({CopyImage, SaveImage, OpenElements, RemoveImage}));
    m_area->addActions(m_actions.list({ReadAgain, Watch, Fit, OneToOne, ZoomIn, ZoomOut, Play, CopyImage,
                                       SaveImage, OpenElements, RemoveImage}));
    new QlumNodeCommands(m_area, [this] {
        if (!m_current || m_current->feed()->source().nodeId.isNull())
            return QlumToolNodes();
        const QlumImageSource& source = m_current->feed()->source();
        return QlumToolNodes{{source.serverId, source.nodeId, OpcUa_NodeClass_Variable, {}, source.name}};
    });
    return bar;
}

// The nearest that there is.
void QlumImageView::setInterval(int milliseconds)
{
    const auto nearest = std::find_if(imageIntervals.begin(), imageIntervals.end() - 1,
                                      [milliseconds](int one) { return one >= milliseconds; });
    m_interval = *nearest;
    m_intervals->setCurrentIndex(m_intervals->findData(m_interval));
    for (QlumImageTile* tile : m_tiles)
        tile->feed()->setInterval(m_interval);
}

void QlumImageView::showCommands()
{
    const QlumImageFeed* feed = m_current ? m_current->feed() : nullptr;
    const bool hasNode = feed && !feed->source().nodeId.isNull();
    const bool hasImage = feed && !feed->image().isNull();
    m_actions[ReadAgain]->setEnabled(hasNode);
    m_actions[Watch]->setEnabled(hasNode);
    m_actions[Watch]->setChecked(hasNode && feed->source().isWatched);
    m_intervals->setEnabled(hasNode && feed->source().isWatched);
    for (const Command command : {Fit, OneToOne, ZoomIn, ZoomOut, CopyImage})
        m_actions[command]->setEnabled(hasImage);
    m_actions[Fit]->setChecked(hasImage && m_current->canvas()->isFitted());
    m_actions[Play]->setEnabled(hasImage && feed->shown().decoded.header.frames > 1);
    m_actions[Play]->setChecked(feed && feed->isPlaying());
    m_actions[SaveImage]->setEnabled(feed && !qlumImageBytes(feed->shown().bytes).empty());
    m_actions[OpenElements]->setEnabled(hasNode && feed->shown().elements.size() > 1);
    m_actions[RemoveImage]->setEnabled(m_current != nullptr);
}

void QlumImageView::run(Command command)
{
    if (!m_current)
        return;
    QlumImageFeed* feed = m_current->feed();
    QlumImageCanvas* canvas = m_current->canvas();
    switch (command) {
    case ReadAgain:
        feed->read();
        break;
    case Watch:
        feed->setWatched(m_actions[Watch]->isChecked());
        break;
    case Fit:
        canvas->fit();
        break;
    case OneToOne:
        canvas->setZoom(1);
        break;
    case ZoomIn:
        canvas->zoomIn();
        break;
    case ZoomOut:
        canvas->zoomOut();
        break;
    case Play:
        feed->setPlaying(m_actions[Play]->isChecked());
        break;
    case CopyImage:
        copyImage();
        break;
    case SaveImage:
        askWhereToSave();
        break;
    case OpenElements:
        openElements();
        break;
    case RemoveImage:
        removeTile(m_current);
        break;
    }
    showCommands();
}

// Programs that know the format get the bytes, all others the pixels.
void QlumImageView::copyImage()
{
    const QlumImageFeed& feed = *m_current->feed();
    const auto bytes = qlumImageBytes(feed.shown().bytes);
    const QString kind =
        qlumImageEnding(feed) == QLatin1String("jpg") ? QStringLiteral("jpeg") : qlumImageEnding(feed);
    auto* content = new QMimeData;
    content->setImageData(feed.image());
    content->setData(QStringLiteral("image/") + kind,
                     QByteArray(reinterpret_cast<const char*>(bytes.data()), static_cast<int>(bytes.size())));
    QGuiApplication::clipboard()->setMimeData(content);
}

void QlumImageView::askWhereToSave()
{
    const QString ending = qlumImageEnding(*m_current->feed());
    const QString path = QFileDialog::getSaveFileName(
        this, tr("Save Image"), QDir::home().filePath(proposedName(*m_current->feed())),
        tr("%1 files (*.%2);;All files (*)").arg(ending.toUpper(), ending));
    if (!path.isEmpty())
        saveAs(path);
}

void QlumImageView::saveAs(const QString& path)
{
    if (!m_current)
        return; // it was removed while a name was asked for
    const QString topic = QStringLiteral("save");
    const auto bytes = qlumImageBytes(m_current->feed()->shown().bytes);
    const auto size = static_cast<qint64>(bytes.size());
    QSaveFile file(path);
    const bool isWritten = file.open(QIODevice::WriteOnly) &&
                           file.write(reinterpret_cast<const char*>(bytes.data()), size) == size &&
                           file.commit();
    if (isWritten)
        return m_messages->dismiss(topic);
    m_messages->tell({QlumMessage::Error, topic, tr("%1 was not written.").arg(path), file.errorString(),
                      tr("&Save As..."), [this] {
                          if (m_current)
                              askWhereToSave();
                      }});
}

// The image that is there stays what it is; the others get a place each.
void QlumImageView::openElements()
{
    const QlumImageSource source = m_current->feed()->source();
    const QString shown = m_current->feed()->shown().element;
    for (const QString& element : m_current->feed()->shown().elements) {
        if (element == shown)
            continue;
        if (!hasRoom())
            return;
        QlumImageSource other = source;
        other.element = element;
        addTile(other)->feed()->begin();
    }
    m_current->feed()->setElement(shown); // which would else follow the first that there is
}
