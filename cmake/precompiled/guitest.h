// What most tests of widgets and models need; not <QTest>, which asks which modules a target links.
#pragma once
#include <cmake/precompiled/qt.h>
#include <cmake/precompiled/test.h>

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QHeaderView>
#include <QMimeData>
#include <QStandardPaths>
#include <QTabWidget>
#include <QTableView>
#include <QTemporaryDir>
#include <QTimer>
