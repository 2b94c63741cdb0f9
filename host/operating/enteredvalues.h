#pragma once

#include "host/hostexport.h"

#include <QHash>
#include <QVariant>

#include <utility>
#include <vector>

class Shape;
struct Page;

/// What operators chose from the lists and wrote into the fields of a page, until it is known what became of it. What came
/// to nothing does not stay: the shape shows again what it showed before, or what the process has by now. A field that
/// shows a live value as well does so again at every end.
class KORVANE_HOST_EXPORT EnteredValues
{
public:
    /// What an operator has just entered.
    struct Entered
    {
        Shape* shape = nullptr; ///< null where it came by another way
        QVariant value;
        QVariant before; ///< what the shape showed
    };
    static Entered in(Shape& shape);

    /// \param page must outlive this
    explicit EnteredValues(const Page& page) : m_page(page) {}

    /// \p entered is on its way as that request.
    void follow(const Entered& entered, quint32 requestId);
    /// \p entered is not asked for.
    void takeBack(const Entered& entered);
    /// A request has ended; others than those that are followed do nothing.
    void end(quint32 requestId, bool isDone);

private:
    struct Sent
    {
        quint32 requestId = 0;
        QVariant entered;
    };
    struct Entry
    {
        QVariant standing; ///< what the shape shows without any of them
        std::vector<Sent> sent;
    };
    void show(Shape& shape, const QVariant& entered, const QVariant& instead) const;

    const Page& m_page;
    QHash<Shape*, Entry> m_entries; ///< of shapes with requests that have not ended
};
