#include "host/scriptediting/scriptcompleter_p.h"

#include "host/scriptediting/completionfilter_p.h"
#include "host/scriptediting/completionlist_p.h"

#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextBlock>

namespace {

constexpr int enoughLetters = 2;

/// Text as it stands between such quotes.
QString escaped(QString text, QChar quote)
{
    text.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    return text.replace(quote, QLatin1Char('\\') + QString(quote));
}

void offerAll(CompletionFilter& filter, const std::vector<ScriptVocabulary::Word>& words)
{
    for (const ScriptVocabulary::Word& word : words)
        filter.offer(word.text, word.hint);
}

void offerAll(CompletionFilter& filter, const QStringList& texts)
{
    for (auto text = texts.begin(); text != texts.end() && !filter.isFull(); ++text)
        filter.offer(*text);
}

bool isMoving(int key)
{
    return key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp || key == Qt::Key_PageDown;
}

bool isAccepting(int key)
{
    return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Tab;
}

} // namespace

ScriptCompleter::ScriptCompleter(QPlainTextEdit& editor)
    : QObject(&editor), m_editor(editor), m_list(new CompletionList(&editor))
{
    connect(&editor, &QPlainTextEdit::cursorPositionChanged, this, &ScriptCompleter::follow);
    connect(editor.verticalScrollBar(), &QScrollBar::valueChanged, this, &ScriptCompleter::followScrolling);
    connect(editor.horizontalScrollBar(), &QScrollBar::valueChanged, this, &ScriptCompleter::followScrolling);
    connect(m_list, &QAbstractItemView::clicked, this, &ScriptCompleter::accept);
    editor.installEventFilter(this);
}

ScriptCompleter::~ScriptCompleter()
{
    delete m_list;
}

void ScriptCompleter::setVocabulary(const ScriptVocabulary& vocabulary)
{
    m_vocabulary = vocabulary;
    if (isOpen())
        show(matches(), m_list->current());
}

bool ScriptCompleter::isOpen() const
{
    return m_list && m_list->isVisible();
}

bool ScriptCompleter::wants(const QKeyEvent& event) const
{
    if (!isOpen() || (event.modifiers() & ~Qt::KeypadModifier))
        return false;
    return isMoving(event.key()) || isAccepting(event.key()) || event.key() == Qt::Key_Escape;
}

bool ScriptCompleter::takeKey(const QKeyEvent& event)
{
    if (!wants(event))
        return false;
    if (m_list->move(event.key()))
        return true;
    if (event.key() == Qt::Key_Escape) {
        dismiss();
        return true;
    }
    // A name that stands there already is not completed by Return: the line is broken, as without a list.
    const bool isText = m_place.kind == CompletionPlace::Kind::Text;
    return accept() || isText || event.key() == Qt::Key_Tab;
}

void ScriptCompleter::noteTyped()
{
    if (isOpen())
        return;
    const CompletionPlace place = placeAtCursor();
    const bool isWord = place.kind == CompletionPlace::Kind::Word;
    const bool isBegun = place.typed.size() <= (isWord ? 1 : 0);
    if (place.begin != m_dismissed || isBegun)
        m_dismissed = -1;
    if (place.begin == m_dismissed || (isWord && place.typed.size() < enoughLetters))
        return;
    m_isRequested = false;
    popUp(place);
}

void ScriptCompleter::open()
{
    if (isOpen())
        return;
    m_isRequested = true;
    popUp(placeAtCursor());
}

CompletionPlace ScriptCompleter::placeAtCursor() const
{
    const QString source = m_editor.toPlainText();
    return CompletionPlace::atEndOf(QStringView(source).left(m_editor.textCursor().position()));
}

void ScriptCompleter::popUp(const CompletionPlace& place)
{
    if (place.kind == CompletionPlace::Kind::None)
        return;
    m_place = place;
    if (place.kind != CompletionPlace::Kind::Text)
        m_names = DocumentNames::of(m_editor.toPlainText(), m_editor.textCursor().position());
    show(matches(), {});
}

