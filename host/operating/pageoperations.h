#pragma once

#include "host/canvas/operation.h"
#include "host/hostexport.h"
#include "host/operating/enteredvalues.h"
#include "host/runtime/runtimedatabase.h"
#include "platform/data/objectkey.h"

#include <QHash>
#include <QKeySequence>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include <functional>
#include <optional>

class CanvasView;
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
        /// Keys that mean something else wherever the page is shown: no operation has them.
        QList<QKeySequence> takenKeys = {};
    };

    /// \param view of the page; its parent too
    /// \param page, services must outlive this
    PageOperations(CanvasView& view, const Page& page, const Services& services);
    ~PageOperations() override;

    /// Operations whose keys do nothing, and why: a text each.
    const QStringList& problems() const { return m_problems; }

    /// Does what \p shape stands for, as if it had been pushed.
    void push(const Shape& shape);

Q_SIGNALS:
    /// Nothing was requested, since \p text.
    void refused(const QString& text);

private:
    using Entered = EnteredValues::Entered;
    void connectKeys();
    QString whyKeyIsTaken(const QKeySequence& key) const;
    void takeAct(Shape& shape, const QString& handler, const QVariantList& arguments);
    void enterText(Shape& shape, const Operation& operation);
    void enterChoice(Shape& shape, const Operation& operation, int index);
    void request(const Operation& operation, std::optional<double> value, const Entered& entered = {});
    void ask(const Operation& operation, std::optional<double> value, const RuntimeDatabase::Object& object,
             const Entered& entered);
    void refuse(const QString& text, const Entered& entered);
    void send(const Operation& operation, double value, const QString& reason, const Entered& entered);
    quint32 begin(const Operation& operation, double value, const QString& reason);
    ObjectKey objectOf(const Operation& operation) const;

    CanvasView& m_view;
    const Page& m_page;
    Services m_services;
    EnteredValues m_entered;
    QHash<QKeySequence, QString> m_keys; ///< with the shapes that have them
    QStringList m_problems;
};
