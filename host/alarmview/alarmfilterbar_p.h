#pragma once

#include "host/alarmview/alarmfilter.h"

#include <QWidget>

class AlarmListModel;
class ChoiceButton;
class QLineEdit;
class QMenu;

/// Where the user states which alarms the list shows: severities, areas, states and a text.
class AlarmFilterBar : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(AlarmFilterBar)

public:
    /// \param model not owned, must outlive the bar
    AlarmFilterBar(const AlarmListModel& model, QWidget* parent);
    ~AlarmFilterBar() override;

    /// Shows what is set of severities and areas, and whether the list is limited to the user's own.
    void setKept(const QList<int>& severities, const QList<int>& areas, bool isSubjectToUserAreas);
    QList<int> severities() const;
    QList<int> areas() const;
    bool isSubjectToUserAreas() const { return m_isSubjectToUserAreas; }
    AlarmFilter::States states() const;
    QString text() const;

    /// Takes the keyboard to the search field.
    void search();

Q_SIGNALS:
    /// The user chose other severities or areas: what settings keep.
    void keptChanged();
    /// The user chose other states, or another text: what lasts as long as the window.
    void passingChanged();

private:
    void addUserAreas(QMenu* menu);

    const AlarmListModel& m_model;
    bool m_isSubjectToUserAreas = true;
    ChoiceButton* m_severities = nullptr;
    ChoiceButton* m_areas = nullptr;
    ChoiceButton* m_states = nullptr;
    QLineEdit* m_text = nullptr;
};
