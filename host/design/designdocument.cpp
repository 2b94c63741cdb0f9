#include "host/design/designdocument.h"

#include "host/canvas/pagereader.h"
#include "host/canvas/pagewriter.h"
#include "host/runtime/runtimedatabase.h"
#include "host/scripting/scriptengine.h"
#include "host/shapes/placeholder.h"

#include <QCryptographicHash>
#include <QFile>

#include <algorithm>
#include <utility>

namespace {

// Empty for a file that can't be read.
QByteArray hashOfFile(const QString& fileName)
{
    QFile file(fileName);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    return file.open(QIODevice::ReadOnly) && hash.addData(&file) ? hash.result() : QByteArray();
}

bool areSame(const QList<ScadaScriptAction>& before, const QList<ScadaScriptAction>& after)
{
    const auto isSame = [](ScadaScriptAction a, ScadaScriptAction b) {
        return a.triggetType() == b.triggetType() && a.isEqual(b);
    };
    return std::equal(before.begin(), before.end(), after.begin(), after.end(), isSame);
}

} // namespace

tl::expected<std::unique_ptr<DesignDocument>, QString>
DesignDocument::open(const QString& fileName, CanvasScadaActionManagerFactoryInterface& managers,
                     RuntimeDatabase& database, ScriptEngine& scripts)
{
    const QByteArray hash = hashOfFile(fileName);
    auto page = PageReader(managers, &database).readFile(fileName);
    if (!page)
        return tl::make_unexpected(page.error());
    auto trial = PageReader(managers).read(PageWriter::write(*page), fileName);
    if (!trial)
        return tl::make_unexpected(trial.error());
    std::unique_ptr<DesignDocument> document(new DesignDocument(std::move(*page), std::move(*trial), scripts));
    document->m_fileHash = hash;
    return document;
}

DesignDocument::DesignDocument(Page page, Page trial, ScriptEngine& scripts)
    : m_page(std::move(page)), m_trial(std::move(trial)), m_scripts(scripts)
{
}

DesignDocument::~DesignDocument()
{
    m_scripts.forgetCanvas(m_trial.canvas.get());
}

bool DesignDocument::canHaveScripts(const Shape* shape)
{
    return !dynamic_cast<const Placeholder*>(shape);
}

void DesignDocument::setScripts(const Shape* shape, const QList<ScadaScriptAction>& scripts)
{
    if (!canHaveScripts(shape))
        return;
    QList<ScadaScriptAction> filled;
    for (const ScadaScriptAction& script : scripts) {
        if (!script.script().isEmpty())
            filled.append(script);
    }
    if (areSame(m_page.events.scripts(shape), filled))
        return;
    m_page.events.setScripts(shape, filled);
    setModified(true);
    Q_EMIT scriptsChanged(shape);
}

bool DesignDocument::isFileChanged() const
{
    return hashOfFile(m_page.fileName) != m_fileHash;
}

tl::expected<void, QString> DesignDocument::save()
{
    if (auto written = PageWriter::writeFile(m_page, m_page.fileName); !written)
        return written;
    // Of what was written: somebody else may have written since.
    m_fileHash = QCryptographicHash::hash(PageWriter::write(m_page), QCryptographicHash::Sha256);
    setModified(false);
    return {};
}

void DesignDocument::setModified(bool modified)
{
    if (modified == m_isModified)
        return;
    m_isModified = modified;
    Q_EMIT modifiedChanged(modified);
}
