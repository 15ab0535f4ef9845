#include <plugins/imageviewer/qlumimagetile.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumimageformat.h>
#include <plugins/imageviewer/qlumimagecanvas.h>
#include <plugins/imageviewer/qlumimagedecoder.h>
#include <plugins/imageviewer/qlumimagefacts.h>
#include <uawidgets/qlumformrow.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QAbstractItemView>
#include <QComboBox>
#include <QEvent>
#include <QFont>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QImage>
#include <QLabel>
#include <QMouseEvent>
#include <QObject>
#include <QPaintEvent>
#include <QPainter>
#include <QPalette>
#include <QPen>
#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QStringList>
#include <QVBoxLayout>

#include <utility>

namespace {
QLabel* makeImageLabel(const char* name)
{
    auto* label = new QLabel;
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setMinimumWidth(1); // a long text is no reason to make the tile wider
    return label;
}
} // namespace

QlumImageTile::QlumImageTile(std::unique_ptr<QlumImageFeed> feed, QWidget* parent)
    : QWidget(parent), m_feed(feed.release()), m_name(makeImageLabel("imageName")), m_elements(new QComboBox),
      m_pages(new QStackedWidget), m_canvas(new QlumImageCanvas), m_warning(new QLabel),
      m_remark(makeImageLabel("imageRemark")), m_line(makeImageLabel("imageLine")),
      m_pixel(makeImageLabel("imagePixel"))
{
    m_feed->setParent(this);
    setObjectName(QStringLiteral("imageTile"));
    qlumDescribeField(m_elements, {QStringLiteral("imageElement"),
                                   tr("Element"),
                                   tr("<b>Element</b><br>Which of the images in this value is shown."),
                                   {}});
    m_elements->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_elements->setMinimumContentsLength(8);
    m_remark->setWordWrap(true);
    m_line->setWordWrap(true);
    QFont bold = m_name->font();
    bold.setBold(true);
    m_name->setFont(bold);
    auto* top = new QHBoxLayout;
    top->addWidget(m_name, 1);
    top->addWidget(m_elements);
    constexpr int iconSide = 16;
    m_warning->setPixmap(qlumStatusIcon(QlumStatusLevel::Uncertain).pixmap(iconSide, iconSide));
    auto* remark = new QHBoxLayout;
    remark->addWidget(m_warning, 0, Qt::AlignTop);
    remark->addWidget(m_remark, 1);
    m_pages->addWidget(m_canvas);
    m_pages->addWidget(makeRefusal());
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->setSpacing(2);
    layout->addLayout(top);
    layout->addWidget(m_pages, 1);
    layout->addLayout(remark);
    layout->addWidget(m_line);
    layout->addWidget(m_pixel);
    setMinimumSize(180, 140);
    connect(m_feed, &QlumImageFeed::changed, this, &QlumImageTile::showAll);
    connect(m_feed, &QlumImageFeed::frameChanged, this, &QlumImageTile::showImage);
    connect(m_canvas, &QlumImageCanvas::pixelHovered, this, [this](const QString& text) {
        m_pixelText = text;
        showLine();
    });
    connect(m_canvas, &QlumImageCanvas::zoomChanged, this, &QlumImageTile::showLine);
    connect(m_elements, qOverload<int>(&QComboBox::activated), this, [this](int index) {
        emit chosen();
        m_feed->setElement(m_elements->itemText(index));
    });
    for (QWidget* part : findChildren<QWidget*>())
        part->installEventFilter(this);
    showAll();
}

QlumImageTile::~QlumImageTile() = default;

QWidget* QlumImageTile::makeRefusal()
{
    auto* page = new QWidget;
    m_headline = makeImageLabel("imageHeadline");
    m_headline->setWordWrap(true);
    QFont larger = m_headline->font();
    larger.setBold(true);
    m_headline->setFont(larger);
    m_hint = makeImageLabel("imageHint");
    m_hint->setWordWrap(true);
    m_bytes = new QPlainTextEdit;
    qlumDescribeField(m_bytes,
                      {QStringLiteral("imageFirstBytes"),
                       tr("First bytes"),
                       tr("<b>First bytes</b><br>What the value begins with, hexadecimal and as text."),
                       {}});
    m_bytes->setReadOnly(true);
    m_bytes->setAcceptDrops(false); // what is dropped is for the whole view
    m_bytes->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_bytes->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(m_headline);
    layout->addWidget(m_hint);
    layout->addWidget(m_bytes, 1);
    layout->addStretch(0);
    return page;
}

