#include "host/scripting/scriptcatalogue_p.h"

#include "host/scripting/pythonruntime_p.h"
#include "host/scripting/pythonvalues_p.h"

namespace {

using PythonValues::text;

std::vector<ScriptCatalogue::Owner> readOwners()
{
    std::vector<ScriptCatalogue::Owner> found;
    for (const py::handle owner : PythonRuntime::instance().catalogue()) {
        const auto parts = py::reinterpret_borrow<py::tuple>(owner);
        ScriptCatalogue::Owner read{text(py::object(parts[0]).ptr()), text(py::object(parts[1]).ptr()), {}};
        for (const py::handle entry : py::list(parts[2])) {
            const auto texts = py::reinterpret_borrow<py::tuple>(entry);
            read.entries.push_back(
                {text(py::object(texts[0]).ptr()), text(py::object(texts[1]).ptr()), text(py::object(texts[2]).ptr())});
        }
        found.push_back(std::move(read));
    }
    return found;
}

} // namespace

const std::vector<ScriptCatalogue::Owner>& ScriptCatalogue::owners()
{
    static const std::vector<Owner> all = readOwners();
    return all;
}
