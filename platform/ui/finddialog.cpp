#include "platform/ui/finddialog.h"

#include "ui_finddialog.h"

#include <QShortcut>
#include <QShowEvent>

FindDialog::FindDialog(QWidget* parent) : QDialog(parent), m_ui(std::make_unique<Ui::FindDialog>())
{
    m_ui->setupUi(this);
    connect(m_ui->nextButton, &QPushButton::clicked, this, [this] { Q_EMIT findNext(text(), sensitivity()); });
    connect(m_ui->previousButton, &QPushButton::clicked, this, [this] { Q_EMIT findPrevious(text(), sensitivity()); });
    connect(m_ui->closeButton, &QPushButton::clicked, this, &FindDialog::reject);

    // Return itself is the default button's. A shortcut, since a button with the focus would take the keys otherwise.
    for (const char* keys : {"Shift+Return", "Shift+Enter"}) {
        auto* shortcut = new QShortcut(QKeySequence(QLatin1String(keys)), this);
        connect(shortcut, &QShortcut::activated, m_ui->previousButton, &QPushButton::click);
    }

    const auto enableButtons = [this] {
        m_ui->nextButton->setEnabled(!text().isEmpty());
        m_ui->previousButton->setEnabled(!text().isEmpty());
    };
    connect(m_ui->textEdit, &QLineEdit::textChanged, this, enableButtons);
    enableButtons();
}

FindDialog::~FindDialog() = default;

QString FindDialog::text() const
{
    return m_ui->textEdit->text();
}

void FindDialog::setText(const QString& text)
{
    m_ui->textEdit->setText(text);
    m_ui->textEdit->selectAll();
}

void FindDialog::showEvent(QShowEvent* event)
{
    if (!event->spontaneous())
        m_ui->textEdit->setFocus(); // QDialog then comes to it as if by Tab, which selects
    QDialog::showEvent(event);
}

Qt::CaseSensitivity FindDialog::sensitivity() const
{
    return m_ui->caseBox->isChecked() ? Qt::CaseSensitive : Qt::CaseInsensitive;
}
