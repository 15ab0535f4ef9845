#pragma once
#include <uawidgets/qlumbasewidget.h>

#include <QWidget>

/// Versions of the program and its parts, and the way to the licenses.
class QlumAboutDialog : public QlumBaseWidget
{
    Q_OBJECT
public:
    explicit QlumAboutDialog(QWidget* parent = nullptr);

private:
    void sltOpenLicenseFolder();
};
