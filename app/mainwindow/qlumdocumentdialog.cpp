#include <app/mainwindow/qlumdocumentdialog.h>

#include <app/api/qlumdocumenttypes.h>
#include <app/project/qlumprojectnodedocument.h>

#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QString>
#include <QTextBrowser>
#include <QVBoxLayout>
#include <QWidget>

#include <utility>

QlumDocumentDialog::QlumDocumentDialog(const QList<QlumDocumentType>& types,
                                       std::function<bool(const QString&)> isTaken, QWidget* parent)
    : QlumBaseWidget(QStringLiteral("QlumDocumentDialog"), parent), m_types(types),
      m_isTaken(std::move(isTaken)), m_list(new QListWidget(this)), m_description(new QTextBrowser(this)),
      m_name(new QLineEdit(this)), m_problem(new QLabel(this))
{
    setWindowTitle(tr("Add Document"));
    setWhatsThis(
        tr("<b>Add Document</b><br>Choose what to open and under which name it stands in the project."));
    m_list->setObjectName(QStringLiteral("documentTypes"));
    m_list->setAccessibleName(tr("Document types"));
    m_description->setObjectName(QStringLiteral("description"));
    m_description->setAccessibleName(tr("Description of the document type"));
    m_description->setMaximumHeight(fontMetrics().height() * 6);
    m_name->setObjectName(QStringLiteral("documentName"));
    m_name->setAccessibleName(tr("Name of the document"));
    m_problem->setObjectName(QStringLiteral("problem"));
    m_problem->setTextFormat(Qt::PlainText);
    m_problem->setWordWrap(true);
    makeLayout();
    for (const QlumDocumentType& type : m_types)
        m_list->addItem(qlumDocumentTypeName(type.type));
    connect(m_list, &QListWidget::currentRowChanged, this, &QlumDocumentDialog::sltTypeChanged);
    connect(m_list, &QListWidget::itemActivated, this, [this] {
        if (m_ok->isEnabled())
            accept();
    });
    connect(m_name, &QLineEdit::textChanged, this, &QlumDocumentDialog::sltNameChanged);
    m_list->setCurrentRow(0);
    sltNameChanged();
}

void QlumDocumentDialog::makeLayout()
{
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    m_ok = buttons->button(QDialogButtonBox::Ok);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* form = new QFormLayout;
    form->addRow(tr("&Name:"), m_name);
    auto* layout = new QVBoxLayout(this);
    auto* label = new QLabel(tr("&Document type:"), this);
    label->setBuddy(m_list);
    layout->addWidget(label);
    layout->addWidget(m_list, 1);
    layout->addWidget(m_description);
    layout->addLayout(form);
    layout->addWidget(m_problem);
    layout->addWidget(buttons);
}

QString QlumDocumentDialog::type() const
{
    return m_types.value(m_list->currentRow()).type;
}

QString QlumDocumentDialog::name() const
{
    return m_name->text().trimmed();
}

void QlumDocumentDialog::sltTypeChanged(int row)
{
    const QlumDocumentType type = m_types.value(row);
    m_description->setHtml(type.description);
    m_name->setText(type.freeName);
}

void QlumDocumentDialog::sltNameChanged()
{
    QString problem = QlumProjectNodeDocument::whyNoName(name());
    if (problem.isEmpty() && m_isTaken(name()))
        problem = tr("A document with the name '%1' already exists.").arg(name());
    m_problem->setText(problem);
    m_ok->setEnabled(problem.isEmpty() && m_list->currentRow() >= 0);
}
