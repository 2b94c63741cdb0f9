#include "scada/actions/korvanescriptoreditor.h"

#include "platform/core/korvanescriptinterface.h"
#include "platform/ui/finddialog.h"
#include "platform/ui/hidpi.h"
#include "platform/ui/pointbrowserdialog.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QSplitter>
#include <QTextBrowser>
#include <QTextCursor>
#include <QToolButton>
#include <QVBoxLayout>

#include <utility>

namespace {

constexpr Korvane::BrowseTypeFlag browsedTypes = Korvane::BrowseTypeFlag(Korvane::BrowseType::DigitalPoints) |
                                                 Korvane::BrowseType::AnalogPoints | Korvane::BrowseType::Units;
static_assert(int(browsedTypes) == 7);

QTextDocument::FindFlags findFlags(Qt::CaseSensitivity sensitivity)
{
    return sensitivity == Qt::CaseSensitive ? QTextDocument::FindCaseSensitively : QTextDocument::FindFlags();
}

QToolButton* addTool(QFrame& toolBar, const QString& iconPath, const QString& toolTip)
{
    auto* tool = new QToolButton(&toolBar);
    tool->setAutoRaise(true);
    tool->setIcon(QIcon(HiDPI::dpiScaledPixmap(iconPath, nullptr)));
    tool->setToolTip(toolTip);
    toolBar.layout()->addWidget(tool);
    return tool;
}

/// Adds paragraphs to a console in one step and keeps its end in view, unless the user has scrolled away from it.
class ConsoleWriter
{
public:
    explicit ConsoleWriter(QTextBrowser& console)
        : m_console(console), m_cursor(console.document()), m_isAtEnd(isAtEnd(*console.verticalScrollBar()))
    {
        m_cursor.beginEditBlock(); // the layout is made once for all lines, not for each
    }
    Q_DISABLE_COPY(ConsoleWriter)
    ~ConsoleWriter()
    {
        m_cursor.endEditBlock();
        if (m_isAtEnd)
            m_console.verticalScrollBar()->setValue(m_console.verticalScrollBar()->maximum());
    }

    void addParagraph(const QString& text)
    {
        m_console.append(QString());
        m_cursor.movePosition(QTextCursor::End); // wherever the user has put the console's own cursor
        m_cursor.insertText(text);
    }

private:
    static bool isAtEnd(const QScrollBar& bar) { return bar.value() >= bar.maximum(); }

    QTextBrowser& m_console;
    QTextCursor m_cursor;
    bool m_isAtEnd;
};

} // namespace

KorvaneScriptorEditor::KorvaneScriptorEditor(QWidget* parent) : QWidget(parent)
{
}

KorvaneScriptorEditor::~KorvaneScriptorEditor()
{
    if (!m_findDialog)
        return;
    m_findDialog->setAttribute(Qt::WA_DeleteOnClose);
    m_findDialog->close();
}

void KorvaneScriptorEditor::init(KVCanvasInterface* canvas, KorvaneScriptInterface* scriptInterface)
{
    m_canvas = canvas;
    m_scriptInterface = scriptInterface;
    initUi();
}

void KorvaneScriptorEditor::initUi()
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(createToolBar());
    if (!m_scriptInterface)
        return;

    m_splitter = new QSplitter(Qt::Vertical, this);
    m_splitter->setObjectName(QStringLiteral("splitter"));
    m_splitter->setOpaqueResize(false);
    m_splitter->setChildrenCollapsible(true);
    QWidget* textArea = m_scriptInterface->createScriptEditor(m_canvas);
    m_textArea = qobject_cast<QPlainTextEdit*>(textArea);
    if (textArea) {
        m_splitter->addWidget(textArea);
        m_splitter->setStretchFactor(0, 3);
    }
    m_splitter->addWidget(createOutputPanel());
    m_splitter->setStretchFactor(m_splitter->count() - 1, 1);
    layout->addWidget(m_splitter);

    connect(m_scriptInterface, &KorvaneScriptInterface::stdOut, this, &KorvaneScriptorEditor::slotStdOut);
    connect(m_scriptInterface, &KorvaneScriptInterface::stdErr, this, &KorvaneScriptorEditor::slotStdErr);
}

QFrame* KorvaneScriptorEditor::createToolBar()
{
    auto* toolBar = new QFrame(this);
    toolBar->setFrameShape(QFrame::Panel);
    toolBar->setFrameShadow(QFrame::Raised);
    auto* layout = new QHBoxLayout(toolBar);
    layout->setSpacing(0);
    layout->setContentsMargins(0, 0, 0, 0);

    QToolButton* run = addTool(*toolBar, QStringLiteral(":/KVC/image/execute"), tr("Compile Script"));
    run->setShortcut(QKeySequence(Qt::Key_F5));
    connect(run, &QToolButton::released, this, &KorvaneScriptorEditor::compile);
    QToolButton* point = addTool(*toolBar, QStringLiteral(":/KVC/image/tag"), tr("Open Point Explorer"));
    connect(point, &QToolButton::released, this, &KorvaneScriptorEditor::openPointBrowser);
    QToolButton* file = addTool(*toolBar, QStringLiteral(":/KVC/image/folder-open"), tr("Open File Browser"));
    connect(file, &QToolButton::released, this, &KorvaneScriptorEditor::openFile);
    QToolButton* find = addTool(*toolBar, QStringLiteral(":/KVC/image/find"), tr("Search"));
    find->setShortcut(QKeySequence(QKeySequence::Find));
    connect(find, &QToolButton::released, this, &KorvaneScriptorEditor::openScriptHelp);
    layout->addSpacerItem(new QSpacerItem(30, 24, QSizePolicy::Expanding, QSizePolicy::Minimum));
    return toolBar;
}

