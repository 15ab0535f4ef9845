#pragma once
#include <QString>

class QAbstractItemModel;
class QTableView;
class QWidget;

/// A table as the pages beside the values have it: whole rows are selected, and they are as low as their
/// text. It still wants qlumMakeTable().
[[nodiscard]] QTableView* qlumWorkTable(const char* name, const QString& accessibleName,
                                        QAbstractItemModel* model, QWidget* parent);
