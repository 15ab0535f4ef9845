#pragma once
#include <app/api/qlumsettingsregistry.h>

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QWidget>

#include <functional>
#include <vector>

class QFormLayout;
class QLineEdit;
class QlumSettingsModel;

/// The fields of one page of settings. Nothing is stored before store().
class QlumSettingsForm : public QWidget
{
    Q_OBJECT
public:
    QlumSettingsForm(QlumSettingsModel* settings, const QlumSettingsPage& page, QWidget* parent = nullptr);

    /// As the list of pages shows it.
    [[nodiscard]] QString title() const { return m_title; }
    /// Shows only what contains all of the words, in its label, its explanation or its key; false when that
    /// is nothing. No words show everything.
    bool search(const QStringList& words);
    void restoreDefaults();
    /// Gives the keyboard to the field; false when it is not here.
    bool focusField(const QString& key);
    /// What is wrong with what was entered, for the user; the field has the keyboard then.
    [[nodiscard]] QString focusFault();
    void store();
    /// The labels of the fields that were changed and whose changes are felt so.
    [[nodiscard]] QStringList changed(QlumSettingRow::Effect effect) const;

signals:
    void edited();

private:
    using Row = QlumSettingRow;

    struct Field
    {
        QString key;
        QWidget* widget;
        std::function<QVariant()> get;
        std::function<void(const QVariant&)> set;
        std::function<QString()> fault; ///< may be empty
        Row::Effect effect;
        QString label;
        QVariant initial;
    };
    /// What is shown and hidden together.
    struct Line
    {
        std::vector<QWidget*> widgets;
        QString text; ///< to be searched in
    };

    void addRow(QFormLayout* form, const Row& row);
    void addNote(QFormLayout* form, const Row& row);
    void addFlag(QFormLayout* form, const Row& row);
    void addNumber(QFormLayout* form, const Row& row);
    void addWideNumber(QFormLayout* form, const Row& row);
    void addChoice(QFormLayout* form, const Row& row);
    void addText(QFormLayout* form, const Row& row);
    void addFile(QFormLayout* form, const Row& row);
    void addField(const Row& row, QWidget* widget, std::function<QVariant()> get,
                  std::function<void(const QVariant&)> set, std::function<QString()> fault = {});
    void addLineField(const Row& row, QLineEdit* edit, std::function<QString()> fault = {});

    QlumSettingsModel* m_settings;
    QString m_title;
    std::vector<Field> m_fields;
    std::vector<Line> m_lines;
};

/// Why a trace cannot be written there, for the user; empty when it can.
[[nodiscard]] QString qlumTraceFileFault(const QString& file);
