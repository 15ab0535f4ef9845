#include <plugins/addressspace/qlumnodechooser.h>

#include <app/api/qlumtext.h>
#include <plugins/addressspace/qlumaddressspacemodel.h>

#include <QDialog>
#include <QDialogButtonBox>
#include <QItemSelectionModel>
#include <QLabel>
#include <QModelIndex>
#include <QPushButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <utility>

QlumNodeChooser::QlumNodeChooser(std::unique_ptr<QlumAddressSpaceModel> model, const QString& serverName,
                                 QWidget* parent)
    : QlumBaseWidget(QStringLiteral("QlumNodeChooser"), parent), m_model(std::move(model)),
      m_tree(new QTreeView(this)), m_chosen(new QLabel(this)),
      m_buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this))
{
    setObjectName(QStringLiteral("nodeChooser"));
    setWindowTitle(tr("Choose a Node of %1").arg(serverName));
    m_tree->setObjectName(QStringLiteral("nodeChooserTree"));
    m_tree->setAccessibleName(tr("Address space"));
    m_tree->setHeaderHidden(true);
    m_tree->setUniformRowHeights(true);
    m_tree->setModel(m_model.get());
    m_tree->expand(m_model->index(0, 0));
    m_chosen->setObjectName(QStringLiteral("nodeChooserId"));
    m_chosen->setAccessibleName(tr("Node id"));
    m_chosen->setTextFormat(Qt::PlainText);
    m_chosen->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_tree, 1);
    layout->addWidget(m_chosen);
    layout->addWidget(m_buttons);
    connect(m_tree->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &QlumNodeChooser::showChosen);
    connect(m_tree, &QTreeView::activated, m_buttons->button(QDialogButtonBox::Ok), &QPushButton::click);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    resize(fontMetrics().averageCharWidth() * 60, fontMetrics().height() * 30);
    showChosen();
}

QlumNodeChooser::~QlumNodeChooser()
{
    m_tree->setModel(nullptr); // the tree goes after the model
}

void QlumNodeChooser::select(const UaNodeId& nodeId)
{
    const QModelIndex index = nodeId.isNull() ? QModelIndex() : m_model->reveal(nodeId);
    if (!index.isValid())
        return;
    m_tree->setCurrentIndex(index);
    m_tree->scrollTo(index);
}

UaNodeId QlumNodeChooser::nodeId() const
{
    UaNodeId nodeId;
    UaNodeId parentId;
    OpcUa_NodeClass nodeClass = OpcUa_NodeClass_Unspecified;
    return m_model->nodeInfo(m_tree->currentIndex(), nodeId, nodeClass, parentId) ? nodeId : UaNodeId();
}

void QlumNodeChooser::showChosen()
{
    const UaNodeId chosen = nodeId();
    m_chosen->setText(chosen.isNull() ? tr("No node is chosen yet.") : toQString(chosen.toXmlString()));
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(!chosen.isNull());
}
