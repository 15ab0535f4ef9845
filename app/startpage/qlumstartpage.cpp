#include <app/startpage/qlumstartpage.h>

#include <app/api/qlumdocumenttypes.h>
#include <app/api/qlumjob.h>
#include <app/ini/qluminicheck.h>
#include <app/ini/qluminitext.h>

#include <QAbstractButton>
#include <QBoxLayout>
#include <QCommandLinkButton>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QFont>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QResizeEvent>
#include <QScrollArea>
#include <QSizePolicy>
#include <QToolButton>
#include <QVBoxLayout>

#include <string_view>

namespace {
constexpr int serversNamed = 3;
constexpr int projectsShown = 8;

QLabel* heading(const QString& text, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
    return label;
}

QCommandLinkButton* linkButton(const QString& name, const QString& text, const QString& description,
                               QWidget* parent)
{
    // texts of projects and servers have no mnemonics
    auto* button = new QCommandLinkButton(QString(text).replace(QLatin1Char('&'), QLatin1String("&&")),
                                          description, parent);
    button->setObjectName(name);
    button->setAccessibleName(text);
    button->setAccessibleDescription(description);
    button->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    return button;
}

QString describe(const QString& file, const QStringList& servers)
{
    const QString folder = QDir::toNativeSeparators(QFileInfo(file).absolutePath());
    return servers.isEmpty() ? folder : folder + QLatin1Char('\n') + servers.join(QStringLiteral(", "));
}
} // namespace

QString qlumDemoProject()
{
    // beside the folder of the program, or where ./run made it
    for (const char* place : {"/../demo/demo.uap", "/../../demo/demo.uap"})
        if (const QFileInfo file(QCoreApplication::applicationDirPath() + QLatin1String(place));
            file.isFile())
            return file.canonicalFilePath();
    return {};
}

QStringList qlumServersOfProject(const QString& file, int maximum)
{
    const QlumIniCheck check = qlumCheckIniFile(file);
    if (!check.readable)
        return {};
    const QlumIniText text = qlumReadIni(
        std::string_view(check.content.constData(), static_cast<std::size_t>(check.content.size())));
    QStringList names;
    for (auto entry = text.entries.cbegin(); entry != text.entries.cend(); ++entry) {
        const QStringList path = entry.key().split(QLatin1Char('/'));
        if (path.size() != 3 || path.first() != QLatin1String("Servers") ||
            path.last() != QLatin1String("Name") || entry->isEmpty())
            continue;
        if (names.size() == maximum)
            return names << QStringLiteral("...");
        names << entry->first();
    }
    return names;
}

QlumStartPage::QlumStartPage(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("startPage"));
    setWhatsThis(
        tr("<b>Start Page</b><br>Ways to begin: a server, a project, the demo, or one of the tools. It goes "
           "when the project has a server, and is no part of the project."));
    setAccessibleName(tr("Start page"));
    setAutoFillBackground(true); // it may lie above a document
    auto* content = new QWidget;
    content->setObjectName(QStringLiteral("startPageContent"));
    auto* left = new QVBoxLayout;
    left->addWidget(makeSteps());
    left->addWidget(makeRecent());
    left->addStretch();
    m_columns = new QHBoxLayout(content);
    m_columns->setSpacing(fontMetrics().height() * 2);
    m_columns->addLayout(left, 2);
    m_columns->addWidget(makeTools(), 3);

    auto* area = new QScrollArea(this);
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setWidget(content);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(area);
}

