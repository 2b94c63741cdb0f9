#include "host/canvas/inplaceediting.h"

#include "host/canvas/canvas.h"
#include "host/canvas/canvasview.h"
#include "host/shapes/choice.h"
#include "host/shapes/datefield.h"
#include "host/shapes/inputfield.h"

#include <QApplication>
#include <QCalendarWidget>
#include <QFocusEvent>
#include <QFrame>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QScreen>
#include <QStyledItemDelegate>
#include <QTextCharFormat>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace {

constexpr int leastFont = 8;       // pixels
constexpr int mostPopupFont = 22;  // a larger calendar would not fit beside its field
constexpr int mostEntries = 12;    // in sight
constexpr double frameWidth = 3;   // of a field that is written into
constexpr double lineHeight = 1.3; // of an editor's text, in font sizes

bool isReturn(int key)
{
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

void setColors(QWidget& widget, const OperableShape& shape)
{
    QPalette colors = widget.palette();
    colors.setColor(QPalette::Base, shape.fillColor().isValid() ? shape.fillColor() : Palette::paper);
    colors.setColor(QPalette::Text, shape.textColor().isValid() ? shape.textColor() : Palette::ink);
    widget.setPalette(colors);
}

// Entries high enough for a finger.
class EntryDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        const int height = option.fontMetrics.height();
        return {QStyledItemDelegate::sizeHint(option, index).width() + height, height * 3 / 2};
    }
};

QFrame* makePopup(QWidget* parent)
{
    auto* popup = new QFrame(parent, Qt::Popup | Qt::FramelessWindowHint);
    popup->setAttribute(Qt::WA_NoMouseReplay); // a click beside it closes it, and does nothing else
    popup->setFrameStyle(QFrame::Box | QFrame::Plain);
    auto* layout = new QVBoxLayout(popup);
    layout->setContentsMargins(0, 0, 0, 0);
    return popup;
}

} // namespace

InPlaceEditing::InPlaceEditing(CanvasView& view) : m_view(view)
{
    // With the page its shapes went; what lies over them goes with the view.
    connect(&view.canvas(), &QObject::destroyed, this, [this] { m_shape = nullptr; });
}

InPlaceEditing::~InPlaceEditing()
{
    if (auto* field = dynamic_cast<InputField*>(m_shape))
        field->endEditing();
}

bool InPlaceEditing::canEdit(const ::Shape& shape)
{
    return dynamic_cast<const InputField*>(&shape) || dynamic_cast<const Choice*>(&shape) ||
           dynamic_cast<const DateField*>(&shape);
}

bool InPlaceEditing::open(::Shape& shape)
{
    close();
    if (!shape.usableInput())
        return false;
    if (auto* field = dynamic_cast<InputField*>(&shape))
        editText(*field);
    else if (auto* choice = dynamic_cast<Choice*>(&shape))
        editChoice(*choice);
    else if (auto* date = dynamic_cast<DateField*>(&shape))
        editDate(*date);
    return m_shape;
}

void InPlaceEditing::editText(InputField& field)
{
    auto* editor = new QLineEdit(field.shownText(), m_view.viewport());
    editor->setFrame(false);
    setColors(*editor, field);
    connect(editor, &QLineEdit::textEdited, this, [&field](const QString& text) { field.write(text); });
    field.beginEditing();
    m_shape = &field;
    watch(editor, editor);
    editor->show();
    editor->selectAll();
    editor->setFocus();
}

void InPlaceEditing::editChoice(Choice& choice)
{
    if (choice.items().isEmpty())
        return;
    QFrame* popup = makePopup(&m_view);
    auto* list = new QListWidget(popup);
    m_entries = choice.items();
    list->addItems(m_entries);
    list->setFrameShape(QFrame::NoFrame);
    list->setItemDelegate(new EntryDelegate(list));
    list->setMouseTracking(true);
    list->setCurrentRow(std::clamp(choice.index(), 0, m_entries.size() - 1));
    setColors(*list, choice);
    const auto take = [this, list, &choice](const QListWidgetItem* item) {
        const int row = list->row(item);
        close();
        choice.choose(row);
    };
    connect(list, &QListWidget::itemClicked, this, take);
    connect(list, &QListWidget::itemActivated, this, take);
    connect(list, &QListWidget::itemEntered, list, [list](QListWidgetItem* item) { list->setCurrentItem(item); });
    m_shape = &choice;
    openPopup(popup, list);
    list->scrollToItem(list->currentItem(), QAbstractItemView::PositionAtCenter);
}

void InPlaceEditing::editDate(DateField& field)
{
    QFrame* popup = makePopup(&m_view);
    auto* calendar = new QCalendarWidget(popup);
    calendar->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
    calendar->setDateEditEnabled(false);
    for (const Qt::DayOfWeek day : {Qt::Saturday, Qt::Sunday})
        calendar->setWeekdayTextFormat(day, {}); // red is for what is wrong
    if (field.date().isValid())
        calendar->setSelectedDate(field.date());
    const auto take = [this, &field](QDate date) {
        close();
        field.pick(date);
    };
    connect(calendar, &QCalendarWidget::clicked, this, take);
    connect(calendar, &QCalendarWidget::activated, this, take);
    m_shape = &field;
    openPopup(popup, calendar);
}

void InPlaceEditing::openPopup(QFrame* popup, QWidget* content)
{
    popup->layout()->addWidget(content);
    watch(popup, content);
    popup->show();
    content->setFocus();
}

void InPlaceEditing::watch(QWidget* window, QWidget* content)
{
    m_window = window;
    m_content = content;
    window->installEventFilter(this);
    if (content != window)
        (content->focusProxy() ? content->focusProxy() : content)->installEventFilter(this);
    m_field = {};
    follow();
}

