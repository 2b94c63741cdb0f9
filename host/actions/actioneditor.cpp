#include "host/actions/actioneditor.h"

#include "host/actions/tagaction.h"

#include <QCheckBox>
#include <QEvent>
#include <QFormLayout>
#include <QLineEdit>
#include <QPlainTextEdit>

namespace {

QString textOf(const QVariant& value)
{
    return value.userType() == QMetaType::QStringList ? value.toStringList().join(QLatin1Char('|')) : value.toString();
}

QVariant valueOf(const QString& text, const QVariant& like)
{
    if (like.userType() != QMetaType::QStringList)
        return text;
    return text.isEmpty() ? QStringList() : text.split(QLatin1Char('|'));
}

void mark(QWidget& field, bool isGood)
{
    QPalette palette;
    if (!isGood)
        palette.setColor(QPalette::Text, Qt::red);
    field.setPalette(palette);
}

} // namespace

ActionEditor::ActionEditor(TagAction& action, QWidget* parent) : QWidget(parent), m_action(action)
{
    auto* form = new QFormLayout(this);
    addTags(*form);
    const QVariantMap settings = action.settings();
    for (const ActionSetting& setting : action.settingTable())
        addSetting(*form, setting.name, settings.value(setting.name));
}

ActionEditor::~ActionEditor() = default;

void ActionEditor::addTags(QFormLayout& form)
{
    auto* tags = new QPlainTextEdit(m_action.tags().join(QLatin1Char('\n')), this);
    tags->setObjectName(QStringLiteral("tags"));
    tags->setTabChangesFocus(true);
    form.addRow(tr("Tags"), tags);
    tags->installEventFilter(this);
    m_tags = tags;
}

bool ActionEditor::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_tags && event->type() == QEvent::FocusOut)
        takeTags();
    return QWidget::eventFilter(watched, event);
}

void ActionEditor::takeTags()
{
    QStringList lines = m_tags->toPlainText().split(QLatin1Char('\n'));
    for (QString& line : lines)
        line = line.trimmed();
    lines.removeAll(QString());
    if (lines == m_action.tags())
        return;
    m_action.setTags(lines);
    Q_EMIT edited();
}

void ActionEditor::addSetting(QFormLayout& form, const QString& name, const QVariant& value)
{
    if (value.userType() == QMetaType::Bool) {
        auto* box = new QCheckBox(this);
        box->setObjectName(name);
        box->setChecked(value.toBool());
        form.addRow(name, box);
        connect(box, &QCheckBox::toggled, this, [this, name](bool isOn) {
            m_action.setSetting(name, isOn);
            Q_EMIT edited();
        });
        return;
    }
    auto* field = new QLineEdit(textOf(value), this);
    field->setObjectName(name);
    form.addRow(name, field);
    connect(field, &QLineEdit::editingFinished, this, [this, name, value, field] {
        if (field->text() == textOf(m_action.settings().value(name))) {
            mark(*field, true);
            return;
        }
        const bool isTaken = m_action.setSetting(name, valueOf(field->text(), value));
        mark(*field, isTaken);
        if (isTaken)
            Q_EMIT edited();
    });
}
