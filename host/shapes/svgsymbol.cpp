#include "host/shapes/svgsymbol.h"

#include "host/shapes/placeholder.h"
#include "host/shapes/shapepainter.h"
#include "host/shapes/shapeproperty.h"

#include <QDir>
#include <QFileInfo>

namespace {

struct Search
{
    QStringList folders;
    int setting = 1; // counts the settings
};

Search& search()
{
    static Search the;
    return the;
}

/// The file's path; empty when no folder has it. A page may name what lies below the folders, nothing beside them.
QString found(const QString& source)
{
    const QString name = QDir::cleanPath(source);
    if (source.isEmpty() || QDir::isAbsolutePath(name) || name == QLatin1String("..") ||
        name.startsWith(QLatin1String("../")))
        return {};
    for (const QString& folder : search().folders) {
        const QFileInfo file(QDir(folder), name);
        if (file.isFile())
            return file.absoluteFilePath();
    }
    return {};
}

} // namespace

const ShapeClass& SvgSymbol::staticClass()
{
    using namespace ShapeProperties;
    static const ShapeClass self = {
        QLatin1String("SvgSymbol"),
        Shape::withCommon({
            of<&SvgSymbol::m_source>("Source"),
            of<&SvgSymbol::m_state>("State"),
        }),
        [] { return std::unique_ptr<Shape>(new SvgSymbol); },
    };
    return self;
}

void SvgSymbol::setSearchPaths(const QStringList& folders)
{
    search().folders = folders;
    ++search().setting;
    SvgDrawing::forgetAll();
}

QStringList SvgSymbol::searchPaths()
{
    return search().folders;
}

void SvgSymbol::load() const
{
    if (m_source == m_loadedSource && m_state == m_loadedState && search().setting == m_loadedPaths)
        return;
    m_loadedSource = m_source;
    m_loadedState = m_state;
    m_loadedPaths = search().setting;
    const QString path = found(m_source);
    m_drawing = path.isEmpty() ? nullptr : SvgDrawing::of(path, m_state);
}

void SvgSymbol::draw(const ShapePainter& canvas) const
{
    load();
    if (m_drawing)
        m_drawing->draw(canvas.painter(), geometry());
    else
        Placeholder::drawBox(canvas, geometry(), m_source.isEmpty() ? QStringLiteral("SVG") : m_source);
}
