#include "host/alarmview/alarmfilterbar_p.h"

#include "host/alarmview/alarmlistmodel.h"
#include "host/alarmview/choicebutton_p.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QMenu>

namespace {

using State = ScadaAlarm::State;

/// What the user chooses of states.
enum StateGroup { Standing, Shelved, Excluded };

AlarmFilter::States statesOf(int group)
{
    switch (group) {
    case Standing:
        return AlarmFilter::standing();
    case Shelved:
        return AlarmFilter::statesOf({State::Shelved});
    default:
        return AlarmFilter::statesOf({State::Suppressed, State::OutOfService});
    }
}

ChoiceButton::Choices severityChoices()
{
    ChoiceButton::Choices choices;
    for (int severity = ScadaAlarm::highestSeverity; severity >= ScadaAlarm::lowestSeverity; --severity)
        choices.append({severity, QString::number(severity)});
    return choices;
}

} // namespace

AlarmFilterBar::AlarmFilterBar(const AlarmListModel& model, QWidget* parent) : QWidget(parent), m_model(model)
{
    m_severities = new ChoiceButton(tr("Sever&ities"), severityChoices);
    m_severities->setObjectName(QStringLiteral("severities"));
    m_areas = new ChoiceButton(tr("Ar&eas"), [this] {
        ChoiceButton::Choices choices{{AlarmAreas::noArea, tr("no area")}};
        for (const QString& name : m_model.areas().names())
            choices.append({m_model.areas().number(name), name});
        return choices;
    });
    m_areas->setObjectName(QStringLiteral("areas"));
    m_states = new ChoiceButton(tr("S&tates"), [] {
        return ChoiceButton::Choices{{Standing, AlarmFilterBar::tr("standing")},
                                     {Shelved, AlarmFilterBar::tr("shelved")},
                                     {Excluded, AlarmFilterBar::tr("suppressed, out of service")}};
    });
    m_states->setObjectName(QStringLiteral("states"));
    m_states->setChosen({Standing});
    m_text = new QLineEdit;
    m_text->setObjectName(QStringLiteral("search"));
    m_text->setPlaceholderText(tr("Search in tags and messages"));
    m_text->setAccessibleName(tr("Search"));
    m_text->setClearButtonEnabled(true);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    for (QWidget* button : {m_severities, m_areas, m_states})
        layout->addWidget(button);
    layout->addWidget(m_text, 1);
    connect(m_severities, &ChoiceButton::chosenChanged, this, &AlarmFilterBar::keptChanged);
    connect(m_areas, &ChoiceButton::chosenChanged, this, &AlarmFilterBar::keptChanged);
    connect(m_areas, &ChoiceButton::menuFilled, this, &AlarmFilterBar::addUserAreas);
    connect(m_states, &ChoiceButton::chosenChanged, this, &AlarmFilterBar::passingChanged);
    connect(m_text, &QLineEdit::textChanged, this, &AlarmFilterBar::passingChanged);
}

AlarmFilterBar::~AlarmFilterBar() = default;

void AlarmFilterBar::setKept(const QList<int>& severities, const QList<int>& areas, bool isSubjectToUserAreas)
{
    m_severities->setChosen(severities);
    m_areas->setChosen(areas);
    m_isSubjectToUserAreas = isSubjectToUserAreas;
}

QList<int> AlarmFilterBar::severities() const
{
    return m_severities->chosen();
}

QList<int> AlarmFilterBar::areas() const
{
    return m_areas->chosen();
}

AlarmFilter::States AlarmFilterBar::states() const
{
    AlarmFilter::States states;
    for (const int group : {Standing, Shelved, Excluded}) {
        if (m_states->chosen().isEmpty() || m_states->chosen().contains(group))
            states |= statesOf(group);
    }
    return states;
}

QString AlarmFilterBar::text() const
{
    return m_text->text();
}

void AlarmFilterBar::search()
{
    m_text->setFocus(Qt::ShortcutFocusReason);
    m_text->selectAll();
}

void AlarmFilterBar::addUserAreas(QMenu* menu)
{
    menu->addSeparator();
    QAction* own = menu->addAction(tr("Only the user's own"));
    own->setObjectName(QStringLiteral("userAreas"));
    own->setCheckable(true);
    own->setChecked(m_isSubjectToUserAreas);
    connect(own, &QAction::triggered, this, [this](bool isOn) {
        m_isSubjectToUserAreas = isOn;
        Q_EMIT keptChanged();
    });
}
