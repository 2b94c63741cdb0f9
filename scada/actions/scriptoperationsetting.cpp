#include "scada/actions/scriptoperationsetting.h"

#include "platform/ui/hidpi.h"
#include "scada/actions/scripthandlernames.h"
#include "ui_scriptoperationsetting.h"

#include <QIcon>
#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <QTextCursor>
#include <QTextDocumentFragment>

namespace {

using namespace ScriptHandlerNames;

struct HandlerArguments
{
    QLatin1String handler;
    QLatin1String arguments;
};

// Kept wider than what is offered.
constexpr HandlerArguments handlerArguments[] = {
    {onCurrentIndexChanged, text("obj,index")},
    {onItemClicked, text("obj,treeItem,column")},
    {onGraphClicked, text("obj,xIndex,xPosition,yPosition")},
    {onReturnPressed, text("obj")},
    {onTextChanged, text("obj,text")},
    {onZoomLevelChanged, text("canvasObject,zoomLevel")},
    {onDataLoaded, text("obj")},
    {onDateChanged, text("obj,year,month,day")},
    {onPointValueChanged, text("name,value")},
    {onRowDataRequest, text("obj,row,values")},
};

constexpr QLatin1String offeredHandlers[] = {
    onCurrentIndexChanged, onItemClicked, onGraphClicked,      onReturnPressed,  onTextChanged,
    onZoomLevelChanged,    onDataLoaded,  onPointValueChanged, onRowDataRequest,
};

QStringList offeredHandlerNames()
{
    QStringList names;
    for (const QLatin1String& name : offeredHandlers)
        names.append(name);
    return names;
}

QString argumentsOf(const QString& handler)
{
    for (const HandlerArguments& row : handlerArguments) {
        if (handler == row.handler)
            return row.arguments;
    }
    return {};
}

QString handlerStub(const QString& handler)
{
    static const QString stub = QStringLiteral("def %1(%2):\n\treturn\n");
    return stub.arg(handler, argumentsOf(handler));
}

void setAction(ScadaScriptAction& action, int eventType, const QString& script)
{
    action.setTriggerType(Korvane::TriggerType(eventType));
    action.setScript(script);
}

} // namespace

ScriptOperationSetting::ScriptOperationSetting(KVCanvasInterface* canvas, KorvaneScriptInterface* scriptInterface,
                                               QWidget* parent)
    : QWidget(parent), m_ui(std::make_unique<Ui::CanvasOperationSetting>())
{
    m_ui->setupUi(this);
    m_ui->widget->init(canvas, scriptInterface);
    m_ui->addHandlerBtn->setIcon(QIcon(HiDPI::dpiScaledPixmap(QStringLiteral(":/KVC/image/plus"), nullptr)));
    connect(m_ui->clearBtn, &QPushButton::released, this, &ScriptOperationSetting::slotClear);
    m_ui->eventHandlerCombo->addItems(offeredHandlerNames());
    connect(m_ui->addHandlerBtn, &QToolButton::released, this, &ScriptOperationSetting::addHandler);
}

ScriptOperationSetting::~ScriptOperationSetting() = default;

void ScriptOperationSetting::init(const QList<QPair<int, QString>>& eventTypes)
{
    for (const auto& [type, name] : eventTypes)
        m_ui->comboBox->addItem(name, type);
    connect(m_ui->comboBox, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &ScriptOperationSetting::slotIndexChanged);
    m_lastIndex = m_ui->comboBox->currentIndex();
}

int ScriptOperationSetting::eventType(int index) const
{
    return m_ui->comboBox->itemData(index).toInt(); // kept: 0 for no item
}

void ScriptOperationSetting::setScript(const QList<ScadaScriptAction>& actions, KVCanvasInterface* canvas)
{
    m_actionMap.clear();
    m_ui->widget->clear();
    m_ui->widget->setCurrentCanvas(canvas);
    const QSignalBlocker blocker(m_ui->comboBox);
    m_ui->comboBox->setCurrentIndex(0); // kept: the last index stays, unless there is a script to show

    bool isShown = false;
    for (ScadaScriptAction action : actions) {
        const int type = static_cast<int>(action.triggetType());
        if (!isShown && !action.script().isEmpty()) {
            isShown = true;
            m_lastIndex = m_ui->comboBox->findData(type);
            m_ui->comboBox->setCurrentIndex(m_lastIndex);
            m_ui->widget->setScript(action.script());
        }
        m_actionMap[type] = action;
    }
}

QList<ScadaScriptAction> ScriptOperationSetting::scriptActions()
{
    if (!m_ui->widget->scriptEditor())
        return {};
    const int type = eventType(m_ui->comboBox->currentIndex());
    setAction(m_actionMap[type], type, m_ui->widget->script());
    return m_actionMap.values();
}

void ScriptOperationSetting::slotIndexChanged(int index)
{
    if (!m_ui->widget->scriptEditor())
        return;
    Q_EMIT dirtyed();

    const QString script = m_ui->widget->script();
    if (!script.isEmpty()) { // kept: a text deleted by hand comes back; only slotClear() drops it
        const int lastType = eventType(m_lastIndex);
        setAction(m_actionMap[lastType], lastType, script);
    }

    const int type = eventType(index);
    ScadaScriptAction& action = m_actionMap[type];
    action.setTriggerType(Korvane::TriggerType(type));
    m_ui->widget->setScript(action.script());
    m_lastIndex = index;
}

void ScriptOperationSetting::slotClear()
{
    if (!m_ui->widget->scriptEditor())
        return;
    m_ui->widget->clear();
    m_actionMap.remove(eventType(m_ui->comboBox->currentIndex()));
}

void ScriptOperationSetting::addHandler()
{
    QPlainTextEdit* editor = m_ui->widget->scriptEditor();
    if (!editor)
        return;
    const QString stub = handlerStub(m_ui->eventHandlerCombo->currentText());
    editor->textCursor().insertFragment(QTextDocumentFragment::fromPlainText(stub));
    editor->ensureCursorVisible();
    editor->setFocus(Qt::OtherFocusReason);
}
