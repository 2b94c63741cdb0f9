#pragma once

#include <QDockWidget>
#include <QPlainTextEdit>

class ScriptEngine;

/// What the scripts print, log and fail with; the newest lines.
class ScriptDock : public QDockWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(ScriptDock)

public:
    /// \param scripts not owned, must outlive the dock
    ScriptDock(ScriptEngine& scripts, QWidget* parent);

    void clear() { m_text.clear(); }

private:
    void append(const QString& text);
    void insert(const QString& text);

    QPlainTextEdit m_text;
};
