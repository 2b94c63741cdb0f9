#pragma once

#include <QWidget>

class QTextBlock;
class ScriptEditor;

/// The margin of a script editor: the numbers of its lines. A press selects a line, a drag all that it passes.
class LineNumberArea : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(LineNumberArea)

public:
    /// \param editor whose margin it is, and its owner
    explicit LineNumberArea(ScriptEditor& editor);
    ~LineNumberArea() override;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    QRect placeOf(const QTextBlock& line) const;
    QTextBlock lineAt(int y) const;
    void selectTo(const QTextBlock& line);

    ScriptEditor& m_editor;
    int m_firstSelected = 0; ///< number of the line on which the button was pressed, from 0
};
