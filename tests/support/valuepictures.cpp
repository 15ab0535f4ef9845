#include <tests/support/valuepictures.h>

#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtoolservices.h>
#include <app/mainwindow/qlumtavelin.h>
#include <plugins/methods/qlummethoddialog.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumcontextreader.h>
#include <uawidgets/editors/qlumpagedbytes.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluedialog.h>

#include <QAbstractSpinBox>
#include <QEventLoop>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTimer>

#include <iterator>
#include <memory>
#include <stdexcept>
#include <vector>

namespace {
constexpr int editorMilliseconds = 400; // after which nothing moves any more

struct Node
{
    const char* name;
    OpcUa_UInt16 namespaceIndex;
    const char* id;

    [[nodiscard]] UaNodeId nodeId() const { return UaNodeId(UaString(id), namespaceIndex); }
};

constexpr Node nodes[] = {{"number", 2, "Scalar.Int32"},
                          {"analog", 2, "DataAccess.Temperature"},
                          {"text", 2, "Scalar.String"},
                          {"time", 2, "Scalar.DateTime"},
                          {"bytes", 2, "Scalar.ByteString"},
                          {"nodeid", 2, "Scalar.NodeId"},
                          {"localizedtext", 2, "Scalar.LocalizedText"},
                          {"names", 2, "DataAccess.Switch"},
                          {"status", 2, "Scalar.StatusCode"},
                          {"variant", 2, "Scalar.Variant"},
                          {"array", 2, "Array.Double"},
                          {"matrix", 2, "Matrix.Double"},
                          {"cube", 2, "Cube.Double"},
                          {"enumeration", 3, "Structure.Mode"},
                          {"optionset", 3, "Structure.DeviceFlags"},
                          {"structure", 3, "Structure.EveryType"},
                          {"optionalfields", 3, "Structure.SampleFull"},
                          {"union", 3, "Structure.MeasurementText"}};

void settle()
{
    QEventLoop loop;
    QTimer::singleShot(editorMilliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

// Into the value itself, where it is one line; what is wrong with the others is wrong with their text.
void enterNonsense(QlumValueDialog& dialog)
{
    for (auto* line : dialog.findChildren<QLineEdit*>())
        if (line->isVisible() && !line->isReadOnly() && !qobject_cast<QAbstractSpinBox*>(line->parent())) {
            line->setText(QStringLiteral("no value of this type"));
            emit line->textEdited(line->text());
            return;
        }
    auto* pages = dialog.findChild<QTabWidget*>(QStringLiteral("pages"));
    auto* text = dialog.findChild<QlumPagedBytes*>(QStringLiteral("json"));
    if (!pages || !text)
        throw std::runtime_error("an editor has no text");
    pages->setCurrentIndex(pages->count() - 1);
    text->replaceAll("{ \"Type\": 11, \"Body\": \"no value of this type\" ");
}

void takeEditor(const TakePicture& take, QWidget& window, const Node& node, const QlumValueContext& context,
                const UaVariant& value)
{
    const struct
    {
        const char* name;
        UaVariant shown;
        bool isWrong;
    } states[] = {{"empty", UaVariant(), false}, {"filled", value, false}, {"error", value, true}};
    for (const auto& state : states) {
        QlumValueDialog dialog(context, &window, QStringLiteral("QlumValuePictures"));
        dialog.setHeading(QStringLiteral("Demo: ") + QString::fromLatin1(node.id));
        dialog.setValue(state.shown);
        dialog.show();
        settle();
        if (state.isWrong)
            enterNonsense(dialog);
        settle();
        take(dialog, QStringLiteral("editor %1 %2").arg(node.name, state.name));
    }
}

void takeEditors(const TakePicture& take, QWidget& window, unsigned int serverId)
{
    const std::shared_ptr<QlumSessionServices> services = qlumApplicationServices()(serverId);
    if (!services)
        throw std::runtime_error("no session for the editors");
    std::vector<UaNodeId> ids;
    for (const Node& node : nodes)
        ids.push_back(node.nodeId());
    std::vector<QlumValueContext> contexts;
    UaDataValues values;
    QlumContextReader reader(services, {}, [] { return false; });
    if (!reader.read(ids, contexts, &values).isGood() || values.length() != std::size(nodes))
        throw std::runtime_error("the values for the editors cannot be read");
    for (std::size_t i = 0; i < std::size(nodes); ++i) {
        const UaVariant value(values[static_cast<OpcUa_UInt32>(i)].Value);
        reader.learn(value);
        contexts[i].browseNode = qlumNodeChoice(serverId);
        takeEditor(take, window, nodes[i], contexts[i], value);
    }
}

void takeMethod(const TakePicture& take, QWidget& window, unsigned int serverId)
{
    const UaNodeId object(UaString("Methods"), 2);
    if (!QlumToolServices::instance()->callMethod(serverId, object, UaNodeId(UaString("Methods.Mixed"), 2)))
        throw std::runtime_error("no method is offered");
    std::unique_ptr<QlumMethodDialog> dialog(window.findChild<QlumMethodDialog*>());
    for (int i = 0; i < 5; ++i) // until its arguments are there
        settle();
    take(*dialog, QStringLiteral("method"));
    dialog->sltCall();
    for (int i = 0; i < 3; ++i)
        settle();
    take(*dialog, QStringLiteral("method called"));
}
} // namespace

void takeValues(const TakePicture& take, QlumTavelin& window)
{
    if (window.projectServerIds().isEmpty())
        return;
    const unsigned int serverId = window.projectServerIds().first();
    takeEditors(take, window, serverId);
    takeMethod(take, window, serverId);
}
