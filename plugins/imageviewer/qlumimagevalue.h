// From a value of a variable to the image in it.
#pragma once
#include <plugins/imageviewer/qlumimagedecoder.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>

#include <QString>
#include <QStringList>

/// What a value has to show.
struct QlumShownImage
{
    QString element;          ///< path of the part that is shown; empty for the value itself
    QStringList elements;     ///< paths of the parts that hold images; empty when the value is none of many
    bool hasMore = false;     ///< parts than were looked at
    QString typeName;         ///< of the part that is shown
    UaVariant bytes;          ///< as they were received; a ByteString, or null when there are none
    QlumDecodedImage decoded; ///< what came of them
    QString headline;         ///< why there is no image, in a sentence; empty when there is one
    QString hint;             ///< and what can be done
};

/// Parts of a value that are looked at for images.
inline constexpr int qlumMostImageParts = 2000;

/// Finds the image and decodes it. Of an array or structure the element that is asked for; when there is no
/// such element, or none is asked for, the first that holds an image.
[[nodiscard]] QlumShownImage qlumShowImageOf(const UaDataValue& value, const QlumValueContext& context,
                                             const QString& element, const QlumImageCancelled& isCancelled,
                                             qint64 mostMemory = qlumMostImageMemory);
