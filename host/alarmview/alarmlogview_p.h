#pragma once

#include "host/alarms/alarmtransition.h"

#include <QTimer>
#include <QWidget>

#include <vector>

class AlarmLogModel;
class AlarmSystem;
class AlarmTable;
class KorvaneScadaCoreInterface;
class QCheckBox;
class QDateTimeEdit;
class QLabel;
class QLineEdit;

/// The newest lines of the alarm log within a span of time, read anew while it is shown.
///
/// The tag filter takes the tag of one object, whose lines are then looked for in the whole log, or any part of tags, which
/// is looked for among the newest lines.
class AlarmLogView : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(AlarmLogView)

public:
    static constexpr int mostLines = 5000;
    static constexpr int readingMs = 1000; ///< no sooner than this after the reading before

    /// \param system, hub not owned, must outlive the view
    AlarmLogView(AlarmSystem& system, KorvaneScadaCoreInterface& hub, QWidget* parent);
    ~AlarmLogView() override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    QWidget* makeFilter();
    void readSoon();
    void readAgain();
    void read();

    AlarmSystem& m_system;
    KorvaneScadaCoreInterface& m_hub;
    AlarmLogModel* m_model = nullptr;
    AlarmTable* m_table = nullptr;
    QDateTimeEdit* m_from = nullptr;
    QDateTimeEdit* m_to = nullptr;
    QCheckBox* m_upToNow = nullptr;
    QLineEdit* m_tag = nullptr;
    QLabel* m_status = nullptr;
    QTimer m_timer;           ///< runs while it is too soon to read
    bool m_isOutdated = true; ///< there is something to read
};
