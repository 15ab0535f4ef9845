// The tools that are part of the program. The order of these lines is the order of loading, of event delivery
// and of the groups in project files. A tool that is not written yet is a row in plugins/planned.
#include <plugins/attributes/qlumattributeplugin.h>
#include <plugins/dataaccess/qlumdaplugin.h>
#include <plugins/datalogger/qlumdataloggerplugin.h>
#include <plugins/events/qlumeventplugin.h>
#include <plugins/gds/qlumgdsplugin.h>
#include <plugins/history/qlumhistoryplugin.h>
#include <plugins/imageviewer/qlumimageviewerplugin.h>
#include <plugins/methods/qlummethodplugin.h>
#include <plugins/performance/qlumperformanceplugin.h>
#include <plugins/references/qlumreferenceplugin.h>
#include <plugins/serverdiagnostics/qlumserverdiagnosticplugin.h>

#include <QtPlugin>

Q_IMPORT_PLUGIN(QlumDevicesPlugin)
Q_IMPORT_PLUGIN(QlumAttributePlugin)
Q_IMPORT_PLUGIN(QlumReferencePlugin)
Q_IMPORT_PLUGIN(QlumDaPlugin)
Q_IMPORT_PLUGIN(QlumHistoryPlugin)
Q_IMPORT_PLUGIN(QlumEventPlugin)
Q_IMPORT_PLUGIN(QlumMethodPlugin)
Q_IMPORT_PLUGIN(QlumPerformancePlugin)
Q_IMPORT_PLUGIN(QlumImageViewerPlugin)
Q_IMPORT_PLUGIN(QlumServerDiagnosticPlugin)
Q_IMPORT_PLUGIN(QlumDataLoggerPlugin)
Q_IMPORT_PLUGIN(QlumGDSPlugin)
