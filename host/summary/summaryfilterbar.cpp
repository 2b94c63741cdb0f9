#include "host/summary/summaryfilterbar_p.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QSignalBlocker>

namespace {

void fill(QComboBox& choice, const QString& all, const QString& none, const QStringList& names)
{
    const QSignalBlocker quiet(&choice);
    const QVariant chosen = choice.currentData();
    choice.clear();
    choice.addItem(all);
    for (const QString& name : names)
        choice.addItem(name.isEmpty() ? none : name, name);
    const int place = chosen.isValid() ? choice.findData(chosen) : 0;
    choice.setCurrentIndex(place < 0 ? 0 : place);
}

std::optional<QString> chosenIn(const QComboBox& choice)
{
    const QVariant chosen = choice.currentData();
    return chosen.isValid() ? std::optional<QString>(chosen.toString()) : std::nullopt;
}

} // namespace

SummaryFilterBar::SummaryFilterBar(QWidget* parent)
    : QWidget(parent),
      m_text(new QLineEdit),
      m_stations(makeChoice(QStringLiteral("stations"), tr("Station"))),
      m_areas(makeChoice(QStringLiteral("areas"), tr("Area"))),
      m_isMarkedOnly(makeCheck(QStringLiteral("markedOnly"), tr("Only &marked"))),
      m_isUnreliableOnly(makeCheck(QStringLiteral("unreliableOnly"), tr("Only &unreliable")))
{
    m_text->setObjectName(QStringLiteral("search"));
    m_text->setPlaceholderText(tr("Search in names, descriptions, stations and areas"));
    m_text->setAccessibleName(tr("Search"));
    m_text->setClearButtonEnabled(true);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_text, 1);
    for (QWidget* choice : {static_cast<QWidget*>(m_stations), static_cast<QWidget*>(m_areas),
                            static_cast<QWidget*>(m_isMarkedOnly), static_cast<QWidget*>(m_isUnreliableOnly)})
        layout->addWidget(choice);
    connect(m_text, &QLineEdit::textChanged, this, &SummaryFilterBar::changed);
    setChoices({}, {});
}

SummaryFilterBar::~SummaryFilterBar() = default;

QComboBox* SummaryFilterBar::makeChoice(const QString& name, const QString& accessibleName)
{
    auto* choice = new QComboBox;
    choice->setObjectName(name);
    choice->setAccessibleName(accessibleName);
    choice->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    choice->setMinimumContentsLength(14);
    choice->setMinimumWidth(60); // in a narrow window
    connect(choice, qOverload<int>(&QComboBox::currentIndexChanged), this, &SummaryFilterBar::changed);
    return choice;
}

QCheckBox* SummaryFilterBar::makeCheck(const QString& name, const QString& text)
{
    auto* check = new QCheckBox(text);
    check->setObjectName(name);
    connect(check, &QCheckBox::toggled, this, &SummaryFilterBar::changed);
    return check;
}

SummaryFilter SummaryFilterBar::filter() const
{
    SummaryFilter filter;
    filter.text = m_text->text();
    filter.station = chosenIn(*m_stations);
    filter.area = chosenIn(*m_areas);
    filter.isMarkedOnly = m_isMarkedOnly->isChecked();
    filter.isUnreliableOnly = m_isUnreliableOnly->isChecked();
    return filter;
}

void SummaryFilterBar::setChoices(const QStringList& stations, const QStringList& areas)
{
    fill(*m_stations, tr("All stations"), tr("No station"), stations);
    fill(*m_areas, tr("All areas"), tr("No area"), areas);
}

void SummaryFilterBar::search()
{
    m_text->setFocus(Qt::ShortcutFocusReason);
    m_text->selectAll();
}