QWidget* KorvaneScriptorEditor::createOutputPanel()
{
    auto* panel = new QWidget(m_splitter);
    auto* layout = new QVBoxLayout(panel);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(new QLabel(tr("Output: "), panel));
    m_console = new QTextBrowser(panel);
    layout->addWidget(m_console);
    return panel;
}

void KorvaneScriptorEditor::setCurrentCanvas(KVCanvasInterface* canvas)
{
    m_canvas = canvas;
}

QString KorvaneScriptorEditor::script() const
{
    return m_textArea ? m_textArea->toPlainText() : QString();
}

void KorvaneScriptorEditor::setScript(const QString& script)
{
    if (!m_textArea)
        return;
    m_scriptInterface->refreshEditingContext(m_textArea, m_canvas);
    m_textArea->setPlainText(script);
}

void KorvaneScriptorEditor::clear()
{
    if (m_textArea)
        m_textArea->clear();
    if (m_console)
        m_console->clear();
}

void KorvaneScriptorEditor::compile()
{
    if (!m_textArea)
        return;
    m_console->clear();
    if (!m_canvas) {
        m_scriptInterface->run(script());
        return;
    }
    m_scriptInterface->runForCanvas(m_canvas, script());
    m_scriptInterface->refreshEditingContext(m_textArea, m_canvas);
}

void KorvaneScriptorEditor::slotStdOut(const QString& text)
{
    takeOutput(m_outputBuffer, text);
}

void KorvaneScriptorEditor::slotStdErr(const QString& text)
{
    takeOutput(m_errorBuffer, text);
}

void KorvaneScriptorEditor::takeOutput(QString& buffer, const QString& text)
{
    // Only the new text can hold a line feed: an endless line that comes in small pieces is never searched again.
    const int rest = text.lastIndexOf(QLatin1Char('\n')) + 1;
    if (rest == 0) {
        buffer += text;
        return;
    }
    const QString lines = std::exchange(buffer, text.mid(rest)) + text.leftRef(rest);
    if (!m_console)
        return;
    ConsoleWriter writer(*m_console);
    int start = 0;
    for (int end = lines.indexOf(QLatin1Char('\n')); end >= 0; end = lines.indexOf(QLatin1Char('\n'), start)) {
        writer.addParagraph(lines.mid(start, end - start));
        start = end + 1;
    }
}

void KorvaneScriptorEditor::consoleMessage(const QString& text)
{
    if (m_console)
        ConsoleWriter(*m_console).addParagraph(text);
}

void KorvaneScriptorEditor::openScriptHelp()
{
    if (!m_findDialog) {
        m_findDialog = new FindDialog(this);
        connect(m_findDialog, SIGNAL(findNext(QString, Qt::CaseSensitivity)), this,
                SLOT(findNext(QString, Qt::CaseSensitivity)));
        connect(m_findDialog, SIGNAL(findPrevious(QString, Qt::CaseSensitivity)), this,
                SLOT(findPrevious(QString, Qt::CaseSensitivity)));
    }
    m_findDialog->show();
    m_findDialog->raise();
    m_findDialog->activateWindow();
}

void KorvaneScriptorEditor::findNext(const QString& text, Qt::CaseSensitivity sensitivity)
{
    if (!m_textArea)
        return;
    const QTextDocument* document = m_textArea->document();
    QTextCursor found = document->find(text, m_textArea->textCursor(), findFlags(sensitivity));
    if (found.isNull())
        found = document->find(text, 0, findFlags(sensitivity));
    if (!found.isNull())
        m_textArea->setTextCursor(found);
}

void KorvaneScriptorEditor::findPrevious(const QString& text, Qt::CaseSensitivity sensitivity)
{
    if (!m_textArea)
        return;
    // Kept: unlike findNext, it does not go round.
    const QTextCursor found = m_textArea->document()->find(text, m_textArea->textCursor(),
                                                           findFlags(sensitivity) | QTextDocument::FindBackward);
    if (!found.isNull())
        m_textArea->setTextCursor(found);
}

void KorvaneScriptorEditor::openFile()
{
    if (!m_textArea)
        return;
    const QString file = QFileDialog::getOpenFileName(this, tr("Select file"), QString(),
                                                      tr("Canvas File (*.pws);;Sound File (*.wav);;All Files(*.*)"));
    // Kept: a cancelled dialog is not told apart from a file.
    const QString path = QDir(QCoreApplication::applicationDirPath()).relativeFilePath(file);
    m_textArea->insertPlainText(QLatin1Char('\'') + path + QLatin1Char('\''));
}

void KorvaneScriptorEditor::openPointBrowser()
{
    auto* browser = new PointBrowserDialog(this, Qt::Window, browsedTypes, nullptr);
    connect(browser, &PointBrowserDialog::emitOk, this, &KorvaneScriptorEditor::addPointName);
    browser->setAttribute(Qt::WA_DeleteOnClose);
    browser->show();
}

void KorvaneScriptorEditor::addPointName()
{
    const auto* browser = qobject_cast<PointBrowserDialog*>(sender());
    if (browser && m_textArea)
        m_textArea->insertPlainText(browser->getSelectedItem().tag);
}

void KorvaneScriptorEditor::hideEvent(QHideEvent* event)
{
    if (m_findDialog)
        m_findDialog->hide();
    QWidget::hideEvent(event);
}
