#pragma once

#include <QList>
#include <QPair>
#include <QString>
#include <QToolButton>

#include <functional>

class QMenu;

/// A button with a menu of things by number, of which any may be chosen; none chosen stands for all of them. It says what is
/// chosen.
class ChoiceButton : public QToolButton
{
    Q_OBJECT
    Q_DISABLE_COPY(ChoiceButton)

public:
    using Choices = QList<QPair<int, QString>>;
    using GetChoices = std::function<Choices()>;

    /// \param title what is chosen of, with the letter that opens the menu
    /// \param getChoices asked each time the menu opens
    ChoiceButton(const QString& title, GetChoices getChoices, QWidget* parent = nullptr);
    ~ChoiceButton() override;

    const QList<int>& chosen() const { return m_chosen; }
    void setChosen(const QList<int>& chosen);

Q_SIGNALS:
    /// The user chose.
    void chosenChanged();
    /// The menu was filled, and may be added to.
    void menuFilled(QMenu* menu);

private:
    void fillMenu();
    void choose(int number, bool isChosen);
    void say();

    QString m_title;
    GetChoices m_getChoices;
    QList<int> m_chosen;
};