void QlumImageTile::setCurrent(bool isCurrent)
{
    m_isCurrent = isCurrent;
    update();
}

void QlumImageTile::paintEvent(QPaintEvent*)
{
    constexpr int line = 2;
    QPainter painter(this);
    painter.setPen(QPen(palette().color(m_isCurrent ? QPalette::Highlight : QPalette::Mid), line));
    painter.drawRect(rect().adjusted(1, 1, -1, -1));
}

bool QlumImageTile::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::FocusIn)
        emit chosen();
    return QWidget::eventFilter(watched, event);
}

void QlumImageTile::mousePressEvent(QMouseEvent* event)
{
    QWidget::mousePressEvent(event);
    emit chosen();
}

// ---- what is shown

void QlumImageTile::showAll()
{
    const QString name = m_feed->source().name.isEmpty() ? tr("Image") : m_feed->source().name;
    m_name->setText(qlumCutText(qlumSingleLine(name)));
    m_name->setToolTip(qlumPlainToolTip(name));
    showElements();
    showImage();
    QStringList remarks{m_feed->shown().decoded.remark};
    if (!m_feed->image().isNull())
        remarks.append(m_feed->trouble()); // else it stands in the image's place
    remarks.removeAll(QString());
    m_remark->setText(remarks.join(QLatin1Char(' ')));
    m_remark->setVisible(!remarks.isEmpty());
    m_warning->setVisible(!remarks.isEmpty());
}

void QlumImageTile::showImage()
{
    const bool isFirst = m_feed->frame() <= 1;
    m_canvas->setImage(m_feed->image(), isFirst ? m_feed->shown().decoded.overview : QImage());
    if (m_feed->image().isNull())
        showRefusal();
    else
        m_pages->setCurrentWidget(m_canvas);
    showLine();
}

void QlumImageTile::showElements()
{
    const QStringList& elements = m_feed->shown().elements;
    const QSignalBlocker quiet(m_elements);
    QStringList there;
    for (int i = 0; i < m_elements->count(); ++i)
        there.append(m_elements->itemText(i));
    if (there != elements && !m_elements->view()->isVisible()) {
        m_elements->clear();
        m_elements->addItems(elements);
    }
    m_elements->setCurrentIndex(m_elements->findText(m_feed->shown().element));
    m_elements->setVisible(!elements.isEmpty());
    m_elements->setToolTip(m_feed->shown().hasMore
                               ? tr("The first %1 parts of the value were looked at.").arg(qlumMostImageParts)
                               : tr("Which of the images in this value is shown"));
}

void QlumImageTile::showRefusal()
{
    const QlumShownImage& shown = m_feed->shown();
    const auto bytes = qlumImageBytes(shown.bytes);
    QString headline = shown.headline, hint = shown.hint;
    if (!m_feed->trouble().isEmpty()) {
        headline = m_feed->trouble();
        hint = shown.headline;
    } else if (headline.isEmpty()) {
        headline =
            m_feed->isReading() || m_feed->isDecoding() ? tr("Reading...") : tr("No value has come yet.");
    }
    m_headline->setText(headline);
    m_hint->setText(hint);
    m_hint->setVisible(!hint.isEmpty());
    m_bytes->setPlainText(qlumHexLines(bytes));
    m_bytes->setVisible(!bytes.empty());
    m_pages->setCurrentIndex(1);
}

void QlumImageTile::showLine()
{
    QString line = qlumImageLine(*m_feed);
    if (!m_feed->image().isNull())
        line += tr("  |  %1 %").arg(qRound(m_canvas->zoom() * 100));
    m_line->setText(line);
    m_line->setToolTip(qlumPlainToolTip(line));
    m_canvas->setAccessibleDescription(line);
    m_pixel->setText(m_pixelText);
    m_pixel->setVisible(!m_feed->image().isNull());
}
