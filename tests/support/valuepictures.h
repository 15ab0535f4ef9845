// Pictures of the windows in which values are edited, and of a method's.
#pragma once
#include <QString>
#include <QWidget>

#include <functional>

class QlumTavelin;

/// Keeps a picture of the widget under that name.
using TakePicture = std::function<void(QWidget& widget, const QString& name)>;

/// Opens editors of values of the demo server's, whose server has to be connected: empty, filled, and with
/// what they do not take; then a method, before and after its call.
void takeValues(const TakePicture& take, QlumTavelin& window);
