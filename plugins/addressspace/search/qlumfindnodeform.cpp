#include <plugins/addressspace/search/qlumfindnodeform.h>

#include <uawidgets/qlumformrow.h>
#include <uawidgets/qlumnodelook.h>

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QToolButton>
#include <QVBoxLayout>

namespace {
QCheckBox* makeBox(const QString& name, const QString& text, const QString& toolTip)
{
    auto* box = new QCheckBox(text);
    qlumDescribeField(box, {name, text, {}, toolTip});
    return box;
}
} // namespace

QlumFindNodeForm::QlumFindNodeForm(QWidget* parent) : QWidget(parent)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    layout->addLayout(makeTextRow());
    layout->addLayout(makeKindRow());
    m_read = makeReadRow();
    m_read->hide();
    layout->addWidget(m_read);
    connect(m_more, &QToolButton::toggled, this, [this](bool on) {
        m_read->setVisible(on);
        m_more->setArrowType(on ? Qt::DownArrow : Qt::RightArrow);
    });
}

// A label and a field for a pattern, in which Return begins to search.
QLineEdit* QlumFindNodeForm::addPattern(QLayout* row, const QString& name, const QString& label,
                                        const QString& toolTip)
{
    auto* edit = new QLineEdit;
    qlumDescribeField(edit, {name, label, {}, toolTip});
    edit->setClearButtonEnabled(true);
    edit->setPlaceholderText(tr("any"));
    auto* text = new QLabel(label);
    text->setBuddy(edit);
    row->addWidget(text);
    row->addWidget(edit);
    connect(edit, &QLineEdit::returnPressed, this, &QlumFindNodeForm::findWanted);
    return edit;
}

QLayout* QlumFindNodeForm::makeTextRow()
{
    auto* row = new QHBoxLayout;
    m_text = addPattern(row, QStringLiteral("findText"), tr("Fi&nd:"),
                        tr("A part of the text; with * for any letters and ? for one, all of it"));
    row->setStretchFactor(m_text, 1);
    m_field = new QComboBox;
    qlumDescribeField(m_field,
                      {QStringLiteral("findField"), tr("In"), {}, tr("Where the text is looked for")});
    m_field->addItem(tr("in names"), QlumNodeQuery::Name);
    m_field->addItem(tr("in node ids"), QlumNodeQuery::NodeId);
    m_field->addItem(tr("in paths"), QlumNodeQuery::Path);
    row->addWidget(m_field);
    m_isExpression =
        makeBox(QStringLiteral("findExpression"), tr("&Regular expression"),
                tr("The text is a regular expression; on texts that take it too long it is given up"));
    m_isCaseSensitive = makeBox(QStringLiteral("findCase"), tr("Match &case"),
                                tr("Capitals and small letters are different in all patterns"));
    row->addWidget(m_isExpression);
    row->addWidget(m_isCaseSensitive);
    return row;
}

QLayout* QlumFindNodeForm::makeKindRow()
{
    auto* row = new QHBoxLayout;
    m_nodeClass = new QComboBox;
    qlumDescribeField(m_nodeClass,
                      {QStringLiteral("findClass"), tr("Class"), {}, tr("Of which class the nodes are")});
    m_nodeClass->addItem(tr("any"), 0U);
    for (const OpcUa_NodeClass nodeClass :
         {OpcUa_NodeClass_Object, OpcUa_NodeClass_Variable, OpcUa_NodeClass_Method,
          OpcUa_NodeClass_ObjectType, OpcUa_NodeClass_VariableType, OpcUa_NodeClass_ReferenceType,
          OpcUa_NodeClass_DataType, OpcUa_NodeClass_View})
        m_nodeClass->addItem(qlumNodeClassText(nodeClass), static_cast<unsigned int>(nodeClass));
    auto* label = new QLabel(tr("C&lass:"));
    label->setBuddy(m_nodeClass);
    row->addWidget(label);
    row->addWidget(m_nodeClass);
    m_type = addPattern(row, QStringLiteral("findType"), tr("T&ype definition:"),
                        tr("A part of the name or id of the type definition; * and ? as for the text"));
    row->setStretchFactor(m_type, 1);
    m_more = new QToolButton;
    m_more->setText(tr("&More"));
    qlumDescribeField(m_more, {QStringLiteral("findMore"),
                               tr("More"),
                               {},
                               tr("Search for what has to be read from the server, which takes longer")});
    m_more->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_more->setArrowType(Qt::RightArrow);
    m_more->setCheckable(true);
    m_more->setAutoRaise(true);
    row->addWidget(m_more);
    return row;
}

QWidget* QlumFindNodeForm::makeReadRow()
{
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    auto* patterns = new QHBoxLayout;
    const QString toolTip = tr("A part of it; * and ? as for the text. Read from the server.");
    m_description = addPattern(patterns, QStringLiteral("findDescription"), tr("D&escription:"), toolTip);
    m_dataType = addPattern(patterns, QStringLiteral("findDataType"), tr("D&ata type:"), toolTip);
    m_unit = addPattern(patterns, QStringLiteral("findUnit"), tr("&Unit:"), toolTip);
    layout->addLayout(patterns);
    auto* boxes = new QHBoxLayout;
    m_isReadable = makeBox(QStringLiteral("findReadable"), tr("Rea&dable"),
                           tr("Only values that the user who is logged in may read"));
    m_isWritable = makeBox(QStringLiteral("findWritable"), tr("&Writable"),
                           tr("Only values that the user who is logged in may write"));
    m_showsDetails = makeBox(QStringLiteral("findDetails"), tr("S&how for all"),
                             tr("Reads description, data type, unit and access of all nodes that are found"));
    auto* hint = new QLabel(tr("These are read from the server, which takes longer."));
    hint->setObjectName(QStringLiteral("findReadHint"));
    for (QCheckBox* box : {m_isReadable, m_isWritable, m_showsDetails})
        boxes->addWidget(box);
    boxes->addStretch();
    boxes->addWidget(hint);
    layout->addLayout(boxes);
    return page;
}

QlumNodeQuery QlumFindNodeForm::query() const
{
    QlumNodeQuery query;
    query.text = m_text->text();
    query.field = static_cast<QlumNodeQuery::Field>(m_field->currentData().toInt());
    query.isExpression = m_isExpression->isChecked();
    query.isCaseSensitive = m_isCaseSensitive->isChecked();
    query.nodeClasses = m_nodeClass->currentData().toUInt();
    query.typeDefinition = m_type->text();
    if (!m_more->isChecked())
        return query;
    query.description = m_description->text();
    query.dataType = m_dataType->text();
    query.unit = m_unit->text();
    query.mustBeReadable = m_isReadable->isChecked();
    query.mustBeWritable = m_isWritable->isChecked();
    query.showsDetails = m_showsDetails->isChecked();
    return query;
}

void QlumFindNodeForm::begin(const QString& text)
{
    if (!text.isEmpty())
        m_text->setText(text);
    m_text->setFocus();
    m_text->selectAll();
}