// Beside docks there is often no room for two columns that can be read.
void QlumStartPage::resizeEvent(QResizeEvent* event)
{
    constexpr int columnsFrom = 100; // characters
    const bool isNarrow = width() < columnsFrom * fontMetrics().averageCharWidth();
    m_columns->setDirection(isNarrow ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    QWidget::resizeEvent(event);
}

QWidget* QlumStartPage::makeSteps()
{
    auto* box = new QWidget(this);
    auto* layout = new QVBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(heading(tr("Begin"), box));
    auto* add = linkButton(QStringLiteral("startAddServer"), tr("Add a Server"),
                           tr("Its address, security and user are asked for."), box);
    auto* open = linkButton(QStringLiteral("startOpenProject"), tr("Open a Project"),
                            tr("Servers and views as they were saved."), box);
    auto* demo = linkButton(QStringLiteral("startDemo"), tr("Look at the Demo"),
                            tr("A project with live values, alarms and history."), box);
    connect(add, &QAbstractButton::clicked, this, &QlumStartPage::addServerWanted);
    connect(open, &QAbstractButton::clicked, this, &QlumStartPage::openProjectWanted);
    connect(demo, &QAbstractButton::clicked, this, [this] { emit projectWanted(m_demoFile); });
    layout->addWidget(add);
    layout->addWidget(open);
    layout->addWidget(demo);
    demo->hide();
    m_demo = demo;
    return box;
}

QWidget* QlumStartPage::makeRecent()
{
    auto* box = new QWidget(this);
    m_recent = new QVBoxLayout(box);
    m_recent->setContentsMargins(0, 0, 0, 0);
    m_recent->addWidget(heading(tr("Recent Projects"), box));
    m_noRecent = new QLabel(tr("No project has been saved or opened yet."), box);
    m_noRecent->setWordWrap(true);
    m_recent->addWidget(m_noRecent);
    return box;
}

QWidget* QlumStartPage::makeTools()
{
    auto* box = new QWidget(this);
    m_tools = new QVBoxLayout(box);
    m_tools->setContentsMargins(0, 0, 0, 0);
    m_tools->addWidget(heading(tr("Views"), box));
    m_tools->addStretch();
    return box;
}

void QlumStartPage::setTools(const QList<Tool>& tools)
{
    for (const Tool& tool : tools) {
        auto* row = new QWidget(this);
        auto* layout = new QHBoxLayout(row);
        layout->setContentsMargins(0, 0, 0, 0);
        auto* text = new QLabel(tool.description, row);
        text->setObjectName(QStringLiteral("startTool"));
        text->setTextFormat(Qt::RichText);
        text->setWordWrap(true);
        auto* open = new QToolButton(row);
        open->setObjectName(QStringLiteral("startDocument"));
        open->setText(tr("Open"));
        open->setFocusPolicy(Qt::StrongFocus);
        open->setAccessibleName(tr("Open %1").arg(qlumDocumentTypeName(tool.type)));
        connect(open, &QAbstractButton::clicked, this,
                [this, type = tool.type] { emit documentWanted(type); });
        layout->addWidget(text, 1);
        layout->addWidget(open, 0, Qt::AlignTop);
        m_tools->insertWidget(m_tools->count() - 1, row); // before the stretch
    }
}

void QlumStartPage::setDemoProject(const QString& file)
{
    m_demoFile = file;
    m_demo->setVisible(!file.isEmpty());
}

void QlumStartPage::setRecentProjects(const QStringList& files)
{
    if (files == m_files)
        return;
    m_files = files;
    m_pool.cancelAll();
    qDeleteAll(m_recent->parentWidget()->findChildren<QCommandLinkButton*>());
    m_noRecent->setVisible(files.isEmpty());
    for (const QString& file : files.mid(0, projectsShown))
        addRecent(file);
}

void QlumStartPage::addRecent(const QString& file)
{
    auto* button = linkButton(QStringLiteral("startRecent"), QFileInfo(file).completeBaseName(),
                              describe(file, {}), this);
    connect(button, &QAbstractButton::clicked, this, [this, file] { emit projectWanted(file); });
    m_recent->addWidget(button);
    m_pool.add({}, [file, guard = QPointer<QCommandLinkButton>(button)](QlumJob& job) {
        const QStringList servers = qlumServersOfProject(file, serversNamed);
        job.post([guard, text = describe(file, servers)] {
            if (!guard)
                return;
            guard->setDescription(text);
            guard->setAccessibleDescription(text);
            guard->updateGeometry();
        });
    });
}
