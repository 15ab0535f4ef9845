// The widgets behind qlumCreateValueEditor().
#pragma once
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumnumbertext.h>
#include <uawidgets/editors/qlumvaluechecks.h>
#include <uawidgets/editors/qlumvaluecontext.h>

#include <QComboBox>
#include <QDateTime>
#include <QDateTimeEdit>
#include <QLineEdit>
#include <QObject>
#include <QString>
#include <QWheelEvent>
#include <QWidget>

#include <functional>

class QAction;

/// What a cell is asked to edit, and what is known of it.
struct QlumCellValue
{
    UaVariant value;                         ///< null for one that is still to be given
    OpcUa_BuiltInType type = OpcUaType_Null; ///< of the value, or of what is to be given
    QlumValueContext context;
    UaEnumDefinition enumeration;
    UaOptionSetDefinition optionSet;
};

/// Each editor knows the value that it started with.
class QlumCellEditor
{
public:
    explicit QlumCellEditor(const QlumCellValue& cell) : m_cell(cell) {}
    virtual ~QlumCellEditor() = default;
    QlumCellEditor(const QlumCellEditor&) = delete;
    QlumCellEditor& operator=(const QlumCellEditor&) = delete;

    /// What is entered; false for what is no value, or none yet.
    [[nodiscard]] virtual bool read(UaVariant& value) const = 0;
    virtual void enter(const UaVariant& value) = 0;
    [[nodiscard]] virtual QString fault() const { return {}; }
    virtual void setBase(QlumNumberBase) {}
    virtual void setReadOnly(bool readOnly) = 0;
    virtual void onEdited(QObject* receiver, const std::function<void()>& edited) = 0;

    [[nodiscard]] const QlumCellValue& cell() const { return m_cell; }
    /// A value that differs from the first one.
    [[nodiscard]] bool readChange(UaVariant& value) const;
    [[nodiscard]] QlumValueCheck check() const;

private:
    const QlumCellValue m_cell;
};

/// Shows on a line what is wrong with its text: an icon, a tool tip, and a word for screen readers.
class QlumFaultMark
{
public:
    explicit QlumFaultMark(QLineEdit* line);
    void show(const QString& fault, const QlumValueCheck& check, const QString& otherwise);

private:
    QLineEdit* m_line;
    QAction* m_mark;
};

class QlumBoolCell final : public QComboBox, public QlumCellEditor
{
public:
    QlumBoolCell(const QlumCellValue& cell, QWidget* parent);
    bool read(UaVariant& value) const override;
    void enter(const UaVariant& value) override;
    void setReadOnly(bool readOnly) override { setEnabled(!readOnly); }
    void onEdited(QObject* receiver, const std::function<void()>& edited) override;
};

/// Numbers with names: enumerations and status codes. The names can be chosen or typed, numbers typed.
class QlumNamesCell final : public QComboBox, public QlumCellEditor
{
public:
    QlumNamesCell(const QlumCellValue& cell, QWidget* parent);
    bool read(UaVariant& value) const override;
    void enter(const UaVariant& value) override;
    QString fault() const override;
    void setReadOnly(bool readOnly) override;
    void onEdited(QObject* receiver, const std::function<void()>& edited) override;

protected:
    void wheelEvent(QWheelEvent* event) override;

private:
    void fillEnumeration();
    void fillStatusCodes();
    [[nodiscard]] QString textOf(const UaVariant& value) const;
    void showState();

    QlumFaultMark m_mark;
    QString m_shown;
};

class QlumTimeCell final : public QDateTimeEdit, public QlumCellEditor
{
public:
    QlumTimeCell(const QlumCellValue& cell, QWidget* parent);
    bool read(UaVariant& value) const override;
    void enter(const UaVariant& value) override;
    void setReadOnly(bool readOnly) override { QDateTimeEdit::setReadOnly(readOnly); }
    void onEdited(QObject* receiver, const std::function<void()>& edited) override;

private:
    QDateTime m_shown;
};

class QlumLineCell final : public QLineEdit, public QlumCellEditor
{
public:
    QlumLineCell(const QlumCellValue& cell, QWidget* parent);
    bool read(UaVariant& value) const override;
    void enter(const UaVariant& value) override;
    QString fault() const override;
    void setBase(QlumNumberBase base) override;
    void setReadOnly(bool readOnly) override;
    void onEdited(QObject* receiver, const std::function<void()>& edited) override;

private:
    [[nodiscard]] QString textOf(const UaVariant& value) const;
    [[nodiscard]] bool readText(UaVariant& value) const;
    void addBits();
    void addBrowse();
    void showState();

    QlumFaultMark m_mark;
    QAction* m_help = nullptr; ///< bits or nodes to choose from
    QlumNumberBase m_base = QlumNumberBase::Decimal;
    QString m_shown;
    bool m_wasCut = false; ///< more was pasted than a line takes
};
