#pragma once

#include "host/canvas/operation.h"
#include "host/hostexport.h"
#include "platform/data/objectkey.h"

#include <QObject>
#include <QString>
#include <QVariantList>

#include <functional>
#include <optional>

class CanvasView;
class RuntimeDatabase;
class RuntimeManager;
class Shape;
struct Page;

/// Carries what an operator does on a page to the runtime manager: pushes of buttons, what is written into fields and
/// chosen from lists, and keys.
///
/// A shape with an operation and a fixed value gives its command at once; one without asks for the value first, in a
/// dialog, but for fields and lists, which have it already. A command that needs a reason asks for it.
class KORVANE_HOST_EXPORT PageOperations : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(PageOperations)

public:
    struct Services
    {
        RuntimeManager& manager;
        const RuntimeDatabase& database;
        /// Whether clicks are for the plant now; always unless set.
        std::function<bool()> isOperating = {};
    };

    /// \param view of the page; its parent too
    /// \param page, services must outlive this
    PageOperations(CanvasView& view, const Page& page, const Services& services);
    ~PageOperations() override;

    /// Does what \p shape stands for, as if it had been pushed.
    void push(const Shape& shape);

Q_SIGNALS:
    /// Nothing was requested, since \p text.
    void refused(const QString& text);

private:
    void connectKeys();
    void takeAct(const Shape& shape, const QString& handler, const QVariantList& arguments);
    void enterText(const Shape& shape, const Operation& operation);
    void enterChoice(const Shape& shape, const Operation& operation, int index);
    void request(const Operation& operation, std::optional<double> value);
    void send(const Operation& operation, double value, const QString& reason);
    ObjectKey objectOf(const Operation& operation) const;

    CanvasView& m_view;
    const Page& m_page;
    Services m_services;
};
