#pragma once

#include "scada/scadaexport.h"

#include <QString>
#include <QWidget>

class FindDialog;
class KVCanvasInterface;
class KorvaneScriptInterface;
class QFrame;
class QPlainTextEdit;
class QSplitter;
class QTextBrowser;

/// The widget in which an engineer writes one script: tools, the script's text, and a console that shows what the script
/// prints.
///
/// The script interface makes the text area and runs scripts; this widget arranges them, finds and inserts texts and
/// shows the output. Make it, call init() once, use it. Without a script interface it is the tool bar alone: no script
/// is held, run or shown. One that makes no QPlainTextEdit leaves no script either, but the console shows what it prints.
class KORVANE_SCADA_EXPORT KorvaneScriptorEditor : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(KorvaneScriptorEditor)

public:
    /// Builds nothing; init() does.
    explicit KorvaneScriptorEditor(QWidget* parent = nullptr);
    /// Closes the find dialog.
    ~KorvaneScriptorEditor() override;

    /// Builds the user interface. Call it once.
    /// \param canvas the page whose script is edited, null for none; not owned
    /// \param scriptInterface not owned; must outlive the widget
    void init(KVCanvasInterface* canvas, KorvaneScriptInterface* scriptInterface);
    /// Changes the page that scripts run in; the text stays. Not owned, null for none.
    void setCurrentCanvas(KVCanvasInterface* canvas);

    /// The text area, made by the script interface; null when that made none.
    QPlainTextEdit* scriptEditor() const { return m_textArea; }

    /// The whole text.
    QString script() const;
    /// Replaces the text, once the script interface has refreshed its editing context for the canvas.
    void setScript(const QString& script);
    /// Empties text and console. Output that waits for its line feed goes on waiting.
    void clear();

public Q_SLOTS:
    /// Inserts the tag text of the item selected in the point browser that sends the signal; called otherwise it does
    /// nothing.
    void addPointName();
    /// Opens another point browser; the points taken in it are inserted.
    void openPointBrowser();
    /// Asks for a file and inserts its path, relative to the program's folder and between single quotes. A cancelled
    /// dialog inserts the quotes alone.
    void openFile();
    /// Opens the find dialog. The name is part of the interface.
    void openScriptHelp();
    /// Shows what a script prints, line by line: what has no line feed yet waits for it.
    void slotStdOut(const QString& text);
    /// Likewise for errors, which wait for line feeds of their own.
    void slotStdErr(const QString& text);
    /// Shows a paragraph at once.
    void consoleMessage(const QString& text);
    /// Empties the console and runs the text: in the context of the canvas, whose editing context is refreshed
    /// afterwards, or by itself when there is no canvas.
    void compile();
    /// Selects the place with \p text before the cursor; one that comes only after it is not found.
    void findPrevious(const QString& text, Qt::CaseSensitivity sensitivity);
    /// Selects the place with \p text after the cursor, or the first from the start of the text. Without any the cursor
    /// stays.
    void findNext(const QString& text, Qt::CaseSensitivity sensitivity);

protected:
    /// Hides the find dialog too.
    void hideEvent(QHideEvent* event) override;

private:
    void initUi();
    QFrame* createToolBar();
    QWidget* createOutputPanel();
    void takeOutput(QString& buffer, const QString& text);

    FindDialog* m_findDialog = nullptr;
    QSplitter* m_splitter = nullptr;
    QPlainTextEdit* m_textArea = nullptr;
    QTextBrowser* m_console = nullptr;
    KVCanvasInterface* m_canvas = nullptr;
    KorvaneScriptInterface* m_scriptInterface = nullptr;
    QString m_errorBuffer;  ///< the beginning of an error line that has not come to its end
    QString m_outputBuffer; ///< likewise of an output line
};