// The editor's signals stay connected until the focus has left it: an input method hands over its last syllable then.
void InPlaceEditing::close()
{
    QWidget* window = std::exchange(m_window, nullptr);
    if (!window)
        return;
    window->removeEventFilter(this); // what happens from here on is its end
    if (m_content->hasFocus() || window->isAncestorOf(QApplication::focusWidget()))
        m_view.setFocus();
    m_content->disconnect(this);
    m_content = nullptr;
    window->hide();
    window->deleteLater(); // it may be its own event that ends it
    if (auto* field = dynamic_cast<InputField*>(std::exchange(m_shape, nullptr)))
        field->endEditing();
}

void InPlaceEditing::enterText(const QString& text)
{
    auto* field = static_cast<InputField*>(m_shape);
    close();
    field->enter(text);
}

void InPlaceEditing::cancel()
{
    auto* field = dynamic_cast<InputField*>(m_shape);
    close();
    if (field)
        field->takeBack();
}

void InPlaceEditing::follow()
{
    if (!m_shape || !m_window)
        return;
    const auto* choice = dynamic_cast<const Choice*>(m_shape);
    if (!m_shape->usableInput() || (choice && choice->items() != m_entries)) {
        close();
        return;
    }
    const auto* line = dynamic_cast<const InputField*>(m_shape);
    const QRect field = line ? m_view.viewportRect(*line, line->textArea()) : m_view.viewportRect(*m_shape);
    if (field == m_field && m_view.zoom() == m_zoom)
        return;
    m_field = field;
    m_zoom = m_view.zoom();
    if (line)
        placeOver(field, line->textArea().size() * m_zoom);
    else
        placePopup(field);
}

int InPlaceEditing::scaledFontSize(int mostPixels) const
{
    const double pixels = static_cast<const OperableShape*>(m_shape)->fontSize() * m_zoom;
    return std::clamp(qRound(pixels), std::min(leastFont, mostPixels), std::max(leastFont, mostPixels));
}

// A shape that is rotated is edited upright, about the same middle.
void InPlaceEditing::placeOver(const QRect& field, const QSizeF& size)
{
    const double edge = std::min(frameWidth * m_zoom, size.height() / 8);
    QRect place(QPoint(), QSizeF(size.width(), size.height() - 2 * edge).toSize());
    place.moveCenter(field.center());
    m_window->setFont(ShapePainter::font({scaledFontSize(static_cast<int>(place.height() / lineHeight))}));
    m_window->setGeometry(place);
}

// Below the shape, or above it where the screen ends.
void InPlaceEditing::placePopup(const QRect& field)
{
    m_window->setFont(ShapePainter::font({scaledFontSize(mostPopupFont)}));
    m_content->setFont(m_window->font());
    QSize size = m_content->sizeHint();
    if (const auto* list = qobject_cast<QListWidget*>(m_content)) {
        size = {list->sizeHintForColumn(0), list->sizeHintForRow(0) * std::min(m_entries.size(), mostEntries)};
        if (m_entries.size() > mostEntries)
            size.rwidth() += list->style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    }
    const int frame = 2 * static_cast<const QFrame*>(m_window.data())->frameWidth();
    size += QSize(frame, frame);
    size.setWidth(std::max(size.width(), field.width()));

    const QRect screen = m_view.screen()->availableGeometry();
    size = size.boundedTo(screen.size());
    const QPoint below = m_view.viewport()->mapToGlobal(field.bottomLeft() + QPoint(0, 1));
    QRect place(below, size);
    if (place.bottom() > screen.bottom())
        place.moveBottom(below.y() - field.height() - 1);
    place.moveLeft(std::clamp(place.left(), screen.left(), std::max(screen.left(), screen.right() - size.width() + 1)));
    place.moveTop(std::clamp(place.top(), screen.top(), std::max(screen.top(), screen.bottom() - size.height() + 1)));
    m_window->setFixedSize(size);
    m_window->move(place.topLeft());
}

bool InPlaceEditing::eventFilter(QObject* watched, QEvent* event)
{
    if (!m_shape) // it went with its page
        return false;
    switch (event->type()) {
    case QEvent::ShortcutOverride:
        if (static_cast<const QKeyEvent*>(event)->key() == Qt::Key_Escape)
            event->accept(); // it ends the editing, whatever else it may stand for
        break;
    case QEvent::KeyPress: {
        const auto* key = static_cast<const QKeyEvent*>(event);
        return takeKey(key->key(), key->isAutoRepeat());
    }
    case QEvent::FocusOut: // into its own menu is no loss
        if (watched == m_window && static_cast<const QFocusEvent*>(event)->reason() != Qt::PopupFocusReason)
            close();
        break;
    case QEvent::Hide:
        if (watched == m_window)
            close();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

bool InPlaceEditing::takeKey(int key, bool isRepeated)
{
    if (key == Qt::Key_Escape) {
        cancel();
        return true;
    }
    if (isReturn(key) && isRepeated) // of the key that opened the editor
        return true;
    const auto* line = qobject_cast<const QLineEdit*>(m_content);
    if (line && isReturn(key)) {
        enterText(line->text());
        return true; // a line editor leaves it to those around it, which would open it again
    }
    auto* list = qobject_cast<QListWidget*>(m_content);
    if (!list)
        return false;
    if (key == Qt::Key_Space && list->currentItem())
        Q_EMIT list->itemActivated(list->currentItem());
    else if (key == Qt::Key_Tab || key == Qt::Key_Backtab)
        close();
    else
        return false;
    return true;
}
