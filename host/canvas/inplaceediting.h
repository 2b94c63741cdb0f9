#pragma once

#include "host/hostexport.h"

#include <QObject>
#include <QPointer>
#include <QRect>
#include <QSizeF>
#include <QStringList>

class CanvasView;
class Choice;
class DateField;
class InputField;
class QFrame;
class QWidget;
class Shape;

/// Lets the operator edit shapes where they lie on a page: a line editor over an InputField, a list below a Choice, a
/// calendar below a DateField. One shape at a time.
///
/// The editor follows the zoom, the scroll bars and the shape. Escape ends it and leaves the shape as it was; Return, or
/// a choice made, hands over what was entered; anything else that ends it keeps what was typed so far: the loss of the
/// focus, a click elsewhere, another arrangement of the page, a shape that is hidden or switched off.
class KORVANE_HOST_EXPORT InPlaceEditing : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(InPlaceEditing)

public:
    /// \param view not owned, must outlive this
    explicit InPlaceEditing(CanvasView& view);
    ~InPlaceEditing() override;

    /// Whether \p shape is of a class that is edited so.
    static bool canEdit(const Shape& shape);

    /// Opens the editor of \p shape, and ends the one before.
    /// \returns false, with nothing opened, for one that can't be edited (now), or a choice without entries
    bool open(Shape& shape);
    void close();
    /// The shape that is being edited; null for none.
    Shape* shape() const { return m_shape; }

    /// Places the editor where its shape lies now, or ends it when the shape can't be edited any more: to be called
    /// whenever the view or the page changed.
    void follow();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void editText(InputField& field);
    void editChoice(Choice& choice);
    void editDate(DateField& field);
    void openPopup(QFrame* popup, QWidget* content);
    void watch(QWidget* window, QWidget* content);
    bool takeKey(int key, bool isRepeated);
    void enterText(const QString& text);
    void cancel();

    int scaledFontSize(int mostPixels) const;
    void placeOver(const QRect& field, const QSizeF& size);
    void placePopup(const QRect& field);

    CanvasView& m_view;
    Shape* m_shape = nullptr;
    QPointer<QWidget> m_window;  ///< what lies over or beside the shape; it belongs to the view
    QPointer<QWidget> m_content; ///< what has the focus in it
    QStringList m_entries;       ///< of the list that is shown
    QRect m_field;               ///< where what is edited lay when the editor was placed
    double m_zoom = 0;           ///< likewise
};
