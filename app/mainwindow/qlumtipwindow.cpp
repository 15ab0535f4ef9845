#include <app/mainwindow/qlumtipwindow.h>

#include <QCheckBox>
#include <QDialog>
#include <QFile>
#include <QHBoxLayout>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QRandomGenerator>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTextStream>
#include <QVBoxLayout>
#include <QWidget>

namespace {
const auto showTipKey = QStringLiteral("QlumTipWindow/ShowTip");
const auto englishFile = QStringLiteral("tips_en.txt");
constexpr int maximumTips = 1000;
constexpr qint64 maximumLine = 4096;

// A language may be there without tips.
QString tipFileName(const QString& wanted)
{
    if (!wanted.isEmpty())
        return wanted;
    // the working directory is seldom that of the installation
    for (const QString& file : {QlumTipWindow::tr("tips_en.txt"), englishFile})
        for (const QString& path : {file, QStringLiteral(":/tips/") + file})
            if (QFile::exists(path))
                return path;
    return englishFile;
}
} // namespace

QlumTipWindow::QlumTipWindow(QWidget* parent, const QString& tipFile)
    : QlumBaseWidget(QStringLiteral("QlumTipWindow"), parent), m_text(new QLabel(this)),
      m_showAtStart(new QCheckBox(tr("&Show tips at start-up"), this))
{
    setWindowTitle(tr("Tip of the day"));
    makeWidgets();
    m_showAtStart->setChecked(QSettings().value(showTipKey, true).toBool());

    QFile file(tipFileName(tipFile));
    m_fileRead = file.open(QIODevice::ReadOnly | QIODevice::Text);
    if (m_fileRead) {
        QTextStream stream(&file);
        stream.setCodec("UTF-8");
        m_tips = readTips(stream);
    }
    if (m_tips.isEmpty())
        m_text->setText(tr("Tip file is missing."));
    else
        showTip(static_cast<int>(QRandomGenerator::global()->bounded(static_cast<quint32>(m_tips.size()))));
}

QlumTipWindow::~QlumTipWindow()
{
    QSettings().setValue(showTipKey, m_showAtStart->isChecked());
}

void QlumTipWindow::makeWidgets()
{
    auto* picture = new QLabel(this);
    picture->setPixmap(QPixmap(QStringLiteral(":/images/bulb_128x128.png")));
    picture->setAlignment(Qt::AlignTop);
    m_text->setObjectName(QStringLiteral("tip"));
    m_text->setAccessibleName(tr("Tip"));
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    m_text->setMinimumWidth(fontMetrics().averageCharWidth() * 50);
    m_showAtStart->setObjectName(QStringLiteral("showAtStart"));

    auto* previous = new QPushButton(tr("&Previous Tip"), this);
    previous->setObjectName(QStringLiteral("previous"));
    auto* next = new QPushButton(tr("&Next Tip"), this);
    next->setObjectName(QStringLiteral("next"));
    auto* close = new QPushButton(tr("&Close"), this);
    close->setObjectName(QStringLiteral("close"));
    close->setDefault(true);
    connect(previous, &QPushButton::clicked, this, &QlumTipWindow::sltPrevious);
    connect(next, &QPushButton::clicked, this, &QlumTipWindow::sltNext);
    connect(close, &QPushButton::clicked, this, &QDialog::accept);

    auto* top = new QHBoxLayout;
    top->addWidget(picture);
    top->addWidget(m_text, 1);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(m_showAtStart);
    bottom->addStretch();
    bottom->addWidget(previous);
    bottom->addWidget(next);
    bottom->addWidget(close);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top, 1);
    layout->addLayout(bottom);
}

QStringList QlumTipWindow::readTips(QTextStream& stream)
{
    QStringList tips;
    QString tip;
    QString line;
    while (tips.size() < maximumTips && stream.readLineInto(&line, maximumLine)) {
        if (!line.isEmpty()) {
            tip += line;
        } else if (!tip.isEmpty()) {
            tips.append(tip);
            tip.clear();
        }
    }
    return tips;
}

bool QlumTipWindow::showAtStart() const
{
    return m_showAtStart->isChecked();
}

QString QlumTipWindow::currentText() const
{
    return m_text->text();
}

void QlumTipWindow::showTip(int index)
{
    m_index = index;
    m_text->setText(m_tips.at(index));
}

void QlumTipWindow::sltNext()
{
    if (!m_tips.isEmpty())
        showTip((m_index + 1) % m_tips.size());
}

void QlumTipWindow::sltPrevious()
{
    if (!m_tips.isEmpty())
        showTip((m_index + m_tips.size() - 1) % m_tips.size());
}
