// Draws all editors on a sheet, empty, filled and with what they do not take, to be looked at:
//     editorsheet FILE.png [--dark]      QT_SCALE_FACTOR=2 for large screens, QT_QPA_PLATFORM=offscreen for
//     none
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/structures/uatypedefinitionstore.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uadiagnosticinfo.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uaguid.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluedialog.h>
#include <uawidgets/editors/qlumvaluewidget.h>

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QApplication>
#include <QColor>
#include <QComboBox>
#include <QDir>
#include <QGridLayout>
#include <QLineEdit>
#include <QModelIndex>
#include <QPalette>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QStyleFactory>
#include <QTemporaryDir>
#include <QTreeView>
#include <QWidget>

#include <cstdio>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace {
struct Sample
{
    QString name;
    QlumValueContext context;
    UaVariant filled;
    QString wrong; // typed into the editor's text; empty for what cannot be wrong
};

QlumValueContext place(OpcUa_BuiltInType type)
{
    QlumValueContext context;
    context.builtInType = type;
    context.dataType = UaNodeId(type);
    context.valueRank = -1;
    return context;
}

std::shared_ptr<UaTypeDefinitionStore> definitions()
{
    auto store = std::make_shared<UaTypeDefinitionStore>();
    UaEnumDefinition states(UaString("State"), UaNodeId(3000, 2));
    states.addValue(0, UaString("Stopped"));
    states.addValue(1, UaString("Running"));
    store->add(states);
    for (const auto& [id, type] : {std::pair{3001u, OpcUaType_UInt16}, {3002u, OpcUaType_ExtensionObject}}) {
        UaOptionSetDefinition rights(UaString("Rights"), UaNodeId(id, 2), type);
        rights.addBit(0, UaString("Read"));
        rights.addBit(1, UaString("Write"));
        rights.addBit(5, UaString("Browse"));
        rights.setBinaryEncodingId(UaNodeId(id + 100, 2));
        store->add(rights);
    }
    return store;
}

UaByteString bytes(const std::string& text)
{
    return UaByteString(std::span(reinterpret_cast<const OpcUa_Byte*>(text.data()), text.size()));
}

void addNumbers(std::vector<Sample>& samples)
{
    samples.push_back({"Boolean", place(OpcUaType_Boolean), UaVariant(true), {}});
    samples.push_back({"Int16", place(OpcUaType_Int16), UaVariant(OpcUa_Int16{-300}), "40000"});
    samples.push_back({"UInt64", place(OpcUaType_UInt64), UaVariant(OpcUa_UInt64{1} << 63), "-1"});
    QlumValueContext temperature = place(OpcUaType_Double);
    temperature.euRange = QlumValueRange{0, 100};
    temperature.unit = QString::fromUtf8("\xC2\xB0"
                                         "C");
    samples.push_back({"Double, outside its range", temperature, UaVariant(21.5), "120"});
    samples.push_back({"Float", place(OpcUaType_Float), UaVariant(0.1f), "1e99"});
    QlumValueContext any = place(OpcUaType_Null);
    any.dataType = UaNodeId(24);
    any.valueRank = -2;
    samples.push_back({"Variant", any, UaVariant(OpcUa_UInt32{7}), "x"});
}

void addNamed(std::vector<Sample>& samples)
{
    QlumValueContext state = place(OpcUaType_Int32);
    state.dictionary = definitions();
    state.dataType = UaNodeId(3000, 2);
    samples.push_back({"Enumeration", state, UaVariant(OpcUa_Int32{1}), "7"});
    QlumValueContext rights = state;
    rights.builtInType = OpcUaType_UInt16;
    rights.dataType = UaNodeId(3001, 2);
    samples.push_back({"Option set", rights, UaVariant(OpcUa_UInt16{0x23}), "Fly"});
    samples.push_back({"StatusCode", place(OpcUaType_StatusCode),
                       UaVariant(UaStatusCode(OpcUa_BadNotWritable)), "BadLuck"});
}

void addTexts(std::vector<Sample>& samples)
{
    QlumValueContext text = place(OpcUaType_String);
    text.maxStringLength = 12;
    samples.push_back({"String", text, UaVariant("two\nlines"), "longer than the server takes"});
    UaVariant xml;
    xml.setXmlElement(bytes("<a>text</a>"));
    samples.push_back({"XmlElement", place(OpcUaType_XmlElement), xml, {}});
    samples.push_back({"LocalizedText", place(OpcUaType_LocalizedText),
                       UaVariant(UaLocalizedText(UaString("de-DE"), UaString("Kessel"))), "?"});
    samples.push_back({"QualifiedName", place(OpcUaType_QualifiedName),
                       UaVariant(UaQualifiedName(UaString("Boiler"), 2)), "70000:Boiler"});
    std::string content;
    for (int i = 0; i < 5000; ++i)
        content += static_cast<char>(i * 7);
    samples.push_back({"ByteString", place(OpcUaType_ByteString), UaVariant(bytes(content)), "0q"});
}

