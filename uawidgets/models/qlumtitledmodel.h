#pragma once
#include <QObject>
#include <QStringList>
#include <QVariant>

#include <utility>

/// What tables and trees have in common: columns with titles that do not change while the model lives. Base
/// is one of Qt's abstract models.
template <typename Base>
class QlumTitledModel : public Base
{
public:
    /// The title, for the display role of a column.
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role = Qt::DisplayRole) const override
    {
        const bool isTitle = orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0;
        return isTitle && section < titleCount() ? QVariant(m_titles.at(section)) : QVariant();
    }

protected:
    /// One title for each column, translated.
    QlumTitledModel(QStringList titles, QObject* parent) : Base(parent), m_titles(std::move(titles)) {}

    /// The number of columns.
    [[nodiscard]] int titleCount() const { return m_titles.size(); }

private:
    const QStringList m_titles;
};
