#include <plugins/attributes/qlumcomparisonwindow.h>

#include <app/api/qlumdisplaytext.h>
#include <uawidgets/qlumformrow.h>
#include <uawidgets/table/qlumtable.h>

#include <QAbstractItemView>
#include <QCheckBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFont>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

// ---- model

QlumComparisonModel::QlumComparisonModel(const QString& left, const QString& right, QObject* parent)
    : QlumTableModel({tr("Attribute"), left, right}, parent)
{
}

QVariant QlumComparisonModel::cell(const QlumComparedRow& row, int column, int role) const
{
    const std::optional<QString>& side = column == LeftColumn ? row.left : row.right;
    const QString text = column == NameColumn ? row.path : side.value_or(tr("(absent)"));
    switch (role) {
    case Qt::DisplayRole:
        return qlumCutText(qlumSingleLine(text));
    case Qt::EditRole:
        return text;
    case Qt::ToolTipRole:
        return qlumPlainToolTip(qlumCutText(text));
    case Qt::FontRole: {
        QFont font;
        font.setBold(true);
        return row.differs() ? font : QVariant();
    }
    default:
        return {};
    }
}

// ---- window

QlumComparisonWindow::QlumComparisonWindow(const Node& left, const Node& right, QWidget* parent)
    : QlumBaseWidget(QStringLiteral("QlumComparisonWindow"), parent, Qt::Window),
      m_rows(qlumCompareRows(left.rows, right.rows)),
      m_model(new QlumComparisonModel(left.name, right.name, this)), m_summary(new QLabel(this))
{
    setObjectName(QStringLiteral("comparison"));
    setWindowTitle(tr("Compare Nodes"));
    auto* only = new QCheckBox(tr("&Differences only"), this);
    qlumDescribeField(only, {QStringLiteral("differencesOnly"), tr("Differences only"), QString(),
                             tr("Hides what is the same in both nodes")});
    m_summary->setObjectName(QStringLiteral("comparisonSummary"));
    auto* table = new QTreeView(this);
    table->setObjectName(QStringLiteral("comparisonTable"));
    table->setAccessibleName(tr("Attributes of both nodes"));
    table->setRootIsDecorated(false);
    table->setUniformRowHeights(true);
    table->setAlternatingRowColors(true);
    table->setSelectionMode(QAbstractItemView::ExtendedSelection);
    table->setContextMenuPolicy(Qt::ActionsContextMenu);
    table->setModel(m_model);
    QlumTableOptions options;
    options.emptyText = tr("The nodes do not differ.");
    options.fileName = QStringLiteral("comparison");
    qlumMakeTable(table, options);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(only, &QCheckBox::toggled, this, &QlumComparisonWindow::showRows);
    auto* head = new QHBoxLayout;
    head->addWidget(m_summary, 1);
    head->addWidget(only);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(head);
    layout->addWidget(table, 1);
    layout->addWidget(buttons);
    constexpr int width = 800, height = 520, nameWidth = 240, sideWidth = 260;
    resize(width, height);
    table->header()->resizeSection(QlumComparisonModel::NameColumn, nameWidth);
    table->header()->resizeSection(QlumComparisonModel::LeftColumn, sideWidth);
    showRows(false);
}

void QlumComparisonWindow::showRows(bool differencesOnly)
{
    std::deque<QlumComparedRow> differing;
    std::copy_if(m_rows.begin(), m_rows.end(), std::back_inserter(differing),
                 [](const QlumComparedRow& row) { return row.differs(); });
    m_summary->setText(tr("%1 of %2 rows differ.").arg(differing.size()).arg(m_rows.size()));
    m_model->setRows(differencesOnly ? std::move(differing) : m_rows);
}
