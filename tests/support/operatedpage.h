#pragma once

#include "host/canvas/canvas.h"
#include "host/canvas/canvasview.h"
#include "host/shapes/shapefactory.h"

#include <QApplication>
#include <QStringList>
#include <QWheelEvent>
#include <QtTest>

#include <functional>
#include <memory>
#include <utility>

/// A shown page of 400 by 300 in its own size, worked with by real events, and what its shapes tell.
class OperatedPage
{
public:
    OperatedPage()
    {
        canvas->setSize({400, 300});
        layer = &canvas->addLayer(QStringLiteral("layer"));
        QObject::connect(canvas.get(), &Canvas::acted, canvas.get(),
                         [this](Shape* shape, const QString& handler, const QVariantList& arguments) {
                             told.append(shape->name() + QLatin1Char('.') + handler + inBrackets(arguments));
                             if (heard)
                                 heard(*shape);
                         });
    }

    /// A shape with its defaults, on top of the others.
    template <typename ShapeType>
    ShapeType& add(const QRectF& place, const char* name)
    {
        auto& shape = static_cast<ShapeType&>(
            canvas->addShape(*layer, ShapeFactory::create(QLatin1String(ShapeType::staticClass().name))));
        shape.setPlace(place);
        shape.setName(QString::fromLatin1(name));
        return shape;
    }

    /// Shows the page at \p zoom and gives it the keyboard.
    void show(double zoom = 1, const QSize& size = {400, 300})
    {
        view = std::make_unique<CanvasView>(*canvas);
        view->resize(size);
        view->setZoom(zoom);
        view->show();
        view->activateWindow();
        const bool isActive = QTest::qWaitForWindowActive(view.get());
        Q_ASSERT(isActive);
        view->setFocus();
        settle();
    }
    /// Lets everything that waits happen.
    static void settle()
    {
        for (int turn = 0; turn < 3; ++turn) {
            QCoreApplication::sendPostedEvents();
            QCoreApplication::processEvents();
        }
    }

    QPoint toView(const QPointF& page) const { return view->renderer().transform().map(page).toPoint(); }
    QPoint middleOf(const Shape& shape) const { return toView(shape.mapToScene(shape.geometry().center())); }
    void click(const QPointF& page, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseClick(view->viewport(), button, {}, toView(page));
    }
    void click(const Shape& shape) { QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, middleOf(shape)); }
    /// Clicks where the window's system says that the pointer is, so that an open list or calendar takes notice.
    void clickWindow(const QPointF& page)
    {
        QTest::mouseClick(view->windowHandle(), Qt::LeftButton, {}, toView(page));
        settle();
    }
    /// What a double click sends: press, release, double click, release.
    void doubleClick(const QPointF& page)
    {
        click(page);
        QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, toView(page));
        QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, toView(page));
    }
    /// Presses and releases a key where the keyboard is.
    static void key(int code, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(code), modifiers);
    }
    void turnWheel(const QPointF& page, int angle, Qt::KeyboardModifiers modifiers = {})
    {
        const QPoint position = toView(page);
        QWheelEvent event(position, view->viewport()->mapToGlobal(position), {}, {0, angle}, Qt::NoButton, modifiers,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(view->viewport(), &event);
    }

    /// What lies open over or beside a shape; null for nothing.
    template <typename Editor>
    Editor* editor() const
    {
        const auto all = view->findChildren<Editor*>();
        for (Editor* each : all) {
            if (each->isVisible())
                return each;
        }
        return nullptr;
    }

    /// What was told since it was last asked, as "name.handler(argument, ...)"; texts of a list are joined by "|".
    QStringList takeTold() { return std::exchange(told, {}); }

    static QVariant get(const Shape& shape, const char* property)
    {
        return shape.namedProperty(QString::fromLatin1(property));
    }
    static bool set(Shape& shape, const char* property, const QVariant& value)
    {
        return shape.setNamedProperty(QString::fromLatin1(property), value);
    }

    std::unique_ptr<Canvas> canvas = std::make_unique<Canvas>(QStringLiteral("page"));
    Layer* layer = nullptr;
    std::unique_ptr<CanvasView> view; ///< goes before the page
    QStringList told;
    std::function<void(Shape&)> heard; ///< called with each that is told

private:
    static QString inBrackets(const QVariantList& arguments)
    {
        QStringList texts;
        for (const QVariant& argument : arguments)
            texts.append(argument.userType() == QMetaType::QStringList ? argument.toStringList().join(QLatin1Char('|'))
                                                                       : argument.toString());
        return QLatin1Char('(') + texts.join(QStringLiteral(", ")) + QLatin1Char(')');
    }
};

/// Drops what the off-screen platform says about each list and calendar that opens: there, windows have no order and
/// nothing else competes for the keyboard. To be called once, before the first.
inline void dropPopupMessages()
{
    static QtMessageHandler next = nullptr;
    const QtMessageHandler drop = [](QtMsgType type, const QMessageLogContext& context, const QString& text) {
        if (!text.startsWith(QLatin1String("This plugin does not support ")))
            next(type, context, text);
    };
    next = qInstallMessageHandler(drop);
}
