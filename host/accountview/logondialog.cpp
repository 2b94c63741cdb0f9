#include "host/accountview/logondialog.h"

#include "ui_logondialog.h"

#include <QPushButton>

LogOnDialog::LogOnDialog(DatabaseManager& manager, const QString& user, QWidget* parent)
    : QDialog(parent), m_form(std::make_unique<Ui::LogOnDialog>()), m_manager(manager)
{
    m_form->setupUi(this);
    m_form->buttonBox->button(QDialogButtonBox::Ok)->setText(tr("&Log on"));
    m_form->userEdit->setText(user);
    if (!user.isEmpty())
        m_form->passwordEdit->setFocus();
    const auto follow = [this] {
        m_failure.clear();
        showState();
    };
    connect(m_form->userEdit, &QLineEdit::textEdited, this, follow);
    connect(m_form->passwordEdit, &QLineEdit::textEdited, this, follow);
    constexpr int often = 100; // ms, so that the seconds shown are those that are left
    m_refusal.setInterval(often);
    connect(&m_refusal, &QTimer::timeout, this, &LogOnDialog::showState);
    showState();
}

LogOnDialog::~LogOnDialog() = default;

void LogOnDialog::showState()
{
    const QString user = m_form->userEdit->text();
    const auto left = m_manager.refusal(user);
    const bool isRefused = left.count() > 0;
    constexpr qint64 second = 1000;
    m_form->messageLabel->setText(
        isRefused ? tr("Too many wrong passwords. Try again in %1 s.").arg((left.count() + second - 1) / second)
                  : m_failure);
    m_form->buttonBox->button(QDialogButtonBox::Ok)->setEnabled(!isRefused && !user.isEmpty());
    if (isRefused && !m_refusal.isActive())
        m_refusal.start();
    else if (!isRefused)
        m_refusal.stop();
}

/// Return in a field comes here too, whatever the button says.
void LogOnDialog::accept()
{
    if (!m_form->buttonBox->button(QDialogButtonBox::Ok)->isEnabled())
        return;
    const auto loggedOn = m_manager.logOn(m_form->userEdit->text(), m_form->passwordEdit->text());
    m_form->passwordEdit->clear();
    if (loggedOn) {
        QDialog::accept();
        return;
    }
    m_failure = loggedOn.error();
    m_form->passwordEdit->setFocus();
    showState();
}
