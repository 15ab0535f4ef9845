#include <uawidgets/table/qlumtable.h>

#include <app/api/qlumactiontable.h>
#include <uawidgets/qlumviewstate.h>
#include <uawidgets/table/qlumcolumnchooser.h>
#include <uawidgets/table/qlumcopy.h>
#include <uawidgets/table/qlumcsvexport.h>
#include <uawidgets/table/qlumemptytext.h>
#include <uawidgets/table/qlumtabletext.h>

#include <QAbstractItemView>
#include <QAction>
#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QHeaderView>
#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QProgressDialog>

#define TEXT(text) QT_TRANSLATE_NOOP("QlumTable", text)

namespace {
constexpr int patienceMilliseconds = 1000; // before the progress is shown

constexpr QlumActionRow exportRows[] = {
    {0, "exportCsv", TEXT("E&xport..."), "", qlumNoKey, TEXT("Export the rows as comma separated values"),
     TEXT("<b>Export</b><br>Writes the rows and columns that are shown to a file of comma separated values, "
          "for spreadsheets.")},
};

QString translated(const char* text)
{
    return QCoreApplication::translate("QlumTable", text);
}

void showFailure(QAbstractItemView* view, const QString& path, const QString& error)
{
    auto* box = new QMessageBox(
        QMessageBox::Warning, translated(TEXT("Export")),
        translated(TEXT("'%1' cannot be written: %2")).arg(QDir::toNativeSeparators(path), error),
        QMessageBox::Ok, view);
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}
} // namespace

void qlumMakeTable(QAbstractItemView* view, const QlumTableOptions& options)
{
    if (!options.copiesItself)
        qlumAddCopyActions(view);
    QAction* action = QlumActionTable(exportRows, "QlumTable", view)[0];
    QObject::connect(action, &QAction::triggered, view,
                     [view, name = options.fileName] { qlumExportCsv(view, name); });
    view->addAction(action);
    QHeaderView* header = qlumColumnHeader(view);
    if (header && !header->isHidden()) {
        if (options.state)
            options.state->keep(header, options.stateKey);
        new QlumColumnChooser(view);
    }
    if (!options.emptyText.isEmpty())
        new QlumEmptyText(view, options.emptyText);
}

void qlumExportCsv(QAbstractItemView* view, const QString& fileName)
{
    const QPointer<QAbstractItemView> stillThere = view;
    const QString path = QFileDialog::getSaveFileName(
        view, translated(TEXT("Export")), QDir::home().filePath(fileName + QStringLiteral(".csv")),
        translated(TEXT("Comma separated values (*.csv);;All files (*)")));
    if (path.isEmpty() || !stillThere || !view->model())
        return;
    auto* progress = new QProgressDialog(translated(TEXT("Writing rows...")), translated(TEXT("Cancel")), 0,
                                         view->model()->rowCount(), view);
    progress->setObjectName(QStringLiteral("exportProgress"));
    progress->setMinimumDuration(patienceMilliseconds);
    progress->setAutoReset(false);
    progress->setAttribute(Qt::WA_DeleteOnClose);
    auto* writer = new QlumCsvExport(view->model(), qlumShownColumns(view), path, progress);
    QObject::connect(writer, &QlumCsvExport::progressed, progress,
                     [progress](int rows) { progress->setValue(qMin(rows, progress->maximum())); });
    QObject::connect(progress, &QProgressDialog::canceled, writer, &QlumCsvExport::cancel);
    QObject::connect(writer, &QlumCsvExport::finished, view,
                     [view, progress, path](bool, const QString& error) {
                         progress->deleteLater();
                         if (!error.isEmpty())
                             showFailure(view, path, error);
                     });
    writer->start();
}
