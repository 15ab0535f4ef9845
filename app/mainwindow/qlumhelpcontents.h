#pragma once
#include <QString>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QUrl>
#include <QWidget>

#include <memory>

class QHelpEngine;

/// Contents, index and search of the manual, from the file that the build makes of its pages in the program's
/// language. Without that file it stays empty; the pages themselves are part of the program.
class QlumHelpContents : public QTabWidget
{
    Q_OBJECT
public:
    explicit QlumHelpContents(QWidget* parent = nullptr);
    ~QlumHelpContents() override;

    /// Reads the file when that was not done yet, the English one when the other is damaged; false when there
    /// is none.
    bool load();

signals:
    /// A page was chosen.
    void pageChosen(const QUrl& page);

private:
    void makeContents();
    void makeIndex();
    void makeSearch();
    static void nameSearch(const QWidget& query, const QWidget& result);
    void choose(const QUrl& page);

    /// The catalogue is made anew each time: it is small, and nothing of an older version is left over.
    QTemporaryDir m_folder;
    std::unique_ptr<QHelpEngine> m_engine;
};
