#include "host/scriptediting/completionlist_p.h"

#include "host/scriptediting/scriptcolours_p.h"

#include <QHeaderView>
#include <QScrollBar>
#include <QStyledItemDelegate>

namespace {

constexpr int mostRows = 10;
constexpr int hintGap = 16; ///< pixels between the words and their hints

/// Hints are fainter than words, unless they are selected.
class HintDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->palette.setColor(QPalette::Text, ScriptColours(option->palette).faintText());
    }
};

} // namespace

CompletionList::CompletionList(QWidget* parent) : QTreeView(parent), m_model(nullptr)
{
    setObjectName(QStringLiteral("completions"));
    setFrameStyle(Box | Plain);
    hide();
    setFocusPolicy(Qt::NoFocus);
    setModel(&m_model);
    setItemDelegateForColumn(CompletionModel::Hint, new HintDelegate(this));
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setHeaderHidden(true);
    setEditTriggers(NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    header()->setStretchLastSection(true);
    header()->setMinimumSectionSize(0);
}

CompletionList::~CompletionList() = default;

void CompletionList::setWords(std::vector<ScriptVocabulary::Word> words, const QString& current)
{
    m_model.setWords(std::move(words));
    mark(qMax(0, m_model.rowOf(current)));
}

QString CompletionList::current() const
{
    return currentIndex().sibling(currentIndex().row(), CompletionModel::Text).data().toString();
}

void CompletionList::mark(int row)
{
    setCurrentIndex(m_model.index(row, CompletionModel::Text));
    scrollTo(currentIndex());
}

bool CompletionList::move(int key)
{
    const int row = currentIndex().row();
    const int count = m_model.rowCount();
    switch (key) {
    case Qt::Key_Down:
        mark((row + 1) % count);
        return true;
    case Qt::Key_Up:
        mark((row + count - 1) % count);
        return true;
    case Qt::Key_PageDown:
        mark(qMin(row + mostRows, count - 1));
        return true;
    case Qt::Key_PageUp:
        mark(qMax(row - mostRows, 0));
        return true;
    default:
        return false;
    }
}

QSize CompletionList::wantedSize() const
{
    const int hints = sizeHintForColumn(CompletionModel::Hint);
    const int rows = qMin(mostRows, m_model.rowCount());
    const int bar = m_model.rowCount() > mostRows ? verticalScrollBar()->sizeHint().width() : 0;
    return {columnWidth(CompletionModel::Text) + hints + bar + 2 * frameWidth(),
            rows * sizeHintForRow(0) + 2 * frameWidth()};
}

void CompletionList::lookLike(const QWidget& editor)
{
    setFont(editor.font());
    QPalette colours = editor.palette();
    colours.setColor(QPalette::WindowText, ScriptColours(colours).frame()); // what the frame is drawn in
    setPalette(colours);
}

void CompletionList::popUp(QWidget& window, const QRect& typed)
{
    if (parentWidget() != &window)
        setParent(&window);
    setColumnWidth(CompletionModel::Text, sizeHintForColumn(CompletionModel::Text) + hintGap);
    const QRect free = window.rect();
    const int below = free.bottom() - typed.bottom();
    const int above = typed.top() - free.top();
    const QSize wanted = wantedSize();
    const bool isBelow = wanted.height() <= below || below >= above;
    QRect place(typed.topLeft(), wanted.boundedTo({free.width(), isBelow ? below : above}));
    if (isBelow)
        place.moveTop(typed.bottom() + 1);
    else
        place.moveBottom(typed.top() - 1);
    place.moveLeft(qBound(free.left(), place.left(), free.right() - place.width() + 1));
    setGeometry(place);
    raise();
    show();
}
