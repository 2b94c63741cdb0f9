#pragma once

#include "host/hostexport.h"

#include <QWidget>

class QFormLayout;
class QPlainTextEdit;
class TagAction;

/// Edits a tag action in place: its tags, one a line, and the settings of its kind. Each edit takes effect when it is
/// finished; one that the action can't take is marked, and the action stays as it was.
class KORVANE_HOST_EXPORT ActionEditor : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(ActionEditor)

public:
    /// \param action not owned, must outlive the editor; must not be in use on an open page
    explicit ActionEditor(TagAction& action, QWidget* parent = nullptr);
    ~ActionEditor() override;

Q_SIGNALS:
    /// The action was changed.
    void edited();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void addTags(QFormLayout& form);
    void addSetting(QFormLayout& form, const QString& name, const QVariant& value);

    void takeTags();

    TagAction& m_action;
    QPlainTextEdit* m_tags = nullptr;
};
