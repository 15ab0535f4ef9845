#include <app/palette/qlumcommandpalette.h>

#include <app/palette/qlumlettermatch.h>

#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QList>
#include <QObject>
#include <QTreeWidget>
#include <QTreeWidgetItem>
#include <QVBoxLayout>
#include <QWidget>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

namespace {
constexpr int entryRole = Qt::UserRole;
constexpr int onlyInDetail = -10000;
constexpr int notNow = -100000;

std::optional<int> scoreOf(const QString& letters, const QlumPaletteEntry& entry)
{
    std::optional<int> score = qlumLetterMatch(letters, entry.text);
    if (!score)
        if (score = qlumLetterMatch(letters, entry.detail); score)
            *score += onlyInDetail;
    if (score && !entry.isEnabled)
        *score += notNow;
    return score;
}

bool isForTheList(const QKeyEvent& event)
{
    switch (event.key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        return true;
    default:
        return false;
    }
}
} // namespace

QlumCommandPalette::QlumCommandPalette(std::vector<QlumPaletteEntry> entries, QWidget* parent)
    : QDialog(parent), m_entries(std::move(entries)), m_line(new QLineEdit(this)),
      m_list(new QTreeWidget(this)), m_count(new QLabel(this))
{
    setWindowTitle(tr("Command Palette"));
    setObjectName(QStringLiteral("commandPalette"));
    makeWidgets();
    connect(m_line, &QLineEdit::textChanged, this, &QlumCommandPalette::fill);
    connect(m_line, &QLineEdit::returnPressed, this, &QlumCommandPalette::choose);
    connect(m_list, &QTreeWidget::itemActivated, this, &QlumCommandPalette::choose);
    connect(m_list, &QTreeWidget::itemClicked, this, &QlumCommandPalette::choose);
    fill({});
    m_line->setFocus();
    resize(fontMetrics().averageCharWidth() * 90, fontMetrics().height() * 24);
}

void QlumCommandPalette::makeWidgets()
{
    m_line->setObjectName(QStringLiteral("letters"));
    m_line->setAccessibleName(tr("Letters of what is looked for"));
    m_line->setPlaceholderText(tr("A few letters of a command, server, setting, project or node"));
    m_line->setMaxLength(100);
    m_line->installEventFilter(this);
    m_list->setObjectName(QStringLiteral("found"));
    m_list->setAccessibleName(tr("What was found"));
    m_list->setHeaderHidden(true);
    m_list->setColumnCount(3);
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setAllColumnsShowFocus(true);
    m_list->header()->setStretchLastSection(false);
    m_list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_list->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    m_list->header()->setSectionResizeMode(2, QHeaderView::ResizeToContents);
    m_count->setObjectName(QStringLiteral("count"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_line);
    layout->addWidget(m_list, 1);
    layout->addWidget(m_count);
}

void QlumCommandPalette::fill(const QString& letters)
{
    std::vector<std::pair<int, std::size_t>> found; // the better the smaller, then as they came
    for (std::size_t i = 0; i < m_entries.size(); ++i)
        if (const std::optional<int> score = scoreOf(letters, m_entries[i]))
            found.emplace_back(-*score, i);
    const std::size_t shown = std::min<std::size_t>(found.size(), maximumShown);
    std::partial_sort(found.begin(), found.begin() + static_cast<std::ptrdiff_t>(shown), found.end());

    m_list->clear();
    QList<QTreeWidgetItem*> items;
    for (std::size_t i = 0; i < shown; ++i) {
        const QlumPaletteEntry& entry = m_entries[found[i].second];
        auto* item = new QTreeWidgetItem({entry.text, entry.detail, entry.kind});
        item->setIcon(0, entry.icon);
        item->setToolTip(0, entry.text.toHtmlEscaped());
        item->setData(0, entryRole, static_cast<qulonglong>(found[i].second));
        item->setDisabled(!entry.isEnabled);
        items.append(item);
    }
    m_list->addTopLevelItems(items);
    m_list->setCurrentItem(m_list->topLevelItem(0));
    if (found.empty())
        m_count->setText(tr("Nothing has these letters in this order."));
    else if (shown < found.size())
        m_count->setText(tr("%1 of %2 are shown.").arg(shown).arg(found.size()));
    else
        m_count->setText(tr("%1 found.").arg(found.size()));
}

void QlumCommandPalette::choose()
{
    const QTreeWidgetItem* item = m_list->currentItem();
    if (!item || item->isDisabled())
        return;
    m_chosen = m_entries.at(item->data(0, entryRole).toULongLong()).run;
    accept();
}

bool QlumCommandPalette::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_line && event->type() == QEvent::KeyPress &&
        isForTheList(*static_cast<QKeyEvent*>(event))) {
        QApplication::sendEvent(m_list, event);
        return true;
    }
    return QDialog::eventFilter(watched, event);
}