ScriptCompleter::Words ScriptCompleter::matches() const
{
    CompletionFilter filter(m_place.typed);
    if (m_place.kind == CompletionPlace::Kind::Text) {
        const QString kind = m_vocabulary.argumentKinds.value(m_place.owner);
        offerAll(filter, m_vocabulary.texts.value(kind));
    } else {
        offerNames(filter);
    }
    return filter.picked();
}

void ScriptCompleter::offerNames(CompletionFilter& filter) const
{
    if (m_place.kind == CompletionPlace::Kind::Word) {
        offerAll(filter, m_vocabulary.words);
        offerAll(filter, m_names.bare);
        return;
    }
    const auto known = m_vocabulary.members.constFind(m_place.owner);
    if (known != m_vocabulary.members.constEnd())
        offerAll(filter, *known);
    else
        offerAll(filter, m_names.members);
}

void ScriptCompleter::show(Words words, const QString& current)
{
    const bool isComplete = words.size() == 1 && words.front().text == m_place.typed;
    if (words.empty() || isComplete) {
        close();
        return;
    }
    m_list->setWords(std::move(words), current);
    placeList();
}

void ScriptCompleter::placeList()
{
    QTextCursor begin = m_editor.textCursor();
    begin.setPosition(m_place.begin);
    const QWidget& viewport = *m_editor.viewport();
    const QRect typed = m_editor.cursorRect(begin);
    if (!viewport.rect().contains(m_editor.cursorRect().center())) {
        close();
        return;
    }
    m_list->lookLike(m_editor);
    QWidget& window = *m_editor.window();
    m_list->popUp(window, {viewport.mapTo(&window, typed.topLeft()), typed.size()});
}

void ScriptCompleter::followScrolling()
{
    if (isOpen())
        placeList();
}

void ScriptCompleter::close()
{
    if (m_list)
        m_list->hide();
}

void ScriptCompleter::dismiss()
{
    m_dismissed = m_place.begin;
    close();
}

void ScriptCompleter::follow()
{
    if (!isOpen())
        return;
    const CompletionPlace place = placeAtCursor();
    const bool isSame = place.kind == m_place.kind && place.begin == m_place.begin;
    const bool isEmptied = place.kind == CompletionPlace::Kind::Word && place.typed.isEmpty() && !m_isRequested;
    if (!isSame || isEmptied || m_editor.textCursor().hasSelection()) {
        close();
        return;
    }
    m_place = place;
    show(matches(), {});
}

bool ScriptCompleter::accept()
{
    const QString chosen = m_list->current();
    close();
    if (chosen == m_place.typed)
        return false;
    const bool isEscaped = m_place.kind == CompletionPlace::Kind::Text && !m_place.isRaw;
    const QString text = isEscaped ? escaped(chosen, m_place.quote) : chosen;
    QTextCursor cursor = m_editor.textCursor();
    const int end = cursor.position() + lengthBehind(text);
    cursor.setPosition(m_place.begin);
    cursor.setPosition(end, QTextCursor::KeepAnchor);
    cursor.insertText(text);
    m_editor.setTextCursor(cursor);
    m_editor.ensureCursorVisible();
    return true;
}

int ScriptCompleter::lengthBehind(const QString& text) const
{
    const QTextCursor cursor = m_editor.textCursor();
    const QString line = cursor.block().text();
    const int begin = cursor.positionInBlock();
    const bool isText = m_place.kind == CompletionPlace::Kind::Text;
    int end = begin;
    while (end < line.size() &&
           (isText ? line[end] != m_place.quote : line[end].isLetterOrNumber() || line[end] == QLatin1Char('_')))
        ++end;
    const int typed = cursor.position() - m_place.begin;
    const bool isThere = text.size() >= typed + end - begin && text.endsWith(line.midRef(begin, end - begin));
    return isThere ? end - begin : 0;
}

bool ScriptCompleter::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::FocusOut:
    case QEvent::Hide:
    case QEvent::Move: // inside its window
    case QEvent::ReadOnlyChange:
    case QEvent::Resize:
        close();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}
