#pragma once

#include <QFrame>
#include <QLabel>
#include <QTimer>

/// A line above the pages that says what became of the command that ended last. A command that was done goes by itself;
/// one that was not stays until it is closed or another one ends.
class OperationBanner : public QFrame
{
    Q_OBJECT
    Q_DISABLE_COPY(OperationBanner)

public:
    explicit OperationBanner(QWidget* parent);

    void showDone(const QString& text);
    void showFailed(const QString& text);

private:
    void showText(const QString& text, const QColor& ground);

    QLabel m_text;
    QTimer m_end;
};
