// What a key costs in the editors of large values, against the same key in a bare text field that holds a
// page.
#include <bench/budgets.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumpagedbytes.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluedialog.h>

#include <QApplication>
#include <QComboBox>
#include <QCoreApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSettings>
#include <QString>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QWidget>

#include <cstdio>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace {
const int rounds = repetitions(41);
constexpr std::size_t large = 16 * 1024 * 1024;
constexpr int page = 16384;
// 2 ms each, where a key in the bare field took 0.63 ms
constexpr double limit = 3.2;

// A pair of keys, so that hexadecimal digits stay pairs; ms for one of them, with what it has repainted.
double key(QWidget* field, Qt::Key code, const QString& text)
{
    const double start = processCpu();
    for (int i = 0; i < 2; ++i) {
        QKeyEvent press(QEvent::KeyPress, code, Qt::NoModifier, text);
        QCoreApplication::sendEvent(field, &press);
        QCoreApplication::processEvents();
    }
    return (processCpu() - start) / 2e3;
}

struct Field
{
    std::unique_ptr<QWidget> window;
    QWidget* field = nullptr;
    std::vector<double> times;
};

Field bareField()
{
    Field bare;
    auto edit = std::make_unique<QPlainTextEdit>();
    QString text;
    while (text.size() < page)
        text += QStringLiteral("seventy characters of a text as people write it, again and again\n");
    edit->setPlainText(text);
    bare.field = edit.get();
    bare.window = std::move(edit);
    return bare;
}

Field editorFor(const UaVariant& value, bool asJson)
{
    QlumValueContext context;
    context.builtInType = value.type();
    context.maxStringLength = 1000; // so that there is something to check
    Field made;
    auto dialog = std::make_unique<QlumValueDialog>(context);
    dialog->setValue(value);
    QWidget* pages = dialog->findChild<QTabWidget*>("pages");
    if (asJson)
        static_cast<QTabWidget*>(pages)->setCurrentIndex(1);
    for (auto* edit : dialog->findChildren<QPlainTextEdit*>("text"))
        if ((edit->parentWidget()->objectName() == QLatin1String("json")) == asJson)
            made.field = edit;
    if (!made.field)
        made.field = dialog->findChild<QLineEdit*>("valueEditor");
    made.window = std::move(dialog);
    return made;
}

UaVariant bytes(std::size_t size)
{
    std::vector<OpcUa_Byte> content(size);
    for (std::size_t i = 0; i < size; ++i)
        content[i] = static_cast<OpcUa_Byte>(i * 7);
    return UaVariant(UaByteString(std::span<const OpcUa_Byte>(content)));
}

void show(Field& field)
{
    field.window->resize(700, 440);
    field.window->show();
    field.field->setFocus();
    QCoreApplication::processEvents();
}
} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir home; // the user's settings stay out of it
    qputenv("HOME", home.path().toLocal8Bit());
    QSettings::setDefaultFormat(QSettings::IniFormat);
    const QApplication application(argc, argv);
    Field bare = bareField();
    Field hex = editorFor(bytes(large), false);
    Field line = editorFor(UaVariant(UaString(std::string(1024 * 1024, 'x').c_str())), false);
    Field json = editorFor(bytes(large), true);
    Field text = editorFor(UaVariant(UaString(std::string(3000, 'y').c_str())), false);
    const std::vector<Field*> fields{&bare, &hex, &line, &json, &text};
    for (Field* field : fields)
        show(*field);
    for (int round = 0; round < rounds; ++round)
        for (Field* field : fields)
            field->times.push_back(key(field->field, Qt::Key_A, QStringLiteral("a")));
    const double yardstick = median(bare.times);
    std::printf(
        "a key, ms: bare field %.3f, 16 MB of bytes %.3f, 1 MB on a line %.3f, JSON of 16 MB %.3f, short "
        "text %.3f\n",
        yardstick, median(hex.times), median(line.times), median(json.times), median(text.times));
    printRatio("key_in_16mb_bytes_to_bare_field", median(hex.times), yardstick, limit);
    printRatio("key_in_1mb_line_to_bare_field", median(line.times), yardstick, limit);
    printRatio("key_in_16mb_json_to_bare_field", median(json.times), yardstick, limit);
    printRatio("key_in_short_text_to_bare_field", median(text.times), yardstick, limit);
    return 0;
}
