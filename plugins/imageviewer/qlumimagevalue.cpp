#include <plugins/imageviewer/qlumimagevalue.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumimageformat.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <uabase/values/uastatus.h>
#include <uawidgets/editors/qlumdatafield.h>
#include <uawidgets/editors/qlumvaluetype.h>

#include <QCoreApplication>

#include <span>

namespace {

class ImageValueText
{
    Q_DECLARE_TR_FUNCTIONS(QlumImageValue)
};
using Text = ImageValueText;

constexpr int mostLevels = 6;

struct Search
{
    QStringList found;
    int left = qlumMostImageParts;
};

// A field's name stands behind a dot, an element's place in brackets.
QString joined(const QString& path, const QString& part)
{
    return path.isEmpty() || part.startsWith(QLatin1Char('[')) ? path + part : path + QLatin1Char('.') + part;
}

void findImages(const UaVariant& value, const QlumValueContext& context, const QString& path, int levels,
                Search& search)
{
    for (const QString& name : qlumFieldsOf(value, context, search.left + 1)) {
        if (search.left == 0)
            return;
        --search.left;
        QlumValueContext partContext = context;
        const UaVariant part = qlumFieldOf(value, name, partContext);
        if (qlumIsImage(part, partContext.dataType))
            search.found.append(joined(path, name));
        else if (levels > 1)
            findImages(part, partContext, joined(path, name), levels - 1, search);
    }
}

bool hasParts(const UaVariant& value)
{
    return !value.isScalar() || value.type() == OpcUaType_ExtensionObject;
}

void refuse(QlumShownImage& shown, const QString& headline, const QString& hint)
{
    shown.headline = headline;
    shown.hint = hint;
}

// Why there are no bytes to decode.
void refuseValue(QlumShownImage& shown, const UaVariant& value, const QlumValueContext& context)
{
    const QString drop =
        Text::tr("Drop a variable of a data type ImageBMP, ImageGIF, ImageJPG or ImagePNG, or a ByteString "
                 "that holds one of these.");
    if (value.isEmpty())
        refuse(shown, Text::tr("The value is null."), Text::tr("The server has no image at the moment."));
    else if (value.type() == OpcUaType_ByteString && value.isScalar())
        refuse(shown, Text::tr("The value is an empty byte string."),
               Text::tr("The server has no image at the moment."));
    else if (hasParts(value))
        refuse(shown,
               Text::tr("None of the parts of this %1 is an image.").arg(qlumTypeTextOf(value, context)),
               drop);
    else
        refuse(shown, Text::tr("The value is no image but a %1.").arg(qlumTypeTextOf(value, context)), drop);
}

} // namespace

QlumShownImage qlumShowImageOf(const UaDataValue& value, const QlumValueContext& context,
                               const QString& element, const QlumImageCancelled& isCancelled,
                               qint64 mostMemory)
{
    QlumShownImage shown;
    const UaVariant& whole = value.value();
    if (value.statusCode().isBad()) {
        refuse(shown, Text::tr("The value is bad."), qlumResultInWords(UaStatus(value.statusCode().code())));
        return shown;
    }
    QlumValueContext partContext = context;
    UaVariant part = whole;
    if (hasParts(whole)) {
        Search search;
        findImages(whole, context, QString(), mostLevels, search);
        shown.elements = search.found;
        shown.hasMore = search.left == 0;
        shown.element = element.isEmpty() ? search.found.value(0) : element;
        part = shown.element.isEmpty() ? UaVariant() : qlumFieldOf(whole, shown.element, partContext);
    }
    const std::span<const unsigned char> bytes = qlumImageBytes(part);
    if (bytes.empty()) {
        if (shown.element.isEmpty())
            refuseValue(shown, whole, context);
        else
            refuse(shown, Text::tr("The element %1 holds no image now.").arg(shown.element),
                   Text::tr("Choose another one, or wait for the next value."));
        return shown;
    }
    shown.bytes = part;
    const QlumImageFormat declared = qlumDeclaredImageFormat(partContext.dataType);
    shown.typeName = declared == QlumImageFormat::None
                         ? qlumTypeNameOf(partContext.dataType, partContext)
                         : QStringLiteral("Image") + QLatin1String(qlumImageFormatName(declared));
    shown.decoded = qlumDecodeImage(bytes, declared, isCancelled, mostMemory);
    if (!shown.decoded.fault.isEmpty())
        refuse(shown, Text::tr("The image cannot be shown."), shown.decoded.fault);
    return shown;
}
