#include "host/alarmview/shelvedialog.h"

#include "ui_shelvedialog.h"

#include <QPushButton>

ShelveDialog::ShelveDialog(Purpose purpose, const QString& what, AlarmManager::Clock clock, QWidget* parent)
    : QDialog(parent), m_form(std::make_unique<Ui::ShelveDialog>()), m_purpose(purpose), m_clock(std::move(clock))
{
    m_form->setupUi(this);
    m_form->whatLabel->setText(what);
    if (purpose == Purpose::OutOfService) {
        setWindowTitle(tr("Out of service"));
        m_form->timeBox->hide();
    }
    m_form->untilEdit->setDateTime(chosenEnd().toLocalTime());
    const auto follow = [this] { check(); };
    connect(m_form->reasonEdit, &QLineEdit::textChanged, this, follow);
    connect(m_form->untilEdit, &QDateTimeEdit::dateTimeChanged, m_form->untilButton, [this] {
        m_form->untilButton->setChecked(true);
        check();
    });
    for (QRadioButton* button : m_form->timeBox->findChildren<QRadioButton*>())
        connect(button, &QRadioButton::toggled, this, follow);
    check();
}

ShelveDialog::~ShelveDialog() = default;

QString ShelveDialog::reason() const
{
    return m_form->reasonEdit->text().trimmed();
}

QDateTime ShelveDialog::until() const
{
    return m_until.isValid() ? m_until : chosenEnd();
}

QDateTime ShelveDialog::chosenEnd() const
{
    constexpr qint64 minute = 60;
    constexpr qint64 hour = 60 * minute;
    const struct
    {
        const QRadioButton* button;
        qint64 seconds;
    } durations[] = {
        {m_form->quarterButton, 15 * minute},
        {m_form->hourButton, hour},
        {m_form->shiftButton, 8 * hour},
        {m_form->dayButton, 24 * hour},
    };
    for (const auto& duration : durations) {
        if (duration.button->isChecked())
            return m_clock().addSecs(duration.seconds);
    }
    return m_form->untilEdit->dateTime().toUTC();
}

void ShelveDialog::check()
{
    const bool isTimely = m_purpose == Purpose::OutOfService || chosenEnd() > m_clock();
    m_form->problemLabel->setText(isTimely ? QString() : tr("That time has passed."));
    m_form->buttonBox->button(QDialogButtonBox::Ok)->setEnabled(isTimely && !reason().isEmpty());
}

/// Time has gone on since it was chosen.
void ShelveDialog::accept()
{
    check();
    if (!m_form->buttonBox->button(QDialogButtonBox::Ok)->isEnabled())
        return;
    m_until = chosenEnd();
    QDialog::accept();
}
