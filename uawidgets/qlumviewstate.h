#pragma once
#include <QObject>
#include <QPointer>
#include <QString>

#include <vector>

class QHeaderView;
class QSplitter;

/// Keeps what the user arranged in a view (column widths, sort order, splitters) in one settings group:
/// restores it when a widget is added and stores it when the program quits, when store() is called and when
/// the keeper goes. A view makes it before its widgets, or deletes it in its destructor: children go in the
/// order of their making.
class QlumViewState : public QObject
{
    Q_OBJECT
public:
    /// The parent is the view, or null for a keeper that the view deletes itself.
    QlumViewState(const QString& settingsGroup, QObject* parent);
    ~QlumViewState() override;

    /// Call when the header's model is set; the state of another number of columns is ignored by Qt.
    void keep(QHeaderView* header, const QString& key);
    /// Call when all the splitter's widgets are in it.
    void keep(QSplitter* splitter, const QString& key);
    /// Stores now; also done when the program is about to quit.
    void store();

private:
    template <typename W>
    struct Kept
    {
        QPointer<W> widget;
        QString key;
    };

    QString m_group;
    std::vector<Kept<QHeaderView>> m_headers;
    std::vector<Kept<QSplitter>> m_splitters;
};
