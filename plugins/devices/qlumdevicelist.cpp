#include <plugins/devices/qlumdevicelist.h>

#include <app/api/qlumdisplaytext.h>
#include <uawidgets/qlumviewstate.h>
#include <uawidgets/table/qlumtable.h>

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QObject>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>
#include <QWidget>

#include <initializer_list>
#include <utility>

QVariant QlumDeviceListModel::cell(const QlumDeviceListRow& row, int column, int role) const
{
    if (role == Qt::DisplayRole)
        return row.texts.value(column);
    if (role == Qt::ToolTipRole)
        return qlumPlainToolTip(row.texts.value(column));
    const bool isStatus = row.level && column == row.texts.size() - 1;
    return isStatus ? qlumStatusCell(*row.level, role) : QVariant();
}

QTableView* qlumMakeDeviceTable(QAbstractItemModel* model, const QString& name, const QString& accessibleName,
                                const QString& emptyText, QlumViewState* state,
                                std::initializer_list<int> widths)
{
    auto* view = new QTableView;
    view->setObjectName(name);
    view->setAccessibleName(accessibleName);
    view->setModel(model);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->verticalHeader()->hide();
    view->verticalHeader()->setDefaultSectionSize(view->fontMetrics().height() + 6);
    view->setTabKeyNavigation(false);
    view->setWordWrap(false);
    view->horizontalHeader()->setStretchLastSection(true);
    view->horizontalHeader()->setDefaultSectionSize(view->fontMetrics().averageCharWidth() * 22);
    int column = 0;
    for (const int width : widths)
        view->setColumnWidth(column++, view->fontMetrics().averageCharWidth() * width);
    qlumMakeTable(view, {emptyText, name, state, name});
    return view;
}

// ---- differences

QlumDifferenceTableModel::QlumDifferenceTableModel(std::vector<QlumParameterDifference> differences,
                                                   const QString& title, QObject* parent)
    : QlumTableModel({tr("Parameter"), tr("The device has"), title, tr("Remark")}, parent)
{
    reset({differences.begin(), differences.end()});
}

QVariant QlumDifferenceTableModel::cell(const QlumParameterDifference& row, int column, int role) const
{
    if (role == Qt::CheckStateRole && column == Name)
        return row.isWanted ? Qt::Checked : Qt::Unchecked;
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
        return {};
    const QString texts[] = {row.name, row.now, row.then, row.remark};
    return role == Qt::ToolTipRole ? qlumPlainToolTip(texts[column]) : texts[column];
}

Qt::ItemFlags QlumDifferenceTableModel::flags(const QModelIndex& index) const
{
    const Qt::ItemFlags all = QlumTableModel::flags(index);
    const bool isCheckable = index.isValid() && index.column() == Name && rowAt(index).isPossible;
    return isCheckable ? all | Qt::ItemIsUserCheckable : all;
}

bool QlumDifferenceTableModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::CheckStateRole || !(flags(index) & Qt::ItemIsUserCheckable))
        return false;
    change(index.row(), [&](QlumParameterDifference& row) { row.isWanted = value.toInt() == Qt::Checked; });
    return true;
}

QlumDeviceDifferenceDialog::QlumDeviceDifferenceDialog(const QString& heading, const QString& otherTitle,
                                                       std::vector<QlumParameterDifference> differences,
                                                       const QStringList& remarks, QWidget* parent)
    : QDialog(parent), m_model(new QlumDifferenceTableModel(std::move(differences), otherTitle, this))
{
    setObjectName(QStringLiteral("deviceDifferences"));
    setWindowTitle(tr("Differences"));
    const auto plain = [](const QString& text) {
        auto* label = new QLabel(text);
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        return label;
    };
    auto* table = qlumMakeDeviceTable(m_model, QStringLiteral("deviceDifferenceTable"), tr("Differences"),
                                      tr("There is no difference."), nullptr, {24, 18, 18});
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    QPushButton* const take = buttons->addButton(tr("&Take Over"), QDialogButtonBox::AcceptRole);
    take->setObjectName(QStringLiteral("deviceDifferencesTake"));
    take->setToolTip(tr("Marks the chosen values as changed; they are written with the command Write"));
    take->setEnabled(m_model->rowCount() > 0);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(plain(heading));
    layout->addWidget(table, 1);
    if (!remarks.isEmpty())
        layout->addWidget(plain(remarks.join(QLatin1Char('\n'))));
    layout->addWidget(buttons);
    resize(fontMetrics().averageCharWidth() * 110, fontMetrics().height() * 24);
}

std::vector<QlumParameterDifference> QlumDeviceDifferenceDialog::wanted() const
{
    std::vector<QlumParameterDifference> chosen;
    for (const QlumParameterDifference& row : m_model->rows())
        if (row.isWanted && row.isPossible)
            chosen.push_back(row);
    return chosen;
}
