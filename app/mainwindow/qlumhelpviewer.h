#pragma once
#include <QUrl>
#include <QWidget>

class QTextBrowser;
class QlumHelpContents;

/// Window of the manual; its pages are part of the program.
class QlumHelpViewer : public QWidget
{
    Q_OBJECT
public:
    explicit QlumHelpViewer(QWidget* parent = nullptr);

    /// Brings the window to the front, with the first page when it was not open.
    void showContents();
    /// Brings the window to the front with this page.
    void showPageInFront(const QUrl& page);
    void showPage(const QUrl& page);
    [[nodiscard]] QTextBrowser* browser() const { return m_browser; }

private:
    void bringToFront();

    QlumHelpContents* m_contents;
    QTextBrowser* m_browser;
};