void addIds(std::vector<Sample>& samples)
{
    samples.push_back({"DateTime",
                       place(OpcUaType_DateTime),
                       UaVariant(UaDateTime::fromString("2026-11-21T10:15:30.1234567Z")),
                       {}});
    samples.push_back({"Guid", place(OpcUaType_Guid),
                       UaVariant(UaGuid::fromString("72962b91-fa75-4ae6-8d28-b404dc7daf63")), "7296"});
    QlumValueContext node = place(OpcUaType_NodeId);
    node.browseNode = [](QWidget*, const UaNodeId&) { return UaNodeId(85); };
    samples.push_back({"NodeId", node, UaVariant(UaNodeId(UaString("Boiler"), 2)), "ns=2"});
    node.builtInType = OpcUaType_ExpandedNodeId;
    node.dataType = UaNodeId(OpcUaType_ExpandedNodeId);
    samples.push_back({"ExpandedNodeId", node,
                       UaVariant(UaExpandedNodeId(UaNodeId(1, 0), UaString("urn:plant"), 1)), "svr=x;i=1"});
}

void addShown(std::vector<Sample>& samples)
{
    UaVariant value;
    value.setDataValue(UaDataValue(UaVariant(1.5), OpcUa_UncertainLastUsableValue,
                                   UaDateTime::fromString("2026-11-21T10:15:30Z"),
                                   UaDateTime::fromString("2026-11-21T10:15:31Z")));
    samples.push_back({"DataValue", place(OpcUaType_DataValue), value, {}});
    UaVariant diagnosis;
    diagnosis.setDiagnosticInfo(UaDiagnosticInfo());
    samples.push_back({"DiagnosticInfo", place(OpcUaType_DiagnosticInfo), diagnosis, {}});
    samples.push_back(
        {"Structure without definition",
         place(OpcUaType_ExtensionObject),
         UaVariant(UaExtensionObject(UaExpandedNodeId(UaNodeId(77, 2)), bytes("\x01\x02 body"))),
         {}});
}

UaStructureField field(const char* name, UaNodeId type, OpcUa_BuiltInType builtIn, OpcUa_Int32 rank = -1,
                       bool isOptional = false)
{
    return UaStructureField(UaString(name), type, builtIn, rank, isOptional);
}

std::shared_ptr<UaTypeDefinitionStore> recipes()
{
    std::shared_ptr<UaTypeDefinitionStore> store = definitions();
    UaStructureDefinition limits(UaString("Limits"), UaNodeId(5001, 2), UaNodeId(5101, 2));
    limits.addField(field("Low", UaNodeId(OpcUaType_Double), OpcUaType_Double));
    limits.addField(field("High", UaNodeId(OpcUaType_Double), OpcUaType_Double));
    store->add(limits);
    UaStructureDefinition recipe(UaString("Recipe"), UaNodeId(5002, 2), UaNodeId(5102, 2));
    recipe.addField(field("Name", UaNodeId(OpcUaType_String), OpcUaType_String));
    recipe.addField(field("Limits", limits.dataTypeId(), OpcUaType_ExtensionObject));
    recipe.addField(field("Note", UaNodeId(OpcUaType_String), OpcUaType_String, -1, true));
    recipe.addField(field("State", UaNodeId(3000, 2), OpcUaType_Int32));
    recipe.addField(field("Rights", UaNodeId(3001, 2), OpcUaType_UInt16));
    recipe.addField(field("Amount", UaNodeId(26), OpcUaType_Variant));
    recipe.addField(field("Steps", limits.dataTypeId(), OpcUaType_ExtensionObject, 1));
    store->add(recipe);
    return store;
}

void addParts(std::vector<Sample>& samples)
{
    QlumValueContext array = place(OpcUaType_Double);
    array.valueRank = 1;
    array.arrayDimensions = {4};
    std::vector<UaVariant> numbers;
    for (int i = 0; i < 24; ++i)
        numbers.emplace_back(i * 1.25);
    UaVariant value;
    if (OpcUa_IsGood(value.setArray(OpcUaType_Double, numbers)))
        samples.push_back({"Array, longer than declared", array, value, "1,5x"});
    array.valueRank = 3;
    array.arrayDimensions = {2, 3, 4};
    if (OpcUa_IsGood(value.setDimensions(std::vector<OpcUa_Int32>{2, 3, 4})))
        samples.push_back({"Matrix", array, value, "1e999"});
    QlumValueContext recipe = place(OpcUaType_ExtensionObject);
    recipe.dictionary = recipes();
    recipe.dataType = UaNodeId(5002, 2);
    UaGenericStructureValue fields(recipe.dictionary->structureDefinition(recipe.dataType),
                                   recipe.dictionary.get());
    UaExtensionObject object;
    if (fields.setField(UaString("Name"), UaVariant("Lacquer")).isGood() &&
        fields.setField(UaString("Rights"), UaVariant(OpcUa_UInt16{3})).isGood() &&
        fields.encode(object).isGood())
        samples.push_back({"Structure", recipe, UaVariant(object), "longer than the server takes"});
}

