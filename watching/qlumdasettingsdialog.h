#pragma once
#include <uawidgets/qlumbasewidget.h>
#include <watching/qlumwatchsettings.h>

#include <QSet>
#include <QString>
#include <QWidget>

#include <optional>

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;

/// How rows are watched, with what the server has made of it beside. Of several rows only what the user
/// touches is changed in all.
class QlumDaSettingsDialog : public QlumBaseWidget
{
    Q_OBJECT
public:
    /// What servers have revised; nothing for the settings of a view.
    struct Revised
    {
        double publishing = 0; ///< ms; 0: not known
        double sampling = 0;   ///< ms
        quint32 queue = 0;     ///< values
        quint32 lifetime = 0;  ///< publishing intervals
        quint32 keepAlive = 0; ///< publishing intervals
    };

    /// The heading says whose settings they are.
    QlumDaSettingsDialog(const QString& heading, const QlumDataSettings& settings,
                         const std::optional<Revised>& revised, QWidget* parent = nullptr);

    /// Offers an index range, too.
    void setIndexRange(const QString& range);
    /// For who cannot read instead of watching.
    void offerNoReading();
    /// What the user has touched, put into other settings.
    [[nodiscard]] QlumDataSettings applied(QlumDataSettings settings) const;
    /// Nothing when the user left it alone.
    [[nodiscard]] std::optional<QString> indexRange() const;
    /// The rows shall have those of the view.
    [[nodiscard]] bool isAsView() const;

private:
    void makeTimes(QFormLayout* form, const QlumDataSettings& settings,
                   const std::optional<Revised>& revised);
    void makeFilter(QFormLayout* form, const QlumDataSettings& settings);
    void makeRest(QFormLayout* form, const QlumDataSettings& settings, const std::optional<Revised>& revised);
    void makeRowsOwn(QFormLayout* form, bool isOfRows);
    void checkRange();
    void addInterval(QFormLayout* form, QDoubleSpinBox* field, const char* name, const QString& label,
                     const QString& explanation, double value, QLabel* revised);
    void touch(const QWidget* field);
    [[nodiscard]] bool isTouched(const QWidget* field) const { return m_touched.contains(field); }
    [[nodiscard]] QLabel* revisedLabel(const QString& text, bool isOther);

    QDoubleSpinBox* m_publishing;
    QDoubleSpinBox* m_sampling;
    QSpinBox* m_queue;
    QCheckBox* m_discardOldest;
    QComboBox* m_deadband;
    QDoubleSpinBox* m_deadbandValue;
    QComboBox* m_trigger;
    QComboBox* m_timestamps;
    QComboBox* m_mode;
    QSpinBox* m_priority;
    QSpinBox* m_lifetime;
    QDoubleSpinBox* m_read;
    QLineEdit* m_indexRange;
    QLabel* m_rangeFault;
    QPushButton* m_ok = nullptr;
    QCheckBox* m_asView;
    QFormLayout* m_form;
    QSet<const QWidget*> m_touched;
};
