// Editors of large values: an array of a million numbers and a structure of 5,000 fields opened, paged and
// typed into, against plain Qt models with the same views.
#include <bench/budgets.h>
#include <opcua/opcua_builtintypes.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/structures/uatypedefinitionstore.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumarraypage.h>
#include <uawidgets/editors/qlumstructurepage.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluepage.h>

#include <QAbstractItemView>
#include <QAbstractTableModel>
#include <QApplication>
#include <QCoreApplication>
#include <QEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QLocale>
#include <QModelIndex>
#include <QScrollBar>
#include <QStandardItem>
#include <QStandardItemModel>
#include <QString>
#include <QTableView>
#include <QTreeView>
#include <QVariant>
#include <QWidget>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {
constexpr int elementCount = 1'000'000;
constexpr int fieldCount = 5000;
constexpr int pageRows = 60;
constexpr int rounds = 9;
const int pages = operations(100);
const int keys = operations(200);

// ms, and what the plain models took where that was measured
constexpr double openArrayLimit = 100 / 10.1;
constexpr double pageLimit = 16.7 / 1.35;
constexpr double openStructureLimit = 150 / 4.9;
constexpr double keyInArrayLimit = 2 / 0.047;
constexpr double keyInStructureLimit = 2 / 0.039;

class PlainNumbers : public QAbstractTableModel
{
public:
    explicit PlainNumbers(std::vector<double> numbers) : m_numbers(std::move(numbers)) {}
    int rowCount(const QModelIndex& parent) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(m_numbers.size());
    }
    int columnCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : 1; }
    Qt::ItemFlags flags(const QModelIndex& index) const override
    {
        return QAbstractTableModel::flags(index) | Qt::ItemIsEditable;
    }
    QVariant data(const QModelIndex& index, int role) const override
    {
        if (role == Qt::TextAlignmentRole)
            return int(Qt::AlignRight | Qt::AlignVCenter);
        if (role != Qt::DisplayRole && role != Qt::EditRole)
            return {};
        return QLocale::c().toString(m_numbers[static_cast<std::size_t>(index.row())], 'g',
                                     QLocale::FloatingPointShortest);
    }

private:
    const std::vector<double> m_numbers;
};

std::vector<double> numbers()
{
    std::vector<double> values;
    for (int i = 0; i < elementCount; ++i)
        values.push_back(i * 0.37);
    return values;
}

// With a range, so that there is something to check.
QlumValueContext contextOf(OpcUa_BuiltInType type, OpcUa_Int32 rank)
{
    QlumValueContext context;
    context.builtInType = type;
    context.dataType = UaNodeId(static_cast<OpcUa_UInt32>(type), 0);
    context.valueRank = rank;
    context.euRange = QlumValueRange{0, 1e12};
    return context;
}

QlumValueContext structureContext()
{
    auto store = std::make_shared<UaTypeDefinitionStore>();
    UaStructureDefinition definition(UaString("Recipe"), UaNodeId(5001, 2), UaNodeId(5101, 2));
    constexpr OpcUa_BuiltInType types[] = {OpcUaType_Double, OpcUaType_Int32, OpcUaType_String,
                                           OpcUaType_Boolean};
    for (int i = 0; i < fieldCount; ++i) {
        const OpcUa_BuiltInType type = types[i % 4];
        definition.addField(UaStructureField(UaString(("Field" + std::to_string(i)).c_str()),
                                             UaNodeId(static_cast<OpcUa_UInt32>(type), 0), type));
    }
    store->add(definition);
    QlumValueContext context = contextOf(OpcUaType_ExtensionObject, -1);
    context.dataType = definition.dataTypeId();
    context.dictionary = store;
    return context;
}

void show(QWidget& widget, int height)
{
    widget.resize(600, height);
    widget.show();
    QCoreApplication::processEvents();
}

double microseconds(const auto& work)
{
    const double begun = processCpu();
    work();
    return processCpu() - begun;
}

// A view of numbers as the page has it.
std::unique_ptr<QTableView> plainTable(PlainNumbers& model)
{
    auto view = std::make_unique<QTableView>();
    view->setWordWrap(false);
    view->setAlternatingRowColors(true);
    view->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    view->verticalHeader()->setDefaultSectionSize(view->fontMetrics().height() + 6);
    view->horizontalHeader()->setStretchLastSection(true);
    view->setModel(&model);
    return view;
}

int heightOf(const QTableView& view)
{
    return view.verticalHeader()->defaultSectionSize() * pageRows;
}

double pageTime(QTableView& view)
{
    QScrollBar* bar = view.verticalScrollBar();
    return microseconds([&] {
               for (int page = 1; page <= pages; ++page) {
                   bar->setValue(page * pageRows);
                   QCoreApplication::processEvents(); // paints
               }
           }) /
           pages;
}

