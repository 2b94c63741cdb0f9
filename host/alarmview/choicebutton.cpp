#include "host/alarmview/choicebutton_p.h"

#include <QMenu>

#include <algorithm>

ChoiceButton::ChoiceButton(const QString& title, GetChoices getChoices, QWidget* parent)
    : QToolButton(parent), m_title(title), m_getChoices(std::move(getChoices))
{
    setPopupMode(InstantPopup);
    setFocusPolicy(Qt::StrongFocus);
    setToolButtonStyle(Qt::ToolButtonTextOnly);
    setMenu(new QMenu(this));
    connect(menu(), &QMenu::aboutToShow, this, &ChoiceButton::fillMenu);
    say();
}

ChoiceButton::~ChoiceButton() = default;

void ChoiceButton::setChosen(const QList<int>& chosen)
{
    m_chosen = chosen;
    say();
}

void ChoiceButton::fillMenu()
{
    menu()->clear();
    QAction* all = menu()->addAction(tr("All"));
    all->setCheckable(true);
    all->setChecked(m_chosen.isEmpty());
    connect(all, &QAction::triggered, this, [this] {
        setChosen({});
        Q_EMIT chosenChanged();
    });
    menu()->addSeparator();
    for (const auto& [number, name] : m_getChoices()) {
        // What looks like a letter to press is a part of the name.
        QAction* action = menu()->addAction(QString(name).replace(QLatin1Char('&'), QLatin1String("&&")));
        action->setCheckable(true);
        action->setChecked(m_chosen.isEmpty() || m_chosen.contains(number));
        connect(action, &QAction::triggered, this, [this, number = number](bool isOn) { choose(number, isOn); });
    }
    Q_EMIT menuFilled(menu());
}

/// From all of them, one is taken away; the last one taken away gives all of them again.
void ChoiceButton::choose(int number, bool isChosen)
{
    QList<int> chosen = m_chosen;
    if (chosen.isEmpty()) {
        for (const auto& choice : m_getChoices())
            chosen.append(choice.first);
    }
    chosen.removeAll(number);
    if (isChosen)
        chosen.append(number);
    std::sort(chosen.begin(), chosen.end());
    setChosen(chosen);
    Q_EMIT chosenChanged();
}

void ChoiceButton::say()
{
    constexpr int mostLetters = 20;
    QStringList names;
    for (const auto& [number, name] : m_getChoices()) {
        if (m_chosen.contains(number))
            names.append(name);
    }
    QString what = names.join(QLatin1String(", "));
    if (m_chosen.isEmpty())
        what = tr("all");
    else if (what.isEmpty() || what.size() > mostLetters)
        what = tr("%n chosen", nullptr, m_chosen.size());
    setText(tr("%1: %2", "what is chosen of: what is chosen")
                .arg(m_title, what.replace(QLatin1Char('&'), QLatin1String("&&"))));
}
