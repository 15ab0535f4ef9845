#include <plugins/datalogger/qlumloggersetupdialog.h>

#include <uawidgets/qlumformrow.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QString>
#include <QVBoxLayout>
#include <QWidget>

QlumLoggerSetupDialog::QlumLoggerSetupDialog(const QlumLoggerSetup& setup, QWidget* parent)
    : QlumBaseWidget(QStringLiteral("QlumLoggerSetupDialog"), parent), m_kind(new QComboBox),
      m_path(new QLineEdit), m_hint(new QLabel), m_freeFloor(new QDoubleSpinBox),
      m_rotateBytes(new QDoubleSpinBox), m_rotateHours(new QDoubleSpinBox), m_keepBytes(new QDoubleSpinBox),
      m_keepDays(new QDoubleSpinBox), m_startsWithProject(new QCheckBox)
{
    setWindowTitle(tr("How It Is Recorded"));
    auto* form = new QFormLayout;
    makeFile(form, setup);
    makeLimits(form, setup);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addStretch(1);
    layout->addWidget(buttons);
    kindChanged();
}

void QlumLoggerSetupDialog::makeFile(QFormLayout* form, const QlumLoggerSetup& setup)
{
    m_kind->addItems({tr("SQLite, one file"), tr("CSV, one file after the other")});
    m_kind->setCurrentIndex(setup.kind);
    qlumAddRow(
        form, m_kind,
        {QStringLiteral("recordingKind"),
         tr("&Kind:"),
         tr("Both can be opened here again and plotted. SQLite finds a time and an item at once; CSV is "
            "for other programs, too."),
         {}});
    connect(m_kind, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &QlumLoggerSetupDialog::kindChanged);
    m_path->setText(QDir::toNativeSeparators(setup.path));
    m_path->setMinimumWidth(m_path->fontMetrics().horizontalAdvance(QLatin1Char('x')) * 50);
    auto* browseButton = new QPushButton(tr("B&rowse..."));
    browseButton->setObjectName(QStringLiteral("browseRecording"));
    browseButton->setToolTip(tr("Chooses the file."));
    browseButton->setAutoDefault(false);
    connect(browseButton, &QPushButton::clicked, this, &QlumLoggerSetupDialog::browse);
    auto* line = new QHBoxLayout;
    line->addWidget(m_path, 1);
    line->addWidget(browseButton);
    qlumAddRow(form, m_path,
               {QStringLiteral("recordingPath"),
                tr("&File:"),
                tr("An SQLite recording that is there already goes on; the gap is marked."),
                {}},
               line);
    m_hint->setTextFormat(Qt::PlainText);
    m_hint->setWordWrap(true);
    form->addRow(QString(), m_hint);
    m_startsWithProject->setText(tr("&Begin to record when the project is opened"));
    m_startsWithProject->setChecked(setup.startsWithProject);
    qlumAddWideRow(form, m_startsWithProject,
                   {QStringLiteral("startsWithProject"),
                    m_startsWithProject->text(),
                    tr("Values come once a server is connected; until then the recording has a gap that it "
                       "tells of."),
                    {}});
}

void QlumLoggerSetupDialog::addNumber(QFormLayout* form, QDoubleSpinBox* field, const char* name,
                                      const QString& label, const QString& explanation, const QString& zero,
                                      double value)
{
    constexpr double most = 1e9;
    field->setDecimals(0);
    field->setRange(0, most);
    field->setSpecialValueText(zero);
    field->setValue(value);
    qlumAddRow(form, field, {QLatin1String(name), label, explanation, explanation});
}

void QlumLoggerSetupDialog::makeLimits(QFormLayout* form, const QlumLoggerSetup& setup)
{
    const QString megabytes = tr(" MB");
    m_freeFloor->setSuffix(megabytes);
    addNumber(form, m_freeFloor, "freeFloor", tr("&Leave free on the disk:"),
              tr("With less room recording pauses, says so, and goes on when there is room again."),
              tr("nothing"), setup.freeFloor);
    m_rotateBytes->setSuffix(megabytes);
    addNumber(form, m_rotateBytes, "rotateBytes", tr("&Next file after:"),
              tr("A CSV file of that size is followed by another."), tr("any size"), setup.rotateBytes);
    m_rotateHours->setSuffix(tr(" h"));
    addNumber(form, m_rotateHours, "rotateHours", tr("or af&ter:"),
              tr("A CSV file of that age is followed by another."), tr("any time"), setup.rotateHours);
    m_keepBytes->setSuffix(megabytes);
    addNumber(form, m_keepBytes, "keepBytes", tr("Keep at &most:"),
              tr("Beyond that the oldest records are deleted, and a mark in the recording says so."),
              tr("everything"), setup.keepBytes);
    m_keepDays->setSuffix(tr(" days"));
    addNumber(form, m_keepDays, "keepDays", tr("Keep for at m&ost:"),
              tr("Older records are deleted, and a mark in the recording says so."), tr("ever"),
              setup.keepDays);
}

void QlumLoggerSetupDialog::kindChanged()
{
    const bool isCsv = m_kind->currentIndex() == QlumLoggerSetup::Csv;
    m_rotateBytes->setEnabled(isCsv);
    m_rotateHours->setEnabled(isCsv);
    m_hint->setText(isCsv ? tr("Each file gets the time of its beginning in its name; none is written over.")
                          : tr("A recording that is there already is continued."));
    const QFileInfo info(QDir::fromNativeSeparators(m_path->text()));
    const QString ending = isCsv ? QStringLiteral("csv") : QStringLiteral("sqlite");
    const QString other = isCsv ? QStringLiteral("sqlite") : QStringLiteral("csv");
    if (info.suffix() == other)
        m_path->setText(QDir::toNativeSeparators(info.path() + QLatin1Char('/') + info.completeBaseName() +
                                                 QLatin1Char('.') + ending));
}

void QlumLoggerSetupDialog::browse()
{
    const bool isCsv = m_kind->currentIndex() == QlumLoggerSetup::Csv;
    const QString chosen =
        QFileDialog::getSaveFileName(this, tr("Recording"), QDir::fromNativeSeparators(m_path->text()),
                                     isCsv ? tr("CSV files (*.csv)") : tr("Recordings (*.sqlite)"), nullptr,
                                     QFileDialog::DontConfirmOverwrite);
    if (!chosen.isEmpty())
        m_path->setText(QDir::toNativeSeparators(chosen));
}

QlumLoggerSetup QlumLoggerSetupDialog::setup() const
{
    QlumLoggerSetup setup;
    setup.kind = static_cast<QlumLoggerSetup::Kind>(m_kind->currentIndex());
    setup.path = QDir::fromNativeSeparators(m_path->text().trimmed());
    if (!setup.path.isEmpty() && QFileInfo(setup.path).isRelative())
        setup.path = QDir::home().absoluteFilePath(setup.path);
    setup.freeFloor = m_freeFloor->value();
    setup.rotateBytes = m_rotateBytes->value();
    setup.rotateHours = m_rotateHours->value();
    setup.keepBytes = m_keepBytes->value();
    setup.keepDays = m_keepDays->value();
    setup.startsWithProject = m_startsWithProject->isChecked();
    return setup;
}