// Keys into the cell, with what a window asks its page after each.
double keyTime(QAbstractItemView& view, const QModelIndex& cell, const QlumValuePage* page)
{
    view.setCurrentIndex(cell);
    view.edit(cell);
    auto* editor = view.findChild<QLineEdit*>();
    if (!editor)
        return 0;
    editor->clear();
    double total = 0;
    for (int key = 0; key < keys; ++key) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_1, Qt::NoModifier, QStringLiteral("1"));
        if (editor->text().size() > 6)
            editor->clear();
        total += microseconds([&] {
            QCoreApplication::sendEvent(editor, &press);
            if (page && (!page->isModified() || !page->fault().isEmpty() || !page->remark().isEmpty()))
                std::abort(); // another page than is measured here
            QCoreApplication::processEvents();
        });
    }
    return total / keys;
}

struct Times
{
    std::vector<double> open, page, key, commit;
};

void plainArray(PlainNumbers& model, Times& times)
{
    std::unique_ptr<QTableView> view;
    times.open.push_back(microseconds([&] {
        view = plainTable(model);
        show(*view, heightOf(*view));
    }));
    times.page.push_back(pageTime(*view));
    times.key.push_back(keyTime(*view, model.index(500'000, 0), nullptr));
}

void ourArray(const UaVariant& array, Times& times)
{
    std::unique_ptr<QlumArrayPage> page;
    times.open.push_back(microseconds([&] {
        page = std::make_unique<QlumArrayPage>(contextOf(OpcUaType_Double, 1));
        page->setValue(array);
        show(*page, heightOf(page->view()));
    }));
    page->view().setMinimumHeight(heightOf(page->view()));
    QCoreApplication::processEvents();
    times.page.push_back(pageTime(page->view()));
    times.key.push_back(keyTime(page->view(), page->model().index(500'000, 0), page.get()));
    times.commit.push_back(microseconds([&] {
        page->model().setData(page->model().index(500'001, 0), QStringLiteral("1.5"));
        QCoreApplication::processEvents();
    }));
}

void plainStructure(Times& times)
{
    std::unique_ptr<QTreeView> view;
    std::unique_ptr<QStandardItemModel> model;
    times.open.push_back(microseconds([&] {
        model = std::make_unique<QStandardItemModel>();
        for (int i = 0; i < fieldCount; ++i)
            model->appendRow({new QStandardItem(QStringLiteral("Field%1").arg(i)),
                              new QStandardItem(QString::number(i)),
                              new QStandardItem(QStringLiteral("Int32"))});
        view = std::make_unique<QTreeView>();
        view->setUniformRowHeights(true);
        view->setModel(model.get());
        show(*view, 600);
    }));
    times.key.push_back(keyTime(*view, model->index(2501, 1), nullptr));
}

void ourStructure(const UaVariant& value, const QlumValueContext& context, Times& times)
{
    std::unique_ptr<QlumStructurePage> page;
    times.open.push_back(microseconds([&] {
        page = std::make_unique<QlumStructurePage>(context);
        page->setValue(value);
        show(*page, 600);
    }));
    times.key.push_back(keyTime(page->view(), page->model().index(2501, 1), page.get()));
    times.commit.push_back(microseconds([&] {
        page->model().setData(page->model().index(2502, 1), QStringLiteral("text"));
        QCoreApplication::processEvents();
    }));
}
} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const std::vector<double> values = numbers();
    PlainNumbers plainModel(values);
    UaVariant array;
    const QlumValueContext context = structureContext();
    UaExtensionObject object;
    const UaGenericStructureValue structure(context.dictionary->structureDefinition(context.dataType));
    if (!OpcUa_IsGood(array.setArray(OpcUaType_Double, elementCount, values.data())) ||
        structure.encode(object).isBad())
        return 1;
    Times bareArray, ours, bareTree, tree;
    for (int round = 0; round < repetitions(rounds); ++round) {
        plainArray(plainModel, bareArray);
        ourArray(array, ours);
        plainStructure(bareTree);
        ourStructure(UaVariant(object), context, tree);
    }
    std::printf(
        "us, bare and ours: array opened %.0f %.0f, %d rows %.0f %.0f, a key %.0f %.0f, an edit %.0f\n",
        median(bareArray.open), median(ours.open), pageRows, median(bareArray.page), median(ours.page),
        median(bareArray.key), median(ours.key), median(ours.commit));
    std::printf("structure opened %.0f %.0f, a key %.0f %.0f, an edit %.0f\n", median(bareTree.open),
                median(tree.open), median(bareTree.key), median(tree.key), median(tree.commit));
    printRatio("valuepages_open_million", median(ours.open), median(bareArray.open), openArrayLimit);
    printRatio("valuepages_page_of_million", median(ours.page), median(bareArray.page), pageLimit);
    printRatio("valuepages_key_in_million", median(ours.key), median(bareArray.key), keyInArrayLimit);
    printRatio("valuepages_open_5000_fields", median(tree.open), median(bareTree.open), openStructureLimit);
    printRatio("valuepages_key_in_5000_fields", median(tree.key), median(bareTree.key), keyInStructureLimit);
    printRatio("valuepages_edit_of_million", median(ours.commit), median(bareArray.key), keyInArrayLimit);
    printRatio("valuepages_edit_of_5000_fields", median(tree.commit), median(bareTree.key),
               keyInStructureLimit);
    return 0;
}