QWidget* make(const Sample& sample, const UaVariant& value, QWidget* parent)
{
    auto* dialog = new QlumValueDialog(sample.context, parent);
    dialog->setWindowFlags(Qt::Widget);
    dialog->setHeading(sample.name);
    dialog->setValue(value);
    for (QTreeView* fields : dialog->findChildren<QTreeView*>())
        fields->expandToDepth(1);
    const bool hasParts = dialog->findChild<QAbstractItemView*>() != nullptr;
    dialog->setFixedSize(640, hasParts ? 420 : 320);
    return dialog;
}

// Into the first part that a cell can edit.
bool enterPart(const QWidget& editor, const QString& text)
{
    const QRegularExpression names("^(array|matrix|structure)View$");
    QAbstractItemView* const view = editor.findChildren<QAbstractItemView*>(names).value(0);
    if (!view)
        return false;
    const QAbstractItemModel& model = *view->model();
    for (int column = 0; column < model.columnCount(); ++column)
        if (const QModelIndex cell = model.index(0, column); model.flags(cell) & Qt::ItemIsEditable) {
            view->setCurrentIndex(cell);
            view->edit(cell);
            break;
        }
    if (auto* line = view->findChild<QLineEdit*>("valueEditor")) {
        line->clear();
        line->insert(text);
    }
    return true;
}

// As typed; the first text of the editor is the value's.
void enter(const QWidget& editor, const QString& text)
{
    if (enterPart(editor, text))
        return;
    if (auto* locale = editor.findChild<QLineEdit*>("locale")) {
        locale->insert(text);
        return;
    }
    if (auto* names = editor.findChild<QComboBox*>("valueEditor"))
        return names->setEditText(text);
    if (auto* line = editor.findChild<QLineEdit*>("valueEditor"))
        return line->setText(text);
    if (auto* number = editor.findChild<QLineEdit*>("number")) {
        number->clear();
        number->insert(text);
        emit number->textEdited(text);
        return;
    }
    if (auto* field = editor.findChild<QPlainTextEdit*>("text"))
        field->setPlainText(text);
}

void makeDark()
{
    QPalette palette(QColor(53, 53, 53), QColor(35, 35, 35));
    palette.setColor(QPalette::Base, QColor(30, 30, 30));
    palette.setColor(QPalette::AlternateBase, QColor(45, 45, 45));
    palette.setColor(QPalette::Highlight, QColor(42, 130, 218));
    for (const auto role :
         {QPalette::Text, QPalette::WindowText, QPalette::ButtonText, QPalette::ToolTipText})
        palette.setColor(role, Qt::white);
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, Qt::gray);
    palette.setColor(QPalette::PlaceholderText, Qt::gray);
    QApplication::setPalette(palette);
}
} // namespace

int main(int argc, char** argv)
{
    const QTemporaryDir home; // the user's settings stay out of it
    qputenv("HOME", home.path().toLocal8Bit());
    QSettings::setDefaultFormat(QSettings::IniFormat);
    const QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    Q_INIT_RESOURCE(uawidgets);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 2) {
        std::puts("usage: editorsheet FILE.png [--dark]");
        return 2;
    }
    if (arguments.contains("--dark"))
        makeDark();
    std::vector<Sample> samples;
    addNumbers(samples);
    addNamed(samples);
    addTexts(samples);
    addIds(samples);
    addShown(samples);
    addParts(samples);
    QWidget sheet;
    auto* grid = new QGridLayout(&sheet);
    // in two columns: pictures must not become too high for those who look at them
    const int half = (static_cast<int>(samples.size()) + 1) / 2;
    for (int i = 0; i < static_cast<int>(samples.size()); ++i) {
        const Sample& sample = samples[static_cast<std::size_t>(i)];
        const int row = i % half;
        const int column = i / half * 3;
        grid->addWidget(make(sample, UaVariant(), &sheet), row, column);
        grid->addWidget(make(sample, sample.filled, &sheet), row, column + 1);
        if (sample.wrong.isEmpty())
            continue;
        QWidget* wrong = make(sample, sample.filled, &sheet);
        enter(*wrong->findChild<QlumValueWidget*>(), sample.wrong);
        grid->addWidget(wrong, row, column + 2);
    }
    sheet.show();
    return sheet.grab().save(arguments.at(1)) ? 0 : 1;
}
