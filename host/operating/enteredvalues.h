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
    /// \param page must outlive this
    explicit EnteredValues(const Page& page) : m_page(page) {}

    /// What the operator entered into \p shape last is on its way as that request.
    void follow(Shape& shape, quint32 requestId);
    /// What the operator entered into \p shape last is not asked for.
    void takeBack(Shape& shape);
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
