#include "host/scripting/pythonvalues_p.h"
#include "host/scripting/scriptmodule_p.h"
#include "host/scripting/scriptsession_p.h"
#include "scada/audio/korvanettsinterface.h"
#include "scada/audio/waveplayer.h"
#include "scada/hub/korvanescadacoreinterface.h"

#include <QDir>
#include <QFileInfo>

namespace {

using PythonValues::text;
using ScriptModule::raise;
using ScriptModule::session;

// The player delivers events while it starts, and a script may not run within another.
void playSound(const py::str& name)
{
    const QString file = QDir(session().folder).absoluteFilePath(text(name.ptr()));
    if (!QFileInfo(file).isFile())
        raise(PyExc_FileNotFoundError, QStringLiteral("there is no sound file \"%1\"").arg(text(name.ptr())));
    session().later([&player = session().player(), file] { player.play(file); });
}

void stopSound()
{
    session().later([&player = session().player()] { player.stop(); });
}

void say(const py::str& message, const py::str& language)
{
    KorvaneTTSInterface* voice = session().hub().ttsInterface();
    if (!voice)
        raise(PyExc_RuntimeError, QStringLiteral("this system has no voice"));
    const QString code = text(language.ptr());
    if (code != QLatin1String("en") && code != QLatin1String("ko"))
        raise(PyExc_ValueError, QStringLiteral("\"%1\" is no language of a voice: \"en\" or \"ko\"").arg(code));
    const QLocale::Language spoken = code == QLatin1String("ko") ? QLocale::Korean : QLocale::English;
    session().later([voice, spoken, said = text(message.ptr())] { voice->playMessage(said, spoken); });
}

} // namespace

void ScriptModule::defineSound(py::module_ sound)
{
    sound.def(
        "play", &playSound, py::arg("file"),
        "play(file)\n\nPlays a WAV file, as seen from the project's folder, once the script has ended; one that is "
        "played ends. Raises FileNotFoundError. The alarms' own sounds are not touched.");
    sound.def("stop", &stopSound, "stop()\n\nEnds the sound that a script has played.");
}

void ScriptModule::defineSpeech(py::module_ speech)
{
    speech.def(
        "say", &say, py::arg("message"), py::arg("language") = "en",
        "say(message, language='en')\n\nSpeaks a message in English (\"en\") or Korean (\"ko\") once the script has "
        "ended; what is spoken ends. Silent where that voice is not installed.");
}
