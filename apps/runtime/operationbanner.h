#pragma once

#include <QFrame>
#include <QLabel>
#include <QTimer>
#include <QToolButton>

/// A line above the pages that says what became of the command that ended last. What was done goes by itself; what was not
/// stays until it is closed or another one ends. The line has its place all the time: pages must not move under a hand.
class OperationBanner : public QFrame
{
    Q_OBJECT
    Q_DISABLE_COPY(OperationBanner)

public:
    explicit OperationBanner(QWidget* parent);

    void showDone(const QString& text);
    void showFailed(const QString& text);

private:
    void clear();
    void showText(const QString& text, const QColor& ground);

    QLabel m_text;
    QToolButton m_close;
    QTimer m_end;
};
