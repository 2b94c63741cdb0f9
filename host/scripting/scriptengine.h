#pragma once

#include "host/hostexport.h"
#include "host/scripting/scriptevent.h"
#include "host/scripting/scripthandler.h"
#include "platform/core/korvanescriptinterface.h"

#include <QStringList>
#include <QVariant>

#include <chrono>
#include <functional>
#include <memory>

class AlarmDesk;
class KorvaneScadaCoreInterface;
class ScriptSession;

/// Runs the scripts of pages in an embedded Python, on the GUI thread.
///
/// Every page has one namespace, which lives from its first script until forgetCanvas(). A script finds in it "canvas",
/// "shape", "trigger" and "event", the module "korvane" and its parts "tags", "pages", "alarms", "sound", "speech" and
/// "log".
///
/// A script that runs longer than the limit, or puts out more than the limit, is stopped, whatever it catches, between
/// two of its steps: a call of Python's own that does not come back can't be. Scripts that call each other through events share the
/// outermost one's limit. All engines of a process share one interpreter, which is started by the first script and
/// never ended; the modules that a script imports and changes are shared too.
class KORVANE_HOST_EXPORT ScriptEngine : public KorvaneScriptInterface
{
    Q_OBJECT
    Q_DISABLE_COPY(ScriptEngine)

public:
    struct Limits
    {
        std::chrono::milliseconds time{2000}; ///< how long a script may run
        int output = 4 * 1024 * 1024;         ///< how many characters a script may print
    };
    enum class Severity { Information, Warning, Error };
    Q_ENUM(Severity)

    /// \param hub gives scripts tags, properties, alarms and open pages; not owned, must outlive the engine
    explicit ScriptEngine(KorvaneScadaCoreInterface& hub, QObject* parent = nullptr);
    ~ScriptEngine() override;

    void setLimits(const Limits& limits);
    const Limits& limits() const;
    /// Whether scripts run at all: true at first. Where they don't, events and handlers do nothing,
    /// and a script that the user wants to run fails and says why.
    void setEnabled(bool enabled);
    bool isEnabled() const;
    /// Folder that the files of sounds are seen from; the working folder unless set.
    void setFolder(const QString& folder);
    /// Through which scripts acknowledge, shelve and suppress alarms; not owned, must outlive the engine. Without one they
    /// can't.
    void setAlarmDesk(AlarmDesk* desk);
    /// Names of the pages that scripts can open; asked each time.
    void setPageNames(std::function<QStringList()> names);

    void runAction(KVCanvasInterface* canvas, TesselInterface* shape, const QString& script,
                   Korvane::TriggerType trigger) override;
    void runForCanvas(KVCanvasInterface* canvas, const QString& script) override;
    void run(const QString& script) override;
    QString lastError() const override;
    QWidget* createScriptEditor(KVCanvasInterface* canvas) override;
    void refreshEditingContext(QPlainTextEdit* editor, KVCanvasInterface* canvas) override;

    /// What the scripts that run next find in "event"; none of it unless set.
    void setEvent(const std::optional<ScriptEvent>& event);
    /// Whether anybody would hear of \p signal.
    bool isWatched(const QMetaMethod& signal) const { return isSignalConnected(signal); }

    /// Whether callHandler() would call something.
    bool hasHandler(const KVCanvasInterface* canvas, TesselInterface* shape, ScriptHandler handler) const;
    /// Calls the handler of \p shape or, for some handlers, of its page (ScriptHandlerInfo::Reach); of every owner for
    /// those that reach everyone.
    /// \param shape that the event came to; null for an event of the page
    /// \param arguments those behind the handler's subject, as many as it has
    /// \returns false when there is no such handler, or one failed.
    bool callHandler(KVCanvasInterface* canvas, TesselInterface* shape, ScriptHandler handler,
                     const QVariantList& arguments = {});
    /// Asks the handler of ScriptHandler::RowDataRequest for a row.
    /// \returns the texts that it put into its list; empty without a handler, or when it failed.
    QStringList requestRow(KVCanvasInterface* canvas, TesselInterface* shape, int row);

    /// The page is about to go: its namespace ends, and what scripts hold of it turns invalid.
    void forgetCanvas(const KVCanvasInterface* canvas);
    /// The shape is about to go: its handlers end, and what scripts hold of it turns invalid.
    void forgetShape(const KVCanvasInterface* canvas, TesselInterface* shape);

    /// The reference of everything scripts can use, as Markdown, made from the docstrings.
    static QString reference();

Q_SIGNALS:
    /// A script asked for a page to be opened. Scripts have ended when it comes.
    void pageRequested(const QString& name);
    /// Likewise to be closed.
    void closeRequested(const QString& name);
    /// A script asked for another zoom of an open page; 0 fits the page into its view.
    void zoomRequested(const QString& page, double factor);
    /// A script wrote to the log.
    void logged(ScriptEngine::Severity severity, const QString& text);
    /// A script failed: what stdErr() told of it, as one text.
    void failed(const QString& text);

private:
    std::unique_ptr<ScriptSession> m_session;
};
