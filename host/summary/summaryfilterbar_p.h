#pragma once

#include "host/summary/summaryfilter.h"

#include <QString>
#include <QStringList>
#include <QWidget>

class QCheckBox;
class QComboBox;
class QLineEdit;

/// Where the user states which points the summary shows.
class SummaryFilterBar : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(SummaryFilterBar)

public:
    explicit SummaryFilterBar(QWidget* parent);
    ~SummaryFilterBar() override;

    SummaryFilter filter() const;
    /// What can be chosen from, an empty text standing for none; a choice that is left out becomes "all".
    void setChoices(const QStringList& stations, const QStringList& areas);
    /// Takes the keyboard to the search field.
    void search();

Q_SIGNALS:
    /// The user set another filter.
    void changed();

private:
    QComboBox* makeChoice(const QString& name, const QString& accessibleName);
    QCheckBox* makeCheck(const QString& name, const QString& text);

    QLineEdit* m_text;
    QComboBox* m_stations;
    QComboBox* m_areas;
    QCheckBox* m_isMarkedOnly;
    QCheckBox* m_isUnreliableOnly;
};
