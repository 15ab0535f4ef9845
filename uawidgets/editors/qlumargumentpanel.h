#pragma once
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlummethodarguments.h>

#include <QString>
#include <QWidget>

#include <vector>

class QLabel;
class QVBoxLayout;
class QlumValueWidget;

/// The arguments of a method, each with what is declared of it and an editor for its value.
class QlumArgumentPanel : public QWidget
{
    Q_OBJECT
public:
    /// Without arguments. The name is that of the panel and begins those of its editors.
    explicit QlumArgumentPanel(const QString& name, QWidget* parent = nullptr);

    /// Replaces all arguments; values that there are too few of are null.
    void setArguments(const QlumMethodArguments& arguments, const std::vector<UaVariant>& values,
                      bool isReadOnly);
    /// One more at the end, which is not declared.
    void addArgument(const QlumMethodArgument& argument, const UaVariant& value);
    /// Not while there is none.
    void removeLastArgument();
    /// How many there are.
    [[nodiscard]] int count() const { return static_cast<int>(m_rows.size()); }

    /// Why the argument cannot be sent, in words; empty when it can.
    [[nodiscard]] QString fault(int argument) const;
    /// Why the server will refuse it by its own data; empty for nothing.
    [[nodiscard]] QString refusal(int argument) const;
    /// What was declared of it.
    [[nodiscard]] const QlumMethodArgument& argument(int argument) const;
    /// What its editor holds; null where it holds nothing.
    [[nodiscard]] UaVariant value(int argument) const;
    /// The same of all.
    [[nodiscard]] std::vector<UaVariant> values() const;
    /// Replaces the value of an argument.
    void setValue(int argument, const UaVariant& value);
    /// Says below the editor what is wrong; empty for nothing.
    void setNote(int argument, const QString& note);
    /// Brings an argument into sight and its editor to the keys.
    void focusArgument(int argument);
    /// What is said while there is no argument; plain.
    void setEmptyText(const QString& text);

signals:
    /// The user changed one of the values.
    void edited();

private:
    struct Row
    {
        QlumMethodArgument argument;
        UaVariant given; ///< for an editor that holds nothing by itself
        QWidget* box = nullptr;
        QlumValueWidget* editor = nullptr;
        QLabel* note = nullptr;
    };

    void appendRow(const QlumMethodArgument& argument, const UaVariant& value, bool isReadOnly);
    [[nodiscard]] const Row& row(int argument) const { return m_rows.at(static_cast<std::size_t>(argument)); }
    void showNote(const Row& row, const QString& note);

    std::vector<Row> m_rows;
    QVBoxLayout* m_layout;
    QLabel* m_empty;
};
