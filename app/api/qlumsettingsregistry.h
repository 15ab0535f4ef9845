#pragma once
#include <app/api/qlumsettings.h>

#include <QHash>
#include <QLatin1String>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <limits>
#include <shared_mutex>
#include <type_traits>
#include <utility>
#include <vector>

/// What the user reads about a setting.
struct QlumSettingText
{
    QString label;       ///< with its mnemonic and, before a field, its colon
    QString explanation; ///< what it is good for, in a sentence or two
};

/// One setting as the registry knows it. What it is made from is a QlumSetting, so that key, type and default
/// are not written again.
struct QlumSettingRow
{
    /// What field the setting has in the dialog.
    enum Kind {
        Unseen, ///< has a default, but no field
        Note,   ///< no setting but a line of text; the key is its object name
        Flag,   ///< yes or no
        Number, ///< a whole number
        Choice, ///< one of several texts
        Text,   ///< a line of text
        File    ///< the path of a file that is written
    };

    /// When a change is felt.
    enum Effect {
        AtOnce,     ///< or with what is done next
        AtConnect,  ///< when a server is connected the next time
        AtStart,    ///< when the program is started the next time
        InNewViews, ///< in views that are opened from then on
    };

    QString key;          ///< dotted
    QVariant standard;    ///< default and type; invalid when what is not set shall stay so
    Kind kind = Unseen;   ///< which field it has
    QlumSettingText text; ///< empty without a field
    double minimum = 0;   ///< of a number, with maximum
    double maximum = std::numeric_limits<int>::max(); ///< of a number
    QString unit;                                     ///< of a number, with the blank before it
    QStringList choices;                              ///< as they are stored, and shown without words
    QStringList words = {};                           ///< how the choices are shown
    Effect effect = AtOnce;                           ///< when a change is felt

    /// A default without a field.
    static QlumSettingRow unseen(const QString& key, const QVariant& standard);
    /// A line of text between the fields.
    static QlumSettingRow note(const QString& name, const QString& text);
    /// A check box.
    static QlumSettingRow flag(const QlumSetting<bool>& setting, const QlumSettingText& text);
    /// A flag that is neither yes nor no until the user has said so.
    static QlumSettingRow openFlag(const QString& key, const QlumSettingText& text);
    /// Whole numbers, whatever type they are stored in.
    template <typename T>
    requires std::is_arithmetic_v<T>
    static QlumSettingRow number(const QlumSetting<T>& setting, const QlumSettingText& text, double minimum,
                                 double maximum, const QString& unit = QString())
    {
        return {setting.key(), QVariant(setting.standard()), Number, text, minimum, maximum, unit, {}};
    }
    /// A choice among texts, shown as they are stored, or in as many words.
    static QlumSettingRow choice(const QlumSetting<QString>& setting, const QlumSettingText& text,
                                 const QStringList& choices, const QStringList& words = QStringList());
    /// A text of one line.
    static QlumSettingRow line(const QlumSetting<QString>& setting, const QlumSettingText& text);
    /// The path of a file; its default is known when the program runs.
    static QlumSettingRow file(const QString& key, const QString& standard, const QlumSettingText& text);
    /// The same row, whose changes are felt later.
    [[nodiscard]] QlumSettingRow felt(Effect when) const;
};

/// A page of the settings dialog.
struct QlumSettingsPage
{
    QString name;  ///< object name; a tool that adds to the page of another knows it by that
    QString title; ///< with its mnemonic
    std::vector<QlumSettingRow> rows; ///< from top to bottom
};

/// All settings that the user can change, or that have a default, by page. The application registers its own;
/// tools add theirs in init(), and the settings dialog is made from what is there when it opens.
class QlumSettingsRegistry
{
public:
    QlumSettingsRegistry();
    ~QlumSettingsRegistry();
    QlumSettingsRegistry(const QlumSettingsRegistry&) = delete;
    QlumSettingsRegistry& operator=(const QlumSettingsRegistry&) = delete;

    /// That of the running application, which was the first; null without one. GUI thread.
    [[nodiscard]] static QlumSettingsRegistry* instance() noexcept;

    /// Adds a page, or the rows to the end of the page of that name. A key that is there already keeps its
    /// row, and the log says so. GUI thread.
    void add(const QlumSettingsPage& page);
    /// In the order of registration; pages without a field are among them. GUI thread.
    [[nodiscard]] const std::vector<QlumSettingsPage>& pages() const { return m_pages; }
    /// The default of a key, invalid for none. Any thread.
    [[nodiscard]] QVariant standard(const QString& key) const;
    /// Whether a number is within the range of its key; so is whatever has none. Any thread.
    [[nodiscard]] bool isInRange(const QString& key, const QVariant& value) const;

private:
    bool takeKey(const QlumSettingRow& row);

    std::vector<QlumSettingsPage> m_pages;
    QHash<QString, QVariant> m_standards;
    QHash<QString, std::pair<double, double>> m_ranges; ///< of numbers
    mutable std::shared_mutex m_mutex;                  ///< of the defaults
};

/// Adds a page of a tool to the application's registry; does nothing where there is none, as in tests.
void qlumRegisterSettings(const QlumSettingsPage& page);
